#include "description/pxml_parser.h"

#include <algorithm>

#include "base/text_functions.h"
#include "description/pxml_entities.h"

namespace {

constexpr std::string_view kCommentStart = "<!--";
constexpr std::string_view kInstructionStart = "<?";
constexpr std::string_view kBlanks = " \t\n\r";

std::string_view takeUpTo(std::string_view& rest, std::string_view ends) {
    const std::string_view taken = rest.substr(0, rest.find_first_of(ends));
    rest.remove_prefix(taken.size());
    return taken;
}

}  // namespace

void PXML::parseText(std::string_view text, std::vector<PXMLSpan>* outSpans) {
    PXMLParser(*this, text.substr(0, text.find('\0')), outSpans).run();
}

void PXMLParser::run() {
    for (;;) {
        const std::size_t textStart = at_;
        at_ = text_.find('<', at_);
        if (at_ == std::string_view::npos) {
            return;
        }
        Step step = Step::kGoOn;
        if (startsWith(kCommentStart)) {
            step = skipComment();
        } else if (startsWith(kInstructionStart)) {
            step = skipInstruction();
        } else {
            step = readTag(text_.substr(textStart, at_ - textStart));
        }
        if (step == Step::kStop) {
            return;
        }
    }
}

// Three dashes and a `>` don't end a comment: the third dash starts the count anew.
PXMLParser::Step PXMLParser::skipComment() {
    int dashes = 0;
    for (at_ += kCommentStart.size(); at_ < text_.size(); ++at_) {
        if (text_[at_] == '-' && dashes < 2) {
            ++dashes;
        } else if (text_[at_] == '>' && dashes == 2) {
            ++at_;
            return Step::kGoOn;
        } else {
            dashes = 0;
        }
    }
    return Step::kStop;
}

// The closing two characters are left to the next pass, which takes them for text.
PXMLParser::Step PXMLParser::skipInstruction() {
    for (at_ += kInstructionStart.size(); at_ < text_.size(); ++at_) {
        if (text_[at_] == '?' || (at_ + 1 < text_.size() && text_[at_ + 1] == '>')) {
            return Step::kGoOn;
        }
    }
    return Step::kStop;
}

PXMLParser::Step PXMLParser::readTag(std::string_view pending) {
    const std::size_t end = text_.find('>', at_);
    if (end == std::string_view::npos) {
        return Step::kStop;
    }
    const std::string_view inside = text_.substr(at_ + 1, end - at_ - 1);
    const std::size_t start = at_;
    at_ = end + 1;
    const bool isClosing = !inside.empty() && inside.front() == '/';
    const bool isSelfClosing = !isClosing && !inside.empty() && inside.back() == '/';
    if (isClosing && current_ < 0) {
        return Step::kStop;
    }
    if (!isClosing) {
        beginSpan(start);
        openElement(OUtils::trimWhiteSpace(inside));
    }
    if (!isClosing && !isSelfClosing) {
        return Step::kGoOn;
    }
    if (isSelfClosing) {
        PXMLNode& node = document_.nodes_[static_cast<std::size_t>(lastCreated_)];
        node.text = "";
        node.textLength = 1;
    } else {
        supplyText(pending);
    }
    endSpan(current_, at_);
    current_ = document_.nodes_[static_cast<std::size_t>(current_)].parent;
    return current_ < 0 ? Step::kStop : Step::kGoOn;
}

void PXMLParser::openElement(std::string_view inside) {
    std::string_view rest = inside;
    const std::string_view name = takeUpTo(rest, " \t\n\r/");
    current_ = document_.appendNode(current_, name);
    lastCreated_ = current_;
    readAttributes(current_, rest);
}

// What can't be read ends the list; the attributes before it stay.
void PXMLParser::readAttributes(std::int32_t node, std::string_view rest) {
    for (;;) {
        rest.remove_prefix(std::min(rest.find_first_not_of(kBlanks), rest.size()));
        if (rest.empty()) {
            return;
        }
        const std::string_view name = takeUpTo(rest, " \t\n\r=");
        const std::size_t quote = rest.find_first_of("\"'");
        if (quote == std::string_view::npos) {
            return;
        }
        const std::size_t end = rest.find(rest[quote], quote + 1);
        if (end == std::string_view::npos) {
            return;
        }
        const std::string_view value = store(rest.substr(quote + 1, end - quote - 1));
        document_.nodes_[static_cast<std::size_t>(node)].attributes.push_back(
            {document_.arena_.add(name), value});
        rest.remove_prefix(end + 1);
    }
}

// Text belongs to the element that was opened last, and only its first end tag supplies it.
void PXMLParser::supplyText(std::string_view pending) {
    PXMLNode& node = document_.nodes_[static_cast<std::size_t>(lastCreated_)];
    if (!node.text) {
        node.text = store(OUtils::trimWhiteSpace(pending));
        node.textLength = static_cast<std::int32_t>(node.text->size());
    }
}

std::string_view PXMLParser::store(std::string_view encoded) {
    char* decoded = document_.arena_.reserve(encoded.size());
    const std::size_t length = PXMLEntities::decode(encoded, decoded);
    document_.arena_.giveBack(encoded.size() - length);
    return {decoded, length};
}

void PXMLParser::beginSpan(std::size_t place) {
    if (spans_ != nullptr) {
        spans_->push_back({place, PXMLSpan::kNoEnd});
    }
}

void PXMLParser::endSpan(std::int32_t node, std::size_t place) {
    if (spans_ != nullptr) {
        (*spans_)[firstSpan_ + static_cast<std::size_t>(node - firstNode_)].end = place;
    }
}
