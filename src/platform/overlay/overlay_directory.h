#pragma once

#include "platform/overlay/overlay_state.h"

class OverlayPlaces;

// An open directory of an overlay. Stays this very directory when it is moved.
class OverlayDirectory : public platform::Directory {
public:
    // The state is borrowed.
    OverlayDirectory(OverlayState& state, OverlayNode::Pointer node);

    int list(std::vector<platform::DirectoryEntry>& outEntries) override;
    int listDisk(std::vector<platform::DiskEntry>& outEntries) override;
    int openDirectory(std::string_view name, std::unique_ptr<platform::Directory>& outDirectory) override;
    int removeFile(std::string_view name) override;
    int removeDirectory(std::string_view name) override;
    int openFile(std::string_view name, std::unique_ptr<platform::File>& outFile) override;
    int takeFileAway(std::string_view name, std::string_view to) override;
    int takeDirectoryAway(std::string_view name, std::string_view to) override;

private:
    template <typename Operate>
    int on(std::string_view name, Operate operate);
    using Look = int (OverlayPlaces::*)(const OverlayPlace& from);
    using Move = int (OverlayPlaces::*)(const OverlayPlace& from, const OverlayPlace& to);
    int take(std::string_view name, std::string_view path, Look look, Move move);
    int statusOfDirectory() const;

    OverlayState& state_;
    OverlayNode::Pointer node_;
};
