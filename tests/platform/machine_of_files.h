#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/file_system.h"

// A file system under test, with a directory that is empty at first.
class FileSystemUnderTest {
public:
    virtual ~FileSystemUnderTest() = default;
    virtual platform::FileSystem& files() = 0;
    virtual const std::string& directory() const = 0;
    // What a test prepares and looks at; by other means than the file system where there are others.
    virtual void write(const std::string& path, std::string_view content);
    virtual std::string read(const std::string& path);
    virtual bool exists(const std::string& path) { return files().exists(path); }
};
using MachineOfFiles = std::unique_ptr<FileSystemUnderTest>;

MachineOfFiles systemMachine();
MachineOfFiles overlayOfSystem();
MachineOfFiles overlayOfMemory();
// The base's directory holds much of what tests make, and the overlay has taken it away.
MachineOfFiles overlayOfEmptiedSystem();
MachineOfFiles overlayOfEmptiedMemory();

// Whole files through the interface; both fail the present test when they can't do their work.
void writeFile(platform::FileSystem& files, const std::string& path, std::string_view content);
std::string readFile(platform::FileSystem& files, const std::string& path);
// The directory's content, with all below it.
void removeContent(platform::FileSystem& files, const std::string& directory);
