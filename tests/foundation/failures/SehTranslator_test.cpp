// SPDX-License-Identifier: MIT
#include "foundation/failures/SehTranslator.h"

#include "foundation/Assert.h"
#include "foundation/OHandle.h"
#include "support/AllocationFailure.h"
#include "support/ForeignThrow.h"

#include <gtest/gtest.h>

#include <float.h>
#include <process.h>

#include <cstring>
#include <stdexcept>
#include <string>
#include <vector>

// What the functions below do on purpose is undefined behaviour to a sanitizer.
#define FAULTING __attribute__((noinline, noclone, no_sanitize("undefined")))

namespace {

struct Translated {
    unsigned code;
    EXCEPTION_POINTERS* pointers;
};

void ThrowTranslated(unsigned code, EXCEPTION_POINTERS* pointers)
{
    throw Translated{code, pointers};
}

int destroyed;

struct CountsDestruction {
    ~CountsDestruction() { ++destroyed; }
};

char* volatile badAddress = reinterpret_cast<char*>(0x10);
int volatile zero = 0;

FAULTING void ReadBadAddress()
{
    const volatile char* const address = badAddress;
    static_cast<void>(*address);
}

FAULTING void WriteBadAddress()
{
    *badAddress = 1;
}

FAULTING void CallNull()
{
    void (*volatile function)() = nullptr;
    function();
}

FAULTING void CallData()
{
    static int data[4];
    void (*volatile function)() = reinterpret_cast<void (*)()>(&data);
    function();
}

FAULTING void DivideByZero()
{
    int quotient = 1;
    __asm__ volatile("cltd\n\tidivl %1" : "+a"(quotient) : "m"(zero) : "edx", "cc");
}

FAULTING void ExecuteIllegalInstruction()
{
    __asm__ volatile("ud2");
}

FAULTING void ExecutePrivilegedInstruction()
{
    __asm__ volatile("hlt");
}

FAULTING void RaiseFloatingPointTrap()
{
    const unsigned short unmaskedDivideByZero = 0x037B;
    __asm__ volatile("fninit\n\tfldcw %0\n\tfld1\n\tfldz\n\tfdivrp\n\tfwait\n\tfstp %%st(0)"
                     :
                     : "m"(unmaskedDivideByZero));
}

FAULTING void WriteBackwardsToBadAddress()
{
    __asm__ volatile("std\n\trep stosb\n\tcld" : : "D"(badAddress), "c"(8), "a"(0) : "memory");
}

FAULTING void FaultWithUnalignedStack()
{
    // As in a prologue: the stack is not aligned for a call when the fault happens.
    __asm__ volatile("subq $8, %%rsp\n\tmovb $0, (%0)\n\taddq $8, %%rsp" : : "r"(badAddress) : "memory");
}

// Functions that a compiler would not write: one whose very first instruction faults and which has no frame, one that
// faults where its prologue has a register still to push, and one with an instruction (a read from rbx - 61) whose
// second byte on reads like an epilogue.
extern "C" void FaultAtFirstInstruction(char* address);
extern "C" void FaultInPrologue();
extern "C" void FaultInInstructionLikeAnEpilogue(char* address);
__asm__(R"(
    .text
    .globl FaultAtFirstInstruction
FaultAtFirstInstruction:
    movb $0, (%rcx)
    ret

    .globl FaultInPrologue
    .seh_proc FaultInPrologue
FaultInPrologue:
    hlt
    .seh_pushreg %rbx
    .seh_endprologue
    popq %rbx
    ret
    .seh_endproc

    .globl FaultInInstructionLikeAnEpilogue
    .seh_proc FaultInInstructionLikeAnEpilogue
FaultInInstructionLikeAnEpilogue:
    pushq %rbx
    .seh_pushreg %rbx
    subq $64, %rsp
    .seh_stackalloc 64
    .seh_endprologue
    movq %rcx, %rbx
    .byte 0x8B, 0x5B, 0xC3
    nop
    addq $64, %rsp
    popq %rbx
    ret
    .seh_endproc
)");

void CallFaultAtFirstInstruction()
{
    FaultAtFirstInstruction(badAddress);
}

void CallFaultInInstructionLikeAnEpilogue()
{
    FaultInInstructionLikeAnEpilogue(badAddress);
}

template <DWORD code, DWORD flags>
FAULTING void Raise()
{
    ::RaiseException(code, flags, 0, nullptr);
}

FAULTING void BreakAssert()
{
    ASSERT(zero == 1);
}

FAULTING void CopyInRunTimeLibrary()
{
    using Copy = void* (*)(void*, const void*, size_t);
    static const Copy copy =
        reinterpret_cast<Copy>(reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleW(L"msvcrt.dll"), "memcpy")));
    const CountsDestruction counted;
    char target[64];
    copy(target, badAddress, sizeof target);
}

FAULTING void CallPlatformWithBadAddress()
{
    const CountsDestruction counted;
    ::InitializeSListHead(reinterpret_cast<SLIST_HEADER*>(badAddress));
}

template <void (*fault)(), int depth>
FAULTING void Nested()
{
    const CountsDestruction counted;
    if constexpr (depth > 0)
        Nested<fault, depth - 1>();
    else
        fault();
}

constexpr auto RaiseErrorCode = Raise<0xE0001234, 0>;
constexpr auto RaiseSuccessCode = Raise<1234, 0>;
constexpr auto RaiseNonContinuable = Raise<0xC0001234, EXCEPTION_NONCONTINUABLE>;
constexpr auto RaiseMisalignment = Raise<0x80000002, 0>;
constexpr auto RaiseInPageError = Raise<0xC0000006, 0>;
constexpr auto FaultInNestedFrames = Nested<ReadBadAddress, 5>;

unsigned CatchOutside(void (*fault)())
{
    try {
        RunTranslated(fault);
    } catch (const Translated& translated) {
        return translated.code;
    }
    return 0;
}

unsigned CatchInside(void (*fault)())
{
    unsigned code = 0;
    RunTranslated([&] {
        try {
            fault();
        } catch (const Translated& translated) {
            code = translated.code;
        }
    });
    return code;
}

struct FaultRow {
    const char* name;
    void (*fault)();
    unsigned code;
};

void PrintTo(const FaultRow& row, std::ostream* stream)
{
    *stream << row.name;
}

const FaultRow faults[] = {
    {"ReadOfBadAddress",          ReadBadAddress,                       EXCEPTION_ACCESS_VIOLATION   },
    {"WriteToBadAddress",         WriteBadAddress,                      EXCEPTION_ACCESS_VIOLATION   },
    {"JumpToNull",                CallNull,                             EXCEPTION_ACCESS_VIOLATION   },
    {"ExecutionOfData",           CallData,                             EXCEPTION_ACCESS_VIOLATION   },
    {"DivisionByZero",            DivideByZero,                         EXCEPTION_INT_DIVIDE_BY_ZERO },
    {"IllegalInstruction",        ExecuteIllegalInstruction,            EXCEPTION_ILLEGAL_INSTRUCTION},
    {"PrivilegedInstruction",     ExecutePrivilegedInstruction,         EXCEPTION_PRIV_INSTRUCTION   },
    {"FloatingPointTrap",         RaiseFloatingPointTrap,               EXCEPTION_FLT_DIVIDE_BY_ZERO },
    {"BackwardsWrite",            WriteBackwardsToBadAddress,           EXCEPTION_ACCESS_VIOLATION   },
    {"UnalignedStack",            FaultWithUnalignedStack,              EXCEPTION_ACCESS_VIOLATION   },
    {"FirstInstruction",          CallFaultAtFirstInstruction,          EXCEPTION_ACCESS_VIOLATION   },
    {"Prologue",                  FaultInPrologue,                      EXCEPTION_PRIV_INSTRUCTION   },
    {"InstructionLikeAnEpilogue", CallFaultInInstructionLikeAnEpilogue, EXCEPTION_ACCESS_VIOLATION   },
    {"RaisedErrorCode",           RaiseErrorCode,                       0xE0001234                   },
    {"RaisedSuccessCode",         RaiseSuccessCode,                     1234                         },
    {"RaisedNonContinuable",      RaiseNonContinuable,                  0xC0001234                   },
    {"RaisedMisalignment",        RaiseMisalignment,                    0x80000002                   },
    {"RaisedInPageError",         RaiseInPageError,                     0xC0000006                   },
    {"BrokenAssert",              BreakAssert,                          assertExceptionCode          },
    {"RunTimeLibrary",            CopyInRunTimeLibrary,                 EXCEPTION_ACCESS_VIOLATION   },
    {"PlatformFunction",          CallPlatformWithBadAddress,           EXCEPTION_ACCESS_VIOLATION   },
    {"NestedFrames",              FaultInNestedFrames,                  EXCEPTION_ACCESS_VIOLATION   },
};

class SehTranslatorTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        destroyed = 0;
        SetSehTranslator(ThrowTranslated);
    }
    void TearDown() override
    {
        SetSehTranslator(nullptr);
        ::_fpreset();
    }
};

class SehTranslatorFaultTest : public SehTranslatorTest, public ::testing::WithParamInterface<FaultRow> {};

TEST_P(SehTranslatorFaultTest, IsCaughtOutsideOfTheThunk)
{
    EXPECT_EQ(CatchOutside(GetParam().fault), GetParam().code);
}

TEST_P(SehTranslatorFaultTest, IsCaughtInsideTheThunk)
{
    EXPECT_EQ(CatchInside(GetParam().fault), GetParam().code);
}

TEST_P(SehTranslatorFaultTest, IsCaughtAgainAndAgain)
{
    for (int round = 0; round < 20; ++round) {
        ASSERT_EQ(CatchOutside(GetParam().fault), GetParam().code) << "round " << round;
    }
}

INSTANTIATE_TEST_SUITE_P(EveryFault, SehTranslatorFaultTest, ::testing::ValuesIn(faults),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(SehTranslatorTest, DestructorsInAllFramesInBetweenRun)
{
    CatchOutside(Nested<ReadBadAddress, 5>);
    EXPECT_EQ(destroyed, 6);
}

TEST_F(SehTranslatorTest, DestructorsRunForACatchInsideToo)
{
    CatchInside(Nested<BreakAssert, 5>);
    EXPECT_EQ(destroyed, 6);
}

TEST_F(SehTranslatorTest, DestructorsRunForAFaultInTheRunTimeLibrary)
{
    CatchOutside(CopyInRunTimeLibrary);
    EXPECT_EQ(destroyed, 1);
}

/// What one catch clause saw.
struct Seen {
    EXCEPTION_RECORD record;
    CONTEXT context;
};

Seen SeenAfter(void (*fault)())
{
    try {
        RunTranslated(fault);
    } catch (const Translated& translated) {
        return {*translated.pointers->ExceptionRecord, *translated.pointers->ContextRecord};
    }
    return {};
}

TEST_F(SehTranslatorTest, PointersTellThePlaceAndTheAddressInTheCatchClause)
{
    const Seen seen = SeenAfter(CallFaultAtFirstInstruction);
    EXPECT_EQ(seen.record.ExceptionCode, EXCEPTION_ACCESS_VIOLATION);
    EXPECT_EQ(seen.record.ExceptionAddress, reinterpret_cast<void*>(&FaultAtFirstInstruction));
    EXPECT_EQ(seen.context.Rip, reinterpret_cast<DWORD64>(&FaultAtFirstInstruction));
    ASSERT_EQ(seen.record.NumberParameters, 2u);
    EXPECT_EQ(seen.record.ExceptionInformation[0], 1u) << "a write";
    EXPECT_EQ(seen.record.ExceptionInformation[1], reinterpret_cast<ULONG_PTR>(badAddress));
}

TEST_F(SehTranslatorTest, PointersKeepTheFlagsThatTheExceptionWasRaisedWith)
{
    EXPECT_EQ(SeenAfter(RaiseNonContinuable).record.ExceptionFlags, DWORD{EXCEPTION_NONCONTINUABLE});
}

TEST_F(SehTranslatorTest, PointersOutliveALaterFault)
{
    const EXCEPTION_POINTERS* pointers = nullptr;
    try {
        RunTranslated(DivideByZero);
    } catch (const Translated& translated) {
        pointers = translated.pointers;
        CatchOutside(ReadBadAddress);
    }
    ASSERT_NE(pointers, nullptr);
    EXPECT_EQ(pointers->ExceptionRecord->ExceptionCode, EXCEPTION_INT_DIVIDE_BY_ZERO);
}

TEST_F(SehTranslatorTest, VariablesOfTheCatchingFunctionKeepTheirValues)
{
    const int volatile source = 7;
    const int a = source + 1, b = source + 2, c = source + 3, d = source + 4, e = source + 5, f = source + 6;
    EXPECT_EQ(CatchOutside(ReadBadAddress), EXCEPTION_ACCESS_VIOLATION);
    EXPECT_EQ(CatchInside(Nested<DivideByZero, 3>), EXCEPTION_INT_DIVIDE_BY_ZERO);
    EXPECT_EQ((std::vector{a, b, c, d, e, f}), (std::vector{8, 9, 10, 11, 12, 13}));
}

TEST_F(SehTranslatorTest, LastErrorSurvivesUpToTheCatchClause)
{
    DWORD lastError = 0;
    try {
        RunTranslated([] {
            ::SetLastError(4711);
            ReadBadAddress();
        });
    } catch (const Translated&) {
        lastError = ::GetLastError();
    }
    EXPECT_EQ(lastError, 4711u);
}

TEST_F(SehTranslatorTest, AFaultInACatchClauseIsTranslatedToo)
{
    unsigned code = 0;
    RunTranslated([&] {
        try {
            try {
                ReadBadAddress();
            } catch (const Translated&) {
                DivideByZero();
            }
        } catch (const Translated& translated) {
            code = translated.code;
        }
    });
    EXPECT_EQ(code, EXCEPTION_INT_DIVIDE_BY_ZERO);
}

TEST_F(SehTranslatorTest, NestedThunksTranslateOnce)
{
    int caught = 0;
    RunTranslated([&] {
        try {
            RunTranslated(ReadBadAddress);
        } catch (const Translated&) {
            ++caught;
        }
    });
    EXPECT_EQ(caught, 1);
}

TEST_F(SehTranslatorTest, ExceptionsOfTheLanguagePassUntouched)
{
    EXPECT_THROW(RunTranslated([] {
                     const CountsDestruction counted;
                     throw std::runtime_error("own");
                 }),
                 std::runtime_error);
    EXPECT_EQ(destroyed, 1);
}

TEST_F(SehTranslatorTest, ABodyThatFailsInNothingJustRuns)
{
    int runs = 0;
    RunTranslated([&runs] { ++runs; });
    EXPECT_EQ(runs, 1);
}

TEST_F(SehTranslatorTest, TheTranslatorMayThrowAnything)
{
    SetSehTranslator([](unsigned, EXCEPTION_POINTERS*) { throw std::runtime_error("translated"); });
    EXPECT_THROW(RunTranslated(ReadBadAddress), std::runtime_error);
}

TEST_F(SehTranslatorTest, SettingGivesTheTranslatorBefore)
{
    EXPECT_EQ(SetSehTranslator(nullptr), &ThrowTranslated);
    EXPECT_EQ(SetSehTranslator(ThrowTranslated), nullptr);
}

TEST_F(SehTranslatorTest, TheTranslatorBelongsToItsThread)
{
    static SehTranslator ofOtherThread;
    ofOtherThread = ThrowTranslated;
    const OWaitHandle thread(reinterpret_cast<HANDLE>(::_beginthreadex(
        nullptr, 0,
        [](void*) -> unsigned {
            ofOtherThread = SetSehTranslator(nullptr);
            return 0;
        },
        nullptr, 0, nullptr)));
    ::WaitForSingleObject(thread.Get(), INFINITE);
    EXPECT_EQ(ofOtherThread, nullptr);
}

TEST_F(SehTranslatorTest, TheTranslatorOfTheMomentOfTheFaultIsUsed)
{
    EXPECT_THROW(RunTranslated([] {
                     SetSehTranslator([](unsigned, EXCEPTION_POINTERS*) { throw std::runtime_error("later one"); });
                     ReadBadAddress();
                 }),
                 std::runtime_error);
}

TEST_F(SehTranslatorTest, AFaultInTheTranslatorIsTranslatedInItsTurn)
{
    SetSehTranslator([](unsigned code, EXCEPTION_POINTERS* pointers) {
        if (code == EXCEPTION_ACCESS_VIOLATION) DivideByZero();
        ThrowTranslated(code, pointers);
    });
    EXPECT_EQ(CatchOutside(ReadBadAddress), EXCEPTION_INT_DIVIDE_BY_ZERO);
}

// --- The state in which the translator runs ---

TEST_F(SehTranslatorTest, TheTranslatorFindsAnAlignedStack)
{
    SetSehTranslator([](unsigned code, EXCEPTION_POINTERS* pointers) {
        alignas(16) char room[16];
        __asm__ volatile("movaps %%xmm0, %0" : "=m"(room));
        ThrowTranslated(code, pointers);
    });
    EXPECT_EQ(CatchOutside(FaultWithUnalignedStack), EXCEPTION_ACCESS_VIOLATION);
    EXPECT_EQ(CatchOutside(CallFaultAtFirstInstruction), EXCEPTION_ACCESS_VIOLATION);
}

TEST_F(SehTranslatorTest, TheTranslatorFindsTheDirectionFlagClear)
{
    static unsigned long long flags;
    SetSehTranslator([](unsigned code, EXCEPTION_POINTERS* pointers) {
        __asm__ volatile("pushfq\n\tpopq %0" : "=r"(flags));
        ThrowTranslated(code, pointers);
    });
    CatchOutside(WriteBackwardsToBadAddress);
    EXPECT_EQ(flags & 0x400, 0u);
}

TEST_F(SehTranslatorTest, TheTranslatorCanCalculateAfterAFloatingPointTrap)
{
    SetSehTranslator([](unsigned code, EXCEPTION_POINTERS* pointers) {
        __asm__ volatile("fwait");
        ThrowTranslated(code, pointers);
    });
    EXPECT_EQ(CatchOutside(RaiseFloatingPointTrap), EXCEPTION_FLT_DIVIDE_BY_ZERO);
}

// --- Places that the compiler believes unable to throw ---

FAULTING void FaultWithoutThrowing() noexcept
{
    ReadBadAddress();
}

TEST_F(SehTranslatorTest, AFaultLeavesAFunctionThatPromisesNotToThrow)
{
    EXPECT_EQ(CatchOutside([] {
                  const CountsDestruction counted;
                  FaultWithoutThrowing();
              }),
              EXCEPTION_ACCESS_VIOLATION);
}

TEST_F(SehTranslatorTest, AFaultLeavesADestructor)
{
    struct FaultsAtItsEnd {
        FAULTING ~FaultsAtItsEnd() { ReadBadAddress(); }
    };
    EXPECT_EQ(CatchOutside([] {
                  const CountsDestruction counted;
                  const FaultsAtItsEnd faulting;
              }),
              EXCEPTION_ACCESS_VIOLATION);
}

FAULTING void CopyByBuiltin(char* target, const char* source, size_t size)
{
    const CountsDestruction counted;
    std::memcpy(target, source, size);
    BreakAssert();
}

TEST_F(SehTranslatorTest, AFaultInABuiltinFunctionPassesOverTheFrameThatCalledIt)
{
    char target[200];
    size_t volatile size = sizeof target;
    unsigned code = 0;
    try {
        RunTranslated([&] { CopyByBuiltin(target, badAddress, size); });
    } catch (const Translated& translated) {
        code = translated.code;
    }
    EXPECT_EQ(code, EXCEPTION_ACCESS_VIOLATION);
}

// --- C++ exceptions of the platform's usual compiler ---

template <int depth>
constexpr auto ThrowForeignInNestedFrames = Nested<ThrowAsForeignCode, depth>;

TEST_F(SehTranslatorTest, AForeignExceptionIsCaughtOutsideOfTheThunk)
{
    EXPECT_THROW(RunTranslated(ThrowAsForeignCode), ForeignException);
}

TEST_F(SehTranslatorTest, AForeignExceptionIsCaughtInsideTheThunk)
{
    bool caught = false;
    RunTranslated([&] {
        try {
            ThrowAsForeignCode();
        } catch (...) {
            caught = true;
        }
    });
    EXPECT_TRUE(caught);
}

TEST_F(SehTranslatorTest, AForeignExceptionIsCaughtAgainAndAgain)
{
    for (int round = 0; round < 20; ++round) {
        EXPECT_THROW(RunTranslated(ThrowAsForeignCode), ForeignException) << "round " << round;
    }
}

TEST_F(SehTranslatorTest, AForeignExceptionRunsTheDestructorsInAllFramesInBetween)
{
    EXPECT_THROW(RunTranslated(ThrowForeignInNestedFrames<5>), ForeignException);
    EXPECT_EQ(destroyed, 6);
}

TEST_F(SehTranslatorTest, AForeignExceptionIsNotShownToTheTranslator)
{
    static int asked;
    asked = 0;
    SetSehTranslator([](unsigned, EXCEPTION_POINTERS*) { ++asked; });
    EXPECT_THROW(RunTranslated(ThrowAsForeignCode), ForeignException);
    EXPECT_EQ(asked, 0);
}

TEST_F(SehTranslatorTest, AForeignExceptionNeedsNoTranslator)
{
    SetSehTranslator(nullptr);
    EXPECT_THROW(RunTranslated(ThrowAsForeignCode), ForeignException);
}

TEST_F(SehTranslatorTest, AForeignExceptionNeedsNoEarlierTranslatorOfItsThread)
{
    static int caught;
    caught = 0;
    const OWaitHandle thread(reinterpret_cast<HANDLE>(::_beginthreadex(
        nullptr, 0,
        [](void*) -> unsigned {
            for (int round = 0; round < 2; ++round) {
                try {
                    RunTranslated(ThrowAsForeignCode);
                } catch (const ForeignException&) {
                    ++caught;
                }
            }
            return 0;
        },
        nullptr, 0, nullptr)));
    ::WaitForSingleObject(thread.Get(), INFINITE);
    EXPECT_EQ(caught, 2);
}

TEST_F(SehTranslatorTest, AFaultAfterAForeignExceptionIsTranslated)
{
    EXPECT_THROW(RunTranslated(ThrowAsForeignCode), ForeignException);
    EXPECT_EQ(CatchOutside(ReadBadAddress), EXCEPTION_ACCESS_VIOLATION);
}

TEST_F(SehTranslatorTest, AForeignExceptionInACatchClauseIsCaughtToo)
{
    EXPECT_THROW(RunTranslated([] {
                     try {
                         ReadBadAddress();
                     } catch (const Translated&) {
                         ThrowAsForeignCode();
                     }
                 }),
                 ForeignException);
}

// A frame as that compiler makes it for a catch clause: it takes the exceptions of its own language. Gives 1 if it took
// one, otherwise 0.
extern "C" int CallUnderForeignCatch(void (*body)());
extern "C" void ForeignCatchClause();
extern "C" EXCEPTION_DISPOSITION TakeForeignException(EXCEPTION_RECORD* record, void* frame, CONTEXT* context,
                                                      DISPATCHER_CONTEXT* dispatcher)
{
    if (record->ExceptionFlags & (EXCEPTION_UNWINDING | EXCEPTION_EXIT_UNWIND)) return ExceptionContinueSearch;
    if (record->ExceptionCode == foreignExceptionCode) {
        void* const taken = reinterpret_cast<void*>(ULONG_PTR{1});
        void* const clause = reinterpret_cast<void*>(&ForeignCatchClause);
        ::RtlUnwindEx(frame, clause, record, taken, context, dispatcher->HistoryTable);
    }
    return ExceptionContinueSearch;
}
__asm__(R"(
    .text
    .globl CallUnderForeignCatch
    .globl ForeignCatchClause
    .seh_proc CallUnderForeignCatch
CallUnderForeignCatch:
    subq $40, %rsp
    .seh_stackalloc 40
    .seh_endprologue
    call *%rcx
    xorl %eax, %eax
ForeignCatchClause:
    nop
    addq $40, %rsp
    ret
    .seh_handler TakeForeignException, @except
    .seh_endproc
)");

TEST_F(SehTranslatorTest, ANearerForeignCatchClauseTakesAForeignException)
{
    int taken = 0;
    RunTranslated([&] { taken = CallUnderForeignCatch(ThrowAsForeignCode); });
    EXPECT_EQ(taken, 1);
}

TEST_F(SehTranslatorTest, AForeignCatchClauseOutsideOfTheThunkIsNotReached)
{
    static bool caught;
    caught = false;
    const int taken = CallUnderForeignCatch([] {
        try {
            RunTranslated(ThrowAsForeignCode);
        } catch (const ForeignException&) {
            caught = true;
        }
    });
    EXPECT_EQ(taken, 0);
    EXPECT_TRUE(caught);
}

TEST_F(SehTranslatorTest, AForeignExceptionAfterATakenOneIsCaught)
{
    EXPECT_THROW(RunTranslated([] {
                     CallUnderForeignCatch(ThrowAsForeignCode);
                     ThrowAsForeignCode();
                 }),
                 ForeignException);
}

// --- What is kept in ---

TEST_F(SehTranslatorTest, AContainedBodyThatEndsGivesTrue)
{
    int runs = 0;
    EXPECT_TRUE(RunContained([&runs] { ++runs; }));
    EXPECT_EQ(runs, 1);
}

TEST_F(SehTranslatorTest, AContainedBodyLetsNothingOut)
{
    static constexpr struct {
        const char* name;
        void (*fail)();
    } rows[] = {
        {"fault",             ReadBadAddress                                },
        {"broken assert",     BreakAssert                                   },
        {"foreign exception", ThrowAsForeignCode                            },
        {"exception",         [] { throw std::runtime_error("of its own"); }},
    };
    for (const auto& row : rows) {
        destroyed = 0;
        const bool ended = RunContained([&row] {
            const CountsDestruction counted;
            row.fail();
        });
        EXPECT_FALSE(ended) << row.name;
        EXPECT_EQ(destroyed, 1) << row.name;
    }
}

TEST_F(SehTranslatorTest, AContainedBodyNeedsNoTranslatorAndLeavesNone)
{
    SetSehTranslator(nullptr);
    EXPECT_FALSE(RunContained(ReadBadAddress));
    EXPECT_EQ(SetSehTranslator(nullptr), nullptr);
}

TEST_F(SehTranslatorTest, AContainedBodyPutsTheTranslatorBack)
{
    RunContained(ReadBadAddress);
    EXPECT_EQ(SetSehTranslator(ThrowTranslated), &ThrowTranslated);
    RunContained([] {});
    EXPECT_EQ(SetSehTranslator(ThrowTranslated), &ThrowTranslated);
}

TEST_F(SehTranslatorTest, AContainedBodyIsNotRunWithoutMemoryForItsThread)
{
    static bool ended;
    static int runs;
    ended = true;
    runs = 0;
    const OWaitHandle thread(reinterpret_cast<HANDLE>(::_beginthreadex(
        nullptr, 0,
        [](void*) -> unsigned {
            const AllocationFailure failure(0);
            ended = RunContained([] { ++runs; });
            return 0;
        },
        nullptr, 0, nullptr)));
    ::WaitForSingleObject(thread.Get(), INFINITE);
    EXPECT_FALSE(ended);
    EXPECT_EQ(runs, 0);
}

// --- What isn't translated ---

/// Sees what nobody else handles, and lets the program go on after it.
class LastResort {
public:
    LastResort()
    {
        codes.clear();
        _before = ::SetUnhandledExceptionFilter([](EXCEPTION_POINTERS* pointers) -> LONG {
            codes.push_back(pointers->ExceptionRecord->ExceptionCode);
            return EXCEPTION_CONTINUE_EXECUTION;
        });
    }
    LastResort(const LastResort&) = delete;
    LastResort& operator=(const LastResort&) = delete;
    ~LastResort() { ::SetUnhandledExceptionFilter(_before); }

    static inline std::vector<DWORD> codes;

private:
    LPTOP_LEVEL_EXCEPTION_FILTER _before;
};

template <DWORD code>
void RaiseAndGoOn()
{
    int wentOn = 0;
    unsigned translated = 0;
    const LastResort lastResort;
    try {
        RunTranslated([&] {
            ::RaiseException(code, 0, 0, nullptr);
            ++wentOn;
        });
    } catch (const Translated& exception) {
        translated = exception.code;
    }
    EXPECT_EQ(translated, 0u);
    EXPECT_EQ(wentOn, 1);
    EXPECT_EQ(lastResort.codes, std::vector<DWORD>{code});
}

TEST_F(SehTranslatorTest, WithoutATranslatorTheSearchGoesOn)
{
    SetSehTranslator(nullptr);
    RaiseAndGoOn<0xE0001234>();
}

TEST_F(SehTranslatorTest, InformationalCodesPass)
{
    RaiseAndGoOn<0x40001234>();
    RaiseAndGoOn<0x60001234>();
}

TEST_F(SehTranslatorTest, BreakpointsAndStepsPass)
{
    RaiseAndGoOn<0x80000003>();
    RaiseAndGoOn<0x80000004>();
}

TEST_F(SehTranslatorTest, ATranslatorThatReturnsLetsTheSearchGoOn)
{
    static int asked;
    asked = 0;
    SetSehTranslator([](unsigned, EXCEPTION_POINTERS*) { ++asked; });
    RaiseAndGoOn<0xE0001234>();
    EXPECT_EQ(asked, 1);
}

TEST_F(SehTranslatorTest, AfterADeclinedExceptionTheNextIsTranslatedAgain)
{
    SetSehTranslator([](unsigned code, EXCEPTION_POINTERS* pointers) {
        if (code != 0xE0001234) ThrowTranslated(code, pointers);
    });
    RaiseAndGoOn<0xE0001234>();
    EXPECT_EQ(CatchOutside(ReadBadAddress), EXCEPTION_ACCESS_VIOLATION);
}

// --- Stack overflow ---

int constructed;

struct CountsBoth {
    CountsBoth() { ++constructed; }
    ~CountsBoth() { ++destroyed; }
};

using Recursion = int (*)(int depth);

/// Calls `recursion` in a way that the compiler can't make a loop of.
FAULTING int CallAgain(Recursion recursion, int depth)
{
    const volatile Recursion again = recursion;
    return again(depth + 1) + depth;
}

FAULTING int RecurseWithoutCleanup(int depth)
{
    return CallAgain(RecurseWithoutCleanup, depth) + 1;
}

FAULTING int RecurseWithCleanup(int depth)
{
    const CountsBoth counted;
    return CallAgain(RecurseWithCleanup, depth);
}

template <int size>
FAULTING int RecurseWithBuffer(int depth)
{
    const CountsBoth counted;
    char volatile buffer[size];
    buffer[0] = static_cast<char>(depth);
    return CallAgain(RecurseWithBuffer<size>, depth) + buffer[0];
}

FAULTING int RecurseWithCatch(int depth)
{
    try {
        return CallAgain(RecurseWithCatch, depth);
    } catch (const std::bad_alloc&) {
        return 0;
    }
}

/// Its stack is probed with the address of some instruction in a register, which must not be taken for a return
/// address.
FAULTING int RecurseWithCodeAddress(const char* instruction, int depth)
{
    const CountsBoth counted;
    char volatile buffer[20000];
    buffer[0] = static_cast<char>(depth);
    const volatile auto again = RecurseWithCodeAddress;
    return again(instruction, depth + 1) + buffer[0];
}

void OverflowWithCodeAddress()
{
    constexpr int prologueSize = 5;
    RecurseWithCodeAddress(reinterpret_cast<const char*>(&FaultInInstructionLikeAnEpilogue) + prologueSize, 0);
}

template <Recursion recursion>
void Overflow()
{
    recursion(0);
}

const FaultRow overflows[] = {
    {"WithoutCleanup",               Overflow<RecurseWithoutCleanup>,     EXCEPTION_STACK_OVERFLOW},
    {"WithCleanup",                  Overflow<RecurseWithCleanup>,        EXCEPTION_STACK_OVERFLOW},
    {"WithCatch",                    Overflow<RecurseWithCatch>,          EXCEPTION_STACK_OVERFLOW},
    {"WithSmallBuffer",              Overflow<RecurseWithBuffer<100>>,    EXCEPTION_STACK_OVERFLOW},
    {"WithBufferOfHalfAPage",        Overflow<RecurseWithBuffer<2000>>,   EXCEPTION_STACK_OVERFLOW},
    {"WithBufferOfManyPages",        Overflow<RecurseWithBuffer<20000>>,  EXCEPTION_STACK_OVERFLOW},
    {"WithBufferOfMostOfTheReserve", Overflow<RecurseWithBuffer<100000>>, EXCEPTION_STACK_OVERFLOW},
    {"WithCodeAddressInARegister",   OverflowWithCodeAddress,             EXCEPTION_STACK_OVERFLOW},
};

class SehTranslatorOverflowTest : public SehTranslatorTest, public ::testing::WithParamInterface<FaultRow> {
protected:
    void SetUp() override
    {
        SehTranslatorTest::SetUp();
        constructed = 0;
    }
};

TEST_P(SehTranslatorOverflowTest, IsCaughtOutsideAgainAndAgain)
{
    for (int round = 0; round < 5; ++round) {
        ASSERT_EQ(CatchOutside(GetParam().fault), EXCEPTION_STACK_OVERFLOW) << "round " << round;
    }
}

TEST_P(SehTranslatorOverflowTest, IsCaughtAgainAndAgainInsideOneThunk)
{
    int caught = 0;
    RunTranslated([&] {
        for (int round = 0; round < 5; ++round) {
            try {
                GetParam().fault();
            } catch (const Translated& translated) {
                caught += translated.code == EXCEPTION_STACK_OVERFLOW;
            }
        }
    });
    EXPECT_EQ(caught, 5);
}

TEST_P(SehTranslatorOverflowTest, RunsAllDestructorsButPerhapsTheInnermost)
{
    CatchOutside(GetParam().fault);
    EXPECT_LE(constructed - destroyed, 1);
    EXPECT_GE(constructed, destroyed);
}

TEST_P(SehTranslatorOverflowTest, IsCaughtAgainAndAgainOnASmallThread)
{
    static int caught;
    static void (*overflow)();
    caught = 0;
    overflow = GetParam().fault;
    const auto run = [](void*) -> unsigned {
        SetSehTranslator(ThrowTranslated);
        for (int round = 0; round < 3; ++round) caught += CatchOutside(overflow) == EXCEPTION_STACK_OVERFLOW;
        return 0;
    };
    const OWaitHandle thread(reinterpret_cast<HANDLE>(
        ::_beginthreadex(nullptr, 256 * 1024, run, nullptr, STACK_SIZE_PARAM_IS_A_RESERVATION, nullptr)));
    ::WaitForSingleObject(thread.Get(), INFINITE);
    EXPECT_EQ(caught, 3);
}

INSTANTIATE_TEST_SUITE_P(EveryOverflow, SehTranslatorOverflowTest, ::testing::ValuesIn(overflows),
                         [](const auto& row) { return std::string(row.param.name); });

} // namespace
