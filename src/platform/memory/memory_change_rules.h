#pragma once

#include "platform/change_rules.h"
#include "platform/memory/memory_file_system.h"

// What the file system in memory says to changes. Faults that a test has asked for aren't foreseen.
class MemoryChangeRules : public platform::ChangeRules {
public:
    // Borrowed.
    explicit MemoryChangeRules(const MemoryFileSystem& files) : files_(files) {}

    int statusOf(platform::Refusal refusal) const override;
    int wouldRefuse(platform::Intent intent, std::string_view path) override;
    int partsOf(std::string_view path, platform::PathParts& outParts) override;
    char separator() const override { return '/'; }
    std::string nameKey(std::string_view name) const override;
    bool distinguishesCase() const override { return false; }
    bool isPlainName(std::string_view name) const override;
    bool movesDirectories() const override { return false; }
    std::string rightsOfNew(platform::FileRights rights) const override;
    std::string rightsOfUnset() const override;
    std::string asProgram(const std::string& rights) const override;
    bool isProgram(const std::string& rights) const override;
    std::string withDirectoryRights(const std::string& rights) const override { return rights; }

private:
    const MemoryFileSystem& files_;
};
