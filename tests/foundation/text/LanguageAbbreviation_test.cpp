// SPDX-License-Identifier: MIT
#include "foundation/text/LanguageAbbreviation.h"

#include <gtest/gtest.h>

namespace {

struct Row {
    const char* locale;
    const char* abbreviation;
};

TEST(GetLanguageAbbreviation, KnowsTheseStarts)
{
    static constexpr Row rows[] = {
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
    for (const Row& row : rows) EXPECT_EQ(GetLanguageAbbreviation(row.locale), row.abbreviation) << row.locale;
}

TEST(GetLanguageAbbreviation, LooksAtTheStartOnlyAndInAnyCase)
{
    static constexpr Row rows[] = {
        {"de-CH",   "deu"},
        {"DE_at",   "deu"},
        {"KOR",     "kor"},
        {"Ptg",     "ptg"},
        {"chs2",    "chs"},
        {"nothing", "nor"}
    };
    for (const Row& row : rows) EXPECT_EQ(GetLanguageAbbreviation(row.locale), row.abbreviation) << row.locale;
}

TEST(GetLanguageAbbreviation, TakesEuropeanPortugueseBeforeTheOtherOne)
{
    EXPECT_EQ(GetLanguageAbbreviation("ptg"), "ptg");
    EXPECT_EQ(GetLanguageAbbreviation("ptb"), "ptb");
    EXPECT_EQ(GetLanguageAbbreviation("pt"), "ptb");
}

TEST(GetLanguageAbbreviation, IsEnglishForAnythingElse)
{
    for (const char* locale : {"", "d", "ch", "jp", "xde", " de", "zh"}) {
        EXPECT_EQ(GetLanguageAbbreviation(locale), "enu") << locale;
    }
}

TEST(GetLanguageAbbreviation, TakesWideText)
{
    EXPECT_EQ(GetLanguageAbbreviation(L"FR-fr"), "fra");
}

} // namespace
