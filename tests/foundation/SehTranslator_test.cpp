// SPDX-License-Identifier: MIT
#include "foundation/SehTranslator.h"

#include "foundation/Assert.h"
#include "foundation/OHandle.h"

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

FAULTING void FaultBehindAligningPushes()
{
    // As in a prologue: the stack is not aligned for a call when the fault happens.
    __asm__ volatile("subq $8, %%rsp\n\tmovb $0, (%0)\n\taddq $8, %%rsp" : : "r"(badAddress) : "memory");
}

// A function whose very first instruction faults, and which has no frame at all.
extern "C" void FaultAtFirstInstruction(char* address);
extern "C" void FaultInPrologue();
__asm__(R"(
    .text
    .globl FaultAtFirstInstruction
FaultAtFirstInstruction:
    movb $0, (%rcx)
    ret
)");

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
    ::InterlockedPushEntrySList(nullptr, reinterpret_cast<SLIST_ENTRY*>(badAddress));
    ::InitializeSListHead(reinterpret_cast<SLIST_HEADER*>(badAddress));
}

template <void (*fault)(), int depth>
FAULTING void Nested()
{
    const CountsDestruction counted;
    if constexpr (depth > 0) Nested<fault, depth - 1>();
    else fault();
}

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
    {"ReadOfBadAddress", ReadBadAddress, EXCEPTION_ACCESS_VIOLATION},
    {"WriteToBadAddress", WriteBadAddress, EXCEPTION_ACCESS_VIOLATION},
    {"JumpToNull", CallNull, EXCEPTION_ACCESS_VIOLATION},
    {"ExecutionOfData", CallData, EXCEPTION_ACCESS_VIOLATION},
    {"DivisionByZero", DivideByZero, EXCEPTION_INT_DIVIDE_BY_ZERO},
    {"IllegalInstruction", ExecuteIllegalInstruction, EXCEPTION_ILLEGAL_INSTRUCTION},
    {"PrivilegedInstruction", ExecutePrivilegedInstruction, EXCEPTION_PRIV_INSTRUCTION},
    {"FloatingPointTrap", RaiseFloatingPointTrap, EXCEPTION_FLT_DIVIDE_BY_ZERO},
    {"BackwardsWrite", WriteBackwardsToBadAddress, EXCEPTION_ACCESS_VIOLATION},
    {"UnalignedStack", FaultBehindAligningPushes, EXCEPTION_ACCESS_VIOLATION},
    {"FirstInstruction", [] { FaultAtFirstInstruction(badAddress); }, EXCEPTION_ACCESS_VIOLATION},
    {"RaisedErrorCode", Raise<0xE0001234, 0>, 0xE0001234},
    {"RaisedSuccessCode", Raise<1234, 0>, 1234},
    {"RaisedNonContinuable", Raise<0xC0001234, EXCEPTION_NONCONTINUABLE>, 0xC0001234},
    {"RaisedMisalignment", Raise<0x80000002, 0>, 0x80000002},
    {"RaisedInPageError", Raise<0xC0000006, 0>, 0xC0000006},
    {"BrokenAssert", BreakAssert, assertExceptionCode},
    {"RunTimeLibrary", CopyInRunTimeLibrary, EXCEPTION_ACCESS_VIOLATION},
    {"PlatformFunction", CallPlatformWithBadAddress, EXCEPTION_ACCESS_VIOLATION},
    {"NestedFrames", Nested<ReadBadAddress, 5>, EXCEPTION_ACCESS_VIOLATION},
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

} // namespace
