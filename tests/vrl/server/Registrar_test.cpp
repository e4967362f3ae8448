// SPDX-License-Identifier: MIT
#include "vrl/server/Registrar.h"

#include "support/product/RegistryDump.h"
#include "support/product/ScratchClassesRoot.h"

#include <gmock/gmock.h>

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class RegistrarTest : public ::testing::Test {
protected:
    std::vector<std::string> Dump() const { return RegistryDump(HKEY_CLASSES_ROOT); }

    ScratchClassesRoot root;
    Registrar registrar;
};

TEST_F(RegistrarTest, WritesKeysWithTheirValues)
{
    EXPECT_EQ(registrar.Register(L"HKCR { A = s text { B { val Name = s x val Number = d 7 } } }"), S_OK);
    EXPECT_THAT(Dump(), ElementsAre("A", "A [] = text", "A\\B", "A\\B [Name] = x", "A\\B [Number] = d 7"));
}

TEST_F(RegistrarTest, PutsReplacementsIn)
{
    registrar.SetReplacement(L"MODULE", L"C:\\a.dll");
    EXPECT_EQ(registrar.Register(L"HKCR { A = s %MODULE% }"), S_OK);
    EXPECT_THAT(Dump(), ElementsAre("A", "A [] = C:\\a.dll"));
}

TEST_F(RegistrarTest, ALaterReplacementCounts)
{
    registrar.SetReplacement(L"NAME", L"first");
    registrar.SetReplacement(L"NAME", L"second");
    EXPECT_EQ(registrar.Register(L"HKCR { %NAME% }"), S_OK);
    EXPECT_THAT(Dump(), ElementsAre("second"));
}

TEST_F(RegistrarTest, RegisteringTwiceChangesNothing)
{
    const wchar_t* script = L"HKCR { A = s text { B } ForceRemove C { D } }";
    EXPECT_EQ(registrar.Register(script), S_OK);
    const auto once = Dump();
    EXPECT_EQ(registrar.Register(script), S_OK);
    EXPECT_EQ(Dump(), once);
}

TEST_F(RegistrarTest, KeepsWhatAPlainKeyAlreadyHolds)
{
    root.Create(L"A\\Foreign");
    EXPECT_EQ(registrar.Register(L"HKCR { A { B } }"), S_OK);
    EXPECT_THAT(Dump(), ElementsAre("A", "A\\B", "A\\Foreign"));
}

TEST_F(RegistrarTest, ForceRemoveEmptiesTheKeyFirst)
{
    root.Create(L"A\\Old\\Older");
    EXPECT_EQ(registrar.Register(L"HKCR { ForceRemove A { B } }"), S_OK);
    EXPECT_THAT(Dump(), ElementsAre("A", "A\\B"));
}

TEST_F(RegistrarTest, DeleteRemovesTheKeyWhenRegistering)
{
    root.Create(L"A\\Old");
    EXPECT_EQ(registrar.Register(L"HKCR { Delete A Delete Missing }"), S_OK);
    EXPECT_THAT(Dump(), IsEmpty());
}

TEST_F(RegistrarTest, DeleteDoesNothingWhenUnregistering)
{
    root.Create(L"A");
    EXPECT_EQ(registrar.Unregister(L"HKCR { Delete A }"), S_OK);
    EXPECT_THAT(Dump(), ElementsAre("A"));
}

TEST_F(RegistrarTest, UnregisteringUndoesRegistering)
{
    const wchar_t* script = L"HKCR { A = s text { B { C { val Name = s x } } D } ForceRemove E = s text { F } }";
    EXPECT_EQ(registrar.Register(script), S_OK);
    EXPECT_EQ(registrar.Unregister(script), S_OK);
    EXPECT_THAT(Dump(), IsEmpty());
}

TEST_F(RegistrarTest, UnregisteringLeavesANoRemoveKeyButNotWhatWasWrittenToIt)
{
    const wchar_t* script = L"HKCR { NoRemove A = s text { B val Name = s x } }";
    EXPECT_EQ(registrar.Register(script), S_OK);
    EXPECT_EQ(registrar.Unregister(script), S_OK);
    EXPECT_THAT(Dump(), ElementsAre("A"));
}

TEST_F(RegistrarTest, UnregisteringLeavesForeignKeysBelowAPlainKey)
{
    root.Create(L"A\\Foreign");
    EXPECT_EQ(registrar.Unregister(L"HKCR { A { B } }"), S_OK);
    EXPECT_THAT(Dump(), ElementsAre("A", "A\\Foreign"));
}

TEST_F(RegistrarTest, UnregisteringLeavesForeignValuesInAPlainKey)
{
    root.SetText(L"A", L"Foreign", L"x");
    EXPECT_EQ(registrar.Unregister(L"HKCR { A = s text }"), S_OK);
    EXPECT_THAT(Dump(), ElementsAre("A", "A [Foreign] = x"));
}

TEST_F(RegistrarTest, UnregisteringAForceRemoveKeyTakesForeignKeysWithIt)
{
    root.Create(L"A\\Foreign");
    EXPECT_EQ(registrar.Unregister(L"HKCR { ForceRemove A }"), S_OK);
    EXPECT_THAT(Dump(), IsEmpty());
}

TEST_F(RegistrarTest, UnregisteringWhatIsNotThereIsNoError)
{
    EXPECT_EQ(registrar.Unregister(L"HKCR { A { B val Name = s x } NoRemove C ForceRemove D }"), S_OK);
    EXPECT_THAT(Dump(), IsEmpty());
}

TEST_F(RegistrarTest, TwoScriptsWithOneKeyAreUndoneOneAfterTheOther)
{
    EXPECT_EQ(registrar.Register(L"HKCR { Shared = s first { CLSID = s 1 } }"), S_OK);
    EXPECT_EQ(registrar.Register(L"HKCR { Shared = s second { CLSID = s 2 } }"), S_OK);
    EXPECT_THAT(Dump(), ElementsAre("Shared", "Shared [] = second", "Shared\\CLSID", "Shared\\CLSID [] = 2"));

    EXPECT_EQ(registrar.Unregister(L"HKCR { Shared = s first { CLSID = s 1 } }"), S_OK);
    EXPECT_EQ(registrar.Unregister(L"HKCR { Shared = s second { CLSID = s 2 } }"), S_OK);
    EXPECT_THAT(Dump(), IsEmpty());
}

TEST_F(RegistrarTest, AMalformedScriptFailsAndWritesNothing)
{
    EXPECT_EQ(registrar.Register(L"HKCR { A B { C }"), HRESULT_FROM_WIN32(ERROR_INVALID_DATA));
    EXPECT_THAT(Dump(), IsEmpty());
}

TEST_F(RegistrarTest, AMalformedScriptFailsAndRemovesNothing)
{
    root.Create(L"A");
    EXPECT_EQ(registrar.Unregister(L"HKCR { A B { C }"), HRESULT_FROM_WIN32(ERROR_INVALID_DATA));
    EXPECT_THAT(Dump(), ElementsAre("A"));
}

TEST_F(RegistrarTest, AnUnknownReplacementFails)
{
    EXPECT_EQ(registrar.Register(L"HKCR { A = s %NOBODY% }"), HRESULT_FROM_WIN32(ERROR_INVALID_DATA));
}

TEST_F(RegistrarTest, AnUnreadableKeyEndsUnregisteringWithTheRegistrysError)
{
    root.Doom();
    EXPECT_EQ(registrar.Unregister(L"HKCR { A }"), HRESULT_FROM_WIN32(ERROR_KEY_DELETED));
    EXPECT_EQ(registrar.Unregister(L"HKCR { ForceRemove A }"), HRESULT_FROM_WIN32(ERROR_KEY_DELETED));
}

TEST(Registrar, ARefusedKeyEndsTheScriptWithTheRegistrysError)
{
    const ScratchClassesRoot root(REG_OPTION_VOLATILE);
    EXPECT_EQ(Registrar().Register(L"HKCR { A } HKCU { NoRemove Software { VorlaneNeverWritten } }"),
              HRESULT_FROM_WIN32(ERROR_CHILD_MUST_BE_VOLATILE));
    HKEY key = nullptr;
    EXPECT_EQ(::RegOpenKeyW(HKEY_CURRENT_USER, L"Software\\VorlaneNeverWritten", &key), LSTATUS{ERROR_FILE_NOT_FOUND});
}

} // namespace
