// SPDX-License-Identifier: MIT
#include "recorder/KnownFields.h"

#include <algorithm>
#include <array>

namespace {

constexpr WORD printer = PRINTER_NOTIFY_TYPE;
constexpr WORD job = JOB_NOTIFY_TYPE;
constexpr NotifyData number = NotifyData::Number;
constexpr NotifyData string = NotifyData::String;
constexpr NotifyData devMode = NotifyData::DevMode;
constexpr NotifyData systemTime = NotifyData::SystemTime;
constexpr NotifyData security = NotifyData::SecurityDescriptor;

constexpr std::array knownFields{
    KnownField{printer, PRINTER_NOTIFY_FIELD_SERVER_NAME,         string,     false, L"SERVER_NAME"        },
    KnownField{printer, PRINTER_NOTIFY_FIELD_PRINTER_NAME,        string,     true,  L"PRINTER_NAME"       },
    KnownField{printer, PRINTER_NOTIFY_FIELD_SHARE_NAME,          string,     true,  L"SHARE_NAME"         },
    KnownField{printer, PRINTER_NOTIFY_FIELD_PORT_NAME,           string,     true,  L"PORT_NAME"          },
    KnownField{printer, PRINTER_NOTIFY_FIELD_DRIVER_NAME,         string,     true,  L"DRIVER_NAME"        },
    KnownField{printer, PRINTER_NOTIFY_FIELD_COMMENT,             string,     true,  L"COMMENT"            },
    KnownField{printer, PRINTER_NOTIFY_FIELD_LOCATION,            string,     true,  L"LOCATION"           },
    KnownField{printer, PRINTER_NOTIFY_FIELD_DEVMODE,             devMode,    true,  L"DEVMODE"            },
    KnownField{printer, PRINTER_NOTIFY_FIELD_SEPFILE,             string,     true,  L"SEPFILE"            },
    KnownField{printer, PRINTER_NOTIFY_FIELD_PRINT_PROCESSOR,     string,     true,  L"PRINT_PROCESSOR"    },
    KnownField{printer, PRINTER_NOTIFY_FIELD_PARAMETERS,          string,     true,  L"PARAMETERS"         },
    KnownField{printer, PRINTER_NOTIFY_FIELD_DATATYPE,            string,     true,  L"DATATYPE"           },
    KnownField{printer, PRINTER_NOTIFY_FIELD_SECURITY_DESCRIPTOR, security,   true,  L"SECURITY_DESCRIPTOR"},
    KnownField{printer, PRINTER_NOTIFY_FIELD_ATTRIBUTES,          number,     true,  L"ATTRIBUTES"         },
    KnownField{printer, PRINTER_NOTIFY_FIELD_PRIORITY,            number,     true,  L"PRIORITY"           },
    KnownField{printer, PRINTER_NOTIFY_FIELD_DEFAULT_PRIORITY,    number,     true,  L"DEFAULT_PRIORITY"   },
    KnownField{printer, PRINTER_NOTIFY_FIELD_START_TIME,          number,     true,  L"START_TIME"         },
    KnownField{printer, PRINTER_NOTIFY_FIELD_UNTIL_TIME,          number,     true,  L"UNTIL_TIME"         },
    KnownField{printer, PRINTER_NOTIFY_FIELD_STATUS,              number,     true,  L"STATUS"             },
    KnownField{printer, PRINTER_NOTIFY_FIELD_STATUS_STRING,       string,     false, L"STATUS_STRING"      },
    KnownField{printer, PRINTER_NOTIFY_FIELD_CJOBS,               number,     true,  L"CJOBS"              },
    KnownField{printer, PRINTER_NOTIFY_FIELD_AVERAGE_PPM,         number,     true,  L"AVERAGE_PPM"        },
    KnownField{printer, PRINTER_NOTIFY_FIELD_TOTAL_PAGES,         number,     false, L"TOTAL_PAGES"        },
    KnownField{printer, PRINTER_NOTIFY_FIELD_PAGES_PRINTED,       number,     false, L"PAGES_PRINTED"      },
    KnownField{printer, PRINTER_NOTIFY_FIELD_TOTAL_BYTES,         number,     false, L"TOTAL_BYTES"        },
    KnownField{printer, PRINTER_NOTIFY_FIELD_BYTES_PRINTED,       number,     false, L"BYTES_PRINTED"      },
    KnownField{printer, PRINTER_NOTIFY_FIELD_OBJECT_GUID,         string,     true,  L"OBJECT_GUID"        },
    KnownField{printer, notifyFieldFriendlyName,                  string,     true,  L"FRIENDLY_NAME"      },
    KnownField{job,     JOB_NOTIFY_FIELD_PRINTER_NAME,            string,     true,  L"PRINTER_NAME"       },
    KnownField{job,     JOB_NOTIFY_FIELD_MACHINE_NAME,            string,     true,  L"MACHINE_NAME"       },
    KnownField{job,     JOB_NOTIFY_FIELD_PORT_NAME,               string,     true,  L"PORT_NAME"          },
    KnownField{job,     JOB_NOTIFY_FIELD_USER_NAME,               string,     true,  L"USER_NAME"          },
    KnownField{job,     JOB_NOTIFY_FIELD_NOTIFY_NAME,             string,     true,  L"NOTIFY_NAME"        },
    KnownField{job,     JOB_NOTIFY_FIELD_DATATYPE,                string,     true,  L"DATATYPE"           },
    KnownField{job,     JOB_NOTIFY_FIELD_PRINT_PROCESSOR,         string,     true,  L"PRINT_PROCESSOR"    },
    KnownField{job,     JOB_NOTIFY_FIELD_PARAMETERS,              string,     true,  L"PARAMETERS"         },
    KnownField{job,     JOB_NOTIFY_FIELD_DRIVER_NAME,             string,     true,  L"DRIVER_NAME"        },
    KnownField{job,     JOB_NOTIFY_FIELD_DEVMODE,                 devMode,    true,  L"DEVMODE"            },
    KnownField{job,     JOB_NOTIFY_FIELD_STATUS,                  number,     true,  L"STATUS"             },
    KnownField{job,     JOB_NOTIFY_FIELD_STATUS_STRING,           string,     true,  L"STATUS_STRING"      },
    KnownField{job,     JOB_NOTIFY_FIELD_SECURITY_DESCRIPTOR,     security,   false, L"SECURITY_DESCRIPTOR"},
    KnownField{job,     JOB_NOTIFY_FIELD_DOCUMENT,                string,     true,  L"DOCUMENT"           },
    KnownField{job,     JOB_NOTIFY_FIELD_PRIORITY,                number,     true,  L"PRIORITY"           },
    KnownField{job,     JOB_NOTIFY_FIELD_POSITION,                number,     true,  L"POSITION"           },
    KnownField{job,     JOB_NOTIFY_FIELD_SUBMITTED,               systemTime, true,  L"SUBMITTED"          },
    KnownField{job,     JOB_NOTIFY_FIELD_START_TIME,              number,     true,  L"START_TIME"         },
    KnownField{job,     JOB_NOTIFY_FIELD_UNTIL_TIME,              number,     true,  L"UNTIL_TIME"         },
    KnownField{job,     JOB_NOTIFY_FIELD_TIME,                    number,     true,  L"TIME"               },
    KnownField{job,     JOB_NOTIFY_FIELD_TOTAL_PAGES,             number,     true,  L"TOTAL_PAGES"        },
    KnownField{job,     JOB_NOTIFY_FIELD_PAGES_PRINTED,           number,     true,  L"PAGES_PRINTED"      },
    KnownField{job,     JOB_NOTIFY_FIELD_TOTAL_BYTES,             number,     true,  L"TOTAL_BYTES"        },
    KnownField{job,     JOB_NOTIFY_FIELD_BYTES_PRINTED,           number,     true,  L"BYTES_PRINTED"      },
};

} // namespace

std::span<const KnownField> KnownFields() noexcept
{
    return knownFields;
}

const KnownField* FindKnownField(WORD type, WORD field) noexcept
{
    const auto found = std::ranges::find_if(
        knownFields, [=](const KnownField& row) { return row.type == type && row.field == field; });
    return found == knownFields.end() ? nullptr : &*found;
}

const KnownField* FindKnownField(WORD type, std::wstring_view name) noexcept
{
    const auto found =
        std::ranges::find_if(knownFields, [=](const KnownField& row) { return row.type == type && row.name == name; });
    return found == knownFields.end() ? nullptr : &*found;
}

NotifyData KindOf(WORD type, WORD field, DWORD reserved) noexcept
{
    if (const KnownField* const known = FindKnownField(type, field)) return known->data;
    const bool told = reserved >= static_cast<DWORD>(NotifyData::Number) &&
                      reserved <= static_cast<DWORD>(NotifyData::SecurityDescriptor);
    return told ? static_cast<NotifyData>(reserved) : NotifyData::Number;
}
