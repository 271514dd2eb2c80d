#include "platform/firewall.h"

#include <gtest/gtest.h>

#include "platform/windows/com_objects.h"
#include "platform/windows/missing_component.h"

namespace {

using platform::FirewallCall;
using platform::FirewallOutcome;
using platform::FirewallProtocol;

// Each call reaches the system's component and ends in one of the ways that it is declared to have; what the
// component answers is its own matter.
class WindowsFirewallTest : public testing::Test {
protected:
    void SetUp() override {
        const FirewallOutcome outcome = platform::systemFirewall().connect(profile_);
        ASSERT_TRUE(outcome.done()) << outcome.error;
    }
    static void expectOneOf(const FirewallOutcome& outcome, std::initializer_list<FirewallCall> calls) {
        bool declared = outcome.done();
        for (const FirewallCall call : calls) {
            declared = declared || outcome.failed == call;
        }
        EXPECT_TRUE(declared) << static_cast<int>(outcome.failed);
        EXPECT_EQ(outcome.done(), outcome.error == 0);
    }

    std::unique_ptr<platform::FirewallProfile> profile_;
};

TEST_F(WindowsFirewallTest, ReportsWhetherItIsOn) {
    bool on = false;
    const FirewallOutcome outcome = profile_->isOn(on);
    EXPECT_TRUE(outcome.done()) << outcome.error;
}

TEST_F(WindowsFirewallTest, SwitchingOnIsOneCall) {
    expectOneOf(profile_->switchOn(), {FirewallCall::kSetEnabled});
}

TEST_F(WindowsFirewallTest, AnApplicationIsAddedAndRemoved) {
    bool enabled = true;
    expectOneOf(profile_->isApplicationEnabled("C:\\windows\\notepad.exe", enabled),
                {FirewallCall::kApplicationEnabled});
    EXPECT_FALSE(enabled);
    const FirewallOutcome added = profile_->addApplication("C:\\windows\\notepad.exe", "D\xc3\xa9mo");
    EXPECT_TRUE(added.done()) << added.error;
    const FirewallOutcome removed = profile_->removeApplication("C:\\windows\\notepad.exe");
    EXPECT_TRUE(removed.done()) << removed.error;
}

TEST_F(WindowsFirewallTest, APortIsAddedAndRemoved) {
    for (const FirewallProtocol protocol : {FirewallProtocol::kTcp, FirewallProtocol::kUdp}) {
        bool enabled = false;
        expectOneOf(profile_->isPortEnabled(12345, protocol, enabled), {FirewallCall::kPortEnabled});
        const FirewallOutcome added = profile_->addPort(12345, protocol, "Demo");
        EXPECT_TRUE(added.done()) << added.error;
        expectOneOf(profile_->removePort(12345, protocol), {FirewallCall::kRemovePort});
    }
}

TEST(WindowsFirewallApartmentTest, AConnectionHoldsItsApartmentAndLeavesIt) {
    APTTYPE type{};
    APTTYPEQUALIFIER qualifier{};
    ASSERT_NE(CoGetApartmentType(&type, &qualifier), S_OK);
    {
        std::unique_ptr<platform::FirewallProfile> profile;
        ASSERT_TRUE(platform::systemFirewall().connect(profile).done());
        EXPECT_EQ(CoGetApartmentType(&type, &qualifier), S_OK);
    }
    EXPECT_NE(CoGetApartmentType(&type, &qualifier), S_OK);
}

TEST(WindowsFirewallApartmentTest, WithoutItsComponentThereIsNoConnection) {
    const MissingComponent manager("{304CE942-6E39-40D8-943A-B913C40C9CD4}");
    std::unique_ptr<platform::FirewallProfile> profile;
    const FirewallOutcome outcome = platform::systemFirewall().connect(profile);
    EXPECT_EQ(outcome.failed, FirewallCall::kCreateManager);
    EXPECT_NE(outcome.error, 0);
    EXPECT_EQ(profile, nullptr);
    APTTYPE type{};
    APTTYPEQUALIFIER qualifier{};
    EXPECT_NE(CoGetApartmentType(&type, &qualifier), S_OK);
}

TEST(WindowsFirewallApartmentTest, AnApartmentOfAnotherKindIsAFailure) {
    ASSERT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), S_OK);
    std::unique_ptr<platform::FirewallProfile> profile;
    const FirewallOutcome outcome = platform::systemFirewall().connect(profile);
    EXPECT_EQ(outcome.failed, FirewallCall::kInitialize);
    EXPECT_EQ(outcome.error, static_cast<int>(RPC_E_CHANGED_MODE));
    EXPECT_FALSE(outcome.unreachable);
    EXPECT_EQ(profile, nullptr);
    CoUninitialize();
}

}  // namespace
