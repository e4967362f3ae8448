// SPDX-License-Identifier: MIT
#include "foundation/registry/ORegistry.h"

#include <gmock/gmock.h>

#include <functional>

#include "ScratchKey.h"
#include "support/AllocationFailure.h"
#include "support/TranslatorScope.h"

namespace {

/// Runs every operation with each of its allocations failing in turn.
class ORegistryMemory : public ::testing::Test {
protected:
    ORegistryMemory()
    {
        scratch.SetNumber(L"A\\B", L"Value", 1);
        scratch.SetText(L"A\\B", L"Text", std::wstring(100, L'x').c_str());
        texts.Add(L"one");
        RunTranslated([&] { registry.ExportKey("", lines, 0); }); // what is made once is made now
        registry.SetBasePath(scratch.Path());
    }

    /// A broken ASSERT in the text classes tells of want of memory; in the product it becomes a C++ exception too.
    static void Throw(unsigned code, EXCEPTION_POINTERS*)
    {
        if (code == ERROR_INTERNAL_ERROR) throw code;
    }

    /// How many allocations an operation had; what it throws ends the test.
    int FailEach(const std::function<void(ORegistry&)>& operation)
    {
        for (int allowed = 0;; ++allowed) {
            ORegistry own(registry);
            bool failed = false;
            RunTranslated([&] {
                const AllocationFailure failure(allowed);
                operation(own);
                failed = AllocationFailure::Happened();
            });
            if (!failed) return allowed;
        }
    }

    ScratchKey scratch;
    ORegistry registry{scratch.Path()};
    OStringArray texts;
    OStringArray lines;
    const TranslatorScope translator{Throw};
};

TEST_F(ORegistryMemory, NothingIsThrownAndNothingLeaks)
{
    const OString key("A/B");
    const OString value("A/B/Value");
    const OString text("A/B/Text");
    const OString alias("LOCAL:Vorlane scratch key/Value");
    const OString pattern("A/B/V*");
    const OString written(L"some text"); // with the form that is asked for, so that it isn't made in here
    BYTE byte = 0;
    const OString nativePath(scratch.NativePath().c_str());
    const std::function<void(ORegistry&)> operations[] = {
        [&](ORegistry& own) { own.SetBinary(value, "1234", 4); },
        [&](ORegistry& own) { own.GetBinary(text, &byte, 1); },
        [&](ORegistry& own) { own.SetString(value, written); },
        [&](ORegistry& own) { own.GetString(text, written); },
        [&](ORegistry& own) { own.GetDWORD(alias, DWORD{1}); },
        [&](ORegistry& own) { own.SetStringArray(value, texts); },
        [&](ORegistry& own) {
            OStringArray read;
            own.GetStringArray(value, read);
        },
        [&](ORegistry& own) { own.GetValueLength(value); },
        [&](ORegistry& own) { own.KeyExists(key); },
        [&](ORegistry& own) { own.KeyIsWritable(key); },
        [&](ORegistry& own) { own.QueryKeyInfo(key, nullptr, nullptr); },
        [&](ORegistry& own) {
            OStringArray names;
            own.EnumKeys(key, names);
            own.EnumValues(key, names);
            own.FindKeys(pattern, names);
            own.FindValues(pattern, names);
        },
        [&](ORegistry& own) { own.GetNativePath(key); },
        [&](ORegistry& own) { own.FromNativePath(nativePath); },
        [&](ORegistry& own) { own.SetSecurity(key, ORegistry::securityOpen | ORegistry::securityDescend); },
        [&](ORegistry& own) {
            OStringArray exported;
            own.ExportKey(key, exported, ORegistry::exportChecksum | ORegistry::exportDelete);
        },
        [&](ORegistry& own) { own.ImportLines(lines, ORegistry::importReplace); },
        [&](ORegistry& own) { own.Delete(pattern); },
        [&](ORegistry& own) { own.DeleteKey(key, true); },
    };
    int number = 0;
    for (const auto& operation : operations) {
        const long before = LiveAllocations();
        EXPECT_GT(FailEach(operation), 0) << "operation " << number;
        EXPECT_EQ(LiveAllocations(), before) << "operation " << number;
        ++number;
    }
}

} // namespace
