// SPDX-License-Identifier: MIT
#pragma once

#include "recorder/Recording.h"

#include <string>

/// A recording as text in UTF-8: its header once, then each batch as it comes. docs/recording.md tells the format.
std::string RecordingText(const RecordingHeader& header);
std::string RecordingText(const RecordedBatch& batch);
