// SPDX-License-Identifier: MIT
#include "bench/BoundPrinter.h"

#include <comutil.h>

#include <stdexcept>

using Microsoft::WRL::ComPtr;

ComPtr<IPrinter> BoundPrinter(const ProductModule& product, const std::wstring& name)
{
    ComPtr<IPrinter> printer;
    if (FAILED(product.CreateInstance(__uuidof(Printer), IID_PPV_ARGS(&printer))) ||
        FAILED(printer->Initialize(_bstr_t(name.c_str())))) {
        throw std::runtime_error("a printer can't be bound");
    }
    return printer;
}
