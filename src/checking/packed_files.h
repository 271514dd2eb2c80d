#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

class CheckContext;

// What the packager takes for a file of the description.
struct FileSource {
    enum class Kind {
        kUnknown,      // no root was given
        kRoot,         // a file below the root
        kDescription,  // the description itself
        kImage,        // the bare installer
        kOutside,      // nothing: the path leads out of the root
        kMissing,      // nothing: there is no such file
    };

    Kind kind = Kind::kUnknown;
    std::string path;       // below the root, with `/` between its parts; empty for kOutside
    std::int64_t size = 0;  // in bytes, of kRoot
};

// An FN with a text. The views are those of the description.
struct PackedFile {
    std::int32_t node;
    std::int32_t fileSet;  // the element
    std::string_view text;
    std::string_view name;  // on the user's machine
    std::string alias;
    std::string_view dest;  // empty for a file that is only packed
    bool isOptional;        // it is left out where it is missing
    FileSource source;

    bool isInstalled() const { return !dest.empty(); }
};

// The files that a description packs, those of sets without a name included.
class PackedFiles {
public:
    // Looks each file up below the root when the context has one.
    explicit PackedFiles(const CheckContext& context);

    // In the order of the description.
    const std::vector<PackedFile>& all() const { return files_; }
    // The first file of this alias; null when there is none.
    const PackedFile* findAlias(std::string_view alias) const;
    // Whether a cabinet has an entry of this alias: that of a file, or of the description.
    bool hasAlias(std::string_view alias) const;
    // False when a set has something in it that is no FN: what that packs isn't known.
    bool areAllKnown() const { return areAllKnown_; }

    // The path in the file system of a file below the root. Only when the context has a root.
    std::string pathOf(const FileSource& source) const;

private:
    void add(std::int32_t node, std::int32_t fileSet);
    FileSource sourceOf(std::string_view text) const;
    bool isDescription(std::string_view path) const;

    const CheckContext& context_;
    std::string_view descriptionName_;  // where an uninstallation finds the description, the last part of it
    std::vector<PackedFile> files_;
    std::unordered_map<std::string_view, std::size_t> byAlias_;
    bool areAllKnown_ = true;
};

// The path with `/` between its parts, without empty ones and dots. Nothing for one that leads out of its
// root.
std::optional<std::string> pathBelowRoot(std::string_view text);
