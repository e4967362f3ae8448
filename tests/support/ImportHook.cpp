// SPDX-License-Identifier: MIT
#include "support/ImportHook.h"

#include "foundation/Platform.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

template <typename T>
T* InModule(void* module, DWORD64 offset)
{
    return reinterpret_cast<T*>(static_cast<char*>(module) + offset);
}

const IMAGE_DATA_DIRECTORY& ImportDirectory(void* module)
{
    const auto* const dosHeader = InModule<IMAGE_DOS_HEADER>(module, 0);
    const auto* const headers = InModule<IMAGE_NT_HEADERS>(module, static_cast<DWORD64>(dosHeader->e_lfanew));
    return headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
}

void CollectSlots(void* module, const IMAGE_IMPORT_DESCRIPTOR& library, const char* name, std::vector<void**>& slots)
{
    const auto* entry = InModule<IMAGE_THUNK_DATA>(module, library.OriginalFirstThunk);
    auto* slot = InModule<void*>(module, library.FirstThunk);
    for (; entry->u1.AddressOfData != 0; ++entry, ++slot) {
        if (IMAGE_SNAP_BY_ORDINAL(entry->u1.Ordinal)) continue;
        const auto* const import = InModule<IMAGE_IMPORT_BY_NAME>(module, entry->u1.AddressOfData);
        if (std::strcmp(reinterpret_cast<const char*>(import->Name), name) == 0) slots.push_back(slot);
    }
}

std::vector<void**> SlotsOf(void* module, const char* name)
{
    std::vector<void**> slots;
    const auto* library = InModule<IMAGE_IMPORT_DESCRIPTOR>(module, ImportDirectory(module).VirtualAddress);
    for (; library->FirstThunk != 0; ++library) CollectSlots(module, *library, name, slots);
    if (slots.empty()) {
        std::fprintf(stderr, "ImportHook: the module doesn't import %s\n", name);
        std::abort();
    }
    return slots;
}

} // namespace

ImportSlots::ImportSlots(const char* name, void* replacement, void* module)
    : _slots(SlotsOf(module ? module : ::GetModuleHandleW(nullptr), name)), _original(*_slots.front())
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
