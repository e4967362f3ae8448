// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/world/World.h"

#include <string>

/// The world as a configuration file in UTF-8. What is as a section begins with is left out.
std::string ConfigurationText(World& world);
