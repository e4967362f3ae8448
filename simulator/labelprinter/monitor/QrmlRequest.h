// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// One element of a request, as `<name attribute='value'>content</name>` or `<name attribute='value' />`.
struct QrmlElement {
    std::string name;
    std::map<std::string, std::string, std::less<>> attributes;
    std::vector<QrmlElement> children;
    std::string text; ///< what stands between the tags besides the children, without its escapes

    /// The value of an attribute; empty if it isn't there.
    std::string_view Attribute(std::string_view attribute) const;
};

/// The elements of a request, which are separated by semicolons and may end with "&#00;". Nothing for a text that is no
/// request.
std::optional<std::vector<QrmlElement>> ParseQrml(std::string_view request);
