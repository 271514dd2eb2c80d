#include "engine/changes/firewall_operations.h"

#include <gtest/gtest.h>

#include "base/errors.h"
#include "platform/memory/memory_firewall.h"

namespace {

using platform::FirewallCall;
using platform::FirewallProtocol;

class FirewallOperationsTest : public testing::Test {
protected:
    // What the action raises: "non-fatal: <text>", "<text>", or "" when it raises nothing.
    template <typename Action>
    std::string raised(Action action) {
        try {
            FirewallOperations firewall(firewall_);
            action(firewall);
            return "";
        } catch (const NonFatalError& error) {
            return std::string("non-fatal: ") + error.what();
        } catch (const GenericError& error) {
            return error.what();
        }
    }
    // The same, with one call of the system that fails after `passing` successes.
    template <typename Action>
    std::string raisedBy(FirewallCall call, Action action, int passing = 0) {
        firewall_.failing = {{call, -7}};
        firewall_.passing = {{call, passing}};
        return raised(action);
    }

    MemoryFirewall firewall_;
};

TEST_F(FirewallOperationsTest, ReportsWhyThereIsNoConnection) {
    const auto nothing = [](FirewallOperations&) {};
    EXPECT_EQ(raised(nothing), "");
    EXPECT_EQ(raisedBy(FirewallCall::kNoService, nothing),
              "non-fatal: This system has no firewall service that can be asked! Error(-7)");
    EXPECT_EQ(raisedBy(FirewallCall::kInitialize, nothing),
              "non-fatal: COM Interface initialization failed (Firewall service stopped/unaccessible)! "
              "Error(-7)");
    EXPECT_EQ(raisedBy(FirewallCall::kCreateManager, nothing),
              "non-fatal: CoCreateInstance failed (Firewall service stopped/unaccessible)! Error(-7)");
    EXPECT_EQ(raisedBy(FirewallCall::kLocalPolicy, nothing), "Getting Local policy failed! Error(-7)");
    EXPECT_EQ(raisedBy(FirewallCall::kCurrentProfile, nothing), "Getting Current profile failed! Error(-7)");
}

TEST_F(FirewallOperationsTest, TreatsAStoppedServiceAsNotFatalWhereverItShows) {
    firewall_.unreachable = true;
    EXPECT_EQ(raisedBy(FirewallCall::kCurrentProfile, [](FirewallOperations&) {}),
              "non-fatal: Getting Current profile failed! Error(-7)");
    EXPECT_EQ(raisedBy(FirewallCall::kGetEnabled, [](FirewallOperations& firewall) { firewall.isOn(); }),
              "non-fatal: Firewall Enabled query failed! Error(-7)");
}

TEST_F(FirewallOperationsTest, ClosesTheConnection) {
    EXPECT_EQ(raised([](FirewallOperations& firewall) { firewall.isOn(); }), "");
    EXPECT_EQ(firewall_.operations, (std::vector<std::string>{"connect", "isOn", "close"}));
}

TEST_F(FirewallOperationsTest, NeedsAProfileForEveryOperation) {
    firewall_.givesProfile = false;
    const std::string text = "Firewall Operations is not properly initialized!";
    EXPECT_EQ(raised([](FirewallOperations& firewall) { firewall.isOn(); }), text);
    EXPECT_EQ(raised([](FirewallOperations& firewall) { firewall.switchOn(); }), text);
    EXPECT_EQ(raised([](FirewallOperations& firewall) { firewall.appIsEnabled(""); }), text);
    EXPECT_EQ(raised([](FirewallOperations& firewall) { firewall.addApplication("", ""); }), text);
    EXPECT_EQ(raised([](FirewallOperations& firewall) { firewall.removeApplication(""); }), text);
    EXPECT_EQ(raised([](FirewallOperations& firewall) { firewall.portIsEnabled(0, 0); }), text);
    EXPECT_EQ(raised([](FirewallOperations& firewall) { firewall.addPort(0, 0, ""); }), text);
    EXPECT_EQ(raised([](FirewallOperations& firewall) { firewall.removePort(0, 0); }), text);
}

TEST_F(FirewallOperationsTest, SaysWhetherTheFirewallIsOn) {
    EXPECT_TRUE(FirewallOperations(firewall_).isOn());
    firewall_.on = false;
    EXPECT_FALSE(FirewallOperations(firewall_).isOn());
    EXPECT_EQ(raisedBy(FirewallCall::kGetEnabled, [](FirewallOperations& firewall) { firewall.isOn(); }),
              "Firewall Enabled query failed! Error(-7)");
}

TEST_F(FirewallOperationsTest, SwitchesOnOnlyWhatIsOff) {
    FirewallOperations(firewall_).switchOn();
    EXPECT_EQ(firewall_.operations, (std::vector<std::string>{"connect", "isOn", "close"}));
    firewall_.on = false;
    FirewallOperations(firewall_).switchOn();
    EXPECT_TRUE(firewall_.on);
}

TEST_F(FirewallOperationsTest, ReportsWhySwitchingOnFails) {
    firewall_.on = false;
    const auto switchOn = [](FirewallOperations& firewall) { firewall.switchOn(); };
    EXPECT_EQ(raisedBy(FirewallCall::kGetEnabled, switchOn), "Firewall Enabled query failed! Error(-7)");
    EXPECT_EQ(raisedBy(FirewallCall::kSetEnabled, switchOn), "Firewall Enable call failed! Error(-7)");
    EXPECT_FALSE(firewall_.on);
}

TEST_F(FirewallOperationsTest, AddsAnApplicationOnce) {
    FirewallOperations firewall(firewall_);
    EXPECT_FALSE(firewall.appIsEnabled("/a"));
    firewall.addApplication("/a", "First");
    EXPECT_TRUE(firewall.appIsEnabled("/a"));
    firewall.addApplication("/a", "Second");
    EXPECT_EQ(firewall_.applications, (std::map<std::string, std::string>{{"/a", "First"}}));
    firewall.removeApplication("/a");
    EXPECT_TRUE(firewall_.applications.empty());
}

TEST_F(FirewallOperationsTest, RefusesAnApplicationWithoutItsArguments) {
    EXPECT_EQ(raised([](FirewallOperations& firewall) { firewall.addApplication("", "n"); }),
              "Invalid input arguments - FirewallOperations::addApplication()");
    EXPECT_EQ(raised([](FirewallOperations& firewall) { firewall.addApplication("/a", ""); }),
              "Invalid input arguments - FirewallOperations::addApplication()");
    EXPECT_EQ(raised([](FirewallOperations& firewall) { firewall.addApplication("", ""); }),
              "Invalid input arguments - FirewallOperations::addApplication()");
    EXPECT_EQ(raised([](FirewallOperations& firewall) { firewall.appIsEnabled(""); }),
              "Invalid input arguments - FirewallOperations::appIsEnabled()");
    EXPECT_EQ(raised([](FirewallOperations& firewall) { firewall.removeApplication(""); }),
              "Invalid input arguments - FirewallOperations::removeApplication()");
    EXPECT_TRUE(firewall_.applications.empty());
}

TEST_F(FirewallOperationsTest, ReportsWhyAnApplicationIsNotAdded) {
    const auto add = [](FirewallOperations& firewall) { firewall.addApplication("/a%d", "n"); };
    EXPECT_EQ(raisedBy(FirewallCall::kListApplications, add),
              "Getting Authorized Applications failed! Error(-7)");
    EXPECT_EQ(raisedBy(FirewallCall::kListApplications, add, 1),
              "Getting Authorized Applications failed! Error(-7)");
    EXPECT_EQ(raisedBy(FirewallCall::kApplicationEnabled, add),
              "Getting Application Enabled call failed! Error(-7)");
    EXPECT_EQ(raisedBy(FirewallCall::kCreateApplication, add),
              "CoCreateInstance failed for adding new application! Error(-7)");
    EXPECT_EQ(raisedBy(FirewallCall::kSetApplicationPath, add),
              "Putting process image file name failed! Error(-7)");
    EXPECT_EQ(raisedBy(FirewallCall::kSetApplicationName, add), "Putting application name failed! Error(-7)");
    EXPECT_EQ(raisedBy(FirewallCall::kAddApplication, add), "Adding the application /a%d failed!");
    EXPECT_TRUE(firewall_.applications.empty());
}

TEST_F(FirewallOperationsTest, ReportsWhyAnApplicationStays) {
    const auto remove = [](FirewallOperations& firewall) { firewall.removeApplication("/a"); };
    EXPECT_EQ(raisedBy(FirewallCall::kListApplications, remove), "Getting Authorized Applications failed!");
    EXPECT_EQ(raisedBy(FirewallCall::kRemoveApplication, remove), "Removing application /a");
}

TEST_F(FirewallOperationsTest, AddsAPortOnceForEachProtocol) {
    FirewallOperations firewall(firewall_);
    EXPECT_TRUE(firewall.addPort(80, kFirewallTcp, "Web"));
    EXPECT_TRUE(firewall.portIsEnabled(80, kFirewallTcp));
    EXPECT_FALSE(firewall.portIsEnabled(80, kFirewallUdp));
    EXPECT_FALSE(firewall.addPort(80, kFirewallTcp, "Other"));
    EXPECT_TRUE(firewall.addPort(80, kFirewallUdp, "Other"));
    EXPECT_EQ(firewall_.ports,
              (std::map<MemoryFirewall::Port, std::string>{{{80, FirewallProtocol::kTcp}, "Web"},
                                                           {{80, FirewallProtocol::kUdp}, "Other"}}));
    firewall.removePort(80, kFirewallTcp);
    firewall.removePort(80, kFirewallUdp);
    EXPECT_TRUE(firewall_.ports.empty());
}

TEST_F(FirewallOperationsTest, RefusesAPortWithoutItsArguments) {
    const std::string arguments = "Invalid input arguments - FirewallOperations::addPort()";
    const std::string protocol = "Invalid firewall protocol or none specified!";
    EXPECT_EQ(raised([](FirewallOperations& f) { f.addPort(80, kFirewallTcp, ""); }), arguments);
    EXPECT_EQ(raised([](FirewallOperations& f) { f.addPort(0, kFirewallTcp, "n"); }), arguments);
    EXPECT_EQ(raised([](FirewallOperations& f) { f.addPort(80, 0, "n"); }), protocol);
    EXPECT_EQ(raised([](FirewallOperations& f) { f.addPort(0, 4, ""); }), protocol);
    EXPECT_EQ(raised([](FirewallOperations& f) { f.portIsEnabled(80, 0); }), protocol);
    EXPECT_EQ(raised([](FirewallOperations& f) { f.removePort(80, 0); }), protocol);
    EXPECT_TRUE(firewall_.ports.empty());
}

TEST_F(FirewallOperationsTest, ReportsWhyAPortIsNotAdded) {
    const auto add = [](FirewallOperations& firewall) { firewall.addPort(80, kFirewallTcp, "n"); };
    EXPECT_EQ(raisedBy(FirewallCall::kListPorts, add), "Getting Globally opened ports failed! Error(-7)");
    EXPECT_EQ(raisedBy(FirewallCall::kPortEnabled, add),
              "Retrieving enabled status for port failed! Error(-7)");
    EXPECT_EQ(raisedBy(FirewallCall::kListPorts, add, 1), "Getting globally open ports failed! Error(-7)");
    EXPECT_EQ(raisedBy(FirewallCall::kCreatePort, add),
              "CoCreateInstance failed for creating new port! Error(-7)");
    EXPECT_EQ(raisedBy(FirewallCall::kSetPortNumber, add), "Putting port failed for port 80! Error(-7)");
    EXPECT_EQ(raisedBy(FirewallCall::kSetPortProtocol, add),
              "Putting protocol failed for port 80! Error(-7)");
    EXPECT_EQ(raisedBy(FirewallCall::kSetPortName, add), "Putting name to port rule failed! Error(-7)");
    EXPECT_EQ(raisedBy(FirewallCall::kAddPort, add), "Adding the port 80 failed! Error(-7)");
    EXPECT_TRUE(firewall_.ports.empty());
}

TEST_F(FirewallOperationsTest, ReportsWhyAPortStays) {
    const auto remove = [](FirewallOperations& firewall) { firewall.removePort(80, kFirewallUdp); };
    EXPECT_EQ(raisedBy(FirewallCall::kListPorts, remove), "Getting globally open ports failed! Error(-7)");
    EXPECT_EQ(raisedBy(FirewallCall::kRemovePort, remove), "Removing port 80! Error (-7)");
}

}  // namespace
