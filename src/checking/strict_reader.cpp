#include "checking/strict_reader.h"

#include <expat.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <type_traits>
#include <utility>

#include "base/text_functions.h"
#include "base/utf8_character.h"
#include "checking/quoted_text.h"

namespace {

constexpr std::string_view kBlanks = " \t\r\n";
// Expat counts the bytes of a text with an int.
constexpr std::size_t kMostBytes = 1U << 30U;

using Parser = std::unique_ptr<std::remove_pointer_t<XML_Parser>, decltype(&XML_ParserFree)>;

bool isUtf16(std::string_view text) {
    return text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF");
}

// The first byte, up to `last`, that begins no character of UTF-8.
std::optional<std::size_t> firstInvalidByte(std::string_view text, std::size_t last) {
    for (std::size_t at = 0; at < text.size() && at <= last;) {
        const std::size_t length = OUtils::utf8CharacterLength(text.substr(at));
        if (length == 0) {
            return at;
        }
        at += length;
    }
    return std::nullopt;
}

bool isReferenceOfASetup(std::string_view text) {
    static constexpr std::string_view kKnown[] = {"&amp;", "&lt;", "&gt;", "&quot;", "&apos;", "&#"};
    return std::ranges::any_of(kKnown, [text](std::string_view known) { return text.starts_with(known); });
}

}  // namespace

// What Expat calls. Its current event's offset is that of the event's first byte.
struct StrictReader::Handlers {
    XML_Parser parser;
    StrictReader& reader;

    std::size_t at() const { return static_cast<std::size_t>(XML_GetCurrentByteIndex(parser)); }
    std::size_t length() const { return static_cast<std::size_t>(XML_GetCurrentByteCount(parser)); }
    static Handlers& of(void* self) { return *static_cast<Handlers*>(self); }

    static void start(void* self, const char* name, const char** attributes) {
        Handlers& handlers = of(self);
        handlers.reader.open(name, attributes, handlers.at());
        const XML_AttrInfo* const places = XML_GetAttributeInfo(handlers.parser);
        StrictElement& element = handlers.reader.elements_.back();
        for (std::size_t i = 0; i < element.attributes.size(); ++i) {
            element.attributes[i].nameAt = static_cast<std::size_t>(places[i].nameStart);
            element.attributes[i].valueAt = static_cast<std::size_t>(places[i].valueStart);
            element.attributes[i].valueEnd = static_cast<std::size_t>(places[i].valueEnd);
        }
    }
    static void end(void* self, const char*) { of(self).reader.open_.pop_back(); }
    static void characters(void* self, const char* text, int length) {
        of(self).reader.addText({text, static_cast<std::size_t>(length)}, of(self).at());
    }
    static void comment(void* self, const char*) { of(self).skip(); }
    static void instruction(void* self, const char*, const char*) { of(self).skip(); }
    static void cdata(void* self) {
        of(self).reader.findings_.add("form-cdata", of(self).at(),
                                      "a setup doesn't know CDATA sections and reads this as an element");
    }
    static void declaration(void* self, const char*, const char* encoding, int) {
        of(self).skip();
        if (encoding != nullptr && !OUtils::equalsIgnoreCase(encoding, "UTF-8") &&
            !OUtils::equalsIgnoreCase(encoding, "US-ASCII")) {
            of(self).reader.findings_.add(
                "form-encoding", of(self).at(),
                "the encoding is " + std::string(encoding) + ", but a setup reads every text as UTF-8");
        }
    }
    static void doctype(void* self, const char*, const char*, const char*, int) {
        // The event is that of the name's end.
        const std::string_view before = of(self).reader.text_.substr(0, of(self).at());
        of(self).reader.findings_.add("form-doctype", before.rfind('<'),
                                      "a setup doesn't know document types and reads this as an element");
        of(self).reader.isRefused_ = true;
        XML_StopParser(of(self).parser, XML_FALSE);
    }

    void skip() { reader.skipped_.emplace_back(at(), at() + length()); }
};

bool StrictReader::read() {
    if (!isFitForReading()) {
        return false;
    }
    const Parser parser(XML_ParserCreate(nullptr), XML_ParserFree);
    if (parser == nullptr) {
        throw std::bad_alloc();
    }
    Handlers handlers{parser.get(), *this};
    XML_SetUserData(parser.get(), &handlers);
    XML_SetElementHandler(parser.get(), Handlers::start, Handlers::end);
    XML_SetCharacterDataHandler(parser.get(), Handlers::characters);
    XML_SetCommentHandler(parser.get(), Handlers::comment);
    XML_SetProcessingInstructionHandler(parser.get(), Handlers::instruction);
    XML_SetStartCdataSectionHandler(parser.get(), Handlers::cdata);
    XML_SetXmlDeclHandler(parser.get(), Handlers::declaration);
    XML_SetStartDoctypeDeclHandler(parser.get(), Handlers::doctype);
    const bool isWellFormed =
        XML_Parse(parser.get(), text_.data(), static_cast<int>(text_.size()), XML_TRUE) == XML_STATUS_OK;
    if (!isWellFormed && !isRefused_) {
        reportError(XML_GetErrorCode(parser.get()), handlers.at());
    }
    if (isWellFormed) {
        reportReferences();
    }
    return isWellFormed;
}

bool StrictReader::isFitForReading() {
    const std::size_t zero = text_.find('\0');
    if (isUtf16(text_)) {
        findings_.add("form-encoding", 0, "the file is UTF-16, but a setup reads every text as UTF-8");
    } else if (text_.size() > kMostBytes) {
        findings_.add("form-too-large", 0, "the file has more than 1 GiB");
    } else if (zero != std::string_view::npos) {
        findings_.add("form-zero-byte", zero, "a setup reads nothing behind this zero byte");
    } else if (text_.find('<') == std::string_view::npos) {
        findings_.add("form-empty", 0, "the file has no elements");
    } else {
        return true;
    }
    return false;
}

void StrictReader::open(const char* name, const char** attributes, std::size_t at) {
    StrictElement element;
    element.name = name;
    element.parent = open_.empty() ? -1 : open_.back();
    element.at = at;
    for (; *attributes != nullptr; attributes += 2) {
        element.attributes.push_back({.name = attributes[0], .value = attributes[1]});
    }
    open_.push_back(static_cast<std::int32_t>(elements_.size()));
    elements_.push_back(std::move(element));
}

void StrictReader::addText(std::string_view text, std::size_t at) {
    StrictElement& element = elements_[static_cast<std::size_t>(open_.back())];
    const std::size_t first = text.find_first_not_of(kBlanks);
    if (element.textAt == 0 && first != std::string_view::npos) {
        element.textAt = at + first;
    }
    element.text += text;
}

void StrictReader::reportError(int error, std::size_t at) {
    switch (error) {
        case XML_ERROR_NO_ELEMENTS:
            reportUnclosed();
            return;
        case XML_ERROR_UNCLOSED_TOKEN:
            findings_.add("form-unclosed", at, "what begins here has no end");
            return;
        case XML_ERROR_TAG_MISMATCH:
            reportMismatch(at);
            return;
        case XML_ERROR_UNDEFINED_ENTITY:
            reportUnknownName(at);
            return;
        case XML_ERROR_DUPLICATE_ATTRIBUTE:
            findings_.add("form-duplicate-attribute", at,
                          "this attribute is given twice, and only the later one counts");
            return;
        case XML_ERROR_JUNK_AFTER_DOC_ELEMENT:
            findings_.add("form-after-root", at, "nothing behind the first element is read");
            return;
        case XML_ERROR_UNKNOWN_ENCODING:
        case XML_ERROR_INCORRECT_ENCODING:
            if (findings_.empty()) {  // the declaration says it already
                findings_.add("form-encoding", at, "a setup reads every text as UTF-8");
            }
            return;
        case XML_ERROR_INVALID_TOKEN:
        case XML_ERROR_BAD_CHAR_REF:
        case XML_ERROR_PARTIAL_CHAR:
            reportInvalidToken(at);
            return;
        default:
            findings_.add("form-not-well-formed", at,
                          std::string("this is not XML: ") + XML_ErrorString(static_cast<XML_Error>(error)));
    }
}

void StrictReader::reportUnclosed() {
    if (!open_.empty()) {
        const StrictElement& element = elements_[static_cast<std::size_t>(open_.back())];
        findings_.add("form-unclosed", element.at, "the element " + element.name + " is never closed");
    } else {
        findings_.add("form-empty", 0, "the file has no elements");
    }
}

// Of a name in a value Expat only knows the tag.
void StrictReader::reportUnknownName(std::size_t at) {
    while (isReferenceOfASetup(text_.substr(at)) || text_[at] != '&') {
        ++at;
    }
    const std::string_view name = text_.substr(at, text_.find(';', at) + 1 - at);
    findings_.add("form-reference", at, "a setup doesn't know " + inQuotes(name) + " and shows it as it is");
}

void StrictReader::reportMismatch(std::size_t at) {
    // Expat's place is that of the name.
    const std::size_t start = text_.rfind('<', at);
    const StrictElement& element = elements_[static_cast<std::size_t>(open_.back())];
    const std::string_view tag = text_.substr(start + 2, text_.find_first_of("> \t\r\n", start) - start - 2);
    findings_.add("form-mismatched-tag", start,
                  "this closes " + std::string(tag) + ", but " + element.name + " of line " +
                      std::to_string(SourceLines(text_).placeOf(element.at).line) + " is open");
}

// Expat only knows that it can't go on here.
void StrictReader::reportInvalidToken(std::size_t at) {
    const std::string_view rest = text_.substr(at);
    const std::size_t tag = text_.rfind('<', at == 0 ? 0 : at - 1);
    const bool isInTag = tag != std::string_view::npos && text_.find('>', tag) >= at;
    if (const auto invalid = firstInvalidByte(text_, at)) {
        findings_.add("form-encoding", *invalid, "this is not UTF-8");
    } else if (const auto dashes = dashesInComment(at)) {
        findings_.add("form-comment", *dashes, "there are two dashes within this comment");
    } else if (rest.starts_with("&") || (at > 0 && text_[at - 1] == '&')) {
        findings_.add("form-reference", rest.starts_with("&") ? at : at - 1,
                      "this & doesn't begin a reference");
    } else if (isInTag && at > 0 && text_[text_.find_last_not_of(kBlanks, at - 1)] == '=') {
        findings_.add("form-unquoted-attribute", at, "this value isn't in quotes");
    } else if (isInTag && rest.starts_with("<")) {
        findings_.add("form-less-in-value", at, "a < can't stand in a value");
    } else {
        findings_.add("form-not-well-formed", at, "this can't stand here");
    }
}

// The two dashes before `at` that a comment must not have; nothing when it isn't a comment that is broken.
std::optional<std::size_t> StrictReader::dashesInComment(std::size_t at) const {
    constexpr std::string_view kStart = "<!--";
    const std::string_view before = text_.substr(0, at);
    const std::size_t start = before.rfind(kStart);
    if (start == std::string_view::npos) {
        return std::nullopt;
    }
    const std::size_t dashes = before.find("--", start + kStart.size());
    const bool isEnd = text_.substr(std::min(dashes, text_.size())).starts_with("-->");
    return dashes == std::string_view::npos || isEnd ? std::nullopt : std::optional(dashes);
}

// A setup knows five names and no numbers.
void StrictReader::reportReferences() {
    for (std::size_t at = text_.find("&#"); at != std::string_view::npos; at = text_.find("&#", at + 1)) {
        if (!isInsideSkipped(at)) {
            findings_.add("form-character-reference", at,
                          "a setup doesn't know references by number and shows this as it is");
        }
    }
}

bool StrictReader::isInsideSkipped(std::size_t offset) const {
    const auto after =
        std::upper_bound(skipped_.begin(), skipped_.end(), std::pair(offset, std::string_view::npos));
    return after != skipped_.begin() && offset < std::prev(after)->second;
}
