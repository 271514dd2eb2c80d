#include "engine/firewall_tags.h"

#include <gmock/gmock.h>

#include "tags_fixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class FirewallTagsTest : public TagsTest {
protected:
    int apply(const std::string& groups) {
        describe(groups);
        return walker_.apply(&ui_);
    }

    FirewallTags walker_{context_};
};

TEST_F(FirewallTagsTest, GiveZeroAtOnceWithoutAGroup) {
    EXPECT_EQ(apply("<Installation/>"), 0);
    EXPECT_THAT(ui_.calls, IsEmpty());
}

TEST_F(FirewallTagsTest, DoNotTakeTheFirstElementForAGroup) {
    parse("<Firewall><Port Port='1'>x</Port></Firewall>");
    EXPECT_EQ(walker_.apply(&ui_), 0);
    EXPECT_THAT(changes_.calls, IsEmpty());
}

TEST_F(FirewallTagsTest, AddPortsAndApplicationsAndRecordThem) {
    variables_.setVariable("D", "C:/apps");
    EXPECT_EQ(
        apply("<Firewall><Port Port='30304'>Demo service</Port><Port Port='80' Protocol='TCP'>Web</Port>"
              "<Port Port='53' Protocol='UDP;ICMP'>Names</Port>"
              "<Application Target='[D]//server.exe'>Demo</Application></Firewall>"),
        0);
    EXPECT_THAT(changes_.calls, ElementsAre("firewallAddPort(30304, Demo service, 3)",
                                            "firewallAddPort(80, Web, 1)", "firewallAddPort(53, Names, 2)",
                                            "firewallAddApplication(C:\\apps\\server.exe, Demo)"));
    EXPECT_EQ(records(),
              "FIREWALL\tPORT\t30304\tTCP;UDP\tDemo service\r\nFIREWALL\tPORT\t80\tTCP\tWeb\r\n"
              "FIREWALL\tPORT\t53\tUDP;ICMP\tNames\r\nFIREWALL\tAPP\tC:\\apps\\server.exe\r\n");
    EXPECT_THAT(log_.lines(),
                ElementsAre("WARNING: (Firewall): Unrecognized attribute token for protocol specification"));
    EXPECT_THAT(
        ui_.calls,
        ElementsAre("addFileLine(\"Firewall: Added port 30304\", 0)",
                    "addFileLine(\"Firewall: Added port 80\", 0)",
                    "addFileLine(\"Firewall: Added port 53\", 0)",
                    "addFileLine(\"Firewall: Added exception for application: C:\\apps\\server.exe\", 0)",
                    "addFileLine(null, 1)"));
    EXPECT_THAT(errors_, IsEmpty());
}

TEST_F(FirewallTagsTest, PassOverWhatIsIncompleteUnknownOrNotWantedAndEverySecondGroup) {
    EXPECT_EQ(apply("<Firewall><Port>x</Port><Application>x</Application><Door Port='1'>x</Door>"
                    "<Port Port='1' Condition='1==2'>x</Port></Firewall><Firewall><Port "
                    "Port='1'>x</Port></Firewall>"),
              0);
    EXPECT_THAT(changes_.calls, IsEmpty());
    EXPECT_EQ(apply("<Firewall Condition='1==2'><Port Port='1'>x</Port></Firewall>"), 0);
    EXPECT_THAT(changes_.calls, IsEmpty());
}

TEST_F(FirewallTagsTest, DoNotFailWhenTheFirewallIsSwitchedOff) {
    changes_.firewall = FirewallResult::kNotAvailable;
    EXPECT_EQ(apply("<Firewall><Port Port='1'>x</Port></Firewall>"), 0);
    const std::string text = "Firewall: Service is NOT switched on and no exceptions can be added!";
    EXPECT_THAT(ui_.calls, ElementsAre("addFileLine(\"" + text + "\", 0)", "addFileLine(null, 1)"));
    EXPECT_THAT(errors_, ElementsAre(text));
    EXPECT_EQ(records(), "");
}

TEST_F(FirewallTagsTest, FailWithAnErrorAndGoOn) {
    changes_.failing = {"firewallAddPort(1)", "firewallAddApplication"};
    EXPECT_EQ(apply("<Firewall><Port Port='1'>one</Port><Application Target='t'>app</Application>"
                    "<Port Port='2'>two</Port></Firewall>"),
              -1);
    EXPECT_THAT(log_.lines(),
                ElementsAre("ERROR: Adding firewall port: 1 (one)", "ERROR: Adding firewall app: t (app)"));
    EXPECT_THAT(errors_, ElementsAre("Firewall: FAILED to add port 1",
                                     "Firewall: FAILED to add exception for application: t"));
    EXPECT_EQ(records(), "FIREWALL\tPORT\t2\tTCP;UDP\ttwo\r\n");
}

TEST_F(FirewallTagsTest, CutTheNameOfARule) {
    apply("<Firewall><Port Port='1'>" + std::string(600, 'n') + "</Port></Firewall>");
    EXPECT_THAT(changes_.calls, ElementsAre("firewallAddPort(1, " + std::string(511, 'n') + ", 3)"));
}

}  // namespace
