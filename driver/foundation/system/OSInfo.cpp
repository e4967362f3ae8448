// SPDX-License-Identifier: MIT
#include "foundation/system/OSInfo.h"

#include <algorithm>
#include <iterator>

#include "foundation/system/OSVersion.h"

namespace {

enum class Product { Workstation, Server, Any };

constexpr DWORD anyVersion = 0xFFFFFFFF;

constexpr DWORD VersionNumber(const OSVERSIONINFOEXW& version) noexcept
{
    return version.dwMajorVersion << 16 | version.dwMinorVersion;
}

/// The first row that fits the running system counts.
struct NameRow {
    DWORD version;
    Product product;
    const char* name;
};

// Deliberate: there is no row after 6.0, so all later systems have one name.
constexpr NameRow nameRows[] = {
    {0x60000,    Product::Server,      "Windows Server 2008"},
    {0x60000,    Product::Any,         "Windows Vista"      },
    {0x50002,    Product::Any,         "Windows Server 2003"},
    {0x50001,    Product::Any,         "Windows XP"         },
    {0x50000,    Product::Any,         "Windows 2000"       },
    {anyVersion, Product::Workstation, "Windows 8.0"        },
    {anyVersion, Product::Any,         "Windows Server 8.0" },
};

/// The first row that fits counts: the bits of the suite under `suiteMask` are `suite`.
struct EditionRow {
    DWORD version;
    Product product;
    WORD suiteMask;
    WORD suite;
    const char* edition;
};

constexpr WORD enterprise = 0x2;
constexpr WORD embedded = 0x40;
constexpr WORD datacenter = 0x80;
constexpr WORD personal = 0x200;
constexpr WORD web = 0x400;
constexpr WORD wholeSuite = 0xFFFF;

constexpr EditionRow editionRows[] = {
    {0x50001,    Product::Workstation, personal,   personal,   "Home Edition"      },
    {0x50001,    Product::Workstation, embedded,   embedded,   "Embedded"          },
    {0x50001,    Product::Workstation, 0,          0,          "Professional"      },
    {anyVersion, Product::Workstation, personal,   personal,   "Home Edition"      },
    {anyVersion, Product::Workstation, 0,          0,          "Professional"      },
    {0x60000,    Product::Server,      datacenter, datacenter, "Datacenter Edition"},
    {0x60000,    Product::Server,      enterprise, enterprise, "Enterprise Edition"},
    {0x60000,    Product::Server,      0,          0,          "Standard Edition"  },
    {0x50002,    Product::Server,      datacenter, datacenter, "Datacenter Edition"},
    {0x50002,    Product::Server,      enterprise, enterprise, "Enterprise Edition"},
    {0x50002,    Product::Server,      wholeSuite, web,        "Web Edition"       },
    {0x50002,    Product::Server,      0,          0,          "Standard Edition"  },
    {anyVersion, Product::Server,      datacenter, datacenter, "Datacenter Server" },
    {anyVersion, Product::Server,      enterprise, enterprise, "Advanced Server"   },
    {anyVersion, Product::Server,      0,          0,          "Server"            },
};

/// Metrics that say more about a workstation of 5.1 than its suite; the first one set counts.
struct MetricRow {
    int metric;
    const char* edition;
};

constexpr MetricRow metricRows[] = {
    {SM_MEDIACENTER, "Media Center"     },
    {SM_STARTER,     "Starter Edition"  },
    {SM_TABLETPC,    "Tablet PC Edition"},
};

static_assert(SM_MEDIACENTER == 87 && SM_STARTER == 88 && SM_TABLETPC == 86 && SM_SERVERR2 == 89);

struct VersionBitRow {
    DWORD version;
    DWORD bit;
};

constexpr VersionBitRow versionBitRows[] = {
    {0x60000, osVersion60},
    {0x50002, osVersion52},
    {0x50001, osVersion51},
    {0x50000, osVersion50},
    {0x40000, osVersion40},
};

bool IsProduct(const OSVERSIONINFOEXW& version, Product product) noexcept
{
    if (product == Product::Any) return true;
    if (product == Product::Workstation) return version.wProductType == VER_NT_WORKSTATION;
    return version.wProductType == VER_NT_DOMAIN_CONTROLLER || version.wProductType == VER_NT_SERVER;
}

template <typename Row>
bool IsSystem(const OSVERSIONINFOEXW& version, const Row& row) noexcept
{
    return (row.version == anyVersion || row.version == VersionNumber(version)) && IsProduct(version, row.product);
}

const char* Name(const OSVERSIONINFOEXW& version) noexcept
{
    return std::ranges::find_if(nameRows, [&](const NameRow& row) { return IsSystem(version, row); })->name;
}

OString SuiteEdition(const OSVERSIONINFOEXW& version)
{
    const auto fits = [&](const EditionRow& row) {
        return IsSystem(version, row) && (version.wSuiteMask & row.suiteMask) == row.suite;
    };
    const auto* row = std::ranges::find_if(editionRows, fits);
    return row == std::end(editionRows) ? OString() : OString(row->edition);
}

OString Edition(const OSVERSIONINFOEXW& version)
{
    const DWORD number = VersionNumber(version);
    if (number == 0x50001 && IsProduct(version, Product::Workstation)) {
        const auto isSet = [](const MetricRow& row) { return GetOSMetric(row.metric) != 0; };
        const auto* row = std::ranges::find_if(metricRows, isSet);
        if (row != std::end(metricRows)) return row->edition;
    }
    OString edition = SuiteEdition(version);
    // Deliberate: no blank in front of "R2".
    if (number == 0x50002 && IsProduct(version, Product::Server) && GetOSMetric(SM_SERVERR2) != 0) edition += "R2";
    return edition;
}

OString VersionText(const OSVERSIONINFOEXW& version)
{
    OString text("Build ");
    text += static_cast<int>(version.dwBuildNumber);
    if (version.szCSDVersion[0] != L'\0') {
        text += " (";
        text += version.szCSDVersion;
        text += ")";
    }
    return text;
}

OSVERSIONINFOEXW RunningVersion() noexcept
{
    OSVERSIONINFOEXW version{};
    version.dwOSVersionInfoSize = sizeof version;
    GetOSVersion(reinterpret_cast<OSVERSIONINFOW&>(version));
    return version;
}

} // namespace

OSInfo GetOSInfo()
{
    const OSVERSIONINFOEXW version = RunningVersion();
    OSInfo info;
    info.name = Name(version);
    info.edition = Edition(version);
    info.version = VersionText(version);
    info.major = version.dwMajorVersion;
    info.minor = version.dwMinorVersion;
    info.servicePackText = version.szCSDVersion;
    // Major above minor, as in a version number: the later of two service packs is the greater word.
    info.servicePack = static_cast<DWORD>(version.wServicePackMajor) << 16 | version.wServicePackMinor;
    return info;
}

bool IsOSAtLeast(DWORD versionBits) noexcept
{
    const DWORD running = VersionNumber(RunningVersion());
    const auto isReached = [&](const VersionBitRow& row) { return running >= row.version; };
    const auto* row = std::ranges::find_if(versionBitRows, isReached);
    return row != std::end(versionBitRows) && (row->bit & versionBits) != 0;
}
