// SPDX-License-Identifier: MIT
#include "vrl/frame/MethodGuard.h"

#include "support/ImportHook.h"
#include "support/Raising.h"
#include "support/com/ErrorInformation.h"

#include "foundation/Assert.h"
#include "foundation/failures/OException.h"
#include "foundation/failures/SehTranslator.h"
#include "vrl/classes/PrintJobSchedule.h"
#include "vrl/frame/VRException.h"

#include <gmock/gmock.h>
#include <oleauto.h>

#include <new>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

constexpr CLSID testClass = {
    0x7a1c3c52, 0x94c1, 0x4f52, {0x8e, 0x0b, 0x5d, 0x3e, 0x1c, 0x63, 0x7a, 0x21}
};

/// Result of a guarded body, and what it left for the caller.
struct GuardedOutcome {
    HRESULT result;
    ErrorInformation error;
};

template <class Body>
GuardedOutcome RunGuardedBody(Body&& body)
{
    ::SetErrorInfo(0, nullptr);
    const HRESULT result = MethodGuard("Test::Member", testClass, body);
    return {result, TakeErrorInformation()};
}

/// A fault that is meant: no sanitizer is to meet it first.
[[gnu::no_sanitize("undefined")]] void DivideByZero()
{
    volatile int zero = 0;
    zero = 1 / zero;
}

constexpr HRESULT FromSystem(unsigned long code)
{
    return static_cast<HRESULT>(0x80070000 | code);
}

TEST(MethodGuard, BodyThatEndsGivesSuccessWithoutErrorInformation)
{
    const GuardedOutcome outcome = RunGuardedBody([] {});
    EXPECT_EQ(outcome.result, S_OK);
    EXPECT_FALSE(outcome.error.present);
}

TEST(MethodGuard, BodyMayChooseItsResult)
{
    const GuardedOutcome outcome = RunGuardedBody([] { return S_FALSE; });
    EXPECT_EQ(outcome.result, S_FALSE);
    EXPECT_FALSE(outcome.error.present);
}

TEST(MethodGuard, FailureThatTheBodyReturnsGetsNoFreshText)
{
    const GuardedOutcome outcome = RunGuardedBody([] { return E_ACCESSDENIED; });
    EXPECT_EQ(outcome.result, E_ACCESSDENIED);
    EXPECT_FALSE(outcome.error.present);
}

TEST(MethodGuard, ExpectedFailureBecomesItsCodeAndText)
{
    const GuardedOutcome outcome = RunGuardedBody([] { throw PrinterNotInitialized_E(); });
    EXPECT_EQ(outcome.result, static_cast<HRESULT>(0x80042000));
    EXPECT_EQ(outcome.error.description, "Printer object not initialized");
    EXPECT_EQ(outcome.error.guid, IID_NULL);
    EXPECT_EQ(outcome.error.helpContext, 0u);
}

TEST(MethodGuard, SourceOfAFailureIsTheProgIdWithoutAnyRegistration)
{
    ::SetErrorInfo(0, nullptr);
    MethodGuard("Test::Member", __uuidof(PrintJobSchedule), [] { throw JobScheduleNotInitialized_E(); });
    EXPECT_EQ(TakeErrorInformation().source, L"Vorlane.PrintJobSchedule.1");
}

TEST(MethodGuard, FailureOfAnUnknownClassHasNoSource)
{
    EXPECT_EQ(RunGuardedBody([] { throw InvalidArgument_E(); }).error.source, L"");
}

TEST(MethodGuard, OwnedTextOfAFailureReachesTheCaller)
{
    ::SetLastError(ERROR_ACCESS_DENIED);
    const GuardedOutcome outcome = RunGuardedBody([] {
        ::SetLastError(ERROR_ACCESS_DENIED);
        throw SystemError_E();
    });
    EXPECT_EQ(outcome.result, E_ACCESSDENIED);
    EXPECT_FALSE(outcome.error.description.empty());
}

TEST(MethodGuard, RootOfTheFamilyIsAnUnspecificFailure)
{
    const GuardedOutcome outcome = RunGuardedBody([] { throw OStdException("odd"); });
    EXPECT_EQ(outcome.result, E_FAIL);
    EXPECT_EQ(outcome.error.description, "odd");
}

TEST(MethodGuard, WantOfMemoryHasItsText)
{
    const GuardedOutcome outcome = RunGuardedBody([] { throw std::bad_alloc(); });
    EXPECT_EQ(outcome.result, static_cast<HRESULT>(0x8007000E));
    EXPECT_EQ(outcome.error.description, "Out of memory");
}

TEST(MethodGuard, WantOfMemoryThrownByPointerIsTheSame)
{
    static const std::bad_alloc exhausted;
    const GuardedOutcome outcome = RunGuardedBody([] { throw &exhausted; });
    EXPECT_EQ(outcome.result, static_cast<HRESULT>(0x8007000E));
    EXPECT_EQ(outcome.error.description, "Out of memory");
}

TEST(MethodGuard, InternalFailureBecomesItsSystemCode)
{
    const GuardedOutcome outcome = RunGuardedBody([] { throw OException(5, "denied"); });
    EXPECT_EQ(outcome.result, FromSystem(5));
    EXPECT_EQ(outcome.error.description, "denied");
}

TEST(MethodGuard, OnlyTheLowHalfOfAnInternalCodeGoesOut)
{
    const GuardedOutcome outcome = RunGuardedBody([] { throw OException(0x12340005, "denied"); });
    EXPECT_EQ(outcome.result, FromSystem(5));
}

TEST(MethodGuard, InternalFailureWithAnEmptyTextHasThatText)
{
    const GuardedOutcome outcome = RunGuardedBody([] { throw OException(5, ""); });
    EXPECT_EQ(outcome.result, FromSystem(5));
    EXPECT_TRUE(outcome.error.present);
    EXPECT_EQ(outcome.error.description, "");
}

TEST(MethodGuard, FailuresWhoseReportRunsOutOfMemoryKeepTheirCodes)
{
    const ImportHook<decltype(::MessageBoxA)> messageBox(
        "MessageBoxA", [](HWND, const char*, const char*, UINT) -> int { throw std::bad_alloc(); });
    const GuardedOutcome internal = RunGuardedBody([] { throw OException(5, "denied"); });
    EXPECT_EQ(internal.result, FromSystem(5));
    EXPECT_EQ(internal.error.description, "denied");
    const GuardedOutcome root = RunGuardedBody([] { throw OStdException("odd"); });
    EXPECT_EQ(root.result, E_FAIL);
    EXPECT_EQ(root.error.description, "odd");
}

TEST(MethodGuard, InternalFailureWithoutCodeIsAnInternalError)
{
    for (const long code : {0L, -1L, -5L}) {
        const GuardedOutcome outcome = RunGuardedBody([code] { throw OException(code, "odd"); });
        EXPECT_EQ(outcome.result, static_cast<HRESULT>(0x8007054F)) << code;
        EXPECT_EQ(outcome.error.description, "odd") << code;
    }
}

TEST(MethodGuard, InternalFailureWithoutTextIsUnspecified)
{
    const GuardedOutcome outcome = RunGuardedBody([] { throw OException(0x1FFFF, nullptr); });
    EXPECT_EQ(outcome.error.description, "Unspecified error");
}

TEST(MethodGuard, ExceptionOfTheStandardLibraryIsUnspecified)
{
    const GuardedOutcome outcome = RunGuardedBody([] { throw std::runtime_error("from elsewhere"); });
    EXPECT_EQ(outcome.result, E_FAIL);
    EXPECT_EQ(outcome.error.description, "Unspecified error");
}

TEST(MethodGuard, ExceptionOfAnotherCompilersLanguageIsUnspecified)
{
    const GuardedOutcome outcome = RunGuardedBody([] { ThrowAsForeignCode(); });
    EXPECT_EQ(outcome.result, E_FAIL);
    EXPECT_EQ(outcome.error.description, "Unspecified error");
}

TEST(MethodGuard, OnlyInternalFailuresAreShown)
{
    static std::vector<std::string> shown;
    const ImportHook<decltype(::MessageBoxA)> messageBox("MessageBoxA",
                                                         [](HWND, const char* text, const char*, UINT) -> int {
                                                             shown.emplace_back(text);
                                                             return IDNO;
                                                         });
    static constexpr struct {
        const char* name;
        void (*fail)();
        const char* errorShown; ///< null: none
    } rows[] = {
        {"internal",          [] { throw OException(5, "denied"); }, "Error: denied\r\n"           },
        {"fault",             [] { DivideByZero(); },                "Error: Division by zero.\r\n"},
        {"root",              [] { throw OStdException("odd"); },    "Error: odd\r\n"              },
        {"expected",          [] { throw InvalidArgument_E(); },     nullptr                       },
        {"system",            [] { throw SystemError_E(); },         nullptr                       },
        {"memory",            [] { throw std::bad_alloc(); },        nullptr                       },
        {"standard library",  [] { throw std::runtime_error("x"); }, nullptr                       },
        {"foreign exception", [] { ThrowAsForeignCode(); },          nullptr                       },
    };
    for (const auto& row : rows) {
        shown.clear();
        RunGuardedBody(row.fail);
        ASSERT_EQ(shown.size(), row.errorShown ? 1u : 0u) << row.name;
        if (!row.errorShown) continue;
        EXPECT_THAT(shown[0], ::testing::HasSubstr(row.errorShown)) << row.name;
    }
}

TEST(MethodGuard, BareTextIsUnspecified)
{
    const GuardedOutcome outcome = RunGuardedBody([] { throw L"Refresh_DriverInfo() Failed."; });
    EXPECT_EQ(outcome.result, E_FAIL);
    EXPECT_EQ(outcome.error.description, "Unspecified error");
}

TEST(MethodGuard, AccessViolationIsAnInvalidAddress)
{
    const GuardedOutcome outcome = RunGuardedBody([] { WriteToNowhere(); });
    EXPECT_EQ(outcome.result, FromSystem(ERROR_INVALID_ADDRESS));
    EXPECT_FALSE(outcome.error.description.empty());
}

TEST(MethodGuard, DivisionByZeroHasItsText)
{
    const GuardedOutcome outcome = RunGuardedBody([] { DivideByZero(); });
    EXPECT_EQ(outcome.result, FromSystem(ERROR_INTERNAL_ERROR));
    EXPECT_EQ(outcome.error.description, "Division by zero.");
}

TEST(MethodGuard, BrokenAssertionTellsItsCondition)
{
    const bool ready = false;
    const GuardedOutcome outcome = RunGuardedBody([&] { ASSERT(ready); });
    EXPECT_EQ(outcome.result, FromSystem(ERROR_INTERNAL_ERROR));
    EXPECT_EQ(outcome.error.description, "ASSERT(ready)");
}

TEST(MethodGuard, DestructorsRunBetweenFaultAndResult)
{
    bool destroyed = false;
    struct Flag {
        bool& raised;
        ~Flag() { raised = true; }
    };
    RunGuardedBody([&] {
        const Flag flag{destroyed};
        WriteToNowhere();
    });
    EXPECT_TRUE(destroyed);
}

TEST(MethodGuard, GuardsNest)
{
    const GuardedOutcome outcome = RunGuardedBody([] {
        const GuardedOutcome inner = RunGuardedBody([] { throw InvalidArgument_E(); });
        EXPECT_EQ(inner.result, E_INVALIDARG);
        throw InvalidPort_E();
    });
    EXPECT_EQ(outcome.error.description, "Invalid port");
}

TEST(MethodGuard, TranslatorIsThatOfBeforeAfterwards)
{
    const SehTranslator before = SetSehTranslator(nullptr);
    RunGuardedBody([] {});
    EXPECT_EQ(SetSehTranslator(before), nullptr);
    RunGuardedBody([] { throw InvalidArgument_E(); });
    EXPECT_EQ(SetSehTranslator(before), before);
}

TEST(MethodGuard, ErrorInformationBelongsToItsThread)
{
    ::SetErrorInfo(0, nullptr);
    std::jthread([] { RunGuardedBody([] { throw InvalidArgument_E(); }); }).join();
    EXPECT_FALSE(TakeErrorInformation().present);
}

TEST(MethodGuard, ErrorObjectOfTheClientsThatRaisesWhenItIsReplacedIsForgotten)
{
    for (const RaisedKind& kind : raisedKinds) {
        struct ClientsError : IErrorInfo {
            STDMETHODIMP QueryInterface(REFIID, void** object) override
            {
                *object = this;
                return S_OK;
            }
            STDMETHODIMP_(ULONG) AddRef() override { return 2; }
            STDMETHODIMP_(ULONG) Release() override
            {
                if (raise) raise();
                return 1;
            }
            STDMETHODIMP GetGUID(GUID*) override { return E_NOTIMPL; }
            STDMETHODIMP GetSource(BSTR*) override { return E_NOTIMPL; }
            STDMETHODIMP GetDescription(BSTR*) override { return E_NOTIMPL; }
            STDMETHODIMP GetHelpFile(BSTR*) override { return E_NOTIMPL; }
            STDMETHODIMP GetHelpContext(DWORD*) override { return E_NOTIMPL; }
            void (*raise)() = nullptr;
        } error;
        ::SetErrorInfo(0, &error);
        error.raise = kind.raise;
        EXPECT_EQ(MethodGuard("Test::Member", testClass, [] { throw InvalidArgument_E(); }), E_INVALIDARG) << kind.name;
        error.raise = nullptr;
        ::SetErrorInfo(0, nullptr);
    }
}

// Code without a caller to tell

TEST(Contain, GivesWhatTheBodyGives)
{
    EXPECT_EQ(Contain([] {}), S_OK);
    EXPECT_EQ(Contain([] { return S_FALSE; }), S_FALSE);
    EXPECT_EQ(Contain([] { return E_ACCESSDENIED; }), E_ACCESSDENIED);
}

TEST(Contain, MakesAFailureOfWhateverIsThrownOrRaised)
{
    for (const RaisedKind& kind : raisedKinds) EXPECT_EQ(Contain([&] { kind.raise(); }), E_FAIL) << kind.name;
    EXPECT_EQ(Contain([] { throw InvalidArgument_E(); }), E_FAIL);
    EXPECT_EQ(Contain([] { throw std::bad_alloc(); }), E_OUTOFMEMORY);
}

TEST(Contain, TellsNobody)
{
    static int dialogs;
    dialogs = 0;
    const ImportHook<decltype(::MessageBoxA)> messageBox(
        "MessageBoxA", [](HWND, const char*, const char*, UINT) -> int { return ++dialogs; });
    ::SetErrorInfo(0, nullptr);
    for (const RaisedKind& kind : raisedKinds) Contain([&] { kind.raise(); });
    EXPECT_EQ(dialogs, 0);
    EXPECT_FALSE(TakeErrorInformation().present);
}

TEST(Contain, LeavesTheTranslatorThatWasThereBefore)
{
    const SehTranslator before = SetSehTranslator(nullptr);
    Contain([] {});
    EXPECT_EQ(SetSehTranslator(before), nullptr);
    Contain([] { throw InvalidArgument_E(); });
    EXPECT_EQ(SetSehTranslator(before), before);
}

TEST(Contain, RunsDestructorsOnTheWay)
{
    for (const RaisedKind& kind : raisedKinds) {
        bool destroyed = false;
        struct Flag {
            bool& raised;
            ~Flag() { raised = true; }
        };
        Contain([&] {
            const Flag flag{destroyed};
            kind.raise();
        });
        EXPECT_TRUE(destroyed) << kind.name;
    }
}

} // namespace
