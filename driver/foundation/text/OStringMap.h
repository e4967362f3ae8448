// SPDX-License-Identifier: MIT
#pragma once

#include <cstring>

#include "foundation/Checksums.h"
#include "foundation/arrays/OHashMap.h"
#include "foundation/text/OString.h"
#include "foundation/text/OStringArray.h"

/// A map from text to a plain value, for a few dozen entries. Entries can't be removed.
///
/// A key's hash is the CRC-32 of its narrow form, terminator included, so texts with equal narrow forms have the same
/// hash. While only one entry has a hash, it is taken for every key with that hash.
///
/// Ownership, threading: as `OHashMap`. Errors: a missing key is not an error.
template <typename T>
class OStringMap : public OHashMap<T> {
public:
    ~OStringMap() override = default;

    /// The value of a key, or `defaultValue`.
    T Lookup(const OString& key, T defaultValue) const
    {
        const int index = Find(key);
        return index < 0 ? defaultValue : _values.GetAt(index);
    }

    /// Replaces the value of a key, or adds both. The old value isn't released.
    void SetAt(const OString& key, T value)
    {
        const int index = Find(key);
        if (index < 0)
            Insert(key, value);
        else
            _values.SetAt(index, value);
    }

    /// Replaces the content of `keys` by all keys, in descending order of their hashes.
    void GetKeys(OStringArray& keys) const
    {
        keys.RemoveAll();
        keys.Append(_keys);
    }

protected:
    /// The index of a key's entry, or -1.
    int Find(const OString& key) const
    {
        OTypedArray<int> candidates;
        FindCandidates(Hash(key), candidates);
        // Deliberate: a single entry of the hash is the answer, whatever its key is.
        if (candidates.GetSize() == 1) return candidates.GetAt(0);
        for (int candidate = 0; candidate < candidates.GetSize(); ++candidate) {
            const int index = candidates.GetAt(candidate);
            if (_keys.GetAt(index) == key) return index;
        }
        return -1;
    }

    using OHashMap<T>::_values;
    using OHashMap<T>::_hashes;
    OStringArray _keys;

private:
    static unsigned long Hash(const OString& key)
    {
        const char* text = key.nstring();
        return CRC32(text, std::strlen(text) + 1, 0);
    }

    /// The indexes of all entries of a hash, by its place in the order.
    void FindCandidates(unsigned long hash, OTypedArray<int>& candidates) const
    {
        for (int index = this->FindPosition(hash); index < _hashes.GetSize() && _hashes[index] == hash; ++index) {
            candidates.Add(index);
        }
    }

    void Insert(const OString& key, T value)
    {
        const unsigned long hash = Hash(key);
        const int index = this->FindPosition(hash);
        _hashes.InsertAt(index, hash);
        _values.InsertAt(index, value);
        _keys.InsertAt(index, key);
    }
};
