#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace platform {
class File;
class FileSystem;
}  // namespace platform

// What the second stage of an uninstallation works with: a copy of the program and one of the action log,
// alone in a new directory that nobody else can enter. Names in the directory for temporary files belong to
// whoever takes them first, so none of them is foreseeable.
class PrivateCopy {
public:
    enum class Failure { kNone, kLog, kImage };

    // `files` is borrowed.
    explicit PrivateCopy(platform::FileSystem& files) : files_(files) {}
    // Removes the copies unless keep() was called.
    ~PrivateCopy();
    PrivateCopy(const PrivateCopy&) = delete;
    PrivateCopy& operator=(const PrivateCopy&) = delete;

    // Copies both into a new directory below `place`. From now on the image is held open against writing, and
    // it is what was copied. After a failure why() has the reason. Called once.
    Failure make(const std::string& place, const std::string& image, const std::string& log);

    const std::string& image() const { return image_; }
    const std::string& log() const { return log_; }
    const std::string& why() const { return why_; }  // a part of a sentence
    // The failed call's number, or 0 where no call failed.
    int status() const { return status_; }

    // The program runs: lets go of the image and leaves everything to the second stage.
    void keep();

    // Whether `image` and `log` are such copies, made by a user whom this one may trust, and nobody can have
    // changed them since. A name alone says nothing: anybody can use it.
    static bool isCopy(const std::string& image, const std::string& log, platform::FileSystem& files);

    // Removes the copy of the image and its directory. What the system keeps as long as the program runs goes
    // when the system starts the next time.
    static void removeImage(const std::string& image, platform::FileSystem& files);

    static constexpr char kImageName[] = "\\ormeluninst.dll";  // a program, despite its name
    static constexpr char kLogName[] = "\\ormeluninst.log";

private:
    bool fail(std::string why, int status);
    bool makeDirectory(const std::string& place);
    bool copy(const std::string& from, const std::string& to, bool isProgram);
    bool holdImage(const std::string& original);

    platform::FileSystem& files_;
    std::string directory_;  // empty when there is none to remove
    std::string image_;
    std::string log_;
    std::unique_ptr<platform::File> held_;
    std::string why_;
    int status_ = 0;
};
