// SPDX-License-Identifier: MIT
//
// Cases: Name, Comment (get and put), Local, Status.Text and one condition, and making and binding a Printer, each
// beside the raw spooler calls that it stands for (MemberTable.h); enumerating the machine's printers
// (EnumerationTable.h).
#include "bench/EnumerationTable.h"
#include "bench/Machine.h"
#include "bench/MemberTable.h"

#include <windows.h>

#include <objbase.h>

#include <cstdio>
#include <exception>

int main()
try {
    ::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    PrintMachine();
    PrintMemberTable();
    PrintEnumerationTable();
    ::CoUninitialize();
    return 0;
} catch (const std::exception& failure) {
    std::fprintf(stderr, "%s\n", failure.what());
    return 1;
}
