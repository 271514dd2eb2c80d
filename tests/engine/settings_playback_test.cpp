#include "engine/settings_playback.h"

#include <gtest/gtest.h>

#include "removal_fixture.h"

namespace {

using platform::RegistryRoot;
using platform::RegistryView;

constexpr RegistryRoot kRoot = RegistryRoot::kLocalMachine;

class SettingsPlaybackTest : public testing::Test {
protected:
    RemovalRecord record(RemovalStep step, const std::string& path, const std::string& name = "") {
        RemovalRecord record;
        record.step = step;
        record.root = static_cast<std::uint8_t>(kRoot);
        record.path = path;
        record.other = name;
        return record;
    }
    bool takeBack(const RemovalRecord& record) {
        return SettingsPlayback(registry_, scene_.machine.firewall, scene_.report).takeBack(record);
    }
    std::string note() const { return scene_.notes().empty() ? "" : scene_.notes().back(); }
    std::string text(const std::string& key, const std::string& name) {
        const platform::RegistryValue* value = registry_.value(kRoot, key, name);
        return value == nullptr ? "(none)" : value->data;
    }

    RemovalScene scene_;
    MemoryRegistry& registry_ = scene_.machine.registry;
};

TEST_F(SettingsPlaybackTest, LeavesAValueThatIsThereAlready) {
    RemovalRecord deleted = record(RemovalStep::kDeleteValue, "Software\\Demo", "Name");
    deleted.before = {{"Name", platform::kRegString, "value"}};
    registry_.operations.clear();
    EXPECT_TRUE(takeBack(deleted));
    EXPECT_TRUE(registry_.operations.empty());
}

TEST_F(SettingsPlaybackTest, TakesAnotherTypeForAnotherValue) {
    RemovalRecord written = record(RemovalStep::kWriteValue, "Software\\Demo", "Name");
    written.after = {{"Name", platform::kRegBinary, "value"}};
    EXPECT_FALSE(takeBack(written));
    EXPECT_EQ(text("Software\\Demo", "Name"), "value");
}

TEST_F(SettingsPlaybackTest, GivesTheReasonWhyAValueCannotComeBack) {
    RemovalRecord deleted = record(RemovalStep::kDeleteValue, "Software\\Demo", "Gone");
    deleted.before = {{"Gone", platform::kRegString, "x"}};
    registry_.setReadOnly("Software\\Demo");
    EXPECT_FALSE(takeBack(deleted));
    EXPECT_NE(note().find("HKEY_LOCAL_MACHINE\\Software\\Demo\\Gone: can't be brought back: "),
              std::string::npos);
}

TEST_F(SettingsPlaybackTest, CompletesAKeyThatWasBroughtBackHalf) {
    RemovalRecord deleted = record(RemovalStep::kDeleteKey, "Software\\Demo");
    deleted.before = {{"Name", platform::kRegString, "value"},
                      {"Second", platform::kRegString, "2"},
                      {"Third", platform::kRegDword, "1234"}};
    EXPECT_TRUE(takeBack(deleted));
    EXPECT_EQ(text("Software\\Demo", "Third"), "1234");
}

TEST_F(SettingsPlaybackTest, LeavesAKeyThatSomebodyMadeAgain) {
    RemovalRecord deleted = record(RemovalStep::kDeleteKey, "Software\\Demo");
    deleted.before = {{"Name", platform::kRegString, "the former value"}};
    EXPECT_FALSE(takeBack(deleted));
    EXPECT_EQ(text("Software\\Demo", "Name"), "value");
    EXPECT_NE(note().find("HKEY_LOCAL_MACHINE\\Software\\Demo: stays as it is"), std::string::npos);
}

TEST_F(SettingsPlaybackTest, LeavesANewKeyThatHoldsSomethingByNow) {
    registry_.addText(kRoot, "Software\\New\\Key", "theirs", "x");
    RemovalRecord created = record(RemovalStep::kCreateKey, "Software\\New\\Key");
    created.subject = 2;
    EXPECT_FALSE(takeBack(created));
    EXPECT_EQ(text("Software\\New\\Key", "theirs"), "x");
}

TEST_F(SettingsPlaybackTest, RemovesNoMoreLevelsThanWereMade) {
    registry_.addKey(kRoot, "Software\\Vendor\\New\\Key");
    RemovalRecord created = record(RemovalStep::kCreateKey, "Software\\Vendor\\New\\Key");
    created.subject = 2;
    EXPECT_TRUE(takeBack(created));
    EXPECT_TRUE(takeBack(created));
    EXPECT_FALSE(registry_.hasKey(kRoot, "Software\\Vendor\\New"));
    EXPECT_TRUE(registry_.hasKey(kRoot, "Software\\Vendor"));
}

TEST_F(SettingsPlaybackTest, LeavesAnExceptionThatSomebodyChanged) {
    RemovalRecord added = record(RemovalStep::kFirewallApplication, "/app/program");
    added.after = {{"Demo", 1, ""}};
    EXPECT_FALSE(takeBack(added));
    EXPECT_EQ(scene_.machine.firewall.applications.count("/app/program"), 1U);
    EXPECT_NE(note().find("The firewall's exception for /app/program: stays as it is"), std::string::npos);
}

TEST_F(SettingsPlaybackTest, NamesAnExceptionThatCouldNotBeRead) {
    RemovalRecord removed = record(RemovalStep::kFirewallPort, "");
    removed.subject = 99;
    removed.root = static_cast<std::uint8_t>(platform::FirewallProtocol::kUdp);
    removed.flags = RemovalRecord::kWasUnreadable;
    EXPECT_FALSE(takeBack(removed));
    EXPECT_NE(note().find("The firewall's exception for port 99 UDP: can't be brought back, because it could "
                          "not be read before"),
              std::string::npos);
}

TEST_F(SettingsPlaybackTest, NamesAFirewallThatCannotBeReached) {
    scene_.machine.firewall.failing[platform::FirewallCall::kNoService] = 5;
    RemovalRecord removed = record(RemovalStep::kFirewallApplication, "/app/program");
    EXPECT_FALSE(takeBack(removed));
    scene_.machine.firewall.failing.clear();
    scene_.machine.firewall.givesProfile = false;
    EXPECT_FALSE(takeBack(removed));
    EXPECT_EQ(scene_.notes().size(), 2U);
}

}  // namespace
