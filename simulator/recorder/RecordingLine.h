// SPDX-License-Identifier: MIT
#pragma once

#include "recorder/RecordingReader.h"

#include <string_view>
#include <vector>

/// One line of a recording as its words, taken one by one from its beginning. A quoted text is one word. What follows a
/// word that begins with a semicolon is a comment. All operations throw RecordingError with the line's number.
class RecordingLine {
public:
    RecordingLine(size_t number, std::wstring_view text);

    /// Neither words nor more words.
    bool AtEnd() const noexcept { return _next == _words.size(); }
    bool IsNext(std::wstring_view word) const noexcept { return !AtEnd() && _words[_next] == word; }
    /// Takes the next word if it is this one.
    bool TakeIf(std::wstring_view word) noexcept;

    /// The next word; `what` names it in the error if there is none.
    std::wstring_view Take(std::wstring_view what);
    /// The next word by way of `read`, which gives nothing for a word of another form.
    template <typename Read>
    auto TakeAs(Read read, std::wstring_view what)
    {
        const auto value = read(Take(what));
        if (!value) Fail(L"not " + std::wstring(what) + L": " + std::wstring(_words[_next - 1]));
        return *value;
    }

    /// Gives up if words are left.
    void End() const;

    [[noreturn]] void Fail(const std::wstring& message) const;

private:
    size_t _number;
    std::vector<std::wstring_view> _words;
    size_t _next = 0;
};
