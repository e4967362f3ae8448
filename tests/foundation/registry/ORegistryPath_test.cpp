// SPDX-License-Identifier: MIT
#include "foundation/registry/ORegistry.h"

#include <gmock/gmock.h>

#include <string>

namespace {

using ::testing::StrEq;

std::string Text(const OString& text)
{
    return text.nstring();
}

/// What a path is taken apart into, as "key|name", or "none".
std::string Parsed(const char* key, const char* value)
{
    OString canonical;
    OString name;
    if (!ORegistry().ParsePath(key, value, canonical, name)) return "none";
    return Text(canonical + "|" + name);
}

/// What a canonical key resolves to, as "root|subkey", or "none".
std::string Resolved(const char* key)
{
    HKEY root = nullptr;
    OString subkey;
    if (!ORegistry::Resolve(key, root, subkey)) return "none";
    const char* name = "another root";
    if (root == HKEY_CLASSES_ROOT) name = "classes";
    if (root == HKEY_CURRENT_USER) name = "user";
    if (root == HKEY_LOCAL_MACHINE) name = "machine";
    if (root == HKEY_USERS) name = "users";
    return std::string(name) + "|" + Text(subkey);
}

std::string Expanded(const char* path)
{
    OString expanded(path);
    ORegistry().ExpandAliases(expanded);
    return Text(expanded);
}

TEST(ORegistryAliases, BecomeTheirCanonicalForm)
{
    static constexpr struct {
        const char* path;
        const char* canonical;
    } rows[] = {
        {"CLASSES_ROOT:",          "0:"                                                         },
        {"CURRENT_USER:",          "1:"                                                         },
        {"LOCAL_MACHINE:",         "2:"                                                         },
        {"USERS:",                 "3:"                                                         },
        {"USER:",                  "1:SOFTWARE/Marrowfield Labs/Drivers"                        },
        {"LOCAL:",                 "2:SOFTWARE/Marrowfield Labs/Drivers"                        },
        {"GLOBAL:",                "2:SOFTWARE/Marrowfield Labs/Drivers/Global Settings"        },
        {"PRINT:",                 "2:SYSTEM/CurrentControlSet/Control/Print"                   },
        {"CLASSES_ROOT:.lbl",      "0:.lbl"                                                     },
        {"LOCAL_MACHINE:SOFTWARE", "2:SOFTWARE"                                                 },
        {"USER:Foo",               "1:SOFTWARE/Marrowfield Labs/Drivers/Foo"                    },
        {"GLOBAL:Foo/Bar",         "2:SOFTWARE/Marrowfield Labs/Drivers/Global Settings/Foo/Bar"},
        {"PRINT:Printers",         "2:SYSTEM/CurrentControlSet/Control/Print/Printers"          },
    };
    for (const auto& row : rows) EXPECT_EQ(Expanded(row.path), row.canonical) << row.path;
}

TEST(ORegistryAliases, MatchInAnyCase)
{
    EXPECT_EQ(Expanded("local:"), "2:SOFTWARE/Marrowfield Labs/Drivers");
    EXPECT_EQ(Expanded("Local:Foo"), "2:SOFTWARE/Marrowfield Labs/Drivers/Foo");
}

TEST(ORegistryAliases, LeaveEverythingElseAsItIs)
{
    for (const char* const path : {"", "LOCAL", "LOCAL/Foo", "2:LOCAL", "XLOCAL:Foo", "LOCALX:Foo", "Foo/LOCAL:"}) {
        EXPECT_EQ(Expanded(path), path);
    }
}

TEST(ORegistryParsePath, TakesTheLastComponentForTheName)
{
    static constexpr struct {
        const char* key;
        const char* value;
        const char* parsed;
    } rows[] = {
        {"",         "USER:Foo/Bar", "1:SOFTWARE/Marrowfield Labs/Drivers/Foo|Bar"},
        {"",         "user:Foo/Bar", "1:SOFTWARE/Marrowfield Labs/Drivers/Foo|Bar"},
        {"",         "LOCAL:Bar",    "2:SOFTWARE/Marrowfield Labs/Drivers|Bar"    },
        {"",         "2:Foo",        "2:|Foo"                                     },
        {"",         "2:Foo/Bar/",   "2:Foo/Bar|"                                 },
        {"2:Foo",    "Bar",          "2:Foo|Bar"                                  },
        {"2:Foo//",  "Bar",          "2:Foo%2F|Bar"                               },
        {"2:Foo/",   "Bar",          "2:Foo|Bar"                                  },
        {"2:Foo%%/", "Bar",          "2:Foo%25|Bar"                               },
        {"LOCAL:",   "Bar",          "2:SOFTWARE/Marrowfield Labs/Drivers|Bar"    },
        {"2:Foo",    "Sub/Bar",      "2:Foo/Sub|Bar"                              },
        {"2:Foo",    "3:Sub/Bar",    "3:Sub|Bar"                                  },
        {"2:Foo",    ":Bar",         "2:Foo/:|Bar"                                },
        {"2:Foo",    "A:",           "A:|"                                        },
        {"Foo",      "Bar",          "Foo|Bar"                                    },
        {"",         "/Bar",         "|Bar"                                       },
    };
    for (const auto& row : rows) EXPECT_EQ(Parsed(row.key, row.value), row.parsed) << row.key << ", " << row.value;
}

TEST(ORegistryParsePath, TakesAllOfTheKeyWithoutAValue)
{
    EXPECT_EQ(Parsed("2:Foo/Bar", ""), "2:Foo/Bar|");
    EXPECT_EQ(Parsed("2:Foo/Bar/", ""), "2:Foo/Bar|");
    EXPECT_EQ(Parsed("LOCAL:", ""), "2:SOFTWARE/Marrowfield Labs/Drivers|");
    EXPECT_EQ(Parsed("LOCAL:Foo", ""), "2:SOFTWARE/Marrowfield Labs/Drivers/Foo|");
}

TEST(ORegistryParsePath, FailsWithoutASeparator)
{
    EXPECT_EQ(Parsed("", "Bar"), "none");
    EXPECT_EQ(Parsed("", ""), "none");
    EXPECT_EQ(Parsed("Foo", ""), "none");
    EXPECT_EQ(Parsed("", "50%%"), "none");
}

TEST(ORegistryParsePath, KeepsEscapesInTheKeyAndUndoesThemInTheName)
{
    static constexpr struct {
        const char* value;
        const char* parsed;
    } rows[] = {
        {"2:A//B/C",     "2:A%2FB|C" },
        {"2:A::B/C",     "2:A%3AB|C" },
        {"2:50%%/C",     "2:50%25|C" },
        {"2:A/B//C",     "2:A|B/C"   },
        {"2:A/B::C",     "2:A|B:C"   },
        {"2:A/50%%",     "2:A|50%"   },
        {"2:A/%41%zz%4", "2:A|A%zz%4"},
        {"2:A/%%41",     "2:A|%41"   },
        {"2:A/B///C",    "2:A/B%2F|C"},
        {"2:A\\B\\C",    "2:A/B|C"   },
        {"2:A/B%5CC",    "2:A|B\\C"  },
        {"2:A/%2a%3F",   "2:A|*?"    },
        {"::A",          "none"      }, // only a name
    };
    for (const auto& row : rows) EXPECT_EQ(Parsed("", row.value), row.parsed) << row.value;
}

TEST(ORegistryParsePath, KeepsCharactersThatTheCodePageLacks)
{
    OString key;
    OString name;
    ASSERT_TRUE(ORegistry().ParsePath(L"2:\x0416\x2044/", L"\x20AC\x2044", key, name));
    EXPECT_THAT(key.wstring(), StrEq(L"2:\x0416\x2044")) << "a character that looks like a slash isn't one";
    EXPECT_THAT(name.wstring(), StrEq(L"\x20AC\x2044"));
}

TEST(ORegistryParsePath, AsksTheClassForItsAliases)
{
    struct WithAlias : ORegistry {
        void ExpandAliases(OString& path) const noexcept override
        {
            if (path == "LABELS:") path = "2:Labels";
        }
    };
    OString key;
    OString name;
    ASSERT_TRUE(WithAlias().ParsePath("", "LABELS:Width", key, name));
    EXPECT_EQ(Text(key), "2:Labels");
}

TEST(ORegistryEscape, EscapesPercentSlashAndColonOnly)
{
    EXPECT_EQ(Text(ORegistry::Escape("a%b/c:d")), "a%25b%2Fc%3Ad");
    EXPECT_EQ(Text(ORegistry::Escape("%2F")), "%252F");
    EXPECT_EQ(Text(ORegistry::Escape("*?\\\"=")), "*?\\\"=");
}

TEST(ORegistryEscape, IsUndoneByThePathLanguage)
{
    for (const char* const name : {"a%b/c:d", "//", "::", "%%", "%2F", "/", ":", "%", "%25%", ":/%:/%"}) {
        EXPECT_EQ(Parsed("2:K", ORegistry::Escape(name).nstring()), std::string("2:K|") + name);
    }
}

TEST(ORegistryResolve, GivesRootAndNativeSubkey)
{
    static constexpr struct {
        const char* key;
        const char* resolved;
    } rows[] = {
        {"0:.lbl",     "classes|.lbl"  },
        {"1:A/B",      "user|A\\B"     },
        {"2:A/B",      "machine|A\\B"  },
        {"3:.DEFAULT", "users|.DEFAULT"},
        {"02:A",       "machine|A"     },
        {"2:A/B/",     "machine|A\\B"  },
        {"2:A//",      "machine|A"     },
        {"2:A%2FB/C",  "machine|A/B\\C"},
        {"2:50%25",    "machine|50%"   },
        {"2:%2541",    "machine|%41"   },
        {"2:A%5C",     "machine|A"     },
        {"2:A:B",      "machine|A:B"   },
    };
    for (const auto& row : rows) EXPECT_EQ(Resolved(row.key), row.resolved) << row.key;
}

TEST(ORegistryResolve, FailsWithoutARootOrWithNothingBehindIt)
{
    for (const char* const key : {"2:", "2:/", "2:%5C", "", "A", "A/B", ":A", "4:A", "9:A", "-1:A", "10:A", "X:A",
                                  "2X:A", " 2:A", "4294967298:A", "18446744073709551618:A"}) {
        EXPECT_EQ(Resolved(key), "none") << key;
    }
}

TEST(ORegistryResolve, ADoubledSlashReachesThePlatformAsOneSlashInAName)
{
    OString key;
    OString name;
    ASSERT_TRUE(ORegistry().ParsePath("", "2:A//B/C", key, name));
    EXPECT_EQ(Text(key), "2:A%2FB");
    EXPECT_EQ(Resolved(key.nstring()), "machine|A/B");
}

TEST(ORegistryNativePath, HasTheFullNameOfTheRootAndBackslashes)
{
    static constexpr struct {
        const char* path;
        const char* native;
    } rows[] = {
        {"CLASSES_ROOT:.lbl", "HKEY_CLASSES_ROOT\\.lbl"                                      },
        {"1:A/B",             "HKEY_CURRENT_USER\\A\\B"                                      },
        {"LOCAL:A/B",         "HKEY_LOCAL_MACHINE\\SOFTWARE\\Marrowfield Labs\\Drivers\\A\\B"},
        {"USERS:A",           "HKEY_USERS\\A"                                                },
        {"2:A//B/50%%",       "HKEY_LOCAL_MACHINE\\A/B\\50%"                                 },
        {"2:",                "HKEY_LOCAL_MACHINE\\"                                         },
        {"A",                 ""                                                             },
        {"9:A",               ""                                                             },
        {"",                  ""                                                             },
    };
    for (const auto& row : rows) EXPECT_EQ(Text(ORegistry().GetNativePath(row.path)), row.native) << row.path;
}

TEST(ORegistryNativePath, GoesBehindTheBasePath)
{
    EXPECT_EQ(Text(ORegistry("2:A").GetNativePath("B")), "HKEY_LOCAL_MACHINE\\A\\B");
    EXPECT_EQ(Text(ORegistry("2:A").GetNativePath("")), "HKEY_LOCAL_MACHINE\\A");
}

TEST(ORegistryNativePath, BecomesACanonicalPath)
{
    static constexpr struct {
        const char* native;
        const char* path;
    } rows[] = {
        {"HKEY_CLASSES_ROOT\\.lbl",       "0:.lbl"          },
        {"HKEY_CURRENT_USER\\A\\B",       "1:A/B"           },
        {"HKEY_LOCAL_MACHINE\\A/B\\50%:", "2:A%2FB/50%25%3A"},
        {"HKEY_USERS\\A",                 "3:A"             },
        {"hkey_users\\A",                 "3:A"             },
        {"HKEY_USERS\\",                  "3:"              },
        {"HKEY_USERS",                    "3:"              },
        {"HKEY_USERSX\\A",                ""                },
        {"HKEY_CURRENT_CONFIG\\A",        ""                },
        {"A\\B",                          ""                },
        {"",                              ""                },
    };
    for (const auto& row : rows) EXPECT_EQ(Text(ORegistry::FromNativePath(row.native)), row.path) << row.native;
}

TEST(ORegistryNativePath, ComesBackFromACanonicalPath)
{
    for (const char* const native : {"HKEY_CURRENT_USER\\A//B\\%41\\c::d", "HKEY_LOCAL_MACHINE\\%25\\:\\/"}) {
        EXPECT_EQ(Text(ORegistry().GetNativePath(ORegistry::FromNativePath(native))), native);
    }
}

TEST(ORegistryObject, IsItsBasePath)
{
    const ORegistry registry("LOCAL:Labels");
    const ORegistry copy(registry);
    EXPECT_EQ(Text(copy.GetBasePath()), "LOCAL:Labels") << "as it was given";
    EXPECT_TRUE(ORegistry().GetBasePath().IsEmpty());

    ORegistry assigned;
    assigned = registry;
    assigned.SetBasePath("USER:");
    EXPECT_EQ(Text(assigned.GetBasePath()), "USER:");
    EXPECT_EQ(Text(registry.GetBasePath()), "LOCAL:Labels");
}

} // namespace
