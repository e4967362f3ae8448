// SPDX-License-Identifier: MIT
#include "foundation/failures/SehTranslator.h"

#include <malloc.h>
#include <unwind.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <new>
#include <utility>

extern "C" {
void SehResumeAtFault();
[[noreturn]] void SehTranslateFault();
EXCEPTION_DISPOSITION SehThunkHandler(EXCEPTION_RECORD* record, void* frame, CONTEXT* context,
                                      DISPATCHER_CONTEXT* dispatcher) noexcept;
EXCEPTION_DISPOSITION SehResumeHandler(EXCEPTION_RECORD* record, void* frame, CONTEXT* context,
                                       DISPATCHER_CONTEXT* dispatcher) noexcept;
void __gxx_personality_seh0(); // NOLINT(bugprone-reserved-identifier): called by the platform only
}

namespace {

constexpr DWORD gccException = 0x20474343;     // thrown by this compiler's run-time
constexpr DWORD gccUnwind = 0x21474343;        // the same, while it unwinds
constexpr DWORD gccForcedUnwind = 0x22474343;  // the same, for a thread that is being cancelled
constexpr DWORD foreignException = 0xE06D7363; // thrown by the platform's usual compiler
constexpr std::array untouchedCodes{gccException, gccUnwind, gccForcedUnwind, STATUS_BREAKPOINT, STATUS_SINGLE_STEP};

constexpr DWORD severityMask = 0xC0000000;
constexpr DWORD severityInformational = 0x40000000;

constexpr DWORD directionFlag = 0x400;
constexpr DWORD alignmentCheckFlag = 0x40000;
constexpr DWORD sseExceptionFlags = 0x3F;
constexpr WORD x87ExceptionFlags = 0x80FF;

/// Room that stays usable on a thread's stack after an overflow: for the translator with all that it calls, and for
/// finding the catch clause.
constexpr ULONG stackReserve = 128 * 1024;
constexpr ULONG_PTR pageSize = 4096;

/// Copies of what the platform reported about one fault.
struct Fault {
    EXCEPTION_RECORD record;
    CONTEXT context;
    EXCEPTION_POINTERS pointers;
};

/// What one thread needs. Made when the thread sets its first translator or meets its first foreign exception.
struct ThreadState {
    SehTranslator translator = nullptr;
    std::array<Fault, 4> faults; ///< used in turn: a fault inside the translator gets the next
    size_t currentFault = 0;
    bool passing = false;                           ///< the translator declined: let the exception pass
    ULONG_PTR overflowedAt = 0;                     ///< stack pointer of an overflow whose guard page is still missing
    _Unwind_Exception_Cleanup_Fn cleanup = nullptr; ///< of the exception thrown for that overflow
    CONTEXT scratch[2];                             ///< off the stack, which may be nearly full
};

void CALLBACK DeleteThreadState(void* state) noexcept
{
    std::default_delete<ThreadState>()(static_cast<ThreadState*>(state));
}

/// Reserves room for the translator on the calling thread's stack, at most a quarter of what is free. The platform
/// keeps the reservation until the thread ends; where it refuses, the thread goes without.
void ReserveStack() noexcept
{
    MEMORY_BASIC_INFORMATION stack{};
    if (!::VirtualQuery(&stack, &stack, sizeof stack)) return;
    const auto here = reinterpret_cast<ULONG_PTR>(&stack);
    const auto bottom = reinterpret_cast<ULONG_PTR>(stack.AllocationBase);
    ULONG size = static_cast<ULONG>(std::min<ULONG_PTR>(stackReserve, (here - bottom) / 4));
    if (::SetThreadStackGuarantee(&size)) ::_resetstkoflw();
}

/// Owner of the slot by which each thread finds its state, and through it of the states.
class ThreadStates {
public:
    ThreadStates() noexcept : _slot(::FlsAlloc(DeleteThreadState)) {}
    ThreadStates(const ThreadStates&) = delete;
    ThreadStates& operator=(const ThreadStates&) = delete;
    ~ThreadStates() { ::FlsFree(_slot); }

    /// Null if the thread has none yet. Keeps the thread's last error.
    ThreadState* Find() const noexcept
    {
        const DWORD lastError = ::GetLastError();
        auto* const state = static_cast<ThreadState*>(::FlsGetValue(_slot));
        ::SetLastError(lastError);
        return state;
    }

    /// Null if there is no memory for it.
    ThreadState* FindOrMake() const noexcept
    {
        if (ThreadState* const state = Find()) return state;
        std::unique_ptr<ThreadState> state(new (std::nothrow) ThreadState);
        if (!state || !::FlsSetValue(_slot, state.get())) return nullptr;
        ReserveStack();
        return state.release();
    }

private:
    DWORD _slot;
};

const ThreadStates& States() noexcept
{
    static const ThreadStates states;
    return states;
}

EXCEPTION_ROUTINE* CxxPersonality() noexcept
{
    return reinterpret_cast<EXCEPTION_ROUTINE*>(&__gxx_personality_seh0);
}

/// Whether the exception leaves `CallTranslated` as one of this compiler's.
bool IsTranslated(const EXCEPTION_RECORD& record, const ThreadState& state) noexcept
{
    if (record.ExceptionCode == foreignException) return true;
    if (!state.translator) return false;
    if ((record.ExceptionCode & severityMask) == severityInformational) return false;
    return std::ranges::find(untouchedCodes, record.ExceptionCode) == untouchedCodes.end();
}

// --- Where the translator's exception seems to come from ---

/// One step of an unwinder from a place in the code to its caller.
struct Step {
    RUNTIME_FUNCTION* function = nullptr; ///< null: a function without a frame
    DWORD64 imageBase = 0;
    EXCEPTION_ROUTINE* handler = nullptr;
    const uint8_t* handlerData = nullptr;
};

/// Takes `context` from `address`, seen as a place inside the frame that `context` tells, to the caller.
Step StepOut(CONTEXT& context, DWORD64 address) noexcept
{
    Step step;
    step.function = ::RtlLookupFunctionEntry(address, &step.imageBase, nullptr);
    if (!step.function) {
        context.Rip = *reinterpret_cast<const DWORD64*>(context.Rsp);
        context.Rsp += sizeof(DWORD64);
        return step;
    }
    void* handlerData = nullptr;
    DWORD64 frame = 0;
    step.handler = ::RtlVirtualUnwind(UNW_FLAG_EHANDLER, step.imageBase, address, step.function, &context, &handlerData,
                                      &frame, nullptr);
    step.handlerData = static_cast<const uint8_t*>(handlerData);
    return step;
}

uint64_t ReadUleb128(const uint8_t*& position) noexcept
{
    uint64_t value = 0;
    for (unsigned shift = 0;; shift += 7) {
        const uint8_t byte = *position++;
        value |= uint64_t{byte & 0x7Fu} << shift;
        if (!(byte & 0x80)) return value;
    }
}

/// Whether the C++ personality lets an exception pass at `address`. It ends the process for a place that its call-site
/// table doesn't name, and the compiler leaves out what it believes unable to fail: memcpy, or touching a local array.
bool MayThrow(const Step& step, DWORD64 address) noexcept
{
    constexpr uint8_t omitted = 0xFF;
    constexpr uint8_t uleb128 = 0x01;
    const uint8_t* position = step.handlerData;
    if (*position++ != omitted) return true;
    if (*position++ != omitted) ReadUleb128(position);
    if (*position++ != uleb128) return true;

    const uint64_t offset = address - (step.imageBase + step.function->BeginAddress);
    const uint64_t length = ReadUleb128(position);
    const uint8_t* const end = position + length;
    while (position < end) {
        const uint64_t start = ReadUleb128(position);
        const uint64_t size = ReadUleb128(position);
        ReadUleb128(position); // landing pad
        ReadUleb128(position); // action
        if (offset - start < size) return true;
    }
    return false;
}

/// The unwinder looks up the address before a return address. So one past the fault is right, unless that looks like
/// another place: after a one-byte instruction in the prologue, or like the beginning of an epilogue.
DWORD64 ReturnAddressFor(const CONTEXT& fault, CONTEXT (&scratch)[2]) noexcept
{
    scratch[0] = fault;
    scratch[1] = fault;
    const Step exact = StepOut(scratch[0], fault.Rip);
    const Step next = StepOut(scratch[1], fault.Rip + 1);
    const bool samePlace = exact.function == next.function && exact.handler == next.handler &&
                           scratch[0].Rip == scratch[1].Rip && scratch[0].Rsp == scratch[1].Rsp;
    return samePlace ? fault.Rip + 1 : fault.Rip;
}

/// Finds the return address with which the fault at `context` is delivered. Frames with C++ handling that can't let an
/// exception pass at their place are left out, the exception comes out of their caller instead: their own destructors
/// don't run, but the process lives. The search ends at the latest at `CallTranslated`.
DWORD64 PlaceOfThrow(CONTEXT& context, CONTEXT (&scratch)[2]) noexcept
{
    DWORD64 returnAddress = ReturnAddressFor(context, scratch);
    DWORD64 address = context.Rip;
    CONTEXT& caller = scratch[0];
    caller = context;
    for (;;) {
        const Step step = StepOut(caller, address);
        if (step.handler) {
            if (step.handler != CxxPersonality() || MayThrow(step, address)) return returnAddress;
            context = caller;
            returnAddress = caller.Rip;
        }
        address = caller.Rip - 1;
    }
}

/// Makes the thread go on in `SehResumeAtFault`, in a state in which ordinary code can run.
void ResumeInTranslator(CONTEXT& context, CONTEXT (&scratch)[2]) noexcept
{
    context.Rcx = PlaceOfThrow(context, scratch);
    context.Rip = reinterpret_cast<DWORD64>(&SehResumeAtFault);
    context.EFlags &= ~(directionFlag | alignmentCheckFlag);
    context.MxCsr &= ~sseExceptionFlags;
    context.FltSave.MxCsr &= ~sseExceptionFlags;
    context.FltSave.StatusWord = static_cast<WORD>(context.FltSave.StatusWord & ~x87ExceptionFlags);
}

// --- Stack overflow ---

/// Restores the stack's guard page, once the stack pointer has left the reserve. The platform removes the page when it
/// reports an overflow; without it the next overflow would end the process.
void RestoreGuardPage(ThreadState& state) noexcept
{
    constexpr ULONG_PTR distance = 4 * pageSize;
    const auto here = reinterpret_cast<ULONG_PTR>(__builtin_frame_address(0));
    if (!state.overflowedAt || here < state.overflowedAt + distance) return;
    if (::_resetstkoflw()) state.overflowedAt = 0;
}

/// Replaces the clean-up routine of an exception that reports an overflow: called at the end of its catch clause.
void RestoreGuardPageAndCleanUp(_Unwind_Reason_Code reason, _Unwind_Exception* exception) noexcept
{
    ThreadState* const state = States().Find();
    if (!state) return;
    const _Unwind_Exception_Cleanup_Fn cleanup = state->cleanup;
    RestoreGuardPage(*state);
    if (cleanup) cleanup(reason, exception);
}

/// What a contained body fails with if it fails by a structured exception.
class ContainedFault {};

[[noreturn]] void ThrowContainedFault(unsigned, EXCEPTION_POINTERS*)
{
    throw ContainedFault();
}

} // namespace

SehTranslator SetSehTranslator(SehTranslator translator) noexcept
{
    ThreadState* const state = translator ? States().FindOrMake() : States().Find();
    if (!state) return nullptr;
    RestoreGuardPage(*state);
    return std::exchange(state->translator, translator);
}

bool CallContained(void (*body)(void* context), void* context) noexcept
{
    if (!States().FindOrMake()) return false;
    const SehTranslator before = SetSehTranslator(ThrowContainedFault);
    bool ended = false;
    try {
        CallTranslated(body, context);
        ended = true;
    } catch (...) {
        // Kept in: what failed shows in the result.
    }
    SetSehTranslator(before);
    return ended;
}

/// Sees every exception that passes `CallTranslated`.
EXCEPTION_DISPOSITION SehThunkHandler(EXCEPTION_RECORD* record, void*, CONTEXT* context, DISPATCHER_CONTEXT*) noexcept
{
    ThreadState* const state = record->ExceptionCode == foreignException ? States().FindOrMake() : States().Find();
    if (!state) return ExceptionContinueSearch;
    if (record->ExceptionFlags & (EXCEPTION_UNWINDING | EXCEPTION_EXIT_UNWIND)) {
        state->passing = false;
        return ExceptionContinueSearch;
    }
    if (state->passing || !IsTranslated(*record, *state)) return ExceptionContinueSearch;

    state->currentFault = (state->currentFault + 1) % state->faults.size();
    Fault& fault = state->faults[state->currentFault];
    fault.record = *record;
    fault.context = *context;
    fault.pointers = {&fault.record, &fault.context};
    if (record->ExceptionCode == STATUS_STACK_OVERFLOW) state->overflowedAt = context->Rsp;

    record->ExceptionFlags &= ~static_cast<DWORD>(EXCEPTION_NONCONTINUABLE);
    ResumeInTranslator(*context, state->scratch);
    return ExceptionContinueExecution;
}

/// Sees the translator's exception while it is unwound, the catch clause being known.
EXCEPTION_DISPOSITION SehResumeHandler(EXCEPTION_RECORD* record, void*, CONTEXT*, DISPATCHER_CONTEXT*) noexcept
{
    ThreadState* const state = States().Find();
    if (!state || !state->overflowedAt || record->ExceptionCode != gccException) return ExceptionContinueSearch;
    auto* const exception = reinterpret_cast<_Unwind_Exception*>(record->ExceptionInformation[0]);
    if (exception->exception_cleanup != &RestoreGuardPageAndCleanUp) {
        state->cleanup = std::exchange(exception->exception_cleanup, &RestoreGuardPageAndCleanUp);
    }
    return ExceptionContinueSearch;
}

void SehTranslateFault()
{
    ThreadState& state = *States().Find();
    Fault& fault = state.faults[state.currentFault];
    if (fault.record.ExceptionCode == foreignException) throw ForeignException();
    state.translator(fault.record.ExceptionCode, &fault.pointers);

    // The translator has declined: raise the exception once more for those who come after it.
    state.passing = true;
    ::RaiseException(fault.record.ExceptionCode, fault.record.ExceptionFlags & EXCEPTION_NONCONTINUABLE,
                     fault.record.NumberParameters, fault.record.ExceptionInformation);
    state.passing = false;
    ::RtlRestoreContext(&fault.context, nullptr);
    __builtin_unreachable();
}
