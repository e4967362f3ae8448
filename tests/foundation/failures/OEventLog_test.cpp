// SPDX-License-Identifier: MIT
#include "foundation/failures/OEventLog.h"

#include <gmock/gmock.h>
#include <process.h>

#include <algorithm>
#include <atomic>
#include <optional>
#include <string>
#include <vector>

#include "support/AllocationFailure.h"
#include "support/ImportHook.h"
#include "support/RunTogether.h"

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// One entry as the platform was asked to report it.
struct Entry {
    WORD type;
    WORD category;
    DWORD identifier;
    bool hasUser;
    std::vector<std::wstring> insertions;
    DWORD dataSize;
};

/// Sees what goes to the platform's event log, which has nothing that could be read back under Wine, and cleans the
/// registry of the test's source.
class OEventLogTest : public ::testing::Test {
protected:
    OEventLogTest()
    {
        entries.clear();
        sources.clear();
        deregistered.clear();
        reportResult = TRUE;
        registerResult = eventSource;
        createdKeys = 0;
        realCreateKey = _createKey.Original();
        DeleteKeys();
    }
    ~OEventLogTest() override { DeleteKeys(); }

    static std::wstring KeyOf(const wchar_t* log)
    {
        return std::wstring(L"SYSTEM\\CurrentControlSet\\Services\\Eventlog\\") + log + L"\\" + sourceName;
    }

    static void DeleteKeys()
    {
        ::RegDeleteKeyW(HKEY_LOCAL_MACHINE, KeyOf(L"Application").c_str());
        ::RegDeleteKeyW(HKEY_LOCAL_MACHINE, KeyOf(L"System").c_str());
    }

    static bool HasKey(const wchar_t* log)
    {
        OHandle<::RegCloseKey, HKEY> key;
        return ::RegOpenKeyExW(HKEY_LOCAL_MACHINE, KeyOf(log).c_str(), 0, KEY_READ, key.Receive()) == ERROR_SUCCESS;
    }

    static std::optional<std::wstring> Text(const wchar_t* log, const wchar_t* name)
    {
        wchar_t text[MAX_PATH];
        DWORD size = sizeof text;
        const LSTATUS status =
            ::RegGetValueW(HKEY_LOCAL_MACHINE, KeyOf(log).c_str(), name, RRF_RT_REG_SZ, nullptr, text, &size);
        if (status != ERROR_SUCCESS) return std::nullopt;
        return text;
    }

    static std::optional<DWORD> Number(const wchar_t* log, const wchar_t* name)
    {
        DWORD number = 0;
        DWORD size = sizeof number;
        const LSTATUS status =
            ::RegGetValueW(HKEY_LOCAL_MACHINE, KeyOf(log).c_str(), name, RRF_RT_REG_DWORD, nullptr, &number, &size);
        if (status != ERROR_SUCCESS) return std::nullopt;
        return number;
    }

    static constexpr const wchar_t* sourceName = L"Vorlane foundation tests";
    static inline const HANDLE eventSource = reinterpret_cast<HANDLE>(0x4711);

    static inline std::vector<Entry> entries;
    static inline std::vector<std::wstring> sources;
    static inline std::vector<HANDLE> deregistered;
    static inline BOOL reportResult;
    static inline HANDLE registerResult;
    static inline int createdKeys;
    static inline REGSAM accessAsked;
    static inline decltype(::RegCreateKeyExW)* realCreateKey;

private:
    ImportHook<decltype(::RegisterEventSourceW)> _register{
        "RegisterEventSourceW", [](const wchar_t* server, const wchar_t* source) -> HANDLE {
            sources.push_back(server ? std::wstring(server) + L"?" : source);
            return registerResult;
        }};
    ImportHook<decltype(::DeregisterEventSource)> _deregister{"DeregisterEventSource", [](HANDLE handle) -> WINBOOL {
                                                                  deregistered.push_back(handle);
                                                                  return TRUE;
                                                              }};
    ImportHook<decltype(::ReportEventW)> _report{
        "ReportEventW",
        [](HANDLE handle, WORD type, WORD category, DWORD identifier, PSID user, WORD count, DWORD dataSize,
           const wchar_t** insertions, void*) -> WINBOOL {
            EXPECT_EQ(handle, eventSource);
            entries.push_back({
                type, category, identifier, user != nullptr, {insertions, insertions + count},
                      dataSize
            });
            return reportResult;
        }};
    ImportHook<decltype(::RegCreateKeyExW)> _createKey{
        "RegCreateKeyExW", [](HKEY root, const wchar_t* path, DWORD reserved, wchar_t* keyClass, DWORD options,
                              REGSAM access, SECURITY_ATTRIBUTES* security, HKEY* key, DWORD* disposition) {
            ++createdKeys;
            accessAsked = access;
            return realCreateKey(root, path, reserved, keyClass, options, access, security, key, disposition);
        }};
};

TEST_F(OEventLogTest, ConstructionTouchesNothing)
{
    {
        const OEventLog log(sourceName, 1);
    }
    EXPECT_EQ(createdKeys, 0);
    EXPECT_THAT(sources, IsEmpty());
    EXPECT_THAT(deregistered, IsEmpty());
}

TEST_F(OEventLogTest, FirstWriteMakesTheSourceKeyOfTheApplicationLog)
{
    OEventLog log(sourceName, 1);
    ASSERT_TRUE(log.WriteError("text"));
    EXPECT_FALSE(HasKey(L"System"));
    wchar_t system[MAX_PATH];
    ::GetSystemDirectoryW(system, MAX_PATH);
    EXPECT_EQ(Text(L"Application", L"EventMessageFile"), std::wstring(system) + L"\\kvevtmsg.dll");
    EXPECT_EQ(Number(L"Application", L"TypesSupported"), 7u);
    EXPECT_EQ(Text(L"Application", L"CategoryMessageFile"), std::wstring(system) + L"\\kvevtmsg.dll");
    EXPECT_EQ(Number(L"Application", L"CategoryCount"), 2u);
}

TEST_F(OEventLogTest, TheSourceKeyIsAskedForWithAllAccess)
{
    OEventLog log(sourceName, 1);
    ASSERT_TRUE(log.WriteError("text"));
    EXPECT_EQ(accessAsked, REGSAM{KEY_ALL_ACCESS});
}

TEST_F(OEventLogTest, ValuesOfTheSourceKeyAreStoredWithTheirWholeSize)
{
    struct Value {
        std::wstring name;
        DWORD type;
        DWORD bytes;

        bool operator==(const Value&) const = default;
    };
    static std::vector<Value> values;
    values.clear();
    const ImportHook<LSTATUS(HKEY, const wchar_t*, DWORD, DWORD, const BYTE*, DWORD)> hook(
        "RegSetValueExW", [](HKEY, const wchar_t* name, DWORD, DWORD type, const BYTE*, DWORD bytes) {
            values.push_back({name, type, bytes});
            return LSTATUS{ERROR_SUCCESS};
        });
    OEventLog log(sourceName, 1);
    ASSERT_TRUE(log.WriteError("text"));

    wchar_t system[MAX_PATH];
    const UINT length = ::GetSystemDirectoryW(system, MAX_PATH);
    const auto pathBytes = static_cast<DWORD>((length + std::size(L"\\kvevtmsg.dll")) * sizeof(wchar_t));
    EXPECT_EQ(values, (std::vector<Value>{
                          {L"EventMessageFile",    REG_SZ,    pathBytes},
                          {L"TypesSupported",      REG_DWORD, 4        },
                          {L"CategoryMessageFile", REG_SZ,    pathBytes},
                          {L"CategoryCount",       REG_DWORD, 4        },
    }));
}

TEST_F(OEventLogTest, AnyOtherKindUsesTheSystemLog)
{
    OEventLog log(sourceName, 2);
    ASSERT_TRUE(log.WriteError("text"));
    EXPECT_FALSE(HasKey(L"Application"));
    wchar_t system[MAX_PATH];
    ::GetSystemDirectoryW(system, MAX_PATH);
    EXPECT_EQ(Text(L"System", L"EventMessageFile"), std::wstring(system) + L"\\kvevtmsg.dll");
    EXPECT_EQ(Number(L"System", L"TypesSupported"), 7u);
    EXPECT_EQ(Text(L"System", L"CategoryMessageFile"), std::wstring(system) + L"\\kvevtmsg.dll");
    EXPECT_EQ(Number(L"System", L"CategoryCount"), 2u);
}

TEST_F(OEventLogTest, AnExistingKeyKeepsItsValues)
{
    OHandle<::RegCloseKey, HKEY> key;
    DWORD disposition = 0;
    realCreateKey(HKEY_LOCAL_MACHINE, KeyOf(L"Application").c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr,
                  key.Receive(), &disposition);
    const DWORD own = 99;
    ::RegSetValueExW(key.Get(), L"CategoryCount", 0, REG_DWORD, reinterpret_cast<const BYTE*>(&own), sizeof own);

    OEventLog log(sourceName, 1);
    ASSERT_TRUE(log.WriteError("text"));
    EXPECT_EQ(Number(L"Application", L"CategoryCount"), 99u);
    EXPECT_EQ(Text(L"Application", L"EventMessageFile"), std::nullopt);
}

TEST_F(OEventLogTest, ASecondWriteDoesNotTouchTheRegistry)
{
    OEventLog log(sourceName, 1);
    log.WriteError("first");
    log.WriteError("second");
    EXPECT_EQ(createdKeys, 1);
    EXPECT_THAT(sources, ElementsAre(sourceName));
    EXPECT_EQ(entries.size(), 2u);
}

TEST_F(OEventLogTest, AKeyThatCannotBeMadeDoesNotKeepFromReporting)
{
    const ImportHook<decltype(::RegCreateKeyExW)> hook("RegCreateKeyExW",
                                                       [](HKEY, const wchar_t*, DWORD, wchar_t*, DWORD, REGSAM,
                                                          SECURITY_ATTRIBUTES*, HKEY*,
                                                          DWORD*) -> LSTATUS { return ERROR_ACCESS_DENIED; });
    OEventLog log(sourceName, 1);
    EXPECT_TRUE(log.WriteError("text"));
    EXPECT_EQ(entries.size(), 1u);
}

TEST_F(OEventLogTest, ASourceThatCannotBeRegisteredReportsNothingAndIsTriedAgain)
{
    OEventLog log(sourceName, 1);
    registerResult = nullptr;
    EXPECT_FALSE(log.WriteError("first"));
    EXPECT_THAT(entries, IsEmpty());
    registerResult = eventSource;
    EXPECT_TRUE(log.WriteError("second"));
    EXPECT_EQ(sources.size(), 2u);
}

TEST_F(OEventLogTest, AFailedReportGivesFalse)
{
    OEventLog log(sourceName, 1);
    reportResult = FALSE;
    EXPECT_FALSE(log.WriteError("text"));
}

TEST_F(OEventLogTest, IdentifierFollowsKindAndSeverity)
{
    static constexpr struct {
        LONG kind;
        WORD severity;
        DWORD identifier;
    } rows[] = {
        {1,  4, 0x40000100},
        {1,  2, 0x80000200},
        {1,  1, 0xC0000300},
        {1,  8, 0xC0000300},
        {1,  0, 0xC0000300},
        {0,  4, 0x40FF0400},
        {0,  2, 0x80FF0500},
        {0,  1, 0xC0FF0600},
        {0,  8, 0xC0FF0600},
        {-1, 4, 0x40FF0400},
    };
    for (const auto& row : rows) {
        OEventLog log(sourceName, row.kind);
        ASSERT_TRUE(log.Write(row.severity, "text"));
        EXPECT_EQ(entries.back().identifier, row.identifier) << row.kind << ", " << row.severity;
        EXPECT_EQ(entries.back().type, row.severity) << "an unknown severity goes to the platform as it is";
    }
}

TEST_F(OEventLogTest, CarriesTheTextAsTheOneInsertion)
{
    OEventLog log(sourceName, 1);
    log.Write(4, OString(L"\x03A9 text"), 2);
    ASSERT_EQ(entries.size(), 1u);
    EXPECT_THAT(entries[0].insertions, ElementsAre(L"\x03A9 text"));
    EXPECT_EQ(entries[0].category, 2);
    EXPECT_FALSE(entries[0].hasUser);
    EXPECT_EQ(entries[0].dataSize, 0u);
}

TEST_F(OEventLogTest, TheNamedWritesDifferInSeverity)
{
    OEventLog log(sourceName, 1);
    log.WriteInformation("i", 1);
    log.WriteWarning("w", 2);
    log.WriteError("e", 3);
    ASSERT_EQ(entries.size(), 3u);
    EXPECT_EQ(entries[0].type, 4);
    EXPECT_EQ(entries[0].category, 1);
    EXPECT_EQ(entries[1].type, 2);
    EXPECT_EQ(entries[1].category, 2);
    EXPECT_EQ(entries[2].type, 1);
    EXPECT_EQ(entries[2].category, 3);
}

TEST_F(OEventLogTest, DestructorDeregistersTheSource)
{
    {
        OEventLog log(sourceName, 1);
        log.WriteError("text");
        EXPECT_THAT(deregistered, IsEmpty());
    }
    EXPECT_THAT(deregistered, ElementsAre(eventSource));
}

TEST_F(OEventLogTest, LackOfMemoryGivesFalseAndReportsNothing)
{
    bool failed = true;
    for (int allowed = 0; failed; ++allowed) {
        OEventLog log(sourceName, 1);
        const OString text("narrow, to be converted");
        entries.clear();
        const AllocationFailure failure(allowed);
        const bool reported = log.WriteError(text);
        failed = AllocationFailure::Happened();
        EXPECT_EQ(entries.size(), reported ? 1u : 0u) << allowed;
        EXPECT_TRUE(reported || failed) << allowed;
    }
}

TEST_F(OEventLogTest, AfterLackOfMemoryTheLockIsFree)
{
    OEventLog log(sourceName, 1);
    {
        const OString text("first");
        const AllocationFailure failure(0);
        EXPECT_FALSE(log.WriteError(text));
    }
    static OEventLog* shared;
    shared = &log;
    static bool reported;
    reported = false;
    const OWaitHandle thread(reinterpret_cast<HANDLE>(::_beginthreadex(
        nullptr, 0, [](void*) -> unsigned { return reported = shared->WriteError("second"); }, nullptr, 0, nullptr)));
    ASSERT_EQ(::WaitForSingleObject(thread.Get(), 30000), DWORD{WAIT_OBJECT_0});
    EXPECT_TRUE(reported);
}

std::atomic<int> writersInside;
std::atomic<int> mostWritersInside;

/// Stays long enough for others to come in, if anything lets them.
void StayInside()
{
    mostWritersInside = std::max(mostWritersInside.load(), ++writersInside);
    for (int turn = 0; turn < 20; ++turn) ::SwitchToThread();
    --writersInside;
}

TEST_F(OEventLogTest, WritersOfSeveralThreadsRegisterOnceAndReportInTurn)
{
    writersInside = 0;
    mostWritersInside = 0;
    static std::atomic<int> registrations;
    registrations = 0;
    const ImportHook<HANDLE(const wchar_t*, const wchar_t*)> registering("RegisterEventSourceW",
                                                                         [](const wchar_t*, const wchar_t*) {
                                                                             ++registrations;
                                                                             StayInside();
                                                                             return eventSource;
                                                                         });
    const ImportHook<BOOL(HANDLE, WORD, WORD, DWORD, PSID, WORD, DWORD, const wchar_t**, void*)> reporting(
        "ReportEventW", [](HANDLE, WORD, WORD, DWORD, PSID, WORD, DWORD, const wchar_t**, void*) {
            StayInside();
            return BOOL{TRUE};
        });
    OEventLog log(sourceName, 1);
    std::atomic<int> reported = 0;
    RunTogether(4, [&](int) {
        for (int entry = 0; entry < 50; ++entry) reported += log.WriteError("text");
    });
    EXPECT_EQ(reported, 200);
    EXPECT_EQ(registrations, 1);
    EXPECT_EQ(mostWritersInside, 1);
}

TEST_F(OEventLogTest, TheSourceNameIsACopy)
{
    OString name(sourceName);
    OEventLog log(name, 1);
    name = "another";
    log.WriteError("text");
    EXPECT_THAT(sources, ElementsAre(sourceName));
}

TEST(OEventLogOfThePlatform, TakesAnEntry)
{
    const std::wstring key = L"SYSTEM\\CurrentControlSet\\Services\\Eventlog\\Application\\Vorlane platform test";
    {
        OEventLog log(L"Vorlane platform test", 1);
        EXPECT_TRUE(log.WriteInformation("An entry of the foundation's tests."));
    }
    EXPECT_EQ(::RegDeleteKeyW(HKEY_LOCAL_MACHINE, key.c_str()), ERROR_SUCCESS) << "the key was there";
}

} // namespace
