#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "description/pxml.h"

// Reads one text into a document's table. Made for one run.
class PXMLParser {
public:
    // All must outlive the parser; `spans` may be null.
    PXMLParser(PXML& document, std::string_view text, std::vector<PXMLSpan>* spans)
        : document_(document), text_(text), spans_(spans), firstNode_(document.getNodeCount()) {}

    // Reads the first top-level element; ends quietly where nothing more can be read.
    void run();

private:
    enum class Step { kGoOn, kStop };

    Step skipComment();
    Step skipInstruction();
    Step readTag(std::string_view pending);
    void openElement(std::string_view inside);
    void readAttributes(std::int32_t node, std::string_view rest);
    void supplyText(std::string_view pending);
    std::string_view store(std::string_view encoded);
    void beginSpan(std::size_t place);
    void endSpan(std::int32_t node, std::size_t place);
    bool startsWith(std::string_view token) const { return text_.substr(at_, token.size()) == token; }

    PXML& document_;
    std::string_view text_;
    std::vector<PXMLSpan>* spans_;
    std::int32_t firstNode_;  // that this run makes
    std::size_t firstSpan_ = spans_ == nullptr ? 0 : spans_->size();
    std::size_t at_ = 0;
    std::int32_t current_ = -1;
    std::int32_t lastCreated_ = -1;
};
