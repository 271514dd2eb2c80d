#pragma once

#include <string>
#include <string_view>

// A directory of its own for one test, removed with all its content at the end.
class TemporaryDirectory {
public:
    TemporaryDirectory();
    ~TemporaryDirectory();
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    const std::string& path() const { return path_; }
    // The path of `name` below the directory.
    std::string file(std::string_view name) const;

private:
    std::string path_;
};

// Whole files for tests; both fail the present test when they can't do their work.
void writeTestFile(const std::string& path, std::string_view content);
std::string readTestFile(const std::string& path);
bool testFileExists(const std::string& path);
