// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/failures/SehTranslator.h"

/// The calling thread's translator of structured exceptions for a scope.
class TranslatorScope {
public:
    explicit TranslatorScope(SehTranslator translator) noexcept : _before(SetSehTranslator(translator)) {}
    TranslatorScope(const TranslatorScope&) = delete;
    TranslatorScope& operator=(const TranslatorScope&) = delete;
    ~TranslatorScope() { SetSehTranslator(_before); }

private:
    SehTranslator _before;
};
