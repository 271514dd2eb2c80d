#include "packager/image_resources.h"

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "base/failure.h"
#include "checking/icon_file.h"
#include "package/executable_image.h"
#include "package/little_endian.h"
#include "packager/pe_format.h"
#include "packager/pe_image.h"
#include "packager/pe_resources.h"
#include "packager/version_resource.h"

namespace {

constexpr std::uint16_t kFirstNumber = 1;
constexpr std::uint16_t kAnyLanguage = 0;
constexpr std::uint16_t kUsEnglish = 0x0409;

VersionInformation versionOf(const SetupIdentity& identity, std::string_view fileName) {
    VersionInformation information{versionNumber(identity.version), {}};
    const auto add = [&information](std::string_view name, std::string_view text) {
        if (!text.empty()) {
            information.texts.emplace_back(name, text);
        }
    };
    add("CompanyName", identity.publisher);
    add("FileDescription", identity.title);
    add("FileVersion", identity.version);
    add("LegalCopyright", identity.copyright);
    add("OriginalFilename", fileName);
    add("ProductName", identity.fullName);
    add("ProductVersion", identity.version);
    return information;
}

// As in a file of icons, but with the number of the resource in the place of the picture's offset.
std::string iconGroup(const std::vector<IconPicture>& pictures) {
    std::string group;
    LittleEndian::append16(group, 0);
    LittleEndian::append16(group, 1);
    LittleEndian::append16(group, static_cast<std::uint32_t>(pictures.size()));
    std::uint32_t number = kFirstNumber;
    for (const IconPicture& picture : pictures) {
        const std::uint32_t colours = picture.bits < 8 ? 1U << picture.bits : 0;
        group += static_cast<char>(picture.width);  // 256 is written as 0
        group += static_cast<char>(picture.height);
        LittleEndian::append16(group, colours);  // and a reserved zero
        LittleEndian::append16(group, 1);        // planes
        LittleEndian::append16(group, picture.bits);
        LittleEndian::append32(group, static_cast<std::uint32_t>(picture.bytes.size()));
        LittleEndian::append16(group, number++);
    }
    return group;
}

void replaceIcons(std::vector<PeResource>& resources, const IconFile& file) {
    std::erase_if(resources, [](const PeResource& resource) {
        return resource.type == PeName{{}, PeFormat::kIconType} ||
               resource.type == PeName{{}, PeFormat::kIconGroupType};
    });
    std::uint16_t number = kFirstNumber;
    for (const IconPicture& picture : file.pictures) {
        resources.push_back(
            {{{}, PeFormat::kIconType}, {{}, number++}, kAnyLanguage, 0, std::string(picture.bytes)});
    }
    resources.push_back(
        {{{}, PeFormat::kIconGroupType}, {{}, kFirstNumber}, kAnyLanguage, 0, iconGroup(file.pictures)});
}

}  // namespace

std::string withResources(std::string image, const SetupIdentity& identity, std::string_view icon,
                          std::string_view fileName) {
    if (measureExecutableImage(image).kind != ImageKind::kPe) {
        return image;
    }
    PeImage program(std::move(image));
    std::vector<PeResource> resources = readPeResources(program);
    std::erase_if(resources, [](const PeResource& resource) {
        return resource.type == PeName{{}, PeFormat::kVersionType};
    });
    resources.push_back({{{}, PeFormat::kVersionType},
                         {{}, kFirstNumber},
                         kUsEnglish,
                         0,
                         versionResource(versionOf(identity, fileName))});
    if (!identity.icon.empty()) {
        const IconFile file = readIconFile(icon);
        if (!file.fault.empty()) {
            fail("the icon \"" + identity.icon + "\" " + file.fault);
        }
        replaceIcons(resources, file);
    }
    program.setResources(peResourceSection(resources, program.newResourceAddress()));
    return program.bytes();
}
