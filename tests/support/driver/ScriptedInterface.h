// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"
#include "support/driver/ModuleLoads.h"

#include <atomic>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

/// What the driver's interface module of a test does: `scripted_interface.dll` hands each call to the one that lives.
/// By itself it does nothing but keep a record of what it met. A test that wants something else puts its own function
/// in the place of `step`. One at a time. Any thread may come in.
class ScriptedInterface : public ModuleLoads {
public:
    /// One call of an export, under its name, with the arguments that it has.
    struct Call {
        std::string name;
        void* handle = nullptr; ///< the spooler's for VRL_Printer_Open, else the driver's
        std::wstring fileName;
        DWORD mask = 0;

        bool operator==(const Call&) const = default;
    };

    ScriptedInterface();
    ScriptedInterface(const ScriptedInterface&) = delete;
    ScriptedInterface& operator=(const ScriptedInterface&) = delete;
    virtual ~ScriptedInterface();

    static ScriptedInterface* Current() noexcept;

    /// Puts a copy of the module at `path`; `without` is an export that the copy lacks.
    static void Install(const std::wstring& path, const char* without = nullptr);

    /// What VRL_Printer_Open gives.
    std::atomic<void*> driverHandle = reinterpret_cast<void*>(0xD21);

    /// Where the file name of the last call that had one stood.
    std::atomic<wchar_t*> givenFileName{nullptr};

    /// Runs in each call, after it was recorded.
    std::function<void(const Call& call)> step;

    /// Where the module comes in: virtual, as its code is in this program.
    virtual void* OnCall(const Call& call);

    std::vector<Call> Calls() const;
    /// Only the names.
    std::vector<std::string> CallNames() const;

private:
    mutable std::mutex _lock;
    std::vector<Call> _calls;
};
