// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/config/ConfigValues.h"
#include "spooler/SpoolerConstants.h"
#include "spooler/SpoolerControl.h"

#include <array>

/// The words by which a configuration file names bits and numbers.

inline constexpr std::array attributeWords{
    ConfigWord{L"queued",            PRINTER_ATTRIBUTE_QUEUED         },
    ConfigWord{L"direct",            PRINTER_ATTRIBUTE_DIRECT         },
    ConfigWord{L"default",           PRINTER_ATTRIBUTE_DEFAULT        },
    ConfigWord{L"shared",            PRINTER_ATTRIBUTE_SHARED         },
    ConfigWord{L"network",           PRINTER_ATTRIBUTE_NETWORK        },
    ConfigWord{L"hidden",            PRINTER_ATTRIBUTE_HIDDEN         },
    ConfigWord{L"local",             PRINTER_ATTRIBUTE_LOCAL          },
    ConfigWord{L"keep printed jobs", PRINTER_ATTRIBUTE_KEEPPRINTEDJOBS},
    ConfigWord{L"work offline",      PRINTER_ATTRIBUTE_WORK_OFFLINE   },
    ConfigWord{L"bidirectional",     PRINTER_ATTRIBUTE_ENABLE_BIDI    },
    ConfigWord{L"raw only",          PRINTER_ATTRIBUTE_RAW_ONLY       },
};

inline constexpr std::array printerStatusWords{
    ConfigWord{L"paused",            PRINTER_STATUS_PAUSED           },
    ConfigWord{L"error",             PRINTER_STATUS_ERROR            },
    ConfigWord{L"paper jam",         PRINTER_STATUS_PAPER_JAM        },
    ConfigWord{L"paper out",         PRINTER_STATUS_PAPER_OUT        },
    ConfigWord{L"manual feed",       PRINTER_STATUS_MANUAL_FEED      },
    ConfigWord{L"paper problem",     PRINTER_STATUS_PAPER_PROBLEM    },
    ConfigWord{L"offline",           PRINTER_STATUS_OFFLINE          },
    ConfigWord{L"io active",         PRINTER_STATUS_IO_ACTIVE        },
    ConfigWord{L"busy",              PRINTER_STATUS_BUSY             },
    ConfigWord{L"printing",          PRINTER_STATUS_PRINTING         },
    ConfigWord{L"output bin full",   PRINTER_STATUS_OUTPUT_BIN_FULL  },
    ConfigWord{L"not available",     PRINTER_STATUS_NOT_AVAILABLE    },
    ConfigWord{L"waiting",           PRINTER_STATUS_WAITING          },
    ConfigWord{L"processing",        PRINTER_STATUS_PROCESSING       },
    ConfigWord{L"initializing",      PRINTER_STATUS_INITIALIZING     },
    ConfigWord{L"warming up",        PRINTER_STATUS_WARMING_UP       },
    ConfigWord{L"toner low",         PRINTER_STATUS_TONER_LOW        },
    ConfigWord{L"no toner",          PRINTER_STATUS_NO_TONER         },
    ConfigWord{L"page punt",         PRINTER_STATUS_PAGE_PUNT        },
    ConfigWord{L"user intervention", PRINTER_STATUS_USER_INTERVENTION},
    ConfigWord{L"out of memory",     PRINTER_STATUS_OUT_OF_MEMORY    },
    ConfigWord{L"door open",         PRINTER_STATUS_DOOR_OPEN        },
    ConfigWord{L"power save",        PRINTER_STATUS_POWER_SAVE       },
};

inline constexpr std::array jobStatusWords{
    ConfigWord{L"paused",            JOB_STATUS_PAUSED           },
    ConfigWord{L"error",             JOB_STATUS_ERROR            },
    ConfigWord{L"deleting",          JOB_STATUS_DELETING         },
    ConfigWord{L"spooling",          JOB_STATUS_SPOOLING         },
    ConfigWord{L"printing",          JOB_STATUS_PRINTING         },
    ConfigWord{L"offline",           JOB_STATUS_OFFLINE          },
    ConfigWord{L"paper out",         JOB_STATUS_PAPEROUT         },
    ConfigWord{L"printed",           JOB_STATUS_PRINTED          },
    ConfigWord{L"deleted",           JOB_STATUS_DELETED          },
    ConfigWord{L"blocked",           JOB_STATUS_BLOCKED_DEVQ     },
    ConfigWord{L"user intervention", JOB_STATUS_USER_INTERVENTION},
    ConfigWord{L"restart",           JOB_STATUS_RESTART          },
    ConfigWord{L"complete",          JOB_STATUS_COMPLETE         },
    ConfigWord{L"retained",          jobStatusRetained           },
};

inline constexpr std::array accessWords{
    ConfigWord{L"all",  PRINTER_ALL_ACCESS},
    ConfigWord{L"use",  PRINTER_EXECUTE   },
    ConfigWord{L"none", 0                 },
};

inline constexpr std::array serverAccessWords{
    ConfigWord{L"all",  SERVER_ALL_ACCESS},
    ConfigWord{L"use",  SERVER_EXECUTE   },
    ConfigWord{L"none", 0                },
};

inline constexpr std::array portTypeWords{
    ConfigWord{L"write",      PORT_TYPE_WRITE       },
    ConfigWord{L"read",       PORT_TYPE_READ        },
    ConfigWord{L"redirected", PORT_TYPE_REDIRECTED  },
    ConfigWord{L"net",        PORT_TYPE_NET_ATTACHED},
};

/// A word for when jobs move.
struct PaceWord {
    std::wstring_view word;
    SpoolerPace pace;
};

inline constexpr std::array paces{
    PaceWord{L"resting",   SpoolerPace::Resting },
    PaceWord{L"at once",   SpoolerPace::AtOnce  },
    PaceWord{L"stepped",   SpoolerPace::Stepped },
    PaceWord{L"real time", SpoolerPace::RealTime},
};

inline constexpr std::array orientationWords{
    ConfigWord{L"portrait",  DMORIENT_PORTRAIT },
    ConfigWord{L"landscape", DMORIENT_LANDSCAPE},
};

inline constexpr std::array capabilityWords{
    ConfigWord{L"collate",         DC_COLLATE      },
    ConfigWord{L"color",           DC_COLORDEVICE  },
    ConfigWord{L"copies",          DC_COPIES       },
    ConfigWord{L"duplex",          DC_DUPLEX       },
    ConfigWord{L"paper names",     DC_PAPERNAMES   },
    ConfigWord{L"paper sizes",     DC_PAPERSIZE    },
    ConfigWord{L"papers",          DC_PAPERS       },
    ConfigWord{L"print rate",      DC_PRINTRATE    },
    ConfigWord{L"print rate unit", DC_PRINTRATEUNIT},
    ConfigWord{L"printer memory",  DC_PRINTERMEM   },
    ConfigWord{L"staple",          DC_STAPLE       },
};
