// SPDX-License-Identifier: MIT
#include "recorder/BitWords.h"

#include "recorder/RecordingForms.h"

std::wstring WordsOf(DWORD bits, std::span<const BitWord> words)
{
    std::wstring text;
    const auto append = [&text](std::wstring_view word) { (text += text.empty() ? L"" : L", ") += word; };
    for (const BitWord& word : words) {
        if ((bits & word.bits) == 0) continue;
        append(word.word);
        bits &= ~word.bits;
    }
    if (bits) append(NumberText(bits));
    return text;
}
