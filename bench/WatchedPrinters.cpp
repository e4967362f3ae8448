// SPDX-License-Identifier: MIT
#include "bench/WatchedPrinters.h"

#include "bench/BoundPrinter.h"
#include "bench/RawWatcher.h"
#include "bench/SimulatedWorld.h"

#include <stdexcept>

WatchedPrinters::WatchedPrinters(const ProductModule& product, int count)
{
    for (int number = 1; number <= count; ++number) {
        const auto printer = BoundPrinter(product, PrinterName(number));
        const auto& connection = _connections.emplace_back(
            Connection(printer.Get(), __uuidof(_IPrinterEvents), CountingSink::Create().Get()));
        if (FAILED(connection.Result())) throw std::runtime_error("a sink was refused");
    }
}

std::vector<std::unique_ptr<RawWatcher>> WatchBare(int count)
{
    std::vector<std::unique_ptr<RawWatcher>> watchers;
    for (int number = 1; number <= count; ++number)
        watchers.push_back(std::make_unique<RawWatcher>(PrinterName(number)));
    return watchers;
}
