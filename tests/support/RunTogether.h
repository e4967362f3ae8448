// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/OHandle.h"

#include <atomic>
#include <thread>
#include <vector>

/// Runs `work(number)` on so many threads, which begin at one moment, and comes back when all have ended.
// Not with std::barrier or std::latch: those of this compiler's library lose a wake-up now and then.
template <class Work>
void RunTogether(int threadCount, const Work& work)
{
    const OWaitHandle start(::CreateEventW(nullptr, TRUE, FALSE, nullptr));
    std::atomic<int> missing{threadCount};
    std::vector<std::jthread> threads;
    for (int number = 0; number < threadCount; ++number) {
        threads.emplace_back([&, number] {
            if (--missing == 0) ::SetEvent(start.Get());
            ::WaitForSingleObject(start.Get(), INFINITE);
            work(number);
        });
    }
}
