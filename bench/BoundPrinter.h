// SPDX-License-Identifier: MIT
#pragma once

#include "support/product/ProductModule.h"

#include "vrl/Vorlane.h"

#include <wrl/client.h>

#include <string>

/// The product's `Printer` of that name. Throws std::runtime_error if it can't be bound.
Microsoft::WRL::ComPtr<IPrinter> BoundPrinter(const ProductModule& product, const std::wstring& name);
