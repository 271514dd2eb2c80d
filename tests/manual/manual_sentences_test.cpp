// Editors show sentences of the manual next to an element or attribute. They stand in the code, so that the
// packager doesn't carry the manual; each must be found on a page, without its markup.

#include <gtest/gtest.h>

#include <algorithm>

#include "checking/grammar.h"
#include "checking/word_sentences.h"
#include "manual/manual_text.h"

namespace {

// The text of a page as a reader sees it, with one blank for each run of white space.
std::string plainText(const std::string& page) {
    std::string plain;
    for (std::size_t at = 0; at < page.size(); ++at) {
        const char c = page[at];
        const std::size_t target = page.compare(at, 2, "](") == 0 ? page.find(')', at) : std::string::npos;
        if (target != std::string::npos) {
            at = target;
        } else if (c == ' ' || c == '\n') {
            plain += plain.ends_with(' ') ? "" : " ";
        } else if (c != '`' && c != '[') {
            plain += c;
        }
    }
    return plain;
}

std::string withoutBrackets(std::string_view sentence) {
    std::string plain(sentence);
    std::erase(plain, '[');
    return plain;
}

class ManualSentences : public testing::Test {
protected:
    ManualSentences() {
        for (const ManualPage& page : manualPages()) {
            pages_.push_back(plainText(page.text));
        }
    }

    bool stands(std::string_view sentence) const {
        return std::ranges::any_of(pages_, [wanted = withoutBrackets(sentence)](const std::string& page) {
            return page.find(wanted) != std::string::npos;
        });
    }

    std::vector<std::string> pages_;
};

TEST_F(ManualSentences, StandInTheManual) {
    for (const grammar::ElementRule& rule : grammar::elementRules()) {
        EXPECT_TRUE(stands(sentenceOf(rule.type))) << rule.type << ": " << sentenceOf(rule.type);
        for (const grammar::AttributeRule* const attribute : grammar::attributesOf(rule.type)) {
            const std::string_view sentence = sentenceOf(rule.type, attribute->name);
            EXPECT_TRUE(stands(sentence)) << rule.type << " " << attribute->name << ": " << sentence;
        }
    }
}

TEST_F(ManualSentences, AreMissedWhenTheManualDoesNotHaveThem) {
    EXPECT_FALSE(stands("A set of files that belong to nobody"));
    EXPECT_TRUE(stands("A set of files that belong together"));
}

}  // namespace
