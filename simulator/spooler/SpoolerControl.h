// SPDX-License-Identifier: MIT
#pragma once

/// Control interface of the spooler simulator: what a test or a demonstration does to the simulated world from outside,
/// and what it asks of it afterwards. The functions are exported by the simulator's winspool.drv beside the spooler's
/// own; link the CMake target `spooler_simulator`.
///
/// The world:  one per process. It starts empty, or with what the file named by VORLANE_SPOOLER_CONFIG describes.
/// Threads:    any thread may call any function at any time.
/// Ownership:  texts and bytes are copied in; results are copied out into the caller's memory.
/// Results:    a DWORD result is ERROR_SUCCESS or a system error code, unless the function's comment says otherwise:
///             ERROR_INVALID_PRINTER_NAME for an unknown printer, ERROR_INVALID_PARAMETER for an unknown job or a
///             missing name, and what the comment names.
/// Calls made here are neither counted, nor logged, nor hit by injected failures.

#include "spooler/Platform.h"

#include <string>
#include <vector>

// What the world is made of.

/// When the jobs of a printer move.
enum class SpoolerPace : DWORD {
    Resting,  ///< jobs stay as they were left; one that is deleted leaves at once
    AtOnce,   ///< whatever can be printed has been printed when a call returns
    Stepped,  ///< one step of printing for each that SpoolerStep is told to do
    RealTime, ///< by themselves, at the speed of the device
};

/// A print queue: the fields of PRINTER_INFO_2W, what the user may do with it, and what becomes of its documents.
/// A null text is read back as a null pointer, an empty one as an empty text.
struct SpoolerPrinter {
    const wchar_t* printerName = nullptr; ///< required; "\\HOST\NAME" for a connection
    const wchar_t* serverName = nullptr;
    const wchar_t* shareName = L"";
    const wchar_t* portName = L"LPT1:";                 ///< an unknown port is added, with the monitor "Local Port"
    const wchar_t* driverName = L"Generic / Text Only"; ///< an unknown driver is added, with plain files
    const wchar_t* comment = L"";
    const wchar_t* location = L"";
    const DEVMODEW* devMode = nullptr; ///< copied for dmSize + dmDriverExtra bytes; null is read back as null
    const wchar_t* sepFile = L"";
    const wchar_t* printProcessor = L"winprint";
    const wchar_t* datatype = L"RAW";
    const wchar_t* parameters = L"";
    const void* securityDescriptor = nullptr; ///< self-relative; null is read back as null
    DWORD securityDescriptorBytes = 0;
    DWORD attributes = PRINTER_ATTRIBUTE_LOCAL;
    DWORD priority = 1;
    DWORD defaultPriority = 0;
    DWORD startTime = 0; ///< minutes after midnight GMT
    DWORD untilTime = 0; ///< minutes after midnight GMT
    DWORD status = 0;    ///< PRINTER_STATUS_*
    DWORD averagePpm = 0;
    DWORD deviceNotSelectedTimeout = 15000;   ///< milliseconds, level 5
    DWORD transmissionRetryTimeout = 45000;   ///< milliseconds, level 5
    DWORD grantedAccess = PRINTER_ALL_ACCESS; ///< what this process's user may ask for when it opens the printer
    SpoolerPace pace = SpoolerPace::Resting;
    DWORD bytesPerSecond = 0;              ///< of the device, in real time; 0: sending takes no time
    bool trueEndOfJob = false;             ///< the port tells when the device is done, not only when all was sent
    bool lateNames = false;                ///< a document is "Local Downlevel Document" until it has been spooled
    const wchar_t* outputFolder = nullptr; ///< where printed documents are written, one file each; null: nowhere
};

/// A printer driver: the fields of DRIVER_INFO_6W. Lists end with two nulls, as they do there.
struct SpoolerDriver {
    const wchar_t* name = nullptr; ///< required
    DWORD version = 3;
    const wchar_t* environment = L"Windows x64";
    const wchar_t* driverPath = L"";
    const wchar_t* dataFile = L"";
    const wchar_t* configFile = L"";
    const wchar_t* helpFile = nullptr;
    const wchar_t* dependentFiles = nullptr; ///< list
    const wchar_t* monitorName = nullptr;
    const wchar_t* defaultDataType = L"RAW";
    const wchar_t* previousNames = nullptr; ///< list
    FILETIME driverDate = {};
    DWORDLONG driverVersion = 0;
    const wchar_t* manufacturer = nullptr;
    const wchar_t* oemUrl = nullptr;
    const wchar_t* hardwareId = nullptr;
    const wchar_t* provider = nullptr;
    DWORD driverAttributes = 0;
    DWORD highestLevel = 8; ///< GetPrinterDriverW refuses a higher level with ERROR_INVALID_LEVEL
};

/// A port: the fields of PORT_INFO_2W.
struct SpoolerPort {
    const wchar_t* name = nullptr; ///< required
    const wchar_t* monitorName = L"Local Port";
    const wchar_t* description = L"Local Port";
    DWORD type = PORT_TYPE_READ | PORT_TYPE_WRITE;
    /// A DLL that does as DeviceLink.h says, and is fed what is printed through the port; a plain file name is looked
    /// for beside winspool.drv. Null: none.
    const wchar_t* device = nullptr;
};

/// A queued job: the fields of JOB_INFO_2W, and its document.
struct SpoolerJob {
    DWORD jobId = 0;                      ///< 0: the world chooses the next number
    const wchar_t* machineName = nullptr; ///< null: the world's machine
    const wchar_t* userName = nullptr;    ///< null: the world's user
    const wchar_t* document = L"";
    const wchar_t* notifyName = nullptr;     ///< null: the job's user
    const wchar_t* datatype = nullptr;       ///< null: the printer's
    const wchar_t* printProcessor = nullptr; ///< null: the printer's
    const wchar_t* parameters = L"";
    const DEVMODEW* devMode = nullptr; ///< null: the printer's
    const wchar_t* statusText = nullptr;
    DWORD status = 0;    ///< JOB_STATUS_*
    DWORD priority = 0;  ///< 0: the printer's default priority, or 1
    DWORD startTime = 0; ///< minutes after midnight GMT
    DWORD untilTime = 0; ///< minutes after midnight GMT
    DWORD totalPages = 0;
    DWORD pagesPrinted = 0;
    SYSTEMTIME submitted = {};   ///< UTC; all zero: now
    DWORD time = 0;              ///< milliseconds since the job began printing
    const void* bytes = nullptr; ///< the spooled document
    DWORD byteCount = 0;         ///< length of `bytes`
    DWORD reportedSize = 0;      ///< what Size tells; 0: the length of the document
};

/// A document that reached its device.
struct SpoolerDelivery {
    DWORD jobId;
    DWORD byteCount;
    DWORD totalPages;
    wchar_t document[MAX_PATH];
    wchar_t userName[MAX_PATH];
    wchar_t file[MAX_PATH]; ///< where it was written; empty if the printer has no output folder
};

// Notifications.

/// One entry of a batch that a test queues. It is told as it stands, whether there is such a type, field or job or not.
struct SpoolerNotifyEntry {
    WORD type = JOB_NOTIFY_TYPE;
    WORD field = JOB_NOTIFY_FIELD_STATUS;
    DWORD id = 0;
    DWORD number = 0;              ///< adwData[0], unless there is text or data; in a text field 0 is a null buffer
    const wchar_t* text = nullptr; ///< pBuf, with its terminator
    const void* data = nullptr;    ///< pBuf: a device mode, a time, anything
    DWORD dataBytes = 0;           ///< cbBuf of `data`
};

/// What one FindNextPrinterChangeNotification is to give.
struct SpoolerNotifyBatch {
    DWORD change = 0;                            ///< the change word, whatever the filter
    DWORD flags = 0;                             ///< PRINTER_NOTIFY_INFO_DISCARDED
    const SpoolerNotifyEntry* entries = nullptr; ///< `count` of them; there may be none
    DWORD count = 0;
    bool withBlock = true; ///< false: there is a change word, but no block
};

// Calls: their names, their log, failures put into them.

/// The spooler's functions by the names of their exports, which no macro of the platform touches.
enum class SpoolerCall : DWORD {
    OpenPrinterW,
    ClosePrinter,
    GetPrinterW,
    SetPrinterW,
    GetJobW,
    SetJobW,
    EnumJobsW,
    EnumPrintersW,
    EnumPortsW,
    GetPrinterDriverW,
    GetPrinterDataW,
    GetPrinterDataExW,
    SetPrinterDataW,
    SetPrinterDataExW,
    DeviceCapabilitiesW,
    StartDocPrinterW,
    StartPagePrinter,
    WritePrinter,
    EndPagePrinter,
    EndDocPrinter,
    FindFirstPrinterChangeNotification,
    FindNextPrinterChangeNotification,
    FindClosePrinterChangeNotification,
    FreePrinterNotifyInfo,
};

constexpr DWORD spoolerCallCount = 24;
constexpr DWORD spoolerAnyLevel = 0xFFFFFFFF;
constexpr DWORD spoolerAllSteps = 0xFFFFFFFF;
constexpr DWORD spoolerRealClock = 0xFFFFFFFF;

/// What an injected failure does to the call it hits.
enum class SpoolerEffect : DWORD {
    /// The call does nothing and fails in its own manner: FALSE, 0, -1, INVALID_HANDLE_VALUE or the error itself,
    /// with `error` as the last error. A sized read tells `bytes` as the needed size.
    Fail,
    /// The call does nothing and says that it succeeded. A sized read tells `bytes` as the needed size and no entries;
    /// StartDocPrinter and DeviceCapabilities return `bytes`; OpenPrinter and FindFirst... give out a null handle;
    /// FindNext... gives `bytes` as the change word and no block.
    SucceedEmpty,
    /// WritePrinter takes at most `bytes` bytes, tells that number as written, and succeeds.
    ShortWrite,
    /// The call is done after `delayMs` milliseconds.
    Delay,
    /// The call sets the event `entered` and is done when the event `release` is set; after 60 seconds it goes on
    /// anyway.
    Hold,
    /// `action` runs with `context` on the calling thread, then the call is done. It may use this interface.
    Run,
};

/// One injected failure. It is used up after `count` hits.
struct SpoolerFailure {
    SpoolerCall call = SpoolerCall::OpenPrinterW;
    SpoolerEffect effect = SpoolerEffect::Fail;
    DWORD error = ERROR_GEN_FAILURE;
    DWORD nth = 1;                 ///< the first matching call that it hits, counted from the injection: 1 is the next
    DWORD count = 1;               ///< how many matching calls it hits from there on; 0: every one
    DWORD level = spoolerAnyLevel; ///< matches only calls at this level
    const wchar_t* printer = nullptr;   ///< matches only calls on this printer; null: any
    const wchar_t* valueName = nullptr; ///< matches only printer data calls for this value; null: any
    DWORD bytes = 0;                    ///< see SpoolerEffect
    DWORD delayMs = 0;
    HANDLE entered = nullptr; ///< event of the caller's, for Hold; may be null
    HANDLE release = nullptr; ///< event of the caller's, for Hold
    void (*action)(void* context) = nullptr;
    void* context = nullptr;
};

/// One call as it was made, with the arguments that matter; a field that the call lacks is 0 or empty.
struct SpoolerCallRecord {
    SpoolerCall call;
    DWORD level;      ///< structure level
    DWORD jobId;      ///< GetJob, SetJob; the job number that StartDocPrinter gave
    DWORD command;    ///< SetPrinter, SetJob
    DWORD access;     ///< OpenPrinter: the access asked for
    DWORD flags;      ///< EnumPrinters: which printers
    DWORD firstJob;   ///< EnumJobs: position of the first one asked for, from 0
    DWORD jobCount;   ///< EnumJobs: how many are asked for at most
    DWORD capability; ///< DeviceCapabilities
    DWORD valueType;  ///< SetPrinterData: REG_*
    DWORD filter;     ///< FindFirst...: PRINTER_CHANGE_*
    DWORD category;   ///< FindFirst...: kind of printers, PRINTER_NOTIFY_CATEGORY_*
    DWORD bytes;      ///< size of the buffer given in, whether to be filled, written or stored
    DWORD result;     ///< ERROR_SUCCESS, the error that the call failed with, or ERROR_IO_PENDING while it runs
    LONG value;       ///< what the call returned
    DWORD threadId;
    bool injected;                 ///< an injected failure hit it
    HANDLE handle;                 ///< printer handle given in; OpenPrinter: given out
    HANDLE notification;           ///< FindNext..., FindClose...: given in; FindFirst...: given out
    wchar_t printer[MAX_PATH];     ///< printer name, or the name given in; empty for a server or an unknown handle
    wchar_t server[MAX_PATH];      ///< EnumPrinters, EnumPorts: the name given in
    wchar_t environment[MAX_PATH]; ///< GetPrinterDriver
    wchar_t port[MAX_PATH];        ///< DeviceCapabilities; SetPrinter level 2
    wchar_t valueKey[MAX_PATH];    ///< printer data: key
    wchar_t valueName[MAX_PATH];   ///< printer data: value
    wchar_t document[MAX_PATH];    ///< StartDocPrinter: name
    wchar_t datatype[MAX_PATH];    ///< StartDocPrinter: data type
};

extern "C" {

// The world.

/// Empties the world: printers, drivers, ports, jobs, deliveries, log and injected failures. Open handles become
/// invalid and are no longer counted; their values never come back. Jobs are numbered from 1 again. What the
/// configuration file described doesn't come back.
void SpoolerReset() noexcept;

/// Reads a configuration file into the world, on top of what is there. ERROR_BAD_CONFIGURATION if it is malformed (the
/// world is then as before), or the error of opening it; `SpoolerConfigError` tells what is wrong and where.
DWORD SpoolerLoadConfig(const wchar_t* path) noexcept;

/// Writes the world as a configuration file that makes the same world again, printer data included; docs/simulator.md
/// tells what is not in it. A file of that name is replaced as a whole, or, with the error as the result, not at all.
DWORD SpoolerSaveConfiguration(const wchar_t* path) noexcept;

/// The text of the last configuration failure, cut to `characters` with its terminator; gives its length, 0 for none.
DWORD SpoolerConfigError(wchar_t* text, DWORD characters) noexcept;

/// The spooler stops: every call that goes to it fails with RPC_S_SERVER_UNAVAILABLE, and nothing is printed. Handles
/// that are closed meanwhile are gone nevertheless; blocks of notifications can be freed. This interface goes on.
void SpoolerStop() noexcept;
/// The spooler comes back, with what was open before.
void SpoolerStart() noexcept;

/// User and machine in whose name this process prints; null leaves one as it is. Reset puts the real ones back.
void SpoolerSetIdentity(const wchar_t* userName, const wchar_t* machineName) noexcept;
/// What the user may do with the print server itself: SERVER_*. Reset puts SERVER_ALL_ACCESS back.
void SpoolerSetServerAccess(DWORD grantedAccess) noexcept;

// Printers, drivers, ports.

/// ERROR_PRINTER_ALREADY_EXISTS for a name in use.
DWORD SpoolerAddPrinter(const SpoolerPrinter& printer) noexcept;
/// Takes the printer, its jobs and its deliveries away. Open handles to it can still be closed; whatever else is done
/// with them fails with ERROR_PRINTER_DELETED.
DWORD SpoolerRemovePrinter(const wchar_t* printerName) noexcept;
/// Adds a driver or replaces the one of that name.
DWORD SpoolerAddDriver(const SpoolerDriver& driver) noexcept;
/// ERROR_UNKNOWN_PRINTER_DRIVER for an unknown one.
DWORD SpoolerRemoveDriver(const wchar_t* driverName) noexcept;
/// Adds a port after the others, or replaces the one of that name in its place. If its device can't be used nothing
/// changes: ERROR_PROC_NOT_FOUND for a DLL that is none, or why it can't be loaded.
DWORD SpoolerAddPort(const SpoolerPort& port) noexcept;
/// ERROR_UNKNOWN_PORT for an unknown one. Printers keep its name.
DWORD SpoolerRemovePort(const wchar_t* portName) noexcept;

/// PRINTER_STATUS_* bits, in place of those that the printer has.
DWORD SpoolerSetPrinterStatus(const wchar_t* printerName, DWORD status) noexcept;
/// PRINTER_ATTRIBUTE_* bits, in place of those that the printer has.
DWORD SpoolerSetPrinterAttributes(const wchar_t* printerName, DWORD attributes) noexcept;
/// Pages a minute.
DWORD SpoolerSetAveragePpm(const wchar_t* printerName, DWORD averagePpm) noexcept;
/// Holds for handles opened from now on; open ones keep what they were granted.
DWORD SpoolerSetGrantedAccess(const wchar_t* printerName, DWORD grantedAccess) noexcept;
/// Null takes the device mode away.
DWORD SpoolerSetPrinterDevMode(const wchar_t* printerName, const DEVMODEW* devMode) noexcept;
/// Gives the printer another name, as an administrator elsewhere would; open handles stay with it.
/// ERROR_PRINTER_ALREADY_EXISTS for a name in use.
DWORD SpoolerRenamePrinter(const wchar_t* printerName, const wchar_t* newName) noexcept;
/// What the printer, as it stands, is: a packed PRINTER_INFO_2W. ERROR_INSUFFICIENT_BUFFER with the size in `needed`.
DWORD SpoolerPeekPrinter(const wchar_t* printerName, void* buffer, DWORD size, DWORD* needed) noexcept;

/// The answer of DeviceCapabilitiesW: its result, and what it copies out if the caller gives a buffer. A capability
/// that was never set gives -1, apart from the few that follow from the device mode.
DWORD SpoolerSetCapability(const wchar_t* printerName, WORD capability, int result, const void* output,
                           DWORD outputBytes) noexcept;
/// Takes the answer away again.
DWORD SpoolerClearCapability(const wchar_t* printerName, WORD capability) noexcept;

/// Printer data under a key ("PrinterDriverData" is the key of GetPrinterDataW) and a value name.
DWORD SpoolerSetData(const wchar_t* printerName, const wchar_t* key, const wchar_t* valueName, DWORD type,
                     const void* data, DWORD bytes) noexcept;
/// ERROR_FILE_NOT_FOUND for an unknown value, ERROR_MORE_DATA with the size in `needed`; `type` may be null.
DWORD SpoolerPeekData(const wchar_t* printerName, const wchar_t* key, const wchar_t* valueName, DWORD* type, void* data,
                      DWORD size, DWORD* needed) noexcept;
/// ERROR_FILE_NOT_FOUND for an unknown value.
DWORD SpoolerRemoveData(const wchar_t* printerName, const wchar_t* key, const wchar_t* valueName) noexcept;

// Jobs.

/// Appends a job to the queue and gives its number. ERROR_INVALID_PARAMETER for a number that is in use.
DWORD SpoolerAddJob(const wchar_t* printerName, const SpoolerJob& job, DWORD* jobId) noexcept;
/// Takes the job out of the queue at once, with no further status.
DWORD SpoolerRemoveJob(const wchar_t* printerName, DWORD jobId) noexcept;
/// JOB_STATUS_* bits, in place of those that the job has.
DWORD SpoolerSetJobStatus(const wchar_t* printerName, DWORD jobId, DWORD status) noexcept;
/// Null takes the text away.
DWORD SpoolerSetJobText(const wchar_t* printerName, DWORD jobId, const wchar_t* statusText) noexcept;
DWORD SpoolerSetJobPages(const wchar_t* printerName, DWORD jobId, DWORD totalPages, DWORD pagesPrinted) noexcept;
/// The Size that the job tells; 0: the length of its document.
DWORD SpoolerSetJobSize(const wchar_t* printerName, DWORD jobId, DWORD reportedSize) noexcept;
/// Null takes the device mode away.
DWORD SpoolerSetJobDevMode(const wchar_t* printerName, DWORD jobId, const DEVMODEW* devMode) noexcept;
/// What the job, as it stands, is: a packed JOB_INFO_2W. ERROR_INSUFFICIENT_BUFFER with the size in `needed`.
DWORD SpoolerPeekJob(const wchar_t* printerName, DWORD jobId, void* buffer, DWORD size, DWORD* needed) noexcept;
/// The spooled bytes of a queued job: up to `size` of them; gives how many there are, 0 for an unknown job or printer.
DWORD SpoolerJobBytes(const wchar_t* printerName, DWORD jobId, void* buffer, DWORD size) noexcept;
/// The document's name, as the client's side tells it late.
DWORD SpoolerSetJobDocument(const wchar_t* printerName, DWORD jobId, const wchar_t* document) noexcept;
/// The number of the next job that is given none: from there on numbers go up, leaving out those in use. A number can
/// so be used again. ERROR_INVALID_PARAMETER for 0.
DWORD SpoolerSetNextJobId(DWORD jobId) noexcept;

// Printing.

/// Something at the device that keeps jobs from being printed on.
struct SpoolerTrouble {
    DWORD jobStatus = JOB_STATUS_ERROR; ///< bits that the job at the device bears
    DWORD printerStatus = 0;            ///< bits that the printer bears
    const wchar_t* text = nullptr;      ///< status text of the job
};

/// When the printer's jobs move, and in real time how many bytes a second its device takes; 0: sending takes no time.
DWORD SpoolerSetPace(const wchar_t* printerName, SpoolerPace pace, DWORD bytesPerSecond) noexcept;
/// Does up to `steps` steps of the printer's printing, whatever its pace; tells in `done`, which may be null, how many
/// there were to do.
DWORD SpoolerStep(const wchar_t* printerName, DWORD steps, DWORD* done) noexcept;
/// Waits until the printer has nothing more to print: ERROR_SUCCESS, or ERROR_TIMEOUT after `timeoutMs` milliseconds.
DWORD SpoolerWaitUntilIdle(const wchar_t* printerName, DWORD timeoutMs) noexcept;
/// The device is in trouble until that is cleared: the job at the device, and each that comes there, bears its bits and
/// stands still. A later trouble takes the place of an earlier one.
DWORD SpoolerSetTrouble(const wchar_t* printerName, const SpoolerTrouble& trouble) noexcept;
/// The trouble is over, and its bits are gone; nothing happens if there is none.
DWORD SpoolerClearTrouble(const wchar_t* printerName) noexcept;
/// The time of day by which jobs and printers keep their times, in minutes after midnight GMT; `spoolerRealClock`: the
/// real one.
void SpoolerSetClock(DWORD minutes) noexcept;
/// Prints a queued job in one go, whatever its pace and whatever holds it back, but for a device that has stalled.
DWORD SpoolerDeliverJob(const wchar_t* printerName, DWORD jobId) noexcept;

/// How many documents of the printer were delivered since the world began; 0 for an unknown printer.
DWORD SpoolerDeliveryCount(const wchar_t* printerName) noexcept;
/// The delivery of that index, oldest first. ERROR_NO_MORE_ITEMS past the last.
DWORD SpoolerDeliveryAt(const wchar_t* printerName, DWORD index, SpoolerDelivery* delivery) noexcept;
/// The bytes of a delivered document: up to `size` of them; gives how many there are, 0 for an unknown one.
DWORD SpoolerDeliveryBytes(const wchar_t* printerName, DWORD index, void* buffer, DWORD size) noexcept;

// Notifications.

/// How many entries may wait in one notification; if there are more, all of them are lost. 0, as after a reset: any
/// number.
void SpoolerSetNotificationLimit(DWORD entries) noexcept;
/// Loses what waits in the printer's notifications, as if there had been too much.
DWORD SpoolerLoseNotifications(const wchar_t* printerName) noexcept;
/// Puts a batch in line in each notification of the printer: each FindNext... gives one such batch, before what came
/// about by itself. ERROR_NOT_FOUND if there is no notification.
DWORD SpoolerQueueBatch(const wchar_t* printerName, const SpoolerNotifyBatch& batch) noexcept;
/// Plays a recording (docs/recording.md) to each notification of the printer: those that are open, and those that are
/// opened until it is taken back with a null path. Each FindNext... gives one recorded batch, with what its
/// notification asks for, and the queue becomes as the batch tells it. All batches wait at once; if the printer's pace
/// is real time they come at their recorded times. Such a notification hears nothing else. Fails as `SpoolerLoadConfig`
/// does.
DWORD SpoolerPlayRecording(const wchar_t* printerName, const wchar_t* path) noexcept;
/// Waits until the clients have fetched all that waits in the printer's notifications: ERROR_SUCCESS, or ERROR_TIMEOUT
/// after `timeoutMs` milliseconds. A client may still be at work on what it has fetched.
DWORD SpoolerWaitUntilFetched(const wchar_t* printerName, DWORD timeoutMs) noexcept;
/// Change notifications that are open.
DWORD SpoolerOpenNotifications() noexcept;
/// Notification blocks that were given out and not freed.
DWORD SpoolerUnfreedNotifyBlocks() noexcept;

// Failures.

/// Puts a failure in place. Of several that match one call, the one injected first hits it.
void SpoolerInject(const SpoolerFailure& failure) noexcept;
/// Takes away all injected failures.
void SpoolerClearFailures() noexcept;
/// Injected failures that have not been used up; those for every call count too.
DWORD SpoolerPendingFailures() noexcept;

// The log, and what is open.

/// Calls in the log, each from the moment it begins; the oldest go when there are more than 100000.
DWORD SpoolerLogLength() noexcept;
/// The logged call of that index, oldest first. ERROR_NO_MORE_ITEMS past the last.
DWORD SpoolerLogAt(DWORD index, SpoolerCallRecord* record) noexcept;
void SpoolerClearLog() noexcept;
/// Logged calls of that function; `spoolerAnyLevel` and null mean any level and any printer.
DWORD SpoolerCalls(SpoolerCall call, DWORD level, const wchar_t* printerName) noexcept;
/// "OpenPrinterW" and so on; "" for a number outside the enumeration.
const wchar_t* SpoolerCallName(SpoolerCall call) noexcept;

/// Printer handles that are open; null means on any printer or on the server.
DWORD SpoolerOpenHandles(const wchar_t* printerName) noexcept;

} // extern "C"

// Conveniences over the functions above.

inline DWORD SpoolerCalls(SpoolerCall call)
{
    return ::SpoolerCalls(call, spoolerAnyLevel, nullptr);
}

inline std::vector<SpoolerCallRecord> SpoolerLog()
{
    std::vector<SpoolerCallRecord> log;
    for (SpoolerCallRecord record; ::SpoolerLogAt(static_cast<DWORD>(log.size()), &record) == ERROR_SUCCESS;)
        log.push_back(record);
    return log;
}

inline std::vector<BYTE> SpoolerJobBytes(const wchar_t* printerName, DWORD jobId)
{
    std::vector<BYTE> bytes(::SpoolerJobBytes(printerName, jobId, nullptr, 0));
    ::SpoolerJobBytes(printerName, jobId, bytes.data(), static_cast<DWORD>(bytes.size()));
    return bytes;
}

inline std::vector<BYTE> SpoolerDeliveryBytes(const wchar_t* printerName, DWORD index)
{
    std::vector<BYTE> bytes(::SpoolerDeliveryBytes(printerName, index, nullptr, 0));
    ::SpoolerDeliveryBytes(printerName, index, bytes.data(), static_cast<DWORD>(bytes.size()));
    return bytes;
}

inline DWORD SpoolerQueueBatch(const wchar_t* printerName, DWORD change, const std::vector<SpoolerNotifyEntry>& entries)
{
    SpoolerNotifyBatch batch;
    batch.change = change;
    batch.entries = entries.data();
    batch.count = static_cast<DWORD>(entries.size());
    return ::SpoolerQueueBatch(printerName, batch);
}

inline DWORD SpoolerSetTextData(const wchar_t* printerName, const wchar_t* key, const wchar_t* valueName,
                                const std::wstring& text)
{
    return ::SpoolerSetData(printerName, key, valueName, REG_SZ, text.c_str(),
                            static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
}

inline DWORD SpoolerSetNumberData(const wchar_t* printerName, const wchar_t* key, const wchar_t* valueName,
                                  DWORD number)
{
    return ::SpoolerSetData(printerName, key, valueName, REG_DWORD, &number, sizeof number);
}
