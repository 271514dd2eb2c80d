#include "checking/source_document.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <utility>

#include "base/text_functions.h"
#include "checking/strict_reader.h"

namespace {

// XML has each line end as LF; our reader keeps what is there.
std::string withPlainLineEnds(std::string_view text) {
    std::string plain;
    plain.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\r') {
            plain += text[i];
        } else if (text.substr(i + 1, 1) != "\n") {
            plain += '\n';
        }
    }
    return plain;
}

bool hasLineBreakOrTab(std::string_view value) {
    return value.find_first_of("\r\n\t") != std::string_view::npos;
}

// Compares what the two readers have read of one text.
class Comparison {
public:
    Comparison(const std::vector<StrictElement>& strict, const PXML& tolerant, Findings& findings)
        : strict_(strict), tolerant_(tolerant), findings_(findings) {}

    // True when both have the same elements with the same attributes.
    bool run() {
        const std::size_t count =
            std::min(strict_.size(), static_cast<std::size_t>(tolerant_.getNodeCount()));
        for (std::size_t i = 0; i < count; ++i) {
            const PXMLNode& node = *tolerant_.getNode(static_cast<std::int32_t>(i));
            if (!isSameElement(strict_[i], node)) {
                report(strict_[i].at, "a setup finds the element " + std::string(node.name) + " here");
                return false;
            }
        }
        if (strict_.size() != static_cast<std::size_t>(tolerant_.getNodeCount())) {
            report(strict_[std::min(count, strict_.size() - 1)].at,
                   strict_.size() > count ? "a setup doesn't find this element"
                                          : "a setup finds an element more behind this one");
            return false;
        }
        bool isSame = true;
        for (std::size_t i = 0; i < count; ++i) {
            const PXMLNode& node = *tolerant_.getNode(static_cast<std::int32_t>(i));
            isSame = compareAttributes(strict_[i], node) && isSame;
            compareText(strict_[i], node);
        }
        return isSame;
    }

private:
    static bool isSameElement(const StrictElement& strict, const PXMLNode& node) {
        return strict.name == node.name && strict.parent == node.parent;
    }

    bool compareAttributes(const StrictElement& strict, const PXMLNode& node) {
        for (std::size_t i = 0; i < strict.attributes.size(); ++i) {
            const StrictElement::Attribute& attribute = strict.attributes[i];
            if (i >= node.attributes.size() || node.attributes[i].name != attribute.name) {
                report(attribute.valueAt, "a setup doesn't find the attribute " + attribute.name);
                return false;
            }
            compareValue(attribute, *node.attributes[i].value);
        }
        return strict.attributes.size() == node.attributes.size();
    }

    void compareValue(const StrictElement::Attribute& attribute, std::string_view value) {
        if (value == attribute.value || value.find("&#") != std::string_view::npos) {
            return;  // the same, or told where the reference stands
        }
        if (hasLineBreakOrTab(value)) {
            findings_.add("form-line-break", attribute.valueAt,
                          "the value of " + attribute.name +
                              " has a line break or tab, which XML tools read as a blank and a setup keeps");
        } else {
            report(attribute.valueAt, "a setup reads another value of " + attribute.name);
        }
    }

    void compareText(const StrictElement& strict, const PXMLNode& node) {
        const std::string whole = withPlainLineEnds(strict.text);
        const std::string_view text = OUtils::trimWhiteSpace(whole);
        const std::string read = withPlainLineEnds(node.text.value_or(""));
        if (text == read || read.find("&#") != std::string::npos) {
            return;
        }
        findings_.add("form-text-lost", strict.textAt == 0 ? strict.at : strict.textAt,
                      read.empty()
                          ? "a setup doesn't read this text of " + strict.name
                          : "of this text of " + strict.name + " a setup only reads \"" + read + "\"");
    }

    // The reason is known where the strict reader has told something already.
    void report(std::size_t at, const std::string& message) {
        if (findings_.empty()) {
            findings_.add("form-read-differently", at, message);
        }
    }

    const std::vector<StrictElement>& strict_;
    const PXML& tolerant_;
    Findings& findings_;
};

// The first tag's end that our reader sees lies within a value.
bool reportGreaterInValues(std::string_view text, const std::vector<StrictElement>& elements,
                           Findings& findings) {
    bool isFree = true;
    for (const StrictElement& element : elements) {
        for (const StrictElement::Attribute& attribute : element.attributes) {
            const char quote = text[attribute.valueAt - 1];
            const std::size_t end = text.find(quote, attribute.valueAt);
            const std::size_t greater = text.find('>', attribute.valueAt);
            if (greater < end) {
                findings.add("form-greater-in-value", greater,
                             "for a setup this > in the value of " + attribute.name + " ends the tag");
                isFree = false;
            }
        }
    }
    return isFree;
}

}  // namespace

bool SourceDocument::read(std::string_view text, Findings& findings) {
    StrictReader strict(text, findings);
    if (!strict.read() || !reportGreaterInValues(text, strict.elements(), findings)) {
        return false;
    }
    xml_.parseText(text);
    if (!Comparison(strict.elements(), xml_, findings).run()) {
        return false;
    }
    for (const StrictElement& element : strict.elements()) {
        NodePlaces places{element.at, element.textAt == 0 ? element.at : element.textAt, {}};
        for (const StrictElement::Attribute& attribute : element.attributes) {
            places.attributes.push_back(attribute.valueAt);
        }
        places_.push_back(std::move(places));
    }
    return true;
}

std::size_t SourceDocument::placeOf(std::int32_t node) const {
    return xml_.getNode(node) == nullptr ? 0 : places_[static_cast<std::size_t>(node)].element;
}

std::size_t SourceDocument::placeOfText(std::int32_t node) const {
    return xml_.getNode(node) == nullptr ? 0 : places_[static_cast<std::size_t>(node)].text;
}

std::size_t SourceDocument::placeOfAttribute(std::int32_t node, std::size_t attribute) const {
    if (xml_.getNode(node) == nullptr) {
        return 0;
    }
    const NodePlaces& places = places_[static_cast<std::size_t>(node)];
    return attribute < places.attributes.size() ? places.attributes[attribute] : places.element;
}

std::size_t SourceDocument::placeOfAttribute(std::int32_t node, std::string_view name) const {
    const PXMLNode* const found = xml_.getNode(node);
    if (found == nullptr) {
        return 0;
    }
    for (std::size_t i = found->attributes.size(); i > 0; --i) {
        if (OUtils::equalsIgnoreCase(found->attributes[i - 1].name, name)) {
            return placeOfAttribute(node, i - 1);
        }
    }
    return placeOf(node);
}
