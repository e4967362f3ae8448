// SPDX-License-Identifier: MIT
#include "PublicNames.h"

#ifdef UNICODE
#error "This file is to see the header as a program without UNICODE does."
#endif

std::vector<std::string> EnumeratorNamesWithoutUnicode()
{
    return EnumeratorNames();
}
