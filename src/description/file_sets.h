#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "base/fixed_text.h"

class Expressions;
class PXML;

struct InstallType {
    FixedText<199> name;
    FixedText<199> description;
    std::int32_t isDefault = 0;  // stays 0 without the attribute EditFileSets
    std::int32_t editFileSets = 0;
};

struct FileSet {
    FixedText<199> name;
    FixedText<1023> description;
    FixedText<511> condition;
};

// One file. The texts are cut to the bytes named.
struct FileEntry {
    static constexpr std::size_t kDestLimit = 1558;
    static constexpr std::size_t kNameLimit = 258;
    static constexpr std::size_t kConditionLimit = 510;

    std::int32_t fileSet = 0;  // its place in the list of file sets
    std::string dest;      // the target directory, unexpanded; empty for a file that only lies in the package
    std::string alias;     // its key in the cabinet
    std::string fileName;  // its name in `dest`
    std::string condition;
    std::int32_t size = 0;  // of its cabinet entry in bytes; 0 when there is none
    bool expandVars = false;
    bool executable = false;
    bool okIfMissing = false;
    bool stripExeExt = false;
    bool backupExisting = false;
};

// The size in bytes of the cabinet entry with this alias, 0 when there is none.
using SizeOfAlias = std::function<std::int32_t(const std::string& alias)>;

// The files of the description. Within a file set the last FN of the description comes first.
class FileSets {
public:
    FileSets(const PXML& description, Expressions& expressions)
        : description_(description), expressions_(expressions) {}

    // Fills the lists anew. `sizeOfAlias` may be empty; all sizes are 0 then.
    void readFileSets(const SizeOfAlias& sizeOfAlias);

    const std::vector<InstallType>& getInstallTypes() const { return installTypes_; }
    const std::vector<FileSet>& getFileSets() const { return fileSets_; }
    // All files of all sets, in the order in which they are installed.
    const std::vector<FileEntry>& getFiles() const { return files_; }

    // Where the file with this attribute Alias is installed, with `\` as separator. Nothing when there is no
    // such file or it has no Dest.
    std::optional<std::string> pathOfAlias(std::string_view alias);

private:
    void readInstallTypes();
    void readFileSet(std::int32_t node, const SizeOfAlias& sizeOfAlias);
    void readFile(std::int32_t node, const SizeOfAlias& sizeOfAlias);
    void indexAliases();

    const PXML& description_;
    Expressions& expressions_;
    std::vector<InstallType> installTypes_;
    std::vector<FileSet> fileSets_;
    std::vector<FileEntry> files_;
    std::unordered_map<std::string_view, std::int32_t> nodesByAlias_;
    std::int32_t indexedNodes_ = 0;  // how large the document was when the aliases were indexed
};
