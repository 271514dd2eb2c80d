#include "platform/error_text.h"

#include <cstring>

#include "platform/manner.h"
#include "platform/registry.h"

namespace platform {

namespace {

struct RegistryWords {
    int status;
    const char* text;
};

constexpr RegistryWords kRegistryWords[] = {
    {kRegNotFound, "The key or the value doesn't exist"},
    {kRegAccessDenied, "The registry can't be opened or changed: permission denied"},
    {kRegBadArgument, "The name or the value is too long for the registry"},
    {kRegDiskFull, "No space left on the device of the registry"},
    {kRegBusy, "Another process has locked the registry for too long"},
    {kRegDamaged, "The file of the registry is damaged"},
    {kRegIoFailed, "The file of the registry can't be read or written"},
    {kRegForeign, "The file of the registry belongs to something else or to a later version"},
};

std::string numberText(int status) {
    return "error " + std::to_string(status);
}

}  // namespace

// Not strerror, which translates and has words for every number.
std::string errorText(int status) {
    if (const Manner* const manner = currentManner) {
        return manner->errorText(status);
    }
    const char* const text = strerrordesc_np(status);
    return text == nullptr ? numberText(status) : text;
}

std::string registryErrorText(int status) {
    if (const Manner* const manner = currentManner) {
        return manner->registryErrorText(status);
    }
    for (const RegistryWords& words : kRegistryWords) {
        if (words.status == status) {
            return words.text;
        }
    }
    return numberText(status);
}

}  // namespace platform
