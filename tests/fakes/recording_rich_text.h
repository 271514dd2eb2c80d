#pragma once

#include <string>
#include <vector>

#include "text/rich_text_callback.h"

// Records each call as a line with its name and its arguments. The text of addChar shows that a text arrived
// whole and in how many calls.
class RecordingRichText : public RichTextCallback {
public:
    void addChar(std::string_view text) override { calls.push_back("addChar " + std::string(text)); }
    void paragraph() override { calls.emplace_back("paragraph"); }
    void setStyle(RichTextStyle kind, bool on) override {
        calls.push_back("setStyle " + std::to_string(static_cast<int>(kind)) + (on ? " 1" : " 0"));
    }
    void setFontSize(int size) override { calls.push_back("setFontSize " + std::to_string(size)); }
    void setAlignment(RichTextAlignment alignment) override {
        calls.push_back("setAlignment " + std::to_string(static_cast<int>(alignment)));
    }
    void resetStyles() override { calls.emplace_back("resetStyles"); }
    void setLeftIndent(int tenthsOfMillimetre) override {
        calls.push_back("setLeftIndent " + std::to_string(tenthsOfMillimetre));
    }
    void endDocument() override { calls.emplace_back("endDocument"); }

    std::vector<std::string> calls;
};
