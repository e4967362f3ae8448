// SPDX-License-Identifier: MIT
#pragma once

#include "spooler/Text.h"

/// Where a sized read puts its result: the caller's buffer and the counts beside it.
struct SizedBuffer {
    BYTE* buffer = nullptr;
    DWORD size = 0;
    DWORD* needed = nullptr;
    DWORD* returned = nullptr;                         // of an enumeration
    bool enumerates = false;                           // `returned` must not be null
    DWORD nullBufferError = ERROR_INVALID_USER_BUFFER; // for a null buffer whose size would do
};

/// Builds what the sized reads give: an array of structures of one kind, and after it the texts and blocks that they
/// point to, all in one buffer of the caller's.
class PackedWriter {
public:
    PackedWriter(size_t structureSize, size_t count);

    /// The next structure, all zero. The reference holds as long as the writer.
    template <typename Info>
    Info& Add()
    {
        return *reinterpret_cast<Info*>(NextStructure(sizeof(Info)));
    }

    /// Lets `field` of an added structure point to a copy of the text; a null text leaves it null.
    template <typename Field>
    void Text(Field*& field, const OptionalText& text)
    {
        if (text) Link(&field, text->c_str(), (text->size() + 1) * sizeof(wchar_t), alignof(wchar_t));
    }

    /// Lets `field` of an added structure point to a copy of the block; an empty block leaves it null.
    template <typename Field>
    void Block(Field*& field, const Bytes& bytes)
    {
        if (!bytes.empty()) Link(&field, bytes.data(), bytes.size(), alignof(void*));
    }

    /// The bytes that all of it takes.
    DWORD Size() const noexcept { return static_cast<DWORD>(_structures.size() + _tail.size()); }

    /// Ends a sized read: tells the size, and fills the buffer if it is large enough; else the buffer is zeroed.
    /// Gives up with ERROR_INSUFFICIENT_BUFFER, the error for a null buffer, or RPC_X_NULL_REF_POINTER without a place
    /// for a count.
    void CopyTo(const SizedBuffer& target) const;

private:
    struct Pointer {
        size_t field;  // offset of the pointer in the structures
        size_t target; // offset of what it points to, in the tail
    };

    BYTE* NextStructure(size_t size);
    void Link(const void* field, const void* data, size_t size, size_t alignment);

    Bytes _structures;
    Bytes _tail;
    std::vector<Pointer> _pointers;
    size_t _next = 0;
    DWORD _count = 0;
};
