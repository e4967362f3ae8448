// SPDX-License-Identifier: MIT
#include "SimulatorTest.h"

namespace {

/// What a sized read is given; `call` is one of the functions below.
struct Buffer {
    BYTE* bytes;
    DWORD size;
    DWORD* needed;
    DWORD* returned;
};

struct SizedFunction {
    const char* name;
    bool enumerates;
    DWORD nullBufferError;
    BOOL (*call)(HANDLE printer, const Buffer& buffer);
};

constexpr SizedFunction sizedFunctions[] = {
    {"GetPrinterW",       false, ERROR_INVALID_USER_BUFFER,
     [](HANDLE printer, const Buffer& b) { return ::GetPrinterW(printer, 2, b.bytes, b.size, b.needed); }           },
    {"GetJobW",           false, ERROR_INVALID_USER_BUFFER,
     [](HANDLE printer, const Buffer& b) { return ::GetJobW(printer, 1, 2, b.bytes, b.size, b.needed); }            },
    {"GetPrinterDriverW", false, ERROR_INVALID_USER_BUFFER,
     [](HANDLE printer, const Buffer& b) {
         return ::GetPrinterDriverW(printer, nullptr, 2, b.bytes, b.size, b.needed);
     }                                                                                       },
    {"EnumJobsW",         true,  ERROR_INVALID_USER_BUFFER,
     [](HANDLE printer, const Buffer& b) {
         return ::EnumJobsW(printer, 0, 9, 2, b.bytes, b.size, b.needed, b.returned);
     }                                                                                       },
    {"EnumPrintersW",     true,  ERROR_INVALID_USER_BUFFER,
     [](HANDLE,         const Buffer& b) {
         return ::EnumPrintersW(PRINTER_ENUM_LOCAL, nullptr, 2, b.bytes, b.size, b.needed, b.returned);
     }                                                                                               },
    {"EnumPortsW",        true,  RPC_X_NULL_REF_POINTER,
     [](HANDLE,         const Buffer& b) { return ::EnumPortsW(nullptr, 2, b.bytes, b.size, b.needed, b.returned); }},
};

/// What all sized reads have in common, on a printer with a job.
class SizedReadsTest : public SimulatorTest, public ::testing::WithParamInterface<SizedFunction> {
protected:
    void SetUp() override
    {
        SimulatorTest::SetUp();
        printer = AddAndOpen(L"Label");
        QueueJob(L"Label");
    }

    void TearDown() override
    {
        printer.Reset();
        SimulatorTest::TearDown();
    }

    BOOL Call(const Buffer& buffer) { return GetParam().call(printer.Get(), buffer); }

    DWORD Needed()
    {
        DWORD needed = 0;
        DWORD returned = 0;
        EXPECT_EQ(ErrorOf(Call({nullptr, 0, &needed, &returned})), DWORD{ERROR_INSUFFICIENT_BUFFER});
        return needed;
    }

    PrinterHandle printer;
};

TEST_P(SizedReadsTest, FillABufferOfTheSizeThatTheyTold)
{
    DWORD needed = 0;
    DWORD returned = 0;
    std::vector<BYTE> bytes(Needed());
    EXPECT_TRUE(Call({bytes.data(), static_cast<DWORD>(bytes.size()), &needed, &returned}));
    EXPECT_EQ(needed, bytes.size());
    EXPECT_EQ(returned, GetParam().enumerates ? 1u : 0u);
}

TEST_P(SizedReadsTest, ZeroABufferThatIsTooSmall)
{
    DWORD needed = 0;
    DWORD returned = 9;
    std::vector<BYTE> bytes(Needed(), 0xA5);
    const auto size = static_cast<DWORD>(bytes.size());
    EXPECT_EQ(ErrorOf(Call({bytes.data(), size - 1, &needed, &returned})), DWORD{ERROR_INSUFFICIENT_BUFFER});
    EXPECT_EQ(needed, size);
    EXPECT_EQ(bytes.back(), 0xA5);
    bytes.pop_back();
    EXPECT_THAT(bytes, ::testing::Each(0));
    EXPECT_EQ(returned, GetParam().enumerates ? 0u : 9u);
}

TEST_P(SizedReadsTest, FailWithoutAPlaceForTheSize)
{
    DWORD returned = 0;
    std::vector<BYTE> bytes(Needed(), 0xA5);
    const auto size = static_cast<DWORD>(bytes.size());
    EXPECT_EQ(ErrorOf(Call({bytes.data(), size, nullptr, &returned})), DWORD{RPC_X_NULL_REF_POINTER});
    EXPECT_THAT(bytes, ::testing::Each(0xA5));
}

TEST_P(SizedReadsTest, FailWithoutAPlaceForTheCount)
{
    if (!GetParam().enumerates) return;
    DWORD needed = 7;
    std::vector<BYTE> bytes(Needed(), 0xA5);
    const auto size = static_cast<DWORD>(bytes.size());
    EXPECT_EQ(ErrorOf(Call({bytes.data(), size, &needed, nullptr})), DWORD{RPC_X_NULL_REF_POINTER});
    EXPECT_EQ(ErrorOf(Call({nullptr, 0, &needed, nullptr})), DWORD{RPC_X_NULL_REF_POINTER});
    EXPECT_EQ(needed, 7u);
    EXPECT_THAT(bytes, ::testing::Each(0xA5));
}

TEST_P(SizedReadsTest, FailWithoutABufferWhoseSizeWouldDo)
{
    DWORD needed = 0;
    DWORD returned = 0;
    const DWORD size = Needed();
    EXPECT_EQ(ErrorOf(Call({nullptr, size, &needed, &returned})), GetParam().nullBufferError);
    EXPECT_EQ(needed, size);
}

INSTANTIATE_TEST_SUITE_P(Functions, SizedReadsTest, ::testing::ValuesIn(sizedFunctions),
                         [](const auto& function) { return function.param.name; });

} // namespace
