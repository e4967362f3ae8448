// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <string>
#include <string_view>

/// One command of the device's language.
struct Command {
    std::string word;      ///< in upper case
    std::string arguments; ///< what stands after the word, without the blanks around it
};

/// Cuts a stream of bytes into commands. Each is a line, but for two that carry bytes of any kind: IMAGE brings a
/// picture of `pictureBytes` after its second comma, and ?ECHO everything that is left of the stream.
class CommandReader {
public:
    /// 64 by 32 dots.
    static constexpr size_t pictureBytes = 256;
    /// A longer line is cut into pieces of that length.
    static constexpr size_t longestLine = 4096;

    /// Takes one byte and gives the command that it ends, if it ends one.
    std::optional<Command> Take(char byte);

    /// The stream is over: gives the command that it leaves without an end, and begins again.
    std::optional<Command> End();

private:
    bool IsEcho() const;
    bool PictureBegins() const;
    std::optional<Command> TakeLine();

    std::string _line;
    size_t _pictureLeft = 0;
};

/// Two whole numbers with `separator` between them; false for anything else.
bool ParsePair(std::string_view text, char separator, unsigned long& first, unsigned long& second);

/// A whole number and nothing else.
bool ParseCount(std::string_view text, unsigned long& count);
