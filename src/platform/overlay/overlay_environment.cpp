#include "platform/overlay/overlay_environment.h"

#include "base/text_functions.h"

std::string OverlayEnvironment::keyOf(std::string_view name) const {
    if (!rules_.ignoresCase) {
        return std::string(name);
    }
    for (const auto& [known, value] : changes_) {
        if (OUtils::equalsIgnoreCase(std::string_view(known), name)) {
            return known;
        }
    }
    return std::string(name);
}

std::optional<std::string> OverlayEnvironment::get(std::string_view name) {
    const auto found = changes_.find(keyOf(name));
    return found != changes_.end() ? found->second : base_.get(name);
}

bool OverlayEnvironment::set(std::string_view name, std::string_view value) {
    if (name.empty() || name.find('=') != std::string_view::npos) {
        return false;
    }
    const bool isRemoved = value.empty() && rules_.emptyRemoves;
    changes_[keyOf(name)] = isRemoved ? std::nullopt : std::optional<std::string>(value);
    return true;
}
