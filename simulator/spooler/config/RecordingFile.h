// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/config/ConfigFile.h"
#include "spooler/records/PrinterRecord.h"

/// Reads a file that the recorder wrote; docs/recording.md tells its format. Null, with the error, if it can't be read.
/// Throws ConfigError with the line in that file if it is malformed.
std::shared_ptr<const PlayedRecording> ReadRecordingFile(const std::wstring& path, DWORD& error);
