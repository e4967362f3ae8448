// SPDX-License-Identifier: MIT
#include "LabelPrinterTest.h"

namespace {

class PropertiesTest : public LabelPrinterTest {};

/// A property, a value as it is written, and as it is read back.
struct ValueRow {
    const wchar_t* property;
    const wchar_t* written;
    const wchar_t* read;
};

TEST_F(PropertiesTest, FreshPrinterIsReadyAndWellStocked)
{
    static constexpr struct {
        const wchar_t* property;
        const wchar_t* value;
    } rows[] = {
        {L"media",         L"endless"  },
        {L"jam",           L"no"       },
        {L"ribbon",        L"endless"  },
        {L"ribbon fault",  L"no"       },
        {L"head",          L"closed"   },
        {L"cutter",        L"ok"       },
        {L"door",          L"closed"   },
        {L"pause",         L"no"       },
        {L"peeler",        L"no"       },
        {L"label",         L"taken"    },
        {L"battery",       L"mains"    },
        {L"label length",  L"50"       },
        {L"speed",         L"100"      },
        {L"verifier",      L"no"       },
        {L"on error",      L"wait"     },
        {L"pages",         L"0"        },
        {L"distance",      L"0"        },
        {L"connection",    L"connected"},
        {L"bidirectional", L"yes"      },
        {L"monitored",     L"yes"      },
        {L"monitor",       L"works"    },
        {L"queries",       L"answered" },
        {L"panel",         L""         },
    };
    for (const auto& row : rows) EXPECT_EQ(Get(row.property), row.value) << row.property;
    EXPECT_EQ(StatusText(), "Ready");
}

TEST_F(PropertiesTest, ValuesAreReadBack)
{
    static constexpr ValueRow rows[] = {
        {L"media",         L"12 labels",     L"12 labels"    },
        {L"media",         L"12",            L"12 labels"    },
        {L"media",         L"out",           L"out"          },
        {L"media",         L"0 labels",      L"out"          },
        {L"media",         L"endless",       L"endless"      },
        {L"ribbon",        L"3labels",       L"3 labels"     },
        {L"jam",           L"yes",           L"yes"          },
        {L"ribbon fault",  L"yes",           L"yes"          },
        {L"head",          L"open",          L"open"         },
        {L"head",          L"error",         L"error"        },
        {L"cutter",        L"error",         L"error"        },
        {L"door",          L"open",          L"open"         },
        {L"pause",         L"yes",           L"yes"          },
        {L"peeler",        L"yes",           L"yes"          },
        {L"label",         L"waiting",       L"waiting"      },
        {L"battery",       L"20",            L"20"           },
        {L"battery",       L"100 charging",  L"100 charging" },
        {L"battery",       L"mains",         L"mains"        },
        {L"label length",  L"150",           L"150"          },
        {L"speed",         L"999999999",     L"999999999"    },
        {L"verifier",      L"YES",           L"yes"          },
        {L"on error",      L"cancel",        L"cancel"       },
        {L"pages",         L"4711",          L"4711"         },
        {L"distance",      L"123456",        L"123456"       },
        {L"connection",    L"disconnected",  L"disconnected" },
        {L"bidirectional", L"no",            L"no"           },
        {L"monitored",     L"no",            L"no"           },
        {L"monitor",       L"slow 20",       L"slow 20"      },
        {L"monitor",       L"slow",          L"slow 0"       },
        {L"monitor",       L"fails",         L"fails"        },
        {L"queries",       L"slow 200",      L"slow 200"     },
        {L"queries",       L"pending",       L"pending"      },
        {L"queries",       L"failed",        L"failed"       },
        {L"queries",       L"lost",          L"lost"         },
        {L"panel",         L"C:\\no\\p.txt", L"C:\\no\\p.txt"},
        {L"Ribbon FAULT",  L"  no  ",        L"no"           },
    };
    for (const ValueRow& row : rows) {
        EXPECT_EQ(::LabelPrinterSet(printerName, row.property, row.written), 0u) << row.property << row.written;
        EXPECT_EQ(Get(row.property), row.read) << row.property;
    }
}

TEST_F(PropertiesTest, ValueThatCannotBeChangesNothing)
{
    static constexpr struct {
        const wchar_t* property;
        const wchar_t* value;
    } rows[] = {
        {L"media",        L""          },
        {L"media",        L"-1"        },
        {L"media",        L"many"      },
        {L"media",        L"1234567890"},
        {L"media",        L"4 5"       },
        {L"ribbon",       L"labels"    },
        {L"jam",          L"maybe"     },
        {L"head",         L"shut"      },
        {L"battery",      L"101"       },
        {L"battery",      L"charging"  },
        {L"label length", L"0"         },
        {L"label length", L"x"         },
        {L"speed",        L"0"         },
        {L"on error",     L""          },
        {L"monitor",      L"slow x"    },
        {L"monitor",      L"slowly"    },
        {L"queries",      L"works"     },
        {L"connection",   L"yes"       },
    };
    for (const auto& row : rows) {
        const std::wstring before = Get(row.property);
        EXPECT_EQ(::LabelPrinterSet(printerName, row.property, row.value), DWORD{ERROR_INVALID_PARAMETER})
            << row.property << row.value;
        EXPECT_EQ(Get(row.property), before) << row.property << row.value;
    }
}

TEST_F(PropertiesTest, UnknownPropertyIsAnError)
{
    wchar_t value[10] = L"as it was";
    for (const wchar_t* const property : {L"colour", L"", L"medi", L"medias"}) {
        EXPECT_EQ(::LabelPrinterSet(printerName, property, L"1"), DWORD{ERROR_INVALID_PARAMETER});
        EXPECT_EQ(::LabelPrinterGet(printerName, property, value, 10), DWORD{ERROR_INVALID_PARAMETER});
    }
    EXPECT_EQ(::LabelPrinterSet(printerName, nullptr, L"1"), DWORD{ERROR_INVALID_PARAMETER});
    EXPECT_EQ(::LabelPrinterSet(printerName, L"media", nullptr), DWORD{ERROR_INVALID_PARAMETER});
    EXPECT_STREQ(value, L"as it was");
}

TEST_F(PropertiesTest, ValueIsCutToItsPlace)
{
    Set(L"media", L"123 labels");
    wchar_t value[5] = L"....";
    EXPECT_EQ(::LabelPrinterGet(printerName, L"media", value, 4), 0u);
    EXPECT_EQ(std::wstring(value, 5), std::wstring(L"123\0\0", 5));
    EXPECT_EQ(::LabelPrinterGet(printerName, L"media", value, 0), 0u);
    EXPECT_EQ(::LabelPrinterGet(printerName, L"media", nullptr, 10), 0u);
}

TEST_F(PropertiesTest, PrintersAreKnownByNameInAnyCase)
{
    ASSERT_EQ(::LabelPrinterAdd(L"Other"), 0u);
    EXPECT_EQ(::LabelPrinterSet(L"LABEL", L"media", L"3"), 0u);
    EXPECT_EQ(Get(L"media"), L"3 labels");
    EXPECT_EQ(::LabelPrinterGet(L"Other", L"media"), L"endless");
}

TEST_F(PropertiesTest, AddingAPrinterAgainLeavesItAsItIs)
{
    Set(L"media", L"3");
    EXPECT_EQ(::LabelPrinterAdd(L"label"), 0u);
    EXPECT_EQ(Get(L"media"), L"3 labels");
}

TEST_F(PropertiesTest, RemovedPrinterIsUnknown)
{
    EXPECT_EQ(::LabelPrinterRemove(L"label"), 0u);
    EXPECT_EQ(::LabelPrinterRemove(L"label"), DWORD{ERROR_INVALID_PRINTER_NAME});
    EXPECT_EQ(::LabelPrinterSet(printerName, L"media", L"3"), DWORD{ERROR_INVALID_PRINTER_NAME});
}

TEST_F(PropertiesTest, EveryCallNeedsAKnownPrinter)
{
    constexpr DWORD unknown = ERROR_INVALID_PRINTER_NAME;
    LabelPrinterJobRecord job{};
    LONG status = 0;
    for (const wchar_t* const name : {L"Nobody", L"", static_cast<const wchar_t*>(nullptr)}) {
        EXPECT_EQ(::LabelPrinterRemove(name), unknown);
        EXPECT_EQ(::LabelPrinterSet(name, L"media", L"3"), unknown);
        EXPECT_EQ(::LabelPrinterGet(name, L"media", nullptr, 0), unknown);
        EXPECT_EQ(::LabelPrinterStatusText(name, nullptr, 0), unknown);
        EXPECT_EQ(::LabelPrinterStatus(name, nullptr, nullptr), unknown);
        EXPECT_EQ(::LabelPrinterSetJob(name, 1, LabelPrinterVerdict::Failed), unknown);
        EXPECT_EQ(::LabelPrinterJob(name, 1, &job), unknown);
        EXPECT_EQ(::LabelPrinterCommand(name, "", 0, nullptr, 0, nullptr), unknown);
        EXPECT_EQ(::LabelPrinterStartQuery(name, "key", "", 0, nullptr), unknown);
        EXPECT_EQ(::LabelPrinterQueryStatus(name, "key", &status), unknown);
        EXPECT_EQ(::LabelPrinterQueryResponse(name, "key", nullptr, 0, nullptr), unknown);
        EXPECT_EQ(::LabelPrinterBeginRequest(name, nullptr), unknown);
        EXPECT_EQ(::LabelPrinterRequests(name), 0u);
    }
    EXPECT_EQ(::LabelPrinterAdd(L""), unknown);
    EXPECT_EQ(::LabelPrinterAdd(nullptr), unknown);
}

TEST_F(PropertiesTest, NullPlacesForResultsDoNoHarm)
{
    EXPECT_EQ(::LabelPrinterStatus(printerName, nullptr, nullptr), 0u);
    EXPECT_EQ(::LabelPrinterStatusText(printerName, nullptr, 10), 0u);
    EXPECT_EQ(::LabelPrinterCommand(printerName, nullptr, 10, nullptr, 10, nullptr), 0u);
    EXPECT_EQ(::LabelPrinterStartQuery(printerName, nullptr, nullptr, 0, nullptr), DWORD{ERROR_INVALID_PARAMETER});
    EXPECT_EQ(::LabelPrinterQueryStatus(printerName, nullptr, nullptr), DWORD{ERROR_INVALID_PARAMETER});
    EXPECT_EQ(::LabelPrinterBeginRequest(printerName, nullptr), 0u);
    EXPECT_EQ(::LabelPrinterSetJob(printerName, 1, LabelPrinterVerdict::Failed), 0u);
    EXPECT_EQ(::LabelPrinterJob(printerName, 1, nullptr), DWORD{ERROR_INVALID_PARAMETER});
}

} // namespace
