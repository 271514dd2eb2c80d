#include "installer/private_file.h"

#include <memory>

#include "platform/file_system.h"

int createFreshPrivateFile(platform::FileSystem& files, const char* path) {
    files.removeFile(path);
    platform::OpenOptions options;
    options.access = platform::kWrite;
    options.disposition = platform::Disposition::kCreatePrivate;
    std::unique_ptr<platform::File> file;
    const int status = files.open(path, options, file);
    return status != 0 ? status : file->close();
}
