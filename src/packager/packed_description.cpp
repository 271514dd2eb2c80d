#include "packager/packed_description.h"

#include <algorithm>
#include <optional>

#include "description/expressions.h"
#include "description/file_sets.h"
#include "description/pxml.h"
#include "description/variable_lookup.h"

namespace {

constexpr std::string_view kDescriptionAlias = "install.xml";

// No variable has a value before there is a machine.
class NoVariables : public VariableLookup {
public:
    std::optional<VariableReading> read(std::string_view, std::size_t) override { return std::nullopt; }
};

std::string bothConditions(std::string_view ofSet, std::string_view ofFile) {
    if (ofSet.empty() || ofFile.empty()) {
        return std::string(ofSet.empty() ? ofFile : ofSet);
    }
    return "(" + std::string(ofSet) + "),(" + std::string(ofFile) + ")";
}

// The order in which the files are written in the description; they are installed in another one.
std::vector<FileEntry> inOrderOfDescription(std::vector<FileEntry> files) {
    for (auto begin = files.begin(); begin != files.end();) {
        const auto end = std::find_if(
            begin, files.end(), [begin](const FileEntry& file) { return file.fileSet != begin->fileSet; });
        std::reverse(begin, end);
        begin = end;
    }
    return files;
}

}  // namespace

PackedDescription::PackedDescription(const Cabinet& cabinet) {
    const std::optional<std::int32_t> index = cabinet.findAlias(kDescriptionAlias);
    const std::optional<std::string_view> text = index ? cabinet.entryContent(*index) : std::nullopt;
    PXML description;
    description.parseText(text.value_or(""));
    NoVariables variables;
    Expressions expressions(variables, DebugLog());
    FileSets sets(description, expressions);
    sets.readFileSets({});
    for (FileEntry& file : inOrderOfDescription(sets.getFiles())) {
        if (!file.dest.empty()) {
            const FileSet& owner = sets.getFileSets()[static_cast<std::size_t>(file.fileSet)];
            places_[file.alias].push_back({std::move(file.dest), std::move(file.fileName),
                                           bothConditions(owner.condition.view(), file.condition),
                                           file.executable});
        }
    }
}

const std::vector<InstalledPlace>& PackedDescription::placesOf(std::string_view alias) const {
    static const std::vector<InstalledPlace> none;
    const auto found = places_.find(std::string(alias));
    return found == places_.end() ? none : found->second;
}
