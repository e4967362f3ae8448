// SPDX-License-Identifier: MIT
#include "spooler/config/ConfigCapability.h"

#include "spooler/config/ConfigValues.h"

#include <algorithm>
#include <array>

namespace {

constexpr size_t paperNameLength = 64; // characters that DC_PAPERNAMES copies out for each name

template <typename Element>
void Append(Bytes& bytes, const Element& element)
{
    const auto* const first = reinterpret_cast<const BYTE*>(&element);
    bytes.insert(bytes.end(), first, first + sizeof element);
}

/// The list's element as an entry of its own, for the readers of single values.
ConfigEntry ElementOf(const ConfigEntry& entry, std::wstring_view text)
{
    return {entry.line, entry.key, std::wstring(text)};
}

void AppendPaper(Bytes& bytes, const ConfigEntry& element)
{
    const DWORD paper = ConfigNumber(element);
    if (paper > 0xFFFF) throw ConfigError{element.line, L"there is no such paper: " + element.value};
    Append(bytes, static_cast<WORD>(paper));
}

/// "1000 x 1500", in tenths of a millimetre.
void AppendPaperSize(Bytes& bytes, const ConfigEntry& element)
{
    const std::vector<std::wstring> sides = ConfigPieces(element.value, L'x');
    if (sides.size() != 2)
        throw ConfigError{element.line, L"a paper size is written as 1000 x 1500, not " + element.value};
    const auto side = [&](size_t index) { return static_cast<LONG>(ConfigNumber(ElementOf(element, sides[index]))); };
    Append(bytes, POINT{side(0), side(1)});
}

void AppendPaperName(Bytes& bytes, const ConfigEntry& element)
{
    std::array<wchar_t, paperNameLength> name = {};
    element.value.copy(name.data(), name.size()); // Deliberate: a name that fills its place has no terminator
    Append(bytes, name);
}

/// A capability whose answer is an array.
struct ArrayCapability {
    WORD capability;
    void (*append)(Bytes& bytes, const ConfigEntry& element);
};

constexpr std::array arrayCapabilities{
    ArrayCapability{DC_PAPERS,     AppendPaper    },
    ArrayCapability{DC_PAPERSIZE,  AppendPaperSize},
    ArrayCapability{DC_PAPERNAMES, AppendPaperName},
};

} // namespace

CapabilityAnswer ConfigCapability(const ConfigEntry& entry, WORD capability)
{
    const auto found = std::ranges::find(arrayCapabilities, capability, &ArrayCapability::capability);
    if (found == arrayCapabilities.end()) return {static_cast<int>(ConfigNumber(entry)), {}};

    CapabilityAnswer answer{0, {}};
    for (const std::wstring& element : ConfigPieces(entry.value, L';')) {
        found->append(answer.output, ElementOf(entry, element));
        ++answer.result;
    }
    return answer;
}
