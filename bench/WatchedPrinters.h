// SPDX-License-Identifier: MIT
#pragma once

#include "bench/CountingSink.h"
#include "support/com/Connection.h"
#include "support/product/ProductModule.h"

#include <memory>
#include <vector>

class RawWatcher;

/// "Printer 1" to "Printer N", each with a sink of its `Printer`: its thread does all that it ever does when nothing
/// happens. Throws std::runtime_error if a sink is refused.
class WatchedPrinters {
public:
    WatchedPrinters(const ProductModule& product, int count);

private:
    std::vector<Connection> _connections;
};

/// The same printers, each with a bare loop.
std::vector<std::unique_ptr<RawWatcher>> WatchBare(int count);
