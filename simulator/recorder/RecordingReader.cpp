// SPDX-License-Identifier: MIT
#include "recorder/RecordingReader.h"

#include "recorder/RecordingForms.h"
#include "recorder/RecordingLine.h"
#include "recorder/RecordingWords.h"
#include "recorder/Utf8.h"

#include <algorithm>

namespace {

std::optional<WORD> ReadWordNumber(std::wstring_view text)
{
    const std::optional<DWORD> number = ReadNumber(text);
    return number && *number <= 0xFFFF ? std::optional(static_cast<WORD>(*number)) : std::nullopt;
}

WORD TakeType(RecordingLine& line)
{
    const auto read = [](std::wstring_view text) {
        const auto found = std::ranges::find(typeWords, text, &TypeWord::word);
        return found == typeWords.end() ? ReadWordNumber(text) : std::optional(found->type);
    };
    return line.TakeAs(read, L"\"printer\", \"job\" or a type's number");
}

WORD TakeField(RecordingLine& line, WORD type)
{
    const auto read = [type](std::wstring_view text) {
        const KnownField* const known = FindKnownField(type, text);
        return known ? std::optional(known->field) : ReadWordNumber(text);
    };
    return line.TakeAs(read, L"a field's name or number");
}

std::vector<BYTE> BytesOf(const void* data, size_t size)
{
    const auto* const first = static_cast<const BYTE*>(data);
    return std::vector<BYTE>(first, first + size);
}

// What follows the word of an entry's data.

using EntryData = decltype(RecordedEntry::data);

EntryData TakeNumbers(RecordingLine& line)
{
    NotifyNumbers numbers = {line.TakeAs(ReadNumber, L"a number"), 0};
    if (!line.AtEnd() && !line.IsNext(reservedWord)) numbers[1] = line.TakeAs(ReadNumber, L"a number");
    return numbers;
}

EntryData TakeString(RecordingLine& line)
{
    const std::wstring text = line.TakeAs(ReadQuoted, L"a text in quotes");
    const size_t terminator = line.TakeIf(unterminatedWord) ? 0 : 1;
    return NotifyBlock(BytesOf(text.c_str(), (text.size() + terminator) * sizeof(wchar_t)));
}

EntryData TakeSystemTime(RecordingLine& line)
{
    const std::wstring date(line.Take(L"a date"));
    const auto read = [&date](std::wstring_view time) { return ReadDate(date + L" " + std::wstring(time)); };
    const SYSTEMTIME value = line.TakeAs(read, L"a time of day after a date");
    return NotifyBlock(BytesOf(&value, sizeof value));
}

EntryData TakeBytes(RecordingLine& line)
{
    return NotifyBlock(line.TakeAs(ReadHex, L"hexadecimal bytes"));
}

EntryData TakeNull(RecordingLine&)
{
    return NotifyBlock();
}

EntryData TakeEmpty(RecordingLine&)
{
    return NotifyBlock(std::in_place);
}

struct DataForm {
    std::wstring_view word;
    EntryData (*take)(RecordingLine& line);
};

constexpr std::array dataForms{
    DataForm{WordOf(NotifyData::Number),             TakeNumbers   },
    DataForm{WordOf(NotifyData::String),             TakeString    },
    DataForm{WordOf(NotifyData::DevMode),            TakeBytes     },
    DataForm{WordOf(NotifyData::SystemTime),         TakeSystemTime},
    DataForm{WordOf(NotifyData::SecurityDescriptor), TakeBytes     },
    DataForm{bytesWord,                              TakeBytes     },
    DataForm{nullWord,                               TakeNull      },
    DataForm{emptyWord,                              TakeEmpty     },
};

EntryData TakeData(RecordingLine& line)
{
    const std::wstring_view word = line.Take(L"the kind of data");
    const auto form = std::ranges::find(dataForms, word, &DataForm::word);
    if (form == dataForms.end()) line.Fail(L"unknown kind of data: " + std::wstring(word));
    return form->take(line);
}

RecordedEntry TakeEntry(RecordingLine& line)
{
    RecordedEntry entry;
    entry.type = TakeType(line);
    entry.id = line.TakeAs(ReadNumber, L"a number");
    entry.field = TakeField(line, entry.type);
    entry.data = TakeData(line);
    entry.reserved = UsualReserved(entry.type, entry.field);
    if (line.TakeIf(reservedWord)) entry.reserved = line.TakeAs(ReadNumber, L"a number");
    return entry;
}

// The lines of the header.

template <std::wstring RecordingHeader::*field>
void TakeText(RecordingLine& line, RecordingHeader& header)
{
    header.*field = line.TakeAs(ReadQuoted, L"a text in quotes");
}

void TakeBegun(RecordingLine& line, RecordingHeader& header)
{
    const EntryData time = TakeSystemTime(line);
    std::ranges::copy(*std::get<NotifyBlock>(time), reinterpret_cast<BYTE*>(&header.begun));
}

void TakeFilter(RecordingLine& line, RecordingHeader& header)
{
    header.filter = line.TakeAs(ReadNumber, L"a number");
}

void TakeFields(RecordingLine& line, RecordingHeader& header)
{
    const WORD type = TakeType(line);
    std::vector<WORD>& fields = type == PRINTER_NOTIFY_TYPE ? header.printerFields : header.jobFields;
    while (!line.AtEnd()) fields.push_back(TakeField(line, type));
}

struct HeaderLine {
    std::wstring_view word;
    void (*take)(RecordingLine& line, RecordingHeader& header);
};

constexpr std::array headerLines{
    HeaderLine{printerWord, TakeText<&RecordingHeader::printer>},
    HeaderLine{driverWord,  TakeText<&RecordingHeader::driver> },
    HeaderLine{systemWord,  TakeText<&RecordingHeader::system> },
    HeaderLine{begunWord,   TakeBegun                          },
    HeaderLine{filterWord,  TakeFilter                         },
    HeaderLine{fieldsWord,  TakeFields                         },
};

/// The recording as far as it was read.
class Reader {
public:
    void Read(RecordingLine& line)
    {
        if (!_begun)
            ReadFirst(line);
        else if (_open)
            ReadInBatch(line);
        else
            ReadOutside(line);
        line.End();
    }

    bool Begun() const noexcept { return _begun; }
    bool InBatch() const noexcept { return _open; }
    Recording Take() noexcept { return std::move(_recording); }

private:
    void ReadFirst(RecordingLine& line)
    {
        RecordingLine expected(0, firstLine);
        while (!expected.AtEnd())
            if (!line.TakeIf(expected.Take({}))) line.Fail(L"a recording begins with: " + std::wstring(firstLine));
        _begun = true;
    }

    void ReadOutside(RecordingLine& line)
    {
        if (line.TakeIf(batchWord)) return BeginBatch(line);
        const std::wstring_view word = line.Take({});
        const auto row = std::ranges::find(headerLines, word, &HeaderLine::word);
        if (row == headerLines.end()) line.Fail(L"neither a batch nor a line of the header: " + std::wstring(word));
        if (!_recording.batches.empty()) line.Fail(L"the header ends with the first batch");
        row->take(line, _recording.header);
    }

    void BeginBatch(RecordingLine& line)
    {
        RecordedBatch batch;
        batch.microseconds = line.TakeAs(ReadSeconds, L"a time in seconds");
        batch.refresh = line.TakeIf(refreshWord);
        if (!_recording.batches.empty() && batch.microseconds < _recording.batches.back().microseconds)
            line.Fail(L"earlier than the batch before");
        _recording.batches.push_back(std::move(batch));
        _open = true;
        _hasChange = false;
    }

    void ReadInBatch(RecordingLine& line)
    {
        RecordedBatch& batch = _recording.batches.back();
        if (!_hasChange) {
            if (!line.TakeIf(changeWord)) line.Fail(L"a batch begins with its change");
            batch.change = line.TakeAs(ReadNumber, L"a number");
            _hasChange = true;
        } else if (line.TakeIf(endWord)) {
            _open = false;
        } else if (line.TakeIf(infoWord)) {
            if (batch.info) line.Fail(L"a second info");
            batch.info.emplace();
            batch.info->version = line.TakeAs(ReadNumber, L"a version");
            batch.info->flags = line.TakeAs(ReadNumber, L"flags");
        } else {
            if (!batch.info) line.Fail(L"an entry before info");
            batch.info->entries.push_back(TakeEntry(line));
        }
    }

    Recording _recording;
    bool _begun = false;
    bool _open = false;      // the last batch has not ended
    bool _hasChange = false; // the last batch
};

} // namespace

Recording ReadRecording(std::string_view bytes)
{
    if (bytes.starts_with("\xEF\xBB\xBF")) bytes.remove_prefix(3);
    Reader reader;
    size_t number = 0;
    while (!bytes.empty()) {
        const size_t end = std::min(bytes.find('\n'), bytes.size());
        const std::optional<std::wstring> text = FromUtf8(bytes.substr(0, end));
        bytes.remove_prefix(std::min(end + 1, bytes.size()));
        ++number;

        if (!text) throw RecordingError{number, L"not a text in UTF-8"};
        RecordingLine line(number, *text);
        if (!line.AtEnd()) reader.Read(line);
    }
    if (!reader.Begun()) throw RecordingError{number + 1, L"a recording begins with: " + std::wstring(firstLine)};
    if (reader.InBatch()) throw RecordingError{number + 1, L"the last batch has no end"};
    return reader.Take();
}
