// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>

/// The arithmetic of array growth, shared by all arrays. Counts are in elements.
struct OArrayGrowth {
    /// The sum of two counts. An overflow gives a negative number, which the checks of `SetSize` catch.
    static constexpr int Sum(int left, int right) noexcept
    {
        return static_cast<int>(static_cast<unsigned>(left) + static_cast<unsigned>(right));
    }

    /// The step by which a full block of `size` elements in use grows: `growBy`, or an eighth of the size if that is 0.
    static constexpr int Step(int size, int growBy) noexcept
    {
        return growBy != 0 ? growBy : std::clamp(size / 8, smallestStep, largestStep);
    }

    /// The room of a block after it has grown from room for `maxSize` elements so that `newSize` fit.
    static constexpr int NewMaximum(int newSize, int size, int maxSize, int growBy) noexcept
    {
        return std::max(newSize, Sum(maxSize, Step(size, growBy)));
    }

    static constexpr int smallestStep = 4;
    static constexpr int largestStep = 1024;
};
