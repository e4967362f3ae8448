// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"

#include <utility>

/// Sole owner of one platform resource that `Close` gives back.
///
/// Ownership: moves only; the destructor and `Reset` close what is held and leave the thread's last error as it was.
/// Null and INVALID_HANDLE_VALUE both mean "nothing".
template <auto Close, typename T = HANDLE>
class OHandle {
public:
    OHandle() noexcept = default;
    explicit OHandle(T value) noexcept : _value(Valid(value)) {}
    OHandle(OHandle&& other) noexcept : _value(other.Detach()) {}
    OHandle& operator=(OHandle&& other) noexcept
    {
        if (this != &other) Reset(other.Detach());
        return *this;
    }
    OHandle(const OHandle&) = delete;
    OHandle& operator=(const OHandle&) = delete;
    ~OHandle() { Reset(); }

    T Get() const noexcept { return _value; }
    explicit operator bool() const noexcept { return _value != T{}; }

    /// Hands the resource to the caller, who then owns it.
    [[nodiscard]] T Detach() noexcept { return std::exchange(_value, T{}); }

    /// Closes what is held and takes over `value`.
    void Reset(T value = T{}) noexcept
    {
        const T old = std::exchange(_value, Valid(value));
        if (old == T{}) return;
        const DWORD lastError = ::GetLastError();
        Close(old);
        ::SetLastError(lastError);
    }

    /// Lets go of what is held and gives the address for a call that fills it.
    T* Receive() noexcept
    {
        Reset();
        return &_value;
    }

private:
    static T Valid(T value) noexcept
    {
        if constexpr (std::is_same_v<T, HANDLE>) {
            if (value == INVALID_HANDLE_VALUE) return T{};
        }
        return value;
    }

    T _value{};
};

using OWaitHandle = OHandle<::CloseHandle>;            ///< event, thread, process
using OFileHandle = OHandle<::CloseHandle>;            ///< file
using OModuleHandle = OHandle<::FreeLibrary, HMODULE>; ///< counted reference to a loaded module
using OLocalMemory = OHandle<::LocalFree, HLOCAL>;     ///< what the platform allocated with LocalAlloc
