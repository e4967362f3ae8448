// SPDX-License-Identifier: MIT
#pragma once

#include "foundation/Platform.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

/// What a registration script wants of the registry, read into a tree before anything is written.
///
/// A script is a list of roots (HKCR, HKCU, HKLM, HKU or the long names), each followed by a block of keys:
///
///     HKCR
///     {
///         NoRemove CLSID                          // a key that others share: unregistering leaves it
///         {
///             ForceRemove %CLSID% = s 'Text'      // emptied first; unregistering removes all below it
///             {
///                 val Name = d 1                  // a named value: s for a text, d for a number
///             }
///         }
///         Delete Old                              // removed at registration, ignored afterwards
///     }
///
/// Tokens are parted by white space. 'Quotes' hold blanks together, two of them inside stand for one. %NAME% is
/// replaced in keys, names and texts, %% is a percent sign. Keywords know no letter case. "//" starts a comment.
class RegistrationScript {
public:
    using Replacements = std::map<std::wstring, std::wstring, std::less<>>;

    using Data = std::variant<std::wstring, DWORD>;

    struct Value {
        std::wstring name; ///< empty for the default value of the key
        Data data;
    };

    enum class Removal {
        WhenEmpty, ///< no keyword: unregistering removes the key unless something foreign is below it
        Never,     ///< NoRemove
        Whole,     ///< ForceRemove
        AtOnce,    ///< Delete
    };

    struct Key {
        std::wstring name;
        Removal removal = Removal::WhenEmpty;
        std::vector<Value> values;
        std::vector<Key> keys;
    };

    struct Root {
        HKEY handle; ///< one of the platform's predefined keys
        std::vector<Key> keys;
    };

    /// Nothing for a malformed script or one that names an unknown replacement.
    static std::optional<RegistrationScript> Parse(std::wstring_view text, const Replacements& replacements);

    const std::vector<Root>& Roots() const noexcept { return _roots; }

private:
    std::vector<Root> _roots;
};
