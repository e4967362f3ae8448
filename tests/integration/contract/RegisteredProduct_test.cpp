// SPDX-License-Identifier: MIT
#include "support/com/GuidText.h"
#include "support/product/RegisteredProduct.h"
#include "GoldenClasses.h"

#include <gtest/gtest.h>
#include <objbase.h>
#include <wrl/client.h>

#include "vrl/Vorlane.h"

#include <thread>

namespace {

using Microsoft::WRL::ComPtr;

/// Runs `work` on a thread of its own in an apartment of the given kind.
template <typename Work>
void InApartment(COINIT kind, Work work)
{
    std::thread([&] {
        ASSERT_EQ(::CoInitializeEx(nullptr, kind), S_OK);
        work();
        ::CoUninitialize();
    }).join();
}

std::string ClassOf(const char* progId)
{
    const std::string text = progId;
    CLSID classId{};
    const HRESULT result = ::CLSIDFromProgID(std::wstring(text.begin(), text.end()).c_str(), &classId);
    return SUCCEEDED(result) ? GuidText(classId) : "none";
}

HRESULT CreateByProgId(const char* progId, REFIID iid, IUnknown** object)
{
    return ::CoCreateInstance(GuidFromText(ClassOf(progId)), nullptr, CLSCTX_INPROC_SERVER, iid,
                              reinterpret_cast<void**>(object));
}

std::vector<GoldenClass> ClassesThatTheirProgIdReaches()
{
    std::vector<GoldenClass> rows;
    for (const GoldenClass& row : goldenClasses) {
        if (std::string(row.identifier) == row.registeredIdentifier) rows.push_back(row);
    }
    return rows;
}

class CreatedByProgId : public ::testing::TestWithParam<GoldenClass> {
protected:
    static void SetUpTestSuite() { product = std::make_unique<RegisteredProduct>(); }
    static void TearDownTestSuite() { product.reset(); }

    static void Create()
    {
        ComPtr<IUnknown> object;
        EXPECT_EQ(CreateByProgId(GetParam().progId, GuidFromText(GetParam().interfaceIdentifier), &object), S_OK);
    }

private:
    static inline std::unique_ptr<RegisteredProduct> product;
};

TEST_P(CreatedByProgId, InTheMultithreadedApartment)
{
    InApartment(COINIT_MULTITHREADED, Create);
}

TEST_P(CreatedByProgId, FromASinglethreadedApartment)
{
    InApartment(COINIT_APARTMENTTHREADED, Create);
}

INSTANTIATE_TEST_SUITE_P(Each, CreatedByProgId, ::testing::ValuesIn(ClassesThatTheirProgIdReaches()),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(ProgId, OfPrintJobScheduleNamesAClassThatTheFactoriesDoNotKnow)
{
    const RegisteredProduct product;
    EXPECT_EQ(ClassOf("Vorlane.PrintJobSchedule"), "{36BC7BB7-50C5-43CA-B1BA-9BF859F877C5}");
    InApartment(COINIT_MULTITHREADED, [] {
        ComPtr<IUnknown> object;
        EXPECT_EQ(CreateByProgId("Vorlane.PrintJobSchedule", IID_IUnknown, &object), CLASS_E_CLASSNOTAVAILABLE);
    });
}

TEST(ProgId, SharedByTwoClassesMakesTheOneRegisteredLast)
{
    const RegisteredProduct product;
    InApartment(COINIT_MULTITHREADED, [] {
        ComPtr<IUnknown> object;
        EXPECT_EQ(CreateByProgId("Vorlane.PrinterConfiguratio.1", __uuidof(IPrinterConfiguration), &object),
                  E_NOINTERFACE);
        EXPECT_EQ(CreateByProgId("Vorlane.PrinterConfiguratio.1", __uuidof(IPrinterConfigurationFilter), &object),
                  S_OK);
    });
}

TEST(ProgId, IsGoneWhenTheProductIsUnregistered)
{
    {
        const RegisteredProduct product;
        EXPECT_NE(ClassOf("Vorlane.Printer"), "none");
    }
    EXPECT_EQ(ClassOf("Vorlane.Printer"), "none");
    EXPECT_EQ(ClassOf("Vorlane.Printer.1"), "none");
}

TEST(Apartment, OfASingleThreadReachesObjectsThroughAProxy)
{
    const RegisteredProduct product;
    InApartment(COINIT_APARTMENTTHREADED, [] {
        ComPtr<IUnknown> object;
        ASSERT_EQ(CreateByProgId("Vorlane.VRL", __uuidof(IVRL), &object), S_OK);
        ComPtr<IClientSecurity> proxy;
        EXPECT_EQ(object.As(&proxy), S_OK);
    });
}

TEST(Apartment, OfManyThreadsReachesObjectsDirectly)
{
    const RegisteredProduct product;
    InApartment(COINIT_MULTITHREADED, [] {
        ComPtr<IUnknown> object;
        ASSERT_EQ(CreateByProgId("Vorlane.VRL", __uuidof(IVRL), &object), S_OK);
        ComPtr<IClientSecurity> proxy;
        EXPECT_EQ(object.As(&proxy), E_NOINTERFACE);
    });
}

} // namespace
