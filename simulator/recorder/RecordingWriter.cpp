// SPDX-License-Identifier: MIT
#include "recorder/RecordingWriter.h"

#include "recorder/BitWords.h"
#include "recorder/DevModeText.h"
#include "recorder/RecordingForms.h"
#include "recorder/RecordingWords.h"
#include "recorder/Utf8.h"

#include <algorithm>

namespace {

std::wstring Comment(const std::wstring& text)
{
    return text.empty() ? text : L" ; " + text;
}

std::wstring TypeText(WORD type)
{
    const auto found = std::ranges::find(typeWords, type, &TypeWord::type);
    return found == typeWords.end() ? NumberText(type) : std::wstring(found->word);
}

std::wstring FieldText(WORD type, WORD field)
{
    const KnownField* const known = FindKnownField(type, field);
    return known ? std::wstring(known->name) : NumberText(field);
}

std::wstring FieldsLine(WORD type, const std::vector<WORD>& fields)
{
    if (fields.empty()) return {};
    std::wstring line(fieldsWord);
    line += L" " + TypeText(type);
    for (const WORD field : fields) line += L" " + FieldText(type, field);
    return line + L"\n";
}

/// A field whose number is a set of bits.
struct BitField {
    WORD type;
    WORD field;
    std::span<const BitWord> words;
};

constexpr std::array bitFields{
    BitField{PRINTER_NOTIFY_TYPE, PRINTER_NOTIFY_FIELD_STATUS,     printerStatusWords},
    BitField{PRINTER_NOTIFY_TYPE, PRINTER_NOTIFY_FIELD_ATTRIBUTES, attributeWords    },
    BitField{JOB_NOTIFY_TYPE,     JOB_NOTIFY_FIELD_STATUS,         jobStatusWords    },
};

/// Null if the entry's number is a plain one.
const BitField* BitFieldOf(const RecordedEntry& entry) noexcept
{
    const auto found = std::ranges::find_if(
        bitFields, [&](const BitField& row) { return row.type == entry.type && row.field == entry.field; });
    return found == bitFields.end() ? nullptr : &*found;
}

std::wstring NumbersText(const RecordedEntry& entry, const NotifyNumbers& numbers)
{
    const auto [first, second] = numbers;
    return std::wstring(WordOf(NotifyData::Number)) + L" " +
           (BitFieldOf(entry) ? NumberText(first) : std::to_wstring(first)) +
           (second ? L" " + std::to_wstring(second) : L"");
}

/// The text of a block of characters with at most one terminator, at the end; nothing for another block.
std::optional<std::wstring> StringText(const std::vector<BYTE>& bytes)
{
    if (bytes.size() % sizeof(wchar_t) != 0) return std::nullopt;
    std::wstring text(bytes.size() / sizeof(wchar_t), L'\0');
    std::ranges::copy(bytes, reinterpret_cast<BYTE*>(text.data()));
    const bool terminated = text.ends_with(L'\0');
    if (terminated) text.pop_back();
    if (text.find(L'\0') != std::wstring::npos) return std::nullopt;
    return QuotedText(text) + (terminated ? L"" : L" " + std::wstring(unterminatedWord));
}

std::optional<std::wstring> SystemTimeText(const std::vector<BYTE>& bytes)
{
    SYSTEMTIME time = {};
    if (bytes.size() != sizeof time) return std::nullopt;
    std::ranges::copy(bytes, reinterpret_cast<BYTE*>(&time));
    return DateText(time);
}

/// The block in the form of its kind; as plain bytes if it doesn't fit the kind.
std::wstring BlockText(const std::vector<BYTE>& bytes, NotifyData kind)
{
    if (bytes.empty()) return std::wstring(emptyWord);
    std::optional<std::wstring> form;
    if (kind == NotifyData::String) form = StringText(bytes);
    if (kind == NotifyData::SystemTime) form = SystemTimeText(bytes);
    if (kind == NotifyData::DevMode || kind == NotifyData::SecurityDescriptor) form = HexText(bytes);
    if (!form) return std::wstring(bytesWord) + L" " + HexText(bytes);
    return std::wstring(WordOf(kind)) + L" " + *form;
}

std::wstring DataText(const RecordedEntry& entry)
{
    if (const auto* const numbers = std::get_if<NotifyNumbers>(&entry.data)) return NumbersText(entry, *numbers);
    const auto& block = std::get<NotifyBlock>(entry.data);
    return block ? BlockText(*block, KindOf(entry.type, entry.field, entry.reserved)) : std::wstring(nullWord);
}

/// What tells a reader of the file more than the entry's own line: in a line before it.
std::wstring CommentLine(const RecordedEntry& entry)
{
    const auto* const block = std::get_if<NotifyBlock>(&entry.data);
    if (!block || !*block || KindOf(entry.type, entry.field, entry.reserved) != NotifyData::DevMode) return {};
    return L"; " + DevModeText(**block) + L"\n";
}

/// The same, at the line's end.
std::wstring EndComment(const RecordedEntry& entry)
{
    const auto* const numbers = std::get_if<NotifyNumbers>(&entry.data);
    const BitField* const bits = BitFieldOf(entry);
    return numbers && bits ? Comment(WordsOf(numbers->front(), bits->words)) : std::wstring();
}

std::wstring EntryLines(const RecordedEntry& entry)
{
    std::wstring line = CommentLine(entry) + TypeText(entry.type) + L" " + std::to_wstring(entry.id) + L" " +
                        FieldText(entry.type, entry.field) + L" " + DataText(entry);
    if (entry.reserved != UsualReserved(entry.type, entry.field))
        line += L" " + std::wstring(reservedWord) + L" " + std::to_wstring(entry.reserved);
    return line + EndComment(entry) + L"\n";
}

} // namespace

std::string RecordingText(const RecordingHeader& header)
{
    std::wstring text = std::wstring(firstLine) + L"\n";
    const auto line = [&text](std::wstring_view word, const std::wstring& value) {
        if (!value.empty()) text += std::wstring(word) + L" " + value + L"\n";
    };
    const auto quoted = [](const std::wstring& value) { return value.empty() ? value : QuotedText(value); };
    line(printerWord, quoted(header.printer));
    line(driverWord, quoted(header.driver));
    line(systemWord, quoted(header.system));
    line(begunWord, DateText(header.begun).value_or(L""));
    line(filterWord, header.filter ? NumberText(header.filter) : L"");
    text += FieldsLine(PRINTER_NOTIFY_TYPE, header.printerFields);
    text += FieldsLine(JOB_NOTIFY_TYPE, header.jobFields);
    return ToUtf8(text);
}

std::string RecordingText(const RecordedBatch& batch)
{
    std::wstring text = L"\n" + std::wstring(batchWord) + L" " + SecondsText(batch.microseconds);
    if (batch.refresh) text += L" " + std::wstring(refreshWord);
    text += L"\n" + std::wstring(changeWord) + L" " + NumberText(batch.change) +
            Comment(WordsOf(batch.change, changeWords)) + L"\n";
    if (batch.info) {
        text += std::wstring(infoWord) + L" " + std::to_wstring(batch.info->version) + L" " +
                NumberText(batch.info->flags) +
                Comment(batch.info->flags & PRINTER_NOTIFY_INFO_DISCARDED ? L"discarded" : L"") + L"\n";
        for (const RecordedEntry& entry : batch.info->entries) text += EntryLines(entry);
    }
    return ToUtf8(text + std::wstring(endWord) + L"\n");
}
