// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"

/// Turns a structured exception into a C++ exception: it throws what stands for `code`. If it returns, the exception
/// goes on to whoever else handles it. `pointers` and what they point at belong to the thread: they live through the
/// catch clause, until the thread has met a few more faults.
using SehTranslator = void (*)(unsigned code, EXCEPTION_POINTERS* pointers);

/// Stands for a C++ exception of the platform's usual compiler, which no catch clause of this one sees: it comes out of
/// `CallTranslated` in its place. Nothing is known of what was thrown.
class ForeignException {};

/// Sets the calling thread's translator and gives the one before; null means that structured exceptions pass untouched.
/// The same contract as the run-time library's `_set_se_translator`, which a program built by this compiler can't use.
/// It sees only what happens inside `CallTranslated`.
SehTranslator SetSehTranslator(SehTranslator translator) noexcept;

/// Runs `body(context)` so that a structured exception raised inside it, at any depth, reaches the thread's translator.
/// What the translator throws comes out of the faulting instruction: catch clauses inside the body and outside of this
/// call see it, and destructors in between run. A C++ exception of the platform's usual compiler that no handler of
/// that compiler takes inside the body becomes a `ForeignException` in the same way, with or without a translator. C++
/// exceptions of this compiler, breakpoints and informational codes pass untouched. Calls may be nested.
extern "C" void CallTranslated(void (*body)(void* context), void* context);

/// Runs `body(context)` and keeps in whatever it fails with, structured exceptions included; false if it failed. It
/// isn't run, which is false too, if there is no memory for what its thread needs to catch those.
bool CallContained(void (*body)(void* context), void* context) noexcept;

/// `CallTranslated` for anything that can be called without arguments.
template <class Body>
void RunTranslated(Body&& body)
{
    auto run = [&body] { body(); };
    CallTranslated([](void* context) { (*static_cast<decltype(run)*>(context))(); }, &run);
}

/// `CallContained` for anything that can be called without arguments.
template <class Body>
bool RunContained(Body&& body) noexcept
{
    auto run = [&body] { body(); };
    return CallContained([](void* context) { (*static_cast<decltype(run)*>(context))(); }, &run);
}
