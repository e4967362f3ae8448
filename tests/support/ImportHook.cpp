// SPDX-License-Identifier: MIT
#include "support/ImportHook.h"

#include "foundation/Platform.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

template <typename T>
T* InProgram(DWORD64 offset)
{
    return reinterpret_cast<T*>(reinterpret_cast<char*>(::GetModuleHandleW(nullptr)) + offset);
}

const IMAGE_DATA_DIRECTORY& ImportDirectory()
{
    const auto* const dosHeader = InProgram<IMAGE_DOS_HEADER>(0);
    const auto* const headers = InProgram<IMAGE_NT_HEADERS>(static_cast<DWORD64>(dosHeader->e_lfanew));
    return headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
}

void CollectSlots(const IMAGE_IMPORT_DESCRIPTOR& library, const char* name, std::vector<void**>& slots)
{
    const auto* entry = InProgram<IMAGE_THUNK_DATA>(library.OriginalFirstThunk);
    auto* slot = InProgram<void*>(library.FirstThunk);
    for (; entry->u1.AddressOfData != 0; ++entry, ++slot) {
        if (IMAGE_SNAP_BY_ORDINAL(entry->u1.Ordinal)) continue;
        const auto* const import = InProgram<IMAGE_IMPORT_BY_NAME>(entry->u1.AddressOfData);
        if (std::strcmp(reinterpret_cast<const char*>(import->Name), name) == 0) slots.push_back(slot);
    }
}

std::vector<void**> SlotsOf(const char* name)
{
    std::vector<void**> slots;
    const auto* library = InProgram<IMAGE_IMPORT_DESCRIPTOR>(ImportDirectory().VirtualAddress);
    for (; library->FirstThunk != 0; ++library) CollectSlots(*library, name, slots);
    if (slots.empty()) {
        std::fprintf(stderr, "ImportHook: the program doesn't import %s\n", name);
        std::abort();
    }
    return slots;
}

} // namespace

ImportSlots::ImportSlots(const char* name, void* replacement) : _slots(SlotsOf(name)), _original(*_slots.front())
{
    SetAll(replacement);
}

ImportSlots::~ImportSlots()
{
    SetAll(_original);
}

void ImportSlots::SetAll(void* function) const
{
    for (void** const slot : _slots) {
        DWORD before = 0;
        ::VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &before);
        *slot = function;
        ::VirtualProtect(slot, sizeof *slot, before, &before);
    }
}
