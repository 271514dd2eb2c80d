// Loads the module named by its argument from a file in memory, as an installer does that carries it as data.

#include <dlfcn.h>
#include <sys/mman.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

#include <unistd.h>

namespace {

void* load(const char* path) {
    std::ifstream file(path, std::ios::binary);
    const std::string content(std::istreambuf_iterator<char>(file), {});
    const int memory = memfd_create("window", MFD_CLOEXEC);
    if (memory < 0 || write(memory, content.data(), content.size()) != static_cast<ssize_t>(content.size())) {
        throw std::runtime_error("no file in memory");
    }
    void* module = dlopen(("/proc/self/fd/" + std::to_string(memory)).c_str(), RTLD_NOW | RTLD_LOCAL);
    close(memory);
    if (module == nullptr) {
        throw std::runtime_error(dlerror());
    }
    return module;
}

}  // namespace

int main(int count, char** arguments) {
    try {
        void* module = load(count > 1 ? arguments[1] : "");
        auto* show = reinterpret_cast<int (*)()>(dlsym(module, "showWindow"));
        if (show == nullptr) {
            throw std::runtime_error(dlerror());
        }
        const int failures = show();
        std::puts(failures == 0 ? "the window works" : "the window does not work");
        return failures;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "failed: %s\n", error.what());
        return 2;
    }
}
