// SPDX-License-Identifier: MIT
#include "foundation/failures/OStackTrace.h"

#include "foundation/failures/SehTranslator.h"

namespace {

struct WalkFailed {};

void ThrowWalkFailed(unsigned, EXCEPTION_POINTERS*)
{
    throw WalkFailed();
}

} // namespace

OStackTrace::OStackTrace(const CONTEXT& context) noexcept
{
    const SehTranslator before = SetSehTranslator(ThrowWalkFailed);
    try {
        RunTranslated([&] { Walk(context); });
    } catch (...) {
        // A reporting aid: a stack that can't be told is left out.
        _text = OString();
    }
    SetSehTranslator(before);
}

void OStackTrace::OnOutput(const char* line)
{
    _text += line;
}
