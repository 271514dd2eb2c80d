#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

// A Windows image whose resources are replaced. Everything that its headers say is checked before it is used.
class PeImage {
public:
    // The whole file of a bare image. Throws InstallerError with one line when the headers can't be used.
    explicit PeImage(std::string bytes);

    const std::string& bytes() const { return bytes_; }
    // Where the table of resources is in memory; 0 without one.
    std::uint32_t resourceAddress() const { return resourceAddress_; }
    // What the file has for memory from this address on, up to the end of its section. Empty outside.
    std::string_view contentAt(std::uint32_t address) const;

    // Where setResources will put its content in memory.
    std::uint32_t newResourceAddress() const { return newAddress_; }
    // Puts the content into a new section at the end, and makes it the table of resources. Once for each
    // image. The content that was there before stays as dead bytes: other sections may follow it. Throws when
    // the headers have no room.
    void setResources(const std::string& content);

private:
    std::uint16_t read16(std::size_t offset) const;
    std::uint32_t read32(std::size_t offset) const;
    void write32(std::size_t offset, std::uint32_t value);
    std::size_t sectionHeader(std::size_t index) const;
    void readHeaders();
    void readSections();
    void renameFormerSection();

    std::string bytes_;
    std::size_t coffHeader_ = 0;
    std::size_t optionalHeader_ = 0;
    std::size_t directory_ = 0;  // the entry for resources
    std::size_t sections_ = 0;
    std::size_t sectionCount_ = 0;
    std::uint32_t sectionAlignment_ = 0;
    std::uint32_t fileAlignment_ = 0;
    std::uint32_t resourceAddress_ = 0;
    std::uint32_t newAddress_ = 0;
};
