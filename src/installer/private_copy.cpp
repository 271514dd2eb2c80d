#include "installer/private_copy.h"

#include <algorithm>
#include <vector>

#include "base/path_functions.h"
#include "platform/error_text.h"
#include "platform/file_system.h"

namespace {

constexpr char kDirectoryPrefix[] = "ormeluninst-";
constexpr std::uint32_t kBlockSize = 256 * 1024;

using FilePtr = std::unique_ptr<platform::File>;

int openToRead(platform::FileSystem& files, const std::string& path, FilePtr& outFile) {
    platform::OpenOptions options;
    options.sequential = true;
    return files.open(path, options, outFile);
}

int createPrivate(platform::FileSystem& files, const std::string& path, FilePtr& outFile) {
    platform::OpenOptions options;
    options.access = platform::kWrite;
    options.share = platform::kShareNone;
    options.disposition = platform::Disposition::kCreatePrivate;
    return files.open(path, options, outFile);
}

// Until the end of `from`. `outIsRead` says which of the two a status other than 0 is about.
int copyContent(platform::File& from, platform::File& to, bool& outIsRead) {
    std::vector<unsigned char> block(kBlockSize);
    for (;;) {
        std::uint32_t size = 0;
        outIsRead = true;
        if (const int status = from.read(block.data(), kBlockSize, size); status != 0 || size == 0) {
            return status;
        }
        outIsRead = false;
        std::uint32_t written = 0;
        if (const int status = to.write(block.data(), size, written); status != 0) {
            return status;
        }
    }
}

bool haveSameContent(platform::File& first, platform::File& second) {
    std::vector<unsigned char> one(kBlockSize);
    std::vector<unsigned char> two(kBlockSize);
    for (;;) {
        std::uint32_t oneSize = 0;
        std::uint32_t twoSize = 0;
        if (first.read(one.data(), kBlockSize, oneSize) != 0 ||
            second.read(two.data(), kBlockSize, twoSize) != 0 || oneSize != twoSize ||
            !std::equal(one.begin(), one.begin() + oneSize, two.begin())) {
            return false;
        }
        if (oneSize == 0) {
            return true;
        }
    }
}

std::string directoryOf(const std::string& path) {
    const std::string_view name = OUtils::lastPathComponent(path);
    return std::string(OUtils::stripTrailingSeparators(path.substr(0, path.size() - name.size())));
}

bool haveSameDirectory(const std::string& first, const std::string& second, platform::FileSystem& files) {
    std::string one;
    std::string two;
    return files.realPath(directoryOf(first), one) == 0 && files.realPath(directoryOf(second), two) == 0 &&
           one == two;
}

}  // namespace

PrivateCopy::~PrivateCopy() {
    held_.reset();
    if (!directory_.empty()) {
        files_.removeFile(image_);
        files_.removeFile(log_);
        files_.removeDirectory(directory_);
    }
}

PrivateCopy::Failure PrivateCopy::make(const std::string& place, const std::string& image,
                                       const std::string& log) {
    if (!makeDirectory(place) || !copy(log, log_, false)) {
        return Failure::kLog;
    }
    return copy(image, image_, true) && holdImage(image) ? Failure::kNone : Failure::kImage;
}

bool PrivateCopy::fail(std::string why, int status) {
    status_ = status;
    why_ = std::move(why);
    if (status != 0) {
        why_ += ": " + platform::errorText(status);
    }
    return false;
}

bool PrivateCopy::makeDirectory(const std::string& place) {
    // The path becomes a part of a command line, in double quotes.
    if (place.find('"') != std::string::npos) {
        return fail("\"" + place + "\" has a double quote in its name", 0);
    }
    const int status = files_.createPrivateDirectory(place, kDirectoryPrefix, directory_);
    image_ = directory_ + kImageName;
    log_ = directory_ + kLogName;
    return status == 0 || fail("no directory can be made in \"" + place + "\"", status);
}

bool PrivateCopy::copy(const std::string& from, const std::string& to, bool isProgram) {
    FilePtr source;
    FilePtr target;
    if (const int status = openToRead(files_, from, source); status != 0) {
        return fail("\"" + from + "\" can't be read", status);
    }
    bool isRead = false;
    int status = createPrivate(files_, to, target);
    if (status == 0) {
        status = copyContent(*source, *target, isRead);
        status = status == 0 && isProgram ? target->makeExecutable() : status;
        const int closed = target->close();  // a full disk may only be noticed here
        status = status == 0 ? closed : status;
    }
    return status == 0 ||
           fail("\"" + (isRead ? from + "\" can't be read" : to + "\" can't be written"), status);
}

// Between the closing and this opening somebody could have written to it, if the place isn't what it was
// taken for. So what is held is compared, and only then is the place looked at, which can't change any more.
bool PrivateCopy::holdImage(const std::string& original) {
    FilePtr source;
    if (const int status = openToRead(files_, image_, held_); status != 0) {
        return fail("\"" + image_ + "\" can't be read", status);
    }
    if (openToRead(files_, original, source) != 0 || !haveSameContent(*source, *held_)) {
        return fail("\"" + image_ + "\" is not what was copied there", 0);
    }
    return files_.isProtected(image_, platform::Protection::kUserAndAdministrators) ||
           fail("others can change what lies in \"" + directoryOf(directory_) + "\"", 0);
}

void PrivateCopy::keep() {
    held_.reset();
    directory_.clear();
}

bool PrivateCopy::isCopy(const std::string& image, const std::string& log, platform::FileSystem& files) {
    return OUtils::lastPathComponent(image) == kImageName + 1 &&
           OUtils::lastPathComponent(directoryOf(image)).starts_with(kDirectoryPrefix) &&
           OUtils::lastPathComponent(log) == kLogName + 1 && haveSameDirectory(image, log, files) &&
           files.isProtected(image, platform::Protection::kUserAndAdministrators);
}

void PrivateCopy::removeImage(const std::string& image, platform::FileSystem& files) {
    const std::string directory = directoryOf(image);
    if (files.removeFile(image) != 0) {
        files.removeAtRestart(image);
    }
    if (files.removeDirectory(directory) != 0) {
        files.removeAtRestart(directory);
    }
}
