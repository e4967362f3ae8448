// SPDX-License-Identifier: MIT
#include "recorder/RecordingLine.h"

#include "recorder/RecordingForms.h"

#include <algorithm>

namespace {

constexpr std::wstring_view blanks = L" \t\r";

} // namespace

RecordingLine::RecordingLine(size_t number, std::wstring_view text) : _number(number)
{
    while (true) {
        text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
        if (text.empty() || text.front() == L';') return;
        const bool quoted = text.front() == L'"';
        const size_t length = quoted ? QuotedLength(text) : std::min(text.find_first_of(blanks), text.size());
        if (length == 0) Fail(L"the closing quote is missing");
        _words.push_back(text.substr(0, length));
        text.remove_prefix(length);
    }
}

bool RecordingLine::TakeIf(std::wstring_view word) noexcept
{
    if (!IsNext(word)) return false;
    ++_next;
    return true;
}

std::wstring_view RecordingLine::Take(std::wstring_view what)
{
    if (AtEnd()) Fail(L"missing: " + std::wstring(what));
    return _words[_next++];
}

void RecordingLine::End() const
{
    if (!AtEnd()) Fail(L"more than expected: " + std::wstring(_words[_next]));
}

void RecordingLine::Fail(const std::wstring& message) const
{
    throw RecordingError{_number, message};
}
