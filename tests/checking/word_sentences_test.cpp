#include "checking/word_sentences.h"

#include <gtest/gtest.h>

#include "checking/grammar.h"

namespace {

// Elements and attributes of names that authors choose aren't shown in an editor.
bool isFree(const grammar::ElementRule& rule) {
    return grammar::namesOf(rule).empty() && rule.type != grammar::kPage;
}

TEST(WordSentences, ExplainEveryElement) {
    for (const grammar::ElementRule& rule : grammar::elementRules()) {
        EXPECT_TRUE(isFree(rule) || !sentenceOf(rule.type).empty()) << rule.type;
    }
    EXPECT_EQ(sentenceOf("no such type"), "");
}

TEST(WordSentences, ExplainEveryAttribute) {
    for (const grammar::ElementRule& rule : grammar::elementRules()) {
        for (const grammar::AttributeRule* const attribute : grammar::attributesOf(rule.type)) {
            EXPECT_TRUE(isFree(rule) || !sentenceOf(rule.type, attribute->name).empty())
                << rule.type << " " << attribute->name;
        }
    }
}

TEST(WordSentences, PreferWhatIsSaidOfTheTypeItself) {
    EXPECT_EQ(sentenceOf("FN", "Condition"),
              "the file is installed when this and the set's condition are true");
    EXPECT_EQ(sentenceOf("Shortcuts", "Condition"), "A condition that isn't given is true");
}

}  // namespace
