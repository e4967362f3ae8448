// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/config/ConfigForms.h"
#include "spooler/config/ConfigSections.h"
#include "spooler/config/ConfigWords.h"

#include <array>

/// The keys of the sections, with the fields that they stand for: what ConfigSections.cpp reads and ConfigWriter.cpp
/// writes.

template <typename Record>
struct TextKey {
    std::wstring_view key;
    OptionalText Record::*field;
    bool isAlwaysTold = false; ///< its plain value comes from elsewhere
};

/// A way to write a number, and to read it back.
struct NumberForm {
    DWORD (*read)(const ConfigEntry& entry);
    std::wstring (*write)(DWORD number);
};

template <typename Record>
struct NumberKey {
    std::wstring_view key;
    DWORD Record::*field;
    NumberForm form;
};

inline constexpr NumberForm inDecimal{ConfigNumber, DecimalForm};
inline constexpr NumberForm asTimeOfDay{ConfigMinutes, MinutesForm};

template <const auto& words>
inline constexpr NumberForm inWords{[](const ConfigEntry& entry) { return ConfigBits(entry, words); },
                                    [](DWORD bits) { return BitsForm(bits, words); }};

inline constexpr std::array machineTexts{
    TextKey<Described>{L"user",    &Described::userName   },
    TextKey<Described>{L"machine", &Described::machineName},
};

inline constexpr std::array machineNumbers{
    NumberKey<Described>{L"access",   &Described::serverAccess, inWords<serverAccessWords>},
    NumberKey<Described>{L"next job", &Described::nextJobId,    inDecimal                 },
};

inline constexpr std::array printerTexts{
    TextKey<PrinterRecord>{L"server",          &PrinterRecord::serverName    },
    TextKey<PrinterRecord>{L"share",           &PrinterRecord::shareName     },
    TextKey<PrinterRecord>{L"port",            &PrinterRecord::portName      },
    TextKey<PrinterRecord>{L"driver",          &PrinterRecord::driverName    },
    TextKey<PrinterRecord>{L"comment",         &PrinterRecord::comment       },
    TextKey<PrinterRecord>{L"location",        &PrinterRecord::location      },
    TextKey<PrinterRecord>{L"separator file",  &PrinterRecord::sepFile       },
    TextKey<PrinterRecord>{L"print processor", &PrinterRecord::printProcessor},
    TextKey<PrinterRecord>{L"data type",       &PrinterRecord::datatype      },
    TextKey<PrinterRecord>{L"parameters",      &PrinterRecord::parameters    },
};

inline constexpr std::array printerNumbers{
    NumberKey<PrinterRecord>{L"priority",             &PrinterRecord::priority,                 inDecimal                  },
    NumberKey<PrinterRecord>{L"default priority",     &PrinterRecord::defaultPriority,          inDecimal                  },
    NumberKey<PrinterRecord>{L"start time",           &PrinterRecord::startTime,                asTimeOfDay                },
    NumberKey<PrinterRecord>{L"until time",           &PrinterRecord::untilTime,                asTimeOfDay                },
    NumberKey<PrinterRecord>{L"average ppm",          &PrinterRecord::averagePpm,               inDecimal                  },
    NumberKey<PrinterRecord>{L"attributes",           &PrinterRecord::attributes,               inWords<attributeWords>    },
    NumberKey<PrinterRecord>{L"status",               &PrinterRecord::status,                   inWords<printerStatusWords>},
    NumberKey<PrinterRecord>{L"speed",                &PrinterRecord::bytesPerSecond,           inDecimal                  },
    NumberKey<PrinterRecord>{L"not selected timeout", &PrinterRecord::deviceNotSelectedTimeout, inDecimal                  },
    NumberKey<PrinterRecord>{L"retry timeout",        &PrinterRecord::transmissionRetryTimeout, inDecimal                  },
    NumberKey<PrinterRecord>{L"linked job",           &PrinterRecord::linkedJobId,              inDecimal                  },
    NumberKey<PrinterRecord>{L"access",               &PrinterRecord::grantedAccess,            inWords<accessWords>       },
};

inline constexpr std::array driverTexts{
    TextKey<DriverRecord>{L"environment",       &DriverRecord::environment    },
    TextKey<DriverRecord>{L"driver path",       &DriverRecord::driverPath     },
    TextKey<DriverRecord>{L"data file",         &DriverRecord::dataFile       },
    TextKey<DriverRecord>{L"config file",       &DriverRecord::configFile     },
    TextKey<DriverRecord>{L"help file",         &DriverRecord::helpFile       },
    TextKey<DriverRecord>{L"monitor",           &DriverRecord::monitorName    },
    TextKey<DriverRecord>{L"default data type", &DriverRecord::defaultDataType},
    TextKey<DriverRecord>{L"manufacturer",      &DriverRecord::manufacturer   },
    TextKey<DriverRecord>{L"oem url",           &DriverRecord::oemUrl         },
    TextKey<DriverRecord>{L"hardware id",       &DriverRecord::hardwareId     },
    TextKey<DriverRecord>{L"provider",          &DriverRecord::provider       },
};

inline constexpr std::array driverNumbers{
    NumberKey<DriverRecord>{L"version",       &DriverRecord::version,          inDecimal},
    NumberKey<DriverRecord>{L"attributes",    &DriverRecord::driverAttributes, inDecimal},
    NumberKey<DriverRecord>{L"highest level", &DriverRecord::highestLevel,     inDecimal},
};

inline constexpr std::array portTexts{
    TextKey<PortRecord>{L"monitor",     &PortRecord::monitorName},
    TextKey<PortRecord>{L"description", &PortRecord::description},
};

inline constexpr std::array portNumbers{
    NumberKey<PortRecord>{L"type", &PortRecord::type, inWords<portTypeWords>},
};

inline constexpr std::array jobTexts{
    TextKey<JobRecord>{L"document",        &JobRecord::document,       true },
    TextKey<JobRecord>{L"user",            &JobRecord::userName,       true },
    TextKey<JobRecord>{L"machine",         &JobRecord::machineName,    true },
    TextKey<JobRecord>{L"notify",          &JobRecord::notifyName,     true },
    TextKey<JobRecord>{L"data type",       &JobRecord::datatype,       true },
    TextKey<JobRecord>{L"print processor", &JobRecord::printProcessor, true },
    TextKey<JobRecord>{L"parameters",      &JobRecord::parameters,     false},
    TextKey<JobRecord>{L"status text",     &JobRecord::statusText,     false},
    TextKey<JobRecord>{L"port",            &JobRecord::portName,       false},
    TextKey<JobRecord>{L"output file",     &JobRecord::outputFile,     false},
    TextKey<JobRecord>{L"late name",       &JobRecord::lateName,       false},
};

inline constexpr std::array jobNumbers{
    NumberKey<JobRecord>{L"number",        &JobRecord::id,           inDecimal              },
    NumberKey<JobRecord>{L"linked job",    &JobRecord::nextJobId,    inDecimal              },
    NumberKey<JobRecord>{L"bytes printed", &JobRecord::bytesPrinted, inDecimal              },
    NumberKey<JobRecord>{L"time",          &JobRecord::time,         inDecimal              },
    NumberKey<JobRecord>{L"priority",      &JobRecord::priority,     inDecimal              },
    NumberKey<JobRecord>{L"start time",    &JobRecord::startTime,    asTimeOfDay            },
    NumberKey<JobRecord>{L"until time",    &JobRecord::untilTime,    asTimeOfDay            },
    NumberKey<JobRecord>{L"total pages",   &JobRecord::totalPages,   inDecimal              },
    NumberKey<JobRecord>{L"pages printed", &JobRecord::pagesPrinted, inDecimal              },
    NumberKey<JobRecord>{L"size",          &JobRecord::reportedSize, inDecimal              },
    NumberKey<JobRecord>{L"status",        &JobRecord::status,       inWords<jobStatusWords>},
};

/// A word for how far printing has come with a job.
struct StageWord {
    std::wstring_view word;
    JobStage stage;
};

inline constexpr std::array stages{
    StageWord{L"waiting",  JobStage::Waiting },
    StageWord{L"sending",  JobStage::Sending },
    StageWord{L"ejecting", JobStage::Ejecting},
    StageWord{L"printed",  JobStage::Printed },
    StageWord{L"kept",     JobStage::Kept    },
    StageWord{L"leaving",  JobStage::Leaving },
};
