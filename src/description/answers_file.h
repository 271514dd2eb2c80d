#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "description/pxml.h"
#include "platform/file_system.h"

// The configuration file that answers the questions of an installation. The front end checks it and the
// session takes its values, at different times; each path is read once, so that both see the same content.
class AnswersFile {
public:
    // `files` outlives this object.
    explicit AnswersFile(platform::FileSystem& files) : files_(files) {}
    AnswersFile(const AnswersFile&) = delete;
    AnswersFile& operator=(const AnswersFile&) = delete;

    bool exists(std::string_view path) { return files_.exists(path); }
    // Reads and parses the file unless it was the last one that was read. 0, or the status of PXML::loadFile.
    int load(std::string_view path);
    // Of the last load that gave 0.
    const PXML& document() const { return *document_; }
    // Whether that document has the element with the values.
    bool hasValues() const;

private:
    platform::FileSystem& files_;
    std::string path_;
    std::optional<PXML> document_;
};
