#include "engine/record_survey.h"

#include <gmock/gmock.h>

#include "platform/memory/memory_platform.h"
#include "platform/path_identity.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::UnorderedElementsAre;

constexpr char kLog[] = "/app/un/install.log";
constexpr char kHead[] = "/app/un/install.xml\r\n/app/un/backup.bin\r\nNUMVARS\t1\r\nVAR\tDIR\t/app\r\n";
constexpr char kUnknown[] = "It isn't known what the installation wrote: contents of files aren't compared.";

class RecordSurveyTest : public testing::Test {
protected:
    std::optional<std::string> read(const std::string& content) {
        machine_.files.addFile(kLog, content);
        return survey_.read(kLog, kLog);
    }
    std::vector<PlaceState> states() {
        std::vector<PlaceState> states;
        for (const SurveyedRecord& record : survey_.look()) {
            states.push_back(record.look.state);
        }
        return states;
    }
    void remember(const std::string& path, const std::string& content) {
        WrittenSums sums;
        sums.add(path, md5Of(content.data(), content.size()));
        ASSERT_TRUE(ProductState(machine_.files, machine_.environment).save(kLog, sums));
    }

    MemoryPlatform machine_;
    RecordSurvey survey_{machine_.bundle()};
};

TEST_F(RecordSurveyTest, LooksAtAllRecordsInTheOrderOfTheLog) {
    remember("/app/a", "a");
    machine_.files.addFile("/app/a", "a");
    EXPECT_EQ(
        read(std::string(kHead) +
             "DIR\t1\t/app/\r\nFILE\tCREATE\t/app/a\r\nBEFORE\t0\r\nFILE\tCREATE\t/app/b\r\nENV\tNONE\r\n"),
        std::nullopt);
    const std::vector<SurveyedRecord> records = survey_.look();
    ASSERT_THAT(records, SizeIs(3));
    EXPECT_EQ(records[0].word, "directory");
    EXPECT_EQ(records[1].word, "file");
    EXPECT_EQ(records[1].look.state, PlaceState::kAsMade);
    EXPECT_EQ(records[2].look.state, PlaceState::kAbsent);
    EXPECT_TRUE(survey_.isLogWhole());
    EXPECT_THAT(survey_.notes(), IsEmpty());
}

TEST_F(RecordSurveyTest, LooksAgainWhenLogAndStateHaveGone) {
    remember("/app/a", "a");
    machine_.files.addFile("/app/a", "a");
    EXPECT_EQ(read(std::string(kHead) + "FILE\tCREATE\t/app/a\r\n"), std::nullopt);
    EXPECT_THAT(states(), ElementsAre(PlaceState::kAsMade));
    machine_.files.removeFile(kLog);
    ProductState(machine_.files, machine_.environment).remove(kLog);
    machine_.files.addFile("/app/a", "changed");
    EXPECT_THAT(states(), ElementsAre(PlaceState::kDifferent));
}

TEST_F(RecordSurveyTest, FindsWhatIsRememberedByTheRegisteredPathOfACopy) {
    remember("/app/a", "a");
    machine_.files.addFile("/app/a", "changed");
    machine_.files.addFile("/tmp/copy.log", std::string(kHead) + "FILE\tCREATE\t/app/a\r\n");
    EXPECT_EQ(survey_.read("/tmp/copy.log", kLog), std::nullopt);
    EXPECT_THAT(states(), ElementsAre(PlaceState::kDifferent));
}

TEST_F(RecordSurveyTest, FindsWhatIsRememberedByTheRealPathOfTheLog) {
    remember("/app/a", "a");
    machine_.files.addFile("/app/a", "changed");
    machine_.files.addFile(kLog, std::string(kHead) + "FILE\tCREATE\t/app/a\r\n");
    machine_.files.addLink("/link.log", kLog);
    EXPECT_EQ(survey_.read("/link.log", "/link.log"), std::nullopt);
    EXPECT_THAT(states(), ElementsAre(PlaceState::kDifferent));
}

TEST_F(RecordSurveyTest, SaysWhenNothingIsRemembered) {
    EXPECT_EQ(read(kHead), std::nullopt);
    EXPECT_THAT(survey_.notes(), ElementsAre(kUnknown));
    EXPECT_TRUE(survey_.isLogWhole());
}

TEST_F(RecordSurveyTest, KnowsTheProductsFilesWithoutARecord) {
    EXPECT_EQ(read(std::string(kHead) + "DIR\t2\t/app/un/\r\n"), std::nullopt);
    EXPECT_EQ(survey_.archivePath(), "/app/un/backup.bin");
    EXPECT_THAT(
        survey_.unrecordedFiles(),
        UnorderedElementsAre(platform::pathIdentity(kLog), platform::pathIdentity("/app/un/install.xml"),
                             platform::pathIdentity("/app/un/backup.bin")));
    EXPECT_THAT(survey_.madeDirectories(),
                UnorderedElementsAre(platform::pathIdentity("/app/un"), platform::pathIdentity("/app")));
}

TEST_F(RecordSurveyTest, RefusesWhatIsNoFile) {
    EXPECT_EQ(survey_.read("", ""), "no file is named");
    EXPECT_EQ(survey_.read("/none", "/none"), "there is no such file");
    machine_.files.addDirectory("/dir");
    EXPECT_EQ(survey_.read("/dir", "/dir"), "it is a directory");
    machine_.files.addDevice("/device");
    EXPECT_NE(survey_.read("/device", "/device"), std::nullopt);
    machine_.files.addFile(kLog, kHead);
    machine_.files.failAt(MemoryFileSystem::Operation::kOpen, kLog, 1);
    EXPECT_NE(survey_.read(kLog, kLog), std::nullopt);
}

TEST_F(RecordSurveyTest, RefusesWhatIsNoActionLog) {
    for (const std::string& content : {std::string(),
                                       std::string("\x7f"
                                                   "ELF\0\0\xff\xfe\n\n\n",
                                                   10),
                                       std::string(9000, 'x'), std::string("a\nb\nc\nd\n")}) {
        EXPECT_EQ(read(content), "it is no action log") << content.substr(0, 10);
    }
}

TEST_F(RecordSurveyTest, NotesALogThatEndsInARecord) {
    EXPECT_EQ(read(std::string(kHead) + "FILE\tCREATE\t/app/a\r\nFILE\tCREA"), std::nullopt);
    EXPECT_THAT(states(), SizeIs(1));
    EXPECT_FALSE(survey_.isLogWhole());
    EXPECT_THAT(survey_.notes(),
                ElementsAre("The last record of the install log is not complete. Its change was never made.",
                            kUnknown));
}

TEST_F(RecordSurveyTest, NotesDamagedVariables) {
    EXPECT_EQ(read("x\r\ny\r\nNUMVARS\t5\r\nFILE\tCREATE\t/app/a\r\n"), std::nullopt);
    EXPECT_THAT(states(), SizeIs(1));
    EXPECT_FALSE(survey_.isLogWhole());
    EXPECT_THAT(survey_.notes()[0], HasSubstr("variables of the install log are missing or damaged"));
}

TEST_F(RecordSurveyTest, CountsTheLinesThatCanNotBeRead) {
    EXPECT_EQ(read(std::string(kHead) + "RECORDS\r\nFILE\r\nFILE\tCREATE\r\nHUH\tx\r\nINI\tNONE\r\nINI\r\n"),
              std::nullopt);
    EXPECT_THAT(states(), IsEmpty());
    EXPECT_FALSE(survey_.isLogWhole());
    EXPECT_THAT(survey_.notes(), ElementsAre(kUnknown, "2 lines of the install log can't be read."));
    survey_.look();
    EXPECT_THAT(survey_.notes(), SizeIs(2)) << "said once";
}

TEST_F(RecordSurveyTest, NotesALogThatCanNotBeReadToItsEnd) {
    machine_.files.addFile(kLog, std::string(kHead) + "FILE\tCREATE\t/app/a\r\n" + std::string(3000000, 'x'));
    machine_.files.failFrom(MemoryFileSystem::Operation::kRead, kLog, 3);
    survey_.read(kLog, kLog);
    EXPECT_FALSE(survey_.isLogWhole());
}

// Whatever a log is cut to, it is refused or read in part.
TEST_F(RecordSurveyTest, ReadsALogCutAtEachLength) {
    const std::string log = std::string(kHead) +
                            "DIR\t1\t/app/\r\nFILE\tOVER\t/app/a\r\nREGVAL\tHKEY_LOCAL_MACHINE\ta\tb\r\n"
                            "ENV\tADD\tPATH\tx\r\nINI\tCREATE\t/a\tb\tc\td\r\nFIREWALL\tPORT\t80\tTCP\tn\r\n";
    for (std::size_t length = 0; length <= log.size(); ++length) {
        machine_.files.addFile(kLog, log.substr(0, length));
        RecordSurvey survey(machine_.bundle());
        if (!survey.read(kLog, kLog)) {
            EXPECT_LE(survey.look().size(), 6U);
        }
    }
}

}  // namespace
