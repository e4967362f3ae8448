// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/MathUtility.h"
#include "foundation/arrays/OTypedArray.h"

/// Values and the hashes of their keys in two parallel arrays: the part of a map that doesn't know what its keys are.
///
/// There are no bins: the hashes are in descending order, entries of one hash side by side, and an entry is looked for
/// by walking from a computed place.
///
/// Ownership: the arrays only. What a value points to stays with whoever put it in.
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
    /// Deliberate: the guess rises with the hash while the hashes fall with the index, and the walks mend it. A guess
    /// that is the number of entries itself isn't mended: no walk starts there. It comes from the hash 0xFFFFFFFF and
    /// from n - 1/2 in n parts of 2^32, n being the number of entries, as from 0x80000000 with one entry. An entry
    /// put in at such a guess goes to the end whatever its neighbours are, and isn't found at that size.
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
    OTypedArray<unsigned long> _hashes; ///< in descending order, but for entries put in at such a guess
};
