// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/OLazy.h"
#include "vrl/driver/BasicDriverInterface.h"
#include "vrl/driver/InterfaceModule.h"
#include "vrl/spooler/Spooler.h"

#include <atomic>
#include <optional>
#include <string>

/// The driver interface of a printer whose driver names an interface module. Settings go to that module, status and
/// queries to the port monitor beside the driver; what neither of them answers, `BasicDriverInterface` does.
///
/// Ownership: the interface module and the driver's handle, both from the first settings operation on. The port monitor
///            is loaded and released around every request.
/// Threading: any thread, without a lock; requests run side by side. Each blocks for as long as the monitor takes.
/// Errors:    as its bases, but that a request of a printer without driver information throws a bare wide text. What
///            crashes inside a module comes out as it is.
class AdvancedDriverInterface : public BasicDriverInterface {
public:
    AdvancedDriverInterface();
    ~AdvancedDriverInterface() override;

    // Asked of the device only while the printer is bidirectional
    OString GetStatusText() override;
    int GetStatusSeverity() override;
    unsigned long GetStatusFlags2() override;

    /// The device's word on a job; empty if it has none.
    OString GetJobStatusText(unsigned long jobId) override;

    /// Conditions from 201 up come from the extended status word, the rest from the spooler.
    bool TestStatusFlag(int condition) override;

    /// True says that the driver was called; whether it succeeded nobody knows.
    bool ImportSettings(const OString& fileName, unsigned long mask) override;
    bool ExportSettings(const OString& fileName, unsigned long mask) override;
    bool ResetSettings(unsigned long mask) override;

    bool StartDeviceQuery(const OTypedArray<unsigned char>& payload, const OString& key, long sendTimeout,
                          long receiveStartTimeout, long receiveIntervalTimeout) override;
    /// 0 and 1: not finished; 2: answered; 3 and 4: failed. Also 0 if the monitor can't be asked.
    int GetDeviceQueryStatus(const OString& key) override;
    /// `response` becomes the device's bytes as they are, empty if there are none.
    bool GetDeviceQueryResponse(const OString& key, OTypedArray<unsigned char>& response) override;

    /// Whether the spooler has the printer as bidirectional; an answer is good for a second.
    bool IsBidirectional() override;

    // Conditions of the port as the monitor sees it
    bool IsPortBidirectional();
    bool IsPortDisconnected();

private:
    class DriverHandle;

    DRIVER_INFO_3W* GetDriverInfo();
    SpoolerBuffer* Refresh_DriverInfo();
    OString GetMonitorModulePath();
    DWORD SendRequest(const char* request, OTypedArray<unsigned char>& answer);
    DWORD PostRequest(const char* request);
    std::optional<std::string> AskState(const char* request);
    bool AskPort(const char* request);

    InterfaceModule* LoadInterfaceModule();
    DriverHandle* OpenDriverHandle();
    void CloseDriverHandle() noexcept;

    OLazy<SpoolerBuffer> _di; ///< DRIVER_INFO_3W; Deliberate: never read again, an exchanged driver stays unseen
    OLazy<InterfaceModule> _interfaceModule;
    OLazy<DriverHandle> _driverHandle;
    std::atomic<bool> _bidirectional{false};
    std::atomic<DWORD> _lastBidirectionalCheck{0}; ///< tick count; 0: never
};
