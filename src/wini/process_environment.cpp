#include "wini/process_environment.h"

#include "platform/environment.h"
#include "platform/file_system.h"
#include "platform/program.h"

bool ProcessEnvironment::getEnvironment(const char* name, std::string& outValue) {
    const auto value = environment_.get(name);
    outValue = value.value_or("");
    return value.has_value();
}

bool ProcessEnvironment::setEnvironment(const char* name, const char* value) {
    return environment_.set(name, value);
}

bool ProcessEnvironment::fileExists(const char* path) {
    return files_.exists(path);
}

bool ProcessEnvironment::getProgramPath(std::string& outPath) {
    return platform::ownImagePath(outPath);
}

bool ProcessEnvironment::getTempDirectory(std::string& outPath) {
    return files_.temporaryDirectory(outPath);
}
