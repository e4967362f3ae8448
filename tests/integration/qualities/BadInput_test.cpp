// SPDX-License-Identifier: MIT
#include "support/RowName.h"
#include "support/product/IntegrationTest.h"
#include "support/com/LateBound.h"
#include "support/product/ProductDialogs.h"
#include "support/TemporaryDirectory.h"
#include "support/com/Getters.h"

#include "foundation/OHandle.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

constexpr size_t longLength = 10000;

class BadInput : public IntegrationTest {
protected:
    static std::wstring Comment(IPrinter& printer) { return Text(printer, &IPrinter::get_Comment); }

    std::vector<BYTE> buffer;
};

// Names of printers

struct NameRow {
    const char* name;
    std::wstring printer;
};

class UnknownName : public BadInput, public ::testing::WithParamInterface<NameRow> {};

TEST_P(UnknownName, FailsAndTheObjectCanBeBoundBehindIt)
{
    const auto printer = CreatePrinter();
    EXPECT_EQ(AnswerOf(Initialize(*printer.Get(), GetParam().printer)), couldNotOpenPrinter);
    EXPECT_EQ(AnswerOf(Initialize(*printer.Get(), printerName)), succeeded);
    EXPECT_EQ(Comment(*printer.Get()), L"Shipping labels");
}

const std::wstring longName(longLength, L'x');
const std::wstring loneSurrogate(1, wchar_t{0xD800});

const NameRow unknownNames[] = {
    {"Empty",            L""                  },
    {"Blank",            L" "                 },
    {"Long",             longName             },
    {"Commas",           L",,,"               },
    {"SlashesAndCommas", L"/,\\,/,\\"         },
    {"Server",           L"\\\\NOWHERE"       },
    {"PrinterOfServer",  L"\\\\NOWHERE\\Label"},
    {"Backslashes",      L"\\\\\\\\"          },
    {"Job",              L"Label, Job 77"     },
    {"Pattern",          L"La*"               },
    {"ControlCharacter", L"Lab\tel"           },
    {"LoneSurrogate",    loneSurrogate        },
};

INSTANTIATE_TEST_SUITE_P(Each, UnknownName, ::testing::ValuesIn(unknownNames), rowName);

class OddName : public BadInput, public ::testing::WithParamInterface<NameRow> {};

TEST_P(OddName, BindsAPrinterThatHasIt)
{
    AddPrinterNamed(GetParam().printer.c_str());
    const auto printer = BoundPrinter(GetParam().printer);
    EXPECT_EQ(Text(*printer.Get(), &IPrinter::get_Name), GetParam().printer);
    EXPECT_EQ(Comment(*printer.Get()), L"Shipping labels");
}

const NameRow oddNames[] = {
    {"Comma",    L"Labels, small"       },
    {"Slash",    L"Gate 7/8"            },
    {"Both",     L"/,/,/"               },
    {"Emoji",    L"Etiketten \U0001F3F7"},
    {"EastAsia", L"\u30E9\u30D9\u30EB"  },
    {"Percent",  L"%s%n%d"              },
    {"Quotes",   L"\"Label\""           },
};

INSTANTIATE_TEST_SUITE_P(Each, OddName, ::testing::ValuesIn(oddNames), rowName);

// Share names

class ForbiddenInShareName : public BadInput, public ::testing::WithParamInterface<const wchar_t*> {};

TEST_P(ForbiddenInShareName, IsRefusedBeforeTheSpoolerSeesIt)
{
    const auto printer = BoundPrinter();
    const auto calls = ::SpoolerLogLength();
    EXPECT_EQ(AnswerOf(printer->put_ShareName(NewBstr(GetParam()).Get())), shareNameNotValid);
    EXPECT_EQ(::SpoolerLogLength(), calls);
    EXPECT_STREQ(Peek(buffer).pShareName, L"LABELS");
}

INSTANTIATE_TEST_SUITE_P(Names, ForbiddenInShareName,
                         ::testing::Values(L"/", L"\\", L",", L"/SHARE", L"SH\\ARE", L"SHARE,", L"/\\,"));

TEST_F(BadInput, LongShareNameIsRefusedByTheSpooler)
{
    const auto printer = BoundPrinter();
    EXPECT_EQ(AnswerOf(printer->put_ShareName(NewBstr(std::wstring(longLength, L'S')).Get())), shareNameNotValid);
    EXPECT_STREQ(Peek(buffer).pShareName, L"LABELS");
}

// Long texts

TEST_F(BadInput, LongCommentAndLocationComeBackWhole)
{
    const std::wstring text(longLength, L'\u00E9');
    const auto printer = BoundPrinter();
    EXPECT_EQ(printer->put_Comment(NewBstr(text).Get()), S_OK);
    EXPECT_EQ(printer->put_Location(NewBstr(text).Get()), S_OK);
    EXPECT_EQ(Comment(*printer.Get()), text);
    EXPECT_EQ(Text(*printer.Get(), &IPrinter::get_Location), text);
}

TEST_F(BadInput, LongPortNameIsRefused)
{
    const auto printer = BoundPrinter();
    EXPECT_EQ(AnswerOf(printer->put_PortName(NewBstr(std::wstring(longLength, L'P')).Get())), invalidPort);
}

TEST_F(BadInput, TextEndsAtAZeroInside)
{
    const auto printer = BoundPrinter();
    EXPECT_EQ(printer->put_Comment(NewBstr(std::wstring_view(L"seen\0hidden", 11)).Get()), S_OK);
    EXPECT_EQ(Comment(*printer.Get()), L"seen");
}

// Null texts

TEST_F(BadInput, NullNameIsAnEmptyNameAndFails)
{
    const auto printer = CreatePrinter();
    EXPECT_EQ(AnswerOf(printer->Initialize(nullptr)), couldNotOpenPrinter);
}

TEST_F(BadInput, NullNameUnbindsABoundPrinter)
{
    const auto printer = BoundPrinter();
    EXPECT_EQ(AnswerOf(printer->Initialize(nullptr)), couldNotOpenPrinter);
    OwnedBstr name;
    EXPECT_EQ(AnswerOf(printer->get_Name(name.Receive())), printerNotInitialized);
}

TEST_F(BadInput, NullShareNameTurnsSharingOff)
{
    const auto printer = BoundPrinter();
    EXPECT_EQ(AnswerOf(printer->put_ShareName(nullptr)), succeeded);
    EXPECT_EQ(Bool(*printer.Get(), &IPrinter::get_Shared), VARIANT_FALSE);
}

TEST_F(BadInput, NullPortNameIsNoPort)
{
    const auto printer = BoundPrinter();
    EXPECT_EQ(AnswerOf(printer->put_PortName(nullptr)), invalidPort);
    EXPECT_STREQ(Peek(buffer).pPortName, L"LPT1:");
}

TEST_F(BadInput, NullCommentAndLocationAreEmptied)
{
    const auto printer = BoundPrinter();
    EXPECT_EQ(AnswerOf(printer->put_Comment(nullptr)), succeeded);
    EXPECT_EQ(AnswerOf(printer->put_Location(nullptr)), succeeded);
    EXPECT_EQ(Comment(*printer.Get()), L"");
    EXPECT_EQ(Text(*printer.Get(), &IPrinter::get_Location), L"");
}

TEST_F(BadInput, NullFileNameSendsNothing)
{
    const auto printer = BoundPrinter();
    EXPECT_EQ(AnswerOf(printer->SendFile(nullptr, nullptr)), saysFalse);
    EXPECT_EQ(SpoolerCalls(SpoolerCall::StartDocPrinterW), 0u);
}

// Late-bound arguments of the wrong kind or number

TEST_F(BadInput, ScriptThatForgetsAnArgumentIsTold)
{
    const auto printer = BoundPrinter();
    EXPECT_TRUE(FAILED(LateBound(printer.Get()).Call("Initialize", {}).result));
    EXPECT_TRUE(FAILED(LateBound(printer.Get()).Call("SendFile", {L"C:\\label.lbl"}).result));
    EXPECT_EQ(Text(*printer.Get(), &IPrinter::get_Name), L"Label");
}

TEST_F(BadInput, ScriptThatGivesAnObjectForATextIsTold)
{
    const auto printer = BoundPrinter();
    const auto status = StatusOf(*printer.Get());
    EXPECT_TRUE(FAILED(LateBound(printer.Get()).Call("Initialize", {status.Get()}).result));
    EXPECT_TRUE(FAILED(LateBound(printer.Get()).Put("Comment", status.Get()).result));
    EXPECT_EQ(Comment(*printer.Get()), L"Shipping labels");
}

TEST_F(BadInput, NumberFromAScriptIsATextInDigits)
{
    const auto printer = BoundPrinter();
    EXPECT_EQ(LateBound(printer.Get()).Put("Comment", 4711L).result, S_OK);
    EXPECT_EQ(Comment(*printer.Get()), L"4711");
}

TEST_F(BadInput, ScriptThatWritesAReadOnlyPropertyIsTold)
{
    const auto printer = BoundPrinter();
    EXPECT_TRUE(FAILED(LateBound(printer.Get()).Put("Name", L"Other").result));
    EXPECT_TRUE(FAILED(LateBound(printer.Get()).Put("ModelName", L"Other").result));
    EXPECT_EQ(Text(*printer.Get(), &IPrinter::get_Name), L"Label");
}

TEST_F(BadInput, UnknownMemberIsUnknown)
{
    const auto printer = BoundPrinter();
    EXPECT_EQ(LateBound(printer.Get()).Get("Colour").result, DISP_E_UNKNOWNNAME);
}

// Wild pointers

TEST_F(BadInput, WildOutPointerIsAnInternalFailureThatAPersonIsTold)
{
    const auto printer = BoundPrinter();
    const ProductDialogs dialogs(Product());
    auto* const wild = reinterpret_cast<BSTR*>(0x10);
    EXPECT_EQ(AnswerOf(printer->get_Name(wild)), SystemAnswer(ERROR_INVALID_ADDRESS));
    EXPECT_THAT(dialogs.Texts(), ElementsAre(HasSubstr("Caught in [Printer::get_Name]")));
    EXPECT_EQ(Comment(*printer.Get()), L"Shipping labels");
}

TEST_F(BadInput, WildTextIsAnInternalFailureThatLeavesThePrinterAsItWas)
{
    const auto printer = BoundPrinter();
    const ProductDialogs dialogs(Product());
    EXPECT_EQ(AnswerOf(printer->put_Comment(reinterpret_cast<BSTR>(0x10))), SystemAnswer(ERROR_INVALID_ADDRESS));
    EXPECT_THAT(dialogs.Texts(), ElementsAre(HasSubstr("Caught in [Printer::put_Comment]")));
    EXPECT_EQ(Comment(*printer.Get()), L"Shipping labels");
}

// Files

class BadFile : public BadInput {
protected:
    static Answer Send(IPrinter& printer, const std::wstring& file)
    {
        return AnswerOf(printer.SendFile(NewBstr(file).Get(), NewBstr(L"Order").Get()));
    }

    const TemporaryDirectory folder;
};

TEST_F(BadFile, MissingSaysFalse)
{
    const auto printer = BoundPrinter();
    EXPECT_EQ(Send(*printer.Get(), folder.Path(L"missing.lbl")), saysFalse);
    EXPECT_EQ(SpoolerCalls(SpoolerCall::StartDocPrinterW), 0u);
}

TEST_F(BadFile, FolderSaysFalse)
{
    const auto printer = BoundPrinter();
    EXPECT_EQ(Send(*printer.Get(), folder.Path()), saysFalse);
    EXPECT_EQ(SpoolerCalls(SpoolerCall::StartDocPrinterW), 0u);
}

TEST_F(BadFile, LongPathSaysFalse)
{
    const auto printer = BoundPrinter();
    EXPECT_EQ(Send(*printer.Get(), std::wstring(longLength, L'f')), saysFalse);
}

TEST_F(BadFile, LockedByAnotherSaysFalseAndGoesOutWhenItIsFree)
{
    const auto file = folder.Make(L"locked.lbl", "TEXT 1,1");
    const auto printer = BoundPrinter();
    {
        const OFileHandle lock(
            ::CreateFileW(file.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
        ASSERT_TRUE(lock);
        EXPECT_EQ(Send(*printer.Get(), file), saysFalse);
        EXPECT_EQ(SpoolerCalls(SpoolerCall::StartDocPrinterW), 0u);
    }
    EXPECT_EQ(Send(*printer.Get(), file), succeeded);
}

TEST_F(BadFile, EmptyGoesOutAsADocumentWithOneWriteOfNothing)
{
    const auto printer = BoundPrinter();
    EXPECT_EQ(Send(*printer.Get(), folder.Make(L"empty.lbl", "")), succeeded);
    EXPECT_EQ(SpoolerCalls(SpoolerCall::StartDocPrinterW), 1u);
    EXPECT_EQ(SpoolerCalls(SpoolerCall::StartPagePrinter), 1u);
    EXPECT_EQ(SpoolerCalls(SpoolerCall::WritePrinter), 1u);
    EXPECT_EQ(SpoolerCalls(SpoolerCall::EndPagePrinter), 1u);
    EXPECT_EQ(SpoolerCalls(SpoolerCall::EndDocPrinter), 1u);
    EXPECT_EQ(SentBytes(), "");
}

TEST_F(BadFile, HugeGoesOutWhole)
{
    std::string contents(size_t{64} << 20, '\0');
    unsigned value = 1;
    std::ranges::generate(contents, [&] { return static_cast<char>((value = value * 1664525 + 1013904223) >> 24); });
    const auto printer = BoundPrinter();
    EXPECT_EQ(Send(*printer.Get(), folder.Make(L"huge.lbl", contents)), succeeded);
    EXPECT_TRUE(SentBytes() == contents); // not to be printed
}

TEST_F(BadFile, NameOfAnotherAlphabetGoesOut)
{
    const auto printer = BoundPrinter();
    EXPECT_EQ(Send(*printer.Get(), folder.Make(L"\u30E9\u30D9\u30EB.lbl", "TEXT 1,1")), succeeded);
    EXPECT_EQ(SentBytes(), "TEXT 1,1");
}

TEST_F(BadFile, LongJobNameIsKept)
{
    const std::wstring name(longLength, L'J');
    const auto printer = BoundPrinter();
    const auto file = folder.Make(L"label.lbl", "TEXT 1,1");
    EXPECT_EQ(AnswerOf(printer->SendFile(NewBstr(file).Get(), NewBstr(name).Get())), succeeded);
    const DWORD jobId = StartedDocument().jobId;
    DWORD needed = 0;
    ::SpoolerPeekJob(printerName, jobId, nullptr, 0, &needed);
    std::vector<BYTE> job(needed);
    ASSERT_EQ(::SpoolerPeekJob(printerName, jobId, job.data(), needed, &needed), 0u);
    EXPECT_EQ(std::wstring(reinterpret_cast<JOB_INFO_2W*>(job.data())->pDocument), name);
}

} // namespace
