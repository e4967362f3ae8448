// SPDX-License-Identifier: MIT
#include "vrl/core/XPrinter.h"

#include "support/AllocationFailure.h"
#include "support/BackgroundCall.h"
#include "support/ImportHook.h"
#include "support/TemporaryDirectory.h"
#include "support/spooler/HeldCall.h"
#include "support/com/RecordingSinkOwner.h"
#include "support/spooler/SpoolerTest.h"
#include "vrl/frame/VRException.h"
#include "vrl/core/XJob.h"
#include "vrl/core/XJobRef.h"
#include "vrl/core/XPrinterPool.h"
#include "vrl/core/XPrinterRef.h"

#include <process.h>

#include <string>
#include <thread>

namespace {

class XPrinterTest : public SpoolerTest {
protected:
    void SetUp() override
    {
        SpoolerTest::SetUp();
        Reopen();
    }

    void TearDown() override
    {
        xPrinter.Release();
        EXPECT_EQ(XPrinterPool::GetCount(), 0);
        SpoolerTest::TearDown();
    }

    void Reopen()
    {
        xPrinter.Release();
        xPrinter = XPrinterRef::Acquire(OString(printerName));
        ::SpoolerClearLog();
    }

    XPrinterRef xPrinter;
};

// ---- opening ----

class XPrinterOpenTest : public SpoolerTest {
protected:
    static std::vector<DWORD> AccessMasksAskedFor()
    {
        std::vector<DWORD> masks;
        for (const SpoolerCallRecord& call : SpoolerLog()) {
            if (call.call == SpoolerCall::OpenPrinterW) masks.push_back(call.access);
        }
        return masks;
    }
};

TEST_F(XPrinterOpenTest, AsksForAllAccessFirst)
{
    const XPrinterRef xPrinter = XPrinterRef::Acquire(OString("Label"));
    EXPECT_EQ(AccessMasksAskedFor(), std::vector<DWORD>{0xF000C});
}

TEST_F(XPrinterOpenTest, MakesDoWithTheRightToUse)
{
    ::SpoolerSetGrantedAccess(printerName, PRINTER_ACCESS_USE);
    const XPrinterRef xPrinter = XPrinterRef::Acquire(OString("Label"));
    EXPECT_EQ(AccessMasksAskedFor(), (std::vector<DWORD>{0xF000C, 8}));
    EXPECT_EQ(xPrinter->GetComment(), "Shipping labels");
}

TEST_F(XPrinterOpenTest, ThrowsWhenNeitherOpenWorks)
{
    EXPECT_THROW(XPrinterRef::Acquire(OString("No such printer")), CouldNotOpenPrinter_E);
    EXPECT_EQ(AccessMasksAskedFor(), (std::vector<DWORD>{0xF000C, 8}));
}

TEST_F(XPrinterOpenTest, PrinterWithoutInterfaceValueHasAPlainDriver)
{
    const XPrinterRef xPrinter = XPrinterRef::Acquire(OString("Label"));
    EXPECT_FALSE(xPrinter->HasAdvancedDriver());
}

TEST_F(XPrinterOpenTest, PrinterWithInterfaceValueHasAnAdvancedDriver)
{
    SpoolerSetTextData(printerName, L"PrinterDriverData", L"VRL Interface", L"driver.dll");
    const XPrinterRef xPrinter = XPrinterRef::Acquire(OString("Label"));
    EXPECT_TRUE(xPrinter->HasAdvancedDriver());
}

TEST_F(XPrinterOpenTest, InterfaceValueOfAnyTypeCounts)
{
    SpoolerSetNumberData(printerName, L"PrinterDriverData", L"VRL Interface", 0);
    const XPrinterRef xPrinter = XPrinterRef::Acquire(OString("Label"));
    EXPECT_TRUE(xPrinter->HasAdvancedDriver());
}

TEST_F(XPrinterOpenTest, InterfaceValueThatFillsTheBufferCounts)
{
    SpoolerSetTextData(printerName, L"PrinterDriverData", L"VRL Interface", std::wstring(259, L'x'));
    const XPrinterRef xPrinter = XPrinterRef::Acquire(OString("Label"));
    EXPECT_TRUE(xPrinter->HasAdvancedDriver());
}

TEST_F(XPrinterOpenTest, InterfaceValueLongerThanTheBufferMeansAPlainDriver)
{
    SpoolerSetTextData(printerName, L"PrinterDriverData", L"VRL Interface", std::wstring(260, L'x'));
    const XPrinterRef xPrinter = XPrinterRef::Acquire(OString("Label"));
    EXPECT_FALSE(xPrinter->HasAdvancedDriver());
}

TEST_F(XPrinterOpenTest, CallsTheSpoolerInItsOrder)
{
    const XPrinterRef xPrinter = XPrinterRef::Acquire(OString("Label"));
    std::vector<SpoolerCall> calls;
    for (const SpoolerCallRecord& call : SpoolerLog()) calls.push_back(call.call);
    EXPECT_EQ(calls, (std::vector{SpoolerCall::OpenPrinterW, SpoolerCall::GetPrinterDataW,
                                  SpoolerCall::GetPrinterDataExW, SpoolerCall::GetPrinterDataExW}));
}

// ---- getters ----

struct TextGetter {
    const char* name;
    OString (XPrinter::*get)() const;
    const char* value;
};

const TextGetter textGetters[] = {
    {"GetSpoolerPrinterName", &XPrinter::GetSpoolerPrinterName, "Label"          },
    {"GetServerName",         &XPrinter::GetServerName,         "\\\\STORE"      },
    {"GetShareName",          &XPrinter::GetShareName,          "LABELS"         },
    {"GetPortName",           &XPrinter::GetPortName,           "LPT1:"          },
    {"GetModelName",          &XPrinter::GetModelName,          "Label Driver"   },
    {"GetComment",            &XPrinter::GetComment,            "Shipping labels"},
    {"GetLocation",           &XPrinter::GetLocation,           "Gate 7"         },
};

TEST_F(XPrinterTest, TextGettersReadTheirFieldWithTwoCalls)
{
    for (const TextGetter& getter : textGetters) {
        ::SpoolerClearLog();
        EXPECT_EQ((xPrinter.Get()->*getter.get)(), getter.value) << getter.name;
        EXPECT_EQ(::SpoolerCalls(SpoolerCall::GetPrinterW, 2, printerName), 2u) << getter.name;
        EXPECT_EQ(::SpoolerLogLength(), 2u) << getter.name;
    }
}

TEST_F(XPrinterTest, TextGettersAreEmptyWhenTheFirstCallFails)
{
    for (const TextGetter& getter : textGetters) {
        FailNext(SpoolerCall::GetPrinterW, ERROR_ACCESS_DENIED);
        EXPECT_TRUE((xPrinter.Get()->*getter.get)().IsEmpty()) << getter.name;
    }
    EXPECT_EQ(SpoolerCalls(SpoolerCall::GetPrinterW), std::size(textGetters));
}

TEST_F(XPrinterTest, TextGettersAreEmptyWhenTheSecondCallFails)
{
    for (const TextGetter& getter : textGetters) {
        FailNext(SpoolerCall::GetPrinterW, ERROR_ACCESS_DENIED, 2);
        EXPECT_TRUE((xPrinter.Get()->*getter.get)().IsEmpty()) << getter.name;
    }
}

TEST_F(XPrinterTest, TextGettersAreEmptyWhenThereIsNothingToCopy)
{
    for (const TextGetter& getter : textGetters) {
        EmptyNext(SpoolerCall::GetPrinterW);
        EXPECT_TRUE((xPrinter.Get()->*getter.get)().IsEmpty()) << getter.name;
    }
}

TEST_F(XPrinterTest, NameIsTheOneThatOpenedItWithoutASpoolerCall)
{
    EXPECT_EQ(xPrinter->GetPrinterName(), "Label");
    EXPECT_EQ(::SpoolerLogLength(), 0u);
}

TEST_F(XPrinterTest, NameIsACopyOfItsOwn)
{
    const OString first = xPrinter->GetPrinterName();
    const OString second = xPrinter->GetPrinterName();
    EXPECT_NE(first.Core(), second.Core());
    EXPECT_EQ(first.Core()->reference_count, 1);
}

struct NumberGetter {
    const char* name;
    DWORD (XPrinter::*get)() const;
    DWORD value;
    DWORD unread;
};

const NumberGetter numberGetters[] = {
    {"GetDefaultPriority", &XPrinter::GetDefaultPriority, 7,   1},
    {"GetStartTime",       &XPrinter::GetStartTime,       60,  0},
    {"GetUntilTime",       &XPrinter::GetUntilTime,       120, 0},
};

TEST_F(XPrinterTest, NumberGettersReadTheirField)
{
    for (const NumberGetter& getter : numberGetters) {
        EXPECT_EQ((xPrinter.Get()->*getter.get)(), getter.value) << getter.name;
    }
}

TEST_F(XPrinterTest, NumberGettersHaveAValueForAFailedRead)
{
    for (const NumberGetter& getter : numberGetters) {
        FailNext(SpoolerCall::GetPrinterW, ERROR_ACCESS_DENIED);
        EXPECT_EQ((xPrinter.Get()->*getter.get)(), getter.unread) << getter.name;
    }
}

struct AttributeGetter {
    const char* name;
    bool (XPrinter::*get)() const;
    DWORD attribute;
};

const AttributeGetter attributeGetters[] = {
    {"IsLocal",   &XPrinter::IsLocal,   0x40},
    {"IsNetwork", &XPrinter::IsNetwork, 0x10},
    {"IsShared",  &XPrinter::IsShared,  0x08},
};

TEST_F(XPrinterTest, AttributeGettersReadTheirBit)
{
    for (const AttributeGetter& getter : attributeGetters) {
        ::SpoolerSetPrinterAttributes(printerName, getter.attribute);
        EXPECT_TRUE((xPrinter.Get()->*getter.get)()) << getter.name;
        ::SpoolerSetPrinterAttributes(printerName, ~getter.attribute);
        EXPECT_FALSE((xPrinter.Get()->*getter.get)()) << getter.name;
    }
}

TEST_F(XPrinterTest, AttributeGettersAreFalseForAFailedRead)
{
    for (const AttributeGetter& getter : attributeGetters) {
        ::SpoolerSetPrinterAttributes(printerName, getter.attribute);
        FailNext(SpoolerCall::GetPrinterW, ERROR_ACCESS_DENIED);
        EXPECT_FALSE((xPrinter.Get()->*getter.get)()) << getter.name;
    }
}

// ---- plain setters ----

TEST_F(XPrinterTest, SetterWritesItsFieldAndLeavesTheOthers)
{
    xPrinter->SetComment(OString("New comment"));
    std::vector<BYTE> buffer;
    const PRINTER_INFO_2W& printer = Peek(buffer);
    EXPECT_STREQ(printer.pComment, L"New comment");
    EXPECT_STREQ(printer.pPrinterName, L"Label");
    EXPECT_STREQ(printer.pShareName, L"LABELS");
    EXPECT_STREQ(printer.pPortName, L"LPT1:");
    EXPECT_STREQ(printer.pDriverName, L"Label Driver");
    EXPECT_STREQ(printer.pLocation, L"Gate 7");
    EXPECT_EQ(printer.Attributes, DWORD{PRINTER_ATTRIBUTE_LOCAL | PRINTER_ATTRIBUTE_SHARED});
    EXPECT_EQ(printer.DefaultPriority, 7u);
    EXPECT_EQ(printer.StartTime, 60u);
    EXPECT_EQ(printer.UntilTime, 120u);
}

TEST_F(XPrinterTest, SetterReadsTwiceAndWritesOnceAtLevel2)
{
    xPrinter->SetComment(OString("New comment"));
    EXPECT_EQ(::SpoolerCalls(SpoolerCall::GetPrinterW, 2, printerName), 2u);
    EXPECT_EQ(::SpoolerCalls(SpoolerCall::SetPrinterW, 2, printerName), 1u);
    EXPECT_EQ(::SpoolerLogLength(), 3u);
    EXPECT_EQ(SpoolerLog().back().command, 0u);
}

TEST_F(XPrinterTest, SetLocationWritesTheLocation)
{
    xPrinter->SetLocation(OString("Gate 8"));
    EXPECT_EQ(xPrinter->GetLocation(), "Gate 8");
}

TEST_F(XPrinterTest, EmptyTextsCanBeWritten)
{
    xPrinter->SetComment(OString());
    EXPECT_TRUE(xPrinter->GetComment().IsEmpty());
}

TEST_F(XPrinterTest, NumberSettersWriteTheirField)
{
    xPrinter->SetDefaultPriority(33);
    xPrinter->SetStartTime(1);
    xPrinter->SetUntilTime(2);
    EXPECT_EQ(xPrinter->GetDefaultPriority(), 33u);
    EXPECT_EQ(xPrinter->GetStartTime(), 1u);
    EXPECT_EQ(xPrinter->GetUntilTime(), 2u);
}

TEST_F(XPrinterTest, SettersThatIgnoreTheResultOfTheWriteLookLikeSuccess)
{
    for (int i = 0; i < 5; ++i) FailNext(SpoolerCall::SetPrinterW, ERROR_ACCESS_DENIED);
    xPrinter->SetComment(OString("New"));
    xPrinter->SetLocation(OString("New"));
    xPrinter->SetDefaultPriority(99);
    xPrinter->SetStartTime(99);
    xPrinter->SetUntilTime(99);
    EXPECT_EQ(xPrinter->GetComment(), "Shipping labels");
    EXPECT_EQ(SpoolerCalls(SpoolerCall::SetPrinterW), 5u);
}

TEST_F(XPrinterTest, SettersDoNothingWhenTheReadFails)
{
    for (int i = 0; i < 7; ++i) FailNext(SpoolerCall::GetPrinterW, ERROR_ACCESS_DENIED);
    xPrinter->SetComment(OString("New"));
    xPrinter->SetLocation(OString("New"));
    xPrinter->SetDefaultPriority(99);
    xPrinter->SetStartTime(99);
    xPrinter->SetUntilTime(99);
    xPrinter->SetPortName(OString("LPT2:"));
    xPrinter->SetShareName(OString("NEW"));
    EXPECT_EQ(SpoolerCalls(SpoolerCall::SetPrinterW), 0u);
}

TEST_F(XPrinterTest, PrinterWithTheRightToUseOnlyRefusesItsSetters)
{
    ::SpoolerSetGrantedAccess(printerName, PRINTER_ACCESS_USE);
    Reopen();
    xPrinter->SetComment(OString("New"));
    xPrinter->SetLocation(OString("New"));
    EXPECT_THROW(xPrinter->SetPortName(OString("LPT1:")), SystemError_E);
    EXPECT_THROW(xPrinter->SetShareName(OString("NEW")), SystemError_E);
    EXPECT_THROW(xPrinter->SetShared(false), SystemError_E);
    EXPECT_EQ(xPrinter->GetComment(), "Shipping labels");
    EXPECT_EQ(xPrinter->GetLocation(), "Gate 7");
}

// ---- port ----

TEST_F(XPrinterTest, SetPortNameMovesThePrinterToAnotherPort)
{
    SpoolerPort port;
    port.name = L"LPT2:";
    ASSERT_EQ(::SpoolerAddPort(port), 0u);
    xPrinter->SetPortName(OString("LPT2:"));
    EXPECT_EQ(xPrinter->GetPortName(), "LPT2:");
}

TEST_F(XPrinterTest, UnknownPortIsAnInvalidPort)
{
    EXPECT_THROW(xPrinter->SetPortName(OString("No such port")), InvalidPort_E);
    EXPECT_EQ(xPrinter->GetPortName(), "LPT1:");
}

template <class Work>
HRESULT ResultOf(Work&& work)
{
    try {
        work();
        return S_OK;
    } catch (const VRException& exception) {
        return exception.GetResult();
    }
}

TEST_F(XPrinterTest, OtherFailureOfThePortWriteIsASystemError)
{
    FailNext(SpoolerCall::SetPrinterW, ERROR_ACCESS_DENIED);
    EXPECT_EQ(ResultOf([&] { xPrinter->SetPortName(OString("LPT1:")); }), HRESULT_FROM_WIN32(ERROR_ACCESS_DENIED));
}

// ---- sharing ----

TEST_F(XPrinterTest, ShareNameTurnsSharingOn)
{
    ::SpoolerSetPrinterAttributes(printerName, PRINTER_ATTRIBUTE_LOCAL);
    xPrinter->SetShareName(OString("GATE7"));
    EXPECT_EQ(xPrinter->GetShareName(), "GATE7");
    EXPECT_TRUE(xPrinter->IsShared());
}

TEST_F(XPrinterTest, EmptyShareNameTurnsSharingOff)
{
    xPrinter->SetShareName(OString());
    EXPECT_TRUE(xPrinter->GetShareName().IsEmpty());
    EXPECT_FALSE(xPrinter->IsShared());
    EXPECT_TRUE(xPrinter->IsLocal());
}

TEST_F(XPrinterTest, ShareNameWithAForbiddenCharacterNeverReachesTheSpooler)
{
    for (const char* name : {"a/b", "a\\b", "a,b", "/", "\\", ","}) {
        EXPECT_THROW(xPrinter->SetShareName(OString(name)), PrinterShareNameNotValid_E) << name;
    }
    EXPECT_EQ(::SpoolerLogLength(), 0u);
}

TEST_F(XPrinterTest, ShareNameThatTheSpoolerRefusesIsNotValid)
{
    FailNext(SpoolerCall::SetPrinterW, ERROR_INVALID_SHARENAME);
    EXPECT_THROW(xPrinter->SetShareName(OString("NEW")), PrinterShareNameNotValid_E);
}

TEST_F(XPrinterTest, OtherFailureOfTheShareWriteIsASystemError)
{
    FailNext(SpoolerCall::SetPrinterW, ERROR_NOT_ENOUGH_MEMORY);
    EXPECT_EQ(ResultOf([&] { xPrinter->SetShareName(OString("NEW")); }), HRESULT_FROM_WIN32(ERROR_NOT_ENOUGH_MEMORY));
}

TEST_F(XPrinterTest, SharingWhatIsSharedWritesNothing)
{
    xPrinter->SetShared(true);
    EXPECT_EQ(SpoolerCalls(SpoolerCall::SetPrinterW), 0u);
}

TEST_F(XPrinterTest, UnsharingWhatIsNotSharedWritesNothing)
{
    ::SpoolerSetPrinterAttributes(printerName, PRINTER_ATTRIBUTE_LOCAL);
    xPrinter->SetShared(false);
    EXPECT_EQ(SpoolerCalls(SpoolerCall::SetPrinterW), 0u);
}

TEST_F(XPrinterTest, SharingKeepsTheShareNameThatIsThere)
{
    ::SpoolerSetPrinterAttributes(printerName, PRINTER_ATTRIBUTE_LOCAL);
    xPrinter->SetShared(true);
    EXPECT_TRUE(xPrinter->IsShared());
    EXPECT_EQ(xPrinter->GetShareName(), "LABELS");
}

TEST_F(XPrinterTest, UnsharingKeepsTheShareName)
{
    xPrinter->SetShared(false);
    EXPECT_FALSE(xPrinter->IsShared());
    EXPECT_EQ(xPrinter->GetShareName(), "LABELS");
}

class UnnamedShareTest : public SpoolerTest {
protected:
    static XPrinterRef Open(const wchar_t* name)
    {
        SpoolerPrinter printer = LabelPrinter();
        printer.printerName = name;
        printer.shareName = L"";
        printer.attributes = PRINTER_ATTRIBUTE_LOCAL;
        AddPrinter(printer);
        return XPrinterRef::Acquire(OString(name));
    }
};

TEST_F(UnnamedShareTest, SharingTakesThePrintersOwnName)
{
    const XPrinterRef xPrinter = Open(L"Gate 7");
    xPrinter->SetShared(true);
    EXPECT_TRUE(xPrinter->IsShared());
    EXPECT_EQ(xPrinter->GetShareName(), "Gate 7");
}

TEST_F(UnnamedShareTest, SharingUnderANameWithASlashIsRefused)
{
    const XPrinterRef xPrinter = Open(L"Gate/7");
    EXPECT_THROW(xPrinter->SetShared(true), PrinterShareNameNotValid_E);
    EXPECT_FALSE(xPrinter->IsShared());
}

TEST_F(XPrinterTest, FailedReadWhileSharingIsASystemError)
{
    FailNext(SpoolerCall::GetPrinterW, ERROR_ACCESS_DENIED, 3); // after the two calls that read the attribute
    EXPECT_EQ(ResultOf([&] { xPrinter->SetShared(false); }), HRESULT_FROM_WIN32(ERROR_ACCESS_DENIED));
}

TEST_F(XPrinterTest, FailedWriteWhileSharingIsASystemError)
{
    FailNext(SpoolerCall::SetPrinterW, ERROR_ACCESS_DENIED);
    EXPECT_EQ(ResultOf([&] { xPrinter->SetShared(false); }), HRESULT_FROM_WIN32(ERROR_ACCESS_DENIED));
    EXPECT_TRUE(xPrinter->IsShared());
}

// ---- queue ----

struct QueueCommand {
    const char* name;
    void (XPrinter::*run)();
    DWORD command;
};

const QueueCommand queueCommands[] = {
    {"Pause",  &XPrinter::Pause,  1},
    {"Resume", &XPrinter::Resume, 2},
    {"Purge",  &XPrinter::Purge,  3},
};

TEST_F(XPrinterTest, QueueCommandsGoOutAtLevel0)
{
    for (const QueueCommand& row : queueCommands) {
        ::SpoolerClearLog();
        (xPrinter.Get()->*row.run)();
        ASSERT_EQ(::SpoolerLogLength(), 1u) << row.name;
        EXPECT_EQ(SpoolerLog()[0].call, SpoolerCall::SetPrinterW) << row.name;
        EXPECT_EQ(SpoolerLog()[0].level, 0u) << row.name;
        EXPECT_EQ(SpoolerLog()[0].command, row.command) << row.name;
    }
}

TEST_F(XPrinterTest, RefusedQueueCommandGoesUnnoticed)
{
    for (const QueueCommand& row : queueCommands) {
        FailNext(SpoolerCall::SetPrinterW, ERROR_ACCESS_DENIED);
        EXPECT_NO_THROW((xPrinter.Get()->*row.run)()) << row.name;
    }
}

TEST_F(XPrinterTest, EnumJobIdsGivesTheQueueInItsOrder)
{
    const DWORD first = AddJob({});
    const DWORD second = AddJob({});
    OTypedArray<unsigned long> ids;
    EXPECT_TRUE(xPrinter->EnumJobIds(ids));
    ASSERT_EQ(ids.GetSize(), 2);
    EXPECT_EQ(ids.GetAt(0), first);
    EXPECT_EQ(ids.GetAt(1), second);
    EXPECT_EQ(::SpoolerCalls(SpoolerCall::EnumJobsW, 3, printerName), 2u);
}

TEST_F(XPrinterTest, EmptyQueueGivesNoJobAndIsNoFailure)
{
    OTypedArray<unsigned long> ids;
    EXPECT_TRUE(xPrinter->EnumJobIds(ids));
    EXPECT_TRUE(ids.IsEmpty());
}

TEST_F(XPrinterTest, EnumJobIdsAsksForTheWholeQueue)
{
    static DWORD jobsAskedFor;
    static decltype(&::EnumJobsW) original;
    jobsAskedFor = 0;
    const ImportHook<decltype(::EnumJobsW)> hook("EnumJobsW", [](HANDLE printer, DWORD first, DWORD count, DWORD level,
                                                                 BYTE* buffer, DWORD size, DWORD* needed,
                                                                 DWORD* returned) {
        jobsAskedFor = count;
        return original(printer, first, count, level, buffer, size, needed, returned);
    });
    original = hook.Original();
    OTypedArray<unsigned long> ids;
    xPrinter->EnumJobIds(ids);
    EXPECT_EQ(jobsAskedFor, 0xFFFFFFFF);
}

TEST_F(XPrinterTest, SmallBufferThatNeedsNothingIsAnEmptyQueue)
{
    AddJob({});
    ::SpoolerClearLog();
    FailNext(SpoolerCall::EnumJobsW, ERROR_INSUFFICIENT_BUFFER);
    OTypedArray<unsigned long> ids;
    EXPECT_TRUE(xPrinter->EnumJobIds(ids));
    EXPECT_TRUE(ids.IsEmpty());
    EXPECT_EQ(SpoolerCalls(SpoolerCall::EnumJobsW), 1u);
}

TEST_F(XPrinterTest, SuccessThatTellsASizeIsReadOnceMore)
{
    const DWORD job = AddJob({});
    SpoolerFailure sizeTold;
    sizeTold.call = SpoolerCall::EnumJobsW;
    sizeTold.effect = SpoolerEffect::SucceedEmpty;
    sizeTold.bytes = 4096;
    ::SpoolerInject(sizeTold);
    OTypedArray<unsigned long> ids;
    EXPECT_TRUE(xPrinter->EnumJobIds(ids));
    ASSERT_EQ(ids.GetSize(), 1);
    EXPECT_EQ(ids.GetAt(0), job);
}

TEST_F(XPrinterTest, MoreJobsThanTheAnswerHasRoomForAreNotBelieved)
{
    AddJob({});
    static decltype(&::EnumJobsW) original;
    const ImportHook<decltype(::EnumJobsW)> hook("EnumJobsW", [](HANDLE printer, DWORD first, DWORD count, DWORD level,
                                                                 BYTE* buffer, DWORD size, DWORD* needed,
                                                                 DWORD* returned) {
        const BOOL answer = original(printer, first, count, level, buffer, size, needed, returned);
        *returned = 0x10000000;
        return answer;
    });
    original = hook.Original();
    OTypedArray<unsigned long> ids;
    EXPECT_TRUE(xPrinter->EnumJobIds(ids));
    EXPECT_LT(ids.GetSize(), 100);
}

TEST_F(XPrinterTest, EnumJobIdsFailsWhenTheFirstCallFails)
{
    AddJob({});
    FailNext(SpoolerCall::EnumJobsW, ERROR_ACCESS_DENIED);
    OTypedArray<unsigned long> ids;
    EXPECT_FALSE(xPrinter->EnumJobIds(ids));
    EXPECT_TRUE(ids.IsEmpty());
}

TEST_F(XPrinterTest, EnumJobIdsFailsWhenTheSecondCallFails)
{
    AddJob({});
    FailNext(SpoolerCall::EnumJobsW, ERROR_ACCESS_DENIED, 2);
    OTypedArray<unsigned long> ids;
    EXPECT_FALSE(xPrinter->EnumJobIds(ids));
    EXPECT_TRUE(ids.IsEmpty());
}

TEST_F(XPrinterTest, StatusTextComesFromTheDriver)
{
    ::SpoolerSetPrinterStatus(printerName, PRINTER_STATUS_PAPER_JAM | PRINTER_STATUS_PAPER_OUT);
    EXPECT_EQ(xPrinter->GetStatusText(), "Paper Jam, Paper Out");
}

// ---- the printer's lock ----

TEST_F(XPrinterTest, StatusTextIsReadUnderTheLock)
{
    const HeldCall statusRead(SpoolerCall::EnumJobsW);
    const BackgroundCall reader([this] { xPrinter->GetStatusText(); });
    ASSERT_TRUE(statusRead.WaitUntilMade());
    const BackgroundCall other([this] { xPrinter->GetComment(); });
    EXPECT_TRUE(other.IsHeldUp());
    statusRead.Release();
    EXPECT_TRUE(other.Ends());
}

TEST_F(XPrinterTest, FileIsSentWithoutTheLock)
{
    const TemporaryDirectory folder;
    const std::wstring file = folder.Make(L"label.lbl", "label");
    const HeldCall write(SpoolerCall::WritePrinter);
    const BackgroundCall sender([&] { xPrinter->SendFile(OString(file.c_str()), OString()); });
    ASSERT_TRUE(write.WaitUntilMade());
    const BackgroundCall other([this] { xPrinter->GetComment(); });
    EXPECT_TRUE(other.Ends());
    write.Release();
}

TEST_F(XPrinterTest, QueueCommandsTakeNoLock)
{
    const HeldCall read(SpoolerCall::GetPrinterW);
    const BackgroundCall reader([this] { xPrinter->GetComment(); });
    ASSERT_TRUE(read.WaitUntilMade());
    const BackgroundCall commands([this] {
        for (const QueueCommand& row : queueCommands) (xPrinter.Get()->*row.run)();
    });
    EXPECT_TRUE(commands.Ends());
    read.Release();
}

TEST_F(XPrinterTest, PrinterIsFoundInThePoolWhileItsLockIsHeld)
{
    const HeldCall read(SpoolerCall::GetPrinterW);
    const BackgroundCall reader([this] { xPrinter->GetComment(); });
    ASSERT_TRUE(read.WaitUntilMade());
    const BackgroundCall other([] { XPrinterRef::Acquire(OString(printerName)); });
    EXPECT_TRUE(other.Ends());
    read.Release();
}

// ---- objects with sinks ----

TEST_F(XPrinterTest, PrintersAndQueuesAreListsOfTheirOwn)
{
    RecordingSinkOwner printer;
    RecordingSinkOwner queue;
    xPrinter->AddPrinterReference(printer);
    EXPECT_TRUE(xPrinter->HasPrinterReferences());
    EXPECT_FALSE(xPrinter->HasQueueReferences());
    xPrinter->AddQueueReference(queue);
    xPrinter->RemovePrinterReference(printer);
    EXPECT_FALSE(xPrinter->HasPrinterReferences());
    EXPECT_TRUE(xPrinter->HasQueueReferences());
    xPrinter->RemoveQueueReference(queue);
    EXPECT_FALSE(xPrinter->HasQueueReferences());
}

TEST_F(XPrinterTest, WalksOverItsPrintersAndQueues)
{
    RecordingSinkOwner printer;
    RecordingSinkOwner queue;
    xPrinter->AddPrinterReference(printer);
    xPrinter->AddQueueReference(queue);
    const auto fire = [](SinkOwner& owner, IDispatch*) { owner.Fire(1, EventArguments()); };
    xPrinter->LockPrinterReferences().ForEach(fire);
    EXPECT_EQ(printer.Fired().size(), 1u);
    EXPECT_TRUE(queue.Fired().empty());
    xPrinter->LockQueueReferences().ForEach(fire);
    EXPECT_EQ(queue.Fired().size(), 1u);
}

TEST_F(XPrinterTest, PropertiesCanBeReadWhileTheReferencesAreLocked)
{
    const auto references = xPrinter->LockPrinterReferences();
    std::jthread([this] { EXPECT_EQ(xPrinter->GetComment(), "Shipping labels"); }).join();
}

// ---- odometer ----

TEST_F(XPrinterTest, OdometerIsCountedByTheJobsCopiesAndPaperAndStored)
{
    DEVMODEW devMode{};
    devMode.dmSize = sizeof devMode;
    devMode.dmFields = DM_COPIES | DM_PAPERLENGTH;
    devMode.dmCopies = 2;
    devMode.dmPaperLength = 1000;
    {
        const XJobRef job = XJobRef::Acquire(*xPrinter, 1);
        job->SetDevMode(devMode);
        xPrinter->UpdateOdometer(1, *job, 3);
    }
    EXPECT_EQ(xPrinter->GetOdometer(), Odometer(6, 600.0));
    Reopen();
    EXPECT_EQ(xPrinter->GetOdometer(), Odometer(6, 600.0));
}

// ---- the notification thread ----

/// Counts the threads that are begun.
class CountedThreads {
public:
    CountedThreads()
    {
        begun = 0;
        original = _hook.Original();
    }

    static inline int begun;

private:
    static inline decltype(&::_beginthreadex) original;
    const ImportHook<decltype(::_beginthreadex)> _hook{
        "_beginthreadex",
        [](void* security, unsigned stack, _beginthreadex_proc_type run, void* argument, unsigned flags, unsigned* id) {
            ++begun;
            return original(security, stack, run, argument, flags, id);
        }};
};

TEST_F(XPrinterTest, StatusThreadStartsOnceAndEndsWithThePrinter)
{
    const CountedThreads threads;
    xPrinter->StartStatusThread();
    xPrinter->StartStatusThread();
    EXPECT_EQ(threads.begun, 1);
    xPrinter.Release();
    EXPECT_EQ(XPrinterPool::GetCount(), 0);
}

TEST_F(XPrinterTest, StatusThreadWithoutMemoryIsStartedTheNextTime)
{
    const CountedThreads threads;
    int allowed = 0;
    for (bool failed = true; failed; ++allowed) {
        const AllocationFailure noMemory(allowed);
        try {
            xPrinter->StartStatusThread();
        } catch (const std::bad_alloc&) {
            EXPECT_EQ(threads.begun, 0) << allowed;
        }
        failed = AllocationFailure::Happened();
    }
    EXPECT_GE(allowed, 3); // the worker, its runner, and the attempt that had enough
    EXPECT_EQ(threads.begun, 1);
}

} // namespace
