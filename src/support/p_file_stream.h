#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/file_system.h"
#include "support/p_stream.h"

// A stream over a file. Without an open file operations give -1 and move nothing.
class PFileStream : public PStream {
public:
    static constexpr std::uint32_t kGenericRead = 0x80000000;
    static constexpr std::uint32_t kGenericWrite = 0x40000000;
    static constexpr std::uint32_t kReadWrite = kGenericRead | kGenericWrite;

    static constexpr std::uint32_t kShareNone = 0;
    static constexpr std::uint32_t kShareRead = 1;
    static constexpr std::uint32_t kShareWrite = 2;
    static constexpr std::uint32_t kShareDelete = 4;

    // Create modes, the two low bits; 1 opens an existing file as well.
    static constexpr std::uint32_t kOpenExisting = 0;
    static constexpr std::uint32_t kOpenAlways = 2;    // opens or creates, keeps the content
    static constexpr std::uint32_t kCreateAlways = 3;  // empties what is there
    // Added to one of them: the file will be read from front to back.
    static constexpr std::uint32_t kSequential = 4;

    // The mode of openWithMode that appends.
    static constexpr int kAppend = 1;

    // `files` is borrowed.
    explicit PFileStream(platform::FileSystem& files);
    ~PFileStream() override;  // closes

    // Sets the parameters of the next open(). `path` is UTF-8 and copied.
    void setParameters(std::string_view path, std::uint32_t access, std::uint32_t share,
                       std::uint32_t createMode);
    // setParameters, then open.
    int openFile(std::string_view path, std::uint32_t access, std::uint32_t share, std::uint32_t createMode);
    // Closes, then opens `path` for reading and writing, others may read. A mode whose two low bits are 1
    // opens or creates, keeps the content and moves to its end; every other mode recreates the file.
    int openWithMode(std::string_view path, int mode);
    // Closes, then creates `path` for reading and writing by this user alone. Whatever has that name, a link
    // included, is removed first and never followed. For well-known names in directories that all may write
    // to.
    int openPrivate(std::string_view path);
    // Closes, then creates `path` for writing alone; fails when there is anything of that name. A private
    // file is readable and writable by this user alone.
    int createNew(std::string_view path, bool isPrivate);
    // From the directory entry, without opening; -1 if there is none.
    std::int64_t getFileSize(std::string_view path);

    bool isOpen() const { return file_ != nullptr; }
    // The rights of the open file, as in platform::File.
    int setRights(platform::FileRights rights);
    int takeRightsOf(std::string_view path);
    int makeExecutable();
    // The path set last.
    const std::string& getName() const { return name_; }

    // An open file is closed first.
    int open() override;
    // The file counts as closed even when the system reports a failure (a full disk, say); the open count
    // stays as it is then. Closing what isn't open gives 0.
    int close() override;
    int flush() override;
    int write(const void* buffer, std::uint32_t size, std::uint32_t& outWritten) override;
    int read(void* buffer, std::uint32_t size, std::uint32_t& outRead) override;
    int seek(std::int64_t position) override;
    int seekRelative(std::int64_t distance) override;
    int seekFromEnd(std::int64_t distance) override;
    std::int64_t getSize() override;
    int setEndOfStream() override;
    std::int64_t getPosition() override;

protected:
    platform::FileSystem& files() { return files_; }
    platform::File* file() { return file_.get(); }

private:
    int openAs(platform::Disposition disposition);
    int move(std::int64_t distance, platform::Origin origin);

    platform::FileSystem& files_;
    std::string name_;
    std::uint32_t access_ = kReadWrite;
    std::uint32_t share_ = kShareRead;
    std::uint32_t createMode_ = kOpenAlways;
    std::unique_ptr<platform::File> file_;
};
