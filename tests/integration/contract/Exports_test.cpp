// SPDX-License-Identifier: MIT
#include "support/com/GuidText.h"
#include "support/ImportHook.h"
#include "support/product/ProductModule.h"
#include "support/product/ScratchClassesRoot.h"
#include "GoldenClasses.h"

#include <gmock/gmock.h>
#include <oleauto.h>
#include <rpc.h>

#include <string>
#include <vector>

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::vector<std::string> calls;
HRESULT registerLibraryResult;
HRESULT unregisterLibraryResult;
HRESULT registerProxyResult;
HRESULT unregisterProxyResult;
HRESULT classObjectResult;
HRESULT unloadResult;

HRESULT Record(const char* call, HRESULT result)
{
    calls.emplace_back(call);
    return result;
}

HRESULT WINAPI FakeRegisterTypeLib(ITypeLib*, OLECHAR*, OLECHAR*)
{
    return Record("RegisterTypeLib", registerLibraryResult);
}

HRESULT WINAPI FakeQueryPathOfRegTypeLib(REFGUID, WORD, WORD, LCID, BSTR*)
{
    return S_OK;
}

HRESULT WINAPI FakeUnRegisterTypeLib(REFGUID, WORD, WORD, LCID, SYSKIND)
{
    return Record("UnRegisterTypeLib", unregisterLibraryResult);
}

HRESULT RPC_ENTRY FakeRegisterProxy(HMODULE, const void*, const CLSID*)
{
    return Record("NdrDllRegisterProxy", registerProxyResult);
}

HRESULT RPC_ENTRY FakeUnregisterProxy(HMODULE, const void*, const CLSID*)
{
    return Record("NdrDllUnregisterProxy", unregisterProxyResult);
}

HRESULT RPC_ENTRY FakeGetClassObject(REFCLSID, REFIID, void** object, const void*, const CLSID*, void*)
{
    *object = &calls;
    return Record("NdrDllGetClassObject", classObjectResult);
}

HRESULT RPC_ENTRY FakeCanUnloadNow(void*)
{
    return Record("NdrDllCanUnloadNow", unloadResult);
}

/// The exports over a platform that records its calls and answers as it is told.
class Exports : public ::testing::Test {
protected:
    Exports()
    {
        calls.clear();
        registerLibraryResult = S_OK;
        unregisterLibraryResult = S_OK;
        registerProxyResult = S_OK;
        unregisterProxyResult = S_OK;
        classObjectResult = S_OK;
        unloadResult = S_OK;
    }

    ScratchClassesRoot root;
    ProductModule product;
    ImportHook<decltype(FakeRegisterTypeLib)> registerLibrary{"RegisterTypeLib", FakeRegisterTypeLib, product.Handle()};
    ImportHook<decltype(FakeQueryPathOfRegTypeLib)> queryLibrary{"QueryPathOfRegTypeLib", FakeQueryPathOfRegTypeLib,
                                                                 product.Handle()};
    ImportHook<decltype(FakeUnRegisterTypeLib)> unregisterLibrary{"UnRegisterTypeLib", FakeUnRegisterTypeLib,
                                                                  product.Handle()};
    ImportHook<decltype(FakeRegisterProxy)> registerProxy{"NdrDllRegisterProxy", FakeRegisterProxy, product.Handle()};
    ImportHook<decltype(FakeUnregisterProxy)> unregisterProxy{"NdrDllUnregisterProxy", FakeUnregisterProxy,
                                                              product.Handle()};
    ImportHook<decltype(FakeGetClassObject)> getClassObject{"NdrDllGetClassObject", FakeGetClassObject,
                                                            product.Handle()};
    ImportHook<decltype(FakeCanUnloadNow)> canUnloadNow{"NdrDllCanUnloadNow", FakeCanUnloadNow, product.Handle()};
};

TEST_F(Exports, RegisterTheTypeLibraryBeforeTheMarshallingCode)
{
    EXPECT_EQ(product.RegisterServer(), S_OK);
    EXPECT_THAT(calls, ElementsAre("RegisterTypeLib", "NdrDllRegisterProxy"));
}

TEST_F(Exports, RegisterNothingBeyondAFailingTypeLibrary)
{
    registerLibraryResult = TYPE_E_REGISTRYACCESS;
    EXPECT_EQ(product.RegisterServer(), TYPE_E_REGISTRYACCESS);
    EXPECT_THAT(calls, ElementsAre("RegisterTypeLib"));
}

TEST_F(Exports, RegisterNothingBeyondAFailingScript)
{
    root.Doom();
    EXPECT_EQ(product.RegisterServer(), HRESULT_FROM_WIN32(ERROR_KEY_DELETED));
    EXPECT_THAT(calls, IsEmpty());
}

TEST_F(Exports, GiveTheErrorOfRegisteringTheMarshallingCode)
{
    registerProxyResult = E_ACCESSDENIED;
    EXPECT_EQ(product.RegisterServer(), E_ACCESSDENIED);
}

TEST_F(Exports, EnterTheMarshallingCodeOnceMoreBeforeItIsTakenOut)
{
    EXPECT_EQ(product.UnregisterServer(), S_OK);
    EXPECT_THAT(calls, ElementsAre("UnRegisterTypeLib", "NdrDllRegisterProxy", "NdrDllUnregisterProxy"));
}

TEST_F(Exports, UnregisterNothingBeyondAFailingScript)
{
    root.Doom();
    EXPECT_EQ(product.UnregisterServer(), HRESULT_FROM_WIN32(ERROR_KEY_DELETED));
    EXPECT_THAT(calls, IsEmpty());
}

TEST_F(Exports, UnregisterNothingBeyondAFailingTypeLibrary)
{
    unregisterLibraryResult = TYPE_E_REGISTRYACCESS;
    EXPECT_EQ(product.UnregisterServer(), TYPE_E_REGISTRYACCESS);
    EXPECT_THAT(calls, ElementsAre("UnRegisterTypeLib"));
}

TEST_F(Exports, DoNotTakeTheMarshallingCodeOutIfItCannotBeEntered)
{
    registerProxyResult = E_ACCESSDENIED;
    EXPECT_EQ(product.UnregisterServer(), E_ACCESSDENIED);
    EXPECT_THAT(calls, ElementsAre("UnRegisterTypeLib", "NdrDllRegisterProxy"));
}

TEST_F(Exports, GiveTheErrorOfTakingOutTheMarshallingCode)
{
    unregisterProxyResult = E_ACCESSDENIED;
    EXPECT_EQ(product.UnregisterServer(), E_ACCESSDENIED);
}

TEST_F(Exports, AskTheMarshallingCodeForAClassObjectFirst)
{
    void* object = nullptr;
    EXPECT_EQ(product.GetClassObject(GuidFromText(goldenClasses[0].identifier), IID_IClassFactory, &object), S_OK);
    EXPECT_EQ(object, &calls);
}

TEST_F(Exports, LookTheClassUpIfTheMarshallingCodeGivesNoClassObject)
{
    classObjectResult = E_UNEXPECTED;
    IClassFactory* factory = nullptr;
    ASSERT_EQ(product.GetClassObject(GuidFromText(goldenClasses[0].identifier), IID_IClassFactory,
                                     reinterpret_cast<void**>(&factory)),
              S_OK);
    EXPECT_THAT(calls, ElementsAre("NdrDllGetClassObject"));
    factory->Release();
}

TEST_F(Exports, GiveTheAnswerOfTheMarshallingCodeOnUnloadingUnlessItAgrees)
{
    static constexpr HRESULT answers[] = {S_FALSE, E_UNEXPECTED, S_OK};
    for (const HRESULT answer : answers) {
        unloadResult = answer;
        EXPECT_EQ(product.CanUnloadNow(), answer);
    }
}

} // namespace
