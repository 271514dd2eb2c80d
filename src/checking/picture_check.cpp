#include "checking/picture_check.h"

#include <memory>
#include <string>

#include "checking/alias_uses.h"
#include "checking/check_context.h"
#include "checking/packed_files.h"
#include "checking/picture_header.h"
#include "checking/quoted_text.h"
#include "platform/file_system.h"

namespace {

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
    const UsedAliases pictures(aliasUsesOf(context), UsedAliases::Which::kPictures);
    for (const PackedFile& file : files.all()) {
        std::unique_ptr<platform::File> opened;
        if (file.source.kind != FileSource::Kind::kRoot || !pictures.contains(file.alias) ||
            context.files().open(files.pathOf(file.source), {}, opened) != 0) {
            continue;
        }
        const std::string fault = pictureFault(readerOf(*opened), file.source.size);
        if (!fault.empty()) {
            context.addAtText("image-unreadable", file.node, inQuotes(file.text) + " " + fault);
        }
    }
}
