// SPDX-License-Identifier: MIT
#include "support/com/GuidText.h"
#include "support/product/ProductModule.h"
#include "support/product/RegistryDump.h"
#include "support/product/ScratchClassesRoot.h"
#include "GoldenClasses.h"
#include "GoldenTypeLibrary.h"

#include <gmock/gmock.h>

#include <cstring>
#include <map>
#include <set>

namespace {

using ::testing::Contains;
using ::testing::Not;
using ::testing::UnorderedElementsAreArray;

const std::string applicationId = "{1428253B-19DD-4AC0-93DE-7466AC25FA5E}";
const std::string libraryId = "{37AB5030-208A-4D7C-8ACD-1FCDB4C3F02B}";
const std::string marshallingClass = "{C83204D8-630A-4F8C-8056-F52CDBBF1A31}";
const std::string automationMarshallingOfDispatch = "{00020420-0000-0000-C000-000000000046}";

const ProductModule& Product()
{
    static const ProductModule product;
    return product;
}

std::string ModulePath()
{
    const std::wstring& path = Product().Path();
    std::string narrow;
    for (const wchar_t character : path) narrow += static_cast<char>(character);
    return narrow;
}

/// Keys and values as `RegistryDump` puts them; what is written later replaces what was there.
class ExpectedRegistry {
public:
    void Key(const std::string& path) { _keys.insert(path); }

    void Value(const std::string& path, const std::string& name, const std::string& text)
    {
        Key(path);
        _values[path + " [" + name + ']'] = text;
    }

    std::vector<std::string> Lines() const
    {
        std::vector<std::string> lines(_keys.begin(), _keys.end());
        for (const auto& [name, text] : _values) lines.push_back(name + " = " + text);
        return lines;
    }

private:
    std::set<std::string> _keys;
    std::map<std::string, std::string> _values;
};

void AddClass(ExpectedRegistry& registry, const GoldenClass& row)
{
    const std::string versioned = row.versionedProgId;
    registry.Value(versioned, "", row.description);
    registry.Value(versioned + "\\CLSID", "", row.registeredIdentifier);

    const std::string independent = row.progId;
    registry.Value(independent, "", row.description);
    registry.Value(independent + "\\CLSID", "", row.registeredIdentifier);
    registry.Value(independent + "\\CurVer", "", row.versionedProgId);

    const std::string key = std::string("CLSID\\") + row.registeredIdentifier;
    registry.Value(key, "", row.description);
    registry.Value(key, "AppID", applicationId);
    registry.Value(key + "\\ProgID", "", row.versionedProgId);
    registry.Value(key + "\\VersionIndependentProgID", "", row.progId);
    registry.Key(key + "\\Programmable");
    registry.Value(key + "\\InprocServer32", "", ModulePath());
    registry.Value(key + "\\InprocServer32", "ThreadingModel", "Free");
    registry.Value(key + "\\TypeLib", "", libraryId);
}

std::vector<std::string> ExpectedLines()
{
    ExpectedRegistry registry;
    registry.Key("AppID");
    registry.Value("AppID\\" + applicationId, "", "Vorlane");
    registry.Value("AppID\\Vorlane.DLL", "AppID", applicationId);
    registry.Key("CLSID");
    for (const GoldenClass& row : goldenClasses) AddClass(registry, row);
    return registry.Lines();
}

/// The platform spells keys in its own letter case.
bool StartsWith(const std::string& line, const std::string& start)
{
    return ::_strnicmp(line.c_str(), start.c_str(), start.size()) == 0;
}

bool IsWrittenByThePlatform(const std::string& line)
{
    return StartsWith(line, "Interface") || StartsWith(line, "TypeLib") ||
           StartsWith(line, "CLSID\\" + marshallingClass);
}

/// The keys that every machine has.
const auto onlyWhatOthersShare =
    ::testing::Each(::testing::AnyOf(::testing::StrCaseEq("AppID"), ::testing::StrCaseEq("CLSID"),
                                     ::testing::StrCaseEq("Interface"), ::testing::StrCaseEq("TypeLib")));

class Registration : public ::testing::Test {
protected:
    static std::vector<std::string> Dump() { return RegistryDump(HKEY_CLASSES_ROOT); }

    static std::vector<std::string> DumpOfOurScripts()
    {
        auto lines = Dump();
        std::erase_if(lines, IsWrittenByThePlatform);
        return lines;
    }

    ScratchClassesRoot root;
};

TEST_F(Registration, WritesEachClassAndNothingElse)
{
    ASSERT_EQ(Product().RegisterServer(), S_OK);
    EXPECT_THAT(DumpOfOurScripts(), UnorderedElementsAreArray(ExpectedLines()));
}

TEST_F(Registration, GivesTheSharedVersionedProgIdToTheClassRegisteredLast)
{
    ASSERT_EQ(Product().RegisterServer(), S_OK);
    EXPECT_THAT(Dump(), Contains("Vorlane.PrinterConfiguratio.1 [] = PrinterConfigurationFilter Class"));
    EXPECT_THAT(Dump(), Contains("Vorlane.PrinterConfiguratio.1\\CLSID [] = {66BD9CEA-030E-437E-92EF-2796901BBA6E}"));
    EXPECT_THAT(Dump(), Contains("Vorlane.PrinterConfiguration\\CurVer [] = Vorlane.PrinterConfiguratio.1"));
    EXPECT_THAT(Dump(), Contains("Vorlane.PrinterConfigurationF\\CurVer [] = Vorlane.PrinterConfiguratio.1"));
}

TEST_F(Registration, NamesAForeignClassForPrintJobSchedule)
{
    ASSERT_EQ(Product().RegisterServer(), S_OK);
    EXPECT_THAT(Dump(), Contains("Vorlane.PrintJobSchedule\\CLSID [] = {36BC7BB7-50C5-43CA-B1BA-9BF859F877C5}"));
    EXPECT_THAT(Dump(), Contains("CLSID\\{36BC7BB7-50C5-43CA-B1BA-9BF859F877C5}"));
    EXPECT_THAT(Dump(), Not(Contains("CLSID\\{88E4D889-1837-40B3-9F3B-2DBCDFD942D4}")));
}

TEST_F(Registration, EntersTheTypeLibrary)
{
    ASSERT_EQ(Product().RegisterServer(), S_OK);
    EXPECT_EQ(root.Text("TypeLib\\" + libraryId + "\\1.0"), "Vorlane 1.0 Type Library");
    EXPECT_EQ(root.Text("TypeLib\\" + libraryId + "\\1.0\\0\\win64"), ModulePath());
}

TEST_F(Registration, EntersTheMarshallingCode)
{
    ASSERT_EQ(Product().RegisterServer(), S_OK);
    const std::string key = "CLSID\\" + marshallingClass + "\\InprocServer32";
    EXPECT_EQ(root.Text(key), ModulePath());
    EXPECT_EQ(root.Text(key, "ThreadingModel"), "Both");
}

TEST_F(Registration, HasOurOwnMarshallingForEachInterface)
{
    ASSERT_EQ(Product().RegisterServer(), S_OK);
    for (const GoldenInterface& row : goldenInterfaces) {
        const std::string key = std::string("Interface\\") + row.identifier;
        EXPECT_EQ(root.Text(key), row.name);
        EXPECT_EQ(root.Text(key + "\\ProxyStubClsid32"), marshallingClass);
    }
}

TEST_F(Registration, HasThePlatformsMarshallingForEvents)
{
    ASSERT_EQ(Product().RegisterServer(), S_OK);
    for (const GoldenInterface& row : goldenEvents) {
        const std::string key = std::string("Interface\\") + row.identifier;
        EXPECT_EQ(root.Text(key + "\\ProxyStubClsid32"), automationMarshallingOfDispatch);
    }
}

TEST_F(Registration, TwiceChangesNothing)
{
    ASSERT_EQ(Product().RegisterServer(), S_OK);
    const auto once = Dump();
    ASSERT_EQ(Product().RegisterServer(), S_OK);
    EXPECT_EQ(Dump(), once);
}

TEST_F(Registration, IsUndoneWithoutALeftover)
{
    ASSERT_EQ(Product().RegisterServer(), S_OK);
    EXPECT_EQ(Product().UnregisterServer(), S_OK);
    EXPECT_THAT(Dump(), onlyWhatOthersShare);
}

TEST_F(Registration, UndoneLeavesWhatBelongsToOthers)
{
    root.Create(L"AppID\\Foreign");
    root.Create(L"CLSID\\Foreign");
    root.Create(L"Interface\\Foreign");
    root.Create(L"TypeLib\\Foreign");
    const auto before = Dump();
    ASSERT_EQ(Product().RegisterServer(), S_OK);
    ASSERT_EQ(Product().UnregisterServer(), S_OK);
    EXPECT_THAT(Dump(), UnorderedElementsAreArray(before));
}

TEST_F(Registration, CanBeUndoneWithoutHavingBeenDone)
{
    EXPECT_EQ(Product().UnregisterServer(), S_OK);
    EXPECT_THAT(Dump(), onlyWhatOthersShare);
}

TEST_F(Registration, EndsAtTheFirstScriptThatFails)
{
    root.Create(L"CLSID", REG_OPTION_VOLATILE);
    EXPECT_EQ(Product().RegisterServer(), HRESULT_FROM_WIN32(ERROR_CHILD_MUST_BE_VOLATILE));
    EXPECT_THAT(Dump(), Contains("Vorlane.VRL"));
    EXPECT_THAT(Dump(), Not(Contains("Vorlane.PrintServer")));
}

} // namespace
