// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/threads/IThreadable.h"

#include <memory>

class XPrinter;

/// Makes what the notification thread of `printer` runs. It refers to the printer, which must outlive it. Defined with
/// the thread, so that the printer doesn't know what watches it.
std::unique_ptr<IThreadable> MakeStatusThread(XPrinter& printer);
