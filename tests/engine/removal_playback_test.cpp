#include "engine/removal_playback.h"

#include <gmock/gmock.h>

#include <functional>

#include "removal_fixture.h"
#include "support/utilities.h"

namespace {

using platform::FirewallProtocol;
using platform::Platform;
using platform::RegistryRoot;
using platform::RegistryView;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr RegistryRoot kRoot = RegistryRoot::kLocalMachine;
constexpr RegistryView kView = RegistryView::kNative;
constexpr const char* kKey = "Software\\Demo";

std::unique_ptr<platform::File> openFile(const Platform& machine, const char* path,
                                         platform::Disposition disposition,
                                         std::uint32_t access = platform::kRead | platform::kWrite) {
    std::unique_ptr<platform::File> file;
    platform::OpenOptions options;
    options.access = access;
    options.disposition = disposition;
    EXPECT_EQ(machine.files.open(path, options, file), 0) << path;
    return file;
}

void write(platform::File& file, const std::string& text) {
    std::uint32_t done = 0;
    EXPECT_EQ(file.write(text.data(), static_cast<std::uint32_t>(text.size()), done), 0);
}

std::unique_ptr<platform::Directory> openDirectory(const Platform& machine, const char* path) {
    std::unique_ptr<platform::Directory> directory;
    EXPECT_EQ(machine.files.openDirectory(path, directory), 0);
    return directory;
}

std::unique_ptr<platform::FirewallProfile> firewallOf(const Platform& machine) {
    std::unique_ptr<platform::FirewallProfile> profile;
    EXPECT_TRUE(machine.firewall.connect(profile).done());
    return profile;
}

// A change that a removal makes.
struct Change {
    const char* name;
    std::function<void(const Platform& machine)> make;
};

void PrintTo(const Change& change, std::ostream* out) {
    *out << change.name;
}

const std::vector<Change> kChanges = {
    {"RemoveFile", [](const Platform& m) { EXPECT_EQ(m.files.removeFile("/app/file"), 0); }},
    {"RemoveProgram", [](const Platform& m) { EXPECT_EQ(m.files.removeFile("/app/program"), 0); }},
    {"RemoveLink", [](const Platform& m) { EXPECT_EQ(m.files.removeFile("/app/link"), 0); }},
    {"RemoveDirectory", [](const Platform& m) { EXPECT_EQ(m.files.removeDirectory("/app/empty"), 0); }},
    {"MoveFile", [](const Platform& m) { EXPECT_EQ(m.files.moveFile("/app/file", "/app/new"), 0); }},
    {"MoveLink", [](const Platform& m) { EXPECT_EQ(m.files.moveFile("/app/link", "/app/new"), 0); }},
    {"ReplaceFile", [](const Platform& m) { EXPECT_EQ(m.files.replaceFile("/app/file", "/app/other"), 0); }},
    {"ReplaceLink", [](const Platform& m) { EXPECT_EQ(m.files.replaceFile("/app/file", "/app/link"), 0); }},
    {"ReplaceByNothingNew", [](const Platform& m) { m.files.replaceFile("/app/file", "/app/new"); }},
    {"TakeFileAway", [](const Platform& m) { EXPECT_EQ(m.files.takeFileAway("/app/file", "/app/new"), 0); }},
    {"TakeDirectoryAway",
     [](const Platform& m) { EXPECT_EQ(m.files.takeDirectoryAway("/app/empty", "/app/new"), 0); }},
    {"CreateDirectory", [](const Platform& m) { EXPECT_EQ(m.files.createDirectory("/app/new"), 0); }},
    {"CreatePrivateDirectory",
     [](const Platform& m) {
         std::string path;
         EXPECT_EQ(m.files.createPrivateDirectory("/app", "private", path), 0);
     }},
    {"CreateNew",
     [](const Platform& m) { write(*openFile(m, "/app/new", platform::Disposition::kCreateNew), "text"); }},
    {"CreatePrivate",
     [](const Platform& m) {
         write(*openFile(m, "/app/new", platform::Disposition::kCreatePrivate), "text");
     }},
    {"CreateAlways",
     [](const Platform& m) {
         write(*openFile(m, "/app/file", platform::Disposition::kCreateAlways), "text");
     }},
    {"OpenOrCreate",
     [](const Platform& m) {
         write(*openFile(m, "/app/new", platform::Disposition::kOpenOrCreate), "text");
     }},
    {"WriteInPlace",
     [](const Platform& m) {
         write(*openFile(m, "/app/program", platform::Disposition::kOpenExisting), "text");
     }},
    {"WriteThroughALink",
     [](const Platform& m) {
         write(*openFile(m, "/app/link", platform::Disposition::kOpenExisting), "text");
     }},
    {"TruncateHere",
     [](const Platform& m) {
         EXPECT_EQ(openFile(m, "/app/file", platform::Disposition::kOpenExisting)->truncateHere(), 0);
     }},
    {"SetRights",
     [](const Platform& m) {
         const auto file = openFile(m, "/app/file", platform::Disposition::kOpenExisting, platform::kRead);
         EXPECT_EQ(file->setRights(platform::FileRights::kPrivate), 0);
     }},
    {"TakeRightsOf",
     [](const Platform& m) {
         const auto file = openFile(m, "/app/file", platform::Disposition::kOpenExisting, platform::kRead);
         EXPECT_EQ(file->takeRightsOf("/app/program"), 0);
     }},
    {"MakeOpenFileExecutable",
     [](const Platform& m) {
         const auto file = openFile(m, "/app/file", platform::Disposition::kOpenExisting, platform::kRead);
         EXPECT_EQ(file->makeExecutable(), 0);
     }},
    {"MakeExecutable", [](const Platform& m) { EXPECT_EQ(m.files.makeExecutable("/app/file"), 0); }},
    {"WriteWholeFile",
     [](const Platform& m) { EXPECT_EQ(OUtils::writeWholeFile("/app/program", "text", m.files), 0); }},
    {"WriteWholeFileTwice",
     [](const Platform& m) {
         EXPECT_EQ(OUtils::writeWholeFile("/app/file", "text", m.files), 0);
         EXPECT_EQ(OUtils::writeWholeFile("/app/file", "another text", m.files), 0);
     }},
    {"WriteAndRemove",
     [](const Platform& m) {
         EXPECT_EQ(OUtils::writeWholeFile("/app/file", "text", m.files), 0);
         EXPECT_EQ(m.files.removeFile("/app/file"), 0);
     }},
    {"RemoveAndWrite",
     [](const Platform& m) {
         EXPECT_EQ(m.files.removeFile("/app/file"), 0);
         EXPECT_EQ(OUtils::writeWholeFile("/app/file", "text", m.files), 0);
     }},
    {"MoveAndRemove",
     [](const Platform& m) {
         EXPECT_EQ(m.files.moveFile("/app/file", "/app/new"), 0);
         EXPECT_EQ(m.files.removeFile("/app/new"), 0);
     }},
    {"ReplaceAndRemove",
     [](const Platform& m) {
         EXPECT_EQ(m.files.replaceFile("/app/file", "/app/other"), 0);
         EXPECT_EQ(m.files.removeFile("/app/other"), 0);
     }},
    {"WriteAndMove",
     [](const Platform& m) {
         write(*openFile(m, "/app/file", platform::Disposition::kOpenExisting), "text");
         EXPECT_EQ(m.files.moveFile("/app/file", "/app/new"), 0);
     }},
    {"RemoveATree",
     [](const Platform& m) {
         EXPECT_EQ(m.files.removeFile("/app/sub/deep/inner"), 0);
         EXPECT_EQ(m.files.removeDirectory("/app/sub/deep"), 0);
         EXPECT_EQ(m.files.removeDirectory("/app/sub"), 0);
     }},
    {"RemoveFileOfAnOpenDirectory",
     [](const Platform& m) {
         const auto directory = openDirectory(m, "/app");
         std::vector<platform::DirectoryEntry> entries;
         EXPECT_EQ(directory->list(entries), 0);
         EXPECT_EQ(directory->removeFile("file"), 0);
         EXPECT_EQ(directory->removeFile("link"), 0);
     }},
    {"RemoveFileThatWasNotListed",
     [](const Platform& m) { EXPECT_EQ(openDirectory(m, "/app")->removeFile("file"), 0); }},
    {"RemoveATreeOfOpenDirectories",
     [](const Platform& m) {
         const auto sub = openDirectory(m, "/app/sub");
         std::unique_ptr<platform::Directory> deep;
         EXPECT_EQ(sub->openDirectory("deep", deep), 0);
         std::vector<platform::DirectoryEntry> entries;
         EXPECT_EQ(deep->list(entries), 0);
         EXPECT_EQ(deep->removeFile("inner"), 0);
         EXPECT_EQ(sub->removeDirectory("deep"), 0);
     }},
    {"TakeFileOfAnOpenDirectoryAway",
     [](const Platform& m) { EXPECT_EQ(openDirectory(m, "/app")->takeFileAway("file", "/app/new"), 0); }},
    {"TakeDirectoryOfAnOpenDirectoryAway",
     [](const Platform& m) {
         EXPECT_EQ(openDirectory(m, "/app")->takeDirectoryAway("empty", "/app/new"), 0);
     }},
    {"CreateKey",
     [](const Platform& m) {
         int created = 0;
         EXPECT_EQ(m.registry.createKey(kRoot, "Software\\Demo\\a\\b", kView, created), 0);
         EXPECT_EQ(created, 2);
     }},
    {"DeleteKey",
     [](const Platform& m) { EXPECT_EQ(m.registry.deleteKey(kRoot, "software\\demo", kView), 0); }},
    {"DeleteKeyOf32Bits",
     [](const Platform& m) { EXPECT_EQ(m.registry.deleteKey(kRoot, kKey, RegistryView::k32Bit), 0); }},
    {"WriteNewValue",
     [](const Platform& m) {
         EXPECT_EQ(m.registry.writeValue(kRoot, kKey, kView, "New", {platform::kRegDword, "1234"}), 0);
     }},
    {"WriteValue",
     [](const Platform& m) {
         EXPECT_EQ(m.registry.writeValue(kRoot, kKey, kView, "name", {platform::kRegBinary, "\1\2"}), 0);
     }},
    {"DeleteValue",
     [](const Platform& m) { EXPECT_EQ(m.registry.deleteValue(kRoot, kKey, kView, "name"), 0); }},
    {"DeleteValueOf32Bits",
     [](const Platform& m) {
         EXPECT_EQ(m.registry.deleteValue(kRoot, kKey, RegistryView::k32Bit, "Name"), 0);
     }},
    {"WriteValueAndDeleteKey",
     [](const Platform& m) {
         EXPECT_EQ(m.registry.writeValue(kRoot, kKey, kView, "Name", {platform::kRegString, "x"}), 0);
         EXPECT_EQ(m.registry.deleteKey(kRoot, kKey, kView), 0);
     }},
    {"AddApplication",
     [](const Platform& m) { EXPECT_TRUE(firewallOf(m)->addApplication("/app/other", "Other").done()); }},
    {"RemoveApplication",
     [](const Platform& m) { EXPECT_TRUE(firewallOf(m)->removeApplication("/app/program").done()); }},
    {"RestoreApplication",
     [](const Platform& m) {
         EXPECT_TRUE(firewallOf(m)->restoreApplication("/app/other", {"Other", false, 1, ""}).done());
     }},
    {"AddPort",
     [](const Platform& m) {
         EXPECT_TRUE(firewallOf(m)->addPort(80, FirewallProtocol::kUdp, "Web").done());
     }},
    {"RemovePort",
     [](const Platform& m) { EXPECT_TRUE(firewallOf(m)->removePort(80, FirewallProtocol::kTcp).done()); }},
    {"RestorePort",
     [](const Platform& m) {
         EXPECT_TRUE(firewallOf(m)->restorePort(81, FirewallProtocol::kTcp, {"Web", true, 1, ""}).done());
     }},
    {"CreateLink",
     [](const Platform& m) {
         platform::LinkDescription link;
         link.target = "/app/program";
         EXPECT_EQ(m.shell.createLink("/app/new", link), 0);
     }},
    {"CreateLinkOverAFile", [](const Platform& m) { EXPECT_EQ(m.shell.createLink("/app/file", {}), 0); }},
    {"CreateUrlLinkOverALink",
     [](const Platform& m) { EXPECT_EQ(m.shell.createUrlLink("/app/link", "http://x"), 0); }},
};

class RemovalChangeTest : public testing::TestWithParam<Change> {};

TEST_P(RemovalChangeTest, ComesBackFromTheJournalOnTheDisk) {
    RemovalScene scene;
    const RemovalScene::State before = scene.state();
    GetParam().make(scene.removal());
    EXPECT_NE(scene.state(), before);
    EXPECT_TRUE(scene.playBack());
    EXPECT_EQ(scene.state(), before);
    EXPECT_THAT(scene.notes(), IsEmpty());
}

TEST_P(RemovalChangeTest, MayComeBackTwice) {
    RemovalScene scene;
    const RemovalScene::State before = scene.state();
    GetParam().make(scene.removal());
    EXPECT_TRUE(scene.playBack());
    EXPECT_TRUE(scene.playBack());
    EXPECT_EQ(scene.state(), before);
}

TEST_P(RemovalChangeTest, LeavesNothingOfTheJournalWhenItIsDiscarded) {
    RemovalScene scene;
    GetParam().make(scene.removal());
    const RemovalScene::State after = scene.state();
    EXPECT_EQ(scene.journal.discard(), 0);
    EXPECT_EQ(scene.state(), after);
    EXPECT_FALSE(scene.files.hasDirectory("/var"));
}

// The removal is stopped between the record and the change.
TEST_P(RemovalChangeTest, ThatWasNeverMadeLeavesTheMachineAlone) {
    RemovalScene scene;
    GetParam().make(scene.removal());
    const std::string records = scene.files.content(scene.journalFile());
    RemovalScene untouched;
    untouched.removal();
    untouched.files.addFile(untouched.journalFile(), records);
    const RemovalScene::State before = untouched.state();
    untouched.playBack();
    EXPECT_EQ(untouched.state(), before);
}

TEST_P(RemovalChangeTest, ComesBackAsFarAsTheJournalWasWritten) {
    RemovalScene scene;
    GetParam().make(scene.removal());
    const std::string records = scene.files.content(scene.journalFile());
    const RemovalScene::State after = scene.state();
    for (std::size_t length = 26; length <= records.size(); length += 97) {
        RemovalScene cut;
        const RemovalScene::State before = cut.state();
        GetParam().make(cut.removal());
        cut.files.addFile(cut.journalFile(), records.substr(0, length));
        cut.playBack();
        for (const auto& [path, text] : cut.state()) {
            const bool isOfBefore = before.contains(path) && before.at(path) == text;
            const bool isOfAfter = after.contains(path) && after.at(path) == text;
            EXPECT_TRUE(isOfBefore || isOfAfter) << length << " " << path << " " << text;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(All, RemovalChangeTest, testing::ValuesIn(kChanges),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(RemovalPlaybackTest, LeavesWhatOthersChangedAndNamesIt) {
    RemovalScene scene;
    const Platform removal = scene.removal();
    EXPECT_EQ(OUtils::writeWholeFile("/app/other", "text", removal.files), 0);
    EXPECT_EQ(removal.files.removeFile("/app/file"), 0);
    EXPECT_EQ(removal.registry.deleteValue(kRoot, kKey, kView, "Name"), 0);
    scene.files.addFile("/app/other", "somebody's");
    scene.files.addFile("/app/file", "somebody's");
    scene.machine.registry.addText(kRoot, kKey, "Name", "somebody's");
    const RemovalScene::State theirs = scene.state();
    EXPECT_FALSE(scene.playBack());
    EXPECT_EQ(scene.state(), theirs);
    EXPECT_THAT(
        scene.notes(),
        ElementsAre(HasSubstr("HKEY_LOCAL_MACHINE\\Software\\Demo\\Name: stays as it is, because it has "
                              "changed since the removal"),
                    HasSubstr("/app/file: can't be brought back, because something else is in its "
                              "place"),
                    HasSubstr("/app/other: stays as it is, because it has changed since the "
                              "removal")));
}

TEST(RemovalPlaybackTest, LeavesWhatOthersPutIntoANewDirectory) {
    RemovalScene scene;
    EXPECT_EQ(scene.removal().files.createDirectory("/app/new"), 0);
    scene.files.addFile("/app/new/theirs", "x");
    EXPECT_FALSE(scene.playBack());
    EXPECT_TRUE(scene.files.hasFile("/app/new/theirs"));
    EXPECT_EQ(scene.notes().size(), 1U);
}

TEST(RemovalPlaybackTest, SaysThatTheFirewallStaysSwitchedOn) {
    RemovalScene scene;
    scene.machine.firewall.on = false;
    EXPECT_TRUE(firewallOf(scene.removal())->switchOn().done());
    EXPECT_FALSE(scene.playBack());
    EXPECT_TRUE(scene.machine.firewall.on);
    EXPECT_THAT(scene.notes(), ElementsAre(HasSubstr("The firewall: was switched on and stays so")));
}

TEST(RemovalPlaybackTest, MakesTheEnvironmentKnownOnceAndLast) {
    RemovalScene scene;
    const Platform removal = scene.removal();
    EXPECT_EQ(removal.registry.deleteValue(kRoot, kKey, kView, "Name"), 0);
    EXPECT_TRUE(removal.shell.broadcastEnvironment());
    EXPECT_TRUE(removal.shell.broadcastEnvironment());
    EXPECT_EQ(scene.shell.broadcasts, 2);
    EXPECT_TRUE(scene.playBack());
    EXPECT_EQ(scene.shell.broadcasts, 3);
}

TEST(RemovalPlaybackTest, GoesOnAfterEachFailureAndGivesTheReason) {
    for (int n = 1; n <= 3; ++n) {
        RemovalScene scene;
        const RemovalScene::State before = scene.state();
        const Platform removal = scene.removal();
        for (const char* const path : {"/app/file", "/app/other", "/app/program"}) {
            EXPECT_EQ(removal.files.removeFile(path), 0);
        }
        scene.files.failAt(MemoryFileSystem::Operation::kMoveFile, "", n);
        scene.files.failAt(MemoryFileSystem::Operation::kReplaceFile, "", 1);
        scene.files.failAt(MemoryFileSystem::Operation::kOpen, "", 2 * n + 1);
        scene.playBack();
        scene.files.clearFaults();
        EXPECT_EQ(scene.notes().size(), scene.state() == before ? 0U : 1U) << n;
        EXPECT_TRUE(scene.playBack()) << n;
        EXPECT_EQ(scene.state(), before) << n;
    }
}

TEST(RemovalPlaybackTest, BringsBackTheRestOfADamagedJournalAndSaysSo) {
    RemovalScene scene;
    const RemovalScene::State before = scene.state();
    const Platform removal = scene.removal();
    EXPECT_EQ(removal.files.removeFile("/app/file"), 0);
    const std::size_t first = scene.files.content(scene.journalFile()).size();
    EXPECT_EQ(removal.files.removeFile("/app/other"), 0);
    std::string records = scene.files.content(scene.journalFile());
    records[first - 3] = '\x7f';
    scene.files.addFile(scene.journalFile(), records);
    EXPECT_FALSE(scene.playBack());
    RemovalScene::State expected = before;
    expected.erase("/app/file");
    EXPECT_EQ(scene.state(), expected);
    EXPECT_THAT(scene.notes(), ElementsAre(HasSubstr("The journal of the removal is damaged.")));
}

}  // namespace
