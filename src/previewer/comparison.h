#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "previewer/preview_directory.h"
#include "ui/gui/images/image.h"

// How a file of a preview differs from that of an earlier one.
struct ChangedFile {
    enum class Kind { kNew, kGone, kChanged };

    Kind kind = Kind::kChanged;
    std::string name;         // in this preview; of one that is gone, in the earlier one
    std::string earlierName;  // in the earlier preview, the same but for the number of the page
    int changedPixels = 0;    // of a picture that both have

    bool operator==(const ChangedFile&) const = default;
};

// Compares pictures and texts of pages. A page is known again by its phase and its name, and among pages of
// one name by their order: a new page changes the numbers of those after it, and nothing else. Sizes of
// letters and sets of answers that only one of the two has are left out.
std::vector<ChangedFile> comparePreviews(PreviewDirectory& now, PreviewDirectory& earlier);

// The pixels that differ in red, the others pale. As large as the larger of the two each way. `outChanged`
// counts those in red. Nothing when one of the two is empty.
std::optional<Image> differenceOf(const Image& now, const Image& earlier, int& outChanged);

// A picture of a preview; empty when it can't be read.
Image readPicture(PreviewDirectory& directory, const std::string& name);
