// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/text/OString.h"

/// The three letters of the language that a locale text starts with, such as "deu" for "de-CH"; "enu" for a language
/// that isn't known.
OString GetLanguageAbbreviation(const OString& locale);
