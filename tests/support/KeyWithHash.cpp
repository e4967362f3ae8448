// SPDX-License-Identifier: MIT
#include "support/KeyWithHash.h"

#include <array>
#include <cstdint>
#include <stdexcept>

#include "foundation/Checksums.h"

namespace {

constexpr size_t keyLength = 64;
constexpr char caseBit = 0x20;

DWORD HashOf(const std::string& key)
{
    return CRC32(key.c_str(), key.size() + 1, 0);
}

/// What changing the case of some letters does to the hash: the letters as bits, and the bits that change.
struct Change {
    std::uint64_t letters;
    DWORD bits;
};

/// Changes by the highest bit that they change.
using Basis = std::array<Change, 32>;

/// Takes the changes of the basis off `change`, from the highest bit down to the first that the basis lacks.
int Reduce(const Basis& basis, Change& change)
{
    for (int bit = 31; bit >= 0; --bit) {
        if (!(change.bits >> bit & 1)) continue;
        const Change& known = basis[static_cast<size_t>(bit)];
        if (known.bits == 0) return bit;
        change.letters ^= known.letters;
        change.bits ^= known.bits;
    }
    return -1;
}

} // namespace

std::string KeyWithHash(DWORD hash, char letter)
{
    const std::string base(keyLength, static_cast<char>(letter | caseBit));
    Basis basis{};
    for (size_t place = 0; place < keyLength; ++place) {
        std::string changed = base;
        changed[place] ^= caseBit;
        Change change{std::uint64_t{1} << place, HashOf(base) ^ HashOf(changed)};
        const int bit = Reduce(basis, change);
        if (bit >= 0) basis[static_cast<size_t>(bit)] = change;
    }

    Change wanted{0, HashOf(base) ^ hash};
    if (Reduce(basis, wanted) >= 0) throw std::logic_error("no case of the letters gives this hash");
    std::string key = base;
    for (size_t place = 0; place < keyLength; ++place) {
        if (wanted.letters >> place & 1) key[place] ^= caseBit;
    }
    return key;
}
