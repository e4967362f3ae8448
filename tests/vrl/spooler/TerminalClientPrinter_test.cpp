// SPDX-License-Identifier: MIT
#include "vrl/spooler/TerminalClientPrinter.h"

#include "foundation/system/OSVersion.h"
#include "support/AssertCatcher.h"
#include "support/MadeUpOSVersion.h"
#include "support/spooler/SpoolerTest.h"
#include "vrl/spooler/Spooler.h"

#include <utility>

namespace {

constexpr const wchar_t* dataKey = L"PrinterDriverData";

class TerminalClientPrinterTest : public SpoolerTest {
protected:
    void SetUp() override
    {
        SpoolerTest::SetUp();
        OpenQueue(printerName);
    }

    void TearDown() override
    {
        handle.Reset();
        SpoolerTest::TearDown();
    }

    /// Adds a queue that belongs to session 3, with no names, and opens it.
    void AddClientQueue(const wchar_t* name)
    {
        SpoolerPrinter queue = LabelPrinter();
        queue.printerName = name;
        queue.shareName = L"";
        AddPrinter(queue);
        SpoolerSetNumberData(name, dataKey, L"TSSessionID", 3);
        OpenQueue(name);
    }

    void OpenQueue(const wchar_t* name, ACCESS_MASK access = PRINTER_ALL_ACCESS)
    {
        handle.Reset(OpenPrinterWithAccess(name, access));
        ASSERT_TRUE(handle);
        ::SpoolerClearLog();
    }

    static void SetData(const wchar_t* name, const std::wstring& text)
    {
        SpoolerSetTextData(printerName, dataKey, name, text);
    }
    static void SetSession(DWORD session) { SpoolerSetNumberData(printerName, dataKey, L"TSSessionID", session); }

    /// The bytes of a value; none if there is no such value.
    static std::vector<BYTE> PeekData(const wchar_t* name, const wchar_t* value)
    {
        std::vector<BYTE> bytes(1024);
        DWORD type = REG_NONE;
        DWORD needed = 0;
        ::SpoolerPeekData(name, dataKey, value, &type, bytes.data(), 1024, &needed);
        bytes.resize(needed);
        return bytes;
    }

    /// A text and two terminators.
    static std::vector<BYTE> OverlongText(std::wstring text)
    {
        text.append(2, L'\0');
        const auto* const bytes = reinterpret_cast<const BYTE*>(text.data());
        return {bytes, bytes + text.size() * sizeof(wchar_t)};
    }

    static DWORD Reads(DWORD level) { return ::SpoolerCalls(SpoolerCall::GetPrinterW, level, nullptr); }

    OPrinterHandle handle;
};

/// Value names and sizes of the reads of printer data.
std::vector<std::pair<std::wstring, DWORD>> DataReads()
{
    std::vector<std::pair<std::wstring, DWORD>> reads;
    for (const SpoolerCallRecord& call : SpoolerLog()) {
        if (call.call == SpoolerCall::GetPrinterDataW) reads.emplace_back(call.valueName, call.bytes);
    }
    return reads;
}

// Reading the queue's data.

TEST_F(TerminalClientPrinterTest, QueueWithoutSessionIsNone)
{
    SetData(L"ClientName", L"CLIENT7");
    SetData(L"PrinterName", L"LABEL");
    const TerminalClientPrinter printer(handle.Get());
    EXPECT_FALSE(printer.IsClientPrinter());
    EXPECT_TRUE(printer.GetPrinterName().IsEmpty());
    EXPECT_TRUE(printer.GetClientName().IsEmpty());
    EXPECT_EQ(::SpoolerLogLength(), 1u);
    EXPECT_EQ(DataReads(), (std::vector<std::pair<std::wstring, DWORD>>{
                               {L"TSSessionID", 4}
    }));
}

TEST_F(TerminalClientPrinterTest, QueueWithoutSessionIsNoneOnVersion50)
{
    const MadeUpOSVersion version(5, 0);
    EXPECT_FALSE(TerminalClientPrinter(handle.Get()).IsClientPrinter());
    EXPECT_EQ(::SpoolerLogLength(), 1u);
}

TEST_F(TerminalClientPrinterTest, QueueWithSessionHasTheNamesOfItsData)
{
    SetSession(3);
    SetData(L"ClientName", L"CLIENT7");
    SetData(L"PrinterName", L"LABEL");
    const TerminalClientPrinter printer(handle.Get());
    EXPECT_TRUE(printer.IsClientPrinter());
    EXPECT_EQ(printer.GetPrinterName(), "LABEL");
    EXPECT_EQ(printer.GetClientName(), "CLIENT7");
}

TEST_F(TerminalClientPrinterTest, ReadsSessionAndClientAndPrinterInThatOrder)
{
    SetSession(3);
    SetData(L"ClientName", L"CLIENT7");
    SetData(L"PrinterName", L"LABEL");
    const TerminalClientPrinter printer(handle.Get());
    const std::vector<std::pair<std::wstring, DWORD>> reads{
        {L"TSSessionID", 4  },
        {L"ClientName",  520},
        {L"PrinterName", 520}
    };
    EXPECT_EQ(DataReads(), reads);
    EXPECT_EQ(::SpoolerLogLength(), 3u);
}

TEST_F(TerminalClientPrinterTest, EverySessionNumberCountsButTheHighest)
{
    static constexpr struct {
        DWORD session;
        bool isClientPrinter;
    } rows[] = {
        {0,          true },
        {1,          true },
        {0x80000000, true },
        {0xFFFFFFFE, true },
        {0xFFFFFFFF, false},
    };
    for (const auto& row : rows) {
        SetSession(row.session);
        EXPECT_EQ(TerminalClientPrinter(handle.Get()).IsClientPrinter(), row.isClientPrinter) << row.session;
    }
}

TEST_F(TerminalClientPrinterTest, SessionThatTakesMoreThanFourBytesIsNone)
{
    SetData(L"TSSessionID", L"123");
    EXPECT_FALSE(TerminalClientPrinter(handle.Get()).IsClientPrinter());
}

TEST_F(TerminalClientPrinterTest, SessionWithoutBytesIsNone)
{
    ::SpoolerSetData(printerName, dataKey, L"TSSessionID", REG_DWORD, nullptr, 0);
    EXPECT_FALSE(TerminalClientPrinter(handle.Get()).IsClientPrinter());
}

TEST_F(TerminalClientPrinterTest, NameOf259CharactersIsTheLongest)
{
    SetSession(3);
    SetData(L"ClientName", std::wstring(259, L'c'));
    SetData(L"PrinterName", std::wstring(260, L'p'));
    const TerminalClientPrinter printer(handle.Get());
    EXPECT_EQ(printer.GetClientName(), std::wstring(259, L'c').c_str());
    EXPECT_TRUE(printer.GetPrinterName().IsEmpty());
}

TEST_F(TerminalClientPrinterTest, NameStoredWithoutTerminatorEndsWithItsBytes)
{
    SetSession(3);
    const std::wstring name(260, L'c');
    ::SpoolerSetData(printerName, dataKey, L"ClientName", REG_SZ, name.data(), 520);
    EXPECT_EQ(TerminalClientPrinter(handle.Get()).GetClientName(), name.c_str());
}

// The version of the system.

TEST_F(TerminalClientPrinterTest, OtherPlatformIsAskedNothing)
{
    MadeUpOSVersion version(4, 10);
    version.Record().dwPlatformId = VER_PLATFORM_WIN32_WINDOWS;
    SetSession(3);
    EXPECT_FALSE(TerminalClientPrinter(handle.Get()).IsClientPrinter());
    EXPECT_EQ(::SpoolerLogLength(), 0u);
}

TEST_F(TerminalClientPrinterTest, SystemWithoutVersionIsAskedNothing)
{
    MadeUpOSVersion version(5, 0);
    version.Fail();
    SetSession(3);
    EXPECT_FALSE(TerminalClientPrinter(handle.Get()).IsClientPrinter());
    EXPECT_EQ(::SpoolerLogLength(), 0u);
}

TEST_F(TerminalClientPrinterTest, VersionIsAskedForWithTheShortRecord)
{
    static DWORD size;
    static constexpr OSVersionSource source{[](OSVERSIONINFOW* version) -> BOOL {
                                                size = version->dwOSVersionInfoSize;
                                                return FALSE;
                                            },
                                            nullptr};
    SetOSVersionSource(&source);
    const TerminalClientPrinter printer(handle.Get());
    SetOSVersionSource(nullptr);
    EXPECT_EQ(size, 276u);
}

TEST_F(TerminalClientPrinterTest, OnlyVersion50LooksAtTheQueuesName)
{
    static constexpr struct {
        DWORD major;
        DWORD minor;
    } rows[] = {
        {4,  0},
        {5,  1},
        {5,  2},
        {6,  0},
        {10, 0},
    };
    AddClientQueue(L"LABEL/CLIENT7/Session 3");
    for (const auto& row : rows) {
        const MadeUpOSVersion version(row.major, row.minor);
        const TerminalClientPrinter printer(handle.Get());
        EXPECT_TRUE(printer.IsClientPrinter()) << row.major << '.' << row.minor;
        EXPECT_TRUE(printer.GetPrinterName().IsEmpty()) << row.major << '.' << row.minor;
        EXPECT_TRUE(printer.GetClientName().IsEmpty()) << row.major << '.' << row.minor;
    }
    EXPECT_EQ(SpoolerCalls(SpoolerCall::GetPrinterW), 0u);
    EXPECT_EQ(SpoolerCalls(SpoolerCall::SetPrinterDataW), 0u);
}

TEST_F(TerminalClientPrinterTest, OneNameMayBeMissing)
{
    const MadeUpOSVersion version(5, 2);
    SetSession(3);
    SetData(L"PrinterName", L"LABEL");
    const TerminalClientPrinter printer(handle.Get());
    EXPECT_EQ(printer.GetPrinterName(), "LABEL");
    EXPECT_TRUE(printer.GetClientName().IsEmpty());
}

// Version 5.0.

class TerminalClientPrinter50Test : public TerminalClientPrinterTest {
protected:
    MadeUpOSVersion version{5, 0};
};

TEST_F(TerminalClientPrinter50Test, NamesOfTheDataLeaveTheQueuesNameAlone)
{
    SetSession(3);
    SetData(L"ClientName", L"CLIENT7");
    SetData(L"PrinterName", L"LABEL");
    const TerminalClientPrinter printer(handle.Get());
    EXPECT_EQ(printer.GetPrinterName(), "LABEL");
    EXPECT_EQ(::SpoolerLogLength(), 3u);
}

TEST_F(TerminalClientPrinter50Test, QueuesNameGivesPrinterAndClient)
{
    static constexpr struct {
        const wchar_t* queue;
        const wchar_t* printer;
        const wchar_t* client;
    } rows[] = {
        {L"LABEL/CLIENT7/Session 3",     L"LABEL",              L"CLIENT7"},
        {L"LABEL/CLIENT7/",              L"LABEL",              L"CLIENT7"},
        {L"L/C/3",                       L"L",                  L"C"      },
        {L"LABEL/LEFT/CLIENT7/3",        L"LABEL/LEFT",         L"CLIENT7"}, // only the last two slashes count
        {L"/LABEL/CLIENT7/3",            L"/LABEL",             L"CLIENT7"},
        {L"LABEL//3",                    L"LABEL",              L""       },
        {L"\x30E9\x30D9\x30EB/CLIENT/3", L"\x30E9\x30D9\x30EB", L"CLIENT" },
    };
    for (const auto& row : rows) {
        AddClientQueue(row.queue);
        const TerminalClientPrinter printer(handle.Get());
        EXPECT_TRUE(printer.IsClientPrinter()) << row.queue;
        EXPECT_EQ(printer.GetPrinterName(), row.printer) << row.queue;
        EXPECT_EQ(printer.GetClientName(), row.client) << row.queue;
        EXPECT_EQ(PeekData(row.queue, L"PrinterName"), OverlongText(row.printer)) << row.queue;
        EXPECT_EQ(PeekData(row.queue, L"ClientName"), OverlongText(row.client)) << row.queue;
    }
}

TEST_F(TerminalClientPrinter50Test, NameWithTooFewSlashesGivesAndWritesNothing)
{
    static constexpr const wchar_t* rows[] = {L"SOLO", L"LABEL/CLIENT7", L"/CLIENT7/3", L"/CLIENT7", L"/", L"//"};
    for (const wchar_t* const queue : rows) {
        AddClientQueue(queue);
        const TerminalClientPrinter printer(handle.Get());
        EXPECT_TRUE(printer.IsClientPrinter()) << queue;
        EXPECT_TRUE(printer.GetPrinterName().IsEmpty()) << queue;
        EXPECT_TRUE(printer.GetClientName().IsEmpty()) << queue;
        EXPECT_EQ(SpoolerCalls(SpoolerCall::SetPrinterDataW), 0u) << queue;
    }
}

TEST_F(TerminalClientPrinter50Test, NamesAreWrittenWithTwoBytesBeyondTheTerminator)
{
    AddClientQueue(L"LABEL/CLIENT7/3");
    const TerminalClientPrinter printer(handle.Get());
    const std::vector<SpoolerCallRecord> log = SpoolerLog();
    ASSERT_EQ(log.size(), 7u); // three values, the queue's name in two calls, and these
    const SpoolerCallRecord& first = log[5];
    const SpoolerCallRecord& second = log[6];
    EXPECT_EQ(first.call, SpoolerCall::SetPrinterDataW);
    EXPECT_STREQ(first.valueName, L"PrinterName");
    EXPECT_EQ(first.valueType, DWORD{REG_SZ});
    EXPECT_EQ(first.bytes, 5u * 2 + 2 + 2);
    EXPECT_EQ(second.call, SpoolerCall::SetPrinterDataW);
    EXPECT_STREQ(second.valueName, L"ClientName");
    EXPECT_EQ(second.valueType, DWORD{REG_SZ});
    EXPECT_EQ(second.bytes, 7u * 2 + 2 + 2);
}

TEST_F(TerminalClientPrinter50Test, NextReadFindsTheWrittenNames)
{
    AddClientQueue(L"LABEL/CLIENT7/3");
    const TerminalClientPrinter first(handle.Get());
    ::SpoolerClearLog();
    const TerminalClientPrinter second(handle.Get());
    EXPECT_EQ(second.GetPrinterName(), "LABEL");
    EXPECT_EQ(second.GetClientName(), "CLIENT7");
    EXPECT_EQ(::SpoolerLogLength(), 3u);
}

TEST_F(TerminalClientPrinter50Test, RefusedWriteLeavesTheNames)
{
    AddClientQueue(L"LABEL/CLIENT7/3");
    OpenQueue(L"LABEL/CLIENT7/3", PRINTER_ACCESS_USE);
    const TerminalClientPrinter printer(handle.Get());
    EXPECT_EQ(printer.GetPrinterName(), "LABEL");
    EXPECT_EQ(printer.GetClientName(), "CLIENT7");
    EXPECT_EQ(SpoolerCalls(SpoolerCall::SetPrinterDataW), 2u);
    EXPECT_TRUE(PeekData(L"LABEL/CLIENT7/3", L"PrinterName").empty());
}

TEST_F(TerminalClientPrinter50Test, OneMissingNameReplacesBoth)
{
    static constexpr const wchar_t* rows[] = {L"PrinterName", L"ClientName"};
    for (const wchar_t* const known : rows) {
        const std::wstring queue = std::wstring(L"LABEL/CLIENT7/") + known;
        AddClientQueue(queue.c_str());
        SpoolerSetTextData(queue.c_str(), dataKey, known, L"OLD");
        const TerminalClientPrinter printer(handle.Get());
        EXPECT_EQ(printer.GetPrinterName(), "LABEL") << known;
        EXPECT_EQ(printer.GetClientName(), "CLIENT7") << known;
    }
}

TEST_F(TerminalClientPrinter50Test, UnreadableQueueKeepsWhatWasFound)
{
    static constexpr struct {
        SpoolerEffect effect;
        DWORD nth;
    } rows[] = {
        {SpoolerEffect::Fail,         1},
        {SpoolerEffect::SucceedEmpty, 1},
        {SpoolerEffect::Fail,         2},
    };
    AddClientQueue(L"LABEL/CLIENT7/3");
    SpoolerSetTextData(L"LABEL/CLIENT7/3", dataKey, L"ClientName", L"FOUND");
    for (const auto& row : rows) {
        SpoolerFailure failure;
        failure.call = SpoolerCall::GetPrinterW;
        failure.level = 1;
        failure.effect = row.effect;
        failure.nth = row.nth;
        ::SpoolerInject(failure);
        ::SpoolerClearLog();
        const TerminalClientPrinter printer(handle.Get());
        EXPECT_TRUE(printer.IsClientPrinter()) << row.nth;
        EXPECT_EQ(printer.GetClientName(), "FOUND") << row.nth;
        EXPECT_TRUE(printer.GetPrinterName().IsEmpty()) << row.nth;
        EXPECT_EQ(Reads(1), row.nth);
        EXPECT_EQ(SpoolerCalls(SpoolerCall::SetPrinterDataW), 0u) << row.nth;
    }
}

TEST_F(TerminalClientPrinter50Test, QueueWithoutNameIsAnInternalFailure)
{
    AddClientQueue(L"LABEL/CLIENT7/3");
    SpoolerFailure nothingWritten;
    nothingWritten.call = SpoolerCall::GetPrinterW;
    nothingWritten.level = 1;
    nothingWritten.effect = SpoolerEffect::SucceedEmpty;
    nothingWritten.nth = 2;
    ::SpoolerInject(nothingWritten);
    EXPECT_EQ(BrokenAssert([&] { const TerminalClientPrinter printer(handle.Get()); }),
              "TerminalClientPrinter::InitializeWin2000 ASSERT(!printerName.IsEmpty())");
}

} // namespace
