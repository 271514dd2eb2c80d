#include <gtest/gtest.h>

#include <algorithm>

#include "checking/description_check.h"
#include "packager/commands_fixture.h"
#include "packager/template_files.h"

namespace {

using NewCommandTest = CommandsTest;

TEST_F(NewCommandTest, WritesTheTemplateIntoANewDirectory) {
    EXPECT_EQ(run({"new", "/made/product"}), 0);
    for (const TemplateFile& file : templateFiles()) {
        EXPECT_EQ(files_.content("/made/product/" + file.path), file.text);
        EXPECT_EQ(std::ranges::count(output_.lines, "/made/product/" + file.path), 1);
    }
    EXPECT_TRUE(files_.hasFile("/made/product/install.xml"));
    EXPECT_TRUE(files_.hasFile("/made/product/files/bin/example"));
}

TEST_F(NewCommandTest, LeavesADirectoryAloneInWhichOneOfItsFilesIs) {
    files_.addFile("/made/files/README.txt", "mine");
    EXPECT_EQ(run({"new", "/made"}), 1);
    EXPECT_EQ(files_.content("/made/files/README.txt"), "mine");
    EXPECT_FALSE(files_.hasFile("/made/install.xml"));
    EXPECT_EQ(output_.errors,
              std::vector<std::string>{"packager: /made/files/README.txt is there already: name a "
                                       "directory that is new or empty"});
}

TEST_F(NewCommandTest, SaysWhyNothingCanBeWritten) {
    files_.addDirectory("/locked");
    files_.setReadOnly("/locked");
    EXPECT_EQ(run({"new", "/locked/product"}), 1);
    ASSERT_EQ(output_.errors.size(), 1U);
    EXPECT_TRUE(output_.errors[0].starts_with("packager: /locked/product: the directory can't be made: "));
}

TEST_F(NewCommandTest, WritesADescriptionWithoutFindings) {
    ASSERT_EQ(run({"new", "/made"}), 0);
    for (const CheckTargets targets :
         {CheckTargets{true, true}, CheckTargets{true, false}, CheckTargets{false, true}}) {
        EXPECT_TRUE(
            checkDescription(files_.content("/made/install.xml"), {targets, "/made/files"}, files_).empty());
    }
}

}  // namespace
