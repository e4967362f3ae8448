// SPDX-License-Identifier: MIT
#include "foundation/system/OSInfo.h"

#include <gtest/gtest.h>

#include <cwchar>
#include <vector>

#include "support/MadeUpOSVersion.h"

namespace {

constexpr BYTE workstation = VER_NT_WORKSTATION;
constexpr BYTE domain = VER_NT_DOMAIN_CONTROLLER;
constexpr BYTE server = VER_NT_SERVER;
constexpr BYTE noProduct = 0;

TEST(GetOSInfo, NamesTheSystem)
{
    static constexpr struct {
        DWORD major, minor;
        BYTE product;
        const char* name;
    } rows[] = {
        {6,  0, domain,      "Windows Server 2008"},
        {6,  0, server,      "Windows Server 2008"},
        {6,  0, workstation, "Windows Vista"      },
        {6,  0, noProduct,   "Windows Vista"      },
        {5,  2, server,      "Windows Server 2003"},
        {5,  2, workstation, "Windows Server 2003"},
        {5,  1, workstation, "Windows XP"         },
        {5,  1, server,      "Windows XP"         },
        {5,  0, workstation, "Windows 2000"       },
        {5,  0, domain,      "Windows 2000"       },
        {6,  1, workstation, "Windows 8.0"        },
        {6,  1, server,      "Windows Server 8.0" },
        {6,  2, workstation, "Windows 8.0"        },
        {6,  3, domain,      "Windows Server 8.0" },
        {10, 0, workstation, "Windows 8.0"        },
        {10, 0, server,      "Windows Server 8.0" },
        {10, 0, noProduct,   "Windows Server 8.0" },
        {5,  3, workstation, "Windows 8.0"        },
        {4,  0, workstation, "Windows 8.0"        },
    };
    for (const auto& row : rows) {
        MadeUpOSVersion system(row.major, row.minor, row.product);
        EXPECT_EQ(GetOSInfo().name, row.name) << row.major << "." << row.minor << " product " << int{row.product};
    }
}

TEST(GetOSInfo, TellsTheEditionByVersionProductAndSuite)
{
    static constexpr struct {
        DWORD major, minor;
        BYTE product;
        WORD suite;
        const char* edition;
    } rows[] = {
        {5,  1, workstation, 0x000, "Professional"      },
        {5,  1, workstation, 0x200, "Home Edition"      },
        {5,  1, workstation, 0x040, "Embedded"          },
        {5,  1, workstation, 0x240, "Home Edition"      }, // personal comes before embedded
        {5,  1, workstation, 0x482, "Professional"      },
        {10, 0, workstation, 0x000, "Professional"      },
        {10, 0, workstation, 0x300, "Home Edition"      },
        {10, 0, workstation, 0x040, "Professional"      }, // embedded counts at 5.1 only
        {6,  0, workstation, 0x200, "Home Edition"      },
        {5,  0, workstation, 0x000, "Professional"      },
        {6,  0, server,      0x000, "Standard Edition"  },
        {6,  0, domain,      0x002, "Enterprise Edition"},
        {6,  0, server,      0x080, "Datacenter Edition"},
        {6,  0, server,      0x082, "Datacenter Edition"}, // before enterprise
        {6,  0, server,      0x400, "Standard Edition"  }, // no web edition here
        {5,  2, server,      0x000, "Standard Edition"  },
        {5,  2, domain,      0x002, "Enterprise Edition"},
        {5,  2, server,      0x080, "Datacenter Edition"},
        {5,  2, server,      0x400, "Web Edition"       },
        {5,  2, domain,      0x400, "Web Edition"       },
        {5,  2, server,      0x410, "Standard Edition"  }, // one more bit
        {5,  2, server,      0x402, "Enterprise Edition"},
        {5,  0, server,      0x000, "Server"            },
        {5,  0, server,      0x002, "Advanced Server"   },
        {5,  0, domain,      0x082, "Datacenter Server" },
        {10, 0, server,      0x000, "Server"            },
        {10, 0, domain,      0x002, "Advanced Server"   },
        {10, 0, server,      0x080, "Datacenter Server" },
        {10, 0, server,      0x400, "Server"            },
        {5,  1, server,      0x000, "Server"            },
        {10, 0, noProduct,   0x282, ""                  },
        {6,  0, 4,           0x000, ""                  },
    };
    for (const auto& row : rows) {
        MadeUpOSVersion system(row.major, row.minor, row.product, row.suite);
        EXPECT_EQ(GetOSInfo().edition, row.edition)
            << row.major << "." << row.minor << " product " << int{row.product} << " suite " << row.suite;
    }
}

TEST(GetOSInfo, LetsMetricsOverrideTheEditionInTheirOrder)
{
    static const struct {
        DWORD major, minor;
        BYTE product;
        WORD suite;
        std::vector<int> metrics;
        const char* edition;
    } rows[] = {
        {5,  1, workstation, 0x000, {87},             "Media Center"        },
        {5,  1, workstation, 0x000, {88},             "Starter Edition"     },
        {5,  1, workstation, 0x000, {86},             "Tablet PC Edition"   },
        {5,  1, workstation, 0x240, {86, 87, 88},     "Media Center"        },
        {5,  1, workstation, 0x200, {86, 88},         "Starter Edition"     },
        {5,  1, workstation, 0x000, {89},             "Professional"        },
        {5,  1, server,      0x000, {86, 87, 88, 89}, "Server"              },
        {5,  2, workstation, 0x000, {86, 87, 88, 89}, "Professional"        },
        {10, 0, workstation, 0x000, {86, 87, 88, 89}, "Professional"        },
        {5,  2, server,      0x000, {89},             "Standard EditionR2"  }, // no blank
        {5,  2, server,      0x400, {89},             "Web EditionR2"       },
        {5,  2, domain,      0x080, {86, 89},         "Datacenter EditionR2"},
        {5,  2, server,      0x002, {86, 87, 88},     "Enterprise Edition"  },
        {6,  0, server,      0x000, {89},             "Standard Edition"    },
        {5,  0, server,      0x000, {89},             "Server"              },
        {5,  2, noProduct,   0x000, {89},             ""                    },
    };
    for (const auto& row : rows) {
        MadeUpOSVersion system(row.major, row.minor, row.product, row.suite);
        for (const int metric : row.metrics) system.SetMetric(metric, 1);
        EXPECT_EQ(GetOSInfo().edition, row.edition)
            << row.major << "." << row.minor << " " << ::testing::PrintToString(row.metrics);
    }
}

TEST(GetOSInfo, GivesNumbersBuildAndServicePack)
{
    MadeUpOSVersion system(5, 1);
    system.Record().dwBuildNumber = 2600;
    system.Record().wServicePackMajor = 3;
    system.Record().wServicePackMinor = 1;
    std::wcscpy(system.Record().szCSDVersion, L"Service Pack 3");

    const OSInfo info = GetOSInfo();
    EXPECT_EQ(info.major, 5u);
    EXPECT_EQ(info.minor, 1u);
    EXPECT_EQ(info.version, "Build 2600 (Service Pack 3)");
    EXPECT_EQ(info.servicePackText, "Service Pack 3");
    EXPECT_EQ(info.servicePack, 0x00030001u);
}

TEST(GetOSInfo, LeavesTheServicePackOutIfThereIsNone)
{
    MadeUpOSVersion system(10, 0);
    system.Record().dwBuildNumber = 19045;
    const OSInfo info = GetOSInfo();
    EXPECT_EQ(info.version, "Build 19045");
    EXPECT_EQ(info.servicePackText, "");
    EXPECT_EQ(info.servicePack, 0u);
}

TEST(GetOSInfo, ReadsASystem10AsWindows8Professional)
{
    MadeUpOSVersion system(10, 0, workstation, VER_SUITE_SINGLEUSERTS);
    EXPECT_EQ(GetOSInfo().name, "Windows 8.0");
    EXPECT_EQ(GetOSInfo().edition, "Professional");
}

TEST(GetOSInfo, WithoutAVersionIsThatOfVersionZero)
{
    MadeUpOSVersion system(6, 0);
    system.Fail();
    const OSInfo info = GetOSInfo();
    EXPECT_EQ(info.major, 0u);
    EXPECT_EQ(info.name, "Windows Server 8.0");
    EXPECT_EQ(info.edition, "");
    EXPECT_EQ(info.version, "Build 0");
}

TEST(GetOSInfo, AsksThePlatformWithoutASource)
{
    OSVERSIONINFOW version{};
    version.dwOSVersionInfoSize = sizeof version;
    ::GetVersionExW(&version);
    EXPECT_EQ(GetOSInfo().major, version.dwMajorVersion);
    EXPECT_EQ(GetOSInfo().minor, version.dwMinorVersion);
    EXPECT_FALSE(GetOSInfo().name.IsEmpty());
}

TEST(IsOSAtLeast, TestsTheBitOfTheNewestVersionReached)
{
    static constexpr struct {
        DWORD major, minor;
        DWORD bit;
    } rows[] = {
        {4,  0,  16 },
        {4,  90, 16 },
        {5,  0,  32 },
        {5,  1,  64 },
        {5,  2,  128},
        {5,  3,  128},
        {6,  0,  256},
        {6,  1,  256},
        {6,  3,  256},
        {10, 0,  256},
    };
    for (const auto& row : rows) {
        MadeUpOSVersion system(row.major, row.minor);
        EXPECT_TRUE(IsOSAtLeast(row.bit)) << row.major << "." << row.minor;
        EXPECT_TRUE(IsOSAtLeast(0xFFFFFFFF)) << row.major << "." << row.minor;
        EXPECT_FALSE(IsOSAtLeast(~row.bit)) << row.major << "." << row.minor;
    }
}

TEST(IsOSAtLeast, IsFalseBeforeVersion4)
{
    MadeUpOSVersion system(3, 51);
    EXPECT_FALSE(IsOSAtLeast(0xFFFFFFFF));
}

TEST(IsOSAtLeast, TakesTheBitsTogether)
{
    MadeUpOSVersion system(5, 1);
    EXPECT_TRUE(IsOSAtLeast(osVersion51 | osVersion52 | osVersion60));
    EXPECT_FALSE(IsOSAtLeast(osVersion52 | osVersion60));
}

} // namespace
