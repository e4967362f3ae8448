// SPDX-License-Identifier: MIT
#include "foundation/text/Charsets.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr const char* asciiNames[] = {"us-ascii", "ascii", "cp367", "IBM367", "ISO646-US"};

struct NamedCodePage {
    const char* name;
    const char* codePage;
};

constexpr NamedCodePage namedCodePages[] = {
    {"utf-8",          "UTF-8" },
    {"UTF-16LE",       "UTF-16"},
    {"windows-1250",   "1250"  },
    {"windows-1251",   "1251"  },
    {"windows-1252",   "1252"  },
    {"windows-1253",   "1253"  },
    {"windows-1254",   "1254"  },
    {"windows-1255",   "1255"  },
    {"windows-1256",   "1256"  },
    {"windows-1257",   "1257"  },
    {"windows-1258",   "1258"  },
    {"ibm850",         "850"   },
    {"ascii",          "1252"  },
    {"us-ascii",       "1252"  },
    {"cp367",          "1252"  },
    {"IBM367",         "1252"  },
    {"ISO646-US",      "1252"  },
    {"windows-874",    "874"   },
    {"DOS-874",        "874"   },
    {"iso-8859-11",    "874"   },
    {"TIS-620",        "874"   },
    {"shift-jis",      "932"   },
    {"shift_jis",      "932"   },
    {"csShiftJIS",     "932"   },
    {"ms_Kanji",       "932"   },
    {"x-sjis",         "932"   },
    {"gb2312",         "936"   },
    {"chinese",        "936"   },
    {"GBK",            "936"   },
    {"iso-ir-58",      "936"   },
    {"big5",           "950"   },
    {"cn-big5",        "950"   },
    {"csbig5",         "950"   },
    {"x-x-big5",       "950"   },
    {"korean",         "949"   },
    {"ks_c_5601-1987", "949"   },
    {"csKSC56011987",  "949"   },
    {"euc-kr",         "949"   },
    {"iso-ir-149",     "949"   },
    {"johab",          "1361"  },
};

struct CodePageCharset {
    int codePage;
    int charset;
};

constexpr CodePageCharset codePageCharsets[] = {
    {874,  222},
    {932,  128},
    {936,  134},
    {949,  129},
    {950,  136},
    {1250, 238},
    {1251, 204},
    {1252, 0  },
    {1253, 161},
    {1254, 162},
    {1255, 177},
    {1256, 178},
    {1257, 186},
    {1258, 163},
    {1361, 130},
    {2,    2  },
};

/// Only read from code page to charset: the way back leads to the table above.
constexpr CodePageCharset oemCodePageCharsets[] = {
    {437, 0  },
    {850, 0  },
    {858, 0  },
    {860, 0  },
    {861, 0  },
    {863, 0  },
    {865, 0  },
    {737, 161},
    {869, 161},
    {775, 186},
    {852, 238},
    {855, 204},
    {866, 204},
    {857, 162},
    {862, 177},
    {864, 178},
};

struct NamedCharset {
    const char* name;
    int charset;
};

constexpr NamedCharset namedCharsets[] = {
    {"JIS",         128},
    {"Mac-Western", 0  },
};

constexpr int doubleByteCharsets[] = {128, 129, 130, 134, 136};

/// One field of the first row whose `key` is `sought`, or `otherwise`.
template <typename Row, size_t size, typename T>
T FindRow(const Row (&rows)[size], int Row::*key, int sought, T Row::*field, T otherwise) noexcept
{
    const Row* row = std::ranges::find(rows, sought, key);
    return row == std::end(rows) ? otherwise : row->*field;
}

template <typename Row, size_t size, typename T>
T FindName(const Row (&rows)[size], const OString& name, T Row::*field, T otherwise)
{
    const auto isName = [&](const Row& row) { return name.CompareNoCase(row.name) == 0; };
    const Row* row = std::ranges::find_if(rows, isName);
    return row == std::end(rows) ? otherwise : row->*field;
}

} // namespace

bool IsASCIIName(const OString& name)
{
    return std::ranges::any_of(asciiNames, [&](const char* row) { return name.CompareNoCase(row) == 0; });
}

OString CharsetToCodePage(const OString& name)
{
    return OString(FindName(namedCodePages, name, &NamedCodePage::codePage, static_cast<const char*>("")));
}

int CharsetToCodePage(int charset) noexcept
{
    return FindRow(codePageCharsets, &CodePageCharset::charset, charset, &CodePageCharset::codePage, 0);
}

int CodePageToCharset(int codePage) noexcept
{
    const int oemCharset =
        FindRow(oemCodePageCharsets, &CodePageCharset::codePage, codePage, &CodePageCharset::charset, -1);
    return FindRow(codePageCharsets, &CodePageCharset::codePage, codePage, &CodePageCharset::charset, oemCharset);
}

int CodePageToCharset(const OString& codePageName)
{
    return FindName(namedCharsets, codePageName, &NamedCharset::charset, -1);
}

bool IsDoubleByteCharset(int charset) noexcept
{
    return std::ranges::find(doubleByteCharsets, charset) != std::end(doubleByteCharsets);
}
