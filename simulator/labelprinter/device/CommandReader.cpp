// SPDX-License-Identifier: MIT
#include "labelprinter/device/CommandReader.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <utility>

namespace {

constexpr std::string_view imagePrefix = "IMAGE ";
constexpr std::string_view echoPrefix = "?ECHO ";

constexpr char Upper(char character)
{
    return character >= 'a' && character <= 'z' ? static_cast<char>(character - 'a' + 'A') : character;
}

constexpr bool IsControl(char character)
{
    return static_cast<unsigned char>(character) < ' ';
}

bool StartsWithWord(std::string_view line, std::string_view word)
{
    return std::ranges::equal(line.substr(0, word.size()), word, {}, Upper);
}

std::string_view Trimmed(std::string_view text)
{
    const size_t first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

Command Parse(std::string_view line)
{
    const size_t blank = line.find(' ');
    Command command;
    std::ranges::transform(line.substr(0, blank), std::back_inserter(command.word), Upper);
    if (blank != std::string_view::npos) command.arguments = Trimmed(line.substr(blank));
    return command;
}

} // namespace

std::optional<Command> CommandReader::Take(char byte)
{
    if (_pictureLeft > 0) {
        --_pictureLeft;
        return std::nullopt;
    }
    if (IsEcho()) {
        _line += byte;
        return std::nullopt;
    }
    if (byte == '\n') return TakeLine();
    if (IsControl(byte)) return std::nullopt;
    _line += byte;
    if (PictureBegins()) _pictureLeft = pictureBytes;
    return _line.size() == longestLine ? TakeLine() : std::nullopt;
}

std::optional<Command> CommandReader::End()
{
    _pictureLeft = 0;
    return TakeLine();
}

bool CommandReader::IsEcho() const
{
    return StartsWithWord(_line, echoPrefix);
}

bool CommandReader::PictureBegins() const
{
    return _line.back() == ',' && StartsWithWord(_line, imagePrefix) && std::ranges::count(_line, ',') == 2;
}

std::optional<Command> CommandReader::TakeLine()
{
    const std::string line = std::exchange(_line, {});
    if (StartsWithWord(line, echoPrefix)) return Command{"?ECHO", line.substr(echoPrefix.size())};
    const std::string_view text = Trimmed(line);
    if (text.empty()) return std::nullopt;
    return Parse(text);
}

bool ParseCount(std::string_view text, unsigned long& count)
{
    const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), count);
    return failure == std::errc() && end == text.data() + text.size();
}

bool ParsePair(std::string_view text, char separator, unsigned long& first, unsigned long& second)
{
    const size_t position = text.find(separator);
    return position != std::string_view::npos && ParseCount(Trimmed(text.substr(0, position)), first) &&
           ParseCount(Trimmed(text.substr(position + 1)), second);
}
