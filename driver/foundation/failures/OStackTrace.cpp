// SPDX-License-Identifier: MIT
#include "foundation/failures/OStackTrace.h"

#include "foundation/failures/SehTranslator.h"

OStackTrace::OStackTrace(const CONTEXT& context) noexcept
{
    // A reporting aid: a stack that can't be told is left out.
    if (!RunContained([&] { Walk(context); })) _text = OString();
}

void OStackTrace::OnOutput(const char* line)
{
    _text += line;
}
