#include "packager/pe_resources.h"

#include <cstddef>
#include <map>
#include <string_view>
#include <type_traits>
#include <utility>

#include "base/failure.h"
#include "package/little_endian.h"
#include "packager/byte_text.h"
#include "packager/pe_format.h"
#include "packager/pe_image.h"

namespace {

using namespace PeFormat;

constexpr std::size_t kMostResources = 4096;
constexpr std::size_t kDataAlignment = 8;

class Reader {
public:
    explicit Reader(const PeImage& image)
        : image_(image), bytes_(image.contentAt(image.resourceAddress())), left_(image.bytes().size()) {}

    std::vector<PeResource> read() {
        for (const Entry& type : entriesOf(kHighBit)) {
            for (const Entry& name : entriesOf(type.place)) {
                for (const Entry& language : entriesOf(name.place)) {
                    add(nameOf(type), nameOf(name), language);
                }
            }
        }
        return std::move(resources_);
    }

private:
    struct Entry {
        std::uint32_t name;
        std::uint32_t place;
    };

    [[noreturn]] static void refuse() { fail("the resources of the image for Windows are damaged"); }

    const unsigned char* at(std::size_t offset, std::size_t size) const {
        if (offset > bytes_.size() || bytes_.size() - offset < size) {
            refuse();
        }
        return reinterpret_cast<const unsigned char*>(bytes_.data()) + offset;
    }

    // Of the table that the place of an entry leads to.
    std::vector<Entry> entriesOf(std::uint32_t place) {
        if ((place & kHighBit) == 0) {
            refuse();
        }
        const std::size_t offset = place & ~kHighBit;
        const unsigned char* const table = at(offset, kResourceTableSize);
        const std::size_t count = std::size_t{LittleEndian::readUnsigned16(table + kNamedCount)} +
                                  LittleEndian::readUnsigned16(table + kNumberedCount);
        seen_ += count;
        if (seen_ > 3 * kMostResources) {
            refuse();
        }
        const unsigned char* const first = at(offset + kResourceTableSize, count * kResourceEntrySize);
        std::vector<Entry> entries;
        for (std::size_t i = 0; i < count; ++i) {
            const unsigned char* const entry = first + i * kResourceEntrySize;
            entries.push_back({LittleEndian::readUnsigned(entry), LittleEndian::readUnsigned(entry + 4)});
        }
        return entries;
    }

    PeName nameOf(const Entry& entry) const {
        if ((entry.name & kHighBit) == 0) {
            return {{}, static_cast<std::uint16_t>(entry.name)};
        }
        const std::size_t offset = entry.name & ~kHighBit;
        const std::size_t length = LittleEndian::readUnsigned16(at(offset, 2));
        const unsigned char* const units = at(offset + 2, length * 2);
        PeName name;
        for (std::size_t i = 0; i < length; ++i) {
            name.text += static_cast<char16_t>(LittleEndian::readUnsigned16(units + i * 2));
        }
        return name;
    }

    // Contents that overlap could add up to far more than the image.
    void add(PeName type, PeName name, const Entry& language) {
        const unsigned char* const entry = at(language.place, kDataEntrySize);
        const std::uint32_t size = LittleEndian::readUnsigned(entry + kDataSize);
        const std::string_view data = image_.contentAt(LittleEndian::readUnsigned(entry + kDataAddress));
        if (data.size() < size || size > left_) {
            refuse();
        }
        left_ -= size;
        resources_.push_back({std::move(type), std::move(name), static_cast<std::uint16_t>(language.name),
                              LittleEndian::readUnsigned(entry + kDataCodePage),
                              std::string(data.substr(0, size))});
    }

    const PeImage& image_;
    std::string_view bytes_;
    std::size_t left_;
    std::size_t seen_ = 0;
    std::vector<PeResource> resources_;
};

using Languages = std::map<std::uint16_t, const PeResource*>;
using Names = std::map<PeName, Languages>;
using Types = std::map<PeName, Names>;

// Four parts, one after the other: tables, places of the contents, texts, contents.
class Writer {
public:
    Writer(const Types& types, std::uint32_t address) : types_(types), address_(address) {}

    std::string write() {
        measure();
        writeTypes();
        std::string section = tables_ + places_ + texts_;
        ByteText::pad(section, kDataAlignment);
        return section + contents_;
    }

private:
    static std::size_t tableSize(std::size_t entries) {
        return kResourceTableSize + entries * kResourceEntrySize;
    }
    static std::size_t textSize(const PeName& name) {
        return name.text.empty() ? 0 : 2 + 2 * name.text.size();
    }

    void measure() {
        std::size_t count = 0;
        std::size_t texts = 0;
        textStart_ = tableSize(types_.size());
        for (const auto& [type, names] : types_) {
            textStart_ += tableSize(names.size());
            texts += textSize(type);
            for (const auto& [name, languages] : names) {
                textStart_ += tableSize(languages.size());
                texts += textSize(name);
                count += languages.size();
            }
        }
        placeStart_ = textStart_;
        textStart_ += count * kDataEntrySize;
        const std::size_t end = textStart_ + texts;
        contentStart_ = (end + kDataAlignment - 1) / kDataAlignment * kDataAlignment;
    }

    template <typename Table>
    static std::string header(const Table& table) {
        std::string bytes(kNamedCount, '\0');
        std::uint32_t named = 0;
        if constexpr (!std::is_same_v<Table, Languages>) {
            for (const auto& [name, rest] : table) {
                named += name.text.empty() ? 0 : 1;
            }
        }
        LittleEndian::append16(bytes, named);
        LittleEndian::append16(bytes, static_cast<std::uint32_t>(table.size()) - named);
        return bytes;
    }

    std::uint32_t keyOf(const PeName& name) {
        if (name.text.empty()) {
            return name.number;
        }
        const std::size_t offset = textStart_ + texts_.size();
        LittleEndian::append16(texts_, static_cast<std::uint32_t>(name.text.size()));
        LittleEndian::appendWide(texts_, name.text);
        return kHighBit | static_cast<std::uint32_t>(offset);
    }

    // The tables of a level follow each other, and those of the next level follow them.
    void writeTypes() {
        std::string ofNames;
        std::string ofLanguages;
        tables_ = header(types_);
        std::size_t nameTable = tableSize(types_.size());
        std::size_t languageTable = nameTable;
        for (const auto& [type, names] : types_) {
            languageTable += tableSize(names.size());
        }
        for (const auto& [type, names] : types_) {
            LittleEndian::append32(tables_, keyOf(type));
            LittleEndian::append32(tables_, kHighBit | static_cast<std::uint32_t>(nameTable));
            nameTable += tableSize(names.size());
            ofNames += header(names);
            for (const auto& [name, languages] : names) {
                LittleEndian::append32(ofNames, keyOf(name));
                LittleEndian::append32(ofNames, kHighBit | static_cast<std::uint32_t>(languageTable));
                languageTable += tableSize(languages.size());
                ofLanguages += header(languages);
                writeLanguages(languages, ofLanguages);
            }
        }
        tables_ += ofNames + ofLanguages;
    }

    void writeLanguages(const Languages& languages, std::string& table) {
        for (const auto& [language, resource] : languages) {
            LittleEndian::append32(table, language);
            LittleEndian::append32(table, static_cast<std::uint32_t>(placeStart_ + places_.size()));
            LittleEndian::append32(places_,
                                   address_ + static_cast<std::uint32_t>(contentStart_ + contents_.size()));
            LittleEndian::append32(places_, static_cast<std::uint32_t>(resource->data.size()));
            LittleEndian::append32(places_, resource->codePage);
            LittleEndian::append32(places_, 0);
            contents_ += resource->data;
            ByteText::pad(contents_, kDataAlignment);
        }
    }

    const Types& types_;
    std::uint32_t address_;
    std::size_t placeStart_ = 0;
    std::size_t textStart_ = 0;
    std::size_t contentStart_ = 0;
    std::string tables_;
    std::string places_;
    std::string texts_;
    std::string contents_;
};

}  // namespace

std::vector<PeResource> readPeResources(const PeImage& image) {
    return image.resourceAddress() == 0 ? std::vector<PeResource>() : Reader(image).read();
}

std::string peResourceSection(const std::vector<PeResource>& resources, std::uint32_t address) {
    Types types;
    for (const PeResource& resource : resources) {
        types[resource.type][resource.name][resource.language] = &resource;
    }
    return Writer(types, address).write();
}
