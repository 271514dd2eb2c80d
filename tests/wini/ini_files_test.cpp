#include "wini/ini_files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "engine/action_log_format.h"
#include "fakes/memory_file_system.h"
#include "fakes/recording_ui.h"
#include "fakes/temporary_directory.h"
#include "wini/same_path.h"
#include "engine/changes/text_lines.h"

namespace {

using Operation = MemoryFileSystem::Operation;

constexpr char kFile[] = "/d/a.ini";

class IniFilesTest : public testing::Test {
protected:
    void put(const std::vector<std::string>& lines) { files_.addFile(kFile, textOf(lines)); }
    void expectFile(const std::vector<std::string>& lines) {
        EXPECT_EQ(files_.content(kFile), textOf(lines));
    }
    bool add(const char* key, const char* value, bool isPath = false, const char* beforeKey = nullptr) {
        return addTo("S", key, value, isPath, beforeKey);
    }
    bool addTo(const char* section, const char* key, const char* value, bool isPath = false,
               const char* beforeKey = nullptr) {
        undo_ = "left over";
        return ini_.addIniEntry(kFile, section, key, value, undo_, &ui_, isPath, beforeKey);
    }
    bool remove(const std::string& undo) { return ini_.removeIniEntry(undo.c_str(), &ui_); }
    void expectLines(const std::vector<std::string>& lines) {
        std::vector<std::string> calls;
        for (const std::string& line : lines) {
            calls.push_back("addFileLine(\"" + line + "\", 0)");
        }
        EXPECT_EQ(ui_.take(), calls);
    }
    // Nothing is written, there is nothing to undo, and the failure is told.
    void expectRefused(const char* section, const char* key, const char* value, const std::string& line,
                       bool isPath = false, const char* beforeKey = nullptr) {
        const std::string before = files_.content(kFile);
        const int replaced = files_.count(Operation::kReplaceFile);
        EXPECT_FALSE(addTo(section, key, value, isPath, beforeKey));
        EXPECT_EQ(undo_, "");
        EXPECT_EQ(files_.content(kFile), before);
        EXPECT_EQ(files_.count(Operation::kReplaceFile), replaced);
        EXPECT_EQ(errors_, ErrorList{line});
        expectLines({line});
        errors_.clear();
    }

    MemoryFileSystem files_;
    ErrorList errors_;
    RecordingUI ui_;
    IniFiles ini_{files_, errors_};
    std::string undo_;
};

TEST_F(IniFilesTest, CreatesAKeyAndRemovesItAgain) {
    put({"[S]", "a=1", "", "[B]", "b=2"});
    EXPECT_TRUE(add("k", "v w"));
    EXPECT_EQ(undo_, "CREATE\t/d/a.ini\tS\tk\tv w");
    expectFile({"[S]", "a=1", "k=v w", "", "[B]", "b=2"});
    EXPECT_TRUE(remove(undo_));
    expectFile({"[S]", "a=1", "", "[B]", "b=2"});
    expectLines({"Create [S]/k in /d/a.ini", "Remove [S]/k in /d/a.ini"});
    EXPECT_TRUE(errors_.empty());
}

TEST_F(IniFilesTest, ReplacesAValueAndRestoresIt) {
    put({"[S]", "k=old=1", "a=1"});
    EXPECT_TRUE(add("k", "new"));
    EXPECT_EQ(undo_, "REPLACE\t/d/a.ini\tS\tk\told=1");
    expectFile({"[S]", "k=new", "a=1"});
    EXPECT_TRUE(remove(undo_));
    expectFile({"[S]", "k=old=1", "a=1"});
    expectLines({"Replace [S]/k in /d/a.ini", "Restore [S]/k in /d/a.ini"});
}

TEST_F(IniFilesTest, MakesAMissingFileAndASectionThatStays) {
    files_.addDirectory("/d");
    EXPECT_TRUE(add("k", "v"));
    expectFile({"[S]", "k=v"});
    EXPECT_TRUE(remove(undo_));
    expectFile({"[S]"});
}

TEST_F(IniFilesTest, TakesAnEmptyValueForAnAbsentOne) {
    put({"[S]", "k="});
    EXPECT_TRUE(add("k", "v"));
    EXPECT_EQ(undo_, "CREATE\t/d/a.ini\tS\tk\tv");
    expectFile({"[S]", "k=v"});
    EXPECT_TRUE(add("e", ""));
    EXPECT_EQ(undo_, "CREATE\t/d/a.ini\tS\te\t");
    EXPECT_TRUE(remove("CREATE\t/d/a.ini\tS\te"));
    expectFile({"[S]", "k=v"});
}

TEST_F(IniFilesTest, PutsANewKeyInFrontOfAnother) {
    put({"[S]", "a=1", "b=2", "[B]"});
    EXPECT_TRUE(add("k", "v", false, "b"));
    expectFile({"[S]", "a=1", "k=v", "b=2", "[B]"});
    EXPECT_TRUE(remove(undo_));
    EXPECT_TRUE(add("k", "v", false, "none"));
    expectFile({"[S]", "a=1", "b=2", "k=v", "[B]"});
    EXPECT_TRUE(remove(undo_));
    EXPECT_TRUE(add("k", "v", false, ""));
    expectFile({"[S]", "a=1", "b=2", "k=v", "[B]"});
}

TEST_F(IniFilesTest, CannotMatchAKeyInFrontOfAnySection) {
    put({"k=outside", "[S]"});
    EXPECT_TRUE(add("k", "v"));
    EXPECT_EQ(undo_.substr(0, 6), "CREATE");
    expectFile({"k=outside", "[S]", "k=v"});
    expectLines({"Create [S]/k in /d/a.ini"});
    expectRefused("", "k", "v", "FAILED to create []/k in /d/a.ini");
}

TEST_F(IniFilesTest, ReadsThePresentValueInAnyCaseWithoutBlanksAndQuotes) {
    put({"[s]", "K = \"old\" "});
    EXPECT_TRUE(add("k", "v"));
    EXPECT_EQ(undo_, "REPLACE\t/d/a.ini\tS\tk\told");
    put({"[S]", "k= 'old' ", "a=1"});
    EXPECT_TRUE(add("k", "v"));
    EXPECT_EQ(undo_, "REPLACE\t/d/a.ini\tS\tk\told");
}

TEST_F(IniFilesTest, KeepsTheQuotesThatAValueNeeds) {
    put({"[S]", "k=\" old \""});
    EXPECT_TRUE(add("k", "v"));
    EXPECT_EQ(undo_, "REPLACE\t/d/a.ini\tS\tk\t\" old \"");
    EXPECT_TRUE(remove(undo_));
    expectFile({"[S]", "k=\" old \""});
}

TEST_F(IniFilesTest, RemembersTheValueThatGivesWayThoughAReaderFindsAnother) {
    put({"[S]", "K=first", "k=second"});
    EXPECT_TRUE(add("k", "v"));
    EXPECT_EQ(undo_, "REPLACE\t/d/a.ini\tS\tk\tsecond");
    EXPECT_TRUE(remove(undo_));
    expectFile({"[S]", "K=first", "k=second"});
    put({"[s]", "a=1", "[S]", "k=hidden"});
    EXPECT_TRUE(add("k", "v"));
    EXPECT_EQ(undo_, "REPLACE\t/d/a.ini\tS\tk\thidden");
}

TEST_F(IniFilesTest, RefusesToMoveAKeyWithSeveralValues) {
    put({"[S]", "k=1", "k=2", "b=3"});
    expectRefused("S", "k", "v", "FAILED to replace [S]/k in /d/a.ini", false, "b");
    EXPECT_TRUE(add("k", "v"));
    expectFile({"[S]", "k=v", "k=2", "b=3"});
}

TEST_F(IniFilesTest, LeavesAValueBeyondTheBufferAlone) {
    put({"[S]", "k=" + std::string(511, 'x')});
    EXPECT_TRUE(add("k", "v"));
    EXPECT_TRUE(remove(undo_));
    expectFile({"[S]", "k=" + std::string(511, 'x')});
    ui_.take();
    for (const std::size_t size : {512U, 2048U, 40000U}) {
        put({"[S]", "k=" + std::string(size, 'x')});
        expectRefused("S", "k", "v", "FAILED to replace [S]/k in /d/a.ini");
    }
}

TEST_F(IniFilesTest, LeavesAValueAloneThatTheRecordWouldChange) {
    for (const std::string& value : {std::string("a\tb"), std::string("\"a \" x\"") + '\t' + "y"}) {
        put({"[S]", "k=" + value});
        expectRefused("S", "k", "v", "FAILED to replace [S]/k in /d/a.ini");
    }
    const std::string section(600, 's');
    put({"[" + section + "]", "k=" + std::string(500, 'x')});
    expectRefused(section.c_str(), "k", "v", "FAILED to replace [" + section + "]/k in /d/a.ini");
}

TEST_F(IniFilesTest, RefusesWhatItCouldNotFindAgain) {
    put({"[S]", "a=1"});
    for (const char* key : {"", "a=b", ";k", "[k", "a\tb", "a\nb", "k "}) {
        expectRefused("S", key, "v", std::string("FAILED to create [S]/") + key + " in /d/a.ini");
    }
    for (const char* section : {"a\tb", "a\nb"}) {
        expectRefused(section, "k", "v", std::string("FAILED to create [") + section + "]/k in /d/a.ini");
    }
    expectRefused("S", "k", "v\n[T]\nx=1", "FAILED to create [S]/k in /d/a.ini");
    expectRefused("S", "k", nullptr, "FAILED to create [S]/k in /d/a.ini");
    expectRefused(nullptr, "k", "v", "FAILED to create []/k in /d/a.ini");
    expectRefused("S", nullptr, "v", "FAILED to create [S]/ in /d/a.ini");
    const std::string key(1023, 'k');
    expectRefused("S", key.c_str(), "v", "FAILED to create [S]/" + key + " in /d/a.ini");
    std::string undo;
    EXPECT_FALSE(ini_.addIniEntry(nullptr, "S", "k", "v", undo, nullptr, false, nullptr));
}

TEST_F(IniFilesTest, LetsTheRecordCutTheValueOfANewKey) {
    put({"[S]"});
    const std::string value(1023, 'v');
    EXPECT_TRUE(add("k", value.c_str()));
    EXPECT_TRUE(remove(undo_.substr(0, ActionLogFormat::kLineLimit - 4)));
    expectFile({"[S]"});
}

TEST_F(IniFilesTest, TellsWhatCannotBeReadOrWritten) {
    put({"[S]", "k=old"});
    files_.failAt(Operation::kRead, "", 1);
    expectRefused("S", "k", "v", "FAILED to create [S]/k in /d/a.ini");
    files_.failAt(Operation::kWrite, "", 1);
    EXPECT_FALSE(add("k", "v"));
    EXPECT_EQ(undo_, "REPLACE\t/d/a.ini\tS\tk\told");
    files_.setReadOnly("/d");
    EXPECT_FALSE(add("n", "v"));
    EXPECT_FALSE(remove("REPLACE\t/d/a.ini\tS\tk\tolder"));
    EXPECT_FALSE(remove("CREATE\t/d/a.ini\tS\tk\told"));
    const ErrorList lines{"FAILED to replace [S]/k in /d/a.ini", "FAILED to create [S]/n in /d/a.ini",
                          "FAILED to restore [S]/k in /d/a.ini", "FAILED to remove [S]/k in /d/a.ini"};
    EXPECT_EQ(errors_, lines);
    expectLines(lines);
    expectFile({"[S]", "k=old"});
    EXPECT_EQ(files_.allFiles().size(), 1U);
}

TEST_F(IniFilesTest, LeavesDirectoriesAndWideTextAlone) {
    files_.addDirectory(kFile);
    expectRefused("S", "k", "v", "FAILED to create [S]/k in /d/a.ini");
    const std::string wide("\xff\xfe[\0S\0]\0\n\0", 10);
    files_.addFile("/d/wide.ini", wide);
    EXPECT_FALSE(ini_.writeIniLine("/d/wide.ini", "S", "k", "v", nullptr));
    EXPECT_FALSE(ini_.addIniEntry("/d/wide.ini", "S", "k", "v", undo_, nullptr, false, nullptr));
    EXPECT_EQ(files_.content("/d/wide.ini"), wide);
}

TEST_F(IniFilesTest, KeepsTheMarkInFrontOfTheFirstLine) {
    files_.addFile(kFile, "\xef\xbb\xbf" + textOf({"[S]", "k=old"}));
    EXPECT_TRUE(add("k", "v"));
    EXPECT_EQ(files_.content(kFile), "\xef\xbb\xbf" + textOf({"[S]", "k=v"}));
}

TEST_F(IniFilesTest, WritesNothingWhereNothingChanges) {
    put({"[S]", "k=v"});
    EXPECT_TRUE(add("k", "v"));
    EXPECT_TRUE(remove("CREATE\t/d/a.ini\tS\tnone\tv"));
    EXPECT_TRUE(remove("CREATE\t/d/a.ini\tT\tk\tv"));
    EXPECT_EQ(files_.count(Operation::kWrite), 0);
    files_.addFile("/d/b.ini", "[S]\nk=v");
    EXPECT_TRUE(ini_.writeIniLine("/d/b.ini", "S", "none", nullptr, nullptr));
    EXPECT_EQ(files_.content("/d/b.ini"), "[S]\nk=v");
}

TEST_F(IniFilesTest, MakesNoFileToTakeAChangeBack) {
    EXPECT_TRUE(remove("CREATE\t/d/a.ini\tS\tk\tv"));
    EXPECT_TRUE(remove("REPLACE\t/d/a.ini\tS\tk\told"));
    EXPECT_TRUE(ini_.writeIniLine(kFile, "S", "k", nullptr, nullptr));
    EXPECT_TRUE(files_.allFiles().empty());
    expectLines({"Remove [S]/k in /d/a.ini"});
}

TEST_F(IniFilesTest, FindsADirectoryAmongTheValuesOfTheSection) {
    files_.addDirectory("/opt/demo");
    files_.addDirectory("/opt/other");
    put({"[s]", "x=1", "p = \"/OPT/demo/\"", "[B]", "q=/opt/other"});
    EXPECT_TRUE(add("k", "/opt/demo", true));
    EXPECT_EQ(undo_, "NONE");
    EXPECT_FALSE(remove(undo_));
    expectLines({});
    EXPECT_TRUE(add("k", "/opt/other", true));
    EXPECT_EQ(undo_.substr(0, 6), "CREATE");
    put({"[S]", "p=/opt/demo"});
    EXPECT_TRUE(add("k", "/opt/demo", false));
    expectFile({"[S]", "p=/opt/demo", "k=/opt/demo"});
    EXPECT_EQ(files_.allFiles(), std::vector<std::string>{kFile});
}

TEST_F(IniFilesTest, RefusesToCompareSectionsBeyondTheBuffers) {
    files_.addDirectory("/opt/demo");
    std::vector<std::string> lines{"[S]"};
    for (int i = 0; i < 204; ++i) {
        lines.push_back("key" + std::to_string(100000 + i) + "=x");  // ten bytes of the list each
    }
    lines.push_back("a23456=x");
    put(lines);
    EXPECT_TRUE(add("a23456", "/opt/demo", true));
    lines.back() = "a234567=x";
    put(lines);
    ui_.take();
    expectRefused("S", "k", "/opt/demo", "FAILED to create [S]/k in /d/a.ini", true);
    put({"[S]", "a=" + std::string(512, 'x')});
    expectRefused("S", "k", "/opt/demo", "FAILED to create [S]/k in /d/a.ini", true);
    EXPECT_TRUE(add("k", "/opt/demo", false));
}

TEST_F(IniFilesTest, BearsDamagedUndoTexts) {
    put({"[S]", "k=v"});
    for (const char* text :
         {"", "NONE", "\t", "CREATE", "CREATE\t", "CREATE\t/d/a.ini", "CREATE\t/d/a.ini\tS", "REPLACE",
          "REPLACE\t/d/a.ini\tS\tk", "REPLACE\t/d/a.ini\tS\tk\t", "create\t/d/a.ini\tS\tk\tv",
          "\tCREATE\t/d/a.ini\tS\tk", "\xff\x01"}) {
        EXPECT_FALSE(remove(text)) << text;
    }
    EXPECT_FALSE(ini_.removeIniEntry(nullptr, nullptr));
    EXPECT_TRUE(remove("CREATE\t/none\t\xff\t\x01\x02"));
    expectFile({"[S]", "k=v"});
    EXPECT_TRUE(errors_.empty());
    EXPECT_FALSE(remove("REPLACE\t/d\tS\tk\tv"));
    EXPECT_FALSE(remove("CREATE\t/d\tS\tk\tv"));
}

TEST_F(IniFilesTest, SelectsByMode) {
    put({"[S]", "a=1", "[B]"});
    const auto write = [&](IniMode mode, const char* key, const char* value) {
        return ini_.writeIniValue(kFile, "S", key, value, mode, nullptr);
    };
    EXPECT_TRUE(write(IniMode::kWriteValue, "k", "v"));
    expectFile({"[S]", "a=1", "k=v", "[B]"});
    EXPECT_TRUE(write(IniMode::kDeleteKey, "a", "ignored"));
    expectFile({"[S]", "k=v", "[B]"});
    EXPECT_TRUE(write(IniMode::kNone, "k", "x"));
    expectFile({"[S]", "k=v", "[B]"});
    EXPECT_TRUE(write(IniMode::kDeleteSection, "k", "x"));
    expectFile({"[B]"});
    EXPECT_FALSE(write(IniMode::kDeleteKey, nullptr, nullptr));
    EXPECT_FALSE(write(IniMode::kWriteValue, "k", nullptr));
    EXPECT_FALSE(ini_.writeIniLine(nullptr, "S", "k", "v", nullptr));
    EXPECT_FALSE(ini_.writeIniLine(kFile, nullptr, "k", "v", nullptr));
    EXPECT_FALSE(ini_.writeIniLine(kFile, "", "k", "v", nullptr));
    expectFile({"[B]"});
}

// Files at random, and changes that are taken back in the reverse order.
class RandomIniFiles : public IniFilesTest {
protected:
    int below(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }
    std::string pick(const std::vector<std::string>& words) {
        return words[static_cast<std::size_t>(below(static_cast<int>(words.size())))];
    }

    std::mt19937 random_;
};

TEST_F(RandomIniFiles, ComeBackByteForByte) {
    for (unsigned seed = 1; seed <= 2000; ++seed) {
        SCOPED_TRACE(seed);
        random_.seed(seed);
        std::vector<std::string> lines;
        for (int section = 0; section < 3; ++section) {
            lines.push_back("[S" + std::to_string(section) + "]");
            for (int key = 0; key < 4; ++key) {
                lines.push_back(pick({"", "; remark = 1", "word",
                                      "k" + std::to_string(key) + "=v " + pick({"1", "=", "\xc3\xa9"})}));
            }
        }
        put(lines);
        std::vector<std::string> undos;
        for (int change = 0; change < 6; ++change) {
            const std::string section = "S" + std::to_string(below(3));
            const std::string key = pick({"k0", "k1", "k2", "n1", "n2"});
            const bool isNew = key[0] == 'n' && undos.empty();
            ASSERT_TRUE(addTo(section.c_str(), key.c_str(), pick({"x", "y z"}).c_str(), false,
                              isNew ? pick({"k1", "k3", "none"}).c_str() : nullptr));
            undos.push_back(undo_);
        }
        std::ranges::for_each(undos.rbegin(), undos.rend(),
                              [&](const std::string& undo) { EXPECT_TRUE(remove(undo)); });
        expectFile(lines);
    }
}

TEST_F(RandomIniFiles, LoseNoLineOfOthers) {
    for (unsigned seed = 1; seed <= 2000; ++seed) {
        SCOPED_TRACE(seed);
        random_.seed(seed);
        std::vector<std::string> lines;
        for (int line = below(12); line > 0; --line) {
            lines.push_back(pick(
                {"[S]", "[s]", "[S", "[T]x", "k=1", "K=2", " k =3", "b=4", ";k=5", "word", "", "=", "\r"}));
        }
        put(lines);
        if (addTo(pick({"S", "T"}).c_str(), "k", "new", false, pick({"b", "", "none"}).c_str())) {
            EXPECT_TRUE(remove(undo_));
        }
        std::vector<std::string> others;
        std::ranges::copy_if(lines, std::back_inserter(others),
                             [](const std::string& line) { return !line.starts_with("k="); });
        const std::string content = files_.content(kFile);
        std::size_t position = 0;
        for (const std::string& other : others) {
            const std::string whole = textOf({other});
            const std::size_t found = content.find(whole, position);
            ASSERT_NE(found, std::string::npos) << content;
            position = found + whole.size();
        }
    }
}

TEST(IniFilesMachineTest, ChangesARealFile) {
    const TemporaryDirectory directory;
    const std::string path = directory.file("a.ini");
    const std::string before = textOf({"[S]", "k=old", "", "[B]", "p=" + directory.path() + "/"});
    writeTestFile(path, before);
    ErrorList errors;
    IniFiles ini(platform::systemFileSystem(), errors);
    std::string undo;
    EXPECT_TRUE(ini.addIniEntry(path.c_str(), "S", "k", "new", undo, nullptr, false, nullptr));
    std::string second;
    EXPECT_TRUE(ini.addIniEntry(path.c_str(), "S", "n", "v", second, nullptr, false, "k"));
    EXPECT_EQ(readTestFile(path), textOf({"[S]", "n=v", "k=new", "", "[B]", "p=" + directory.path() + "/"}));
    EXPECT_TRUE(ini.removeIniEntry(second.c_str(), nullptr));
    EXPECT_TRUE(ini.removeIniEntry(undo.c_str(), nullptr));
    EXPECT_EQ(readTestFile(path), before);
    EXPECT_TRUE(
        ini.addIniEntry(path.c_str(), "B", "n", directory.path().c_str(), undo, nullptr, true, nullptr));
    EXPECT_EQ(undo, "NONE");
    EXPECT_EQ(readTestFile(path), before);
}

}  // namespace
