#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/file_system.h"

// A file of a preview. The name is relative to the preview's directory, with `/`, and has at most one
// directory.
struct PreviewFile {
    std::string name;
    std::string content;
};

// The directory of a preview. A list in it names all files that previews wrote, and nothing else is ever
// removed. Failures throw InstallerError with one line.
class PreviewDirectory {
public:
    static constexpr const char* kListName = "preview.txt";

    // `files` is borrowed.
    PreviewDirectory(platform::FileSystem& files, std::string path);

    // Makes the directory, or takes over an empty one, or removes the files of an earlier preview from it.
    void begin();
    // Notes the files in the list, in one step, and then writes them; their directories are made. What is
    // in the place of one already fails before anything is noted: it isn't a preview's.
    void write(const std::vector<PreviewFile>& files);
    // What the list names, in its order; none where there is no preview.
    std::vector<std::string> names();
    // False when the file can't be read.
    bool read(const std::string& name, std::string& outContent);

    const std::string& path() const { return path_; }

private:
    std::string pathOf(std::string_view name) const;
    bool isInside(const std::string& name);
    void preparePlace(const std::string& name);
    void writeOne(const std::string& name, std::string_view content);
    void makeDirectory(const std::string& path);
    void removeEarlier();

    platform::FileSystem& files_;
    std::string path_;
};
