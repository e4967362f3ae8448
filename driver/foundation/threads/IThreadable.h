// SPDX-License-Identifier: MIT
#pragma once

/// Something that an `OThread` runs. It has no data of its own; whoever owns it keeps it alive until the thread has
/// ended.
class IThreadable {
public:
    IThreadable() = default;
    IThreadable(const IThreadable&) = delete;
    IThreadable& operator=(const IThreadable&) = delete;
    virtual ~IThreadable() = default;

    /// The thread's body: runs on the new thread until it returns. Nothing may be thrown out of it.
    // Deliberate: the name is spelt this way wherever it is implemented.
    virtual void TheadStart() = 0;

    /// Asks the body to end. Called on the stopping thread, possibly many times: it must be idempotent and quick.
    virtual void ThreadStop() = 0;
};
