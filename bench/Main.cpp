// SPDX-License-Identifier: MIT
//
// Prints the tables of docs/performance.md: all, or those that the command line names.
#include "bench/DeviceTable.h"
#include "bench/EnumerationTable.h"
#include "bench/EventRateTable.h"
#include "bench/IdleTable.h"
#include "bench/LatencyTable.h"
#include "bench/LiveJobsTable.h"
#include "bench/Machine.h"
#include "bench/MemberTable.h"
#include "bench/MemoryTable.h"

#include <windows.h>

#include <objbase.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>

namespace {

struct Table {
    std::string_view name;
    void (*print)();
};

constexpr std::array tables{
    Table{"members",     PrintMemberTable     },
    Table{"enumeration", PrintEnumerationTable},
    Table{"latency",     PrintLatencyTable    },
    Table{"rate",        PrintEventRateTable  },
    Table{"jobs",        PrintLiveJobsTable   },
    Table{"device",      PrintDeviceTable     },
    Table{"memory",      PrintMemoryTable     },
    Table{"idle",        PrintIdleTable       },
};

/// A name that is none of a table would leave its table out without a word.
void RequireTables(std::span<char*> names)
{
    for (const std::string_view name : names) {
        if (std::ranges::find(tables, name, &Table::name) == tables.end())
            throw std::invalid_argument("there is no table \"" + std::string(name) + "\"");
    }
}

} // namespace

int main(int count, char** arguments)
try {
    const std::span names(arguments + 1, arguments + count);
    RequireTables(names);
    ::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    PrintMachine();
    for (const Table& table : tables) {
        if (names.empty() || std::ranges::find(names, table.name) != names.end()) table.print();
    }
    ::CoUninitialize();
    return 0;
} catch (const std::exception& failure) {
    std::fprintf(stderr, "%s\n", failure.what());
    return 1;
}
