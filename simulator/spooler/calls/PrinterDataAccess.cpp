// SPDX-License-Identifier: MIT
#include "spooler/calls/PrinterDataAccess.h"

#include "spooler/world/ChangeScope.h"
#include "spooler/world/ServerData.h"
#include "spooler/SpoolerError.h"

#include <algorithm>
#include <array>

namespace {

constexpr std::wstring_view changeIdName = L"ChangeID";
constexpr std::array<std::wstring_view, 3> directoryKeys{SPLDS_DRIVER_KEY, SPLDS_SPOOLER_KEY, SPLDS_USER_KEY};
constexpr std::array<DWORD, 4> directoryTypes{REG_SZ, REG_MULTI_SZ, REG_DWORD, REG_BINARY};

/// The directory takes few types, and bytes only as a truth value.
bool FitsKey(std::wstring_view key, DWORD type, DWORD size)
{
    if (std::ranges::none_of(directoryKeys, [key](auto known) { return SameName(known, key); })) return true;
    return std::ranges::find(directoryTypes, type) != directoryTypes.end() && (type != REG_BINARY || size == 1);
}

PrinterData::Value ValueOf(const PrinterRecord& printer, const wchar_t* key, const wchar_t* name)
{
    Require(key && *key && name, ERROR_INVALID_PARAMETER);
    if (SameName(key, printerDriverDataKey) && SameName(name, changeIdName)) return NumberValue(printer.changeId);
    const PrinterData::Value* const value = printer.data.Find(key, name);
    Require(value, ERROR_FILE_NOT_FOUND);
    return *value;
}

} // namespace

void PrinterDataAccess::Get(HANDLE handle, const wchar_t* key, const wchar_t* name, DWORD* type, void* data, DWORD size,
                            DWORD* needed)
{
    const bool server = _world.HandleOf(handle).kind == OpenHandle::Kind::Server;
    const PrinterData::Value value = server ? ServerValue(_world.MachineName(), TextOrEmpty(name))
                                            : ValueOf(_world.AccessOf(handle).printer, key, name);
    const DWORD error = CopyValue(value, type, data, size, needed);
    Require(error == ERROR_SUCCESS, error);
}

void PrinterDataAccess::Set(HANDLE handle, const wchar_t* key, const wchar_t* name, DWORD type, const void* data,
                            DWORD size)
{
    Require(_world.HandleOf(handle).kind != OpenHandle::Kind::Server, ERROR_NOT_SUPPORTED);
    const PrinterAccess access = _world.AccessOf(handle);
    access.RequireAdminister();
    Require(key && *key && name && (data || size == 0), ERROR_INVALID_PARAMETER);
    Require(!SameName(name, changeIdName) && FitsKey(key, type, size), ERROR_INVALID_PARAMETER);
    ChangeScope(_world, access.printer).EditPrinter().data.Set(key, name, {type, CopyBytes(data, size)});
}
