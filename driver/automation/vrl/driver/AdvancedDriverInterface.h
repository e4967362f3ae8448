// SPDX-License-Identifier: MIT
#pragma once

#include "vrl/driver/BasicDriverInterface.h"

/// The driver interface of a printer whose driver names an interface module. What driver or device doesn't answer,
/// `BasicDriverInterface` does.
class AdvancedDriverInterface : public BasicDriverInterface {
public:
    /// Conditions from 201 up come from the extended status word, the rest from the spooler.
    bool TestStatusFlag(int condition) override;
};
