// SPDX-License-Identifier: MIT
#include "spooler/config/ConfigCapability.h"

#include "spooler/config/ConfigForms.h"
#include "spooler/config/ConfigTexts.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace {

constexpr size_t paperNameLength = 64; // characters that DC_PAPERNAMES copies out for each name

template <typename Element>
void Append(Bytes& bytes, const Element& element)
{
    const auto* const first = reinterpret_cast<const BYTE*>(&element);
    bytes.insert(bytes.end(), first, first + sizeof element);
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
    ConfigPresentText(element).copy(name.data(),
                                    name.size()); // Deliberate: a name that fills its place has no terminator
    Append(bytes, name);
}

std::wstring PaperForm(const BYTE* element)
{
    WORD paper = 0;
    std::memcpy(&paper, element, sizeof paper);
    return DecimalForm(paper);
}

std::wstring PaperSizeForm(const BYTE* element)
{
    POINT size = {};
    std::memcpy(&size, element, sizeof size);
    return DecimalForm(static_cast<DWORD>(size.x)) + L" x " + DecimalForm(static_cast<DWORD>(size.y));
}

std::wstring PaperNameForm(const BYTE* element)
{
    std::array<wchar_t, paperNameLength> name = {};
    std::memcpy(name.data(), element, sizeof name);
    const std::wstring_view text(name.data(), name.size());
    return TextForm(text.substr(0, text.find(L'\0')), L";:"); // a colon may look like bytes
}

/// A capability whose answer is an array.
struct ArrayCapability {
    WORD capability;
    size_t elementBytes;
    void (*append)(Bytes& bytes, const ConfigEntry& element);
    std::wstring (*form)(const BYTE* element);
};

constexpr std::array arrayCapabilities{
    ArrayCapability{DC_PAPERS,     sizeof(WORD),                      AppendPaper,     PaperForm    },
    ArrayCapability{DC_PAPERSIZE,  sizeof(POINT),                     AppendPaperSize, PaperSizeForm},
    ArrayCapability{DC_PAPERNAMES, sizeof(wchar_t) * paperNameLength, AppendPaperName, PaperNameForm},
};

constexpr std::wstring_view bytesPrefix = L"hex:";

/// A number, and after it the bytes that are copied out; nothing if the entry isn't written so.
std::optional<CapabilityAnswer> NumberWithBytes(const ConfigEntry& entry)
{
    const std::wstring_view value = entry.value;
    const size_t prefix = FindOutsideTexts(value, L':');
    const size_t start = prefix == std::wstring_view::npos ? 0 : prefix + 1 - std::min(prefix + 1, bytesPrefix.size());
    if (entry.isQuoted || !value.substr(start).starts_with(bytesPrefix)) return std::nullopt;
    const std::vector<std::wstring> number = ConfigPieces(value.substr(0, start), L' ');
    if (number.size() != 1) return std::nullopt;
    return CapabilityAnswer{static_cast<int>(ConfigNumber(ElementOf(entry, number.front()))),
                            ConfigBytes(entry, value.substr(start + bytesPrefix.size()))};
}

/// The elements of an array; nothing if they can't be told one by one.
std::optional<std::wstring> ElementsForm(const CapabilityAnswer& answer, const ArrayCapability& array)
{
    if (answer.result < 0 || answer.output.size() != static_cast<size_t>(answer.result) * array.elementBytes)
        return std::nullopt;
    std::wstring list;
    for (size_t at = 0; at < answer.output.size(); at += array.elementBytes)
        list += (list.empty() ? L"" : L"; ") + array.form(&answer.output[at]);
    return list;
}

} // namespace

CapabilityAnswer ConfigCapability(const ConfigEntry& entry, WORD capability)
{
    const auto found = std::ranges::find(arrayCapabilities, capability, &ArrayCapability::capability);
    if (const auto answer = NumberWithBytes(entry)) return *answer;
    if (found == arrayCapabilities.end()) return {static_cast<int>(ConfigNumber(entry)), {}};

    CapabilityAnswer answer{0, {}};
    for (const std::wstring& element : ConfigPieces(entry.value, L';')) {
        found->append(answer.output, ElementOf(entry, element));
        ++answer.result;
    }
    return answer;
}

std::wstring CapabilityForm(const CapabilityAnswer& answer, WORD capability)
{
    const auto array = std::ranges::find(arrayCapabilities, capability, &ArrayCapability::capability);
    if (array != arrayCapabilities.end()) {
        const std::optional<std::wstring> elements = ElementsForm(answer, *array);
        // What is read back must be the same to the byte: a name may have more after its terminator.
        if (elements && ConfigCapability({0, {}, *elements, false, {}}, capability).output == answer.output)
            return *elements;
    }
    std::wstring form = DecimalForm(static_cast<DWORD>(answer.result));
    if (!answer.output.empty() || array != arrayCapabilities.end())
        form.append(L" ").append(bytesPrefix).append(BytesForm(answer.output));
    return form;
}
