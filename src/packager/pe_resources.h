#pragma once

#include <compare>
#include <cstdint>
#include <string>
#include <vector>

class PeImage;

// The name of a resource or of a type of them: a text, or a number where the text is empty. Those with texts
// come first, as in the tables of an image.
struct PeName {
    std::u16string text;
    std::uint16_t number = 0;

    std::strong_ordering operator<=>(const PeName& other) const {
        if (text.empty() != other.text.empty()) {
            return text.empty() ? std::strong_ordering::greater : std::strong_ordering::less;
        }
        const int order = text.compare(other.text);
        return order != 0 ? order <=> 0 : number <=> other.number;
    }
    bool operator==(const PeName&) const = default;
};

struct PeResource {
    PeName type;
    PeName name;
    std::uint16_t language = 0;
    std::uint32_t codePage = 0;
    std::string data;

    bool operator==(const PeResource&) const = default;
};

// All resources of the image, in the order of its tables; none without a table. Throws InstallerError with
// one line when the tables are damaged.
std::vector<PeResource> readPeResources(const PeImage& image);

// The tables and contents of the resources as they lie in memory from `address` on. The order in which they
// are given doesn't matter; of two with the same type, name and language the later one counts.
std::string peResourceSection(const std::vector<PeResource>& resources, std::uint32_t address);
