// SPDX-License-Identifier: MIT
#pragma once

#include "recorder/Recording.h"

#include <string>
#include <string_view>

/// What is wrong with a recording, and in which line, counted from 1.
struct RecordingError {
    size_t line = 0;
    std::wstring message;
};

/// Reads a whole recording in UTF-8, with or without a byte order mark, with either kind of line end.
/// docs/recording.md tells the format. Throws RecordingError.
Recording ReadRecording(std::string_view bytes);
