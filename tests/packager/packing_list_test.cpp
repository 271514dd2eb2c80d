#include "packager/packing_list.h"

#include <gtest/gtest.h>

#include "base/errors.h"
#include "platform/memory/memory_file_system.h"

namespace {

class PackingListTest : public testing::Test {
protected:
    PackingListTest() {
        files_.addFile("/root/a/b.txt", "b");
        files_.addFile("/root/c.txt", "cc");
        files_.addFile("/image", "image");
    }
    // The description with these FN elements in one set.
    void describe(const std::string& elements) {
        text_ = "<R><ProductDesc><Title>T</Title></ProductDesc><FileSet Name=\"S\">" + elements +
                "</FileSet></R>";
    }
    void read() {
        files_.addFile("/d/product.xml", text_);
        list_ = std::make_unique<PackingList>(PackingList::Sources{"/d/product.xml", root_, image_}, files_);
        list_->read();
    }
    // "alias name path" of each entry after the first.
    std::vector<std::string> entries() {
        read();
        std::vector<std::string> found;
        for (const PackageFile& entry : list_->entries()) {
            found.push_back(entry.alias + " " + entry.name + " " + entry.path);
        }
        EXPECT_EQ(found.front(), "install.xml product.xml /d/product.xml");
        found.erase(found.begin());
        return found;
    }
    std::string failure() {
        try {
            read();
        } catch (const InstallerError& error) {
            return error.what();
        }
        return "<none>";
    }

    MemoryFileSystem files_;
    std::string root_ = "/root";
    std::string image_ = "/image";
    std::string text_;
    std::unique_ptr<PackingList> list_;
};

using Entries = std::vector<std::string>;

TEST_F(PackingListTest, ListsFilesInTheOrderOfTheDescription) {
    describe("<FN Dest=\"x\">c.txt</FN><FN>a/b.txt</FN>");
    EXPECT_EQ(entries(), (Entries{"c.txt c.txt /root/c.txt", "ab.txt b.txt /root/a/b.txt"}));
    EXPECT_EQ(list_->entries()[1].size, 2);
    EXPECT_EQ(list_->cabinetSize(), 4 * 608 + static_cast<std::int64_t>(text_.size()) + 3);
    EXPECT_TRUE(list_->warnings().empty());
}

TEST_F(PackingListTest, UsesTheAttributeAlias) {
    describe("<FN Alias=\"One\">c.txt</FN><FN alias=\"Two\">a\\b.txt</FN>");
    EXPECT_EQ(entries(), (Entries{"One c.txt /root/c.txt", "Two b.txt /root/a/b.txt"}));
}

TEST_F(PackingListTest, AcceptsPathsInAnySpelling) {
    root_ = "/root/";
    describe("<FN>/a//./b.txt</FN>");
    EXPECT_EQ(entries(), (Entries{"a.b.txt b.txt /root/a/b.txt"}));
}

TEST_F(PackingListTest, PacksAFileOnceForEachAlias) {
    describe("<FN>c.txt</FN><FN Dest=\"x\">c.txt</FN><FN Alias=\"again\">c.txt</FN>");
    EXPECT_EQ(entries(), (Entries{"c.txt c.txt /root/c.txt", "again c.txt /root/c.txt"}));
}

TEST_F(PackingListTest, LeavesTwoFilesWithOneAliasToTheWriter) {
    files_.addFile("/root/ab.txt", "x");
    describe("<FN>a/b.txt</FN><FN>ab.txt</FN>");
    EXPECT_EQ(entries(), (Entries{"ab.txt b.txt /root/a/b.txt", "ab.txt ab.txt /root/ab.txt"}));
}

TEST_F(PackingListTest, PacksTheDescriptionForTheFilesThatNameIt) {
    describe("<FN>install.xml</FN><FN Alias=\"Copy\">product.xml</FN><FN Alias=\"Copy2\">x/install.xml</FN>");
    EXPECT_EQ(entries(), (Entries{"Copy product.xml /d/product.xml", "Copy2 install.xml /d/product.xml"}));
}

TEST_F(PackingListTest, PacksTheImageForAMissingInstaller) {
    describe("<FN Dest=\"x\">bin/installer.exe</FN><FN>installer</FN>");
    EXPECT_EQ(entries(), (Entries{"bininstaller.exe installer.exe /image", "installer installer /image"}));
    files_.addFile("/root/bin/installer.exe", "own");
    EXPECT_EQ(entries().front(), "bininstaller.exe installer.exe /root/bin/installer.exe");
    image_.clear();
    EXPECT_EQ(failure(),
              "installer: there is no such file below the root, and no bare installer: give --image");
}

TEST_F(PackingListTest, FailsForAMissingFileUnlessItMayBeMissing) {
    describe("<FN>none.txt</FN>");
    EXPECT_EQ(failure(), "/root/none.txt: no such file");
    describe("<FN>a</FN>");  // a directory
    EXPECT_EQ(failure(), "/root/a: no such file");
    describe("<FN OkIfMissing=\"1\">none.txt</FN><FN OkIfMissing=\"0\">c.txt</FN>");
    EXPECT_EQ(entries(), (Entries{"c.txt c.txt /root/c.txt"}));
}

TEST_F(PackingListTest, RefusesPathsThatLeaveTheRoot) {
    for (const std::string path : {"../c.txt", "a/../../x", "C:\\x", "a\\..\\c.txt"}) {
        describe("<FN>" + path + "</FN>");
        EXPECT_EQ(failure(), "the file \"" + path +
                                 "\" of the description doesn't lie below the root: name it by its "
                                 "path from there");
    }
}

TEST_F(PackingListTest, SkipsElementsThatTheInstallerSkips) {
    describe("<FN></FN><FN/><Other>none.txt</Other><fn>c.txt</fn>");
    EXPECT_EQ(entries(), (Entries{"c.txt c.txt /root/c.txt"}));
    text_ =
        "<R><ProductDesc/><FileSet><FN>none.txt</FN></FileSet><FileSet "
        "name=\"S\"><FN>c.txt</FN></FileSet></R>";
    EXPECT_EQ(entries(), (Entries{"c.txt c.txt /root/c.txt"}));
    EXPECT_EQ(list_->warnings().size(), 1U);
}

TEST_F(PackingListTest, WarnsAboutWhatTheInstallerCannotUse) {
    const std::string alias(259, 'a');
    describe("<FN Alias=\"" + alias + "\">c.txt</FN>");
    EXPECT_EQ(entries().size(), 1U);
    EXPECT_EQ(
        list_->warnings(),
        (Entries{
            "/root/c.txt: the alias has 259 bytes, and the installer finds no file by more than 258: give "
            "the file an Alias"}));
    text_ = "<R></R>";
    EXPECT_TRUE(entries().empty());
    EXPECT_EQ(list_->warnings(),
              (Entries{"/d/product.xml: without a ProductDesc section the installer will end at once"}));
}

TEST_F(PackingListTest, FailsWithoutAUsableDescription) {
    text_ = "no elements";
    EXPECT_EQ(failure(), "/d/product.xml: this is not a description, it has no elements");
    text_ = "";
    EXPECT_EQ(failure(), "/d/product.xml: this is not a description, it has no elements");
    describe("");
    root_ = "/nowhere";
    EXPECT_EQ(failure(), "/nowhere: no such directory");
    PackingList missing({"/d/none.xml", "/root", ""}, files_);
    EXPECT_THROW(missing.read(), InstallerError);
}

TEST_F(PackingListTest, PacksEqualContentsUnderOneAliasOnce) {
    files_.addFile("/root/ab.txt", "b");
    describe("<FN>a/b.txt</FN><FN>ab.txt</FN>");
    EXPECT_EQ(entries(), (Entries{"ab.txt b.txt /root/a/b.txt"}));
    files_.addFile("/root/ab.txt", "x");
    EXPECT_EQ(entries().size(), 2U);
}

TEST_F(PackingListTest, PacksTheDescriptionWithFilesInThePlaceOfItsTrees) {
    describe("<Tree From='a' Dest='D'/><FN Alias='Copy'>install.xml</FN>");
    EXPECT_EQ(entries(), (Entries{"ab.txt b.txt /root/a/b.txt", "Copy install.xml /d/product.xml"}));
    const std::string expected =
        "<R><ProductDesc><Title>T</Title></ProductDesc><FileSet Name=\"S\"><FN Dest=\"D\">a/b.txt</FN>"
        "<FN Alias='Copy'>install.xml</FN></FileSet></R>";
    for (const std::size_t i : {0, 2}) {
        ASSERT_NE(list_->entries()[i].content, nullptr);
        EXPECT_EQ(*list_->entries()[i].content, expected);
        EXPECT_EQ(list_->entries()[i].size, static_cast<std::int64_t>(expected.size()));
    }
    EXPECT_EQ(list_->entries()[1].content, nullptr);
}

TEST_F(PackingListTest, LeavesADescriptionWithoutTreesToItsFile) {
    describe("<FN>c.txt</FN>");
    EXPECT_EQ(entries().size(), 1U);
    EXPECT_EQ(list_->entries()[0].content, nullptr);
}

TEST_F(PackingListTest, AddsTheWarningsOfTrees) {
    describe("<Tree From='a' Dest='D' Exclude='*'/>");
    EXPECT_TRUE(entries().empty());
    EXPECT_EQ(list_->warnings(), (Entries{"/d/product.xml: the Tree of \"a\" stands for no file"}));
}

}  // namespace
