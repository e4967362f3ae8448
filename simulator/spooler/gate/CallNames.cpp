// SPDX-License-Identifier: MIT
#include "spooler/gate/CallNames.h"

#include <array>

namespace {

struct CallRow {
    SpoolerCall call;
    const wchar_t* name;
};

constexpr std::array callNames{
    CallRow{SpoolerCall::OpenPrinter,                        L"OpenPrinterW"                      },
    CallRow{SpoolerCall::ClosePrinter,                       L"ClosePrinter"                      },
    CallRow{SpoolerCall::GetPrinter,                         L"GetPrinterW"                       },
    CallRow{SpoolerCall::SetPrinter,                         L"SetPrinterW"                       },
    CallRow{SpoolerCall::GetJob,                             L"GetJobW"                           },
    CallRow{SpoolerCall::SetJob,                             L"SetJobW"                           },
    CallRow{SpoolerCall::EnumJobs,                           L"EnumJobsW"                         },
    CallRow{SpoolerCall::EnumPrinters,                       L"EnumPrintersW"                     },
    CallRow{SpoolerCall::EnumPorts,                          L"EnumPortsW"                        },
    CallRow{SpoolerCall::GetPrinterDriver,                   L"GetPrinterDriverW"                 },
    CallRow{SpoolerCall::GetPrinterData,                     L"GetPrinterDataW"                   },
    CallRow{SpoolerCall::GetPrinterDataEx,                   L"GetPrinterDataExW"                 },
    CallRow{SpoolerCall::SetPrinterData,                     L"SetPrinterDataW"                   },
    CallRow{SpoolerCall::SetPrinterDataEx,                   L"SetPrinterDataExW"                 },
    CallRow{SpoolerCall::DeviceCapabilities,                 L"DeviceCapabilitiesW"               },
    CallRow{SpoolerCall::StartDocPrinter,                    L"StartDocPrinterW"                  },
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
