// SPDX-License-Identifier: MIT
#include "spooler/config/RecordingFile.h"

#include "recorder/RecordingReader.h"
#include "spooler/config/InputFile.h"

std::shared_ptr<const PlayedRecording> ReadRecordingFile(const std::wstring& path, DWORD& error)
{
    const Bytes bytes = ReadWholeFile(path, error);
    if (error) return nullptr;
    try {
        const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
        return std::make_shared<const PlayedRecording>(PlayedRecording{path, ReadRecording(text)});
    } catch (const RecordingError& malformed) {
        throw ConfigError{malformed.line, malformed.message};
    }
}
