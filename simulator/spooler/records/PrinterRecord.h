// SPDX-License-Identifier: MIT
#pragma once

#include "recorder/Recording.h"
#include "spooler/records/JobQueue.h"
#include "spooler/records/PortRecord.h"
#include "spooler/records/PrinterData.h"
#include "spooler/SpoolerControl.h"

#include <map>
#include <memory>

/// What DeviceCapabilitiesW answers for one capability.
struct CapabilityAnswer {
    int result = -1;
    Bytes output;
};

/// A document that reached its device.
struct DeliveryRecord {
    DWORD jobId = 0;
    DWORD totalPages = 0;
    std::wstring document;
    std::wstring userName;
    std::wstring file; // empty if it was written nowhere
    Bytes bytes;
};

/// Something at the device that keeps a job from being printed on.
struct DeviceTrouble {
    DWORD jobStatus = 0;     // bits that the job at the device bears; 0: there is no trouble
    DWORD printerStatus = 0; // bits that the printer bears
    OptionalText text;       // status text of the job
};

/// What the print functions and notifications tell of a printer, apart from what its queue tells.
struct PrinterFields {
    std::wstring name;
    OptionalText serverName;
    OptionalText shareName = L"";
    OptionalText portName = L"LPT1:";
    OptionalText driverName = L"Generic / Text Only";
    OptionalText comment = L"";
    OptionalText location = L"";
    OptionalText sepFile = L"";
    OptionalText printProcessor = L"winprint";
    OptionalText datatype = L"RAW";
    OptionalText parameters = L"";
    Bytes devMode;
    Bytes userDevMode; // level 9; empty: none set
    Bytes securityDescriptor;
    DWORD attributes = PRINTER_ATTRIBUTE_LOCAL;
    DWORD priority = DEF_PRIORITY;
    DWORD defaultPriority = NO_PRIORITY;
    DWORD startTime = 0;
    DWORD untilTime = 0;
    DWORD status = 0;
    DWORD averagePpm = 0;
    DWORD deviceNotSelectedTimeout = 15000;
    DWORD transmissionRetryTimeout = 45000;
};

/// A setting that the printer's device begins with, in the device's own words.
struct DeviceSetting {
    std::wstring name;
    std::wstring value;
};

/// The devices that a printer stands before, by its ports, and the name by which they know it.
struct AttachedDevices {
    struct Port {
        std::wstring name;
        const SpoolerDevice* device;
    };

    std::wstring printerName;
    OptionalText portName;   // of the printer, when it was attached
    std::vector<Port> ports; // those that have a device
};

/// A recording of another printer's notifications, and the file that it comes from.
struct PlayedRecording {
    std::wstring path;
    Recording recording;
};

/// A printer of the simulated machine: what its properties say, its queue, its data, and what it has printed.
struct PrinterRecord : PrinterFields {
    PrinterRecord() = default;
    explicit PrinterRecord(const SpoolerPrinter& printer);

    /// Served by this machine's own spooler.
    bool IsLocal() const noexcept;
    /// A connection to a printer of another machine.
    bool IsConnection() const noexcept { return (attributes & PRINTER_ATTRIBUTE_NETWORK) != 0; }
    bool IsShared() const noexcept { return (attributes & PRINTER_ATTRIBUTE_SHARED) != 0; }
    bool IsPaused() const noexcept { return (status & PRINTER_STATUS_PAUSED) != 0; }

    DWORD id = 0; // what handles remember; never given twice
    DWORD grantedAccess = PRINTER_ALL_ACCESS;
    SpoolerPace pace = SpoolerPace::Resting;
    DWORD bytesPerSecond = 0; // of the device; 0: sending takes no time
    bool trueEndOfJob = false;
    bool lateNames = false;
    DeviceTrouble trouble;
    std::wstring outputFolder;                 // empty: nowhere
    std::vector<DeviceSetting> deviceSettings; // for each device that the printer comes to stand before, in this order
    AttachedDevices attached;
    DWORD deviceStatus = 0; // bits that the printer bears because of its devices

    DWORD changeId = 0;    // printer data "ChangeID"
    DWORD linkedJobId = 0; // that is to print next, as it was linked to the last one
    JobQueue queue;
    PrinterData data;
    std::map<WORD, CapabilityAnswer> capabilities;
    std::vector<DeliveryRecord> deliveries;
    std::shared_ptr<const PlayedRecording> recording; // played to each notification that is opened; null: none
};
