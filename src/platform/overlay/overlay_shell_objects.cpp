#include "platform/overlay/overlay_shell_objects.h"

#include <utility>

#include "platform/written_path.h"

using What = ShellRequest::What;

int OverlayShellObjects::record(int status, ShellRequest request) {
    if (status == 0) {
        requests_.push_back(std::move(request));
    }
    return status;
}

int OverlayShellObjects::createLink(std::string_view linkPath, const platform::LinkDescription& link) {
    return record(files_.putUnknownFile(linkPath), {What::kLink, std::string(linkPath), link});
}

int OverlayShellObjects::createUrlLink(std::string_view linkPath, std::string_view url) {
    return record(files_.putUnknownFile(linkPath),
                  {What::kUrlLink, std::string(linkPath), {}, std::string(url)});
}

int OverlayShellObjects::createSymlink(std::string_view linkPath, std::string_view target) {
    const std::string text = platform::writtenPath(target);
    return record(files_.putLink(linkPath, text), {What::kSymlink, std::string(linkPath), {}, text});
}

bool OverlayShellObjects::openDocument(std::string_view path) {
    return !path.empty() && record(0, {What::kOpening, std::string(path)}) == 0;
}

bool OverlayShellObjects::broadcastEnvironment() {
    return record(0, {What::kEnvironment}) == 0;
}
