#include "platform/memory_library.h"

#include <dlfcn.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "platform/error_text.h"
#include "platform/posix/system_calls.h"

namespace platform {

namespace {

constexpr unsigned kExecutable = 0x10;  // MFD_EXEC, which older systems neither know nor need

int openMemory() {
    const int memory = memfd_create("library", MFD_CLOEXEC | kExecutable);
    return memory >= 0 || errno != EINVAL ? memory : memfd_create("library", MFD_CLOEXEC);
}

// The loader begins with the name of the file, which says nothing to anybody here.
std::string loaderMessage(const std::string& file) {
    const char* const message = dlerror();
    std::string text = message == nullptr ? "unknown error of the loader" : message;
    if (text.starts_with(file + ": ")) {
        text.erase(0, file.size() + 2);
    }
    std::replace(text.begin(), text.end(), '\n', ' ');
    return text;
}

}  // namespace

void* loadMemoryLibrary(std::string_view image, const std::string& function, std::string& outReason) {
    const Descriptor memory(openMemory());
    std::size_t done = 0;
    const int status = memory.isOpen() ? writeAll(memory.get(), image.data(), image.size(), done) : errno;
    if (status != 0) {
        outReason = errorText(status);
        return nullptr;
    }
    const std::string file = "/proc/self/fd/" + std::to_string(memory.get());
    if (access(file.data(), R_OK) != 0) {
        outReason = "the file system /proc isn't there, which a library needs that comes with a program";
        return nullptr;
    }
    void* const library = dlopen(file.data(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    void* const address = library == nullptr ? nullptr : dlsym(library, function.data());
    if (address == nullptr) {
        outReason = loaderMessage(file);
    }
    return address;
}

}  // namespace platform
