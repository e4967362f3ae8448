// SPDX-License-Identifier: MIT
#include "vrl/classes/PrintJobSchedule.h"

#include "vrl/classes/DayTime.h"

#include <utility>

class PrintJobSchedule::Subject {
public:
    explicit Subject(Bound<JobBinding>::Hold hold) noexcept : _hold(std::move(hold)) {}

    const Subject& operator*() const noexcept { return *this; }

    DWORD GetPriority() const { return Job() ? Job()->GetPriority() : Printer()->GetDefaultPriority(); }
    OString GetStartTime() const { return FormatDayTime(Job() ? Job()->GetStartTime() : Printer()->GetStartTime()); }
    OString GetUntilTime() const { return FormatDayTime(Job() ? Job()->GetUntilTime() : Printer()->GetUntilTime()); }

    void SetPriority(DWORD priority) const
    {
        Job() ? Job()->SetJobPriority(priority) : Printer()->SetDefaultPriority(priority);
    }

    void SetStartTime(const OString& text) const { SetTime(text, &Subject::WriteStartTime, &Subject::WriteUntilTime); }
    void SetUntilTime(const OString& text) const { SetTime(text, &Subject::WriteUntilTime, &Subject::WriteStartTime); }

private:
    using WriteTime = void (Subject::*)(DWORD minutes) const;

    const XJobRef& Job() const noexcept { return _hold->xJob; }
    const XPrinterRef& Printer() const noexcept { return _hold->xPrinter; }

    void WriteStartTime(DWORD minutes) const
    {
        Job() ? Job()->SetJobStartTime(minutes) : Printer()->SetStartTime(minutes);
    }
    void WriteUntilTime(DWORD minutes) const
    {
        Job() ? Job()->SetJobUntilTime(minutes) : Printer()->SetUntilTime(minutes);
    }

    /// An empty text clears the window, beginning with the time that was set.
    void SetTime(const OString& text, WriteTime write, WriteTime writeOther) const
    {
        const long minutes = ParseDayTime(text);
        if (minutes == noDayTime) throw InvalidArgument_E();
        if (minutes == clearedDayTime) {
            (this->*write)(0);
            (this->*writeOther)(0);
        } else {
            (this->*write)(static_cast<DWORD>(minutes));
        }
    }

    Bound<JobBinding>::Hold _hold;
};

PrintJobSchedule::Subject PrintJobSchedule::CheckBound() const
{
    auto hold = _job.Get();
    if (!hold) throw JobScheduleNotInitialized_E();
    return Subject(std::move(hold));
}

HRESULT PrintJobSchedule::Initialize(IPrintJob* job) noexcept
{
    return Guard("PrintJobSchedule::Initialize", [&] { return RebindToJob(_job, job); });
}

HRESULT PrintJobSchedule::Initialize(IPrinter* printer) noexcept
{
    return Guard("PrintJobSchedule::Initialize", [&] {
        LetGoOfJob(_job);
        return RebindToPrinter(_job, printer);
    });
}

STDMETHODIMP PrintJobSchedule::get_Priority(long* retPriority) noexcept
{
    return Get("PrintJobSchedule::get_Priority", Checks::BoundThenOut, retPriority, &Subject::GetPriority);
}

STDMETHODIMP PrintJobSchedule::put_Priority(long argPriority) noexcept
{
    return Put("PrintJobSchedule::put_Priority", &Subject::SetPriority, static_cast<DWORD>(argPriority));
}

STDMETHODIMP PrintJobSchedule::get_StartTime(BSTR* retStartTime) noexcept
{
    return Get("PrintJobSchedule::get_StartTime", Checks::BoundThenOut, retStartTime, &Subject::GetStartTime);
}

STDMETHODIMP PrintJobSchedule::put_StartTime(BSTR argStartTime) noexcept
{
    return Put("PrintJobSchedule::put_StartTime", &Subject::SetStartTime, argStartTime);
}

STDMETHODIMP PrintJobSchedule::get_UntilTime(BSTR* retUntilTime) noexcept
{
    return Get("PrintJobSchedule::get_UntilTime", Checks::BoundThenOut, retUntilTime, &Subject::GetUntilTime);
}

STDMETHODIMP PrintJobSchedule::put_UntilTime(BSTR argUntilTime) noexcept
{
    return Put("PrintJobSchedule::put_UntilTime", &Subject::SetUntilTime, argUntilTime);
}
