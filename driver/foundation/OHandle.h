// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"

#include <type_traits>

/// Sole owner of one platform resource that `Close` gives back.
///
/// Ownership: moves only; the destructor and `Reset` close the resource and leave the thread's last error as it was.
/// Null and INVALID_HANDLE_VALUE both mean "nothing", also when a call has filled one in.
template <auto Close, typename T = HANDLE>
class OHandle {
public:
    OHandle() noexcept = default;
    explicit OHandle(T value) noexcept : _value(value) {}
    OHandle(OHandle&& other) noexcept : _value(other.Detach()) {}
    OHandle& operator=(OHandle&& other) noexcept
    {
        if (this != &other) Reset(other.Detach());
        return *this;
    }
    OHandle(const OHandle&) = delete;
    OHandle& operator=(const OHandle&) = delete;
    ~OHandle() { Reset(); }

    /// Null if it has nothing.
    T Get() const noexcept
    {
        if constexpr (std::is_same_v<T, HANDLE>) {
            if (_value == INVALID_HANDLE_VALUE) return T{};
        }
        return _value;
    }
    explicit operator bool() const noexcept { return Get() != T{}; }

    /// Hands the resource to the caller, who then owns it.
    [[nodiscard]] T Detach() noexcept
    {
        const T value = Get();
        _value = T{};
        return value;
    }

    /// Closes the resource, if there is one, and takes ownership of `value`.
    void Reset(T value = T{}) noexcept
    {
        const T old = Detach();
        _value = value;
        if (old == T{}) return;
        const DWORD lastError = ::GetLastError();
        Close(old);
        ::SetLastError(lastError);
    }

    /// Closes the resource, if there is one, and gives the address for a call that fills in another.
    T* Receive() noexcept
    {
        Reset();
        return &_value;
    }

private:
    T _value{}; ///< as it was given: `Get` reads it
};

using OWaitHandle = OHandle<::CloseHandle>;            ///< event, thread, process
using OFileHandle = OHandle<::CloseHandle>;            ///< file
using OModuleHandle = OHandle<::FreeLibrary, HMODULE>; ///< counted reference to a loaded module
using OLocalMemory = OHandle<::LocalFree, HLOCAL>;     ///< what the platform allocated with LocalAlloc
