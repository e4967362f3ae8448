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
#include <exception>
#include <iterator>
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

} // namespace

int main(int count, char** arguments)
try {
    ::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    char** const end = arguments + count;
    PrintMachine();
    for (const Table& table : tables) {
        if (count == 1 || std::find(arguments + 1, end, table.name) != end) table.print();
    }
    ::CoUninitialize();
    return 0;
} catch (const std::exception& failure) {
    std::fprintf(stderr, "%s\n", failure.what());
    return 1;
}
