// SPDX-License-Identifier: MIT
#pragma once

#include <ostream>

/// What the type library must hold: compiled callers, scripts and sinks are bound to each of these lines.
/// `members` is in the form of `MembersText`, after a line break.
struct GoldenInterface {
    const char* name;
    const char* identifier;
    const char* members;

    friend std::ostream& operator<<(std::ostream& stream, const GoldenInterface& row) { return stream << row.name; }
};

inline constexpr GoldenInterface goldenInterfaces[] = {
    {"IVRL",                        "{4960F5DA-4245-4E06-8208-99DCD38CEC47}", R"(
7 0x65 get Version([out, retval] BSTR* retVersion): property Version
8 0x66 get Platform([out, retval] BSTR* retPlatform): property Platform
)"},
    {"IPrintServer",                "{DA3B8796-841A-4CCA-9A90-821F311DA178}", R"(
7 0xb method EnumeratePrinters([in] IPrinters* argPrinter, [in, optional] VARIANT argFilter): method EnumPrinters
8 0x65 get Name([out, retval] BSTR* retName): property Name
9 0x66 get NetworkDomain([out, retval] BSTR* retNetworkDomain): property NetworkDomain
10 0x67 get NetworkWorkgroup([out, retval] BSTR* retNetworkWorkgroup): property NetworkWorkgroup
11 0x68 get OSName([out, retval] BSTR* retOSName): property OSName
12 0x69 get OSVersion([out, retval] BSTR* retOSVersion): property OSVersion
13 0x70 get OSEdition([out, retval] BSTR* retOSEdition): property OSEdition
14 0x6a get ProcessorCount([out, retval] long* retProcessorCount): property ProcessorCount
15 0x6b get ProcessorName([out, retval] BSTR* retProcessorName): property ProcessorName
16 0x6c get DNSDomain([out, retval] BSTR* retDNSDomain): property DNSDomain
17 0x6d get DNSName([out, retval] BSTR* retDNSName): property DNSName
18 0x6e get ProcessorArchitecture([out, retval] BSTR* retProcessorArchitecture): property ProcessorArch
19 0x6f get Description([out, retval] BSTR* retDescription): property Description
)"},
    {"IPrinter",                    "{7DA38F68-1739-4407-9A8A-4FA33B5F1A13}", R"(
7 0x1 method Initialize([in] BSTR argPrinterName): method Initialize
8 0xb method SendFile([in] BSTR argFileName, [in] BSTR argJobName): method SendFile
9 0x65 get Name([out, retval] BSTR* retName): property Name
10 0x66 get ServerName([out, retval] BSTR* retServerName): property ServerName
11 0x67 get ShareName([out, retval] BSTR* retShareName): property ShareName
12 0x67 put ShareName([in] BSTR): property ShareName
13 0x68 get PortName([out, retval] BSTR* retPortName): property PortName
14 0x68 put PortName([in] BSTR): property PortName
15 0x69 get ModelName([out, retval] BSTR* retModelName): property ModelName
16 0x6a get Comment([out, retval] BSTR* retComment): property Comment
17 0x6a put Comment([in] BSTR): property Comment
18 0x6b get Location([out, retval] BSTR* retLocation): property Location
19 0x6b put Location([in] BSTR): property Location
20 0x6c get Local([out, retval] VARIANT_BOOL* retLocal): property Local
21 0x6d get Network([out, retval] VARIANT_BOOL* retNetwork): property Network
22 0x6e get Shared([out, retval] VARIANT_BOOL* retShared): property Shared
23 0x6e put Shared([in] VARIANT_BOOL): property Shared
24 0xc9 get Queue([out, retval] IPrintQueue** retQueue): property PrintQueue
25 0xca get Status([out, retval] IPrinterStatus** retStatus): property Status
26 0xcb get Configuration([out, retval] IPrinterConfiguration** retConfiguration): property Configuration
27 0xcc get Port([out, retval] IPrinterPort** retPort): property Port
28 0xcd get DefaultSchedule([out, retval] IPrintJobSchedule** retDefaultSchedule): property DefaultSchedule
29 0xce get Capabilities([out, retval] IPrinterCapabilities** retCapabilities): property Capabilities
)"},
    {"IPrinterStatus",              "{CB8B3045-7B3D-41C9-BD1F-04BE6ED9BFA5}", R"(
7 0x65 get Text([out, retval] BSTR* retText): property Text
8 0x66 get Busy([out, retval] VARIANT_BOOL* retBusy): property Busy
9 0x67 get DoorOpen([out, retval] VARIANT_BOOL* retDoorOpen): property DoorOpen
10 0x68 get Initializing([out, retval] VARIANT_BOOL* retInitializing): property Initializing
11 0x69 get IOActive([out, retval] VARIANT_BOOL* retIOActive): property IOActive
12 0x6a get ManualFeed([out, retval] VARIANT_BOOL* retManualFeed): property ManualFeed
13 0x6b get NoToner([out, retval] VARIANT_BOOL* retNoToner): property NoToner
14 0x6c get NotAvailable([out, retval] VARIANT_BOOL* retNotAvailable): property NotAvailable
15 0x6d get Offline([out, retval] VARIANT_BOOL* retOffline): property Offline
16 0x6e get OutOfMemory([out, retval] VARIANT_BOOL* retOutOfMemory): property OutOfMemory
17 0x6f get OutputFull([out, retval] VARIANT_BOOL* retOutputFull): property OutputFull
18 0x70 get PaperJam([out, retval] VARIANT_BOOL* retPaperJam): property PaperJam
19 0x71 get PaperOut([out, retval] VARIANT_BOOL* retPaperOut): property PaperOut
20 0x72 get PaperProblem([out, retval] VARIANT_BOOL* retPaperProblem): property PaperProblem
21 0x73 get Paused([out, retval] VARIANT_BOOL* retPaused): property Paused
22 0x74 get PowerSave([out, retval] VARIANT_BOOL* retPowerSave): property PowerSave
23 0x75 get Printing([out, retval] VARIANT_BOOL* retPrinting): property Printing
24 0x76 get Processing([out, retval] VARIANT_BOOL* retProcessing): property Processing
25 0x77 get TonerLow([out, retval] VARIANT_BOOL* retTonerLow): property TonerLow
26 0x78 get UserInterventionRequired([out, retval] VARIANT_BOOL* retUserInterventionRequired): property UserInterventionRequired
27 0x79 get Waiting([out, retval] VARIANT_BOOL* retWaiting): property Waiting
28 0x7a get WarmingUp([out, retval] VARIANT_BOOL* retWarmingUp): property WarmingUp
29 0x7b get LabelPresent([out, retval] VARIANT_BOOL* retLabelPresent): property LabelPresent
30 0x7c get PrinterPaused([out, retval] VARIANT_BOOL* retPrinterPaused): property PrinterPaused
31 0x7d get BatteryLow([out, retval] VARIANT_BOOL* retBatteryLow): property BatteryLow
32 0x7e get BatteryCharging([out, retval] VARIANT_BOOL* retBatteryCharging): property BatteryCharging
33 0x7f get RibbonLow([out, retval] VARIANT_BOOL* retRibbonLow): property RibbonLow
34 0x80 get RibbonOut([out, retval] VARIANT_BOOL* retRibbonOut): property RibbonOut
35 0x81 get RibbonError([out, retval] VARIANT_BOOL* retRibbonError): property RibbonError
36 0x82 get PaperLow([out, retval] VARIANT_BOOL* retPaperLow): property PaperLow
37 0x83 get HeadOpen([out, retval] VARIANT_BOOL* retHeadOpen): property HeadOpen
38 0x84 get HeadError([out, retval] VARIANT_BOOL* retHeadError): property HeadError
39 0x85 get CutterError([out, retval] VARIANT_BOOL* retCutterError): property CutterError
40 0x86 get Warning([out, retval] VARIANT_BOOL* retWarning): property Warning
41 0x87 get Error([out, retval] VARIANT_BOOL* retError): property Error
42 0x88 get OdometerPages([out, retval] unsigned long* retOdometerPages): property OdometerPages
43 0x89 get OdometerDistance([out, retval] float* retOdometerDistance): property OdometerDistance
)"},
    {"IPrinters",                   "{6A693D9C-2114-4ED0-9E3F-5538E37DB453}", R"(
7 -4 get _NewEnum([out, retval] IUnknown** retEnum): property _NewEnum
8 0x0 get Item([in] VARIANT Index, [out, retval] IPrinter** retPrinter): property Item
9 0x1 get Count([out, retval] long* retCount): property Count
10 0xb method Create([out, retval] IPrinter** retPrinter): method Create
11 0xc method Add([in] VARIANT argPrinter): method Add
12 0xd method Remove([in] VARIANT argPrinter): method Remove
13 0xe method RemoveAll(): method RemoveAll
)"},
    {"IPrintersFilter",             "{A9575E55-5967-4893-84E4-68FA8CBD2FB2}", R"(
7 0x65 get Local([out, retval] VARIANT_BOOL* retLocal): property Local
8 0x65 put Local([in] VARIANT_BOOL): property Local
9 0x66 get Network([out, retval] VARIANT_BOOL* retNetwork): property Network
10 0x66 put Network([in] VARIANT_BOOL): property Network
11 0x67 get Shared([out, retval] VARIANT_BOOL* retShared): property Shared
12 0x67 put Shared([in] VARIANT_BOOL): property Shared
)"},
    {"IPrintQueue",                 "{A9BD73D1-39D3-4DE1-8BA0-CE80A5D98593}", R"(
7 0xb method EnumerateJobs([in] IPrintJobs* argJobsCollection, [in, optional] VARIANT argFilter): method EnumerateJobs
8 0xc method Pause(): method Pause
9 0xd method Resume(): method Resume
10 0xe method Purge(): method Purge
)"},
    {"IPrintJob",                   "{B152DD65-94F8-4D75-BD85-EBD48BD7681E}", R"(
7 0x1 method Initialize([in] BSTR argPrinterName, [in] long argJobID): method Initialize
8 0xb method Cancel(): method Cancel
9 0xc method Pause(): method Pause
10 0xd method Resume(): method Resume
11 0xe method Restart(): method Restart
12 0x65 get JobId([out, retval] long* retJobId): property JobId
13 0x66 get PrinterName([out, retval] BSTR* retPrinterName): property PrinterName
14 0x67 get Name([out, retval] BSTR* retName): property Name
15 0x68 get MachineName([out, retval] BSTR* retMachineName): property MachineName
16 0x69 get UserName([out, retval] BSTR* retUserName): property UserName
17 0x6a get SubmittedTime([out, retval] DATE* retSubmittedTime): property SubmittedTime
18 0x6b get TotalPages([out, retval] long* retTotalPages): property TotalPages
19 0x6c get PagesPrinted([out, retval] long* retPagesPrinted): property PagesPrinted
20 0x6d get Size([out, retval] long* retSize): property Size
21 0x6e get DataType([out, retval] BSTR* retDataType): property DataType
22 0x6f get NotifyUser([out, retval] BSTR* retNotifyUser): property NotifyUser
23 0x6f put NotifyUser([in] BSTR): property NotifyUser
24 0x70 get PrintProcessor([out, retval] BSTR* retPrintProcessor): property PrintProcessor
25 0xc9 get Status([out, retval] IPrintJobStatus** retStatus): property Status
26 0xca get Schedule([out, retval] IPrintJobSchedule** retSchedule): property Schedule
)"},
    {"IPrintJobStatus",             "{9A9189E5-62FD-41DD-83FC-18C3A515E612}", R"(
7 0x65 get Text([out, retval] BSTR* retText): property Text
8 0x66 get Spooling([out, retval] VARIANT_BOOL* retSpooling): property Spooling
9 0x67 get Printing([out, retval] VARIANT_BOOL* retPrinting): property Printing
10 0x68 get Paused([out, retval] VARIANT_BOOL* retPaused): property Paused
11 0x69 get Cancelled([out, retval] VARIANT_BOOL* retCancelled): property Cancelled
12 0x6a get Sent([out, retval] VARIANT_BOOL* retSent): property Sent
13 0x6b get Printed([out, retval] VARIANT_BOOL* retPrinted): property Printed
14 0x6c get Completed([out, retval] VARIANT_BOOL* retCompleted): property Completed
15 0x6d get UserInterventionRequired([out, retval] VARIANT_BOOL* retUserInterventionRequired): property UserInterventionRequired
16 0x6e get Restarted([out, retval] VARIANT_BOOL* retRestarted): property Restarted
)"},
    {"IPrintJobs",                  "{9DAD83FA-7FF8-4751-B291-7D2BFEF23354}", R"(
7 -4 get _NewEnum([out, retval] IUnknown** retEnum): property _NewEnum
8 0x0 get Item([in] long Index, [out, retval] IPrintJob** retJob): property Item
9 0x1 get Count([out, retval] long* retCount): property Count
10 0xb method Create([out, retval] IPrintJob** retJob): method Create
11 0xc method Add([in] IPrintJob* argJob): method Add
12 0xd method Remove([in] IPrintJob* argJob): method Remove
13 0xe method RemoveAll(): method RemoveAll
14 0xf method Find([in] BSTR argPrinterName, [in] long argJobID, [out, retval] IPrintJob** retJob): method Find
)"},
    {"IPrintJobsFilter",            "{9AFAF7FC-325C-44A7-A08B-B3AF2A6F0467}", R"(
)"},
    {"IPrinterConfiguration",       "{BC458E81-020B-4E5E-BFE1-3058A7F07CC9}", R"(
7 0xb method Import([in] BSTR argFileName, [in, optional] VARIANT argFilter): method Import
8 0xc method Export([in] BSTR argFileName, [in, optional] VARIANT argFilter): method Export
9 0xd method ResetToDefaults([in, optional] VARIANT argFilter): method ResetToDefaults
)"},
    {"IPrinterConfigurationFilter", "{C6FF98F2-15AC-42C1-BAAC-AE1EC28B0AB2}", R"(
7 0x65 get Stocks([out, retval] VARIANT_BOOL* retStocks): property Stocks
8 0x65 put Stocks([in] VARIANT_BOOL): property Stocks
9 0x66 get Presets([out, retval] VARIANT_BOOL* retPresets): property Presets
10 0x66 put Presets([in] VARIANT_BOOL): property Presets
11 0x67 get UtilityFonts([out, retval] VARIANT_BOOL* retUtilityFonts): property UtilityFonts
12 0x67 put UtilityFonts([in] VARIANT_BOOL): property UtilityFonts
13 0x69 get FontSubstitutions([out, retval] VARIANT_BOOL* retFontSubstitutions): property FontSubstitutions
14 0x69 put FontSubstitutions([in] VARIANT_BOOL): property FontSubstitutions
15 0x6a get DownloadedFonts([out, retval] VARIANT_BOOL* retDownloadedFonts): property DownloadedFonts
16 0x6a put DownloadedFonts([in] VARIANT_BOOL): property DownloadedFonts
17 0x6b get OptionalFonts([out, retval] VARIANT_BOOL* retOptionalFonts): property OptionalFonts
18 0x6b put OptionalFonts([in] VARIANT_BOOL): property OptionalFonts
19 0x6c get PrinterProperties([out, retval] VARIANT_BOOL* retPrinterProperties): property PrinterProperties
20 0x6c put PrinterProperties([in] VARIANT_BOOL): property PrinterProperties
21 0x6d get PrintingPreferences([out, retval] VARIANT_BOOL* retPrintingPreferences): property PrintingPreferences
22 0x6d put PrintingPreferences([in] VARIANT_BOOL): property PrintingPreferences
23 0x6e get NetworkSettings([out, retval] VARIANT_BOOL* retNetworkSettings): property Network
24 0x6e put NetworkSettings([in] VARIANT_BOOL): property Network
)"},
    {"IQueryCommand",               "{F069C0DF-62BF-4B9F-90BD-BD11025D5C23}", R"(
7 0x65 get Binary([out, retval] VARIANT* retBinary): property Binary
8 0x65 put Binary([in] VARIANT): property Binary
9 0x66 get Text([out, retval] BSTR* retText): property Text
10 0x66 put Text([in] BSTR): property Text
11 0x67 get Hexadecimal([out, retval] BSTR* retHexadecimal): property Hexadecimal
12 0x67 put Hexadecimal([in] BSTR): property Hexadecimal
13 0x68 get SendTimeout([out, retval] long* retSendTimeout): property SendTimeout
14 0x68 put SendTimeout([in] long): property SendTimeout
15 0x69 get ReceiveStartTimeout([out, retval] long* retReceiveStartTimeout): property ReceiveInitialTimeout
16 0x69 put ReceiveStartTimeout([in] long): property ReceiveInitialTimeout
17 0x6a get ReceiveIntervalTimeout([out, retval] long* retReceiveIntervalTimeout): property ReceiveInternalTimeout
18 0x6a put ReceiveIntervalTimeout([in] long): property ReceiveInternalTimeout
)"},
    {"IQueryResponse",              "{0B932CFD-1341-4743-AB75-FCB4E3C446A2}", R"(
7 0x65 get Binary([out, retval] VARIANT* retBinary): property Binary
8 0x66 get Text([out, retval] BSTR* retText): property Text
9 0x67 get Hexadecimal([out, retval] BSTR* retHexadecimal): property Hexadecimal
10 0x68 get Responded([out, retval] VARIANT_BOOL* retResponded): property Responded
11 0x69 get Failed([out, retval] VARIANT_BOOL* retFailed): property Failed
12 0x6a get Pending([out, retval] VARIANT_BOOL* retPending): property Pending
)"},
    {"IPrinterPort",                "{AF800A05-DB09-42AE-B503-AF8F733A5091}", R"(
7 0x65 get Name([out, retval] BSTR* retName): property Name
8 0x66 get Description([out, retval] BSTR* retDescription): property Description
9 0x67 get MonitorName([out, retval] BSTR* retMonitorName): property MonitorName
10 0x68 get Bidirectional([out, retval] VARIANT_BOOL* retBidirectional): property Bidirectional
11 0x69 get Disconnected([out, retval] VARIANT_BOOL* retDisconnected): property Disconnected
12 0xc9 method StartQuery([in] IQueryCommand* argCommand, [out, retval] long* retQueryNumber): method StartQuery
13 0xca method WaitForQuery([in] long argQueryNumber): method WaitForQuery
14 0xcb method GetQueryResponse([in] long argQueryNumber, [out, retval] IQueryResponse** retResponse): method GetQueryResponse
)"},
    {"IPrintJobSchedule",           "{375C6CB9-8796-44E8-A82C-A99A40B80898}", R"(
7 0x65 get Priority([out, retval] long* retPriority): property Priority
8 0x65 put Priority([in] long): property Priority
9 0x66 get StartTime([out, retval] BSTR* retStartTime): property StartTime
10 0x66 put StartTime([in] BSTR): property StartTime
11 0x67 get UntilTime([out, retval] BSTR* retUntilTime): property UntilTime
12 0x67 put UntilTime([in] BSTR): property UntilTime
)"},
    {"IPrinterCapabilities",        "{BE5FA350-42A1-4B48-B6C3-A9774EE74602}", R"(
7 0x65 get Collate([out, retval] VARIANT_BOOL* retCollate): property Collate
8 0x66 get Color([out, retval] VARIANT_BOOL* retColor): property Color
9 0x67 get Duplex([out, retval] VARIANT_BOOL* retDuplex): property Duplex
10 0x68 get MaximumCopies([out, retval] unsigned long* retMaximumCopies): property MaximumCopies
11 0x69 get PrintSpeed([out, retval] BSTR* retPrintSpeed): property PrintSpeed
12 0x6a get Staple([out, retval] VARIANT_BOOL* retStaple): property Staple
)"},
};

inline constexpr GoldenInterface goldenEvents[] = {
    {"_IPrinterEvents",    "{0E0C83E7-405A-46E8-AC5E-9206DD47AB9C}", R"(
0x1 method OnPrinterNameChanged([in] IPrinter* argPrinter, [in] BSTR argOldPrinterName, [in] BSTR argNewPrinterName): method OnPrinterNameChanged
0x2 method OnShareNameChanged([in] IPrinter* argPrinter): method OnShareNameChanged
0x3 method OnPortNameChanged([in] IPrinter* argPrinter): method OnPortNameChanged
0x4 method OnCommentChanged([in] IPrinter* argPrinter): method OnCommentChanged
0x5 method OnLocationChanged([in] IPrinter* argPrinter): method OnLocationChanged
0x6 method OnPriorityChanged([in] IPrinter* argPrinter): method OnPriorityChanged
0x7 method OnStartTimeChanged([in] IPrinter* argPrinter): method OnStartTimeChanged
0x8 method OnUntilTimeChanged([in] IPrinter* argPrinter): method OnUntilTimeChanged
0x9 method OnStatusChanged([in] IPrinter* argPrinter): method OnStatusChanged
0xa method OnOdometerChanged([in] IPrinter* argPrinter): method OnOdometerChanged
)"},
    {"_IPrintJobEvents",   "{C7F0E956-CE32-4B02-8F47-6424FC3FD4CC}", R"(
0x1 method OnJobStarted([in] IPrintJob* argJob): method OnJobStarted
0x2 method OnJobPaused([in] IPrintJob* argJob): method OnJobPaused
0x3 method OnJobResumed([in] IPrintJob* argJob): method OnJobResumed
0x4 method OnJobCancelled([in] IPrintJob* argJob): method OnJobCancelled
0x5 method OnJobSent([in] IPrintJob* argJob): method OnJobSent
0x6 method OnJobPrinted([in] IPrintJob* argJob): method OnJobPrinted
0x7 method OnJobCompleted([in] IPrintJob* argJob): method OnJobCompleted
0x8 method OnJobError([in] IPrintJob* argJob, [in] IPrinterStatus* argPrinterStatus): method OnJobError
0x9 method OnJobFinalized([in] IPrintJob* argJob): method OnJobFinalized
0xa method OnJobStatusChanged([in] IPrintJob* argJob, [in] IPrintJobStatus* argJobStatus): method OnJobStatusChanged
0xb method OnJobTotalPagesChanged([in] IPrintJob* argJob, [in] long argOldTotalPages, [in] long argNewTotalPages): method OnJobTotalPagesChanged
0xc method OnJobPagesPrintedChanged([in] IPrintJob* argJob, [in] long argOldPagesPrinted, [in] long argNewPagesPrinted): method OnJobPagesPrintedChanged
0xd method OnJobPriorityChanged([in] IPrintJob* argJob, [in] long argOldPriority, [in] long argNewPriority): method OnJobPriorityChanged
0xe method OnJobPositionChanged([in] IPrintJob* argJob, [in] long argOldPosition, [in] long argNewPosition): method OnJobPositionChanged
)"},
    {"_IPrintQueueEvents", "{FBAD5414-A07B-4BF2-930C-F0A8492311FA}", R"(
0xf method OnJobNew([in] IPrintJob* argJob): method OnJobNew
0x1 method OnJobStarted([in] IPrintJob* argJob): method OnJobStarted
0x2 method OnJobPaused([in] IPrintJob* argJob): method OnJobPaused
0x3 method OnJobResumed([in] IPrintJob* argJob): method OnJobResumed
0x4 method OnJobCancelled([in] IPrintJob* argJob): method OnJobCancelled
0x5 method OnJobSent([in] IPrintJob* argJob): method OnJobSent
0x6 method OnJobPrinted([in] IPrintJob* argJob): method OnJobPrinted
0x7 method OnJobCompleted([in] IPrintJob* argJob): method OnJobCompleted
0x8 method OnJobError([in] IPrintJob* argJob, [in] IPrinterStatus* argPrinterStatus): method OnJobError
0x9 method OnJobFinalized([in] IPrintJob* argJob): method OnJobFinalized
0xa method OnJobStatusChanged([in] IPrintJob* argJob, [in] IPrintJobStatus* argJobStatus): method OnJobStatusChanged
0xb method OnJobTotalPagesChanged([in] IPrintJob* argJob, [in] long argOldTotalPages, [in] long argNewTotalPages): method OnJobTotalPagesChanged
0xc method OnJobPagesPrintedChanged([in] IPrintJob* argJob, [in] long argOldPagesPrinted, [in] long argNewPagesPrinted): method OnJobPagesPrintedChanged
0xd method OnJobPriorityChanged([in] IPrintJob* argJob, [in] long argOldPriority, [in] long argNewPriority): method OnJobPriorityChanged
0xe method OnJobPositionChanged([in] IPrintJob* argJob, [in] long argOldPosition, [in] long argNewPosition): method OnJobPositionChanged
)"},
};
