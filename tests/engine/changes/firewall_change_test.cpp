#include "engine/changes/firewall_change.h"

#include <gmock/gmock.h>

#include "change_fixture.h"
#include "platform/error_text.h"

namespace {

using platform::FirewallCall;
using platform::FirewallProtocol;
using testing::ElementsAre;
using testing::IsEmpty;
using Ports = std::map<MemoryFirewall::Port, std::string>;

constexpr std::uint8_t kBoth = kFirewallTcp | kFirewallUdp;

class FirewallChangeTest : public ChangeTest {
protected:
    void expectLog(const std::vector<std::string>& lines) {
        EXPECT_EQ(log_.lines(), lines);
        log_.clear();
    }
    // Fails without asking the firewall for anything.
    void expectDamaged(const std::string& record, const std::vector<std::string>& lines) {
        EXPECT_EQ(FirewallChange::removePort(firewall_, console_, record).result, FirewallResult::kFailed)
            << record;
        expectLog(lines);
        EXPECT_TRUE(firewall_.operations.empty()) << record;
    }

    bool apply(const std::string& groups) {
        describe(groups);
        return change_.apply();
    }

    MemoryFirewall& firewall_ = machine_.firewall;
    FirewallChange change_{context_};
};

TEST_F(FirewallChangeTest, AddsAndRemovesAnApplication) {
    EXPECT_EQ(FirewallChange::addApplication(firewall_, console_, "/a", "Demo").result,
              FirewallResult::kDone);
    EXPECT_EQ(firewall_.applications, (std::map<std::string, std::string>{{"/a", "Demo"}}));
    EXPECT_EQ(FirewallChange::removeApplication(firewall_, console_, "/a").result, FirewallResult::kDone);
    EXPECT_TRUE(firewall_.applications.empty());
    expectLog({});
}

TEST_F(FirewallChangeTest, ConnectsForEachCall) {
    FirewallChange::removeApplication(firewall_, console_, "/a");
    FirewallChange::removePort(firewall_, console_, "80\tTCP\tn");
    EXPECT_EQ(firewall_.operations, (std::vector<std::string>{"connect", "removeApplication /a", "close",
                                                              "connect", "removePort 80 TCP", "close"}));
}

TEST_F(FirewallChangeTest, TakesWhatIsOpenAlreadyAsDone) {
    firewall_.applications["/a"] = "Theirs";
    firewall_.ports[{80, FirewallProtocol::kTcp}] = "Theirs";
    EXPECT_EQ(FirewallChange::addApplication(firewall_, console_, "/a", "Ours").result,
              FirewallResult::kDone);
    EXPECT_EQ(FirewallChange::addPort(firewall_, console_, {80, "Ours", kFirewallTcp}).result,
              FirewallResult::kDone);
    EXPECT_EQ(firewall_.applications["/a"], "Theirs");
    EXPECT_EQ(firewall_.ports, (Ports{{{80, FirewallProtocol::kTcp}, "Theirs"}}));
}

TEST_F(FirewallChangeTest, RefusesAnApplicationThatTheLogCanNotHold) {
    const std::string longest = "/" + std::string(1022 - std::string("FIREWALL\tAPP\t").size(), 'x');
    for (const std::string path : {"/a\tb", "/a "}) {
        EXPECT_EQ(FirewallChange::addApplication(firewall_, console_, path, "n").result,
                  FirewallResult::kFailed);
        expectLog({"ERROR: (Firewall App) The action log can not hold the application " + path + "!"});
    }
    EXPECT_EQ(FirewallChange::addApplication(firewall_, console_, longest + "x", "n").result,
              FirewallResult::kFailed);
    EXPECT_TRUE(firewall_.operations.empty());
    EXPECT_EQ(FirewallChange::addApplication(firewall_, console_, longest, "n").result,
              FirewallResult::kDone);
}

TEST_F(FirewallChangeTest, MakesOneRuleWithThePlainNameForOneProtocol) {
    EXPECT_EQ(FirewallChange::addPort(firewall_, console_, {80, "Web", kFirewallTcp}).result,
              FirewallResult::kDone);
    EXPECT_EQ(FirewallChange::addPort(firewall_, console_, {53, "Names", kFirewallUdp}).result,
              FirewallResult::kDone);
    EXPECT_EQ(firewall_.ports,
              (Ports{{{80, FirewallProtocol::kTcp}, "Web"}, {{53, FirewallProtocol::kUdp}, "Names"}}));
}

TEST_F(FirewallChangeTest, MakesTwoRulesWithTheirOwnNamesForTwoProtocols) {
    EXPECT_EQ(FirewallChange::addPort(firewall_, console_, {80, "Web", kBoth}).result, FirewallResult::kDone);
    EXPECT_EQ(firewall_.ports,
              (Ports{{{80, FirewallProtocol::kTcp}, "Web TCP"}, {{80, FirewallProtocol::kUdp}, "Web UDP"}}));
    EXPECT_EQ(firewall_.operations,
              (std::vector<std::string>{"connect", "isPortEnabled 80 TCP", "addPort 80 TCP Web TCP",
                                        "isPortEnabled 80 UDP", "addPort 80 UDP Web UDP", "close"}));
}

TEST_F(FirewallChangeTest, LeavesNothingOpenOfARuleThatFailsHalfway) {
    firewall_.failing = {{FirewallCall::kAddPort, 9}};
    firewall_.passing = {{FirewallCall::kAddPort, 1}};
    EXPECT_EQ(FirewallChange::addPort(firewall_, console_, {80, "Web", kBoth}).result,
              FirewallResult::kFailed);
    EXPECT_TRUE(firewall_.ports.empty());
    expectLog({"ERROR: (Firewall Port) Adding the port 80 failed! Error(9)"});
}

TEST_F(FirewallChangeTest, LeavesOpenWhatWasOpenBeforeARuleFailed) {
    firewall_.ports[{80, FirewallProtocol::kTcp}] = "Theirs";
    firewall_.failing = {{FirewallCall::kAddPort, 9}};
    EXPECT_EQ(FirewallChange::addPort(firewall_, console_, {80, "Web", kBoth}).result,
              FirewallResult::kFailed);
    EXPECT_EQ(firewall_.ports, (Ports{{{80, FirewallProtocol::kTcp}, "Theirs"}}));
}

TEST_F(FirewallChangeTest, LogsARuleThatCanNotBeTakenBack) {
    firewall_.failing = {{FirewallCall::kAddPort, 9}, {FirewallCall::kRemovePort, 8}};
    firewall_.passing = {{FirewallCall::kAddPort, 1}};
    EXPECT_EQ(FirewallChange::addPort(firewall_, console_, {80, "Web", kBoth}).result,
              FirewallResult::kFailed);
    expectLog({"ERROR: (Firewall Port) Removing port 80! Error (8)",
               "ERROR: (Firewall Port) Adding the port 80 failed! Error(9)"});
}

TEST_F(FirewallChangeTest, RefusesARuleWithoutProtocolNameOrPort) {
    EXPECT_EQ(FirewallChange::addPort(firewall_, console_, {80, "Web", 0}).result, FirewallResult::kFailed);
    EXPECT_EQ(FirewallChange::addPort(firewall_, console_, {80, "Web", 4}).result, FirewallResult::kFailed);
    EXPECT_EQ(FirewallChange::addPort(firewall_, console_, {80, "", kFirewallTcp}).result,
              FirewallResult::kFailed);
    EXPECT_EQ(FirewallChange::addPort(firewall_, console_, {0, "Web", kFirewallTcp}).result,
              FirewallResult::kFailed);
    EXPECT_TRUE(firewall_.ports.empty());
    expectLog({"ERROR: (Firewall Port) Invalid firewall protocol or none specified!",
               "ERROR: (Firewall Port) Invalid firewall protocol or none specified!",
               "ERROR: (Firewall Port) Invalid input arguments - FirewallOperations::addPort()",
               "ERROR: (Firewall Port) Invalid input arguments - FirewallOperations::addPort()"});
}

TEST_F(FirewallChangeTest, SaysThatThereIsNoService) {
    firewall_.failing = {{FirewallCall::kInitialize, -3}};
    const std::string text =
        "COM Interface initialization failed (Firewall service stopped/unaccessible)! Error(-3)";
    EXPECT_EQ(FirewallChange::addApplication(firewall_, console_, "/a", "n").result,
              FirewallResult::kNotAvailable);
    EXPECT_EQ(FirewallChange::removeApplication(firewall_, console_, "/a").result,
              FirewallResult::kNotAvailable);
    expectLog({"WARNING: (Firewall App) " + text, "WARNING: (Firewall App) " + text});
    EXPECT_EQ(FirewallChange::addPort(firewall_, console_, {80, "n", kBoth}).result,
              FirewallResult::kNotAvailable);
    EXPECT_EQ(FirewallChange::removePort(firewall_, console_, "80\tTCP;UDP\tn").result,
              FirewallResult::kNotAvailable);
    expectLog({"WARNING: (Firewall Port) " + text, "WARNING: (Firewall Port) " + text});
}

TEST_F(FirewallChangeTest, LogsOtherFailuresAsErrors) {
    firewall_.failing = {{FirewallCall::kAddApplication, 5}, {FirewallCall::kRemoveApplication, 5}};
    EXPECT_EQ(FirewallChange::addApplication(firewall_, console_, "/a", "n").result, FirewallResult::kFailed);
    EXPECT_EQ(FirewallChange::removeApplication(firewall_, console_, "/a").result, FirewallResult::kFailed);
    expectLog({"ERROR: (Firewall App) Adding the application /a failed!",
               "ERROR: (Firewall App) Removing application /a"});
}

TEST_F(FirewallChangeTest, RemovesThePortOfTheRecord) {
    firewall_.ports = {{{80, FirewallProtocol::kTcp}, "Web TCP"},
                       {{80, FirewallProtocol::kUdp}, "Web UDP"},
                       {{81, FirewallProtocol::kTcp}, "Other"}};
    EXPECT_EQ(FirewallChange::removePort(firewall_, console_, "80\tUDP;TCP\tWeb").result,
              FirewallResult::kDone);
    EXPECT_EQ(firewall_.ports, (Ports{{{81, FirewallProtocol::kTcp}, "Other"}}));
    EXPECT_EQ(firewall_.operations,
              (std::vector<std::string>{"connect", "removePort 80 TCP", "removePort 80 UDP", "close"}));
    EXPECT_EQ(FirewallChange::removePort(firewall_, console_, "81\tTCP").result, FirewallResult::kDone);
    EXPECT_TRUE(firewall_.ports.empty());
    expectLog({});
}

TEST_F(FirewallChangeTest, ClosesTheOtherProtocolWhenOneStaysOpen) {
    firewall_.ports = {{{80, FirewallProtocol::kTcp}, "a"}, {{80, FirewallProtocol::kUdp}, "b"}};
    firewall_.failing = {{FirewallCall::kRemovePort, 5}};
    EXPECT_EQ(FirewallChange::removePort(firewall_, console_, "80\tTCP;UDP\tn").result,
              FirewallResult::kFailed);
    expectLog({"ERROR: (Firewall Port) Removing port 80! Error (5)",
               "ERROR: (Firewall Port) Removing port 80! Error (5)"});
}

TEST_F(FirewallChangeTest, LogsAStrangeProtocolAndGoesOn) {
    firewall_.ports = {{{80, FirewallProtocol::kUdp}, "n"}};
    EXPECT_EQ(FirewallChange::removePort(firewall_, console_, "80\ttcp;;UDP\tn").result,
              FirewallResult::kDone);
    EXPECT_TRUE(firewall_.ports.empty());
    const std::string line = "WARNING: Malformed action log entry for firewall port: \"80\ttcp;;UDP\tn\"";
    expectLog({line, line});
}

TEST_F(FirewallChangeTest, RefusesADamagedRecord) {
    for (const std::string record : {"", "80", "\tTCP\tn", "80\t\tn", "\t\t", "x\tTCP\tn", "0\tTCP\tn",
                                     "-80\tTCP\tn", "65536\tTCP\tn", "99999999999999999999\tTCP\tn"}) {
        expectDamaged(record,
                      {"ERROR: (Firewall Port) Invalid firewall port action log entry: \"" + record + "\""});
    }
    expectDamaged("80\tICMP\tn", {"WARNING: Malformed action log entry for firewall port: \"80\tICMP\tn\"",
                                  "ERROR: (Firewall Port) Invalid firewall protocol or none specified!"});
}

TEST_F(FirewallChangeTest, SurvivesARecordThatIsCutAnywhere) {
    const std::string record = "65535\tTCP;UDP\tThe rule";
    for (std::size_t length = 0; length <= record.size(); ++length) {
        const FirewallResult result =
            FirewallChange::removePort(firewall_, console_, record.substr(0, length)).result;
        const bool complete = length >= std::string("65535\tTCP").size();
        EXPECT_EQ(result, complete ? FirewallResult::kDone : FirewallResult::kFailed) << length;
    }
}

TEST_F(FirewallChangeTest, ChangesAndShowsNothingWithoutAGroup) {
    EXPECT_TRUE(apply("<Installation/>"));
    EXPECT_THAT(ui_.calls, IsEmpty());
}

TEST_F(FirewallChangeTest, DoesNotTakeTheFirstElementForAGroup) {
    parse("<Firewall><Port Port='1'>x</Port></Firewall>");
    EXPECT_TRUE(change_.apply());
    EXPECT_THAT(firewall_.operations, IsEmpty());
}

TEST_F(FirewallChangeTest, AddsPortsAndApplicationsOfTheDescriptionAndRecordsThem) {
    variables_.set("D", "C:/apps");
    EXPECT_TRUE(
        apply("<Firewall><Port Port='30304'>Demo service</Port><Port Port='80' Protocol='TCP'>Web</Port>"
              "<Port Port='53' Protocol='UDP;ICMP'>Names</Port>"
              "<Application Target='[D]//server.exe'>Demo</Application></Firewall>"));
    EXPECT_EQ(firewall_.ports, (Ports{{{30304, FirewallProtocol::kTcp}, "Demo service TCP"},
                                      {{30304, FirewallProtocol::kUdp}, "Demo service UDP"},
                                      {{80, FirewallProtocol::kTcp}, "Web"},
                                      {{53, FirewallProtocol::kUdp}, "Names"}}));
    EXPECT_EQ(firewall_.applications, (std::map<std::string, std::string>{{"C:\\apps\\server.exe", "Demo"}}));
    EXPECT_EQ(records(),
              "FIREWALL\tPORT\t30304\tTCP;UDP\tDemo service\r\nFIREWALL\tPORT\t80\tTCP\tWeb\r\n"
              "FIREWALL\tPORT\t53\tUDP;ICMP\tNames\r\nFIREWALL\tAPP\tC:\\apps\\server.exe\r\n");
    expectLog({"WARNING: (Firewall): Unrecognized attribute token for protocol specification"});
    EXPECT_THAT(ui_.calls, ElementsAre("addFileLine(\"Firewall: Added port 30304\", 0)",
                                       "addFileLine(\"Firewall: Added port 80\", 0)",
                                       "addFileLine(\"Firewall: Added port 53\", 0)",
                                       "addFileLine(\"Firewall: Added exception for application: " +
                                           writtenPath("C:\\apps\\server.exe") + "\", 0)",
                                       "addFileLine(null, 1)"));
    EXPECT_THAT(errors_, IsEmpty());
}

TEST_F(FirewallChangeTest, SkipsWhatIsIncompleteUnknownOrNotWantedAndEverySecondGroup) {
    EXPECT_TRUE(
        apply("<Firewall><Port>x</Port><Port Port='1'></Port><Application "
              "Target='/a'/><Application>x</Application><Door Port='1'>x</Door>"
              "<Port Port='1' Condition='1==2'>x</Port></Firewall><Firewall><Port "
              "Port='1'>x</Port></Firewall>"));
    EXPECT_THAT(firewall_.operations, IsEmpty());
    EXPECT_TRUE(apply("<Firewall Condition='1==2'><Port Port='1'>x</Port></Firewall>"));
    EXPECT_THAT(firewall_.operations, IsEmpty());
    EXPECT_EQ(records(), "");
}

TEST_F(FirewallChangeTest, DoesNotFailWhenTheFirewallIsSwitchedOff) {
    firewall_.failing = {{FirewallCall::kNoService, 1}};
    EXPECT_TRUE(apply("<Firewall><Port Port='1'>x</Port></Firewall>"));
    const std::string text = "Firewall: Service is NOT switched on and no exceptions can be added!";
    EXPECT_THAT(ui_.calls, ElementsAre("addFileLine(\"" + text + "\", 0)", "addFileLine(null, 1)"));
    EXPECT_THAT(errors_, ElementsAre(text));
    EXPECT_EQ(records(), "");
}

TEST_F(FirewallChangeTest, FailsWithAnErrorAndGoesOn) {
    firewall_.failing = {{FirewallCall::kAddPort, 9}, {FirewallCall::kAddApplication, 5}};
    firewall_.ports[{2, FirewallProtocol::kTcp}] = "open before";
    EXPECT_FALSE(
        apply("<Firewall><Port Port='1'>one</Port><Application Target='t'>app</Application>"
              "<Port Port='2' Protocol='TCP'>two</Port></Firewall>"));
    expectLog(
        {"ERROR: (Firewall Port) Adding the port 1 failed! Error(9)", "ERROR: Adding firewall port: 1 (one)",
         "ERROR: (Firewall App) Adding the application t failed!", "ERROR: Adding firewall app: t (app)"});
    EXPECT_THAT(errors_, ElementsAre("Firewall: FAILED to add port 1",
                                     "Firewall: FAILED to add exception for application: t"));
    EXPECT_THAT(ui_.callsOf("addMessage"),
                ElementsAre("addMessage(\"port 1: " + platform::errorText(9) + "\")",
                            "addMessage(\"exception for application: t: " + platform::errorText(5) + "\")"));
    EXPECT_EQ(records(), "FIREWALL\tPORT\t2\tTCP\ttwo\r\n");
}

TEST_F(FirewallChangeTest, CutsTheNameOfARule) {
    apply("<Firewall><Port Port='1' Protocol='TCP'>" + std::string(600, 'n') + "</Port></Firewall>");
    EXPECT_EQ(firewall_.ports, (Ports{{{1, FirewallProtocol::kTcp}, std::string(511, 'n')}}));
}

TEST_F(FirewallChangeTest, TakesItsRecordsBack) {
    firewall_.applications["/app/s"] = "s";
    firewall_.ports = {{{80, FirewallProtocol::kTcp}, "a"}, {{80, FirewallProtocol::kUdp}, "b"}};
    EXPECT_TRUE(change_.undo({"FIREWALL", "APP\t/app/s"}));
    EXPECT_TRUE(change_.undo({"FIREWALL", "PORT\t80\tTCP;UDP\tName"}));
    EXPECT_TRUE(firewall_.applications.empty());
    EXPECT_TRUE(firewall_.ports.empty());
    expectLines({"Removed application from firewall: /app/s", "Removed port from firewall: 80"});
    EXPECT_THAT(errors_, IsEmpty());
}

TEST_F(FirewallChangeTest, IgnoresRecordsOfAnotherKind) {
    EXPECT_TRUE(change_.undo({"FIREWALL", "X"}));
    EXPECT_TRUE(change_.undo({"FIREWALL", ""}));
    EXPECT_THAT(ui_.calls, IsEmpty());
    EXPECT_THAT(firewall_.operations, IsEmpty());
}

TEST_F(FirewallChangeTest, FailsTheUninstallationForARuleThatStays) {
    firewall_.failing = {{FirewallCall::kRemovePort, 5}};
    EXPECT_FALSE(change_.undo({"FIREWALL", "PORT\t80\tTCP\tName"}));
    EXPECT_THAT(errors_, ElementsAre("FAILED to remove port from firewall: 80"));
    EXPECT_THAT(ui_.callsOf("addMessage"),
                ElementsAre("addMessage(\"port from firewall: 80: " + platform::errorText(5) + "\")"));
    EXPECT_TRUE(log_.hasLine("ERROR: Uninstall: Failed to undo a FirwallAction (PORT\t80\tTCP\tName)!"));
}

TEST_F(FirewallChangeTest, DoesNotFailTheUninstallationWhenTheFirewallIsSwitchedOff) {
    firewall_.failing = {{FirewallCall::kNoService, 1}};
    EXPECT_TRUE(change_.undo({"FIREWALL", "APP\t/app/s"}));
    EXPECT_THAT(errors_,
                ElementsAre("Firewall: Service is NOT switched on and no exceptions can be removed!"));
}

}  // namespace
