// SPDX-License-Identifier: MIT
#include "vrl/spooler/Spooler.h"

#include "support/ImportHook.h"
#include "support/Raising.h"
#include "support/RowName.h"

#include <gtest/gtest.h>

namespace {

/// A spooler whose closing call raises something, and counts how often it did.
class RaisingSpooler : public ::testing::TestWithParam<RaisedKind> {
protected:
    void SetUp() override
    {
        _raise = GetParam().raise;
        _calls = 0;
    }

    template <class Owner, class Resource>
    static void OwnAndLetGo(const char* import)
    {
        const ImportHook<BOOL WINAPI(Resource)> hook(import, [](Resource) -> BOOL {
            ++_calls;
            _raise();
            return TRUE;
        });
        BYTE something[sizeof(void*)]{};
        const Owner owner(reinterpret_cast<Resource>(something));
    }

    static inline void (*_raise)();
    static inline int _calls;
};

INSTANTIATE_TEST_SUITE_P(Kinds, RaisingSpooler, ::testing::ValuesIn(raisedKinds), rowName);

// No guard stands around these owners: they close on any thread.

TEST_P(RaisingSpooler, PrinterHandleIsLetGo)
{
    OwnAndLetGo<OPrinterHandle, HANDLE>("ClosePrinter");
    EXPECT_EQ(_calls, 1);
}

TEST_P(RaisingSpooler, ChangeNotificationIsLetGo)
{
    OwnAndLetGo<OChangeHandle, HANDLE>("FindClosePrinterChangeNotification");
    EXPECT_EQ(_calls, 1);
}

TEST_P(RaisingSpooler, BlockOfNoticesIsLetGo)
{
    OwnAndLetGo<ONotifyInfo, PRINTER_NOTIFY_INFO*>("FreePrinterNotifyInfo");
    EXPECT_EQ(_calls, 1);
}

} // namespace
