// SPDX-License-Identifier: MIT
#include "vrl/core/JobOdometer.h"

#include "vrl/core/XJobDevMode.h"
#include "vrl/driver/BasicDriverInterface.h"

#include <gtest/gtest.h>

namespace {

/// Keeps the odometer as a driver does that is told to, and counts what it is asked.
class CountingDriver : public BasicDriverInterface {
public:
    bool IsBidirectional() override { return bidirectional; }
    Odometer GetOdometer() override { return stored; }
    void SetOdometer(const Odometer& odometer) override
    {
        stored = odometer;
        ++writes;
    }

    bool bidirectional = false;
    Odometer stored;
    int writes = 0;
};

class JobOdometerTest : public ::testing::Test {
protected:
    JobOdometerTest() { odometer.Start(driver, true); }

    /// The paper of the jobs from now on: so many copies, so many tenths of a millimetre each.
    void SetPaper(short copies, long paperLength)
    {
        paper.copies = copies;
        paper.paperLength = paperLength;
        devMode = &paper;
    }

    void Printed(DWORD pages, DWORD jobId = 1) { odometer.Update(jobId, devMode, pages); }

    void ExpectOdometer(DWORD pages, double distance) const
    {
        EXPECT_EQ(odometer.Get().GetPages(), pages);
        EXPECT_EQ(odometer.Get().GetDistance(), distance);
    }

    CountingDriver driver;
    JobOdometer odometer;
    XJobDevMode paper;
    const XJobDevMode* devMode = nullptr;
};

TEST_F(JobOdometerTest, StartsFromTheStoredCount)
{
    driver.stored = Odometer(100, 5.5);
    odometer.Start(driver, false);
    ExpectOdometer(100, 5.5);
}

TEST_F(JobOdometerTest, StartForgetsTheCurrentJob)
{
    Printed(5);
    odometer.Start(driver, true);
    Printed(5);
    ExpectOdometer(10, 0.0);
    odometer.Start(driver, true);
    Printed(3, 0);
    ExpectOdometer(13, 0.0);
}

TEST_F(JobOdometerTest, CountsCopiesAndTheirLength)
{
    SetPaper(2, 1000);
    Printed(1);
    ExpectOdometer(2, 200.0);
    Printed(2);
    ExpectOdometer(4, 400.0);
}

TEST_F(JobOdometerTest, JobWithoutADeviceModeCountsItsPagesAndNoDistance)
{
    Printed(3);
    ExpectOdometer(3, 0.0);
}

TEST_F(JobOdometerTest, DeviceModeWithoutCopiesCountsNothing)
{
    SetPaper(0, 1000);
    Printed(3);
    ExpectOdometer(0, 0.0);
}

TEST_F(JobOdometerTest, ThreePagesOfTenCentimetresAreThirtyCentimetres)
{
    SetPaper(1, 1000);
    Printed(3);
    ExpectOdometer(3, 300.0);
}

TEST_F(JobOdometerTest, FirstEntryOfAJobCountsAllItsPages)
{
    SetPaper(1, 100);
    Printed(5, 1);
    Printed(5, 2);
    ExpectOdometer(10, 100.0);
}

TEST_F(JobOdometerTest, RepeatedCountAddsNothingAndStoresNothing)
{
    SetPaper(1, 100);
    Printed(5);
    Printed(5);
    ExpectOdometer(5, 50.0);
    EXPECT_EQ(driver.writes, 1);
}

TEST_F(JobOdometerTest, FallingCountTakesNothingBackAndCountsOnFromThere)
{
    SetPaper(1, 100);
    Printed(5);
    Printed(3);
    ExpectOdometer(5, 50.0);
    EXPECT_EQ(driver.writes, 1);
    Printed(5);
    ExpectOdometer(7, 70.0);
}

TEST_F(JobOdometerTest, AlternatingJobsAreCountedOnceMoreAtEachChange)
{
    Printed(2, 1);
    Printed(1, 2);
    Printed(3, 1);
    ExpectOdometer(6, 0.0);
}

TEST_F(JobOdometerTest, CountIsStoredEachTimeItGrows)
{
    SetPaper(1, 100);
    Printed(5);
    EXPECT_EQ(driver.stored, Odometer(5, 50.0));
    Printed(6);
    EXPECT_EQ(driver.stored, Odometer(6, 60.0));
}

// ---- a device that counts by itself ----

class DeviceCountTest : public JobOdometerTest {
protected:
    DeviceCountTest()
    {
        driver.bidirectional = true;
        driver.stored = Odometer(100, 0.0);
        odometer.Start(driver, true);
        SetPaper(2, 1000);
    }
};

TEST_F(DeviceCountTest, IsTakenFromTheStartOfTheJobOnAndNotStored)
{
    driver.stored = Odometer(103, 0.0);
    Printed(1);
    ExpectOdometer(103, 300.0);
    driver.stored = Odometer(104, 0.0);
    Printed(1);
    ExpectOdometer(104, 400.0);
    EXPECT_EQ(driver.writes, 0);
}

TEST_F(DeviceCountTest, StartsAnewWithEachJob)
{
    driver.stored = Odometer(103, 0.0);
    Printed(1, 1);
    driver.stored = Odometer(105, 0.0);
    Printed(1, 2);
    ExpectOdometer(105, 500.0);
}

TEST_F(DeviceCountTest, BelowTheStartOfTheJobGivesWayToTheSpoolersCountUnstored)
{
    driver.stored = Odometer(99, 0.0);
    Printed(3);
    ExpectOdometer(106, 600.0);
    EXPECT_EQ(driver.writes, 0);
}

TEST_F(DeviceCountTest, AtTheStartOfTheJobIsNoPage)
{
    Printed(3);
    ExpectOdometer(100, 0.0);
}

TEST_F(DeviceCountTest, StartsWithTheStoredCountBeforeTheFirstJob)
{
    driver.stored = Odometer(103, 0.0);
    Printed(1, 0); // no change of the job
    ExpectOdometer(103, 300.0);
}

TEST_F(DeviceCountTest, IsNotAskedOfAPlainDriver)
{
    odometer.Start(driver, false);
    driver.stored = Odometer(999, 0.0);
    Printed(3);
    ExpectOdometer(106, 600.0);
    EXPECT_EQ(driver.writes, 1);
}

} // namespace
