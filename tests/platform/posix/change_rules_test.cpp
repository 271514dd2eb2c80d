#include "platform/change_rules.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <memory>
#include <string>

#include "fakes/temporary_directory.h"
#include "platform/file_system.h"

namespace {

using platform::FileRights;

TEST(PosixChangeRulesTest, SaysTheRightsThatANewFileWillHave) {
    TemporaryDirectory directory;
    platform::FileSystem& files = platform::systemFileSystem();
    const platform::ChangeRules& rules = platform::systemChangeRules();
    for (const FileRights rights : {FileRights::kPlain, FileRights::kProgram, FileRights::kPrivate}) {
        const std::string path = directory.file("f" + std::to_string(static_cast<int>(rights)));
        platform::OpenOptions options;
        options.access = platform::kWrite;
        options.disposition = platform::Disposition::kCreateNew;
        std::unique_ptr<platform::File> file;
        ASSERT_EQ(files.open(path, options, file), 0);
        ASSERT_EQ(file->setRights(rights), 0);
        EXPECT_EQ(files.rightsOf(path), rules.rightsOfNew(rights));
        EXPECT_EQ(rules.isProgram(files.rightsOf(path)), rights == FileRights::kProgram);
        const std::string marked = rules.asProgram(files.rightsOf(path));
        ASSERT_EQ(file->makeExecutable(), 0);
        EXPECT_EQ(files.rightsOf(path), marked);
    }
}

// Root may do everything, so it takes another user's rights for a moment.
class OtherUser {
public:
    OtherUser() : own_(geteuid()) { EXPECT_EQ(own_ == 0 ? seteuid(65534) : 0, 0); }
    ~OtherUser() { EXPECT_EQ(seteuid(own_), 0); }
    OtherUser(const OtherUser&) = delete;
    OtherUser& operator=(const OtherUser&) = delete;

private:
    uid_t own_;
};

TEST(PosixChangeRulesTest, RefusesWhatTheModesDoNotLetTheUserDo) {
    using platform::Intent;
    TemporaryDirectory directory;
    platform::ChangeRules& rules = platform::systemChangeRules();
    writeTestFile(directory.file("f"), "");
    ASSERT_EQ(chmod(directory.file("f").c_str(), 0444), 0);
    ASSERT_EQ(chmod(directory.path().c_str(), 0555), 0);
    {
        const OtherUser other;
        EXPECT_EQ(rules.wouldRefuse(Intent::kWriteFile, directory.file("f")), EACCES);
        EXPECT_EQ(rules.wouldRefuse(Intent::kMakeEntry, directory.file("new")), EACCES);
        EXPECT_EQ(rules.wouldRefuse(Intent::kRemoveEntry, directory.file("f")), EACCES);
    }
    ASSERT_EQ(chmod(directory.path().c_str(), 01777), 0);
    if (geteuid() == 0) {
        const OtherUser other;
        EXPECT_EQ(rules.wouldRefuse(Intent::kMakeEntry, directory.file("new")), 0);
        EXPECT_EQ(rules.wouldRefuse(Intent::kRemoveEntry, directory.file("f")), EPERM);
    }
}

TEST(PosixChangeRulesTest, LeavesWhatLeadsUpwardsForWhoeverFollowsLinks) {
    platform::PathParts parts;
    ASSERT_EQ(platform::systemChangeRules().partsOf("C:\\a\\..\\b", parts), 0);
    EXPECT_EQ(parts.root, "/");
    EXPECT_EQ(parts.parts, (std::vector<std::string>{"a", "..", "b"}));
}

}  // namespace
