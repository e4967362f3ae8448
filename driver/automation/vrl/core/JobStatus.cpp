// SPDX-License-Identifier: MIT
#include "vrl/core/JobStatus.h"

#include "vrl/core/JobEventID.h"
#include "vrl/driver/StatusFlags.h"

#include <winspool.h>

namespace {

constexpr DWORD errorStatus = JOB_STATUS_ERROR | JOB_STATUS_PAPEROUT | JOB_STATUS_USER_INTERVENTION;

/// One step of a job's life. The status is worked out from nothing each time; of the status before, only the state,
/// the text and `sentToDevice` matter.
class Step {
public:
    Step(const JobStatus& before, const JobNotice& notice, JobWitness& witness, OTypedArray<int>& events)
        : _notice(notice), _witness(witness), _events(events), _previous(before.jobState),
          _previousText(before.statusText)
    {
        _now.sentToDevice = before.sentToDevice;
    }

    JobStatus Run()
    {
        if (Has(JOB_STATUS_RESTART)) Restart();
        if (Has(JOB_STATUS_PAUSED)) Pause();
        if (Has(JOB_STATUS_SPOOLING)) Spool();
        if (Has(JOB_STATUS_PRINTING) && _now.jobState != JobStatePaused) Print();
        if (Has(JOB_STATUS_COMPLETE)) SendToDevice();
        if (Has(JOB_STATUS_DELETED)) LeaveQueue();
        if (Has(errorStatus)) NeedIntervention();

        if (HasChanged()) Raise(JobEventID_OnJobStatusChanged);
        if (_now.jobState == JobStateNone && _now.statusText.IsEmpty()) Say(StatusTextWaiting);
        if (Has(JOB_STATUS_DELETED)) Finalize();
        return std::move(_now);
    }

private:
    bool Has(DWORD bits) const noexcept { return (_notice.winStatus & bits) != 0; }
    void Raise(JobEventID event) { _events.Add(event); }
    void Say(StatusText word) { _now.statusText = AppendStatusText(_now.statusText, StatusTextById(word)); }

    // Deliberate: neither the flag nor the word "Restarted" is set. All flags and words are those of this step alone,
    // and a restart comes before it; event, state and the cleared `sentToDevice` remain.
    void Restart()
    {
        _now.jobState = JobStateStarted;
        _previous = JobStateStarted;
        Raise(JobEventID_OnJobStarted);
        _now.sentToDevice = false;
    }

    void Pause()
    {
        _now.paused = true;
        Raise(JobEventID_OnJobPaused);
        _now.jobState = JobStatePaused;
        Say(StatusTextPaused);
    }

    void Spool()
    {
        _now.spooling = true;
        Say(StatusTextSpooling);
    }

    void Print()
    {
        _now.printing = true;
        Say(StatusTextPrinting);
        if (_previous == JobStatePaused) {
            _now.jobState = JobStateResumed;
            Raise(JobEventID_OnJobResumed);
        } else if (_previous == JobStateNone) {
            _now.jobState = JobStateStarted;
            Raise(JobEventID_OnJobStarted);
            _now.sentToDevice = false;
        } else {
            _now.jobState = JobStatePrinting;
        }
    }

    void SendToDevice()
    {
        _now.jobState = JobStateSentToDevice;
        _now.sentToDevice = true;
    }

    /// Settles what became of the job: by the device's word if it gives one, else by what the spooler has said.
    void LeaveQueue()
    {
        const bool incomplete = _notice.pagesPrinted < _notice.totalPages || Has(errorStatus);
        const DeviceVerdict verdict = _witness.QueryDeviceJobStatus();
        if (verdict != DeviceVerdict::None) {
            Believe(verdict);
        } else if (incomplete) {
            if (_now.sentToDevice) CountAsSent();
            CountAsCancelled();
        } else {
            const bool trusted = _now.sentToDevice;
            CountAsSent();
            if (trusted && _witness.IsBidirectionalPrinter()) CountAsPrinted();
            CountAsCompleted();
        }
    }

    void Believe(DeviceVerdict verdict)
    {
        if (verdict == DeviceVerdict::Failed) {
            CountAsCancelled();
            return;
        }
        CountAsSent();
        if (verdict == DeviceVerdict::Verified) CountAsPrinted();
        CountAsCompleted();
    }

    void CountAsSent()
    {
        _now.jobState = JobStateFinished;
        Raise(JobEventID_OnJobSent);
        _now.sent = true;
        Say(StatusTextSent);
    }

    void CountAsPrinted()
    {
        Raise(JobEventID_OnJobPrinted);
        _now.printed = true;
        Say(StatusTextPrinted);
    }

    void CountAsCompleted()
    {
        Raise(JobEventID_OnJobCompleted);
        _now.completed = true;
        Say(StatusTextCompleted);
    }

    void CountAsCancelled()
    {
        _now.jobState = JobStateCancelled;
        Raise(JobEventID_OnJobCancelled);
        _now.cancelled = true;
        Say(StatusTextCancelled);
    }

    void NeedIntervention()
    {
        _now.userInterventionRequired = true;
        _now.jobState = JobStateError;
        Raise(JobEventID_OnJobError);
        Say(StatusTextUserInterventionRequired);
    }

    // Deliberate: a change into one of the two silent states is not told.
    bool HasChanged() const
    {
        return _now.jobState != _previous && _now.jobState != JobStateNone && _now.jobState != JobStateSentToDevice &&
               !(_now.statusText == _previousText);
    }

    void Finalize()
    {
        Raise(JobEventID_OnJobFinalized);
        _now.jobState = JobStateFinalized;
    }

    const JobNotice& _notice;
    JobWitness& _witness;
    OTypedArray<int>& _events;
    JobState _previous;
    const OString _previousText;
    JobStatus _now;
};

} // namespace

JobStatus UpdateJobStatus(const JobStatus& previous, const JobNotice& notice, JobWitness& witness,
                          OTypedArray<int>& events)
{
    events.RemoveAll();
    if (previous.jobState == JobStateFinalized && !(notice.winStatus & JOB_STATUS_RESTART)) return previous;
    return Step(previous, notice, witness, events).Run();
}
