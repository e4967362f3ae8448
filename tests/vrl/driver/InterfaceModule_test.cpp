// SPDX-License-Identifier: MIT
#include "vrl/driver/InterfaceModule.h"

#include "support/driver/ScriptedInterface.h"
#include "support/ImportHook.h"
#include "support/Raising.h"
#include "support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <span>

namespace {

const HANDLE printer = reinterpret_cast<HANDLE>(0x50);
void* const driver = reinterpret_cast<void*>(0xD0);

/// One operation, and the export behind it.
struct Operation {
    const char* exported;
    bool (*run)(const InterfaceModule& module); ///< true if the export was found, where it tells
    ScriptedInterface::Call call;
};

const Operation operations[] = {
    {"VRL_Printer_Open",
     [](const InterfaceModule& module) { return module.Open(printer) != nullptr; },
     {"VRL_Printer_Open", printer, L"", 0}                  },
    {"VRL_Settings_Import",
     [](const InterfaceModule& module) { return module.Import(driver, L"in.set", 0x401); },
     {"VRL_Settings_Import", driver, L"in.set", 0x401}      },
    {"VRL_Settings_Export",
     [](const InterfaceModule& module) { return module.Export(driver, L"out.set", 0xFFFFFFFF); },
     {"VRL_Settings_Export", driver, L"out.set", 0xFFFFFFFF}},
    {"VRL_Settings_Reset",
     [](const InterfaceModule& module) { return module.Reset(driver, 0x20); },
     {"VRL_Settings_Reset", driver, L"", 0x20}              },
};

/// Those of which nobody hears whether they are there.
const Operation silentOperations[] = {
    {"VRL_Printer_Close",
     [](const InterfaceModule& module) { return module.Close(driver), true; },
     {"VRL_Printer_Close", driver, L"", 0}},
    {"VRL_Settings_Save",
     [](const InterfaceModule& module) { return module.Save(driver), true; },
     {"VRL_Settings_Save", driver, L"", 0}},
};

class InterfaceModuleTest : public ::testing::Test {
protected:
    void SetUp() override { ScriptedInterface::Install(path); }
    void TearDown() override { EXPECT_FALSE(scripted.IsLoaded()) << "the module was left loaded"; }

    TemporaryDirectory folder;
    std::wstring path = folder.Path(L"interface.dll");
    ScriptedInterface scripted;
};

TEST_F(InterfaceModuleTest, HandsItsArgumentsToTheExport)
{
    const InterfaceModule module(path.c_str());
    ASSERT_TRUE(module);
    for (const auto& table : {std::span<const Operation>(operations), std::span<const Operation>(silentOperations)}) {
        for (const Operation& row : table) {
            EXPECT_TRUE(row.run(module)) << row.exported;
            EXPECT_EQ(scripted.Calls().back(), row.call) << row.exported;
        }
    }
    EXPECT_EQ(scripted.Loads(), 1);
}

TEST_F(InterfaceModuleTest, OpeningGivesTheDriversHandleOrNull)
{
    const InterfaceModule module(path.c_str());
    scripted.driverHandle = driver;
    EXPECT_EQ(module.Open(printer), driver);
    scripted.driverHandle = nullptr;
    EXPECT_EQ(module.Open(printer), nullptr);
}

TEST_F(InterfaceModuleTest, MissingExportIsAFailure)
{
    for (const Operation& row : operations) {
        ScriptedInterface::Install(path, row.exported);
        const InterfaceModule module(path.c_str());
        EXPECT_FALSE(row.run(module)) << row.exported;
    }
    EXPECT_TRUE(scripted.Calls().empty());
}

TEST_F(InterfaceModuleTest, MissingCloseOrSaveIsNotMissed)
{
    for (const Operation& row : silentOperations) {
        ScriptedInterface::Install(path, row.exported);
        row.run(InterfaceModule(path.c_str()));
    }
    EXPECT_TRUE(scripted.Calls().empty());
}

TEST_F(InterfaceModuleTest, MissingFileIsAFailureOfEveryOperation)
{
    const InterfaceModule module(folder.Path(L"missing.dll").c_str());
    EXPECT_FALSE(module);
    for (const Operation& row : operations) EXPECT_FALSE(row.run(module)) << row.exported;
}

TEST_F(InterfaceModuleTest, EachKindOfExceptionComesOutAndTheModuleStaysUsable)
{
    const InterfaceModule module(path.c_str());
    for (const RaisedKind& kind : raisedKinds) {
        for (const auto& table :
             {std::span<const Operation>(operations), std::span<const Operation>(silentOperations)}) {
            for (const Operation& row : table) {
                scripted.step = [&](const auto&) { kind.raise(); };
                EXPECT_TRUE(RaisesOut([&] { row.run(module); })) << kind.name << " in " << row.exported;
                scripted.step = [](const auto&) {};
                EXPECT_TRUE(row.run(module)) << kind.name << " in " << row.exported;
            }
        }
    }
}

TEST_F(InterfaceModuleTest, CrashComesOutAsItsFault)
{
    const InterfaceModule module(path.c_str());
    scripted.step = [](const auto&) { WriteToNowhere(); };
    for (const Operation& row : operations)
        EXPECT_EQ(FaultOf([&] { row.run(module); }), EXCEPTION_ACCESS_VIOLATION) << row.exported;
}

TEST_F(InterfaceModuleTest, WriteBehindTheFileNameIsAFaultAndNoDamage)
{
    const InterfaceModule module(path.c_str());
    const std::wstring name = L"C:\\sets\\all.set";
    scripted.step = [&](const auto&) {
        scripted.givenFileName[0] = L'D'; // its own
        scripted.givenFileName[name.size() + 1] = L'x';
    };
    EXPECT_EQ(FaultOf([&] { module.Import(driver, name.c_str(), 1); }), EXCEPTION_ACCESS_VIOLATION);
    EXPECT_EQ(FaultOf([&] { module.Export(driver, name.c_str(), 1); }), EXCEPTION_ACCESS_VIOLATION);
    EXPECT_EQ(name, L"C:\\sets\\all.set");
}

TEST_F(InterfaceModuleTest, FileNameForWhichThereIsNoMemoryIsAFailure)
{
    const InterfaceModule module(path.c_str());
    {
        const ImportHook<decltype(::VirtualAlloc)> noMemory(
            "VirtualAlloc", [](void*, SIZE_T, DWORD, DWORD) -> void* { return nullptr; });
        EXPECT_FALSE(module.Import(driver, L"in.set", 1));
        EXPECT_FALSE(module.Export(driver, L"out.set", 1));
    }
    EXPECT_TRUE(scripted.Calls().empty());
}

TEST_F(InterfaceModuleTest, ModuleThatReleasesItselfOnceTooOftenIsStillThere)
{
    const InterfaceModule module(path.c_str());
    scripted.step = [this](const auto&) { ::FreeLibrary(::GetModuleHandleW(path.c_str())); };
    EXPECT_TRUE(module.Reset(driver, 1));
    EXPECT_TRUE(scripted.IsLoaded());
    scripted.step = [](const auto&) {};
    EXPECT_TRUE(module.Reset(driver, 1));
}

} // namespace
