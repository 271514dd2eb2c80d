#include <cstdlib>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

#include "base/errors.h"
#include "description/pxml.h"
#include "description/vocabulary_lookup.h"
#include "fuzz_target.h"
#include "input_sections.h"
#include "packager/root_path.h"
#include "packager/tree_expansion.h"
#include "platform/memory/memory_file_system.h"

// A description, and a disk: for each line of the second section a file ("f PATH"), a program ("p PATH"), a
// link ("l PATH>TARGET") or a device ("d PATH") below the root, and "c CONTENT" for those that follow. What
// the packager puts into the description for its trees is read back as what is on the disk, and none of it
// lies behind a link.
namespace {

constexpr const char* kRoot = "/root/";

void addTo(MemoryFileSystem& files, std::string_view line, std::string& content) {
    const char kind = line.empty() ? '\0' : line.front();
    std::string rest(line.substr(std::min<std::size_t>(2, line.size())));
    const std::size_t target = std::min(rest.find('>'), rest.size());
    const std::string path = kRoot + (kind == 'l' ? rest.substr(0, target) : rest);
    const std::string parent = path.substr(0, path.rfind('/'));
    if (kind == 'c') {
        content = rest;
    } else if (files.exists(path) || files.kindOf(parent) == platform::PathKind::kFile ||
               files.kindOf(parent) == platform::PathKind::kLink) {
        return;
    } else if (kind == 'f') {
        files.addFile(path, content);
    } else if (kind == 'p') {
        files.addProgram(path, content);
    } else if (kind == 'l') {
        files.addLink(path, rest.substr(std::min(target + 1, rest.size())));
    } else if (kind == 'd') {
        files.addDevice(path);
    }
}

struct FileElement {
    std::string text;
    std::string alias;
};

std::vector<FileElement> filesIn(const PXML& document) {
    std::vector<FileElement> found;
    for (std::int32_t set = document.findByName("FileSet"); set >= 0;
         set = document.findByName("FileSet", set)) {
        for (const std::int32_t child : document.childrenOf(set)) {
            const std::string text(document.getText(child).value_or(""));
            if (vocabulary::isCalled(document, child, "FN") && !text.empty()) {
                const auto alias = document.getAttribute(child, "Alias");
                found.push_back({text, alias ? std::string(*alias) : defaultAliasOf(text)});
            }
        }
    }
    return found;
}

void requireNoLinkTo(MemoryFileSystem& files, const std::string& path) {
    for (std::size_t end = 0; end != std::string::npos;) {
        end = path.find('/', end + 1);
        require(files.kindOf(path.substr(0, end)) != platform::PathKind::kLink);
    }
    require(files.kindOf(path) == platform::PathKind::kFile);
}

// Each new element names a file, and whatever else has its alias has its content.
void checkFiles(MemoryFileSystem& files, const PXML& before, const PXML& after) {
    std::set<std::string> old;
    for (const FileElement& element : filesIn(before)) {
        old.insert(element.text);
    }
    std::unordered_map<std::string, std::string> contents;
    for (const FileElement& element : filesIn(after)) {
        if (!old.contains(element.text)) {
            const std::string path = kRoot + element.text;
            requireNoLinkTo(files, path);
            const auto [known, isNew] = contents.try_emplace(element.alias, files.content(path));
            require(isNew || known->second == files.content(path));
        }
    }
}

}  // namespace

bool accepts(std::string_view input) {
    const std::vector<std::string_view> sections = sectionsOf(input);
    MemoryFileSystem files;
    files.addDirectory(kRoot);
    files.addFile("/secret/key", "secret");
    std::string content = "content";
    std::string_view disk = sections.size() > 1 ? sections[1] : std::string_view();
    while (!disk.empty()) {
        addTo(files, takeLine(disk), content);
    }
    const PackageSources sources{"/d/install.xml", "/root", ""};
    std::optional<std::string> expanded;
    try {
        expanded = TreeExpansion(sources, files).expand(sections[0]);
    } catch (const InstallerError&) {
        return false;
    }
    if (!expanded) {
        return false;
    }
    PXML before;
    PXML after;
    before.parseText(sections[0]);
    after.parseText(*expanded);
    checkFiles(files, before, after);
    require(!TreeExpansion(sources, files).expand(*expanded));
    require(files.openFileCount() == 0);
    return !filesIn(after).empty();
}
