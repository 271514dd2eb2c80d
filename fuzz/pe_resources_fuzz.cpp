#include <string>
#include <string_view>
#include <vector>

#include "base/errors.h"
#include "fuzz_target.h"
#include "packager/pe_image.h"
#include "packager/pe_resources.h"

// The input is an image for Windows. Whatever resources it has come back from the section that they are
// written to.
bool accepts(std::string_view input) {
    try {
        PeImage image{std::string(input)};
        const std::vector<PeResource> resources = readPeResources(image);
        const std::string section = peResourceSection(resources, image.newResourceAddress());
        image.setResources(section);
        const PeImage written(image.bytes());
        const std::vector<PeResource> read = readPeResources(written);
        require(written.contentAt(written.resourceAddress()).starts_with(section));
        require(peResourceSection(read, written.resourceAddress()) == section);
        return true;
    } catch (const InstallerError&) {
        return false;
    }
}
