// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/arrays/OTypedArray.h"
#include "foundation/text/OString.h"
#include "foundation/Platform.h"

#include <oleauto.h>

/// The arguments of one event in dispatch order, last argument first: what is inserted at the front reaches the sink
/// after all that is there, what is appended at the end reaches it before.
///
/// Ownership: each element owns its text, or one reference on its object. Copying copies texts and counts objects.
/// Errors:    what has no memory throws std::bad_alloc and leaves the list as it was.
/// Threading: none.
class EventArguments {
public:
    EventArguments() noexcept = default;
    EventArguments(const EventArguments& other);
    EventArguments& operator=(const EventArguments&) = delete;
    ~EventArguments();

    void InsertAtFront(long value);
    void InsertAtFront(IDispatch* object); ///< takes one reference more; null is allowed
    void InsertAtFront(const OString& text);
    void AppendAtEnd(long value);
    void AppendAtEnd(IDispatch* object); ///< takes one reference more; null is allowed

    int GetCount() const noexcept { return _arguments.GetSize(); }

    /// The list for `IDispatch::Invoke`, without named arguments; it stays ours and is good until the list changes.
    DISPPARAMS AsDispParams() const noexcept;

private:
    VARIANT& MakeRoom(int index);
    void Clear() noexcept;

    OTypedArray<VARIANT> _arguments;
};
