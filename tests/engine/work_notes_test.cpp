#include "engine/work_notes.h"

#include <gmock/gmock.h>

#include "engine/removal_journal.h"
#include "platform/memory/memory_platform.h"

namespace {

using testing::IsEmpty;

class WorkNotesTest : public testing::Test {
protected:
    WorkNotesTest() { journal_.open(); }

    std::string inDirectory(const std::string& name) { return journal_.directory() + "/" + name; }
    UnfinishedWork later() {
        RemovalJournal journal(machine_.files, machine_.environment);
        journal.look(journal_.directory());
        return WorkNotes(journal).read();
    }

    MemoryPlatform machine_;
    RemovalJournal journal_{machine_.files, machine_.environment};
    WorkNotes notes_{journal_};
};

TEST_F(WorkNotesTest, AreReadByALaterRun) {
    ASSERT_EQ(notes_.begin("Demo", inDirectory("description.xml")), 0);
    EXPECT_EQ(later().stage, WorkStage::kBegun);
    ASSERT_EQ(notes_.installing({inDirectory("l"), inDirectory("a"), "/app/install.log", "/app/b.bin", true}),
              0);
    ASSERT_EQ(notes_.attempt(1), 0);
    const UnfinishedWork work = later();
    EXPECT_EQ(work.product, "Demo");
    EXPECT_EQ(work.stage, WorkStage::kInstalling);
    EXPECT_EQ(work.attempts, 1);
    EXPECT_EQ(work.description, inDirectory("description.xml"));
    EXPECT_EQ(work.places.temporaryLog, inDirectory("l"));
    EXPECT_EQ(work.places.temporaryArchive, inDirectory("a"));
    EXPECT_EQ(work.places.log, "/app/install.log");
    EXPECT_EQ(work.places.archive, "/app/b.bin");
    EXPECT_TRUE(work.places.continuesEarlier);
}

TEST_F(WorkNotesTest, HaveTheLastStage) {
    for (const WorkStage stage : {WorkStage::kInstalled, WorkStage::kUndone, WorkStage::kEnded}) {
        ASSERT_EQ(notes_.stage(stage), 0);
        EXPECT_EQ(later().stage, stage);
    }
}

TEST_F(WorkNotesTest, CountAsEndedWithAStageOfAnotherVersion) {
    journal_.note("stage", "thinking");
    EXPECT_EQ(later().stage, WorkStage::kEnded);
}

TEST_F(WorkNotesTest, DoNotLeadOutOfTheDirectory) {
    for (const std::string path : {"/etc/passwd", "relative", "", "/var/state/other/l"}) {
        notes_.installing({path, path, "/l", "/a", false});
        EXPECT_THAT(later().places.temporaryLog, IsEmpty()) << path;
        EXPECT_THAT(later().places.temporaryArchive, IsEmpty()) << path;
    }
    notes_.installing({inDirectory(".."), inDirectory("x:y"), "/l", "/a", false});
    EXPECT_THAT(later().places.temporaryLog, IsEmpty());
    EXPECT_THAT(later().places.temporaryArchive, IsEmpty());
    notes_.begin("Demo", "/app/install.xml");
    EXPECT_THAT(later().description, IsEmpty());
}

TEST_F(WorkNotesTest, HaveOnlyPathsThatCountFromEverywhere) {
    notes_.installing({"", "", "install.log", "/app/a\nb", false});
    EXPECT_THAT(later().places.log, IsEmpty());
    EXPECT_THAT(later().places.archive, IsEmpty());
}

TEST_F(WorkNotesTest, SurviveATornEndAndLoseWhatWasInIt) {
    ASSERT_EQ(notes_.begin("Demo", ""), 0);
    const std::string path = inDirectory("journal");
    const std::size_t begun = machine_.files.content(path).size();
    ASSERT_EQ(notes_.stage(WorkStage::kInstalled), 0);
    const std::string whole = machine_.files.content(path);
    for (std::size_t size = begun; size < whole.size(); ++size) {
        machine_.files.addFile(path, whole.substr(0, size));
        EXPECT_EQ(later().stage, WorkStage::kBegun) << size;
        EXPECT_EQ(later().product, "Demo") << size;
    }
}

TEST_F(WorkNotesTest, AreNotBelievedWhereAByteHasChanged) {
    ASSERT_EQ(notes_.begin("Demo", ""), 0);
    const std::string path = inDirectory("journal");
    const std::string whole = machine_.files.content(path);
    for (std::size_t at = 0; at < whole.size(); ++at) {
        std::string damaged = whole;
        damaged[at] ^= 1;
        machine_.files.addFile(path, damaged);
        const UnfinishedWork work = later();
        EXPECT_TRUE(work.product == "Demo" || work.product.empty()) << at;
        EXPECT_EQ(work.stage, WorkStage::kBegun) << at;
    }
}

TEST_F(WorkNotesTest, SayWhomTheyConcern) {
    notes_.begin("Demo", "");
    notes_.installing({"", "", "/app/install.log", "", false});
    journal_.note({{"application 1", "Former"},
                   {"log 1", "/old/install.log"},
                   {"application 2", "Gone"},
                   {"log 2", "/gone.log"},
                   {"for good 2", "yes"}});
    const UnfinishedWork work = later();
    EXPECT_TRUE(work.concerns("Demo"));
    EXPECT_TRUE(work.concerns("Former"));
    EXPECT_FALSE(work.concerns("Other"));
    EXPECT_FALSE(work.concerns(""));
    EXPECT_TRUE(work.concernsLog("/app//install.log"));
    EXPECT_TRUE(work.concernsLog("\\old\\install.log"));
    EXPECT_FALSE(work.concernsLog("/other.log"));
    EXPECT_FALSE(work.concernsLog(""));
    ASSERT_EQ(work.removed.size(), 2U);
    EXPECT_FALSE(work.removed[0].isForGood);
    EXPECT_TRUE(work.removed[1].isForGood);
}

TEST_F(WorkNotesTest, ReportWhatCannotBeWritten) {
    machine_.files.setFreeSpace(0);
    EXPECT_NE(notes_.begin("Demo", ""), 0);
    EXPECT_NE(notes_.installing({}), 0);
    EXPECT_NE(notes_.stage(WorkStage::kInstalled), 0);
    EXPECT_THAT(later().product, IsEmpty());
}

}  // namespace
