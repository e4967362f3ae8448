// SPDX-License-Identifier: MIT
#include "foundation/text/Wildcard.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

/// What a wildcard means, straight from its definition.
bool MatchesByDefinition(const char16_t* pattern, const char16_t* text)
{
    if (*pattern == u'\0') return *text == u'\0';
    if (*pattern == u'*')
        return MatchesByDefinition(pattern + 1, text) || (*text != u'\0' && MatchesByDefinition(pattern, text + 1));
    if (*text == u'\0') return false;
    return (*pattern == u'?' || *pattern == *text) && MatchesByDefinition(pattern + 1, text + 1);
}

std::vector<std::u16string> AllWords(std::u16string_view alphabet, size_t longest)
{
    std::vector<std::u16string> words{u""};
    for (size_t i = 0; i < words.size(); ++i) {
        const std::u16string word = words[i];
        if (word.size() == longest) continue;
        for (const char16_t letter : alphabet) words.push_back(word + letter);
    }
    return words;
}

TEST(Wildcard, MatchesByDefinitionForAllShortPatternsAndTexts)
{
    const auto patterns = AllWords(u"ab?*", 5);
    const auto texts = AllWords(u"ab", 5);
    for (const auto& pattern : patterns) {
        for (const auto& text : texts) {
            ASSERT_EQ(MatchesWildcard(pattern.c_str(), text.c_str()),
                      MatchesByDefinition(pattern.c_str(), text.c_str()))
                << std::string(pattern.begin(), pattern.end()) << " on " << std::string(text.begin(), text.end());
        }
    }
}

TEST(Wildcard, ManyStarsTakeNoTimeToFail)
{
    std::u16string pattern;
    for (int i = 0; i < 30; ++i) pattern += u"*a";
    pattern += u"*b";
    const std::u16string text(5000, u'a');
    EXPECT_FALSE(MatchesWildcard(pattern.c_str(), text.c_str()));
}

} // namespace
