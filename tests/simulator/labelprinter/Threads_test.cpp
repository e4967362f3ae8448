// SPDX-License-Identifier: MIT
#include "Device.h"
#include "LabelPrinterTest.h"

#include <thread>
#include <vector>

namespace {

class ThreadsTest : public LabelPrinterTest {};

TEST_F(ThreadsTest, AnyThreadMayAskWhileOthersPrint)
{
    constexpr int rounds = 300;
    const std::wstring names[] = {L"Label", L"Second", L"Third"};
    std::vector<std::thread> threads;
    for (const std::wstring& name : names) {
        ::LabelPrinterAdd(name.c_str());
        threads.emplace_back([&name] {
            for (DWORD jobId = 1; jobId <= rounds; ++jobId) {
                const SpoolerDeviceJob job{name.c_str(), L"NET1", jobId, L"Label"};
                void* handle = nullptr;
                EXPECT_EQ(Device().beginJob(&job, &handle), 0u);
                SpoolerDeviceProgress progress{};
                Device().writeJob(handle, "PRINT 1\n", 8, &progress);
                do {
                    EXPECT_EQ(Device().endJob(handle, &progress), 0u);
                } while (progress.verdict == SpoolerDeviceVerdict::Pending);
            }
        });
        threads.emplace_back([&name] {
            for (int round = 0; round < rounds; ++round) {
                char text[100];
                ::LabelPrinterSet(name.c_str(), L"battery", L"50");
                ::LabelPrinterStatusText(name.c_str(), text, sizeof text);
                ::LabelPrinterStartQuery(name.c_str(), std::to_string(round).c_str(), "?head", 5, nullptr);
                LONG status = 0;
                ::LabelPrinterQueryStatus(name.c_str(), std::to_string(round).c_str(), &status);
                EXPECT_EQ(status, 2);
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    for (const std::wstring& name : names) EXPECT_EQ(::LabelPrinterGet(name.c_str(), L"pages"), L"300");
}

} // namespace
