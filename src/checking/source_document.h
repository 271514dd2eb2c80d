#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "checking/finding.h"
#include "description/pxml.h"

// A description together with where everything stands in its text. The elements are those that a setup's own
// reader finds (PXML); a strict reader of XML 1.0 (Expat) gives the places, and whatever the two read
// differently is a finding.
class SourceDocument {
public:
    struct NodePlaces {
        std::size_t element = 0;              // of its `<`
        std::size_t text = 0;                 // of the first character that isn't blank; else of its end
        std::vector<std::size_t> attributes;  // of their values, in the order of PXMLNode::attributes
    };

    // Reads a text, which is borrowed and outlives this object. True when the two readers find the same
    // elements, so that the rest of this class can be used.
    bool read(std::string_view text, Findings& findings);

    const PXML& xml() const { return xml_; }
    // Offsets in the text; 0 for a bad index.
    std::size_t placeOf(std::int32_t node) const;
    std::size_t placeOfText(std::int32_t node) const;
    // Of the value of an attribute, by its index among those of the node.
    std::size_t placeOfAttribute(std::int32_t node, std::size_t attribute) const;
    // Of the value of the attribute that counts; of the element when it has none of this name.
    std::size_t placeOfAttribute(std::int32_t node, std::string_view name) const;

private:
    PXML xml_;
    std::vector<NodePlaces> places_;
};
