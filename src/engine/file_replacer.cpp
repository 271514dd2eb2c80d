#include "engine/file_replacer.h"

#include "support/debug_log.h"
#include "support/p_file_stream.h"

namespace {

constexpr std::int32_t kFileDebugLevel = 3;

int openForWriting(PFileStream& file, const char* path) {
    return file.openFile(path, PFileStream::kGenericWrite, PFileStream::kShareRead,
                         PFileStream::kCreateAlways | PFileStream::kSequential);
}

}  // namespace

int FileReplacer::open(PFileStream& file, InstallerUI* ui, const char* path, bool exists) {
    const int status = openForWriting(file, path);
    if (status != 0 && exists && inUse_.deleteFileInUse(ui, path, kProgramEndMilliseconds)) {
        return openForWriting(file, path);
    }
    return status;
}

bool FileReplacer::write(InstallerUI* ui, const char* path, bool exists, std::string_view content) {
    PFileStream file(files_);
    const auto size = static_cast<std::uint32_t>(content.size());
    int status = open(file, ui, path, exists);
    if (debugLog_.level() >= kFileDebugLevel) {
        debugLog_.print("+ Creating file \"%s\" (size = %d, iores = %d)", path, static_cast<int>(size),
                        status);
    }
    if (status != 0) {
        return false;
    }
    std::uint32_t written = 0;
    status = size == 0 ? 0 : file.write(content.data(), size, written);
    const int closed = file.close();  // a full disk may only be told here
    status = status != 0 ? status : closed;
    if (status == 0 && written == size) {
        return true;
    }
    if (debugLog_.level() >= kFileDebugLevel) {
        debugLog_.print("- ERROR: Writing file failed (iores = %d, written = %d)", status,
                        static_cast<int>(written));
    }
    return false;
}
