// SPDX-License-Identifier: MIT
#include "support/com/GuidText.h"
#include "support/product/ProductModule.h"
#include "GoldenClasses.h"
#include "GoldenTypeLibrary.h"

#include <gtest/gtest.h>
#include <oleauto.h>
#include <olectl.h>
#include <wrl/client.h>

namespace {

using Microsoft::WRL::ComPtr;

constexpr char marshallingClass[] = "{C83204D8-630A-4F8C-8056-F52CDBBF1A31}";

const ProductModule& Product()
{
    static const ProductModule product;
    return product;
}

ComPtr<IClassFactory> Factory(const char* classIdentifier)
{
    ComPtr<IClassFactory> factory;
    EXPECT_EQ(Product().GetClassObject(GuidFromText(classIdentifier), IID_PPV_ARGS(&factory)), S_OK);
    return factory;
}

template <class Interface = IUnknown>
ComPtr<Interface> Create(const GoldenClass& row, REFIID iid = __uuidof(Interface))
{
    ComPtr<Interface> object;
    const HRESULT result =
        Product().CreateInstance(GuidFromText(row.identifier), iid, reinterpret_cast<void**>(object.GetAddressOf()));
    EXPECT_EQ(result, S_OK) << row.name;
    return object;
}

class AutomationClass : public ::testing::TestWithParam<GoldenClass> {
protected:
    GUID InterfaceId() const { return GuidFromText(GetParam().interfaceIdentifier); }
};

TEST_P(AutomationClass, IsMadeByItsFactoryWhateverTheCreatableMarkSays)
{
    const auto object = Create(GetParam());
    ComPtr<IUnknown> own;
    EXPECT_EQ(object.CopyTo(InterfaceId(), reinterpret_cast<void**>(own.GetAddressOf())), S_OK);
}

TEST_P(AutomationClass, HasOneIdentity)
{
    const auto object = Create(GetParam());
    ComPtr<ISupportErrorInfo> other;
    ComPtr<IUnknown> identity;
    ASSERT_EQ(object.As(&other), S_OK);
    ASSERT_EQ(other.As(&identity), S_OK);
    EXPECT_EQ(identity.Get(), object.Get());
}

TEST_P(AutomationClass, RefusesAnInterfaceThatItHasNot)
{
    const auto object = Create(GetParam());
    void* stream = &stream;
    EXPECT_EQ(object->QueryInterface(IID_IStream, &stream), E_NOINTERFACE);
    EXPECT_EQ(stream, nullptr);
    EXPECT_EQ(object->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
}

TEST_P(AutomationClass, IsRefusedForAnInterfaceThatItHasNotWithNothingLeft)
{
    ComPtr<IStream> stream;
    EXPECT_EQ(Factory(GetParam().identifier)->CreateInstance(nullptr, IID_PPV_ARGS(&stream)), E_NOINTERFACE);
    EXPECT_EQ(stream, nullptr);
    EXPECT_EQ(Product().CanUnloadNow(), S_OK);
}

TEST_P(AutomationClass, SupportsErrorInformationForItsOwnInterfaceOnly)
{
    const auto errors = Create<ISupportErrorInfo>(GetParam());
    EXPECT_EQ(errors->InterfaceSupportsErrorInfo(InterfaceId()), S_OK);
    EXPECT_EQ(errors->InterfaceSupportsErrorInfo(IID_IDispatch), S_FALSE);
    EXPECT_EQ(errors->InterfaceSupportsErrorInfo(IID_IUnknown), S_FALSE);
}

TEST_P(AutomationClass, DispatchesOverTheTypeInformationOfItsInterface)
{
    const auto dispatch = Create<IDispatch>(GetParam());
    UINT count = 0;
    EXPECT_EQ(dispatch->GetTypeInfoCount(&count), S_OK);
    EXPECT_EQ(count, 1U);

    ComPtr<ITypeInfo> type;
    ASSERT_EQ(dispatch->GetTypeInfo(0, LOCALE_USER_DEFAULT, &type), S_OK);
    TYPEATTR* attributes = nullptr;
    ASSERT_EQ(type->GetTypeAttr(&attributes), S_OK);
    EXPECT_EQ(GuidText(attributes->guid), GetParam().interfaceIdentifier);
    type->ReleaseTypeAttr(attributes);
}

TEST_P(AutomationClass, HasNoFurtherTypeInformation)
{
    const auto dispatch = Create<IDispatch>(GetParam());
    ComPtr<ITypeInfo> type;
    EXPECT_EQ(dispatch->GetTypeInfo(1, LOCALE_USER_DEFAULT, &type), DISP_E_BADINDEX);
    EXPECT_EQ(dispatch->GetTypeInfo(0, LOCALE_USER_DEFAULT, nullptr), E_POINTER);
    EXPECT_EQ(dispatch->GetTypeInfoCount(nullptr), E_POINTER);
}

TEST_P(AutomationClass, KnowsNoMemberOfAnotherName)
{
    const auto dispatch = Create<IDispatch>(GetParam());
    wchar_t name[] = L"NoSuchMember";
    wchar_t* names[] = {name};
    DISPID number = 0;
    EXPECT_EQ(dispatch->GetIDsOfNames(IID_NULL, names, 1, LOCALE_USER_DEFAULT, &number), DISP_E_UNKNOWNNAME);
}

TEST_P(AutomationClass, CannotBePartOfAnAggregate)
{
    const auto outer = Create(GetParam());
    void* object = &object;
    EXPECT_EQ(Factory(GetParam().identifier)->CreateInstance(outer.Get(), IID_IUnknown, &object),
              CLASS_E_NOAGGREGATION);
    EXPECT_EQ(object, nullptr);
}

TEST_P(AutomationClass, KeepsTheModuleLoadedAsLongAsItLives)
{
    EXPECT_EQ(Product().CanUnloadNow(), S_OK);
    auto object = Create(GetParam());
    EXPECT_EQ(Product().CanUnloadNow(), S_FALSE);
    object.Reset();
    EXPECT_EQ(Product().CanUnloadNow(), S_OK);
}

std::string ClassName(const ::testing::TestParamInfo<GoldenClass>& row)
{
    return row.param.name;
}

INSTANTIATE_TEST_SUITE_P(Each, AutomationClass, ::testing::ValuesIn(goldenClasses), ClassName);

std::vector<GoldenClass> ClassesWithEvents(bool wanted)
{
    std::vector<GoldenClass> rows;
    for (const GoldenClass& row : goldenClasses) {
        if (std::string(row.eventsIdentifier).empty() != wanted) rows.push_back(row);
    }
    return rows;
}

class AutomationClassWithEvents : public ::testing::TestWithParam<GoldenClass> {
protected:
    GUID EventsId() const { return GuidFromText(GetParam().eventsIdentifier); }

    ComPtr<IConnectionPointContainer> container = Create<IConnectionPointContainer>(GetParam());
};

TEST_P(AutomationClassWithEvents, HasTheConnectionPointOfItsEvents)
{
    ComPtr<IConnectionPoint> point;
    ASSERT_EQ(container->FindConnectionPoint(EventsId(), &point), S_OK);
    IID iid;
    EXPECT_EQ(point->GetConnectionInterface(&iid), S_OK);
    EXPECT_EQ(GuidText(iid), GetParam().eventsIdentifier);

    ComPtr<IConnectionPointContainer> owner;
    EXPECT_EQ(point->GetConnectionPointContainer(&owner), S_OK);
    EXPECT_EQ(owner.Get(), container.Get());
}

TEST_P(AutomationClassWithEvents, HasNoOtherConnectionPoint)
{
    ComPtr<IConnectionPoint> point;
    EXPECT_EQ(container->FindConnectionPoint(IID_IDispatch, &point), CONNECT_E_NOCONNECTION);
    EXPECT_EQ(point, nullptr);

    ComPtr<IEnumConnectionPoints> points;
    ASSERT_EQ(container->EnumConnectionPoints(&points), S_OK);
    ULONG fetched = 0;
    EXPECT_EQ(points->Next(1, &point, &fetched), S_OK);
    EXPECT_EQ(points->Skip(1), S_FALSE);
}

TEST_P(AutomationClassWithEvents, RefusesNullPointers)
{
    EXPECT_EQ(container->FindConnectionPoint(EventsId(), nullptr), E_POINTER);
    EXPECT_EQ(container->EnumConnectionPoints(nullptr), E_POINTER);
}

INSTANTIATE_TEST_SUITE_P(Each, AutomationClassWithEvents, ::testing::ValuesIn(ClassesWithEvents(true)), ClassName);

class AutomationClassWithoutEvents : public ::testing::TestWithParam<GoldenClass> {};

TEST_P(AutomationClassWithoutEvents, IsNoConnectionPointContainer)
{
    ComPtr<IConnectionPointContainer> container;
    EXPECT_EQ(Create(GetParam()).As(&container), E_NOINTERFACE);
}

INSTANTIATE_TEST_SUITE_P(Each, AutomationClassWithoutEvents, ::testing::ValuesIn(ClassesWithEvents(false)), ClassName);

TEST(ClassFactory, IsAFactoryAndNothingElse)
{
    const auto factory = Factory(goldenClasses[0].identifier);
    ComPtr<IUnknown> unknown;
    ComPtr<IDispatch> dispatch;
    EXPECT_EQ(factory.As(&unknown), S_OK);
    EXPECT_EQ(factory.As(&dispatch), E_NOINTERFACE);
    EXPECT_EQ(factory->QueryInterface(IID_IUnknown, nullptr), E_POINTER);
}

TEST(ClassFactory, RefusesANullPointer)
{
    EXPECT_EQ(Factory(goldenClasses[0].identifier)->CreateInstance(nullptr, IID_IUnknown, nullptr), E_POINTER);
}

TEST(ClassFactory, KeepsTheModuleLoadedAsLongAsItIsHeld)
{
    EXPECT_EQ(Product().CanUnloadNow(), S_OK);
    auto factory = Factory(goldenClasses[0].identifier);
    EXPECT_EQ(Product().CanUnloadNow(), S_FALSE);
    factory.Reset();
    EXPECT_EQ(Product().CanUnloadNow(), S_OK);
}

TEST(ClassFactory, LockKeepsTheModuleLoadedWithoutAReference)
{
    EXPECT_EQ(Factory(goldenClasses[0].identifier)->LockServer(TRUE), S_OK);
    EXPECT_EQ(Product().CanUnloadNow(), S_FALSE);
    EXPECT_EQ(Factory(goldenClasses[1].identifier)->LockServer(FALSE), S_OK);
    EXPECT_EQ(Product().CanUnloadNow(), S_OK);
}

TEST(ClassObject, OfAnUnknownClassIsNotAvailable)
{
    void* object = &object;
    EXPECT_EQ(Product().GetClassObject(IID_IStream, IID_IClassFactory, &object), CLASS_E_CLASSNOTAVAILABLE);
    EXPECT_EQ(object, nullptr);
}

TEST(ClassObject, HasNoOtherInterface)
{
    void* object = &object;
    EXPECT_EQ(Product().GetClassObject(GuidFromText(goldenClasses[0].identifier), IID_IDispatch, &object),
              E_NOINTERFACE);
    EXPECT_EQ(object, nullptr);
}

TEST(ClassObject, RefusesANullPointer)
{
    EXPECT_EQ(Product().GetClassObject(GuidFromText(goldenClasses[0].identifier), IID_IClassFactory, nullptr),
              E_POINTER);
}

/// The multithreaded apartment, which marshalling code needs for what it leaves to the platform's.
class ApartmentScope {
public:
    ApartmentScope() { EXPECT_EQ(::CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK); }
    ~ApartmentScope() { ::CoUninitialize(); }
    ApartmentScope(const ApartmentScope&) = delete;
    ApartmentScope& operator=(const ApartmentScope&) = delete;
};

ComPtr<IPSFactoryBuffer> MarshallingFactory()
{
    ComPtr<IPSFactoryBuffer> factory;
    EXPECT_EQ(Product().GetClassObject(GuidFromText(marshallingClass), IID_PPV_ARGS(&factory)), S_OK);
    return factory;
}

class Marshalled : public ::testing::TestWithParam<GoldenInterface> {};

TEST_P(Marshalled, HasAProxyOfOurOwn)
{
    const ApartmentScope apartment;
    const GUID iid = GuidFromText(GetParam().identifier);
    const auto outer = Create(goldenClasses[0]);
    ComPtr<IRpcProxyBuffer> proxy;
    ComPtr<IUnknown> object;
    EXPECT_EQ(
        MarshallingFactory()->CreateProxy(outer.Get(), iid, &proxy, reinterpret_cast<void**>(object.GetAddressOf())),
        S_OK);
    EXPECT_NE(object, nullptr);
}

INSTANTIATE_TEST_SUITE_P(Each, Marshalled, ::testing::ValuesIn(goldenInterfaces),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(Marshalling, AStubKeepsTheModuleLoadedWithoutItsObject)
{
    const ApartmentScope apartment;
    auto object = Create(goldenClasses[0]);
    ComPtr<IRpcStubBuffer> stub;
    ASSERT_EQ(MarshallingFactory()->CreateStub(GuidFromText(goldenClasses[0].interfaceIdentifier), object.Get(), &stub),
              S_OK);
    stub->Disconnect();
    object.Reset();
    EXPECT_EQ(Product().CanUnloadNow(), S_FALSE);
    stub.Reset();
    EXPECT_EQ(Product().CanUnloadNow(), S_OK);
}

} // namespace
