// SPDX-License-Identifier: MIT
#include "spooler/records/DirectoryMirror.h"

#include <array>

namespace {

/// A connection's name without its server.
std::wstring OwnName(const PrinterFields& printer)
{
    return printer.name.substr(printer.name.find_last_of(L'\\') + 1); // npos + 1 is the beginning
}

template <OptionalText PrinterFields::*field>
std::wstring TextOf(const PrinterFields& printer)
{
    return (printer.*field).value_or(L"");
}

struct MirroredField {
    std::wstring_view name;
    std::wstring (*read)(const PrinterFields& printer);
};

constexpr std::array mirroredFields{
    MirroredField{SPLDS_PRINTER_NAME, OwnName                           },
    MirroredField{SPLDS_DESCRIPTION,  TextOf<&PrinterFields::comment>   },
    MirroredField{SPLDS_LOCATION,     TextOf<&PrinterFields::location>  },
    MirroredField{SPLDS_DRIVER_NAME,  TextOf<&PrinterFields::driverName>},
};

} // namespace

void FillDirectoryKey(PrinterRecord& printer)
{
    for (const MirroredField& field : mirroredFields) {
        if (!printer.data.Find(SPLDS_SPOOLER_KEY, field.name))
            printer.data.Set(SPLDS_SPOOLER_KEY, field.name, TextValue(field.read(printer)));
    }
}

void UpdateDirectoryKey(const PrinterFields& before, PrinterRecord& printer)
{
    for (const MirroredField& field : mirroredFields) {
        const std::wstring text = field.read(printer);
        if (text != field.read(before)) printer.data.Set(SPLDS_SPOOLER_KEY, field.name, TextValue(text));
    }
}
