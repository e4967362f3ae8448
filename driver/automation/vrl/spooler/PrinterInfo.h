// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/text/OString.h"
#include "foundation/text/OStringArray.h"
#include "foundation/arrays/OTypedArray.h"
#include "foundation/Platform.h"
#include "vrl/spooler/DevModeCopy.h"

class PrinterInfo;

template <>
inline constexpr const char* arrayElementName<class PrinterInfo*> = "class PrinterInfo *";

/// A snapshot of what the spooler knows of one printer and its driver, no older than a second.
///
/// Snapshots are filled through the process-wide `PrinterInfoCache`, so many of one printer within a second cost one
/// read; all of them wait while one printer is read. The driver is read once for each printer name of the process.
///
/// Ownership: a value that owns all it holds. Copies are deep, texts included, so a copy may go to another thread.
/// Threading: none; the cache between snapshots has a lock of its own.
/// Errors:    none. An unknown printer gives empty fields; what can't be read stays as it was in the snapshot before.
class PrinterInfo {
public:
    /// The snapshot of the printer of that name.
    explicit PrinterInfo(const OString& printerName);

    /// The snapshot of the printer that is open under that handle, by the name that the network knows it by. The handle
    /// is lent. A printer without name is an internal failure.
    explicit PrinterInfo(HANDLE hPrinter);

    /// A pointer alone is a handle: a plain text is to become an OString first.
    template <typename T>
    explicit PrinterInfo(T*) = delete;

    PrinterInfo(const PrinterInfo& other);
    PrinterInfo& operator=(const PrinterInfo& other);
    ~PrinterInfo() = default;

    // Level 2 of the spooler's printer information, by its field names where nothing else is said

    /// The machine that the printer stands on, without backslashes: from the server, a network port, or a terminal
    /// client; this computer for a local printer.
    const OString& GetServerName() const noexcept { return _piServerName; }

    /// The spooler's name of the printer; before a read succeeds, the name that was asked for.
    const OString& GetPrinterName() const noexcept { return _piPrinterName; }

    /// `pShareName`, or the share that a network port leads to.
    const OString& GetShareName() const noexcept { return _piShareName; }
    const OString& GetPortName() const noexcept { return _piPortName; }
    const OString& GetDriverName() const noexcept { return _piDriverName; }
    const OString& GetComment() const noexcept { return _piComment; }
    const OString& GetLocation() const noexcept { return _piLocation; }

    /// Null if the printer has none; belongs to the snapshot.
    const DEVMODEW* GetDevMode() const noexcept { return _piDevMode.Get(); }
    const OString& GetSepFile() const noexcept { return _piSepFile; }
    const OString& GetPrintProcessor() const noexcept { return _piPrintProcessor; }
    const OString& GetDatatype() const noexcept { return _piDatatype; }
    const OString& GetParameters() const noexcept { return _piParameters; }

    /// PRINTER_ATTRIBUTE_* bits.
    DWORD GetAttributes() const noexcept { return _piAttributes; }

    // Level 6 or 3 of the driver information; file names stand without folder

    /// `cVersion`.
    DWORD GetDriverVersion() const noexcept { return _piDriverVersion; }
    const OString& GetEnvironment() const noexcept { return _piEnvironment; }

    /// The folder of `pDriverPath`, without backslash at its end.
    const OString& GetDriverDirectory() const noexcept { return _piDriverDirectory; }

    /// The file of `pDriverPath`.
    const OString& GetDriverFile() const noexcept { return _piDriverFile; }
    const OString& GetDataFile() const noexcept { return _piDataFile; }
    const OString& GetConfigFile() const noexcept { return _piConfigFile; }
    const OString& GetHelpFile() const noexcept { return _piHelpFile; }
    const OStringArray& GetDependentFiles() const noexcept { return _piDependentFiles; }
    const OString& GetMonitorName() const noexcept { return _piMonitorName; }
    const OString& GetDefaultDataType() const noexcept { return _piDefaultDataType; }

    // Level 6 only

    const OString& GetManufacturer() const noexcept { return _piManufacturer; }
    const OString& GetHardwareId() const noexcept { return _piHardwareId; }
    const OString& GetProvider() const noexcept { return _piProvider; }

    // What follows from the above

    /// The printer stands on another machine; redirected client printers count.
    bool IsRemote() const noexcept { return _piIsRemote; }

    /// The first three characters of the data file's name, in lower case.
    const OString& GetDriverFamily() const noexcept { return _piDriverFamily; }

    /// The next two.
    const OString& GetDriverModel() const noexcept { return _piDriverModel; }

    /// The printer is one that a terminal session redirects here.
    bool IsTerminalClient() const noexcept { return _piIsTerminalClient; }

    /// The printer's name without server; on a terminal client, its name there.
    const OString& GetShortName() const noexcept { return _piShortName; }

    /// A read has finished, if only with the finding that there is no such printer.
    bool IsValid() const noexcept { return _piValid; }

    /// `TickCount` at the last good read of level 2; 0 if there was none.
    DWORD GetReadTick() const noexcept { return _piReadTick; }

    /// Gives the printer another default device mode. True if the spooler took it. The snapshot's own device mode, if
    /// it has one, becomes a copy of the given one once the spooler was asked, whatever it answered; the cache learns
    /// of it by its next read.
    bool SetDevMode(const DEVMODEW& devMode);

    /// The name under which a printer that is published in the directory is reached from elsewhere; for any other the
    /// plain printer name. Empty if the spooler doesn't answer. The handle is lent; null is an internal failure.
    static OString GetNetworkPrinterName(HANDLE hPrinter);

private:
    friend class PrinterInfoCache;
    struct Fields;

    /// Forgets the last read and fills the snapshot through the cache.
    void Refresh();

    /// Reads the printer that `_piPrinterName` names, and its driver unless `_piValid` says that it was read.
    void ReadFromSpooler();
    void ReadLevel2(HANDLE hPrinter);
    void NameServer();
    void NameServerByPort();
    void NameShort();
    void ReadTerminalClient(HANDLE hPrinter);
    void ReadDriver(HANDLE hPrinter);
    template <class Info>
    void StoreDriver(const Info& info);
    void DeriveDriverCodes();

    OString _piServerName;
    OString _piPrinterName;
    OString _piShareName;
    OString _piPortName;
    OString _piDriverName;
    OString _piComment;
    OString _piLocation;
    DevModeCopy _piDevMode;
    OString _piSepFile;
    OString _piPrintProcessor;
    OString _piDatatype;
    OString _piParameters;
    DWORD _piAttributes = 0;
    DWORD _piDriverVersion = 0;
    OString _piEnvironment;
    OString _piDriverDirectory;
    OString _piDriverFile;
    OString _piDataFile;
    OString _piConfigFile;
    OString _piHelpFile;
    OStringArray _piDependentFiles;
    OString _piMonitorName;
    OString _piDefaultDataType;
    OString _piManufacturer;
    OString _piHardwareId;
    OString _piProvider;
    bool _piIsRemote = false;
    OString _piDriverFamily;
    OString _piDriverModel;
    bool _piIsTerminalClient = false;
    OString _piShortName;
    bool _piValid = false;
    DWORD _piReadTick = 0;
};
