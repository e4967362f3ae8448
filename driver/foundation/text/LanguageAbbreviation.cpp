// SPDX-License-Identifier: MIT
#include "foundation/text/LanguageAbbreviation.h"

#include <cstring>

namespace {

struct LanguageRow {
    const char* start;
    const char* abbreviation;
};

// The first row that fits counts: "ptg" stands before "pt".
constexpr LanguageRow languageRows[] = {
    {"chs", "chs"},
    {"cht", "cht"},
    {"cs",  "csy"},
    {"da",  "dan"},
    {"de",  "deu"},
    {"el",  "ell"},
    {"en",  "enu"},
    {"es",  "esp"},
    {"fi",  "fin"},
    {"fr",  "fra"},
    {"hu",  "hun"},
    {"it",  "ita"},
    {"jpn", "jpn"},
    {"ko",  "kor"},
    {"nl",  "nld"},
    {"no",  "nor"},
    {"pl",  "plk"},
    {"ptg", "ptg"},
    {"pt",  "ptb"},
    {"ru",  "rus"},
    {"sv",  "sve"},
    {"th",  "tha"},
    {"tr",  "trk"},
};

} // namespace

OString GetLanguageAbbreviation(const OString& locale)
{
    for (const LanguageRow& row : languageRows) {
        const OString start = locale.Left(static_cast<int>(std::strlen(row.start)));
        if (start.CompareNoCase(row.start) == 0) return OString(row.abbreviation);
    }
    return OString("enu");
}
