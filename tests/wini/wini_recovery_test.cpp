#include <algorithm>
#include <memory>

#include "upgrade_fixture.h"

// Runs that are killed at any of their changes, and the runs after them.
namespace {

using platform::LockResult;
using platform::RegistryRoot;
using testing::Contains;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class InterruptedRunTest : public UpgradeTest {
protected:
    InterruptedRunTest() { isUnattended_ = true; }

    struct Image {
        MemoryFileSystem files;
        std::unique_ptr<MemoryRegistry> registry;
    };
    using Images = std::vector<std::unique_ptr<Image>>;
    // Of the hundreds of changes of a run.
    static constexpr std::size_t kMostImages = 40;

    std::unique_ptr<Image> capture() {
        auto image = std::make_unique<Image>();
        image->files.becomeCopyOf(files_);
        image->registry = std::make_unique<MemoryRegistry>(machine_.registry);
        return image;
    }
    void restore(const Image& image) {
        files_.becomeCopyOf(image.files);
        machine_.registry = *image.registry;
        files_.removeFile("/package");
        files_.removeFile("/copy.log");
    }
    // What a run would have left if it had been killed before each of its changes: about `most` of them at
    // most.
    template <typename Run>
    Images imagesOf(Run run, std::size_t most = kMostImages) {
        Images all;
        onChange_ = [&] { all.push_back(capture()); };
        run();
        onChange_ = {};
        const std::size_t step = std::max<std::size_t>(1, all.size() / most);
        Images chosen;
        for (std::size_t i = 0; i < all.size(); i += step) {
            chosen.push_back(std::move(all[i]));
        }
        return chosen;
    }

    // A setup of the product that does no work: it only begins and ends.
    bool look(std::uint32_t flags = kSessionBackup, int answer = 1) {
        const std::string text = description("Demo", 2, "", "");
        const std::string work = "<CopyProgress Special='AutoNext'/>";
        std::string harmless = text;
        harmless.erase(harmless.find(work), work.size());
        files_.addFile("/src/install.xml", harmless);
        PackageOptions options;
        options.stripes = 1;
        options.level = 1;
        PackageWriter(files_).write({{"/src/install.xml", "install.xml", "install.xml"}}, options,
                                    "/package");
        files_.removeFile("/src/install.xml");
        files_.removeDirectory("/src");
        answer_ = answer;
        const int result = run("/package", flags);
        files_.removeFile("/package");
        return result == 0;
    }
    // The registered uninstallation, which begins again when the product isn't what it was.
    bool uninstallWhatIsThere() {
        if (!files_.hasFile("/app/un/install.log")) {
            return true;
        }
        const bool isDone = uninstall();
        return lastResult_ != Installer::kStartAgain ? isDone
                                                     : !files_.hasFile("/app/un/install.log") || uninstall();
    }
    void expectNothingIsLeft(const std::string& when) {
        EXPECT_THAT(differencesTo(before_), IsEmpty()) << when << testing::PrintToString(messages_);
        EXPECT_THAT(leftovers(), IsEmpty()) << when;
    }
    // What differs from a state, without the contents.
    std::vector<std::string> differencesTo(const std::map<std::string, std::string>& wanted) {
        const auto present = state();
        std::vector<std::string> found;
        for (const auto& [name, content] : wanted) {
            const auto same = present.find(name);
            if (same == present.end() || same->second != content) {
                found.push_back((same == present.end() ? "missing " : "changed ") + name);
            }
        }
        for (const auto& [name, content] : present) {
            if (!wanted.contains(name)) {
                found.push_back("new " + name);
            }
        }
        return found;
    }
    std::string numbered(const char* what, std::size_t number) {
        return what + (" " + std::to_string(number));
    }
};

TEST_F(InterruptedRunTest, FindsTheMachineAsItWasBeforeAnInstallation) {
    const Images images = imagesOf([&] { EXPECT_TRUE(install(1)); });
    ASSERT_GE(images.size(), 40U);
    for (std::size_t i = 0; i < images.size(); ++i) {
        restore(*images[i]);
        const bool wasInstalled = versionOf("Demo") != "(none)";
        EXPECT_TRUE(look()) << i;
        if (!wasInstalled && !files_.hasFile("/app/un/install.log")) {
            expectNothingIsLeft(numbered("change", i));
        }
        EXPECT_TRUE(install(1)) << i;
        EXPECT_TRUE(uninstall()) << i;
        expectNothingIsLeft(numbered("change", i));
    }
}

TEST_F(InterruptedRunTest, BringsTheEarlierVersionBackOrKeepsTheNewOne) {
    ASSERT_TRUE(install(1));
    const auto first = state();
    const Images images = imagesOf([&] { EXPECT_TRUE(install(2)); });
    const auto second = state();
    ASSERT_GE(images.size(), 40U);
    std::size_t firsts = 0;
    for (std::size_t i = 0; i < images.size(); ++i) {
        restore(*images[i]);
        EXPECT_TRUE(look()) << i << testing::PrintToString(messages_);
        EXPECT_THAT(leftovers(), IsEmpty()) << i << testing::PrintToString(messages_);
        if (state() == first) {
            ++firsts;
        } else {
            // Its installation was complete; what came after that may be missing.
            EXPECT_EQ(files_.content("/app/tool"), "tool 2")
                << i << testing::PrintToString(files_.allFiles()) << testing::PrintToString(messages_);
            EXPECT_EQ(files_.content("/app/un/install.log").substr(0, 20),
                      second.at("/app/un/install.log").substr(0, 20))
                << i;
        }
        EXPECT_TRUE(uninstallWhatIsThere()) << i;
        machine_.registry.deleteKey(RegistryRoot::kLocalMachine, UninstallList::keyOf("Demo"),
                                    platform::RegistryView::kNative);
        EXPECT_EQ(files_.allFiles(), pathsOf(before_)) << i;
    }
    EXPECT_GT(firsts, images.size() * 3 / 4);
}

TEST_F(InterruptedRunTest, GoesOnWithTheSameSetup) {
    ASSERT_TRUE(install(1));
    const Images images = imagesOf([&] { EXPECT_TRUE(install(2)); });
    for (std::size_t i = 0; i < images.size(); ++i) {
        restore(*images[i]);
        EXPECT_TRUE(install(2)) << i;
        EXPECT_EQ(files_.content("/app/tool"), "tool 2") << i;
        EXPECT_FALSE(files_.hasDirectory("/app/v1")) << i;
        EXPECT_EQ(versionOf("Demo"), "2.0.0") << i;
        EXPECT_THAT(leftovers(), IsEmpty()) << i;
        EXPECT_TRUE(uninstall()) << i;
        expectNothingIsLeft(numbered("change", i));
    }
}

TEST_F(InterruptedRunTest, GoesOnWithTheRegisteredUninstallation) {
    ASSERT_TRUE(install(1));
    const Images images = imagesOf([&] { EXPECT_TRUE(install(2)); });
    std::size_t tried = 0;
    for (std::size_t i = 0; i < images.size(); ++i) {
        restore(*images[i]);
        if (!files_.hasFile("/app/un/install.log") || !files_.hasFile("/app/un/install.xml")) {
            continue;
        }
        ++tried;
        EXPECT_TRUE(uninstallWhatIsThere()) << i;
        EXPECT_EQ(files_.allFiles(), pathsOf(before_)) << i;
    }
    EXPECT_GT(tried, 5U);
}

TEST_F(InterruptedRunTest, CanBeInterruptedWhileItRecovers) {
    ASSERT_TRUE(install(1));
    const auto first = state();
    const Images images = imagesOf([&] { EXPECT_TRUE(install(2)); }, 6);
    std::size_t recoveries = 0;
    for (std::size_t i = 0; i < images.size(); ++i) {
        restore(*images[i]);
        if (!look() || state() != first) {
            continue;
        }
        restore(*images[i]);
        const Images later = imagesOf([&] { look(); }, 20);
        for (std::size_t k = 0; k < later.size(); ++k) {
            restore(*later[k]);
            EXPECT_TRUE(look()) << i << " " << k;
            EXPECT_THAT(differencesTo(first), IsEmpty())
                << i << " " << k << testing::PrintToString(messages_);
            EXPECT_THAT(leftovers(), IsEmpty()) << i << " " << k;
            ++recoveries;
        }
    }
    EXPECT_GT(recoveries, 30U);
}

TEST_F(InterruptedRunTest, BringsTheEarlierVersionBackFromARevertThatWasInterrupted) {
    ASSERT_TRUE(install(1));
    const auto first = state();
    const Images images = imagesOf([&] { EXPECT_FALSE(install(2, kFailing)); });
    ASSERT_EQ(state(), first);
    for (std::size_t i = 0; i < images.size(); ++i) {
        restore(*images[i]);
        EXPECT_TRUE(look()) << i;
        EXPECT_THAT(differencesTo(first), IsEmpty()) << i << testing::PrintToString(messages_);
        EXPECT_THAT(leftovers(), IsEmpty()) << i;
    }
}

TEST_F(InterruptedRunTest, KeepsARepairedProductOnRecord) {
    ASSERT_TRUE(install(1));
    removesEarlier_ = false;
    const Images images = imagesOf([&] { EXPECT_TRUE(install(1)); });
    for (std::size_t i = 0; i < images.size(); ++i) {
        restore(*images[i]);
        EXPECT_TRUE(install(1)) << i;
        EXPECT_TRUE(uninstall()) << i;
        expectNothingIsLeft(numbered("change", i));
    }
}

TEST_F(InterruptedRunTest, SaysWhatItFoundAndDoes) {
    ASSERT_TRUE(install(1));
    const Images images = imagesOf([&] { EXPECT_TRUE(install(2)); });
    restore(*images[images.size() * 2 / 3]);
    EXPECT_TRUE(look());
    EXPECT_THAT(messages_, Contains(HasSubstr("An earlier run of the setup of Demo was interrupted.")));
    EXPECT_THAT(messages_, Contains(HasSubstr("What it had changed has been taken back.")));
    EXPECT_THAT(boxes_, IsEmpty());
}

TEST_F(InterruptedRunTest, AsksAPersonAndStopsWithoutConsent) {
    ASSERT_TRUE(install(1));
    const auto first = state();
    const Images images = imagesOf([&] { EXPECT_TRUE(install(2)); });
    restore(*images[images.size() * 2 / 3]);
    const auto interrupted = state();
    isUnattended_ = false;
    EXPECT_FALSE(look(kSessionBackup, 0));
    EXPECT_EQ(lastResult_, Installer::kNotRecovered);
    EXPECT_THAT(boxes_, Contains(HasSubstr("Should what it changed be taken back?")));
    EXPECT_EQ(state(), interrupted);
    EXPECT_TRUE(look(kSessionBackup, 1));
    EXPECT_EQ(state(), first);
}

TEST_F(InterruptedRunTest, LeavesTheProductToARunThatIsStillAtWork) {
    ASSERT_TRUE(install(1));
    const Images images = imagesOf([&] { EXPECT_TRUE(install(2)); });
    restore(*images[images.size() * 2 / 3]);
    const auto interrupted = state();
    machine_.events.lockResults = {LockResult::kBusy};
    EXPECT_FALSE(look());
    EXPECT_EQ(lastResult_, Installer::kAnotherRunIsAtWork);
    EXPECT_THAT(messages_, Contains(HasSubstr("Another setup or uninstallation of Demo is at work.")));
    EXPECT_EQ(state(), interrupted);
}

TEST_F(InterruptedRunTest, ConcernsTheProductThatWasToBeReplaced) {
    ASSERT_TRUE(install(1, "", kPages, "Former"));
    const auto first = state();
    const Images images = imagesOf([&] { EXPECT_TRUE(install(2)); });
    for (std::size_t i = 0; i < images.size(); ++i) {
        restore(*images[i]);
        if (versionOf("Former") == "(none)" || !files_.hasFile("/app/un/install.log") ||
            !files_.hasFile("/app/un/install.xml")) {
            continue;
        }
        EXPECT_TRUE(uninstallWhatIsThere()) << i << testing::PrintToString(messages_);
        EXPECT_TRUE(look()) << i;  // a setup of the other product finds what is its own
        EXPECT_EQ(files_.allFiles(), pathsOf(before_)) << i;
    }
}

TEST_F(InterruptedRunTest, IsNoObstacleAfterARemovalWithoutABackup) {
    ASSERT_TRUE(install(1));
    const Images images = imagesOf([&] { EXPECT_TRUE(install(2, "", kPages, "Demo", 0)); });
    for (std::size_t i = 0; i < images.size(); ++i) {
        restore(*images[i]);
        EXPECT_TRUE(install(2, "", kPages, "Demo", 0)) << i << testing::PrintToString(messages_);
        EXPECT_EQ(versionOf("Demo"), "2.0.0") << i;
        EXPECT_THAT(leftovers(), IsEmpty()) << i;
    }
}

}  // namespace
