// SPDX-License-Identifier: MIT
#include "support/AssertCatcher.h"

#include <gmock/gmock.h>

int main(int argc, char** argv)
{
    ::testing::InitGoogleMock(&argc, argv);
    BrokenAssert([] {}); // what it needs is made now, before a test lets memory run out
    return RUN_ALL_TESTS();
}
