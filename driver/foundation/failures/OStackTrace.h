// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/text/OString.h"
#include "foundation/failures/StackWalker.h"

/// The text of a call stack, one line for each frame.
class OStackTrace final : public StackWalker {
public:
    /// Walks the calling thread's stack outwards from `context`. Whatever fails in it leaves an empty text.
    explicit OStackTrace(const CONTEXT& context) noexcept;

    const OString& GetText() const noexcept { return _text; }

protected:
    void OnOutput(const char* line) override;

private:
    OString _text;
};
