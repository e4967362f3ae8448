// SPDX-License-Identifier: MIT
#include "spooler/levels/PackedWriter.h"

#include "spooler/SpoolerError.h"

#include <algorithm>
#include <cstring>

namespace {

size_t RoundUp(size_t size, size_t alignment)
{
    return (size + alignment - 1) / alignment * alignment;
}

} // namespace

PackedWriter::PackedWriter(size_t structureSize, size_t count)
    : _structures(RoundUp(structureSize * count, alignof(void*)))
{
}

BYTE* PackedWriter::NextStructure(size_t size)
{
    BYTE* const structure = _structures.data() + _next;
    _next += size;
    ++_count;
    return structure;
}

void PackedWriter::Link(const void* field, const void* data, size_t size, size_t alignment)
{
    _tail.resize(RoundUp(_tail.size(), alignment));
    _pointers.push_back({static_cast<size_t>(static_cast<const BYTE*>(field) - _structures.data()), _tail.size()});
    const auto* const first = static_cast<const BYTE*>(data);
    _tail.insert(_tail.end(), first, first + size);
}

void PackedWriter::CopyTo(const SizedBuffer& target) const
{
    Require(target.needed && (target.returned || !target.enumerates), RPC_X_NULL_REF_POINTER);
    *target.needed = Size();
    if (target.returned) *target.returned = 0;
    if (target.size < Size()) {
        if (target.buffer) std::fill_n(target.buffer, target.size, BYTE{0});
        throw SpoolerError(ERROR_INSUFFICIENT_BUFFER);
    }
    Require(target.buffer || Size() == 0, target.nullBufferError);

    std::copy(_structures.begin(), _structures.end(), target.buffer);
    BYTE* const tail = target.buffer + _structures.size();
    std::copy(_tail.begin(), _tail.end(), tail);
    for (const Pointer& pointer : _pointers) {
        const BYTE* const address = tail + pointer.target;
        std::memcpy(target.buffer + pointer.field, &address, sizeof address);
    }
    if (target.returned) *target.returned = _count;
}
