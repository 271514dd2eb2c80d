#include "platform/overlay/overlay_rights.h"

using platform::Refusal;

std::string OverlayRights::of(const OverlayNode& node) const {
    if (!node.isFile()) {
        return "";
    }
    return node.rights ? *node.rights : state_.base.rightsOf(*node.basePath);
}

int OverlayRights::mayWrite(const OverlayNode& node) const {
    return node.basePath && node.content == nullptr
               ? state_.rules.wouldRefuse(platform::Intent::kWriteFile, *node.basePath)
               : 0;
}

void OverlayRights::set(OverlayNode& node, platform::FileRights rights) const {
    node.rights = state_.rules.rightsOfNew(rights);
}

void OverlayRights::markAsProgram(OverlayNode& node) const {
    const std::string rights = of(node);
    if (const std::string marked = state_.rules.asProgram(rights); marked != rights) {
        node.rights = marked;
    }
}

int OverlayRights::makeExecutable(OverlayNode* node) const {
    if (node == nullptr || !node->isFile()) {
        return state_.refusal(node == nullptr       ? Refusal::kMissing
                              : node->isDirectory() ? Refusal::kNoProgram
                                                    : Refusal::kOpensLink);
    }
    const int status = mayWrite(*node);
    if (status == 0) {
        markAsProgram(*node);
    }
    return status;
}

int OverlayRights::takeDirectoryRights(OverlayNode* node) const {
    if (node == nullptr) {
        return state_.refusal(Refusal::kMissing);
    }
    const std::string rights = of(*node);
    if (const std::string taken = state_.rules.withDirectoryRights(rights); taken != rights) {
        node->rights = taken;
    }
    return 0;
}

int OverlayRights::take(OverlayNode& node, const OverlayNode* from) const {
    if (from == nullptr || !from->isFile()) {
        return state_.refusal(from == nullptr       ? Refusal::kMissing
                              : from->isDirectory() ? Refusal::kOpensDirectory
                              : from->isLink()      ? Refusal::kOpensLink
                                                    : Refusal::kDevice);
    }
    const std::string rights = of(*from);
    if (rights.empty()) {
        return state_.refusal(Refusal::kDenied);
    }
    node.rights = rights;
    return 0;
}
