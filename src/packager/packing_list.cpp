#include "packager/packing_list.h"

#include <algorithm>
#include <string_view>

#include "base/path_functions.h"
#include "base/text_functions.h"
#include "description/file_sets.h"
#include "description/pxml.h"
#include "description/vocabulary_lookup.h"
#include "package/cabinet_format.h"
#include "packager/failure.h"

namespace {

constexpr std::string_view kDescriptionAlias = "install.xml";
constexpr std::string_view kRichTextElement = "RichEditText";
constexpr std::string_view kPlainTextElement = "PlainEditText";
constexpr std::string_view kHtmlElement = "HtmlEditText";

// The path with `/` between its components, without empty ones and dots. Throws for a path that leaves its
// root.
std::string relativePathOf(const std::string& text) {
    std::string path;
    std::size_t start = 0;
    while (start <= text.size()) {
        const std::size_t end = std::min(text.find_first_of("/\\", start), text.size());
        const std::string component = text.substr(start, end - start);
        if (component == ".." || component.find(':') != std::string::npos) {
            fail("the file \"" + text +
                 "\" of the description doesn't lie below the root: name it by its path from there");
        }
        if (!component.empty() && component != ".") {
            path += (path.empty() ? "" : "/") + component;
        }
        start = end + 1;
    }
    return path;
}

// The console shows everything of rich text elements, but plain text only in a format of its own, and HTML
// only when it isn't HTML at all.
bool isOnConsole(std::string_view element, DocumentFormat format) {
    if (element == kHtmlElement) {
        return format == DocumentFormat::kVerbatim;
    }
    return element == kRichTextElement || format != DocumentFormat::kOfElement;
}

std::string withoutSeparators(std::string text) {
    std::erase_if(text, OUtils::isSeparator);
    return text;
}

std::string withoutTrailingSeparators(std::string path) {
    while (path.size() > 1 && OUtils::isSeparator(path.back())) {
        path.pop_back();
    }
    return path;
}

}  // namespace

std::int64_t PackingList::cabinetSize() const {
    std::int64_t size = CabinetFormat::kHeaderSize;
    for (const PackageFile& entry : entries_) {
        size += entry.size + static_cast<std::int64_t>(CabinetFormat::kHeaderSize);
    }
    return size;
}

PackingList::PackingList(Sources sources, platform::FileSystem& files)
    : sources_(std::move(sources)),
      files_(files),
      descriptionName_(OUtils::lastPathComponent(sources_.description)) {
    sources_.root = withoutTrailingSeparators(sources_.root);
}

void PackingList::read() {
    PXML document;
    const int status = document.loadFile(sources_.description.c_str(), files_);
    if (status != 0) {
        fail(sources_.description + ": the description can't be read (error " + std::to_string(status) + ")");
    }
    if (document.getNodeCount() == 0) {
        fail(sources_.description + ": this is not a description, it has no elements");
    }
    if (!files_.isDirectory(sources_.root)) {
        fail(sources_.root + ": no such directory");
    }
    if (vocabulary::findElement(document, "ProductDesc") < 0) {
        warnings_.push_back(sources_.description +
                            ": without a ProductDesc section the installer will end at once");
    }
    add({sources_.description, descriptionName_, std::string(kDescriptionAlias)});
    for (std::int32_t node = vocabulary::findElement(document, "FileSet"); node >= 0;
         node = vocabulary::findElement(document, "FileSet", node)) {
        addFileSet(document, node);
    }
    addDocuments(document, kRichTextElement);
    addDocuments(document, kPlainTextElement);
    addDocuments(document, kHtmlElement);
}

void PackingList::addDocuments(const PXML& document, std::string_view element) {
    for (std::int32_t node = document.findByName(element); node >= 0;
         node = document.findByName(element, node)) {
        const DocumentFormat format = documentFormat(document.getAttribute(node, "Format").value_or(""));
        const auto known = byAlias_.find(std::string(document.getText(node).value_or("")));
        if (known == byAlias_.end() || !isOnConsole(element, format)) {
            continue;
        }
        const ShownDocument shown{entries_[known->second].path, format};
        if (std::find(documents_.begin(), documents_.end(), shown) == documents_.end()) {
            documents_.push_back(shown);
        }
    }
}

void PackingList::addFileSet(const PXML& document, std::int32_t node) {
    if (!vocabulary::hasAttribute(document, node, "Name")) {
        warnings_.push_back(sources_.description +
                            ": a FileSet without Name is left out, as the installer does");
        return;
    }
    std::vector<std::int32_t> children;
    document.listChildren(node, children);
    for (const std::int32_t child : children) {
        const auto text = document.getText(child);
        if (vocabulary::isCalled(document, child, "FN") && text && !text->empty()) {
            addFile(document, child);
        }
    }
}

void PackingList::addFile(const PXML& document, std::int32_t node) {
    const std::string text(document.getText(node).value_or(""));
    const std::string relativePath = relativePathOf(text);
    const std::string name(OUtils::lastPathComponent(text));
    const auto alias = vocabulary::attributeOf(document, node, "Alias");
    const std::string path = locate(text, relativePath, name);
    if (path.empty()) {
        if (!vocabulary::hasAttribute(document, node, "OkIfMissing")) {
            fail(sources_.root + "/" + relativePath + ": no such file");
        }
        return;
    }
    add({path, name, alias ? std::string(*alias) : withoutSeparators(text)});
}

// The path of the file; empty when there is none.
std::string PackingList::locate(const std::string& text, const std::string& relativePath,
                                const std::string& name) const {
    std::string path = sources_.root + "/" + relativePath;
    if (isDescription(path, relativePath, name)) {
        return sources_.description;
    }
    if (files_.fileSize(path) >= 0) {
        return path;
    }
    const std::string lower = OUtils::toLowerAscii(name);
    if (lower == "installer.exe" || lower == "installer") {
        if (sources_.image.empty()) {
            fail(text + ": there is no such file below the root, and no bare installer: give --image");
        }
        return sources_.image;
    }
    return {};
}

bool PackingList::isDescription(const std::string& path, const std::string& relativePath,
                                const std::string& name) const {
    if (path == sources_.description || relativePath == descriptionName_) {
        return true;
    }
    return (name == descriptionName_ || name == kDescriptionAlias) && files_.fileSize(path) < 0;
}

// The same file under the same alias is needed only once. Two files under one alias are left to the writer,
// which refuses them.
void PackingList::add(PackageFile file) {
    const auto [known, isNew] = byAlias_.try_emplace(file.alias, entries_.size());
    if (!isNew && entries_[known->second].path == file.path) {
        return;
    }
    if (file.alias.size() > FileEntry::kNameLimit) {
        warnings_.push_back(file.path + ": the alias has " + std::to_string(file.alias.size()) +
                            " bytes, and the installer finds no file by more than " +
                            std::to_string(FileEntry::kNameLimit) + ": give the file an Alias");
    }
    file.size = files_.fileSize(file.path);
    entries_.push_back(std::move(file));
}
