#include <string_view>

#include "checking/icon_file.h"
#include "fuzz_target.h"

// The input is a file of icons.
bool accepts(std::string_view input) {
    const IconFile file = readIconFile(input);
    require(file.fault.empty() != file.pictures.empty());
    std::size_t total = 0;
    for (const IconPicture& picture : file.pictures) {
        require(picture.width >= 1 && picture.width <= 256 && picture.height >= 1 && picture.height <= 256);
        require(picture.bits >= 1 && picture.bits <= 64);
        require(picture.bytes.data() >= input.data() &&
                picture.bytes.data() + picture.bytes.size() <= input.data() + input.size());
        total += picture.bytes.size();
    }
    require(total <= input.size());
    require(missingIconSizes(file).size() <= 4);
    return file.fault.empty();
}
