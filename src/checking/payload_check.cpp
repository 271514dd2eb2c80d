#include "checking/payload_check.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "base/path_functions.h"
#include "base/text_functions.h"
#include "checking/check_context.h"
#include "checking/packed_files.h"
#include "checking/quoted_text.h"
#include "platform/file_system.h"

namespace {

constexpr std::size_t kMostNames = 3;
// What has more than these is no directory of a product.
constexpr std::size_t kMostEntries = 1'000'000;

class PayloadCheck {
public:
    PayloadCheck(const CheckContext& context, const PackedFiles& files)
        : context_(context), root_(OUtils::stripTrailingSeparators(*context.root())) {
        for (const PackedFile& file : files.all()) {
            if (file.source.kind == FileSource::Kind::kRoot) {
                const std::string path = OUtils::toLowerAscii(file.source.path);
                directories_.insert(path.substr(0, path.size() - OUtils::lastPathComponent(path).size()));
                named_.insert(path);
            }
        }
    }

    void run() {
        waiting_.push_back({"", directories_.contains("")});
        for (std::size_t seen = 0; !waiting_.empty() && seen < kMostEntries;) {
            const Place place = waiting_.back();
            waiting_.pop_back();
            seen += look(place);
        }
        if (!unused_.empty()) {
            report();
        }
    }

private:
    struct Place {
        std::string path;  // below the root, with `/` at its end; empty for the root
        bool isUsed;       // some files of the product are here, or above and not at the top
    };

    // The number of entries.
    std::size_t look(const Place& place) {
        std::vector<platform::DirectoryEntry> entries;
        if (context_.files().list(root_ + "/" + place.path, entries) != 0) {
            return 0;
        }
        const bool isJudged = place.isUsed && !isWorkplace(place, entries);
        for (const platform::DirectoryEntry& entry : entries) {
            const std::string path = place.path + entry.name;
            const std::string key = OUtils::toLowerAscii(path);
            if (entry.name.starts_with('.')) {
                continue;
            }
            if (entry.isDirectory) {
                const bool isBelow = place.isUsed && !place.path.empty();
                waiting_.push_back({path + "/", isBelow || directories_.contains(key + "/")});
            } else if (isJudged && !named_.contains(key) &&
                       context_.files().fileSize(root_ + "/" + path) >= 0) {
                unused_.push_back(path);
            }
        }
        return entries.size();
    }

    // Whether somebody works in the directory, with all that belongs to that: the description lies in it.
    bool isWorkplace(const Place& place, const std::vector<platform::DirectoryEntry>& entries) const {
        return place.path.empty() && std::ranges::any_of(entries, [this](const auto& entry) {
                   const std::string name = OUtils::toLowerAscii(entry.name);
                   return !entry.isDirectory && name.ends_with(".xml") && !named_.contains(name);
               });
    }

    void report() {
        std::ranges::sort(unused_);
        std::string names;
        for (std::size_t i = 0; i < std::min(unused_.size(), kMostNames); ++i) {
            names += (i == 0 ? "" : ", ") + inQuotes(unused_[i]);
        }
        const bool isOne = unused_.size() == 1;
        context_.addAtElement("payload-unused", 0,
                              std::to_string(unused_.size()) + (isOne ? " file" : " files") +
                                  " among those of the product " + (isOne ? "is" : "are") +
                                  " in no FN: " + names + (unused_.size() > kMostNames ? ", ..." : ""));
    }

    const CheckContext& context_;
    std::string root_;
    std::unordered_set<std::string> named_;        // in lower case, because some disks ignore it
    std::unordered_set<std::string> directories_;  // of files of the product, as Place::path in lower case
    std::vector<Place> waiting_;
    std::vector<std::string> unused_;
};

}  // namespace

void checkPayload(const CheckContext& context, const PackedFiles& files) {
    if (context.root() && files.areAllKnown()) {
        PayloadCheck(context, files).run();
    }
}
