#include "checking/picture_check.h"

#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

#include "checking/alias_uses.h"
#include "checking/check_context.h"
#include "checking/packed_files.h"
#include "checking/picture_header.h"
#include "checking/quoted_text.h"
#include "platform/file_system.h"

namespace {

std::unordered_set<std::string> picturesOf(const CheckContext& context, std::size_t most) {
    std::unordered_set<std::string> pictures;
    for (const AliasUse& use : aliasUsesOf(context)) {
        if (use.kind == AliasUse::Kind::kPicture) {
            pictures.insert(use.alias);
        } else if (use.kind == AliasUse::Kind::kSlides) {
            const std::vector<std::string> slides = slidesOf(use, most);
            pictures.insert(slides.begin(), slides.end());
        }
    }
    return pictures;
}

ByteReader readerOf(platform::File& file) {
    return [&file](std::int64_t offset, std::uint32_t count) {
        std::string bytes(count, '\0');
        std::int64_t position = 0;
        std::uint32_t done = 0;
        const bool isRead = file.seek(offset, platform::Origin::kStart, position) == 0 &&
                            file.read(bytes.data(), count, done) == 0;
        bytes.resize(isRead ? done : 0);
        return bytes;
    };
}

}  // namespace

void checkPictures(const CheckContext& context, const PackedFiles& files) {
    const std::unordered_set<std::string> pictures = picturesOf(context, files.all().size());
    for (const PackedFile& file : files.all()) {
        const std::string_view picture = withoutForm(file.alias);
        const bool isShown = pictures.contains(file.alias) || pictures.contains(std::string(picture)) ||
                             isPictureOfWindow(picture);
        std::unique_ptr<platform::File> opened;
        if (!isShown || file.source.kind != FileSource::Kind::kRoot ||
            context.files().open(files.pathOf(file.source), {}, opened) != 0) {
            continue;
        }
        const std::string fault = pictureFault(readerOf(*opened), file.source.size);
        if (!fault.empty()) {
            context.addAtText("image-unreadable", file.node, inQuotes(file.text) + " " + fault);
        }
    }
}
