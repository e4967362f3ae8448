// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"

#include <winspool.h>

#include <array>
#include <span>
#include <string>
#include <string_view>

/// The words by which bits of status, attributes and changes are named in text files.

/// A word that stands for bits.
struct BitWord {
    std::wstring_view word;
    DWORD bits;
};

constexpr DWORD jobStatusRetainedBit = 0x2000; ///< JOB_STATUS_RETAINED, which the headers of mingw-w64 lack

inline constexpr std::array attributeWords{
    BitWord{L"queued",            PRINTER_ATTRIBUTE_QUEUED         },
    BitWord{L"direct",            PRINTER_ATTRIBUTE_DIRECT         },
    BitWord{L"default",           PRINTER_ATTRIBUTE_DEFAULT        },
    BitWord{L"shared",            PRINTER_ATTRIBUTE_SHARED         },
    BitWord{L"network",           PRINTER_ATTRIBUTE_NETWORK        },
    BitWord{L"hidden",            PRINTER_ATTRIBUTE_HIDDEN         },
    BitWord{L"local",             PRINTER_ATTRIBUTE_LOCAL          },
    BitWord{L"keep printed jobs", PRINTER_ATTRIBUTE_KEEPPRINTEDJOBS},
    BitWord{L"work offline",      PRINTER_ATTRIBUTE_WORK_OFFLINE   },
    BitWord{L"bidirectional",     PRINTER_ATTRIBUTE_ENABLE_BIDI    },
    BitWord{L"raw only",          PRINTER_ATTRIBUTE_RAW_ONLY       },
};

inline constexpr std::array printerStatusWords{
    BitWord{L"paused",            PRINTER_STATUS_PAUSED           },
    BitWord{L"error",             PRINTER_STATUS_ERROR            },
    BitWord{L"paper jam",         PRINTER_STATUS_PAPER_JAM        },
    BitWord{L"paper out",         PRINTER_STATUS_PAPER_OUT        },
    BitWord{L"manual feed",       PRINTER_STATUS_MANUAL_FEED      },
    BitWord{L"paper problem",     PRINTER_STATUS_PAPER_PROBLEM    },
    BitWord{L"offline",           PRINTER_STATUS_OFFLINE          },
    BitWord{L"io active",         PRINTER_STATUS_IO_ACTIVE        },
    BitWord{L"busy",              PRINTER_STATUS_BUSY             },
    BitWord{L"printing",          PRINTER_STATUS_PRINTING         },
    BitWord{L"output bin full",   PRINTER_STATUS_OUTPUT_BIN_FULL  },
    BitWord{L"not available",     PRINTER_STATUS_NOT_AVAILABLE    },
    BitWord{L"waiting",           PRINTER_STATUS_WAITING          },
    BitWord{L"processing",        PRINTER_STATUS_PROCESSING       },
    BitWord{L"initializing",      PRINTER_STATUS_INITIALIZING     },
    BitWord{L"warming up",        PRINTER_STATUS_WARMING_UP       },
    BitWord{L"toner low",         PRINTER_STATUS_TONER_LOW        },
    BitWord{L"no toner",          PRINTER_STATUS_NO_TONER         },
    BitWord{L"page punt",         PRINTER_STATUS_PAGE_PUNT        },
    BitWord{L"user intervention", PRINTER_STATUS_USER_INTERVENTION},
    BitWord{L"out of memory",     PRINTER_STATUS_OUT_OF_MEMORY    },
    BitWord{L"door open",         PRINTER_STATUS_DOOR_OPEN        },
    BitWord{L"power save",        PRINTER_STATUS_POWER_SAVE       },
};

inline constexpr std::array jobStatusWords{
    BitWord{L"paused",            JOB_STATUS_PAUSED           },
    BitWord{L"error",             JOB_STATUS_ERROR            },
    BitWord{L"deleting",          JOB_STATUS_DELETING         },
    BitWord{L"spooling",          JOB_STATUS_SPOOLING         },
    BitWord{L"printing",          JOB_STATUS_PRINTING         },
    BitWord{L"offline",           JOB_STATUS_OFFLINE          },
    BitWord{L"paper out",         JOB_STATUS_PAPEROUT         },
    BitWord{L"printed",           JOB_STATUS_PRINTED          },
    BitWord{L"deleted",           JOB_STATUS_DELETED          },
    BitWord{L"blocked",           JOB_STATUS_BLOCKED_DEVQ     },
    BitWord{L"user intervention", JOB_STATUS_USER_INTERVENTION},
    BitWord{L"restart",           JOB_STATUS_RESTART          },
    BitWord{L"complete",          JOB_STATUS_COMPLETE         },
    BitWord{L"retained",          jobStatusRetainedBit        },
};

/// What happened to a printer or its jobs: the change word of a notification.
inline constexpr std::array changeWords{
    BitWord{L"add printer",    PRINTER_CHANGE_ADD_PRINTER       },
    BitWord{L"set printer",    PRINTER_CHANGE_SET_PRINTER       },
    BitWord{L"delete printer", PRINTER_CHANGE_DELETE_PRINTER    },
    BitWord{L"add job",        PRINTER_CHANGE_ADD_JOB           },
    BitWord{L"set job",        PRINTER_CHANGE_SET_JOB           },
    BitWord{L"delete job",     PRINTER_CHANGE_DELETE_JOB        },
    BitWord{L"write job",      PRINTER_CHANGE_WRITE_JOB         },
    BitWord{L"set driver",     PRINTER_CHANGE_SET_PRINTER_DRIVER},
};

/// "paused, error"; bits without a word follow as one hexadecimal number.
std::wstring WordsOf(DWORD bits, std::span<const BitWord> words);
