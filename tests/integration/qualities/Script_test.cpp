// SPDX-License-Identifier: MIT
#include "support/com/ApartmentThread.h"
#include "support/product/IntegrationTest.h"
#include "support/com/ScriptHost.h"
#include "support/TemporaryDirectory.h"

#include <gmock/gmock.h>

#include <memory>

namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;

/// What a script tells its host, a line for each call of `Host.Tell`, its arguments parted by "|".
using Lines = std::vector<std::wstring>;

std::wstring LineOf(const std::vector<_variant_t>& values)
{
    std::wstring line;
    for (const _variant_t& value : values) {
        line += line.empty() && &value == &values.front() ? L"" : L"|";
        line += static_cast<const wchar_t*>(_bstr_t(value));
    }
    return line;
}

/// A script in a single-threaded apartment, as the platform's script programs run it. It has an object `Host`:
/// `Host.Tell(...)` tells the test something, `Host.SetWord(word)` sets the status word of the printer "Label", and
/// `Host.SetBit(bit)` sets one bit of it alone.
class Script : public IntegrationTest {
protected:
    void SetUp() override
    {
        IntegrationTest::SetUp();
        _thread = std::make_unique<ApartmentThread>(COINIT_APARTMENTTHREADED);
    }

    void TearDown() override
    {
        _thread.reset();
        GiveBackKeptClassObject(__uuidof(Printer)); // each script here makes one
        IntegrationTest::TearDown();
    }

    /// Runs the script to its end, which is to be without an error, and gives what it told.
    Lines Run(const wchar_t* language, const std::wstring& script)
    {
        Lines lines;
        _thread->Run([&] {
            ScriptHost host(language);
            host.AddFunction(L"Tell", [&](const auto& values) {
                lines.push_back(LineOf(values));
                return _variant_t();
            });
            host.AddFunction(L"SetWord",
                             [](const auto& values) { return SetWord(static_cast<DWORD>(long(values[0]))); });
            host.AddFunction(L"SetBit", [](const auto& values) { return SetWord(DWORD{1} << long(values[0])); });
            EXPECT_EQ(host.Run(script), "");
        });
        return lines;
    }

private:
    static _variant_t SetWord(DWORD word)
    {
        EXPECT_EQ(::SpoolerSetPrinterStatus(printerName, word), 0u);
        return {};
    }

    std::unique_ptr<ApartmentThread> _thread;
};

// One script in the words of both languages

struct Language {
    const char* name;
    const wchar_t* engine;
    const wchar_t* readAll;
    const wchar_t* change;
    const wchar_t* send;
    const wchar_t* wrongName;
    const wchar_t* unbound;
    const wchar_t* statusWords;
    const wchar_t* share;
};

constexpr Language vbscript{
    .name = "VBScript",
    .engine = L"VBScript",
    .readAll = LR"(
        Dim printer
        Set printer = CreateObject("Vorlane.Printer")
        printer.Initialize "Label"
        Host.Tell printer.Name, printer.ServerName, printer.ShareName, printer.PortName
        Host.Tell printer.ModelName, printer.Comment, printer.Location
        If printer.Local Then Host.Tell "local"
        If printer.Network Then Host.Tell "network"
        If printer.Shared Then Host.Tell "shared"
        If IsObject(printer.Queue) And IsObject(printer.Configuration) And IsObject(printer.Port) Then
            If IsObject(printer.DefaultSchedule) And IsObject(printer.Capabilities) Then Host.Tell "parts"
        End If
        Host.Tell printer.Status.Text
        Host.Tell printer.Status.OdometerPages, printer.Status.OdometerDistance
    )",
    .change = LR"(
        Dim printer
        Set printer = CreateObject("Vorlane.Printer")
        printer.Initialize "Label"
        printer.Comment = "Returns"
        printer.Location = "Gate 8"
        Host.Tell printer.Comment, printer.Location
    )",
    .send = LR"(
        Dim printer
        Set printer = CreateObject("Vorlane.Printer")
        printer.Initialize "Label"
        printer.SendFile "C:\no such file.lbl", "Missing"
        printer.SendFile "%FILE%", "Order 12"
        Host.Tell "sent"
    )",
    .wrongName = LR"(
        Dim printer
        Set printer = CreateObject("Vorlane.Printer")
        On Error Resume Next
        printer.Initialize "No such printer"
        Host.Tell Hex(Err.Number), Err.Description
        Err.Clear
        printer.Initialize "Label"
        Host.Tell Hex(Err.Number), printer.Name
    )",
    .unbound = LR"(
        Dim printer, status
        Set printer = CreateObject("Vorlane.Printer")
        Set status = printer.Status
        On Error Resume Next
        Host.Tell printer.Name
        Host.Tell Hex(Err.Number), Err.Description
        Err.Clear
        Host.Tell status.Text
        Host.Tell Hex(Err.Number), Err.Description
    )",
    .statusWords = LR"(
        Dim printer, status, bit
        Set printer = CreateObject("Vorlane.Printer")
        printer.Initialize "Label"
        Set status = printer.Status
        Host.Tell status.Text
        For bit = 0 To 31
            Host.SetBit bit
            Host.Tell bit, status.Text
        Next
        Host.SetWord 0
        Host.Tell status.Text
    )",
    .share = LR"(
        Dim printer
        Set printer = CreateObject("Vorlane.Printer")
        printer.Initialize "Label"
        printer.Shared = False
        If Not printer.Shared Then Host.Tell "not shared"
        printer.ShareName = ""
        printer.Shared = True
        Host.Tell printer.ShareName
        On Error Resume Next
        printer.ShareName = "a/b"
        Host.Tell Hex(Err.Number), Err.Description
    )",
};

constexpr Language jscript{
    .name = "JScript",
    .engine = L"JScript",
    .readAll = LR"(
        var printer = new ActiveXObject("Vorlane.Printer");
        printer.Initialize("Label");
        Host.Tell(printer.Name, printer.ServerName, printer.ShareName, printer.PortName);
        Host.Tell(printer.ModelName, printer.Comment, printer.Location);
        if (printer.Local) Host.Tell("local");
        if (printer.Network) Host.Tell("network");
        if (printer.Shared) Host.Tell("shared");
        var parts = [printer.Queue, printer.Configuration, printer.Port, printer.DefaultSchedule, printer.Capabilities];
        for (var count = 0; count < parts.length && typeof parts[count] === "object" && parts[count]; ++count);
        if (count === parts.length) Host.Tell("parts");
        Host.Tell(printer.Status.Text);
        Host.Tell(printer.Status.OdometerPages, printer.Status.OdometerDistance);
    )",
    .change = LR"(
        var printer = new ActiveXObject("Vorlane.Printer");
        printer.Initialize("Label");
        printer.Comment = "Returns";
        printer.Location = "Gate 8";
        Host.Tell(printer.Comment, printer.Location);
    )",
    .send = LR"(
        var printer = new ActiveXObject("Vorlane.Printer");
        printer.Initialize("Label");
        printer.SendFile("C:\\no such file.lbl", "Missing");
        printer.SendFile("%FILE%".replace(/\//g, "\\"), "Order 12");
        Host.Tell("sent");
    )",
    .wrongName = LR"(
        var printer = new ActiveXObject("Vorlane.Printer");
        function hex(number) { return (number < 0 ? number + 0x100000000 : number).toString(16).toUpperCase(); }
        try {
            printer.Initialize("No such printer");
        } catch (failure) {
            Host.Tell(hex(failure.number), failure.description);
        }
        printer.Initialize("Label");
        Host.Tell(hex(0), printer.Name);
    )",
    .unbound = LR"(
        var printer = new ActiveXObject("Vorlane.Printer");
        var status = printer.Status;
        function hex(number) { return (number < 0 ? number + 0x100000000 : number).toString(16).toUpperCase(); }
        try {
            Host.Tell(printer.Name);
        } catch (failure) {
            Host.Tell(hex(failure.number), failure.description);
        }
        try {
            Host.Tell(status.Text);
        } catch (failure) {
            Host.Tell(hex(failure.number), failure.description);
        }
    )",
    .statusWords = LR"(
        var printer = new ActiveXObject("Vorlane.Printer");
        printer.Initialize("Label");
        var status = printer.Status;
        Host.Tell(status.Text);
        for (var bit = 0; bit < 32; ++bit) {
            Host.SetBit(bit);
            Host.Tell(bit, status.Text);
        }
        Host.SetWord(0);
        Host.Tell(status.Text);
    )",
    .share = LR"(
        var printer = new ActiveXObject("Vorlane.Printer");
        printer.Initialize("Label");
        printer.Shared = false;
        if (!printer.Shared) Host.Tell("not shared");
        printer.ShareName = "";
        printer.Shared = true;
        Host.Tell(printer.ShareName);
        function hex(number) { return (number < 0 ? number + 0x100000000 : number).toString(16).toUpperCase(); }
        try {
            printer.ShareName = "a/b";
        } catch (failure) {
            Host.Tell(hex(failure.number), failure.description);
        }
    )",
};

class ScriptInEachLanguage : public Script, public ::testing::WithParamInterface<const Language*> {
protected:
    Lines RunIt(const std::wstring& script) { return Run(GetParam()->engine, script); }

    std::vector<BYTE> buffer;
};

TEST_P(ScriptInEachLanguage, ReadsEveryProperty)
{
    EXPECT_THAT(RunIt(GetParam()->readAll),
                ElementsAre(L"Label|\\\\STORE|LABELS|LPT1:", L"Label Driver|Shipping labels|Gate 7", L"local",
                            L"shared", L"parts", L"Ready", L"0|0"));
}

TEST_P(ScriptInEachLanguage, ChangesCommentAndLocation)
{
    EXPECT_THAT(RunIt(GetParam()->change), ElementsAre(L"Returns|Gate 8"));
    EXPECT_STREQ(Peek(buffer).pComment, L"Returns");
    EXPECT_STREQ(Peek(buffer).pLocation, L"Gate 8");
}

TEST_P(ScriptInEachLanguage, SendsAFileAndIsNotStoppedByAMissingOne)
{
    const TemporaryDirectory folder;
    std::wstring file = folder.Make(L"label.lbl", "TEXT 1,1");
    std::ranges::replace(file, L'\\', L'/');
    std::wstring script = GetParam()->send;
    script.replace(script.find(L"%FILE%"), 6, file);
    EXPECT_THAT(RunIt(script), ElementsAre(L"sent"));
    EXPECT_EQ(SentBytes(), "TEXT 1,1");
    EXPECT_STREQ(StartedDocument().document, L"Order 12");
}

TEST_P(ScriptInEachLanguage, CatchesAWrongNameWithItsTextAndGoesOn)
{
    EXPECT_THAT(RunIt(GetParam()->wrongName), ElementsAre(L"80042003|Could not open printer", L"0|Label"));
}

TEST_P(ScriptInEachLanguage, CatchesWhatAnUnboundPrinterAnswers)
{
    EXPECT_THAT(RunIt(GetParam()->unbound), ElementsAre(L"80042000|Printer object not initialized",
                                                        L"80042100|PrinterStatus object not initialized"));
}

TEST_P(ScriptInEachLanguage, SharesThePrinterAndCatchesAForbiddenName)
{
    EXPECT_THAT(RunIt(GetParam()->share), ElementsAre(L"not shared", L"Label", L"80042104|Invalid printer share name"));
}

TEST_P(ScriptInEachLanguage, TellsTheStatusAsItsWordChangesThroughAllBits)
{
    static constexpr const wchar_t* told[] = {
        L"Ready",
        L"0|Paused",
        L"1|",
        L"2|",
        L"3|Paper Jam",
        L"4|Paper Out",
        L"5|Manual Feed",
        L"6|Paper Problem",
        L"7|Offline",
        L"8|IO Active",
        L"9|Busy",
        L"10|Printing",
        L"11|Output Bin Full",
        L"12|Not Available",
        L"13|Waiting",
        L"14|Processing",
        L"15|Initializing",
        L"16|Warming Up",
        L"17|Toner Low",
        L"18|No Toner",
        L"19|Page Punt",
        L"20|User Intervention Required",
        L"21|Out Of Memory",
        L"22|Door Open",
        L"23|",
        L"24|Power Save",
        L"25|",
        L"26|",
        L"27|",
        L"28|",
        L"29|",
        L"30|",
        L"31|",
        L"Ready",
    };
    EXPECT_THAT(RunIt(GetParam()->statusWords), ElementsAreArray(told));
}

INSTANTIATE_TEST_SUITE_P(Each, ScriptInEachLanguage, ::testing::Values(&vbscript, &jscript),
                         [](const auto& row) { return std::string(row.param->name); });

// Conditions and severity, which a script reads as truth values

TEST_F(Script, TellsTheConditionsThatHold)
{
    const Lines lines = Run(L"VBScript", LR"(
        Dim status
        Set status = BoundStatus()
        Host.SetWord 0
        Tell
        Host.SetWord 2
        Tell
        Host.SetWord &H18
        Tell
        Host.SetWord &H402
        Tell
        Host.SetWord &H20000
        Tell
        Host.SetWord &H20008
        Tell

        Function BoundStatus()
            Dim printer
            Set printer = CreateObject("Vorlane.Printer")
            printer.Initialize "Label"
            Set BoundStatus = printer.Status
        End Function

        Sub Tell()
            Dim conditions
            If status.Error Then conditions = conditions & " error"
            If status.Warning Then conditions = conditions & " warning"
            If status.PaperJam Then conditions = conditions & " jam"
            If status.PaperOut Then conditions = conditions & " out"
            If status.Printing Then conditions = conditions & " printing"
            If status.TonerLow Then conditions = conditions & " toner"
            Host.Tell status.Text & ":" & conditions
        End Sub
    )");
    EXPECT_THAT(lines,
                ElementsAre(L"Ready:", L": error", L"Paper Jam, Paper Out: error jam out", L"Printing: error printing",
                            L"Toner Low: warning toner", L"Paper Jam, Toner Low: error jam toner"));
}

TEST_F(Script, EndsAtAnErrorThatItDoesNotCatch)
{
    ApartmentThread thread(COINIT_APARTMENTTHREADED);
    thread.Run([] {
        ScriptHost host(L"VBScript");
        EXPECT_EQ(host.Run(L"Dim printer\n"
                           L"Set printer = CreateObject(\"Vorlane.Printer\")\n"
                           L"printer.Initialize \"No such printer\"\n"),
                  "line 3: Could not open printer");
    });
}

} // namespace
