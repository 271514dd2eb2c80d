#include "engine/journaled_firewall.h"

#include <gtest/gtest.h>

#include "platform/memory/memory_environment.h"
#include "platform/memory/memory_file_system.h"
#include "platform/memory/memory_firewall.h"

namespace {

using platform::FirewallCall;
using platform::FirewallException;
using platform::FirewallProtocol;

class JournaledFirewallTest : public testing::Test {
protected:
    JournaledFirewallTest() {
        firewall_.applications["/app"] = "Demo";
        EXPECT_EQ(journal_.open(), 0);
        EXPECT_TRUE(journaled_.connect(profile_).done());
    }
    RemovalRecord last() { return journal_.read().records.back(); }

    MemoryFileSystem files_;
    MemoryEnvironment environment_;
    MemoryFirewall firewall_;
    RemovalJournal journal_{files_, environment_};
    JournaledFirewall journaled_{firewall_, journal_};
    std::unique_ptr<platform::FirewallProfile> profile_;
};

TEST_F(JournaledFirewallTest, HasNoProfileWhereTheFirewallHasNone) {
    firewall_.failing[FirewallCall::kNoService] = 1;
    EXPECT_FALSE(journaled_.connect(profile_).done());
    EXPECT_EQ(profile_, nullptr);
    firewall_.failing.clear();
    firewall_.givesProfile = false;
    EXPECT_TRUE(journaled_.connect(profile_).done());
    EXPECT_EQ(profile_, nullptr);
}

TEST_F(JournaledFirewallTest, WritesDownAllOfAnExceptionBeforeItRemovesIt) {
    firewall_.specialApplications["/app"] = {"Demo", false, 2, "10.0.0.1"};
    EXPECT_TRUE(profile_->removeApplication("/app").done());
    ASSERT_EQ(last().before.size(), 1U);
    EXPECT_EQ(exceptionOf(last().before.front()), (FirewallException{"Demo", false, 2, "10.0.0.1"}));
    EXPECT_TRUE(last().after.empty());
    EXPECT_TRUE(files_.didOperation("flush " + journal_.directory() + "/journal"));
}

TEST_F(JournaledFirewallTest, ChangesNothingThatItCannotWriteDown) {
    firewall_.on = false;
    files_.failFrom(MemoryFileSystem::Operation::kFlush, "", 1, 28);
    EXPECT_EQ(profile_->removeApplication("/app").error, 28);
    EXPECT_EQ(profile_->addApplication("/new", "New").error, 28);
    EXPECT_EQ(profile_->addPort(1, FirewallProtocol::kTcp, "New").error, 28);
    EXPECT_EQ(profile_->removePort(1, FirewallProtocol::kTcp).error, 28);
    EXPECT_EQ(profile_->switchOn().failed, FirewallCall::kSetEnabled);
    EXPECT_FALSE(firewall_.on);
    EXPECT_EQ(firewall_.applications.size(), 1U);
    EXPECT_TRUE(firewall_.ports.empty());
}

TEST_F(JournaledFirewallTest, MarksAnExceptionThatItCannotRead) {
    firewall_.failing[FirewallCall::kReadApplication] = 7;
    EXPECT_TRUE(profile_->removeApplication("/app").done());
    EXPECT_TRUE(last().has(RemovalRecord::kWasUnreadable));
    EXPECT_TRUE(firewall_.applications.empty());
}

TEST_F(JournaledFirewallTest, WritesNothingDownWhenTheFirewallIsOnAlready) {
    EXPECT_TRUE(profile_->switchOn().done());
    EXPECT_EQ(journal_.read().records.size(), 1U);
}

TEST_F(JournaledFirewallTest, AnswersQuestionsAsTheFirewallDoes) {
    bool answer = false;
    EXPECT_TRUE(profile_->isOn(answer).done() && answer);
    answer = false;
    EXPECT_TRUE(profile_->isApplicationEnabled("/app", answer).done() && answer);
    EXPECT_TRUE(profile_->isPortEnabled(1, FirewallProtocol::kTcp, answer).done() && !answer);
    std::optional<FirewallException> found;
    EXPECT_TRUE(profile_->readApplication("/app", found).done() && found->name == "Demo");
    EXPECT_TRUE(profile_->readPort(1, FirewallProtocol::kTcp, found).done() && !found);
}

}  // namespace
