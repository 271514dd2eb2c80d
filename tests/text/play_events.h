#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <string>
#include <string_view>

#include "text/tgm_translator.h"

// Plays events that are written as tags: doc, h1 to h6, ul, ol, al (lettered), li, b, i, q, p, c (composite).
// The text between two tags is one text event.
class EventPlayer {
public:
    explicit EventPlayer(TGMTranslator& translator) : translator_(translator) {}

    void play(std::string_view script) {
        while (!script.empty()) {
            if (script.front() == '<') {
                const std::size_t end = script.find('>');
                ASSERT_NE(end, std::string_view::npos) << script;
                playTag(script.substr(1, end - 1));
                script.remove_prefix(end + 1);
            } else {
                const std::size_t end = std::min(script.find('<'), script.size());
                translator_.text(script.substr(0, end));
                script.remove_prefix(end);
            }
        }
    }

private:
    void playTag(std::string_view tag) {
        const bool isEnd = tag.front() == '/';
        tag.remove_prefix(isEnd ? 1 : 0);
        if (tag.size() == 2 && tag[0] == 'h') {
            isEnd ? translator_.endHeader(tag[1] - '0') : translator_.beginHeader(tag[1] - '0');
        } else if (tag == "ul" || tag == "ol" || tag == "al") {
            const TGMListKind kind = tag == "ul"   ? kTgmBulletList
                                     : tag == "ol" ? kTgmNumberList
                                                   : kTgmLetterList;
            isEnd ? translator_.endList(kind) : translator_.beginList(kind);
        } else {
            playSimple(tag, isEnd);
        }
    }

    void playSimple(std::string_view tag, bool isEnd) {
        struct Pair {
            std::string_view tag;
            void (TGMTranslator::*begin)();
            void (TGMTranslator::*end)();
        };
        static constexpr Pair kPairs[] = {
            {"doc", &TGMTranslator::beginDocument, &TGMTranslator::endDocument},
            {"li", &TGMTranslator::beginItem, &TGMTranslator::endItem},
            {"b", &TGMTranslator::beginBold, &TGMTranslator::endBold},
            {"i", &TGMTranslator::beginItalic, &TGMTranslator::endItalic},
            {"q", &TGMTranslator::beginQuote, &TGMTranslator::endQuote},
            {"p", &TGMTranslator::beginParagraph, &TGMTranslator::endParagraph},
            {"c", &TGMTranslator::beginComposite, &TGMTranslator::endComposite},
        };
        for (const Pair& pair : kPairs) {
            if (pair.tag == tag) {
                (translator_.*(isEnd ? pair.end : pair.begin))();
                return;
            }
        }
        ADD_FAILURE() << "no such event: " << tag;
    }

    TGMTranslator& translator_;
};

// The output of a translator for a script of events. All ways of taking it agree; the last one moves it out.
template <typename Translator>
std::string played(Translator& translator, std::string_view script) {
    EventPlayer(translator).play(script);
    const std::string result = translator.getResult();
    EXPECT_EQ(result, translator.getText());
    EXPECT_EQ(result, translator.takeResult());
    return result;
}

// Random events in any order and number, nested at most `depth` deep; each begin has its end. The same seed
// gives the same events.
class RandomEvents {
public:
    explicit RandomEvents(std::uint32_t seed) : state_(seed) {}

    std::string document(int depth) { return "<doc>" + blocks(depth) + "</doc>"; }

private:
    std::uint32_t next(std::uint32_t bound) {
        state_ = state_ * 1664525U + 1013904223U;
        return (state_ >> 16) % bound;
    }

    std::string blocks(int depth) {
        static constexpr std::string_view kTags[] = {"h1", "h6", "ul", "ol", "al", "li",
                                                     "b",  "i",  "q",  "p",  "c"};
        std::string script;
        for (std::uint32_t i = next(4); i > 0; --i) {
            if (depth == 0 || next(3) == 0) {
                script += words();
                continue;
            }
            const std::string tag(kTags[next(std::size(kTags))]);
            script += "<" + tag + ">" + blocks(depth - 1) + "</" + tag + ">";
        }
        return script;
    }

    std::string words() {
        std::string text;
        for (std::uint32_t i = next(30) + 1; i > 0; --i) {
            text += std::string(next(12) + 1, static_cast<char>('a' + next(26)));
            text += std::string(next(3), ' ');
        }
        return text;
    }

    std::uint32_t state_;
};
