#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/overlay/overlay_file_system.h"
#include "platform/shell_objects.h"

// What was asked of the desktop.
struct ShellRequest {
    enum class What { kLink, kUrlLink, kSymlink, kOpening, kEnvironment };

    What what = What::kLink;
    std::string path = {};                // of the link; of what was to be opened
    platform::LinkDescription link = {};  // of a link to a program
    std::string target = {};              // the page, or the text of a symbolic link
};

// A desktop on which nothing appears. Its links are made in the overlay's files, where their content isn't
// known. What was to be opened counts as opened. For one thread.
class OverlayShellObjects : public platform::ShellObjects {
public:
    // Borrowed.
    explicit OverlayShellObjects(OverlayFileSystem& files) : files_(files) {}

    // What was asked for and not refused, in order.
    const std::vector<ShellRequest>& requests() const { return requests_; }

    int createLink(std::string_view linkPath, const platform::LinkDescription& link) override;
    int createUrlLink(std::string_view linkPath, std::string_view url) override;
    int createSymlink(std::string_view linkPath, std::string_view target) override;
    bool openDocument(std::string_view path) override;
    bool openForUser(std::string_view path) override { return openDocument(path); }
    bool broadcastEnvironment() override;

private:
    int record(int status, ShellRequest request);

    OverlayFileSystem& files_;
    std::vector<ShellRequest> requests_;
};
