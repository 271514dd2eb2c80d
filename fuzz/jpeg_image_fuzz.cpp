#include <string_view>

#include "fuzz_target.h"
#include "image_check.h"

// The input is a file.
bool accepts(std::string_view input) {
    DecodedImage found;
    CheckingReceiver receiver;
    const ImageLoader loader((DebugLog()));
    const ImageResult result = loader.LoadJPGArray(found, input.data(), input.size(), receiver);
    require(result != ImageResult::kLoaded || (receiver.isComplete() && isPicture(input)));
    return result == ImageResult::kLoaded;
}
