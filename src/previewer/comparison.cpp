#include "previewer/comparison.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <set>

#include "ui/gui/images/image_loader.h"

namespace {

constexpr int kPale = 3;  // of four parts of white

bool isPageFile(std::string_view name) {
    return name.find("install-") != std::string_view::npos &&
           (name.ends_with(".png") || name.ends_with(".txt"));
}

// "a/install-03-Notes.png" is "a/install-Notes.png".
std::string withoutNumber(const std::string& name) {
    const std::size_t phase = name.find("install-", name.rfind('/') + 1);
    if (phase == std::string::npos) {
        return name;
    }
    const std::size_t number = name.find('-', phase) + 1;
    const std::size_t end = name.find('-', number);
    return end == std::string::npos ? name : name.substr(0, number) + name.substr(end + 1);
}

// The files of pages by what they are known again by.
std::map<std::string, std::string> pagesOf(PreviewDirectory& directory) {
    std::vector<std::string> names = directory.names();
    std::ranges::sort(names);
    std::map<std::string, std::string> pages;
    std::map<std::string, int> counts;
    for (const std::string& name : names) {
        if (isPageFile(name)) {
            const std::string known = withoutNumber(name);
            pages[known + " " + std::to_string(++counts[known])] = name;
        }
    }
    return pages;
}

std::string directoryOf(const std::string& name) {
    return name.substr(0, name.find('/'));
}

std::set<std::string> directoriesOf(const std::map<std::string, std::string>& pages) {
    std::set<std::string> directories;
    for (const auto& [known, name] : pages) {
        directories.insert(directoryOf(name));
    }
    return directories;
}

void keepThoseIn(const std::set<std::string>& directories, std::map<std::string, std::string>& ioPages) {
    std::erase_if(ioPages, [&](const auto& page) { return !directories.contains(directoryOf(page.second)); });
}

bool isPicture(const std::string& name) {
    return name.ends_with(".png");
}

bool isSamePixel(const Image& one, const Image& other, int x, int y) {
    const std::size_t at = static_cast<std::size_t>(x) * 3;
    return x < one.width() && y < one.height() && x < other.width() && y < other.height() &&
           std::memcmp(one.rgbRow(y) + at, other.rgbRow(y) + at, 3) == 0;
}

std::optional<ChangedFile> compareFiles(PreviewDirectory& now, const std::string& name,
                                        PreviewDirectory& earlier, const std::string& earlierName) {
    std::string content;
    std::string earlierContent;
    if (now.read(name, content) && earlier.read(earlierName, earlierContent) && content == earlierContent) {
        return std::nullopt;
    }
    ChangedFile changed{ChangedFile::Kind::kChanged, name, earlierName, 0};
    if (isPicture(name)) {
        const auto difference =
            differenceOf(readPicture(now, name), readPicture(earlier, earlierName), changed.changedPixels);
        if (difference && changed.changedPixels == 0) {
            return std::nullopt;
        }
    }
    return changed;
}

}  // namespace

Image readPicture(PreviewDirectory& directory, const std::string& name) {
    std::string content;
    return directory.read(name, content) ? ImageLoader(DebugLog()).loadImage(content.data(), content.size())
                                         : Image();
}

std::optional<Image> differenceOf(const Image& now, const Image& earlier, int& outChanged) {
    outChanged = 0;
    if (now.isEmpty() || earlier.isEmpty()) {
        return std::nullopt;
    }
    Image difference(std::max(now.width(), earlier.width()), std::max(now.height(), earlier.height()), false);
    for (int y = 0; y < difference.height(); ++y) {
        std::uint8_t* const row = difference.rgbRow(y);
        for (int x = 0; x < difference.width(); ++x) {
            std::uint8_t* const pixel = row + static_cast<std::size_t>(x) * 3;
            if (isSamePixel(now, earlier, x, y)) {
                const std::uint8_t* const same = now.rgbRow(y) + static_cast<std::size_t>(x) * 3;
                for (int i = 0; i < 3; ++i) {
                    pixel[i] = static_cast<std::uint8_t>((255 * kPale + same[i]) / (kPale + 1));
                }
            } else {
                pixel[0] = 255;
                ++outChanged;
            }
        }
    }
    return difference;
}

std::vector<ChangedFile> comparePreviews(PreviewDirectory& now, PreviewDirectory& earlier) {
    std::map<std::string, std::string> pages = pagesOf(now);
    std::map<std::string, std::string> earlierPages = pagesOf(earlier);
    const std::set<std::string> directories = directoriesOf(pages);
    const std::set<std::string> earlierDirectories = directoriesOf(earlierPages);
    keepThoseIn(earlierDirectories, pages);
    keepThoseIn(directories, earlierPages);
    std::vector<ChangedFile> changes;
    for (const auto& [known, name] : pages) {
        const auto found = earlierPages.find(known);
        if (found == earlierPages.end()) {
            changes.push_back({ChangedFile::Kind::kNew, name, {}, 0});
        } else if (auto changed = compareFiles(now, name, earlier, found->second)) {
            changes.push_back(std::move(*changed));
        }
    }
    for (const auto& [known, name] : earlierPages) {
        if (!pages.contains(known)) {
            changes.push_back({ChangedFile::Kind::kGone, name, name, 0});
        }
    }
    return changes;
}
