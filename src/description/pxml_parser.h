#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "description/pxml.h"

// Reads one text into a document's table. Made for one run.
class PXMLParser {
public:
    // Both must outlive the parser.
    PXMLParser(PXML& document, std::string_view text) : document_(document), text_(text) {}

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
    bool startsWith(std::string_view token) const { return text_.substr(at_, token.size()) == token; }

    PXML& document_;
    std::string_view text_;
    std::size_t at_ = 0;
    std::int32_t current_ = -1;
    std::int32_t lastCreated_ = -1;
};
