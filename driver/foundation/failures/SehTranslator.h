// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"

/// Turns a structured exception into a C++ exception: it throws what stands for `code`. If it returns, the exception
/// goes on to whoever else handles it. `pointers` and what they point at belong to the thread: they live through the
/// catch clause, until the thread has met a few more faults.
using SehTranslator = void (*)(unsigned code, EXCEPTION_POINTERS* pointers);

/// Sets the calling thread's translator and gives the one before; null means that structured exceptions pass untouched.
/// The same contract as the run-time library's `_set_se_translator`, which a program built by this compiler can't use.
/// It sees only what happens inside `CallTranslated`.
SehTranslator SetSehTranslator(SehTranslator translator) noexcept;

/// Runs `body(context)` so that a structured exception raised inside it, at any depth, reaches the thread's translator.
/// What the translator throws comes out of the faulting instruction: catch clauses inside the body and outside of this
/// call see it, and destructors in between run. C++ exceptions of any compiler, breakpoints and informational codes
/// pass untouched. Calls may be nested.
extern "C" void CallTranslated(void (*body)(void* context), void* context);

/// `CallTranslated` for anything that can be called without arguments.
template <class Body>
void RunTranslated(Body&& body)
{
    auto run = [&body] { body(); };
    CallTranslated([](void* context) { (*static_cast<decltype(run)*>(context))(); }, &run);
}
