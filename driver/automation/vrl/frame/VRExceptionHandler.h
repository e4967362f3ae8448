// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/failures/OExceptionHandler.h"

/// The handler that stands in every method of the automation layer: it shows an internal failure to the user.
class VRExceptionHandler : public OExceptionHandler {
public:
    explicit VRExceptionHandler(const char* function, unsigned long flags = 2) : OExceptionHandler(function, flags) {}
    ~VRExceptionHandler() override = default;
};
