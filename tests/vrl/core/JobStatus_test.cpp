// SPDX-License-Identifier: MIT
#include "vrl/core/JobStatus.h"

#include "vrl/core/JobEventID.h"

#include <gmock/gmock.h>

#include <array>
#include <optional>
#include <string>
#include <vector>

#include <winspool.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Answers as it is told to and counts the questions.
class MadeUpWitness : public JobWitness {
public:
    DeviceVerdict QueryDeviceJobStatus() override
    {
        ++deviceQuestions;
        return verdict;
    }
    bool IsBidirectionalPrinter() override
    {
        ++printerQuestions;
        return bidirectional;
    }

    DeviceVerdict verdict = DeviceVerdict::None;
    bool bidirectional = false;
    int deviceQuestions = 0;
    int printerQuestions = 0;
};

/// A job whose statuses come one after the other.
class JobStatusTest : public ::testing::Test {
protected:
    std::vector<int> Say(DWORD winStatus)
    {
        OTypedArray<int> raised;
        status = UpdateJobStatus(status, {winStatus, pagesPrinted, totalPages}, witness, raised);
        return {raised.GetData(), raised.GetData() + raised.GetSize()};
    }

    MadeUpWitness witness;
    JobStatus status;
    DWORD pagesPrinted = 0;
    DWORD totalPages = 0;
};

TEST_F(JobStatusTest, NewJobThatSaysNothingIsWaiting)
{
    EXPECT_THAT(Say(0), IsEmpty());
    EXPECT_EQ(status.jobState, JobStateNone);
    EXPECT_EQ(status.statusText, "Waiting");
}

TEST_F(JobStatusTest, SpoolingAloneSaysSoAndIsNotWaiting)
{
    EXPECT_THAT(Say(JOB_STATUS_SPOOLING), IsEmpty());
    EXPECT_EQ(status.jobState, JobStateNone);
    EXPECT_EQ(status.statusText, "Spooling");
    EXPECT_TRUE(status.spooling);
}

TEST_F(JobStatusTest, PausedJobThatStillShowsPrintingIsPausedOnly)
{
    Say(JOB_STATUS_PAUSED | JOB_STATUS_PRINTING);
    EXPECT_EQ(status.statusText, "Paused");
    EXPECT_TRUE(status.paused);
    EXPECT_FALSE(status.printing);
}

TEST_F(JobStatusTest, SpoolingAndPrintingAreBothSaid)
{
    Say(JOB_STATUS_SPOOLING | JOB_STATUS_PRINTING);
    EXPECT_EQ(status.statusText, "Spooling, Printing");
}

TEST_F(JobStatusTest, PrintingAfterAPauseIsAResumptionOnce)
{
    Say(JOB_STATUS_PAUSED);
    EXPECT_THAT(Say(JOB_STATUS_PRINTING), ElementsAre(JobEventID_OnJobResumed, JobEventID_OnJobStatusChanged));
    EXPECT_EQ(status.jobState, JobStateResumed);
    EXPECT_THAT(Say(JOB_STATUS_PRINTING), IsEmpty());
    EXPECT_EQ(status.jobState, JobStatePrinting);
}

TEST_F(JobStatusTest, PauseIsToldEachTimeAndTheChangeOnce)
{
    EXPECT_THAT(Say(JOB_STATUS_PAUSED), ElementsAre(JobEventID_OnJobPaused, JobEventID_OnJobStatusChanged));
    EXPECT_THAT(Say(JOB_STATUS_PAUSED), ElementsAre(JobEventID_OnJobPaused));
}

TEST_F(JobStatusTest, StatusThatSaysNothingLetsTheNextPrintingStartOnceMore)
{
    EXPECT_THAT(Say(JOB_STATUS_PRINTING), ElementsAre(JobEventID_OnJobStarted, JobEventID_OnJobStatusChanged));
    EXPECT_THAT(Say(0), IsEmpty());
    EXPECT_THAT(Say(JOB_STATUS_PRINTING), ElementsAre(JobEventID_OnJobStarted, JobEventID_OnJobStatusChanged));
}

TEST_F(JobStatusTest, DeletionInMidPrintIsACancellation)
{
    pagesPrinted = 3;
    totalPages = 10;
    EXPECT_THAT(Say(JOB_STATUS_DELETED),
                ElementsAre(JobEventID_OnJobCancelled, JobEventID_OnJobStatusChanged, JobEventID_OnJobFinalized));
    EXPECT_EQ(status.statusText, "Cancelled");
    EXPECT_EQ(status.jobState, JobStateFinalized);
}

TEST_F(JobStatusTest, DeletionWithoutAnyPageCountsAsDelivered)
{
    EXPECT_THAT(Say(JOB_STATUS_DELETED), ElementsAre(JobEventID_OnJobSent, JobEventID_OnJobCompleted,
                                                     JobEventID_OnJobStatusChanged, JobEventID_OnJobFinalized));
    EXPECT_EQ(status.statusText, "Sent, Completed");
}

TEST_F(JobStatusTest, DeviceThatFailedIsBelievedAgainstTheSpooler)
{
    Say(JOB_STATUS_COMPLETE);
    witness.verdict = DeviceVerdict::Failed;
    EXPECT_THAT(Say(JOB_STATUS_DELETED),
                ElementsAre(JobEventID_OnJobCancelled, JobEventID_OnJobStatusChanged, JobEventID_OnJobFinalized));
    EXPECT_FALSE(status.sent);
}

TEST_F(JobStatusTest, DeviceThatVerifiedIsBelievedAgainstTheSpooler)
{
    totalPages = 1;
    witness.verdict = DeviceVerdict::Verified;
    EXPECT_THAT(Say(JOB_STATUS_DELETED),
                ElementsAre(JobEventID_OnJobSent, JobEventID_OnJobPrinted, JobEventID_OnJobCompleted,
                            JobEventID_OnJobStatusChanged, JobEventID_OnJobFinalized));
    EXPECT_EQ(status.statusText, "Sent, Printed, Completed");
}

TEST_F(JobStatusTest, FinalizedJobTakesNoFurtherStatus)
{
    Say(JOB_STATUS_DELETED);
    for (const DWORD later : {0u, 0x1u, 0x10u, 0x100u, 0x1000u, 0x2u}) {
        EXPECT_THAT(Say(later), IsEmpty()) << later;
        EXPECT_EQ(status.jobState, JobStateFinalized);
        EXPECT_EQ(status.statusText, "Sent, Completed");
        EXPECT_TRUE(status.completed);
    }
}

TEST_F(JobStatusTest, RestartBringsAFinalizedJobBack)
{
    Say(JOB_STATUS_DELETED);
    EXPECT_THAT(Say(JOB_STATUS_RESTART | JOB_STATUS_PRINTING),
                ElementsAre(JobEventID_OnJobStarted, JobEventID_OnJobStatusChanged));
    EXPECT_EQ(status.jobState, JobStatePrinting);
    EXPECT_FALSE(status.completed);
}

TEST_F(JobStatusTest, RestartIsForgottenInFlagAndText)
{
    EXPECT_THAT(Say(JOB_STATUS_RESTART), ElementsAre(JobEventID_OnJobStarted));
    EXPECT_EQ(status.jobState, JobStateStarted);
    EXPECT_FALSE(status.restarted);
    EXPECT_TRUE(status.statusText.IsEmpty());
}

TEST_F(JobStatusTest, PausedJobWithAnErrorSaysBoth)
{
    EXPECT_THAT(Say(JOB_STATUS_PAUSED | JOB_STATUS_ERROR),
                ElementsAre(JobEventID_OnJobPaused, JobEventID_OnJobError, JobEventID_OnJobStatusChanged));
    EXPECT_EQ(status.statusText, "Paused, User Intervention Required");
    EXPECT_EQ(status.jobState, JobStateError);
}

TEST_F(JobStatusTest, DeviceIsAskedOnceAndOnlyWhenTheJobLeaves)
{
    Say(JOB_STATUS_PRINTING | JOB_STATUS_COMPLETE | JOB_STATUS_ERROR);
    EXPECT_EQ(witness.deviceQuestions, 0);
    Say(JOB_STATUS_DELETED);
    Say(JOB_STATUS_DELETED);
    EXPECT_EQ(witness.deviceQuestions, 1);
}

TEST_F(JobStatusTest, PrinterIsAskedOnlyForAWholeJobThatWentToASilentDevice)
{
    Say(JOB_STATUS_DELETED); // never sent to the device
    status = {};
    totalPages = 1;
    Say(JOB_STATUS_COMPLETE | JOB_STATUS_DELETED); // incomplete
    status = {};
    totalPages = 0;
    witness.verdict = DeviceVerdict::Completed;
    Say(JOB_STATUS_COMPLETE | JOB_STATUS_DELETED); // the device has spoken
    EXPECT_EQ(witness.printerQuestions, 0);
    status = {};
    witness.verdict = DeviceVerdict::None;
    Say(JOB_STATUS_COMPLETE | JOB_STATUS_DELETED);
    EXPECT_EQ(witness.printerQuestions, 1);
}

// ---- every combination, against a model that is put together the other way round: by outcome and not by step ----

constexpr std::array testedBits{
    JOB_STATUS_PAUSED,   JOB_STATUS_ERROR,   JOB_STATUS_SPOOLING,          JOB_STATUS_PRINTING,
    JOB_STATUS_PAPEROUT, JOB_STATUS_DELETED, JOB_STATUS_USER_INTERVENTION, JOB_STATUS_RESTART,
    JOB_STATUS_COMPLETE,
};

struct Case {
    DWORD bits;
    int before;      ///< the state before
    bool sentBefore; ///< COMPLETE seen before
    bool pagesMissing;
    DeviceVerdict verdict;
    bool bidirectional;
};

struct Outcome {
    int state = 0;
    bool sentToDevice = false;
    std::vector<std::string> words;
    std::vector<int> events; ///< but for OnJobStatusChanged, whose place is marked by `change`
    std::optional<size_t> change;
};

Outcome Model(const Case& given)
{
    const auto has = [&](DWORD bit) { return (given.bits & bit) != 0; };
    const bool error = has(0x2) || has(0x40) || has(0x400);
    const bool restart = has(0x800);
    const bool paused = has(0x1);
    const bool printing = has(0x10) && !paused;
    const bool leaving = has(0x100);
    const int before = restart ? 2 : given.before;
    const bool begins = printing && before == 0;

    Outcome is;
    is.sentToDevice = has(0x1000) || (given.sentBefore && !restart && !begins);
    const bool delivered =
        given.verdict == DeviceVerdict::None ? !(given.pagesMissing || error) : given.verdict != DeviceVerdict::Failed;
    const bool sent = leaving && (delivered || (given.verdict == DeviceVerdict::None && is.sentToDevice));
    const bool printed = leaving && delivered &&
                         (given.verdict == DeviceVerdict::Verified ||
                          (given.verdict == DeviceVerdict::None && is.sentToDevice && given.bidirectional));

    struct Line {
        bool holds;
        const char* word;
        int event;
    };
    const Line lines[] = {
        {restart,               nullptr,                      1},
        {paused,                "Paused",                     2},
        {has(0x8),              "Spooling",                   0},
        {printing,              "Printing",
         begins        ? 1
         : before == 4 ? 3
                       : 0                                     },
        {sent,                  "Sent",                       5},
        {printed,               "Printed",                    6},
        {leaving && delivered,  "Completed",                  7},
        {leaving && !delivered, "Cancelled",                  4},
        {error,                 "User Intervention Required", 8},
    };
    for (const Line& line : lines) {
        if (!line.holds) continue;
        if (line.word) is.words.push_back(line.word);
        if (line.event) is.events.push_back(line.event);
    }

    is.state = error         ? 10
               : leaving     ? (delivered ? 6 : 7)
               : has(0x1000) ? 8
               : begins      ? 2
               : printing    ? (before == 4 ? 5 : 3)
               : paused      ? 4
               : restart     ? 2
                             : 0;
    if (is.state != before && is.state != 0 && is.state != 8) is.change = is.events.size();
    if (leaving) {
        is.events.push_back(9);
        is.state = 11;
    }
    return is;
}

std::string Joined(const std::vector<std::string>& words)
{
    std::string text;
    for (const std::string& word : words) text += (text.empty() ? "" : ", ") + word;
    return text;
}

std::string Shown(const JobStatus& status, const std::vector<int>& events)
{
    std::string text = std::to_string(status.jobState) + " '" + status.statusText.nstring() + "' ";
    for (const bool flag :
         {status.spooling, status.printing, status.paused, status.cancelled, status.sent, status.printed,
          status.completed, status.restarted, status.userInterventionRequired, status.sentToDevice}) {
        text += flag ? '1' : '0';
    }
    for (const int event : events) text += " " + std::to_string(event);
    return text;
}

std::string Expected(const Outcome& is, const std::string& textBefore)
{
    const auto said = [&](const char* word) {
        return std::find(is.words.begin(), is.words.end(), word) != is.words.end();
    };
    std::vector<int> events = is.events;
    if (is.change && Joined(is.words) != textBefore) {
        events.insert(events.begin() + static_cast<std::ptrdiff_t>(*is.change), 10);
    }
    JobStatus status;
    status.jobState = static_cast<JobState>(is.state);
    status.statusText = is.words.empty() && is.state == 0 ? "Waiting" : Joined(is.words).c_str();
    status.spooling = said("Spooling");
    status.printing = said("Printing");
    status.paused = said("Paused");
    status.cancelled = said("Cancelled");
    status.sent = said("Sent");
    status.printed = said("Printed");
    status.completed = said("Completed");
    status.userInterventionRequired = said("User Intervention Required");
    status.sentToDevice = is.sentToDevice;
    return Shown(status, events);
}

std::string Computed(const Case& given, const std::string& textBefore)
{
    MadeUpWitness witness;
    witness.verdict = given.verdict;
    witness.bidirectional = given.bidirectional;
    JobStatus before;
    before.jobState = static_cast<JobState>(given.before);
    before.statusText = textBefore.c_str();
    before.sentToDevice = given.sentBefore;
    // What was true before must not shine through.
    before.spooling = before.printing = before.paused = before.cancelled = before.sent = before.printed =
        before.completed = before.restarted = before.userInterventionRequired = true;

    OTypedArray<int> events;
    events.Add(4711);
    const JobStatus now = UpdateJobStatus(before, {given.bits, 2, given.pagesMissing ? 3u : 2u}, witness, events);
    return Shown(now, {events.GetData(), events.GetData() + events.GetSize()});
}

DWORD BitsOf(unsigned combination)
{
    DWORD bits = 0;
    for (size_t i = 0; i < testedBits.size(); ++i) {
        if (combination >> i & 1) bits |= static_cast<DWORD>(testedBits[i]);
    }
    return bits;
}

void ExpectAsModelled(const Case& given)
{
    const Outcome is = Model(given);
    for (const std::string& textBefore : {std::string("Something else"), Joined(is.words)}) {
        ASSERT_EQ(Computed(given, textBefore), Expected(is, textBefore))
            << std::hex << "bits " << given.bits << std::dec << " before " << given.before << " '" << textBefore
            << "' sent " << given.sentBefore << " missing " << given.pagesMissing << " verdict "
            << static_cast<int>(given.verdict) << " bidirectional " << given.bidirectional;
    }
}

class EveryStatus : public testing::TestWithParam<int> {};

TEST_P(EveryStatus, IsAsModelled)
{
    for (unsigned combination = 0; combination < 1u << testedBits.size(); ++combination) {
        if (GetParam() == JobStateFinalized && !(BitsOf(combination) & JOB_STATUS_RESTART)) continue;
        for (const DeviceVerdict verdict :
             {DeviceVerdict::None, DeviceVerdict::Completed, DeviceVerdict::Verified, DeviceVerdict::Failed}) {
            for (unsigned rest = 0; rest < 8; ++rest) {
                ExpectAsModelled(
                    {BitsOf(combination), GetParam(), (rest & 1) != 0, (rest & 2) != 0, verdict, (rest & 4) != 0});
                if (HasFatalFailure()) return;
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(PreviousState, EveryStatus, testing::Values(0, 2, 3, 4, 5, 6, 7, 8, 10, 11));

TEST(EveryStatusOfAFinalizedJob, ChangesNothingWithoutARestart)
{
    JobStatus before;
    before.jobState = JobStateFinalized;
    before.statusText = "Cancelled";
    before.cancelled = true;
    before.sentToDevice = true;
    MadeUpWitness witness;
    for (unsigned combination = 0; combination < 1u << testedBits.size(); ++combination) {
        if (BitsOf(combination) & JOB_STATUS_RESTART) continue;
        OTypedArray<int> events;
        events.Add(4711);
        const JobStatus now = UpdateJobStatus(before, {BitsOf(combination), 0, 0}, witness, events);
        ASSERT_EQ(Shown(now, {events.GetData(), events.GetData() + events.GetSize()}), Shown(before, {}))
            << std::hex << BitsOf(combination);
    }
    EXPECT_EQ(witness.deviceQuestions, 0);
}

TEST(EveryStatusBit, ThatIsNotLookedAtSaysNothing)
{
    for (unsigned bit = 0; bit < 32; ++bit) {
        const DWORD status = DWORD{1} << bit;
        if (std::find(testedBits.begin(), testedBits.end(), static_cast<int>(status)) != testedBits.end()) continue;
        MadeUpWitness witness;
        OTypedArray<int> events;
        const JobStatus now = UpdateJobStatus({}, {status, 0, 0}, witness, events);
        EXPECT_EQ(Shown(now, {}), "0 'Waiting' 0000000000") << std::hex << status;
        EXPECT_TRUE(events.IsEmpty());
    }
}

} // namespace
