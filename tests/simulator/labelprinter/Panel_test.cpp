// SPDX-License-Identifier: MIT
#include "Device.h"
#include "LabelPrinterTest.h"

#include "support/TemporaryDirectory.h"

namespace {

class PanelTest : public LabelPrinterTest {
protected:
    /// Writes the panel file again; each text here has another length.
    void Write(std::string_view text)
    {
        const std::wstring path = folder.Make(L"panel.txt", text);
        ::LabelPrinterSet(printerName, L"panel", path.c_str());
    }

    TemporaryDirectory folder;
};

TEST_F(PanelTest, LinesOfTheFileTurnTheKnobs)
{
    Write(
        "\xEF\xBB\xBF; a comment\r\n# another\r\nmedia = 3 labels\r\n\r\n  HEAD=open  \r\nnonsense\r\nhead = ajar\r\n");
    EXPECT_EQ(Get(L"media"), L"3 labels");
    EXPECT_EQ(Get(L"head"), L"open");
}

TEST_F(PanelTest, ChangeIsSeenAtTheNextLook)
{
    Write("media = 3\n");
    EXPECT_EQ(StatusText(), "Paper Low");
    Write("media = out\nhead = open\n");
    EXPECT_EQ(StatusText(), "Head Open, Paper Out");
    Write("media = endless\nhead = closed\n");
    DWORD status = 99;
    Device().status(printerName, &status);
    EXPECT_EQ(status, 0u);
}

TEST_F(PanelTest, FileThatHasNotChangedIsNotReadAgain)
{
    Write("media = 3\n");
    EXPECT_EQ(Get(L"media"), L"3 labels");
    Set(L"media", L"70");
    EXPECT_EQ(Get(L"media"), L"70 labels");
}

TEST_F(PanelTest, MissingFileChangesNothing)
{
    Set(L"media", L"70");
    Set(L"panel", folder.Path(L"missing.txt").c_str());
    EXPECT_EQ(Get(L"media"), L"70 labels");
    folder.Make(L"missing.txt", "media = 5");
    EXPECT_EQ(Get(L"media"), L"5 labels");
}

TEST_F(PanelTest, RunningJobSeesTheFile)
{
    Write("pause = yes\n");
    const SpoolerDeviceJob job{printerName, L"NET1", 1, L""};
    void* handle = nullptr;
    ASSERT_EQ(Device().beginJob(&job, &handle), 0u);
    SpoolerDeviceProgress progress{};
    Device().writeJob(handle, "PRINT 1\n", 8, &progress);
    EXPECT_EQ(progress.busyMs, spoolerDeviceStalled);
    Write("pause = no\n");
    Device().endJob(handle, &progress);
    EXPECT_EQ(progress.pagesPrinted, 1u);
    Device().cancelJob(handle);
}

} // namespace
