#include "platform/registry_rules.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

#include "base/text_functions.h"
#include "platform/posix/registry_schema.h"
#include "platform/posix/state_directory.h"

namespace platform {

namespace {

int accessOf(const std::string& path, int mode) {
    return faccessat(AT_FDCWD, path.data(), mode, AT_EACCESS) == 0 ? 0 : errno;
}

class PosixRegistryRules : public RegistryRules {
public:
    // One file holds all keys; where it isn't there yet, its directories decide.
    int wouldRefuse(const RegistryKey& /*key*/) override {
        std::string path = stateDirectory() + "/registry.db";
        int status = accessOf(path, W_OK);
        while (status == ENOENT && path.find('/') != std::string::npos && path.size() > 1) {
            path.resize(std::max<std::size_t>(path.rfind('/'), 1));
            status = accessOf(path, W_OK | X_OK);
        }
        return status == 0 ? kRegOk : kRegAccessDenied;
    }
    RegistryKey canonical(const RegistryKey& key) const override { return key; }
    bool isKeyName(std::string_view name) const override {
        return name.size() <= registry_schema::kMaxKeyNameBytes;
    }
    bool isValueName(std::string_view name) const override {
        return name.size() <= registry_schema::kMaxValueNameBytes;
    }
    std::string nameKey(std::string_view name) const override { return OUtils::toLowerAscii(name); }
    int statusOfRootDeletion() const override { return kRegAccessDenied; }
};

}  // namespace

RegistryRules& systemRegistryRules() {
    static PosixRegistryRules rules;
    return rules;
}

}  // namespace platform
