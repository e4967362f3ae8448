// SPDX-License-Identifier: MIT
#include "NotificationTest.h"

#include <atomic>
#include <map>
#include <sstream>
#include <thread>

namespace {

using ThreadsTest = SimulatorTest;

constexpr int threadCount = 4;
constexpr int rounds = 100;

template <typename Work>
void OnSeveralThreads(Work work)
{
    std::vector<std::thread> threads;
    for (int number = 0; number < threadCount; ++number) threads.emplace_back([=] { work(number); });
    for (std::thread& thread : threads) thread.join();
}

TEST_F(ThreadsTest, DocumentsOfSeveralThreadsStayApart)
{
    SpoolerAddPrinter({.printerName = L"Label", .pace = SpoolerPace::AtOnce});
    OnSeveralThreads([](int number) {
        const PrinterHandle printer = Open(L"Label");
        for (int round = 0; round < rounds; ++round)
            Print(printer, std::to_wstring(number), std::string(10, static_cast<char>('a' + number)));
    });
    ASSERT_EQ(SpoolerDeliveryCount(L"Label"), DWORD{threadCount * rounds});
    std::vector<int> perThread(threadCount);
    for (DWORD index = 0; index < threadCount * rounds; ++index) {
        const std::string bytes = AsText(SpoolerDeliveryBytes(L"Label", index));
        ASSERT_EQ(bytes, std::string(10, bytes.at(0)));
        ++perThread.at(static_cast<size_t>(bytes[0] - 'a'));
    }
    EXPECT_THAT(perThread, ::testing::Each(rounds));
}

TEST_F(ThreadsTest, AWatcherHearsTheWholeLifeOfEveryJobWhoeverPrintsIt)
{
    SpoolerAddPrinter({.printerName = L"Label", .pace = SpoolerPace::AtOnce});
    const PrinterHandle watched = Open(L"Label");
    const Watch watch(watched, PRINTER_CHANGE_JOB, {JOB_NOTIFY_FIELD_STATUS});
    std::map<std::string, std::string> lives; // status values of each job
    const auto fetch = [&] {
        for (const std::string& batch : watch.All()) {
            std::istringstream words(batch);
            for (std::string word; words >> word;) {
                const size_t at = word.find(".STATUS=");
                if (at != std::string::npos) lives[word.substr(0, at)] += word.substr(at + 7);
            }
        }
    };
    std::atomic<bool> done = false;
    std::thread watcher([&] {
        while (!done) {
            ::WaitForSingleObject(watch.Handle(), 10);
            fetch();
        }
    });
    OnSeveralThreads([](int) {
        const PrinterHandle printer = Open(L"Label");
        for (int round = 0; round < rounds; ++round) Print(printer, L"x", "");
    });
    done = true;
    watcher.join();
    fetch();
    EXPECT_EQ(lives.size(), size_t{threadCount * rounds});
    for (const auto& [job, life] : lives) EXPECT_EQ(life, "=0x8=0x0=0x2010=0x2090=0x2080=0x2084=0x2184") << job;
    EXPECT_EQ(SpoolerUnfreedNotifyBlocks(), 0u);
}

TEST_F(ThreadsTest, ReadersWritersAndTheControlInterfaceGoSideBySide)
{
    SpoolerAddPrinter({.printerName = L"Label"});
    OnSeveralThreads([](int number) {
        const PrinterHandle printer = Open(L"Label");
        for (int round = 0; round < rounds; ++round) {
            const DWORD jobId = QueueJob(L"Label");
            ReadPrinter<PRINTER_INFO_2W>(printer, 2);
            ReadJobs<JOB_INFO_2W>(printer, 2);
            SpoolerSetNumberData(L"Label", L"Gantry", std::to_wstring(number).c_str(), static_cast<DWORD>(round));
            SpoolerInject({.call = SpoolerCall::EnumPortsW, .error = ERROR_CRC});
            ReadPorts<PORT_INFO_1W>(1);
            SpoolerRemoveJob(L"Label", jobId);
        }
    });
    EXPECT_EQ(ReadJobs<JOB_INFO_1W>(Open(L"Label"), 1).count, 0u);
    EXPECT_EQ(SpoolerOpenHandles(nullptr), 0u);
}

} // namespace
