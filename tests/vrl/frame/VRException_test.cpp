// SPDX-License-Identifier: MIT
#include "vrl/frame/VRException.h"

#include "support/ImportHook.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <type_traits>

namespace {

template <class Exception>
void ExpectFixed(unsigned long code, const char* text)
{
    const Exception exception;
    EXPECT_EQ(static_cast<unsigned long>(exception.GetResult()), code) << text;
    EXPECT_STREQ(exception.GetText(), text);
    static_assert(std::is_base_of_v<VRException, Exception>);
}

TEST(FixedException, CodesAndTextsAreThoseOfTheContract)
{
    ExpectFixed<PrinterNotInitialized_E>(0x80042000, "Printer object not initialized");
    ExpectFixed<PrinterNotRecognized_E>(0x80042001, "Printer not recognized");
    ExpectFixed<InvalidPrinter_E>(0x80042002, "Invalid printer");
    ExpectFixed<CouldNotOpenPrinter_E>(0x80042003, "Could not open printer");
    ExpectFixed<PrinterStatusNotInitialized_E>(0x80042100, "PrinterStatus object not initialized");
    ExpectFixed<PrinterConfigurationNotInitialized_E>(0x80042101, "PrinterConfiguration object not initialized");
    ExpectFixed<PrinterPortNotInitialized_E>(0x80042102, "PrinterPort object not initialized");
    ExpectFixed<InvalidPort_E>(0x80042103, "Invalid port");
    ExpectFixed<PrinterShareNameNotValid_E>(0x80042104, "Invalid printer share name");
    ExpectFixed<PrinterCapabilityUnknown_E>(0x80042105, "Capability not supported");
    ExpectFixed<PrinterQueryFailure_E>(0x80042106, "Printer Query failed");
    ExpectFixed<JobNotInitialized_E>(0x80042200, "Job object not initialized");
    ExpectFixed<InvalidJob_E>(0x80042201, "Invalid job");
    ExpectFixed<JobStatusNotInitialized_E>(0x80042300, "JobStatus object not initialized");
    ExpectFixed<JobScheduleNotInitialized_E>(0x80042400, "JobSchedule object not initialized");
    ExpectFixed<FeatureNotSupported_E>(0x80042801, "Feature not supported");
    ExpectFixed<InvalidArgument_E>(0x80070057, "Invalid argument");
}

TEST(VRExceptionString, StartsUnspecified)
{
    const VRExceptionString exception;
    EXPECT_EQ(exception.GetResult(), static_cast<HRESULT>(0x80004005));
    EXPECT_STREQ(exception.GetText(), "Unspecified VRL error");
}

TEST(VRExceptionString, OwnsItsText)
{
    VRExceptionString exception;
    {
        const OString text(L"of the moment");
        exception.SetText(text);
    }
    EXPECT_STREQ(exception.GetText(), "of the moment");
}

TEST(VRExceptionString, CopyKeepsItsTextWhenTheOriginalIsGone)
{
    auto original = std::make_unique<VRExceptionString>();
    original->SetText(OString("of the moment"));
    const VRExceptionString copy(*original);
    original.reset();
    EXPECT_STREQ(copy.GetText(), "of the moment");
}

TEST(SystemError_E, TakesCodeAndMessageOfTheLastError)
{
    wchar_t message[256];
    ASSERT_NE(::FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM, nullptr, ERROR_ACCESS_DENIED, 0x400, message, 256, nullptr),
              0u);
    ::SetLastError(ERROR_ACCESS_DENIED);
    const SystemError_E exception;
    EXPECT_EQ(exception.GetResult(), static_cast<HRESULT>(0x80070005));
    EXPECT_EQ(OString(exception.GetText()), OString(message).nstring());
}

/// Lets every allocation change the thread's last error, until the system is asked for a message.
class DisturbingAllocations {
public:
    DisturbingAllocations()
    {
        asked = 0;
        disturbing = true;
    }
    DisturbingAllocations(const DisturbingAllocations&) = delete;
    DisturbingAllocations& operator=(const DisturbingAllocations&) = delete;
    ~DisturbingAllocations() { disturbing = false; }

    static inline DWORD asked; ///< the error whose message was wanted

private:
    static void* Allocate(size_t size)
    {
        if (disturbing) ::SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return std::calloc(size, 1);
    }

    static DWORD Format(DWORD, const void*, DWORD error, DWORD, wchar_t*, DWORD, char**)
    {
        disturbing = false;
        asked = error;
        return 0;
    }

    static inline bool disturbing;

    ImportHook<decltype(Allocate)> _malloc{"malloc", Allocate};
    ImportHook<decltype(Format)> _formatMessage{"FormatMessageW", Format};
};

TEST(SystemError_E, IsAboutTheErrorFromBeforeItsOwnAllocations)
{
    const DisturbingAllocations disturbing;
    ::SetLastError(ERROR_ACCESS_DENIED);
    const SystemError_E exception;
    EXPECT_EQ(disturbing.asked, DWORD{ERROR_ACCESS_DENIED});
    EXPECT_EQ(exception.GetResult(), static_cast<HRESULT>(0x80070005));
}

TEST(SystemError_E, CodeIsWhatAskingForTheMessageLeft)
{
    constexpr DWORD withoutMessage = 0x1FFFF;
    ::SetLastError(withoutMessage);
    wchar_t message[16];
    ASSERT_EQ(::FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM, nullptr, withoutMessage, 0x400, message, 16, nullptr), 0u);
    const DWORD left = ::GetLastError();
    ASSERT_NE(left, withoutMessage);

    ::SetLastError(withoutMessage);
    const SystemError_E exception;
    EXPECT_EQ(exception.GetResult(), static_cast<HRESULT>(0x80070000 | left));
}

TEST(SystemError_E, ErrorAboveThePositiveNumbersIsItsOwnCode)
{
    ::SetLastError(static_cast<DWORD>(E_ACCESSDENIED));
    const SystemError_E exception;
    EXPECT_TRUE(FAILED(exception.GetResult()));
}

} // namespace
