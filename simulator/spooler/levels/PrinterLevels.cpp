// SPDX-License-Identifier: MIT
#include "spooler/levels/PrinterLevels.h"

#include "spooler/SpoolerError.h"

#include <algorithm>
#include <array>

namespace {

/// "Printer,Driver,Location", as level 1 describes a printer.
std::wstring Description(const PrinterView& view)
{
    return view.Name() + L"," + view.printer.driverName.value_or(L"") + L"," + view.printer.location.value_or(L"");
}

void PackInfo1(PackedWriter& writer, const PrinterView& view)
{
    auto& info = writer.Add<PRINTER_INFO_1W>();
    info.Flags = PRINTER_ENUM_ICON8;
    writer.Text(info.pDescription, Description(view));
    writer.Text(info.pName, view.Name());
    writer.Text(info.pComment, view.printer.comment);
}

void PackNumbers2(PRINTER_INFO_2W& info, const PrinterRecord& printer)
{
    info.Attributes = printer.attributes;
    info.Priority = printer.priority;
    info.DefaultPriority = printer.defaultPriority;
    info.StartTime = printer.startTime;
    info.UntilTime = printer.untilTime;
    info.Status = printer.status;
    info.cJobs = printer.queue.Count();
    info.AveragePPM = printer.averagePpm;
}

void PackInfo2(PackedWriter& writer, const PrinterView& view)
{
    const PrinterRecord& printer = view.printer;
    auto& info = writer.Add<PRINTER_INFO_2W>();
    writer.Text(info.pServerName, view.ServerName());
    writer.Text(info.pPrinterName, view.Name());
    writer.Text(info.pShareName, printer.shareName);
    writer.Text(info.pPortName, printer.portName);
    writer.Text(info.pDriverName, printer.driverName);
    writer.Text(info.pComment, printer.comment);
    writer.Text(info.pLocation, printer.location);
    writer.Block(info.pDevMode, printer.devMode);
    writer.Text(info.pSepFile, printer.sepFile);
    writer.Text(info.pPrintProcessor, printer.printProcessor);
    writer.Text(info.pDatatype, printer.datatype);
    writer.Text(info.pParameters, printer.parameters);
    if (view.withSecurity) writer.Block(info.pSecurityDescriptor, printer.securityDescriptor);
    PackNumbers2(info, printer);
}

void PackInfo3(PackedWriter& writer, const PrinterView& view)
{
    auto& info = writer.Add<PRINTER_INFO_3>();
    if (view.withSecurity) writer.Block(info.pSecurityDescriptor, view.printer.securityDescriptor);
}

void PackInfo4(PackedWriter& writer, const PrinterView& view)
{
    auto& info = writer.Add<PRINTER_INFO_4W>();
    writer.Text(info.pPrinterName, view.Name());
    writer.Text(info.pServerName, view.ServerName());
    info.Attributes = view.printer.attributes;
}

void PackInfo5(PackedWriter& writer, const PrinterView& view)
{
    auto& info = writer.Add<PRINTER_INFO_5W>();
    writer.Text(info.pPrinterName, view.Name());
    writer.Text(info.pPortName, view.printer.portName);
    info.Attributes = view.printer.attributes;
    info.DeviceNotSelectedTimeout = view.printer.deviceNotSelectedTimeout;
    info.TransmissionRetryTimeout = view.printer.transmissionRetryTimeout;
}

void PackInfo6(PackedWriter& writer, const PrinterView& view)
{
    writer.Add<PRINTER_INFO_6>().dwStatus = view.printer.status;
}

void PackInfo7(PackedWriter& writer, const PrinterView&)
{
    writer.Add<PRINTER_INFO_7W>().dwAction = DSPRINT_UNPUBLISH; // there is no directory to publish in
}

void PackInfo8(PackedWriter& writer, const PrinterView& view)
{
    writer.Block(writer.Add<PRINTER_INFO_8W>().pDevMode, view.printer.devMode);
}

void PackInfo9(PackedWriter& writer, const PrinterView& view)
{
    const Bytes& own = view.printer.userDevMode;
    writer.Block(writer.Add<PRINTER_INFO_9W>().pDevMode, own.empty() ? view.printer.devMode : own);
}

struct PrinterLevel {
    DWORD level;
    size_t size;
    bool enumerated; // EnumPrintersW knows it too
    void (*pack)(PackedWriter& writer, const PrinterView& view);
};

constexpr std::array printerLevels{
    PrinterLevel{1, sizeof(PRINTER_INFO_1W), true,  PackInfo1},
    PrinterLevel{2, sizeof(PRINTER_INFO_2W), true,  PackInfo2},
    PrinterLevel{3, sizeof(PRINTER_INFO_3),  false, PackInfo3},
    PrinterLevel{4, sizeof(PRINTER_INFO_4W), true,  PackInfo4},
    PrinterLevel{5, sizeof(PRINTER_INFO_5W), true,  PackInfo5},
    PrinterLevel{6, sizeof(PRINTER_INFO_6),  false, PackInfo6},
    PrinterLevel{7, sizeof(PRINTER_INFO_7W), false, PackInfo7},
    PrinterLevel{8, sizeof(PRINTER_INFO_8W), false, PackInfo8},
    PrinterLevel{9, sizeof(PRINTER_INFO_9W), false, PackInfo9},
};

} // namespace

std::wstring PrinterView::Name() const
{
    return serverPrefix.empty() || printer.name.starts_with(L"\\\\") ? printer.name
                                                                     : serverPrefix + L"\\" + printer.name;
}

OptionalText PrinterView::ServerName() const
{
    return serverPrefix.empty() ? printer.serverName : OptionalText(serverPrefix);
}

PackedWriter PackPrinters(const std::vector<PrinterView>& printers, DWORD level, bool forOne)
{
    const auto found = std::ranges::find(printerLevels, level, &PrinterLevel::level);
    Require(found != printerLevels.end() && (forOne || found->enumerated), ERROR_INVALID_LEVEL);
    PackedWriter writer(found->size, printers.size());
    for (const PrinterView& view : printers) found->pack(writer, view);
    return writer;
}
