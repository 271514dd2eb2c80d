#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "package/package_writer.h"
#include "packager/setup_identity.h"
#include "packager/tree_expansion.h"
#include "text/document_text.h"

class PXML;

// The description as its author wrote it. Throws InstallerError with one line when it can't be read.
std::string descriptionText(const std::string& path, platform::FileSystem& files);

// The files that a description puts into a package.
class PackingList {
public:
    using Sources = PackageSources;

    PackingList(Sources sources, platform::FileSystem& files);

    // Reads the description. Throws InstallerError with one line when it can't be read, or when it names a
    // file that doesn't exist or a path outside the root.
    void read();

    // The description first, with what stands for its trees, then the files in the order of the description.
    // A content that is named twice under one alias is here once.
    const std::vector<PackageFile>& entries() const { return entries_; }
    // In bytes, with the headers that the cabinet adds.
    std::int64_t cabinetSize() const;
    // The documents that the description shows on a console, each once for each format, in the order of its
    // first element.
    struct ShownDocument {
        std::string path;
        DocumentFormat format;  // kOfElement: rich text

        bool operator==(const ShownDocument&) const = default;
    };
    const std::vector<ShownDocument>& documents() const { return documents_; }
    // What the properties of a Windows setup show; nothing unless the description asks for it.
    const std::optional<SetupIdentity>& identity() const { return identity_; }
    // The file of this alias; null when there is none.
    const PackageFile* findAlias(const std::string& alias) const;
    // One line each.
    const std::vector<std::string>& warnings() const { return warnings_; }

private:
    std::string readDescription();
    void addFileSet(const PXML& document, std::int32_t node);
    void addFile(const PXML& document, std::int32_t node);
    void addDocuments(const PXML& document, std::string_view element);
    std::string locate(const std::string& text, const std::string& relativePath,
                       const std::string& name) const;
    bool isDescription(const std::string& path, const std::string& relativePath,
                       const std::string& name) const;
    bool isSame(const PackageFile& known, const PackageFile& file);
    void add(PackageFile file);

    Sources sources_;
    platform::FileSystem& files_;
    std::string descriptionName_;                     // its base name
    std::shared_ptr<const std::string> description_;  // without its trees; null when it has none
    std::vector<PackageFile> entries_;
    std::unordered_map<std::string, std::size_t> byAlias_;
    std::vector<ShownDocument> documents_;
    std::optional<SetupIdentity> identity_;
    std::vector<std::string> warnings_;
};
