#include "platform/memory/memory_change_rules.h"

#include "base/text_functions.h"

using platform::FileRights;
using platform::Refusal;

int MemoryChangeRules::statusOf(Refusal refusal) const {
    switch (refusal) {
        case Refusal::kMissing:
        case Refusal::kMissingDirectory:
        case Refusal::kNoDirectory:
        case Refusal::kNotADirectory:
        case Refusal::kNoLink:
        case Refusal::kTooManyLinks:
        case Refusal::kBadName:
            return MemoryFileSystem::kNotFound;
        case Refusal::kExists:
        case Refusal::kTaken:
        case Refusal::kReplacesDirectory:
            return MemoryFileSystem::kExists;
        case Refusal::kOpensDirectory:
        case Refusal::kResolvesDirectory:
        case Refusal::kIsDirectory:
            return MemoryFileSystem::kIsDirectory;
        case Refusal::kNotEmpty:
            return MemoryFileSystem::kNotEmpty;
        case Refusal::kOtherVolume:
            return MemoryFileSystem::kOtherVolume;
        case Refusal::kClosed:
            return MemoryFileSystem::kBadHandle;
        case Refusal::kDiskFull:
        case Refusal::kNotKept:
            return MemoryFileSystem::kDiskFull;
        case Refusal::kAtRestart:
        case Refusal::kLinking:
            return MemoryFileSystem::kOk;
        case Refusal::kOpensNoDirectory:
        case Refusal::kRoot:
        case Refusal::kOpensLink:
        case Refusal::kDevice:
        case Refusal::kNoProgram:
        case Refusal::kDenied:
        case Refusal::kNotOpenFor:
        case Refusal::kBeforeStart:
        case Refusal::kBadAccess:
            return MemoryFileSystem::kAccessDenied;
    }
    return MemoryFileSystem::kAccessDenied;
}

int MemoryChangeRules::wouldRefuse(platform::Intent /*intent*/, std::string_view path) {
    return files_.refusalOfChange(path);
}

int MemoryChangeRules::partsOf(std::string_view path, platform::PathParts& outParts) {
    outParts = {};
    const std::string resolved = MemoryFileSystem::resolvedPath(path);
    for (std::string& part : OUtils::splitText(resolved, '/')) {
        if (outParts.parts.empty() && part.size() == 2 && part[1] == ':') {
            outParts.root = part;
        } else if (!part.empty()) {
            outParts.parts.push_back(std::move(part));
        }
    }
    return path.empty() ? MemoryFileSystem::kNotFound : MemoryFileSystem::kOk;
}

std::string MemoryChangeRules::nameKey(std::string_view name) const {
    return OUtils::toLowerAscii(name);
}

bool MemoryChangeRules::isPlainName(std::string_view name) const {
    return !name.empty() && name != "." && name != ".." &&
           name.find_first_of("/\\") == std::string_view::npos;
}

std::string MemoryChangeRules::rightsOfNew(FileRights rights) const {
    return rights == FileRights::kPlain     ? "made public plain"
           : rights == FileRights::kProgram ? "made public program"
                                            : "made private plain";
}

std::string MemoryChangeRules::rightsOfUnset() const {
    return "masked public plain";
}

std::string MemoryChangeRules::asProgram(const std::string& rights) const {
    constexpr std::string_view kPlain = "plain";
    return rights.ends_with(kPlain) ? rights.substr(0, rights.size() - kPlain.size()) + "program" : rights;
}

bool MemoryChangeRules::isProgram(const std::string& rights) const {
    return rights.ends_with("program");
}
