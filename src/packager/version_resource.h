#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// The version information of a program: what Windows shows among the properties of its file.
struct VersionInformation {
    std::array<std::uint16_t, 4> number{};
    // Names and texts, in UTF-8, in this order. The names are those that Windows knows.
    std::vector<std::pair<std::string_view, std::string>> texts;
};

// The number that the first four parts of a version name, each 0 where it is missing, no decimal number, or
// above 65,535.
std::array<std::uint16_t, 4> versionNumber(std::string_view version);

// The content of the resource, in US English and UTF-16. Throws InstallerError with one line when the texts
// are longer than it can hold, 65,535 bytes.
std::string versionResource(const VersionInformation& information);
