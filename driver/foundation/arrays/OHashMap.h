// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/MathUtility.h"
#include "foundation/arrays/OTypedArray.h"

/// Values and the hashes of their keys in two parallel arrays: the part of a map that doesn't know what its keys are.
///
/// There are no bins: the hashes are in descending order, entries of equal hash next to each other, and a search walks
/// from a computed position.
///
/// Ownership: the arrays only, not what a value points to.
/// Threading: none; the owner holds its own lock around each call.
template <typename T>
class OHashMap {
public:
    OHashMap() noexcept = default;
    OHashMap(const OHashMap&) = delete;
    OHashMap& operator=(const OHashMap&) = delete;
    virtual ~OHashMap() = default;

protected:
    /// The first index whose hash is not above `hash`, or the number of entries.
    ///
    /// Deliberate: the guess rises with the hash while the hashes fall with the index, so it is usually wrong, and the
    /// two walks correct it. No walk starts at a guess that equals the number of entries:
    ///     1 entry,   hash 0x80000000
    ///     2 entries, hash 0xC0000000
    /// and the hash 0xFFFFFFFF with any number. An entry inserted there goes to the end, whatever its neighbours are,
    /// and isn't found while the map has that many entries.
    int FindPosition(unsigned long hash) const
    {
        const int count = _hashes.GetSize();
        const DWORD guess = MathUtility::MulDivU(hash, static_cast<DWORD>(count), 0xFFFFFFFF);
        int index = static_cast<int>(guess);
        while (_hashes.IsValidIndex(index) && _hashes[index] <= hash) --index;
        while (_hashes.IsValidIndex(index) && hash < _hashes[index]) ++index;
        return MathUtility::Clamp(index, 0, count);
    }

    OTypedArray<T> _values;
    OTypedArray<unsigned long> _hashes; ///< in descending order, except for such entries
};
