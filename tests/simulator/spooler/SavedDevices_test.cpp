// SPDX-License-Identifier: MIT
#include "DeviceTest.h"

#include "support/TemporaryDirectory.h"

namespace {

/// A world with a device behind a port is saved, and begins again.
class SavedDevices : public DeviceTest {
protected:
    std::string Saved() const
    {
        EXPECT_EQ(::SpoolerSaveConfiguration(Path().c_str()), DWORD{ERROR_SUCCESS});
        return folder.Contents(L"world.ini");
    }

    void BeginAgain()
    {
        Saved();
        printer.Reset();
        ::SpoolerReset();
        device.TakeCalls();
        ASSERT_EQ(::SpoolerLoadConfig(Path().c_str()), DWORD{ERROR_SUCCESS}) << folder.Contents(L"world.ini");
        printer = Open(L"Label");
    }

    DWORD JobStatus(DWORD jobId) const
    {
        const auto job = ReadJob<JOB_INFO_1W>(printer, jobId, 1);
        return job.bytes.empty() ? 0xFFFFFFFF : job->Status;
    }

    std::wstring Path() const { return folder.Path(L"world.ini"); }

    const TemporaryDirectory folder;
};

TEST_F(SavedDevices, PortsKeepTheirDevices)
{
    BeginAgain();
    EXPECT_EQ(device.TakeCalls(), (Calls{"attach Label"}));
    Print(printer, L"Pallet", "TEXT");
    Step(spoolerAllSteps);
    EXPECT_EQ(device.Taken(), "TEXT");
}

TEST_F(SavedDevices, SettingsAreMadeAgainInTheirOrder)
{
    ASSERT_EQ(SpoolerLoadConfig(folder
                                    .Make(L"first.ini", "[printer Second]\nport = NET1\n"
                                                        "device ribbon = 2 labels\n"
                                                        "device head = \" text:null\"\n")
                                    .c_str()),
              DWORD{ERROR_SUCCESS});
    const std::string text = Saved();
    EXPECT_THAT(text, testing::HasSubstr("\ndevice ribbon = 2 labels\ndevice head = text:\" text:null\"\n"));
    BeginAgain();
    EXPECT_EQ(Saved(), text);
}

TEST_F(SavedDevices, BitsOfTheDeviceAreLeftToTheDevice)
{
    SpoolerSetPrinterStatus(L"Label", PRINTER_STATUS_PAUSED);
    device.SetStatus(PRINTER_STATUS_DOOR_OPEN);
    Step();
    ASSERT_EQ(PrinterStatus(), DWORD{PRINTER_STATUS_PAUSED | PRINTER_STATUS_DOOR_OPEN});
    device.SetStatus(0);
    BeginAgain();
    EXPECT_EQ(PrinterStatus(), DWORD{PRINTER_STATUS_PAUSED});
}

TEST_F(SavedDevices, JobAtTheDeviceBeginsAgain)
{
    const DWORD jobId = Print(printer, L"Pallet", "TEXT");
    device.Answer({Took(2), Stalled(JOB_STATUS_PAPEROUT, L"Out of labels")});
    Step(4);
    ASSERT_TRUE(JobStatus(jobId) & JOB_STATUS_PAPEROUT);
    ASSERT_EQ(JobText(jobId), L"Out of labels");
    device.Answer({});
    BeginAgain();
    EXPECT_EQ(JobStatus(jobId), 0u);
    EXPECT_EQ(JobText(jobId), L"(null)");
    Step(spoolerAllSteps);
    EXPECT_EQ(JobStatus(jobId), 0xFFFFFFFF) << "it has been printed";
    EXPECT_THAT(device.Taken(), testing::EndsWith("TEXT"));
}

} // namespace
