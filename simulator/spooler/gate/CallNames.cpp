// SPDX-License-Identifier: MIT
#include "spooler/gate/CallNames.h"

#include <array>

namespace {

struct CallRow {
    SpoolerCall call;
    const wchar_t* name;
};

constexpr std::array callNames{
    CallRow{SpoolerCall::OpenPrinterW,                       L"OpenPrinterW"                      },
    CallRow{SpoolerCall::ClosePrinter,                       L"ClosePrinter"                      },
    CallRow{SpoolerCall::GetPrinterW,                        L"GetPrinterW"                       },
    CallRow{SpoolerCall::SetPrinterW,                        L"SetPrinterW"                       },
    CallRow{SpoolerCall::GetJobW,                            L"GetJobW"                           },
    CallRow{SpoolerCall::SetJobW,                            L"SetJobW"                           },
    CallRow{SpoolerCall::EnumJobsW,                          L"EnumJobsW"                         },
    CallRow{SpoolerCall::EnumPrintersW,                      L"EnumPrintersW"                     },
    CallRow{SpoolerCall::EnumPortsW,                         L"EnumPortsW"                        },
    CallRow{SpoolerCall::GetPrinterDriverW,                  L"GetPrinterDriverW"                 },
    CallRow{SpoolerCall::GetPrinterDataW,                    L"GetPrinterDataW"                   },
    CallRow{SpoolerCall::GetPrinterDataExW,                  L"GetPrinterDataExW"                 },
    CallRow{SpoolerCall::SetPrinterDataW,                    L"SetPrinterDataW"                   },
    CallRow{SpoolerCall::SetPrinterDataExW,                  L"SetPrinterDataExW"                 },
    CallRow{SpoolerCall::DeviceCapabilitiesW,                L"DeviceCapabilitiesW"               },
    CallRow{SpoolerCall::StartDocPrinterW,                   L"StartDocPrinterW"                  },
    CallRow{SpoolerCall::StartPagePrinter,                   L"StartPagePrinter"                  },
    CallRow{SpoolerCall::WritePrinter,                       L"WritePrinter"                      },
    CallRow{SpoolerCall::EndPagePrinter,                     L"EndPagePrinter"                    },
    CallRow{SpoolerCall::EndDocPrinter,                      L"EndDocPrinter"                     },
    CallRow{SpoolerCall::FindFirstPrinterChangeNotification, L"FindFirstPrinterChangeNotification"},
    CallRow{SpoolerCall::FindNextPrinterChangeNotification,  L"FindNextPrinterChangeNotification" },
    CallRow{SpoolerCall::FindClosePrinterChangeNotification, L"FindClosePrinterChangeNotification"},
    CallRow{SpoolerCall::FreePrinterNotifyInfo,              L"FreePrinterNotifyInfo"             },
};
static_assert(callNames.size() == spoolerCallCount);

constexpr bool InOrder()
{
    for (size_t index = 0; index < callNames.size(); ++index) {
        if (static_cast<size_t>(callNames[index].call) != index) return false;
    }
    return true;
}
static_assert(InOrder());

} // namespace

const wchar_t* CallName(SpoolerCall call) noexcept
{
    const auto index = static_cast<size_t>(call);
    return index < callNames.size() ? callNames[index].name : L"";
}
