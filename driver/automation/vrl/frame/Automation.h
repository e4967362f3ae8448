// SPDX-License-Identifier: MIT
#pragma once

/// The one way by which the automation layer includes the component model and the interfaces of the type library.

#include "foundation/Platform.h"

#include <oleauto.h>
#include <ocidl.h>

#include "vrl/Vorlane.h"
