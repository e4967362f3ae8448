// SPDX-License-Identifier: MIT
#include "foundation/registry/ORegistry.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "ScratchKey.h"
#include "support/RandomSeed.h"

namespace {

/// Trees of keys to try.
int Rounds()
{
    return RandomOperations(30, 3'000);
}

/// Random keys with what gives trouble in names and values.
class Dice {
public:
    int Upto(int highest) { return std::uniform_int_distribution<int>(0, highest)(_engine); }

    std::wstring Name()
    {
        // '*' and '?' are nothing special in a name, nor is what looks like an escape or a value.
        static constexpr const wchar_t* pieces[] = {L"a",  L"B",   L"/",   L"//",     L":",      L"::",     L"%",
                                                    L"%%", L"%2F", L"%41", L"\"",     L"\\",     L"\\\\",   L"=",
                                                    L",",  L"=\"", L"[",   L"]",      L"-",      L" ",      L"*",
                                                    L"?",  L"@",   L"hex", L"dword:", L"\x20AC", L"\x0416", L"\xE9"};
        std::wstring name;
        for (int count = Upto(6); count > 0; --count) name += pieces[Upto(std::size(pieces) - 1)];
        if (Upto(9) == 0) name.append(static_cast<size_t>(Upto(80)), L'n');
        return name;
    }

    /// No backslash, which no key's name can have, and no bracket at the end, which is lost.
    std::wstring KeyName()
    {
        std::wstring name = Name();
        std::erase(name, L'\\');
        return name + L"k" + std::to_wstring(Upto(99));
    }

    std::string Bytes(int longest)
    {
        std::string bytes(static_cast<size_t>(Upto(longest)), '\0');
        for (char& byte : bytes) byte = static_cast<char>(Upto(255));
        return bytes;
    }

    StoredValue Value()
    {
        static constexpr DWORD types[] = {REG_SZ,       REG_SZ,   REG_DWORD,     REG_DWORD, REG_BINARY, REG_BINARY,
                                          REG_MULTI_SZ, REG_NONE, REG_EXPAND_SZ, REG_QWORD, 0x1234};
        const DWORD type = types[Upto(std::size(types) - 1)];
        switch (type) {
        case REG_SZ:
            return {type, BytesOf(Name() + L'\0')};
        case REG_DWORD:
            return {type, Upto(9) == 0 ? Bytes(9) : std::string("\1\2\3\4")};
        case REG_MULTI_SZ: {
            std::wstring list;
            for (int count = Upto(5); count > 0; --count) list += L'x' + Name() + L'\0';
            return {type, BytesOf(list + L'\0')};
        }
        default:
            return {type, Upto(19) == 0 ? Bytes(20'000) : Bytes(100)};
        }
    }

private:
    std::mt19937_64 _engine{RandomSeed()};
};

std::wstring Quoted(const std::wstring& text)
{
    std::wstring quoted;
    for (const wchar_t character : text) {
        if (character == L'"' || character == L'\\') quoted += L'\\';
        quoted += character;
    }
    return quoted;
}

/// The name under which a value comes back: quoted inside, without a double quote at the end.
std::wstring NameAfter(const std::wstring& name)
{
    std::wstring after = Quoted(name);
    if (after.ends_with(L'"')) after.pop_back();
    return after;
}

/// Whether a double quote and an equals sign stand in a line before its name has ended.
bool SplitsTheLine(const std::wstring& name)
{
    return name.starts_with(L'=') || name.find(L"\"=") != name.npos;
}

/// Whether the bytes of a value begin on a line of their own, where they are lost.
bool IsPastTheLine(const std::wstring& name, DWORD type)
{
    const std::wstring prefix = type == REG_BINARY ? L"hex:" : L"hex(" + std::to_wstring(type) + L"):";
    return 3 + Quoted(name).size() + prefix.size() > 76;
}

/// The value that comes back.
StoredValue ValueAfter(const std::wstring& name, const StoredValue& value)
{
    switch (value.type) {
    case REG_SZ: {
        std::wstring text(reinterpret_cast<const wchar_t*>(value.bytes.data()));
        if (text.ends_with(L'"')) text.back() = L'\\';
        return {REG_SZ, BytesOf(text + L'\0')};
    }
    case REG_DWORD:
        return value.bytes.size() == sizeof(DWORD) ? value : StoredValue{REG_DWORD, std::string(sizeof(DWORD), '\0')};
    case REG_MULTI_SZ:
        return IsPastTheLine(name, value.type) ? StoredValue{REG_MULTI_SZ, BytesOf({L"", 1})} : value;
    default:
        return {REG_BINARY, IsPastTheLine(name, value.type) ? std::string() : value.bytes};
    }
}

StoredTree TreeAfter(const StoredTree& before)
{
    StoredTree after;
    for (const auto& [key, values] : before) {
        StoredValues& result = after[key];
        for (const auto& [name, value] : values) result[NameAfter(name)] = ValueAfter(name, value);
    }
    return after;
}

/// The first place where two trees differ, "" if there is none.
std::string Difference(const StoredTree& left, const StoredTree& right)
{
    for (const StoredTree* const tree : {&left, &right}) {
        for (const auto& [key, values] : *tree) {
            if (!left.count(key) || !right.count(key)) return "key " + ::testing::PrintToString(key);
            for (const auto& [name, value] : values) {
                const auto place = ::testing::PrintToString(key) + ", " + ::testing::PrintToString(name);
                if (!left.at(key).count(name))
                    return place + " is missing on the left: " + ::testing::PrintToString(value);
                if (!right.at(key).count(name))
                    return place + " is missing on the right: " + ::testing::PrintToString(value);
                if (!(left.at(key).at(name) == right.at(key).at(name))) {
                    return place + ": " + ::testing::PrintToString(left.at(key).at(name)) + " and " +
                           ::testing::PrintToString(right.at(key).at(name));
                }
            }
        }
    }
    return "";
}

class ORegistryProperty : public ::testing::Test {
protected:
    /// Fills a new key "From".
    void Roll()
    {
        ::RegDeleteTreeW(scratch.Open(L"").Get(), L"From");
        ::RegDeleteTreeW(scratch.Open(L"").Get(), L"To");
        std::vector<std::wstring> keys{L"From"};
        scratch.Create(L"From");
        for (int count = dice.Upto(5); count > 0; --count) {
            const std::wstring above = keys[static_cast<size_t>(dice.Upto(static_cast<int>(keys.size()) - 1))];
            keys.push_back(above + L'\\' + dice.KeyName());
            scratch.Create(keys.back().c_str());
        }
        for (const std::wstring& key : keys) {
            for (int count = dice.Upto(6); count > 0; --count) {
                const std::wstring name = dice.Name();
                const StoredValue value = dice.Value();
                if (!SplitsTheLine(name)) scratch.Set(key.c_str(), name.c_str(), value.type, value.bytes);
            }
        }
    }

    /// The lines of "From" with all its keys called "To".
    OStringArray& Moved()
    {
        lines.RemoveAll();
        EXPECT_TRUE(registry.ExportKey("From", lines, ORegistry::exportDelete));
        const OString from((scratch.NativePath() + L"\\From").c_str());
        const OString to((scratch.NativePath() + L"\\To").c_str());
        for (int index = 0; index < lines.GetSize(); ++index) {
            OString& line = lines[index];
            if (line.Left(1) == L"[")
                line = line.Left(line.Find(from)) + to + line.Mid(line.Find(from) + from.Length());
        }
        registry.SetBasePath(scratch.Path());
        return lines;
    }

    Dice dice;
    ScratchKey scratch;
    ORegistry registry{scratch.Path()};
    OStringArray lines;
};

TEST_F(ORegistryProperty, GivesTheSameKeysButForWhatTheTextLoses)
{
    for (int round = Rounds(); round > 0 && !HasFailure(); --round) {
        Roll();
        registry.ImportLines(Moved(), 0);
        registry.SetBasePath(scratch.Path());
        EXPECT_EQ(Difference(scratch.Tree(L"To"), TreeAfter(scratch.Tree(L"From"))), "");
    }
}

TEST_F(ORegistryProperty, GivesTheSameWhenDoneTwice)
{
    for (int round = Rounds(); round > 0 && !HasFailure(); --round) {
        Roll();
        const OStringArray& moved = Moved();
        registry.ImportLines(moved, 0);
        const StoredTree once = scratch.Tree(L"To");
        registry.ImportLines(moved, ORegistry::importReplace);
        registry.SetBasePath(scratch.Path());
        EXPECT_EQ(Difference(scratch.Tree(L"To"), once), "");
    }
}

TEST_F(ORegistryProperty, EnumeratesAndDeletesWhateverIsThere)
{
    for (int round = Rounds(); round > 0 && !HasFailure(); --round) {
        Roll();
        const StoredTree tree = scratch.Tree(L"From");
        OStringArray names;
        ASSERT_EQ(registry.EnumValues("From", names), static_cast<int>(tree.at(L"").size())) << round;
        for (int index = 0; index < names.GetSize(); ++index) {
            OString path = ORegistry::Escape(names[index]);
            path.Replace(L"\\", L"%5C");
            const StoredValue& value = tree.at(L"").at(names[index].wstring());
            EXPECT_EQ(registry.GetValueLength(L"From/" + path), static_cast<int>(value.bytes.size())) << round;
        }
        EXPECT_TRUE(registry.Delete("From/*")) << round;
        EXPECT_EQ(scratch.Tree(L"From"), (StoredTree{
                                             {L"", {}}
        }))
            << round;
    }
}

/// Any text at all, in the shape of registry lines.
TEST_F(ORegistryProperty, AnyLinesAreReadWithoutHarm)
{
    static constexpr const wchar_t* pieces[] = {L"[",    L"]",       L"-",   L"\"", L"=", L"\"=", L"\"=\"", L"dword:",
                                                L"hex:", L"hex(7):", L"00,", L"0",  L",", L"\\",  L" ",     L"(",
                                                L"x",    L"%",       L"/",   L":",  L"*", L"@",   L"\n"};
    const std::wstring key = L"[" + scratch.NativePath() + L"\\To]";
    for (int round = 20 * Rounds(); round > 0 && !HasFailure(); --round) {
        lines.RemoveAll();
        for (int count = dice.Upto(8); count > 0; --count) {
            std::wstring line;
            for (int length = dice.Upto(9); length > 0; --length) line += pieces[dice.Upto(std::size(pieces) - 1)];
            lines.Add(dice.Upto(3) == 0 ? key.c_str() : line.c_str());
        }
        registry.SetBasePath(scratch.Path(L"To"));
        EXPECT_TRUE(registry.ImportLines(lines, static_cast<DWORD>(dice.Upto(1))));
        EXPECT_EQ(scratch.Tree().count(L"From"), 0u);
    }
    StoredTree tree = scratch.Tree();
    std::erase_if(tree, [](const auto& entry) { return entry.first.empty() || entry.first.starts_with(L"To"); });
    EXPECT_TRUE(tree.empty()) << "keys beside the one that the lines name";
}

} // namespace
