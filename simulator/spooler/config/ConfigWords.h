// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/config/ConfigValues.h"
#include "spooler/SpoolerConstants.h"
#include "spooler/SpoolerControl.h"

#include <array>

/// The words by which a configuration file names bits and numbers, beside those of recorder/BitWords.h.

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
