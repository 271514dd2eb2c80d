#include "wini/firewall_changes.h"

#include <gtest/gtest.h>

#include "fakes/fake_console.h"
#include "fakes/fake_firewall.h"

namespace {

using platform::FirewallCall;
using platform::FirewallProtocol;
using Ports = std::map<FakeFirewall::Port, std::string>;

constexpr std::uint8_t kBoth = kFirewallTcp | kFirewallUdp;

class FirewallChangesTest : public testing::Test {
protected:
    void expectLog(const std::vector<std::string>& lines) {
        EXPECT_EQ(log_.lines(), lines);
        log_.clear();
    }
    // Fails without asking the firewall for anything.
    void expectDamaged(const std::string& record, const std::vector<std::string>& lines) {
        EXPECT_EQ(changes_.removePort(record.c_str()), FirewallResult::kFailed) << record;
        expectLog(lines);
        EXPECT_TRUE(firewall_.operations.empty()) << record;
    }

    FakeFirewall firewall_;
    FakeConsole log_;
    FirewallChanges changes_{firewall_, log_};
};

TEST_F(FirewallChangesTest, AddsAndRemovesAnApplication) {
    EXPECT_EQ(changes_.addApplication("/a", "Demo"), FirewallResult::kDone);
    EXPECT_EQ(firewall_.applications, (std::map<std::string, std::string>{{"/a", "Demo"}}));
    EXPECT_EQ(changes_.removeApplication("/a"), FirewallResult::kDone);
    EXPECT_TRUE(firewall_.applications.empty());
    expectLog({});
}

TEST_F(FirewallChangesTest, EachCallHasAConnectionOfItsOwn) {
    changes_.removeApplication("/a");
    changes_.removePort("80\tTCP\tn");
    EXPECT_EQ(firewall_.operations, (std::vector<std::string>{"connect", "removeApplication /a", "close",
                                                              "connect", "removePort 80 TCP", "close"}));
}

TEST_F(FirewallChangesTest, WhatIsOpenAlreadyIsNoFailure) {
    firewall_.applications["/a"] = "Theirs";
    firewall_.ports[{80, FirewallProtocol::kTcp}] = "Theirs";
    EXPECT_EQ(changes_.addApplication("/a", "Ours"), FirewallResult::kDone);
    EXPECT_EQ(changes_.addPort({80, "Ours", kFirewallTcp}), FirewallResult::kDone);
    EXPECT_EQ(firewall_.applications["/a"], "Theirs");
    EXPECT_EQ(firewall_.ports, (Ports{{{80, FirewallProtocol::kTcp}, "Theirs"}}));
}

TEST_F(FirewallChangesTest, MissingArgumentsFail) {
    EXPECT_EQ(changes_.addApplication(nullptr, "n"), FirewallResult::kFailed);
    EXPECT_EQ(changes_.addApplication("/a", nullptr), FirewallResult::kFailed);
    EXPECT_EQ(changes_.removeApplication(nullptr), FirewallResult::kFailed);
    EXPECT_EQ(changes_.removePort(nullptr), FirewallResult::kFailed);
    EXPECT_TRUE(firewall_.operations.empty());
    expectLog({});
}

TEST_F(FirewallChangesTest, AnApplicationThatTheLogCanNotHoldIsRefused) {
    const std::string longest = "/" + std::string(1022 - std::string("FIREWALL\tAPP\t").size(), 'x');
    for (const std::string path : {"/a\tb", "/a "}) {
        EXPECT_EQ(changes_.addApplication(path.c_str(), "n"), FirewallResult::kFailed);
        expectLog({"ERROR: (Firewall App) The action log can not hold the application " + path + "!"});
    }
    EXPECT_EQ(changes_.addApplication((longest + "x").c_str(), "n"), FirewallResult::kFailed);
    EXPECT_TRUE(firewall_.operations.empty());
    EXPECT_EQ(changes_.addApplication(longest.c_str(), "n"), FirewallResult::kDone);
}

TEST_F(FirewallChangesTest, OneProtocolMakesOneRuleWithThePlainName) {
    EXPECT_EQ(changes_.addPort({80, "Web", kFirewallTcp}), FirewallResult::kDone);
    EXPECT_EQ(changes_.addPort({53, "Names", kFirewallUdp}), FirewallResult::kDone);
    EXPECT_EQ(firewall_.ports,
              (Ports{{{80, FirewallProtocol::kTcp}, "Web"}, {{53, FirewallProtocol::kUdp}, "Names"}}));
}

TEST_F(FirewallChangesTest, TwoProtocolsMakeTwoRulesThatCanBeToldApart) {
    EXPECT_EQ(changes_.addPort({80, "Web", kBoth}), FirewallResult::kDone);
    EXPECT_EQ(firewall_.ports,
              (Ports{{{80, FirewallProtocol::kTcp}, "Web TCP"}, {{80, FirewallProtocol::kUdp}, "Web UDP"}}));
    EXPECT_EQ(firewall_.operations,
              (std::vector<std::string>{"connect", "isPortEnabled 80 TCP", "addPort 80 TCP Web TCP",
                                        "isPortEnabled 80 UDP", "addPort 80 UDP Web UDP", "close"}));
}

TEST_F(FirewallChangesTest, ARuleThatFailsHalfwayLeavesNothingOpen) {
    firewall_.failing = {{FirewallCall::kAddPort, 9}};
    firewall_.passing = {{FirewallCall::kAddPort, 1}};
    EXPECT_EQ(changes_.addPort({80, "Web", kBoth}), FirewallResult::kFailed);
    EXPECT_TRUE(firewall_.ports.empty());
    expectLog({"ERROR: (Firewall Port) Adding the port 80 failed! Error(9)"});
}

TEST_F(FirewallChangesTest, ARuleThatFailsHalfwayLeavesOpenWhatWasOpen) {
    firewall_.ports[{80, FirewallProtocol::kTcp}] = "Theirs";
    firewall_.failing = {{FirewallCall::kAddPort, 9}};
    EXPECT_EQ(changes_.addPort({80, "Web", kBoth}), FirewallResult::kFailed);
    EXPECT_EQ(firewall_.ports, (Ports{{{80, FirewallProtocol::kTcp}, "Theirs"}}));
}

TEST_F(FirewallChangesTest, ARuleThatCanNotBeTakenBackIsTold) {
    firewall_.failing = {{FirewallCall::kAddPort, 9}, {FirewallCall::kRemovePort, 8}};
    firewall_.passing = {{FirewallCall::kAddPort, 1}};
    EXPECT_EQ(changes_.addPort({80, "Web", kBoth}), FirewallResult::kFailed);
    expectLog({"ERROR: (Firewall Port) Removing port 80! Error (8)",
               "ERROR: (Firewall Port) Adding the port 80 failed! Error(9)"});
}

TEST_F(FirewallChangesTest, ARuleNeedsProtocolNameAndPort) {
    EXPECT_EQ(changes_.addPort({80, "Web", 0}), FirewallResult::kFailed);
    EXPECT_EQ(changes_.addPort({80, "Web", 4}), FirewallResult::kFailed);
    EXPECT_EQ(changes_.addPort({80, "", kFirewallTcp}), FirewallResult::kFailed);
    EXPECT_EQ(changes_.addPort({0, "Web", kFirewallTcp}), FirewallResult::kFailed);
    EXPECT_TRUE(firewall_.ports.empty());
    expectLog({"ERROR: (Firewall Port) Invalid firewall protocol or none specified!",
               "ERROR: (Firewall Port) Invalid firewall protocol or none specified!",
               "ERROR: (Firewall Port) Invalid input arguments - FirewallOperations::addPort()",
               "ERROR: (Firewall Port) Invalid input arguments - FirewallOperations::addPort()"});
}

TEST_F(FirewallChangesTest, AMissingServiceIsAnAnswerOfItsOwn) {
    firewall_.failing = {{FirewallCall::kInitialize, -3}};
    const std::string text =
        "COM Interface initialization failed (Firewall service stopped/unaccessible)! Error(-3)";
    EXPECT_EQ(changes_.addApplication("/a", "n"), FirewallResult::kNotAvailable);
    EXPECT_EQ(changes_.removeApplication("/a"), FirewallResult::kNotAvailable);
    expectLog({"WARNING: (Firewall App) " + text, "WARNING: (Firewall App) " + text});
    EXPECT_EQ(changes_.addPort({80, "n", kBoth}), FirewallResult::kNotAvailable);
    EXPECT_EQ(changes_.removePort("80\tTCP;UDP\tn"), FirewallResult::kNotAvailable);
    expectLog({"WARNING: (Firewall Port) " + text, "WARNING: (Firewall Port) " + text});
}

TEST_F(FirewallChangesTest, OtherFailuresAreErrors) {
    firewall_.failing = {{FirewallCall::kAddApplication, 5}, {FirewallCall::kRemoveApplication, 5}};
    EXPECT_EQ(changes_.addApplication("/a", "n"), FirewallResult::kFailed);
    EXPECT_EQ(changes_.removeApplication("/a"), FirewallResult::kFailed);
    expectLog({"ERROR: (Firewall App) Adding the application /a failed!",
               "ERROR: (Firewall App) Removing application /a"});
}

TEST_F(FirewallChangesTest, RemovesThePortOfTheRecord) {
    firewall_.ports = {{{80, FirewallProtocol::kTcp}, "Web TCP"},
                       {{80, FirewallProtocol::kUdp}, "Web UDP"},
                       {{81, FirewallProtocol::kTcp}, "Other"}};
    EXPECT_EQ(changes_.removePort("80\tUDP;TCP\tWeb"), FirewallResult::kDone);
    EXPECT_EQ(firewall_.ports, (Ports{{{81, FirewallProtocol::kTcp}, "Other"}}));
    EXPECT_EQ(firewall_.operations,
              (std::vector<std::string>{"connect", "removePort 80 TCP", "removePort 80 UDP", "close"}));
    EXPECT_EQ(changes_.removePort("81\tTCP"), FirewallResult::kDone);
    EXPECT_TRUE(firewall_.ports.empty());
    expectLog({});
}

TEST_F(FirewallChangesTest, APortThatStaysDoesNotKeepTheOtherOpen) {
    firewall_.ports = {{{80, FirewallProtocol::kTcp}, "a"}, {{80, FirewallProtocol::kUdp}, "b"}};
    firewall_.failing = {{FirewallCall::kRemovePort, 5}};
    EXPECT_EQ(changes_.removePort("80\tTCP;UDP\tn"), FirewallResult::kFailed);
    expectLog({"ERROR: (Firewall Port) Removing port 80! Error (5)",
               "ERROR: (Firewall Port) Removing port 80! Error (5)"});
}

TEST_F(FirewallChangesTest, TellsAStrangeProtocolAndGoesOn) {
    firewall_.ports = {{{80, FirewallProtocol::kUdp}, "n"}};
    EXPECT_EQ(changes_.removePort("80\ttcp;;UDP\tn"), FirewallResult::kDone);
    EXPECT_TRUE(firewall_.ports.empty());
    const std::string line = "WARNING: Malformed action log entry for firewall port: \"80\ttcp;;UDP\tn\"";
    expectLog({line, line});
}

TEST_F(FirewallChangesTest, ADamagedRecordFails) {
    for (const std::string record : {"", "80", "\tTCP\tn", "80\t\tn", "\t\t", "x\tTCP\tn", "0\tTCP\tn",
                                     "-80\tTCP\tn", "65536\tTCP\tn", "99999999999999999999\tTCP\tn"}) {
        expectDamaged(record,
                      {"ERROR: (Firewall Port) Invalid firewall port action log entry: \"" + record + "\""});
    }
    expectDamaged("80\tICMP\tn", {"WARNING: Malformed action log entry for firewall port: \"80\tICMP\tn\"",
                                  "ERROR: (Firewall Port) Invalid firewall protocol or none specified!"});
}

TEST_F(FirewallChangesTest, ARecordCutAnywhereCrashesNothing) {
    const std::string record = "65535\tTCP;UDP\tThe rule";
    for (std::size_t length = 0; length <= record.size(); ++length) {
        const FirewallResult result = changes_.removePort(record.substr(0, length).c_str());
        const bool complete = length >= std::string("65535\tTCP").size();
        EXPECT_EQ(result, complete ? FirewallResult::kDone : FirewallResult::kFailed) << length;
    }
}

}  // namespace
