// SPDX-License-Identifier: MIT
#include "spooler/records/PrinterRecord.h"

namespace {

PrinterFields FieldsOf(const SpoolerPrinter& printer)
{
    return {
        .name = TextOrEmpty(printer.printerName),
        .serverName = CopyText(printer.serverName),
        .shareName = CopyText(printer.shareName),
        .portName = CopyText(printer.portName),
        .driverName = CopyText(printer.driverName),
        .comment = CopyText(printer.comment),
        .location = CopyText(printer.location),
        .sepFile = CopyText(printer.sepFile),
        .printProcessor = CopyText(printer.printProcessor),
        .datatype = CopyText(printer.datatype),
        .parameters = CopyText(printer.parameters),
        .devMode = CopyDevMode(printer.devMode),
        .userDevMode = {},
        .securityDescriptor = CopyBytes(printer.securityDescriptor, printer.securityDescriptorBytes),
        .attributes = printer.attributes,
        .priority = printer.priority,
        .defaultPriority = printer.defaultPriority,
        .startTime = printer.startTime,
        .untilTime = printer.untilTime,
        .status = printer.status,
        .averagePpm = printer.averagePpm,
        .deviceNotSelectedTimeout = printer.deviceNotSelectedTimeout,
        .transmissionRetryTimeout = printer.transmissionRetryTimeout,
    };
}

} // namespace

PrinterRecord::PrinterRecord(const SpoolerPrinter& printer)
    : PrinterFields(FieldsOf(printer)), grantedAccess(printer.grantedAccess), pace(printer.pace),
      bytesPerSecond(printer.bytesPerSecond), trueEndOfJob(printer.trueEndOfJob), lateNames(printer.lateNames),
      outputFolder(TextOrEmpty(printer.outputFolder))
{
}

bool PrinterRecord::IsLocal() const noexcept
{
    return (attributes & PRINTER_ATTRIBUTE_LOCAL) || !IsConnection();
}
