#pragma once

#include <string>
#include <string_view>

#include "engine/removal_record.h"

class RemovalJournal;
class Report;

// Takes back what a removal did to files and directories, one record at a time, the last one first. Nothing
// is done through a link, and what has come into a place since is left.
class FilePlayback {
public:
    // All are borrowed.
    FilePlayback(platform::FileSystem& files, const RemovalJournal& journal, Report& report)
        : files_(files), journal_(journal), report_(report) {}

    // `record` is of a change to files, with what it left in the end. True when nothing of it is left to take
    // back; otherwise it has been said why.
    bool takeBack(const RemovalRecord& record);

private:
    bool dispatch(const RemovalRecord& record);
    bool takeBackRemoval(const RemovalRecord& record);
    bool takeBackDirectory(const RemovalRecord& record);
    bool takeBackNewDirectory(const RemovalRecord& record);
    bool takeBackContent(const RemovalRecord& record);
    bool takeBackMissing(const RemovalRecord& record);
    bool takeBackLeft(const RemovalRecord& record);
    bool takeBackRights(const RemovalRecord& record);

    bool isKept(const RemovalRecord& record) const;
    bool holdsKept(const RemovalRecord& record) const;
    int moveBack(const std::string& from, const std::string& to);
    int putBack(const RemovalRecord& record);

    bool done(std::string_view path, int status);
    bool left(std::string_view path, std::string_view reason);

    platform::FileSystem& files_;
    const RemovalJournal& journal_;
    Report& report_;
    bool hasGoneOn_ = false;  // something has been taken back
};
