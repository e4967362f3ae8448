// SPDX-License-Identifier: MIT
#include "support/RowName.h"
#include "support/product/IntegrationTest.h"
#include "support/product/ProductHeap.h"
#include "support/TemporaryDirectory.h"
#include "support/com/Getters.h"

#include <memory>

namespace {

using ::testing::Combine;
using ::testing::Values;
using ::testing::ValuesIn;

/// Three printers: "Label", shared; "Quiet", not shared, with a share name; "Nameless", not shared, without one. At the
/// end the module has given all its memory back.
class SpoolerFailures : public IntegrationTest {
protected:
    static void SetUpTestSuite() { WarmUp(); }

    void SetUp() override
    {
        IntegrationTest::SetUp();
        AddQuiet();
        AddPrinterNamed(L"Nameless");
        ::SpoolerSetPrinterStatus(printerName, PRINTER_STATUS_PAPER_OUT | PRINTER_STATUS_OFFLINE);
        SpoolerSetNumberData(printerName, L"Gantry", L"Odometer Pages", 1234);
        const double distance = 5.5;
        ::SpoolerSetData(printerName, L"Gantry", L"Odometer Distance", REG_BINARY, &distance, sizeof distance);
        heap = std::make_unique<ProductHeap>(Product());
    }

    void TearDown() override
    {
        EXPECT_EQ(heap->LiveBlocks(), 0u);
        heap.reset();
        IntegrationTest::TearDown();
    }

    static std::wstring Comment(IPrinter& printer) { return Text(printer, &IPrinter::get_Comment); }

    static DWORD Writes() { return SpoolerCalls(SpoolerCall::SetPrinterW); }

    static void ExpectUsable(IPrinter& printer)
    {
        ::SpoolerClearFailures();
        EXPECT_EQ(Text(printer, &IPrinter::get_ModelName), L"Label Driver");
        OwnedBstr text;
        EXPECT_EQ(StatusOf(printer)->get_Text(text.Receive()), S_OK);
    }

    std::unique_ptr<ProductHeap> heap;

private:
    static void AddQuiet()
    {
        SpoolerPrinter quiet = LabelPrinter();
        quiet.printerName = L"Quiet";
        quiet.shareName = L"HUSH";
        quiet.attributes = PRINTER_ATTRIBUTE_LOCAL;
        AddPrinter(quiet);
    }
};

/// Which call fails, and with what.
struct Failing {
    SpoolerCall call;
    DWORD nth;
    DWORD error;
};

// Binding

TEST_F(SpoolerFailures, RefusedAllAccessBindsThePrinterForUse)
{
    FailNext(SpoolerCall::OpenPrinterW, ERROR_ACCESS_DENIED);
    const auto printer = BoundPrinter();
    EXPECT_EQ(SpoolerCalls(SpoolerCall::OpenPrinterW), 2u);
    EXPECT_EQ(SpoolerLog().at(1).access, static_cast<DWORD>(PRINTER_ACCESS_USE));
    EXPECT_EQ(Comment(*printer.Get()), L"Shipping labels");
}

class RefusedOpening : public SpoolerFailures, public ::testing::WithParamInterface<DWORD> {};

TEST_P(RefusedOpening, FailsWithOneResultWhateverTheError)
{
    SpoolerFailure failure;
    failure.call = SpoolerCall::OpenPrinterW;
    failure.error = GetParam();
    failure.count = 2;
    ::SpoolerInject(failure);

    const auto printer = CreatePrinter();
    EXPECT_EQ(AnswerOf(Initialize(*printer.Get(), printerName)), couldNotOpenPrinter);
    EXPECT_EQ(::SpoolerOpenHandles(nullptr), 0u);
    EXPECT_EQ(Initialize(*printer.Get(), printerName), S_OK);
    ExpectUsable(*printer.Get());
}

INSTANTIATE_TEST_SUITE_P(Errors, RefusedOpening,
                         Values(ERROR_ACCESS_DENIED, ERROR_INVALID_PRINTER_NAME, RPC_S_SERVER_UNAVAILABLE,
                                ERROR_NOT_ENOUGH_MEMORY, 0xFFFFFFFF));

class UnreadPrinterData : public SpoolerFailures, public ::testing::WithParamInterface<Failing> {};

TEST_P(UnreadPrinterData, BindsThePrinterAllTheSame)
{
    FailNext(GetParam().call, GetParam().error, GetParam().nth);
    const auto printer = BoundPrinter();
    ExpectUsable(*printer.Get());
}

INSTANTIATE_TEST_SUITE_P(Calls, UnreadPrinterData,
                         Values(Failing{SpoolerCall::GetPrinterDataW, 1, ERROR_ACCESS_DENIED},
                                Failing{SpoolerCall::GetPrinterDataExW, 1, ERROR_ACCESS_DENIED},
                                Failing{SpoolerCall::GetPrinterDataExW, 2, ERROR_ACCESS_DENIED}));

TEST_F(SpoolerFailures, EachOpeningLeavesOneHandleBehindAndAFailedOneNone)
{
    for (DWORD round = 1; round <= 5; ++round) {
        auto printer = BoundPrinter();
        EXPECT_EQ(Initialize(*printer.Get(), L"No such printer"), couldNotOpenPrinter.result);
        printer.Reset();
        EXPECT_EQ(::SpoolerOpenHandles(nullptr), round);
    }
    EXPECT_EQ(SpoolerCalls(SpoolerCall::ClosePrinter), 0u);
}

// Reading

using ReadFailure = std::tuple<PrinterGetter, DWORD, DWORD>;

std::string ReadFailureName(const ::testing::TestParamInfo<ReadFailure>& row)
{
    const auto& [getter, nth, error] = row.param;
    return std::string(getter.name) + "Call" + std::to_string(nth) + "Error" + std::to_string(error);
}

class UnreadText : public SpoolerFailures, public ::testing::WithParamInterface<ReadFailure> {};

TEST_P(UnreadText, IsEmptyWithSuccess)
{
    const auto& [getter, nth, error] = GetParam();
    const auto printer = BoundPrinter();
    FailNext(SpoolerCall::GetPrinterW, error, nth);
    OwnedBstr text;
    EXPECT_EQ(AnswerOf(getter.call(*printer.Get(), text.Receive())), succeeded);
    EXPECT_NE(text.Get(), nullptr);
    EXPECT_EQ(TextOf(text.Get()), L"");
    ExpectUsable(*printer.Get());
}

constexpr DWORD readErrors[] = {ERROR_ACCESS_DENIED, ERROR_INSUFFICIENT_BUFFER, RPC_S_SERVER_UNAVAILABLE};

std::vector<PrinterGetter> TextsFromTheSpooler()
{
    return {std::begin(printerTexts) + 1, std::end(printerTexts)}; // all but the name
}

INSTANTIATE_TEST_SUITE_P(Each, UnreadText, Combine(ValuesIn(TextsFromTheSpooler()), Values(1, 2), ValuesIn(readErrors)),
                         ReadFailureName);

class UnreadFlag : public SpoolerFailures, public ::testing::WithParamInterface<ReadFailure> {};

TEST_P(UnreadFlag, IsFalseWithSuccess)
{
    const auto& [getter, nth, error] = GetParam();
    ::SpoolerSetPrinterAttributes(printerName, 0xFFFFFFFF);
    const auto printer = BoundPrinter();
    FailNext(SpoolerCall::GetPrinterW, error, nth);
    VARIANT_BOOL flag = 99;
    EXPECT_EQ(AnswerOf(getter.call(*printer.Get(), &flag)), succeeded);
    EXPECT_EQ(flag, VARIANT_FALSE);
    ExpectUsable(*printer.Get());
}

INSTANTIATE_TEST_SUITE_P(Each, UnreadFlag, Combine(ValuesIn(printerFlags), Values(1, 2), ValuesIn(readErrors)),
                         ReadFailureName);

TEST_F(SpoolerFailures, ReadThatSucceedsWithoutABufferHasFailed)
{
    const auto printer = BoundPrinter();
    EmptyNext(SpoolerCall::GetPrinterW);
    EXPECT_EQ(Comment(*printer.Get()), L"");
    EXPECT_EQ(SpoolerCalls(SpoolerCall::GetPrinterW), 1u);
}

TEST_F(SpoolerFailures, NameNeedsNoSpooler)
{
    const auto printer = BoundPrinter();
    const auto calls = ::SpoolerLogLength();
    EXPECT_EQ(Text(*printer.Get(), &IPrinter::get_Name), L"Label");
    EXPECT_EQ(::SpoolerLogLength(), calls);
}

TEST_F(SpoolerFailures, DeletedPrinterReadsAsEmptyAndIsStillThereByName)
{
    const auto printer = BoundPrinter();
    ::SpoolerRemovePrinter(printerName);
    EXPECT_EQ(Comment(*printer.Get()), L"");
    EXPECT_EQ(Bool(*printer.Get(), &IPrinter::get_Shared), VARIANT_FALSE);
    EXPECT_EQ(Text(*StatusOf(*printer.Get()).Get(), &IPrinterStatus::get_Text), L"Ready");
    EXPECT_EQ(Text(*printer.Get(), &IPrinter::get_Name), L"Label");
}

// Writing

HRESULT PutShareName(IPrinter& printer)
{
    return printer.put_ShareName(NewBstr(L"NEW").Get());
}

HRESULT PutPortName(IPrinter& printer)
{
    return printer.put_PortName(NewBstr(L"LPT1:").Get());
}

HRESULT PutComment(IPrinter& printer)
{
    return printer.put_Comment(NewBstr(L"New").Get());
}

HRESULT PutLocation(IPrinter& printer)
{
    return printer.put_Location(NewBstr(L"New").Get());
}

HRESULT Share(IPrinter& printer)
{
    return printer.put_Shared(VARIANT_TRUE);
}

HRESULT Unshare(IPrinter& printer)
{
    return printer.put_Shared(VARIANT_FALSE);
}

struct WriteFailure {
    const char* name;
    const wchar_t* printer;
    HRESULT (*put)(IPrinter& printer);
    Failing failing;
    Answer answer;
    DWORD writes; ///< calls to write that are made, the failing one included

    friend std::ostream& operator<<(std::ostream& stream, const WriteFailure& row) { return stream << row.name; }
};

constexpr auto get = SpoolerCall::GetPrinterW;
constexpr auto set = SpoolerCall::SetPrinterW;
const Answer denied = SystemAnswer(ERROR_ACCESS_DENIED);
const Answer badPort = SystemAnswer(ERROR_UNKNOWN_PORT);
const Answer badShare = SystemAnswer(ERROR_INVALID_SHARENAME);

// Deliberate: a setter that cannot read the printer does nothing and says yes.
const WriteFailure writeFailures[] = {
    {"ShareNameSize",         L"Label",    PutShareName, {get, 1, 5},    succeeded,         0},
    {"ShareNameRead",         L"Label",    PutShareName, {get, 2, 5},    succeeded,         0},
    {"ShareNameWrite",        L"Label",    PutShareName, {set, 1, 5},    denied,            1},
    {"ShareNameInvalid",      L"Label",    PutShareName, {set, 1, 1215}, shareNameNotValid, 1},
    {"ShareNameUnknownPort",  L"Label",    PutShareName, {set, 1, 1796}, badPort,           1},
    {"PortNameSize",          L"Label",    PutPortName,  {get, 1, 5},    succeeded,         0},
    {"PortNameRead",          L"Label",    PutPortName,  {get, 2, 5},    succeeded,         0},
    {"PortNameWrite",         L"Label",    PutPortName,  {set, 1, 5},    denied,            1},
    {"PortNameUnknown",       L"Label",    PutPortName,  {set, 1, 1796}, invalidPort,       1},
    {"PortNameInvalidShare",  L"Label",    PutPortName,  {set, 1, 1215}, badShare,          1},
    {"CommentSize",           L"Label",    PutComment,   {get, 1, 5},    succeeded,         0},
    {"CommentRead",           L"Label",    PutComment,   {get, 2, 5},    succeeded,         0},
    {"CommentWrite",          L"Label",    PutComment,   {set, 1, 5},    succeeded,         1},
    {"LocationSize",          L"Label",    PutLocation,  {get, 1, 5},    succeeded,         0},
    {"LocationRead",          L"Label",    PutLocation,  {get, 2, 5},    succeeded,         0},
    {"LocationWrite",         L"Label",    PutLocation,  {set, 1, 5},    succeeded,         1},
    {"ShareStateSize",        L"Quiet",    Share,        {get, 1, 5},    succeeded,         1},
    {"ShareStateRead",        L"Quiet",    Share,        {get, 2, 5},    succeeded,         1},
    {"ShareNameOfShareSize",  L"Quiet",    Share,        {get, 3, 5},    succeeded,         1},
    {"ShareNameOfShareRead",  L"Quiet",    Share,        {get, 4, 5},    succeeded,         1},
    {"ShareSize",             L"Quiet",    Share,        {get, 5, 5},    denied,            0},
    {"ShareRead",             L"Quiet",    Share,        {get, 6, 5},    denied,            0},
    {"ShareWrite",            L"Quiet",    Share,        {set, 1, 5},    denied,            1},
    {"ShareWriteInvalidName", L"Quiet",    Share,        {set, 1, 1215}, badShare,          1},
    {"ShareAnewSize",         L"Nameless", Share,        {get, 5, 5},    succeeded,         0},
    {"ShareAnewRead",         L"Nameless", Share,        {get, 6, 5},    succeeded,         0},
    {"ShareAnewWrite",        L"Nameless", Share,        {set, 1, 5},    denied,            1},
    {"ShareAnewInvalidName",  L"Nameless", Share,        {set, 1, 1215}, shareNameNotValid, 1},
    {"UnshareStateSize",      L"Label",    Unshare,      {get, 1, 5},    succeeded,         0},
    {"UnshareStateRead",      L"Label",    Unshare,      {get, 2, 5},    succeeded,         0},
    {"UnshareSize",           L"Label",    Unshare,      {get, 3, 5},    denied,            0},
    {"UnshareRead",           L"Label",    Unshare,      {get, 4, 5},    denied,            0},
    {"UnshareWrite",          L"Label",    Unshare,      {set, 1, 5},    denied,            1},
};

class FailedWrite : public SpoolerFailures, public ::testing::WithParamInterface<WriteFailure> {};

TEST_P(FailedWrite, AnswersAsTheMemberIsToAnswer)
{
    const auto printer = BoundPrinter(GetParam().printer);
    const auto& [call, nth, error] = GetParam().failing;
    FailNext(call, error, nth);
    EXPECT_EQ(AnswerOf(GetParam().put(*printer.Get())), GetParam().answer);
    EXPECT_EQ(Writes(), GetParam().writes);
    ExpectUsable(*printer.Get());
}

TEST_P(FailedWrite, CanBeDoneAgain)
{
    const auto printer = BoundPrinter(GetParam().printer);
    const auto& [call, nth, error] = GetParam().failing;
    FailNext(call, error, nth);
    GetParam().put(*printer.Get());
    AnswerOf(S_OK);
    EXPECT_EQ(AnswerOf(GetParam().put(*printer.Get())), succeeded);
}

INSTANTIATE_TEST_SUITE_P(Each, FailedWrite, ValuesIn(writeFailures), rowName);

TEST_F(SpoolerFailures, UnreadShareNameSharesThePrinterUnderItsOwn)
{
    const auto printer = BoundPrinter(L"Quiet");
    FailNext(SpoolerCall::GetPrinterW, ERROR_ACCESS_DENIED, 3);
    EXPECT_EQ(AnswerOf(Share(*printer.Get())), succeeded);
    EXPECT_EQ(Text(*printer.Get(), &IPrinter::get_ShareName), L"Quiet");
}

TEST_F(SpoolerFailures, ErrorWithoutSystemTextComesBackAsTheErrorOfLookingForIt)
{
    // Deliberate: the last error is read again after the search for its text, and that search decides the code.
    constexpr DWORD errorWithoutText = 0x20001234;
    const auto printer = BoundPrinter();
    FailNext(SpoolerCall::SetPrinterW, errorWithoutText);
    EXPECT_EQ(AnswerOf(PutPortName(*printer.Get())), (Answer{HRESULT_FROM_WIN32(ERROR_MR_MID_NOT_FOUND), ""}));
}

// Sending

struct SendFailure {
    const char* name;
    SpoolerCall call;
    Answer answer;
    DWORD pagesEnded;
    DWORD documentsEnded;
    Answer again; ///< of a second file after the first

    friend std::ostream& operator<<(std::ostream& stream, const SendFailure& row) { return stream << row.name; }
};

const SendFailure sendFailures[] = {
    {"StartDoc",  SpoolerCall::StartDocPrinterW, saysFalse, 0, 0, succeeded},
    {"StartPage", SpoolerCall::StartPagePrinter, saysFalse, 0, 1, succeeded},
    {"Write",     SpoolerCall::WritePrinter,     saysFalse, 1, 1, succeeded},
    {"EndPage",   SpoolerCall::EndPagePrinter,   succeeded, 1, 1, succeeded},
    {"EndDoc",    SpoolerCall::EndDocPrinter,    succeeded, 1, 1, saysFalse}, // the document is still open
};

class FailedSending : public SpoolerFailures {
protected:
    Answer Send(IPrinter& printer) const
    {
        return AnswerOf(printer.SendFile(NewBstr(file).Get(), NewBstr(L"Order").Get()));
    }

    const TemporaryDirectory folder;
    const std::wstring file = folder.Make(L"label.lbl", "0123456789");
};

class FailedSendingCall : public FailedSending, public ::testing::WithParamInterface<SendFailure> {};

TEST_P(FailedSendingCall, SaysFalseIfNotAllOfTheFileWentOutAndClosesWhatItOpened)
{
    const auto printer = BoundPrinter();
    FailNext(GetParam().call, ERROR_ACCESS_DENIED);
    EXPECT_EQ(Send(*printer.Get()), GetParam().answer);
    EXPECT_EQ(SpoolerCalls(SpoolerCall::EndPagePrinter), GetParam().pagesEnded);
    EXPECT_EQ(SpoolerCalls(SpoolerCall::EndDocPrinter), GetParam().documentsEnded);
    ExpectUsable(*printer.Get());
}

TEST_P(FailedSendingCall, LeavesThePrinterAsTheSpoolerHasIt)
{
    const auto printer = BoundPrinter();
    FailNext(GetParam().call, ERROR_ACCESS_DENIED);
    Send(*printer.Get());
    EXPECT_EQ(Send(*printer.Get()), GetParam().again);
}

INSTANTIATE_TEST_SUITE_P(Each, FailedSendingCall, ValuesIn(sendFailures), rowName);

TEST_F(FailedSending, DocumentWithoutANumberWasNotStarted)
{
    const auto printer = BoundPrinter();
    EmptyNext(SpoolerCall::StartDocPrinterW);
    EXPECT_EQ(Send(*printer.Get()), saysFalse);
    EXPECT_EQ(SpoolerCalls(SpoolerCall::StartPagePrinter), 0u);
}

TEST_F(FailedSending, ShortWritesAreGoneOnWith)
{
    SpoolerFailure shortWrites;
    shortWrites.call = SpoolerCall::WritePrinter;
    shortWrites.effect = SpoolerEffect::ShortWrite;
    shortWrites.bytes = 4;
    shortWrites.count = 2;
    ::SpoolerInject(shortWrites);

    const auto printer = BoundPrinter();
    EXPECT_EQ(Send(*printer.Get()), succeeded);
    EXPECT_EQ(SpoolerCalls(SpoolerCall::WritePrinter), 3u);
    EXPECT_EQ(SentBytes(), "0123456789");
}

TEST_F(FailedSending, WriteThatFailsBehindAPartClosesPageAndDocument)
{
    SpoolerFailure shortWrite;
    shortWrite.call = SpoolerCall::WritePrinter;
    shortWrite.effect = SpoolerEffect::ShortWrite;
    shortWrite.bytes = 4;
    ::SpoolerInject(shortWrite);
    FailNext(SpoolerCall::WritePrinter, ERROR_DISK_FULL, 2);

    const auto printer = BoundPrinter();
    EXPECT_EQ(Send(*printer.Get()), saysFalse);
    EXPECT_EQ(SentBytes(), "0123");
    EXPECT_EQ(SpoolerCalls(SpoolerCall::EndPagePrinter), 1u);
    EXPECT_EQ(SpoolerCalls(SpoolerCall::EndDocPrinter), 1u);
}

// Everything that a member asks of the spooler, failing in turn

struct Member {
    const char* name;
    HRESULT (*call)(IPrinter& printer);

    friend std::ostream& operator<<(std::ostream& stream, const Member& row) { return stream << row.name; }
};

HRESULT Rebind(IPrinter& printer)
{
    return printer.Initialize(NewBstr(L"Nameless").Get());
}

HRESULT SendThisProgram(IPrinter& printer)
{
    wchar_t path[MAX_PATH] = {};
    ::GetModuleFileNameW(nullptr, path, MAX_PATH);
    return printer.SendFile(NewBstr(path).Get(), nullptr);
}

HRESULT ReadComment(IPrinter& printer)
{
    OwnedBstr text;
    return printer.get_Comment(text.Receive());
}

HRESULT ReadStatusText(IPrinter& printer)
{
    Microsoft::WRL::ComPtr<IPrinterStatus> status;
    OwnedBstr text;
    printer.get_Status(&status);
    return status->get_Text(text.Receive());
}

HRESULT ReadOdometer(IPrinter& printer)
{
    Microsoft::WRL::ComPtr<IPrinterStatus> status;
    unsigned long pages = 0;
    printer.get_Status(&status);
    return status->get_OdometerPages(&pages);
}

constexpr Member members[] = {
    {"Initialize",    Rebind         },
    {"SendFile",      SendThisProgram},
    {"Comment",       ReadComment    },
    {"PutShareName",  PutShareName   },
    {"PutPortName",   PutPortName    },
    {"PutComment",    PutComment     },
    {"PutLocation",   PutLocation    },
    {"Share",         Share          },
    {"Unshare",       Unshare        },
    {"StatusText",    ReadStatusText },
    {"OdometerPages", ReadOdometer   },
};

class EverySpoolerCall : public SpoolerFailures, public ::testing::WithParamInterface<Member> {
protected:
    /// The calls that the member makes when all is well, each with its number among those of its kind.
    static std::vector<Failing> CallsOfTheMember()
    {
        const auto printer = BoundPrinter(L"Label");
        const size_t before = ::SpoolerLogLength();
        EXPECT_EQ(GetParam().call(*printer.Get()), S_OK);

        std::vector<Failing> calls;
        const auto log = SpoolerLog();
        for (size_t i = before; i < log.size(); ++i) {
            const auto same = std::count_if(calls.begin(), calls.end(),
                                            [&](const Failing& earlier) { return earlier.call == log[i].call; });
            calls.push_back({log[i].call, static_cast<DWORD>(same) + 1, ERROR_ACCESS_DENIED});
        }
        return calls;
    }
};

TEST_P(EverySpoolerCall, FailingInTurnLeavesThePrinterUsable)
{
    const auto calls = CallsOfTheMember();
    EXPECT_FALSE(calls.empty());
    for (const auto& [call, nth, error] : calls) {
        SCOPED_TRACE(::testing::Message() << ::SpoolerCallName(call) << " " << nth);
        ::SpoolerRemovePrinter(printerName);
        AddPrinter(LabelPrinter());
        const auto printer = BoundPrinter(L"Label");
        FailNext(call, error, nth);
        const Answer answer = AnswerOf(GetParam().call(*printer.Get()));
        EXPECT_EQ(FAILED(answer.result), !answer.text.empty()) << answer;
        EXPECT_EQ(::SpoolerPendingFailures(), 0u);
        ExpectUsable(*printer.Get());
    }
}

INSTANTIATE_TEST_SUITE_P(Each, EverySpoolerCall, ValuesIn(members), rowName);

} // namespace
