// SPDX-License-Identifier: MIT
#include "vrl/server/RegistrationScript.h"

#include <algorithm>
#include <cwctype>

namespace {

bool EqualsIgnoringCase(std::wstring_view left, std::wstring_view right)
{
    return ::CompareStringOrdinal(left.data(), static_cast<int>(left.size()), right.data(),
                                  static_cast<int>(right.size()), TRUE) == CSTR_EQUAL;
}

std::optional<HKEY> RootByName(std::wstring_view name)
{
    static const struct {
        std::wstring_view name;
        HKEY handle;
    } roots[] = {
        {L"HKCR",               HKEY_CLASSES_ROOT },
        {L"HKEY_CLASSES_ROOT",  HKEY_CLASSES_ROOT },
        {L"HKCU",               HKEY_CURRENT_USER },
        {L"HKEY_CURRENT_USER",  HKEY_CURRENT_USER },
        {L"HKLM",               HKEY_LOCAL_MACHINE},
        {L"HKEY_LOCAL_MACHINE", HKEY_LOCAL_MACHINE},
        {L"HKU",                HKEY_USERS        },
        {L"HKEY_USERS",         HKEY_USERS        },
    };
    const auto root = std::ranges::find_if(roots, [&](const auto& row) { return EqualsIgnoringCase(row.name, name); });
    return root == std::end(roots) ? std::nullopt : std::optional(root->handle);
}

RegistrationScript::Removal RemovalByWord(std::wstring_view word)
{
    using enum RegistrationScript::Removal;
    static constexpr struct {
        std::wstring_view word;
        RegistrationScript::Removal removal;
    } words[] = {
        {L"NoRemove",    Never },
        {L"ForceRemove", Whole },
        {L"Delete",      AtOnce},
    };
    const auto row =
        std::ranges::find_if(words, [&](const auto& known) { return EqualsIgnoringCase(known.word, word); });
    return row == std::end(words) ? WhenEmpty : row->removal;
}

/// One piece of the script. A quoted token is never a keyword and never a brace.
struct Token {
    std::wstring_view text;
    bool quoted = false;

    bool Is(std::wstring_view word) const { return !quoted && EqualsIgnoringCase(text, word); }
};

/// Cuts the script into tokens; false for a quotation without end.
class Tokenizer {
public:
    explicit Tokenizer(std::wstring_view text) : _rest(text) {}

    bool ReadAll(std::vector<Token>& tokens)
    {
        for (SkipBlanks(); !_rest.empty(); SkipBlanks()) {
            if (_rest.starts_with(L"//")) {
                Take(_rest.find(L'\n'));
            } else if (_rest.front() == L'\'') {
                const size_t end = EndOfQuotation();
                if (end == std::wstring_view::npos) return false;
                tokens.push_back({Take(end + 1).substr(1, end - 1), true});
            } else {
                const auto end = std::ranges::find_if(_rest, IsBlank);
                tokens.push_back({Take(static_cast<size_t>(end - _rest.begin())), false});
            }
        }
        return true;
    }

private:
    static bool IsBlank(wchar_t character) { return std::iswspace(character) != 0; }

    void SkipBlanks() { Take(static_cast<size_t>(std::ranges::find_if_not(_rest, IsBlank) - _rest.begin())); }

    size_t EndOfQuotation() const
    {
        size_t end = _rest.find(L'\'', 1);
        while (end != std::wstring_view::npos && _rest.substr(end).starts_with(L"''")) end = _rest.find(L'\'', end + 2);
        return end;
    }

    std::wstring_view Take(size_t length)
    {
        const std::wstring_view taken = _rest.substr(0, length);
        _rest.remove_prefix(taken.size());
        return taken;
    }

    std::wstring_view _rest;
};

/// Reads the tokens into the tree. Every step answers false for a malformed script.
class Parser {
public:
    Parser(std::vector<Token> tokens, const RegistrationScript::Replacements& replacements)
        : _tokens(std::move(tokens)), _replacements(replacements)
    {
    }

    bool ReadRoots(std::vector<RegistrationScript::Root>& roots)
    {
        while (!AtEnd()) {
            const auto handle = RootByName(Take().text);
            if (!handle || !TakeIf(L"{")) return false;
            RegistrationScript::Key block;
            if (!ReadBlock(block) || !block.values.empty()) return false;
            roots.push_back({*handle, std::move(block.keys)});
        }
        return true;
    }

private:
    bool ReadBlock(RegistrationScript::Key& parent)
    {
        while (!TakeIf(L"}")) {
            if (AtEnd()) return false;
            const bool read = TakeIf(L"val") ? ReadNamedValue(parent) : ReadKey(parent);
            if (!read) return false;
        }
        return true;
    }

    bool ReadNamedValue(RegistrationScript::Key& parent)
    {
        RegistrationScript::Value value;
        if (!ReadName(value.name) || !TakeIf(L"=") || !ReadData(value.data)) return false;
        parent.values.push_back(std::move(value));
        return true;
    }

    bool ReadKey(RegistrationScript::Key& parent)
    {
        RegistrationScript::Key key;
        key.removal = Peek().quoted ? RegistrationScript::Removal::WhenEmpty : RemovalByWord(Peek().text);
        if (key.removal != RegistrationScript::Removal::WhenEmpty) Take();
        // A backslash would reach below the key without the steps between being undone.
        if (!ReadName(key.name) || key.name.find(L'\\') != std::wstring::npos) return false;
        if (key.removal != RegistrationScript::Removal::AtOnce && !ReadKeyContent(key)) return false;
        parent.keys.push_back(std::move(key));
        return true;
    }

    bool ReadKeyContent(RegistrationScript::Key& key)
    {
        if (TakeIf(L"=")) {
            RegistrationScript::Value value;
            if (!ReadData(value.data)) return false;
            key.values.push_back(std::move(value));
        }
        return !TakeIf(L"{") || ReadBlock(key);
    }

    bool ReadName(std::wstring& name)
    {
        const Token token = Peek();
        if (AtEnd() || token.Is(L"{") || token.Is(L"}") || token.Is(L"=")) return false;
        return Expand(Take(), name) && !name.empty();
    }

    bool ReadData(RegistrationScript::Data& data)
    {
        if (TakeIf(L"s")) return ReadText(data.emplace<std::wstring>());
        if (TakeIf(L"d")) return ReadNumber(data.emplace<DWORD>());
        return false;
    }

    bool ReadText(std::wstring& text) { return !AtEnd() && Expand(Take(), text); }

    bool ReadNumber(DWORD& number)
    {
        std::wstring digits;
        if (!ReadText(digits) || digits.empty() || !std::iswdigit(digits.front())) return false;
        wchar_t* end = nullptr;
        const unsigned long long value = std::wcstoull(digits.c_str(), &end, 0);
        number = static_cast<DWORD>(value);
        return *end == L'\0' && value <= MAXDWORD;
    }

    /// Undoes doubled quotes and puts the replacements in.
    bool Expand(const Token& token, std::wstring& result) const
    {
        for (std::wstring_view rest = token.text; !rest.empty();) {
            const wchar_t first = rest.front();
            rest.remove_prefix(1);
            if (first != L'%') {
                result += first;
                if (first == L'\'' && token.quoted) rest.remove_prefix(1);
                continue;
            }
            const size_t end = rest.find(L'%');
            if (end == std::wstring_view::npos || !AppendReplacement(rest.substr(0, end), result)) return false;
            rest.remove_prefix(end + 1);
        }
        return true;
    }

    bool AppendReplacement(std::wstring_view name, std::wstring& result) const
    {
        if (name.empty()) {
            result += L'%';
            return true;
        }
        const auto replacement = _replacements.find(name);
        if (replacement == _replacements.end()) return false;
        result += replacement->second;
        return true;
    }

    bool AtEnd() const { return _next == _tokens.size(); }

    Token Peek() const { return AtEnd() ? Token{} : _tokens[_next]; }

    Token Take()
    {
        const Token token = Peek();
        if (!AtEnd()) ++_next;
        return token;
    }

    bool TakeIf(std::wstring_view word)
    {
        const bool matches = Peek().Is(word);
        if (matches) ++_next;
        return matches;
    }

    const std::vector<Token> _tokens;
    const RegistrationScript::Replacements& _replacements;
    size_t _next = 0;
};

} // namespace

std::optional<RegistrationScript> RegistrationScript::Parse(std::wstring_view text, const Replacements& replacements)
{
    std::vector<Token> tokens;
    if (!Tokenizer(text).ReadAll(tokens)) return std::nullopt;

    RegistrationScript script;
    if (!Parser(std::move(tokens), replacements).ReadRoots(script._roots)) return std::nullopt;
    return script;
}
