#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "base/text_functions.h"
#include "platform/machine_of_files.h"
#include "platform/memory/memory_change_rules.h"
#include "platform/overlay/overlay_file_system.h"
#include "property/random_numbers.h"

namespace {

using platform::Disposition;
using platform::FileSystem;
using platform::PathKind;

constexpr int kRounds = 400;
constexpr int kSteps = 150;

// The same operations on a copy of a machine in memory and on an overlay over that machine.
class Twins {
public:
    explicit Twins(std::uint64_t seed) : random_(seed) {
        fill();
        before_ = base_.everything();
        copy_.becomeCopyOf(base_);
        base_.clearOperations();
        using Operation = MemoryFileSystem::Operation;
        for (const Operation change :
             {Operation::kWrite, Operation::kFlush, Operation::kTruncate, Operation::kRemoveFile,
              Operation::kMoveFile, Operation::kReplaceFile, Operation::kCreateDirectory,
              Operation::kRemoveDirectory, Operation::kMakeExecutable, Operation::kCopyRights,
              Operation::kSetRights, Operation::kTakeDirectoryRights}) {
            base_.failFrom(change, "", 1, 99);
        }
    }

    void run() {
        for (int step = 0; step < kSteps && !testing::Test::HasFailure(); ++step) {
            doSomething();
        }
        log_ += "at the end\n";
        EXPECT_EQ(viewOf(copy_), viewOf(overlay_)) << log_;
        checkChanges();
        files_[0].clear();
        files_[1].clear();
        expectBaseUntouched();
    }

private:
    using View = std::map<std::string, std::string>;

    void fill() {
        for (const char* const path : {"/srv/d1", "/srv/D2/inner", "/srv/empty", "/ro/d3"}) {
            base_.addDirectory(path);
        }
        base_.addMarkedDirectory("/srv/marked");
        base_.addFile("/srv/f1", "first");
        base_.addProgram("/srv/F2", "second content");
        base_.addFile("/srv/d1/f3", "");
        base_.addFile("/srv/d2/inner/f1", std::string(3000, 'x'));
        base_.addFile("/ro/f1", "protected");
        base_.addFile("/ro/d3/f2", "protected, too");
        base_.makePrivate("/srv/f1");
        // The machine in memory follows one link when it makes a file: nothing else leads to what these mean.
        base_.addFile("/srv/target", "behind a link");
        base_.addLink("/srv/f4", "/srv/target");
        base_.addLink("/srv/f5", "/srv/d1/free");
        base_.addLink("/srv/d1/f7", "/srv/d2");
        base_.addUnnameable("/srv/empty");
        base_.setReadOnly("/ro");
        base_.setVolume("/srv/d2");
    }

    std::string pick(std::initializer_list<const char*> choices) {
        return *(choices.begin() + static_cast<std::ptrdiff_t>(random_.below(choices.size())));
    }
    std::string directory() {
        return pick({"/srv", "/srv/d1", "/srv/d2", "/srv\\D2/inner", "/srv/d1/n1", "/srv/empty"});
    }
    std::string file() {
        return (random_.oneIn(12) ? pick({"/ro", "/ro/d3"}) : directory()) +
               pick({"/f1", "/f2", "/f3", "/F4", "/f5", "/f6", "/f7", "/./f8", "/f9"});
    }
    std::string anything() { return random_.oneIn(3) ? directory() : file(); }

    void note(const std::string& what, int copied, int overlaid) {
        log_ += what + " = " + std::to_string(copied) + "\n";
        EXPECT_EQ(copied, overlaid) << log_;
    }
    template <typename Operate>
    void same(const std::string& what, Operate operate) {
        const int copied = operate(static_cast<FileSystem&>(copy_));
        const int overlaid = operate(static_cast<FileSystem&>(overlay_));
        note(what, copied, overlaid);
    }

    void doSomething() {
        switch (random_.below(4)) {
            case 0:
                return changeEntry();
            case 1:
                return moveEntry();
            case 2:
                return openSomething();
            default:
                return useOpenFile();
        }
    }

    void changeEntry() {
        const std::string path = file();
        const std::string place = random_.oneIn(2) ? directory() : path;
        switch (random_.below(6)) {
            case 0:
                return same("removeFile " + path, [&](FileSystem& files) { return files.removeFile(path); });
            case 1:
                return same("removeDirectory " + place,
                            [&](FileSystem& files) { return files.removeDirectory(place); });
            case 2:
                return same("makeExecutable " + place,
                            [&](FileSystem& files) { return files.makeExecutable(place); });
            case 3:
                return same("look at " + place, [&](FileSystem& files) { return look(files, place); });
            default: {
                const std::string made = directory();
                return same("createDirectory " + made,
                            [&](FileSystem& files) { return files.createDirectory(made); });
            }
        }
    }

    // What may not be written is refused before or after what isn't there: only refused counts.
    template <typename Move>
    void sameMove(const std::string& what, const std::string& from, const std::string& to, Move move) {
        const bool isProtected = from.starts_with("/ro") || to.starts_with("/ro");
        same(what + " " + from + " -> " + to, [&](FileSystem& files) {
            const int status = move(files);
            return isProtected && status != 0 ? MemoryFileSystem::kAccessDenied : status;
        });
    }

    void moveEntry() {
        const std::string from = random_.oneIn(8) ? directory() : file();
        const std::string to = file();
        switch (random_.below(4)) {
            case 0:
                return sameMove("moveFile", from, to,
                                [&](FileSystem& files) { return files.moveFile(from, to); });
            case 1:
                return sameMove("takeFileAway", from, to,
                                [&](FileSystem& files) { return files.takeFileAway(from, to); });
            case 2: {
                const std::string source = directory();
                const std::string target = directory();
                return sameMove("takeDirectoryAway", source, target,
                                [&](FileSystem& files) { return files.takeDirectoryAway(source, target); });
            }
            default:
                return sameMove("replaceFile", from, to,
                                [&](FileSystem& files) { return files.replaceFile(from, to); });
        }
    }

    void openSomething() {
        const std::string path = random_.oneIn(10) ? directory() : file();
        platform::OpenOptions options;
        options.disposition = static_cast<Disposition>(random_.below(5));
        const bool readsOnly = options.disposition == Disposition::kOpenExisting && random_.oneIn(2);
        options.access = readsOnly          ? platform::kRead
                         : random_.oneIn(3) ? platform::kWrite
                                            : platform::kRead | platform::kWrite;
        options.followLinks = random_.oneIn(2);
        std::unique_ptr<platform::File> copied;
        std::unique_ptr<platform::File> overlaid;
        note("open " + path + " " + std::to_string(static_cast<int>(options.disposition)) + " " +
                 std::to_string(options.access),
             copy_.open(path, options, copied), overlay_.open(path, options, overlaid));
        ASSERT_EQ(copied == nullptr, overlaid == nullptr) << log_;
        if (copied != nullptr) {
            files_[0].push_back(std::move(copied));
            files_[1].push_back(std::move(overlaid));
        }
    }

    template <typename Operate>
    void sameFile(const std::string& what, std::size_t number, Operate operate) {
        std::string copied;
        std::string overlaid;
        const int first = operate(*files_[0][number], copied);
        const int second = operate(*files_[1][number], overlaid);
        note(what + " of " + std::to_string(number), first, second);
        EXPECT_EQ(copied, overlaid) << log_;
    }

    void useOpenFile() {
        using platform::File;
        if (files_[0].empty()) {
            return;
        }
        const std::size_t number = random_.below(files_[0].size());
        const std::string bytes(random_.below(2000), static_cast<char>('a' + random_.below(26)));
        const auto amount = static_cast<std::uint32_t>(random_.below(4000));
        switch (random_.below(8)) {
            case 0:
            case 1:
                return sameFile(
                    "write " + std::to_string(bytes.size()), number, [&](File& file, std::string& out) {
                        std::uint32_t done = 0;
                        const int status =
                            file.write(bytes.data(), static_cast<std::uint32_t>(bytes.size()), done);
                        out = std::to_string(done);
                        return status;
                    });
            case 2:
            case 3:
                return sameFile("read " + std::to_string(amount), number, [&](File& file, std::string& out) {
                    out.assign(amount, '\0');
                    std::uint32_t done = 0;
                    const int status = file.read(out.data(), amount, done);
                    out.resize(done);
                    return status;
                });
            case 4: {
                const auto origin = static_cast<platform::Origin>(random_.below(3));
                const std::int64_t distance = static_cast<std::int64_t>(amount) - 1000;
                return sameFile("seek " + std::to_string(distance), number,
                                [&](File& file, std::string& out) {
                                    std::int64_t position = 0;
                                    const int status = file.seek(distance, origin, position);
                                    out = status == 0 ? std::to_string(position) : "";
                                    return status;
                                });
            }
            case 5:
                return sameFile("truncate", number, [](File& file, std::string& out) {
                    const int status = file.truncateHere();
                    out = std::to_string(file.size());
                    return status;
                });
            case 6: {
                const std::string source = directory() + pick({"/f1", "/f2", "/none"});
                const auto rights = static_cast<platform::FileRights>(random_.below(3));
                const bool takes = random_.oneIn(2);
                return sameFile(takes ? "takeRightsOf " + source : "setRights", number,
                                [&](File& file, std::string&) {
                                    return takes ? file.takeRightsOf(source) : file.setRights(rights);
                                });
            }
            default:
                sameFile("close", number, [](File& file, std::string&) { return file.close(); });
                files_[0].erase(files_[0].begin() + static_cast<std::ptrdiff_t>(number));
                files_[1].erase(files_[1].begin() + static_cast<std::ptrdiff_t>(number));
        }
    }

    // A number for all that can be asked about one path.
    static int look(FileSystem& files, const std::string& path) {
        std::string text = describe(files, path) + (files.isDirectory(path) ? "D" : "") +
                           (files.isOrdinaryDirectory(path) ? "O" : "") +
                           std::to_string(files.fileSize(path));
        std::string resolved;
        text += std::to_string(files.resolveFile(path, resolved)) + OUtils::toLowerAscii(resolved);
        text += std::to_string(files.linkTarget(path, resolved)) + resolved;
        std::vector<platform::DirectoryEntry> entries;
        text += std::to_string(files.list(path, entries)) + std::to_string(entries.size());
        std::unique_ptr<platform::Directory> opened;
        text += std::to_string(files.openDirectory(path, opened));
        return static_cast<int>(std::hash<std::string>()(text) & 0xFFFFFF);
    }

    static std::string describe(FileSystem& files, const std::string& path) {
        std::string text = std::to_string(static_cast<int>(files.kindOf(path))) + " " + files.rightsOf(path);
        std::unique_ptr<platform::File> file;
        platform::OpenOptions options;
        options.followLinks = false;
        if (files.open(path, options, file) == 0) {
            std::string content(static_cast<std::size_t>(file->size()), '\0');
            std::uint32_t done = 0;
            EXPECT_EQ(file->read(content.data(), static_cast<std::uint32_t>(content.size()), done), 0);
            EXPECT_EQ(done, content.size());
            text += ": " + content;
        }
        return text;
    }

    static void addView(FileSystem& files, const std::string& directory, View& ioView) {
        std::unique_ptr<platform::Directory> opened;
        std::vector<platform::DiskEntry> disk;
        EXPECT_EQ(files.openDirectory(directory, opened), 0) << directory;
        EXPECT_EQ(opened->listDisk(disk), 0) << directory;
        for (const platform::DiskEntry& entry : disk) {
            const std::string path = directory + "/" + OUtils::toLowerAscii(entry.name);
            std::string& text = ioView[path];
            text = std::to_string(static_cast<int>(entry.kind)) + " " + std::to_string(entry.size) +
                   (entry.isProgram ? " program " : " ");
            text += entry.isNameable ? describe(files, path) : "unnameable";
            if (entry.kind == PathKind::kDirectory) {
                addView(files, path, ioView);
            }
        }
        std::vector<platform::DirectoryEntry> named;
        EXPECT_EQ(opened->list(named), 0);
        const auto isNameable = [](const auto& entry) { return entry.isNameable; };
        EXPECT_EQ(static_cast<std::ptrdiff_t>(named.size()),
                  std::count_if(disk.begin(), disk.end(), isNameable));
    }
    static View viewOf(FileSystem& files) {
        View view;
        addView(files, "/srv", view);
        addView(files, "/ro", view);
        return view;
    }

    // What differs from the base, and nothing else, is a change. A file may have got what it had.
    void checkChanges() {
        using What = platform::FileChange::What;
        const View base = viewOf(base_);
        std::set<std::string> movedAway;
        View now = viewOf(overlay_);
        std::map<std::string, const platform::FileChange*> found;
        const std::vector<platform::FileChange> changes = overlay_.changes();
        for (const platform::FileChange& change : changes) {
            const std::string path = OUtils::toLowerAscii(change.path);
            found[path] = &change;
            const bool isDeletion = change.what == What::kDeleted;
            EXPECT_EQ(now.contains(path), !isDeletion) << path << "\n" << log_;
            const bool wasThere = isDeletion || change.replaces || change.what == What::kChanged;
            EXPECT_EQ(base.contains(path), wasThere) << path << "\n" << log_;
            if (change.what == What::kMoved) {
                EXPECT_TRUE(base.contains(OUtils::toLowerAscii(change.from))) << log_;
                movedAway.insert(OUtils::toLowerAscii(change.from));
            }
        }
        for (const auto& [path, text] : base) {
            EXPECT_TRUE(found.contains(path) || movedAway.contains(path) ||
                        (now.contains(path) && now[path] == text))
                << path << "\n"
                << log_;
        }
        for (const auto& [path, text] : now) {
            EXPECT_TRUE(found.contains(path) || base.contains(path)) << path << "\n" << log_;
        }
    }

    void expectBaseUntouched() {
        EXPECT_EQ(base_.everything(), before_) << log_;
        for (const std::string& operation : base_.operations()) {
            EXPECT_TRUE(operation.starts_with("open ") || operation.starts_with("close ") ||
                        operation.starts_with("list "))
                << operation;
        }
        EXPECT_EQ(base_.count(MemoryFileSystem::Operation::kWrite), 0);
        EXPECT_EQ(base_.openFileCount(), 0);
    }

    RandomNumbers random_;
    MemoryFileSystem base_;
    MemoryFileSystem copy_;
    std::map<std::string, std::string> before_;
    MemoryChangeRules rules_{base_};
    OverlayFileSystem overlay_{base_, rules_};
    std::vector<std::unique_ptr<platform::File>> files_[2];
    std::string log_;
};

TEST(OverlayFileSystemRandomTest, DoesWhatTheMachineWouldDoAndLeavesItAsItWas) {
    for (int round = 0; round < kRounds && !HasFailure(); ++round) {
        Twins(static_cast<std::uint64_t>(round)).run();
    }
}

}  // namespace
