#include "checking/icon_check.h"

#include <cstdint>
#include <string>
#include <vector>

#include "checking/check_context.h"
#include "checking/icon_file.h"
#include "checking/icon_file_format.h"
#include "checking/packed_files.h"
#include "checking/quoted_text.h"
#include "support/utilities.h"

namespace {

std::string listOf(const std::vector<std::uint32_t>& sides) {
    std::string list;
    for (const std::uint32_t side : sides) {
        list += (list.empty() ? "" : ", ") + std::to_string(side);
    }
    return list;
}

}  // namespace

void checkIcon(const CheckContext& context, const PackedFiles& files) {
    const std::int32_t node = context.firstOf("Icon");
    const PackedFile* const file = node < 0 ? nullptr : files.findAlias(context.text(node));
    if (file == nullptr || file->source.kind != FileSource::Kind::kRoot || !context.targets().windows) {
        return;
    }
    std::string content;
    std::string fault;
    if (file->source.size > static_cast<std::int64_t>(IconFileFormat::kMostFileSize)) {
        fault = "has more than 1 MiB";
    } else if (OUtils::readWholeFile(files.pathOf(file->source), content, context.files()) != 0) {
        return;  // the packager reports it
    }
    const IconFile icon = fault.empty() ? readIconFile(content) : IconFile{{}, fault};
    if (!icon.fault.empty()) {
        context.addAtText("icon-unreadable", node, inQuotes(file->text) + " " + icon.fault);
    } else if (const auto missing = missingIconSizes(icon); !missing.empty()) {
        context.addAtText(
            "icon-sizes", node,
            inQuotes(file->text) + " has no picture with sides of " + listOf(missing) + " pixels");
    }
}
