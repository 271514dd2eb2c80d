#include "platform/overlay/overlay_platform.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/machine_of_files.h"
#include "platform/memory/memory_change_rules.h"
#include "platform/memory/memory_platform.h"
#include "platform/memory/memory_registry_rules.h"

namespace {

using platform::FirewallException;
using platform::FirewallProtocol;

class OverlayPlatformTest : public testing::Test {
protected:
    OverlayPlatformTest() { base_.environment.variables["NAME"] = "base's"; }
    void TearDown() override { expectBaseUntouched(); }

    void expectBaseUntouched() const {
        for (const std::string& operation : base_.files.operations()) {
            EXPECT_TRUE(operation.starts_with("open ") || operation.starts_with("close ") ||
                        operation.starts_with("list "))
                << operation;
        }
        EXPECT_TRUE(base_.registry.operations.empty());
        EXPECT_TRUE(base_.processes.started.empty());
        EXPECT_TRUE(base_.processes.terminated.empty());
        EXPECT_EQ(base_.environment.variables.size(), 1U);
        EXPECT_TRUE(base_.events.existing.empty());
        EXPECT_TRUE(base_.events.signals.empty());
        EXPECT_TRUE(base_.events.lockings.empty());
        EXPECT_TRUE(base_.shell.links.empty());
        EXPECT_TRUE(base_.shell.urlLinks.empty());
        EXPECT_TRUE(base_.shell.symlinks.empty());
        EXPECT_TRUE(base_.shell.opened.empty());
        EXPECT_TRUE(base_.shell.openedForUser.empty());
        EXPECT_EQ(base_.shell.broadcasts, 0);
        for (const std::string& operation : base_.firewall.operations) {
            EXPECT_TRUE(operation.starts_with("is") || operation == "connect" || operation == "close")
                << operation;
        }
    }

    MemoryPlatform base_;
    MemoryChangeRules fileRules_{base_.files};
    MemoryRegistryRules registryRules_{base_.registry};
    OverlayPlatform overlay_{base_.bundle(), {fileRules_, registryRules_, {}}};
};

TEST_F(OverlayPlatformTest, MakesOneMachineOfAllParts) {
    const platform::Platform machine = overlay_.bundle();
    EXPECT_EQ(&machine.files, &overlay_.files);
    EXPECT_EQ(&machine.console, &base_.console);
    writeFile(machine.files, "/f", "text");
    int created = 0;
    EXPECT_EQ(machine.registry.createKey(platform::RegistryRoot::kUsers, "K", platform::RegistryView::kNative,
                                         created),
              0);
    EXPECT_EQ(machine.shell.createSymlink("/link", "/f"), 0);
    EXPECT_EQ(readFile(machine.files, "/link"), "text");
    EXPECT_EQ(overlay_.files.changes().size(), 2U);
    EXPECT_EQ(overlay_.registry.changes().size(), 1U);
}

TEST_F(OverlayPlatformTest, VariablesAreSetHereAlone) {
    EXPECT_EQ(overlay_.environment.get("NAME"), "base's");
    EXPECT_TRUE(overlay_.environment.set("NAME", "new"));
    EXPECT_TRUE(overlay_.environment.set("EMPTY", ""));
    EXPECT_FALSE(overlay_.environment.set("", "x"));
    EXPECT_FALSE(overlay_.environment.set("A=B", "x"));
    EXPECT_EQ(overlay_.environment.get("NAME"), "new");
    EXPECT_EQ(overlay_.environment.get("EMPTY"), "");
    EXPECT_EQ(overlay_.environment.get("name"), std::nullopt);
    EXPECT_EQ(base_.environment.variables["NAME"], "base's");
    EXPECT_EQ(overlay_.environment.changes().size(), 2U);
}

TEST_F(OverlayPlatformTest, VariablesFollowTheRulesOfTheSystem) {
    OverlayEnvironment environment(base_.environment, {.ignoresCase = true, .emptyRemoves = true});
    EXPECT_TRUE(environment.set("Name", "new"));
    EXPECT_EQ(environment.get("NAME"), "new");
    EXPECT_TRUE(environment.set("NAME", ""));
    EXPECT_EQ(environment.get("Name"), std::nullopt);
    EXPECT_EQ(environment.changes().size(), 1U);
}

TEST_F(OverlayPlatformTest, ProgramsAreRecordedAndProcessesCountAsEnded) {
    base_.processes.running = {{10, "a", "/a"}, {11, "b", "/b"}, {1, "init", "/init"}, {12, "own", "/own"}};
    base_.processes.ownId = 12;
    int error = 77;
    const auto child = overlay_.processes.start("\"/prog\" -x", "/work", error);
    ASSERT_NE(child, nullptr);
    EXPECT_EQ(error, 0);
    EXPECT_TRUE(child->wait(0));
    EXPECT_EQ(child->exitCode(), 0);
    ASSERT_EQ(overlay_.processes.starts().size(), 1U);
    EXPECT_EQ(overlay_.processes.starts()[0].commandLine, "\"/prog\" -x");
    EXPECT_EQ(overlay_.processes.starts()[0].workDirectory, "/work");
    EXPECT_TRUE(overlay_.processes.terminate(10, 0));
    for (const std::uint32_t id : {10U, 1U, 12U, 99U}) {
        EXPECT_FALSE(overlay_.processes.terminate(id, 0)) << id;
    }
    std::vector<platform::ProcessInfo> running;
    EXPECT_TRUE(overlay_.processes.list(running));
    EXPECT_EQ(running.size(), 3U);
    ASSERT_EQ(overlay_.processes.ends().size(), 1U);
    EXPECT_EQ(overlay_.processes.ends()[0].name, "a");
}

TEST_F(OverlayPlatformTest, LinksAreMadeAsFilesAndNothingIsOpened) {
    base_.files.addDirectory("/desk");
    EXPECT_EQ(overlay_.shell.createLink("/desk/app", {"/opt/app", "App", "", "", ""}), 0);
    EXPECT_EQ(overlay_.shell.createUrlLink("/desk/page", "https://example.org"), 0);
    EXPECT_NE(overlay_.shell.createLink("/none/app", {}), 0);
    EXPECT_TRUE(overlay_.shell.openDocument("/desk/readme"));
    EXPECT_TRUE(overlay_.shell.broadcastEnvironment());
    EXPECT_FALSE(overlay_.shell.openDocument(""));
    EXPECT_EQ(overlay_.files.kindOf("/desk/app"), platform::PathKind::kFile);
    EXPECT_EQ(overlay_.files.kindOf("/desk/page"), platform::PathKind::kFile);
    using What = ShellRequest::What;
    std::vector<What> requests;
    for (const ShellRequest& request : overlay_.shell.requests()) {
        requests.push_back(request.what);
    }
    EXPECT_THAT(requests,
                testing::ElementsAre(What::kLink, What::kUrlLink, What::kOpening, What::kEnvironment));
    EXPECT_EQ(overlay_.shell.requests()[0].link.target, "/opt/app");
    EXPECT_EQ(overlay_.shell.requests()[1].target, "https://example.org");
}

TEST_F(OverlayPlatformTest, EventsAndLocksAreItsOwn) {
    EXPECT_FALSE(overlay_.events.signal("event"));
    auto event = overlay_.events.create("event");
    EXPECT_FALSE(event->wait(0));
    EXPECT_TRUE(overlay_.events.signal("event"));
    EXPECT_TRUE(event->wait(0));
    EXPECT_FALSE(event->wait(0));
    event.reset();
    EXPECT_FALSE(overlay_.events.signal("event"));
    EXPECT_EQ(overlay_.events.signals().size(), 3U);

    using platform::LockResult;
    std::unique_ptr<platform::NamedLock> first;
    std::unique_ptr<platform::NamedLock> second;
    EXPECT_EQ(overlay_.events.lock("lock", 0, first), LockResult::kTaken);
    EXPECT_EQ(overlay_.events.lock("lock", 0, second), LockResult::kBusy);
    EXPECT_EQ(second, nullptr);
    first.reset();
    EXPECT_EQ(overlay_.events.lock("lock", 0, second), LockResult::kTaken);
}

TEST_F(OverlayPlatformTest, ExceptionsOfTheFirewallAreAddedAndRemovedHereAlone) {
    base_.firewall.applications["/a"] = "A";
    base_.firewall.ports[{80, FirewallProtocol::kTcp}] = "Web";
    base_.firewall.on = false;
    std::unique_ptr<platform::FirewallProfile> profile;
    ASSERT_TRUE(overlay_.firewall.connect(profile).done());
    bool isEnabled = false;
    EXPECT_TRUE(profile->isApplicationEnabled("/a", isEnabled).done());
    EXPECT_TRUE(isEnabled);
    EXPECT_TRUE(profile->removeApplication("/a").done());
    EXPECT_TRUE(profile->removeApplication("/never").done());
    EXPECT_TRUE(profile->isApplicationEnabled("/a", isEnabled).done());
    EXPECT_FALSE(isEnabled);
    EXPECT_TRUE(profile->addApplication("/b", "B").done());
    FirewallException disabled;
    disabled.name = "Off";
    disabled.enabled = false;
    EXPECT_TRUE(profile->restorePort(81, FirewallProtocol::kUdp, disabled).done());
    std::optional<FirewallException> found;
    EXPECT_TRUE(profile->readPort(81, FirewallProtocol::kUdp, found).done());
    EXPECT_EQ(found, disabled);
    EXPECT_TRUE(profile->isPortEnabled(81, FirewallProtocol::kUdp, isEnabled).done());
    EXPECT_FALSE(isEnabled);
    EXPECT_TRUE(profile->isPortEnabled(80, FirewallProtocol::kTcp, isEnabled).done());
    EXPECT_TRUE(isEnabled);
    bool isOn = true;
    EXPECT_TRUE(profile->isOn(isOn).done());
    EXPECT_FALSE(isOn);
    EXPECT_TRUE(profile->switchOn().done());
    EXPECT_TRUE(profile->isOn(isOn).done());
    EXPECT_TRUE(isOn);
    EXPECT_TRUE(overlay_.firewall.wasSwitchedOn());
    const std::vector<FirewallChange> changes = overlay_.firewall.changes();
    ASSERT_EQ(changes.size(), 3U);
    EXPECT_EQ(changes[0].application, "/a");
    EXPECT_FALSE(changes[0].exception);
    EXPECT_EQ(changes[1].exception->name, "B");
    EXPECT_EQ(changes[2].port, 81);
}

TEST_F(OverlayPlatformTest, AFirewallThatCannotBeAskedIsNotChanged) {
    base_.firewall.failing[platform::FirewallCall::kListApplications] = 5;
    std::unique_ptr<platform::FirewallProfile> profile;
    ASSERT_TRUE(overlay_.firewall.connect(profile).done());
    EXPECT_EQ(profile->addApplication("/a", "A").error, 5);
    EXPECT_TRUE(overlay_.firewall.changes().empty());
    base_.firewall.failing[platform::FirewallCall::kNoService] = 6;
    EXPECT_EQ(overlay_.firewall.connect(profile).error, 6);
    EXPECT_EQ(profile, nullptr);
}

}  // namespace
