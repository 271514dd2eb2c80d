#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/overlay/overlay_state.h"

// The changes to the entries of an overlay, each as platform::FileSystem has it for paths. For one thread.
class OverlayPlaces {
public:
    using NodePointer = OverlayNode::Pointer;

    // Borrowed.
    explicit OverlayPlaces(OverlayState& state) : state_(state) {}

    // `outFile` is null after a failure. The state outlives the file.
    int open(const OverlayPlace& place, const platform::OpenOptions& options,
             std::unique_ptr<platform::File>& outFile);
    int removeFile(const OverlayPlace& place);
    int removeDirectory(const OverlayPlace& place);
    int createDirectory(const OverlayPlace& place);
    // The machine looks at what is to go before it looks for the new place: these come before the moves.
    int statusOfMove(const OverlayPlace& from);
    int statusOfTakingFile(const OverlayPlace& from);
    int statusOfTakingDirectory(const OverlayPlace& from);
    int move(const OverlayPlace& from, const OverlayPlace& to);
    int replace(const OverlayPlace& from, const OverlayPlace& to);
    int moveDirectory(const OverlayPlace& from, const OverlayPlace& to);
    // A symbolic link, or a file of which nothing is known but that it is there, over what isn't a directory.
    int putLink(const OverlayPlace& place, std::string_view text);
    int putUnknownFile(const OverlayPlace& place);

    // 0, or the status with which the machine would refuse.
    int mayMake(const OverlayPlace& place);

private:
    int mayGo(const OverlayPlace& place, platform::Intent intent);
    int mayMove(const OverlayPlace& from, const OverlayPlace& to);
    int put(const OverlayPlace& place, const NodePointer& node);
    int openPresent(const NodePointer& node, const platform::OpenOptions& options,
                    std::unique_ptr<platform::File>& outBaseFile);
    NodePointer newNode(platform::PathKind kind);
    NodePointer newFile(std::string rights);
    void relocate(const OverlayPlace& from, const OverlayPlace& to);

    OverlayState& state_;
};
