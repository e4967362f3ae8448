// SPDX-License-Identifier: MIT
#include "labelprinter/monitor/QrmlRequest.h"

#include <algorithm>
#include <array>

namespace {

constexpr std::string_view endOfRequest = "&#00;";
constexpr int deepest = 4; // more than any request needs

struct Escape {
    std::string_view text;
    char byte;
};

constexpr std::array escapes{
    Escape{"&#0;",   '\0'},
    Escape{"&quot;", '"' },
    Escape{"&amp;",  '&' },
    Escape{"&lt;",   '<' },
    Escape{"&gt;",   '>' },
};

bool IsNameCharacter(char character)
{
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
}

/// Reads a request from its beginning on. Each step answers false if it doesn't find what it wants.
class Parser {
public:
    explicit Parser(std::string_view text) : _rest(text) {}

    bool IsAtEnd() const { return _rest.empty(); }

    bool Skip(std::string_view text)
    {
        if (!_rest.starts_with(text)) return false;
        _rest.remove_prefix(text.size());
        return true;
    }

    bool ReadElement(QrmlElement& element, int depth = 0)
    {
        if (depth == deepest || !Skip("<") || !ReadName(element.name)) return false;
        while (Skip(" ")) {
            if (Skip("/>")) return true;
            if (!ReadAttribute(element)) return false;
        }
        return Skip(">") && ReadContent(element, depth);
    }

private:
    bool ReadName(std::string& name)
    {
        const auto end = std::ranges::find_if_not(_rest, IsNameCharacter);
        name.assign(_rest.begin(), end);
        _rest.remove_prefix(name.size());
        return !name.empty();
    }

    bool ReadAttribute(QrmlElement& element)
    {
        std::string name;
        if (!ReadName(name) || !Skip("='")) return false;
        const size_t end = _rest.find('\'');
        if (end == std::string_view::npos) return false;
        element.attributes[name] = _rest.substr(0, end);
        _rest.remove_prefix(end + 1);
        return true;
    }

    bool ReadContent(QrmlElement& element, int depth)
    {
        for (;;) {
            if (Skip("</")) return Skip(element.name) && Skip(">");
            if (_rest.starts_with('<')) {
                if (!ReadElement(element.children.emplace_back(), depth + 1)) return false;
            } else if (!ReadCharacter(element.text)) {
                return false;
            }
        }
    }

    bool ReadCharacter(std::string& text)
    {
        if (_rest.empty()) return false;
        for (const Escape& escape : escapes) {
            if (!Skip(escape.text)) continue;
            text += escape.byte;
            return true;
        }
        text += _rest.front();
        _rest.remove_prefix(1);
        return true;
    }

    std::string_view _rest;
};

} // namespace

std::string_view QrmlElement::Attribute(std::string_view attribute) const
{
    const auto entry = attributes.find(attribute);
    return entry == attributes.end() ? std::string_view() : entry->second;
}

std::optional<std::vector<QrmlElement>> ParseQrml(std::string_view request)
{
    Parser parser(request);
    std::vector<QrmlElement> elements;
    do {
        if (!parser.ReadElement(elements.emplace_back())) return std::nullopt;
        if (parser.Skip(endOfRequest)) break;
    } while (parser.Skip(";") && !parser.IsAtEnd());
    return parser.IsAtEnd() ? std::optional(std::move(elements)) : std::nullopt;
}
