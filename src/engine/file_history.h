#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "engine/product_state.h"

// The files of a product over its installations: what the earlier ones recorded of them, and what this one
// writes. Spellings of one path are the same (platform/path_identity.h).
class FileHistory {
public:
    enum class Kind {
        kUnknown,   // no earlier record
        kCreated,   // the product's own: it goes with the product
        kReplaced,  // something of the user's was there, or could have been
    };

    // One record of the earlier log, as it stands there. kReplaced holds against kCreated.
    void addEarlier(std::string_view line, std::string_view path, Kind kind);
    void setEarlierSums(WrittenSums sums) { earlierSums_ = std::move(sums); }

    Kind kindOf(std::string_view path) const;
    // Whether the earlier installations are known to have given the file other contents than this one.
    bool isForeign(std::string_view path, const Md5Digest& digest) const {
        return earlierSums_.knows(path) && !earlierSums_.holds(path, digest);
    }

    // This installation has a record of the file, so that the earlier ones are done with.
    void noteRecord(std::string_view path);
    // This installation gave the file, or found in it, this content.
    void noteContent(std::string_view path, const Md5Digest& digest) { sums_.add(path, digest); }
    // The same, for a file whose content is known already and has been edited.
    bool hasContent(std::string_view path) const { return sums_.knows(path); }

    // The earlier records of files that this installation has none of, in their order.
    std::vector<std::string_view> remainingRecords() const;
    // Whether the content of any file is known, from this installation or an earlier one.
    bool knowsContents() const { return !sums_.isEmpty() || !earlierSums_.isEmpty(); }
    // What is known of all files of the product.
    WrittenSums sums() const;

private:
    struct Record {
        std::string line;
        std::string identity;
    };

    std::vector<Record> earlier_;
    std::unordered_map<std::string, Kind> kinds_;
    std::unordered_set<std::string> recorded_;
    WrittenSums earlierSums_;
    WrittenSums sums_;
};
