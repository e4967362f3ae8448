// SPDX-License-Identifier: MIT
#include "support/RowName.h"
#include "support/com/GuidText.h"
#include "support/product/ProductModule.h"
#include "support/com/TypeLibraryText.h"
#include "GoldenClasses.h"
#include "GoldenTypeLibrary.h"

#include <gtest/gtest.h>
#include <oleauto.h>
#include <wrl/client.h>

namespace {

using Microsoft::WRL::ComPtr;

ComPtr<ITypeLib> ProductLibrary()
{
    static const ProductModule product;
    ComPtr<ITypeLib> library;
    if (FAILED(::LoadTypeLibEx(product.Path().c_str(), REGKIND_NONE, &library))) {
        throw std::runtime_error("Vorlane.dll holds no type library");
    }
    return library;
}

ComPtr<ITypeInfo> TypeByGuid(const char* identifier)
{
    ComPtr<ITypeInfo> type;
    if (FAILED(ProductLibrary()->GetTypeInfoOfGuid(GuidFromText(identifier), &type))) {
        throw std::runtime_error(std::string("no type in the library is ") + identifier);
    }
    return type;
}

TYPEATTR AttributesOf(ITypeInfo& type)
{
    TYPEATTR* attributes = nullptr;
    EXPECT_EQ(type.GetTypeAttr(&attributes), S_OK);
    const TYPEATTR copy = *attributes;
    type.ReleaseTypeAttr(attributes);
    return copy;
}

/// The form of a dual interface that has the slots.
ComPtr<ITypeInfo> SlotsOf(ITypeInfo& dual)
{
    HREFTYPE reference = 0;
    EXPECT_EQ(dual.GetRefTypeOfImplType(static_cast<UINT>(-1), &reference), S_OK);
    ComPtr<ITypeInfo> slots;
    EXPECT_EQ(dual.GetRefTypeInfo(reference, &slots), S_OK);
    return slots;
}

/// Of a test that runs for each row.
TEST(TypeLibrary, IsVorlaneVersionOne)
{
    const auto library = ProductLibrary();
    TLIBATTR* attributes = nullptr;
    ASSERT_EQ(library->GetLibAttr(&attributes), S_OK);
    EXPECT_EQ(GuidText(attributes->guid), "{37AB5030-208A-4D7C-8ACD-1FCDB4C3F02B}");
    EXPECT_EQ(attributes->wMajorVerNum, 1);
    EXPECT_EQ(attributes->wMinorVerNum, 0);
    EXPECT_EQ(attributes->syskind, SYS_WIN64);
    library->ReleaseTLibAttr(attributes);
}

TEST(TypeLibrary, HasItsNameAndHelpText)
{
    BSTR name = nullptr;
    BSTR help = nullptr;
    ASSERT_EQ(ProductLibrary()->GetDocumentation(-1, &name, &help, nullptr, nullptr), S_OK);
    EXPECT_STREQ(name, L"Vorlane");
    EXPECT_STREQ(help, L"Vorlane 1.0 Type Library");
    ::SysFreeString(name);
    ::SysFreeString(help);
}

TEST(TypeLibrary, HoldsNothingBesideInterfacesEventsAndClasses)
{
    EXPECT_EQ(std::size(goldenInterfaces), 18U);
    EXPECT_EQ(std::size(goldenEvents), 3U);
    EXPECT_EQ(std::size(goldenClasses), 18U);
    EXPECT_EQ(ProductLibrary()->GetTypeInfoCount(), 39U);
}

class TypeLibraryInterface : public ::testing::TestWithParam<GoldenInterface> {};

TEST_P(TypeLibraryInterface, IsDualAndHasItsHelpText)
{
    const auto type = TypeByGuid(GetParam().identifier);
    EXPECT_EQ(TypeName(*type.Get()), GetParam().name);
    EXPECT_EQ(TypeHelp(*type.Get()), std::string(GetParam().name) + " Interface");
    EXPECT_EQ(AttributesOf(*type.Get()).typekind, TKIND_DISPATCH);
    EXPECT_TRUE(AttributesOf(*type.Get()).wTypeFlags & TYPEFLAG_FDUAL);
}

TEST_P(TypeLibraryInterface, HasItsMembersInTheirSlots)
{
    const auto type = TypeByGuid(GetParam().identifier);
    EXPECT_EQ('\n' + MembersText(*SlotsOf(*type.Get()).Get()), GetParam().members);
}

INSTANTIATE_TEST_SUITE_P(Each, TypeLibraryInterface, ::testing::ValuesIn(goldenInterfaces), rowName);

class TypeLibraryEvents : public ::testing::TestWithParam<GoldenInterface> {};

TEST_P(TypeLibraryEvents, ArePureDispatchAndHaveTheirHelpText)
{
    const auto type = TypeByGuid(GetParam().identifier);
    EXPECT_EQ(TypeName(*type.Get()), GetParam().name);
    EXPECT_EQ(TypeHelp(*type.Get()), std::string(GetParam().name) + " Interface");
    EXPECT_EQ(AttributesOf(*type.Get()).typekind, TKIND_DISPATCH);
    EXPECT_FALSE(AttributesOf(*type.Get()).wTypeFlags & TYPEFLAG_FDUAL);
}

TEST_P(TypeLibraryEvents, HaveTheirMethodsInOrder)
{
    const auto type = TypeByGuid(GetParam().identifier);
    EXPECT_EQ('\n' + MembersText(*type.Get()), GetParam().members);
}

INSTANTIATE_TEST_SUITE_P(Each, TypeLibraryEvents, ::testing::ValuesIn(goldenEvents), rowName);

class TypeLibraryClass : public ::testing::TestWithParam<GoldenClass> {};

TEST_P(TypeLibraryClass, HasItsNameHelpTextAndCreatableMark)
{
    const auto type = TypeByGuid(GetParam().identifier);
    EXPECT_EQ(TypeName(*type.Get()), GetParam().name);
    EXPECT_EQ(TypeHelp(*type.Get()), GetParam().help);
    EXPECT_EQ(AttributesOf(*type.Get()).typekind, TKIND_COCLASS);
    EXPECT_EQ((AttributesOf(*type.Get()).wTypeFlags & TYPEFLAG_FCANCREATE) != 0, GetParam().creatable);
}

TEST_P(TypeLibraryClass, HasItsDefaultInterfaceAndEvents)
{
    EXPECT_EQ(ImplementedText(*TypeByGuid(GetParam().identifier).Get()), GetParam().implemented);
}

INSTANTIATE_TEST_SUITE_P(Each, TypeLibraryClass, ::testing::ValuesIn(goldenClasses), rowName);

} // namespace
