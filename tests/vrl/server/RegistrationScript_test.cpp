// SPDX-License-Identifier: MIT
#include "vrl/server/RegistrationScript.h"

#include <gtest/gtest.h>

namespace {

using Script = RegistrationScript;

const Script::Replacements replacements{
    {L"MODULE", L"C:\\O'Hara %x%\\a.dll"},
    {L"ID",     L"{1234}"               }
};

std::optional<Script> Parse(std::wstring_view text)
{
    return Script::Parse(text, replacements);
}

/// The only key of the only root.
Script::Key ParseKey(std::wstring text)
{
    return Parse(L"HKCR { " + text + L" }").value().Roots().at(0).keys.at(0);
}

std::wstring TextOf(const Script::Value& value)
{
    return std::get<std::wstring>(value.data);
}

TEST(RegistrationScript, AnEmptyScriptWantsNothing)
{
    EXPECT_TRUE(Parse(L" \r\n").value().Roots().empty());
}

TEST(RegistrationScript, KnowsRootsByShortAndByLongName)
{
    static const struct {
        const wchar_t* text;
        HKEY handle;
    } rows[] = {
        {L"HKCR { }",               HKEY_CLASSES_ROOT },
        {L"HKEY_CLASSES_ROOT { }",  HKEY_CLASSES_ROOT },
        {L"HKCU { }",               HKEY_CURRENT_USER },
        {L"HKEY_CURRENT_USER { }",  HKEY_CURRENT_USER },
        {L"hklm { }",               HKEY_LOCAL_MACHINE},
        {L"HKEY_LOCAL_MACHINE { }", HKEY_LOCAL_MACHINE},
        {L"HKU { }",                HKEY_USERS        },
        {L"HKEY_USERS { }",         HKEY_USERS        },
    };
    for (const auto& row : rows) EXPECT_EQ(Parse(row.text).value().Roots().at(0).handle, row.handle) << row.text;
}

TEST(RegistrationScript, ReadsSeveralRoots)
{
    EXPECT_EQ(Parse(L"HKCR { A } HKCU { B }").value().Roots().size(), 2U);
}

TEST(RegistrationScript, ReadsTheDefaultValueAsAValueWithoutName)
{
    const Script::Key key = ParseKey(L"Name = s 'Some text'");
    EXPECT_EQ(key.name, L"Name");
    ASSERT_EQ(key.values.size(), 1U);
    EXPECT_EQ(key.values[0].name, L"");
    EXPECT_EQ(TextOf(key.values[0]), L"Some text");
}

TEST(RegistrationScript, AKeyWithoutValueHasNone)
{
    EXPECT_TRUE(ParseKey(L"Programmable").values.empty());
}

TEST(RegistrationScript, ReadsNamedTextsAndNumbers)
{
    const Script::Key key = ParseKey(L"Name { val Text = s word val Ten = d 10 val Hex = d 0xFFFFFFFF }");
    ASSERT_EQ(key.values.size(), 3U);
    EXPECT_EQ(key.values[0].name, L"Text");
    EXPECT_EQ(TextOf(key.values[0]), L"word");
    EXPECT_EQ(std::get<DWORD>(key.values[1].data), 10U);
    EXPECT_EQ(std::get<DWORD>(key.values[2].data), 0xFFFFFFFFU);
}

TEST(RegistrationScript, NestsKeys)
{
    const Script::Key key = ParseKey(L"A { B { C = s x } D }");
    ASSERT_EQ(key.keys.size(), 2U);
    EXPECT_EQ(key.keys[0].keys.at(0).name, L"C");
    EXPECT_EQ(key.keys[1].name, L"D");
}

TEST(RegistrationScript, KeywordsSayWhatUnregisteringRemoves)
{
    static const struct {
        const wchar_t* text;
        Script::Removal removal;
    } rows[] = {
        {L"A",             Script::Removal::WhenEmpty},
        {L"NoRemove A",    Script::Removal::Never    },
        {L"noremove A",    Script::Removal::Never    },
        {L"ForceRemove A", Script::Removal::Whole    },
        {L"Delete A",      Script::Removal::AtOnce   },
    };
    for (const auto& row : rows) EXPECT_EQ(ParseKey(row.text).removal, row.removal) << row.text;
    for (const auto& row : rows) EXPECT_EQ(ParseKey(row.text).name, L"A") << row.text;
}

TEST(RegistrationScript, AQuotedKeywordIsAName)
{
    EXPECT_EQ(ParseKey(L"'Delete'").name, L"Delete");
    EXPECT_EQ(ParseKey(L"'val'").name, L"val");
}

TEST(RegistrationScript, QuotesKeepBlanksAndBraces)
{
    EXPECT_EQ(ParseKey(L"'{ a b }'").name, L"{ a b }");
}

TEST(RegistrationScript, ABraceWithinAWordIsPartOfIt)
{
    EXPECT_EQ(ParseKey(L"{1234} = s x").name, L"{1234}");
}

TEST(RegistrationScript, TwoQuotesStandForOne)
{
    EXPECT_EQ(TextOf(ParseKey(L"A = s 'it''s ''so'''").values.at(0)), L"it's 'so'");
}

TEST(RegistrationScript, AnEmptyTextIsAllowed)
{
    EXPECT_EQ(TextOf(ParseKey(L"A = s ''").values.at(0)), L"");
}

TEST(RegistrationScript, PutsReplacementsIntoKeysAndTextsAsTheyStand)
{
    const Script::Key key = ParseKey(L"%ID% = s 'at %MODULE%'");
    EXPECT_EQ(key.name, L"{1234}");
    EXPECT_EQ(TextOf(key.values.at(0)), L"at C:\\O'Hara %x%\\a.dll");
}

TEST(RegistrationScript, TwoPercentSignsStandForOne)
{
    EXPECT_EQ(TextOf(ParseKey(L"A = s '100 %%'").values.at(0)), L"100 %");
}

TEST(RegistrationScript, SkipsComments)
{
    EXPECT_EQ(ParseKey(L"// first { \n A // second\n = s x // '\n").name, L"A");
}

TEST(RegistrationScript, AMalformedScriptGivesNothing)
{
    static constexpr const wchar_t* rows[] = {
        L"HKCR",                       // no block
        L"HKCR {",                     // no end
        L"HKCR { A {",                 // no end below
        L"HKCR { A } }",               // one end too many
        L"HKXX { A }",                 // unknown root
        L"{ A }",                      // no root
        L"HKCR = s x { A }",           // a root has no value
        L"HKCR { val A = s x }",       // nor a named one
        L"HKCR { A = }",               // no data
        L"HKCR { A = s",               // no text
        L"HKCR { A = x y }",           // unknown type
        L"HKCR { A = d x }",           // no number
        L"HKCR { A = d '' }",          // no digits
        L"HKCR { A = d -1 }",          // a sign
        L"HKCR { A = d 1x }",          // something after the number
        L"HKCR { A = d 0x100000000 }", // more than 32 bits
        L"HKCR { A { val } }",         // a value without a name
        L"HKCR { A { val B } }",       // or without data
        L"HKCR { NoRemove }",          // a keyword without a key
        L"HKCR { '' = s x }",          // a key without a name
        L"HKCR { = s x }",             // likewise
        L"HKCR { { } }",               // likewise
        L"HKCR { A\\B }",              // a path for a name
        L"HKCR { Delete A = s x }",    // a removed key has no value
        L"HKCR { A = s 'x }",          // a quotation without end
        L"HKCR { A = s %NOBODY% }",    // unknown replacement
        L"HKCR { %NOBODY% }",          // likewise
        L"HKCR { A = s %ID }",         // replacement without end
    };
    for (const auto& row : rows) EXPECT_FALSE(Parse(row).has_value()) << row;
}

} // namespace
