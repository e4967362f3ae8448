// SPDX-License-Identifier: MIT
#include "foundation/text/OStringMap.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <iterator>
#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "support/KeyWithHash.h"
#include "support/RandomSeed.h"

namespace {

constexpr int missing = -1;

/// A key, and its hash so that the models needn't work it out again.
struct Key {
    std::string text;
    DWORD hash;

    explicit Key(std::string keyText) : text(std::move(keyText)), hash(CRC32(text.c_str(), text.size() + 1, 0)) {}
};

/// Whether the guess for the hash equals the number of entries, by exact arithmetic: 0x80000000 with one entry,
/// 0xC0000000 with two, 0xE0000000 with four, and the highest hash always.
bool IsGuessTheCount(DWORD hash, size_t count)
{
    return hash == 0xFFFFFFFF || std::uint64_t{hash} * count * 2 == (2 * std::uint64_t{count} - 1) << 32;
}

/// The hash below the highest for which that is so with `count` entries, a power of two.
DWORD HashAtTheCount(std::uint64_t count)
{
    return static_cast<DWORD>(((2 * count - 1) << 31) / count);
}

class Dice {
public:
    int Upto(int highest) { return std::uniform_int_distribution<int>(0, highest)(_engine); }

    std::string Text()
    {
        std::string text(static_cast<size_t>(Upto(30)), '\0');
        for (char& character : text) character = static_cast<char>(' ' + Upto(94));
        return text;
    }

    template <typename T>
    const T& OneOf(const std::vector<T>& values)
    {
        return values[static_cast<size_t>(Upto(static_cast<int>(values.size()) - 1))];
    }

private:
    std::mt19937_64 _engine{RandomSeed()};
};

std::vector<std::string> KeysOf(const OStringMap<int>& map)
{
    OStringArray keys;
    map.GetKeys(keys);
    std::vector<std::string> texts;
    for (int index = 0; index < keys.GetSize(); ++index) texts.push_back(keys[index].nstring());
    return texts;
}

/// What the map is meant to be: an ordinary map, but that a hash has one entry, under the key that came first.
class OrdinaryMap {
public:
    int Lookup(const Key& key) const
    {
        if (IsGuessTheCount(key.hash, _entries.size())) return missing;
        const auto entry = _entries.find(key.hash);
        return entry == _entries.end() ? missing : entry->second.value;
    }

    void SetAt(const Key& key, int value)
    {
        _entries.try_emplace(key.hash, Entry{key.text, value}).first->second.value = value;
    }

    size_t Count() const { return _entries.size(); }

    std::vector<std::string> Keys() const
    {
        std::vector<std::string> keys;
        for (const auto& [hash, entry] : _entries) keys.push_back(entry.key);
        return keys;
    }

private:
    struct Entry {
        std::string key;
        int value;
    };

    std::map<DWORD, Entry, std::greater<>> _entries;
};

/// A few thousand keys of all kinds: random ones, some in pairs of one hash, and those that are lost at one size.
std::vector<Key> ManyKeys(Dice& dice)
{
    std::vector<Key> keys;
    for (int count = 0; count < 3000; ++count) keys.emplace_back(dice.Text());
    for (size_t index = 0; index < 100; ++index) keys.emplace_back(KeyWithHash(keys[index].hash));
    for (std::uint64_t count = 1; count <= 4096; count *= 2) keys.emplace_back(KeyWithHash(HashAtTheCount(count)));
    return keys;
}

TEST(OStringMapProperty, IsAnOrdinaryMapButForHashesSharedAndGuessesAtTheCount)
{
    Dice dice;
    const std::vector<Key> keys = ManyKeys(dice);
    OStringMap<int> map;
    OrdinaryMap model;
    const int operations = RandomOperations(10'000, 100'000);
    for (int operation = 0; operation < operations; ++operation) {
        // Setting a key whose guess is the count would end the order of the hashes; see the next test.
        const Key& setKey = dice.OneOf(keys);
        if (!IsGuessTheCount(setKey.hash, model.Count())) {
            map.SetAt(setKey.text.c_str(), operation);
            model.SetAt(setKey, operation);
        }
        const Key& key = dice.OneOf(keys);
        ASSERT_EQ(map.Lookup(key.text.c_str(), missing), model.Lookup(key)) << operation << " " << key.text;
    }
    EXPECT_EQ(KeysOf(map), model.Keys());
    for (const Key& key : keys) EXPECT_EQ(map.Lookup(key.text.c_str(), missing), model.Lookup(key)) << key.text;
}

TEST(OStringMapProperty, EachKeyThatIsLostAtOneSizeIsThereAtAllOthers)
{
    Dice dice;
    const Key key(KeyWithHash(HashAtTheCount(16)));
    OStringMap<int> map;
    map.SetAt(key.text.c_str(), 7);
    std::vector<size_t> lostAt;
    for (size_t count = 1; count < 40; ++count) {
        if (map.Lookup(key.text.c_str(), missing) == missing) lostAt.push_back(count);
        map.SetAt(KeyWithHash(static_cast<DWORD>(count) * 0x01234567, 'z').c_str(), 0);
    }
    EXPECT_EQ(lostAt, std::vector<size_t>{16});
}

/// The same three lists as in the map, searched by ranges and with a guess computed in 64 bits.
class ThreeLists {
public:
    int Lookup(const Key& key) const
    {
        const int index = Find(key);
        return index < 0 ? missing : _entries[static_cast<size_t>(index)].value;
    }

    void SetAt(const Key& key, int value)
    {
        const int index = Find(key);
        if (index >= 0)
            _entries[static_cast<size_t>(index)].value = value;
        else
            _entries.insert(_entries.begin() + Position(key.hash), Entry{key.text, key.hash, value});
    }

    int Count() const { return static_cast<int>(_entries.size()); }

    std::vector<std::string> Keys() const
    {
        std::vector<std::string> keys;
        for (const Entry& entry : _entries) keys.push_back(entry.key);
        return keys;
    }

private:
    struct Entry {
        std::string key;
        DWORD hash;
        int value;
    };

    int Position(DWORD hash) const
    {
        if (IsGuessTheCount(hash, _entries.size())) return Count();
        const std::uint64_t product = std::uint64_t{hash} * _entries.size();
        const bool isHalf = (product & 0xFFFFFFFF) == 0x80000000; // the one remainder that is rounded up
        const auto guess = static_cast<std::ptrdiff_t>(product >> 32) + (isHalf ? 1 : 0);
        // The nearest higher hash up to the guess; if there is none, everything up to the guess is passed.
        const auto end = _entries.begin() + std::min<std::ptrdiff_t>(guess + 1, Count());
        const auto isHigher = [&](const Entry& entry) { return entry.hash > hash; };
        const auto higher = std::find_if(std::make_reverse_iterator(end), _entries.rend(), isHigher);
        if (higher == _entries.rend()) return 0;
        return static_cast<int>(std::find_if_not(higher.base(), _entries.end(), isHigher) - _entries.begin());
    }

    int Find(const Key& key) const
    {
        const auto first = _entries.begin() + Position(key.hash);
        const auto last =
            std::find_if(first, _entries.end(), [&](const Entry& entry) { return entry.hash != key.hash; });
        if (last - first == 1) return static_cast<int>(first - _entries.begin());
        const auto found = std::find_if(first, last, [&](const Entry& entry) { return entry.key == key.text; });
        return found == last ? missing : static_cast<int>(found - _entries.begin());
    }

    std::vector<Entry> _entries;
};

/// Few keys, many of which share a hash or have a guess at the count sooner or later.
std::vector<Key> StrayKeys(Dice& dice)
{
    std::vector<Key> keys;
    for (int count = 0; count < 60; ++count) keys.emplace_back(dice.Text());
    for (const char letter : {'a', 'b', 'c'}) {
        keys.emplace_back(KeyWithHash(0xFFFFFFFF, letter));
        for (std::uint64_t count = 1; count <= 128; count *= 2) {
            keys.emplace_back(KeyWithHash(HashAtTheCount(count), letter));
        }
    }
    return keys;
}

TEST(OStringMapProperty, KeepsItsThreeListsInStepWhenKeysAreLost)
{
    Dice dice;
    for (int run = 0; run < 20; ++run) {
        const std::vector<Key> keys = StrayKeys(dice);
        OStringMap<int> map;
        ThreeLists model;
        while (model.Count() < 150) {
            const Key& setKey = dice.OneOf(keys);
            map.SetAt(setKey.text.c_str(), model.Count());
            model.SetAt(setKey, model.Count());
            const Key& key = dice.OneOf(keys);
            ASSERT_EQ(map.Lookup(key.text.c_str(), missing), model.Lookup(key)) << run << " " << key.text;
        }
        ASSERT_EQ(KeysOf(map), model.Keys()) << run;
    }
}

} // namespace
