#include "description/default_values_reader.h"

#include "description/default_values_fixture.h"

namespace {

class DefaultValuesReaderTest : public DefaultValuesFixture {
protected:
    bool read(const std::string& values) {
        PXML document;
        document.parseText("<Root><DefValues>" + values + "</DefValues></Root>");
        return reader_.readDefValues(document, commandLine_);
    }
    const InstallVariable& stored(const char* name) {
        return variables_.at(variables_.find(name).value_or(0));
    }

    DefaultValuesReader reader_{variables_, expressions_, sources_, console_};
};

TEST_F(DefaultValuesReaderTest, ADocumentWithoutTheSectionFails) {
    parse("<Root/>");
    EXPECT_FALSE(reader_.readDefValues(document_, nullptr));
    EXPECT_FALSE(variables_.isInitializingDefaults());
}

TEST_F(DefaultValuesReaderTest, AValueIsExpandedAndKeepsItsExpression) {
    read(
        "<Value Name=\"A\" DataType=\"value\">/opt</Value><Value Name=\"B\" DataType=\"VALUE\">$A/x</Value>");
    EXPECT_EQ(valueOf("B"), "/opt/x");
    EXPECT_EQ(defaultOf("B"), "/opt/x");
    EXPECT_EQ(stored("B").expression, "$A/x");
    EXPECT_FALSE(stored("B").recalculate);
}

TEST_F(DefaultValuesReaderTest, AWordThatBeginsWithADataTypeCountsAsIt) {
    read("<Value Name=\"A\" DataType=\"value2\">1</Value>");
    EXPECT_EQ(valueOf("A"), "1");
}

TEST_F(DefaultValuesReaderTest, AnUnknownDataTypeLeavesWhatThePassBeforeGave) {
    read("<Value Name=\"A\" DataType=\"other\">text</Value>");
    EXPECT_EQ(valueOf("A"), "");
    EXPECT_EQ(defaultOf("A"), "text");
    EXPECT_EQ(log_.text(), "");
}

TEST_F(DefaultValuesReaderTest, AForwardReferenceFindsAnEmptyVariable) {
    read(
        "<Value Name=\"A\" DataType=\"value\">[$B]$B.</Value><Value Name=\"B\" "
        "DataType=\"value\">late</Value>");
    EXPECT_EQ(valueOf("A"), "[].");
}

TEST_F(DefaultValuesReaderTest, AnUnknownReferenceStoresNothingMore) {
    read("<Value Name=\"A\" DataType=\"value\">$NOWHERE/x</Value>");
    EXPECT_EQ(valueOf("A"), "");
    EXPECT_EQ(defaultOf("A"), "$NOWHERE/x");
}

TEST_F(DefaultValuesReaderTest, OfTwoValuesWithExclusiveConditionsTheTrueOneCounts) {
    read(
        "<Value Name=\"A\" DataType=\"value\" Condition=\"1==1\">yes</Value>"
        "<Value Name=\"A\" DataType=\"value\" Condition=\"1==2\">no</Value>");
    EXPECT_EQ(valueOf("A"), "yes");
    EXPECT_EQ(log_.text(), "");
}

TEST_F(DefaultValuesReaderTest, OnAFirstRunUseOldMakesTheVariable) {
    read("<Value Name=\"A\" DataType=\"value\" UseOld=\"1\">new</Value>");
    EXPECT_EQ(valueOf("A"), "new");
    EXPECT_EQ(defaultOf("A"), "new");
}

TEST_F(DefaultValuesReaderTest, UseOldKeepsAnEarlierValueAndUpdatesTheDefault) {
    variables_.set("A", "old");
    read("<Value Name=\"A\" DataType=\"value\" UseOld=\"1\">new</Value>");
    EXPECT_EQ(valueOf("A"), "old");
    EXPECT_EQ(defaultOf("A"), "new");
}

TEST_F(DefaultValuesReaderTest, UseOldReplacesAnEmptyEarlierValue) {
    variables_.set("A", "");
    read("<Value Name=\"A\" DataType=\"value\" UseOld=\"1\">new</Value>");
    EXPECT_EQ(valueOf("A"), "new");
    EXPECT_EQ(defaultOf("A"), "new");
}

TEST_F(DefaultValuesReaderTest, WithoutUseOldAnEarlierValueGoes) {
    variables_.set("A", "old");
    variables_.set("B", "old");
    read(
        "<Value Name=\"A\" DataType=\"value\" UseOld=\"0\">new</Value><Value Name=\"B\" "
        "DataType=\"value\">new</Value>");
    EXPECT_EQ(valueOf("A"), "new");
    EXPECT_EQ(valueOf("B"), "new");
}

TEST_F(DefaultValuesReaderTest, RecalculateFollowsTheExpression) {
    read(
        "<Value Name=\"A\" DataType=\"value\">1</Value>"
        "<Value Name=\"B\" DataType=\"value\" Recalculate=\"1\">$A/x</Value>"
        "<Value Name=\"C\" DataType=\"value\" Recalculate=\"0\">$A/x</Value>");
    variables_.set("A", "2");
    EXPECT_EQ(valueOf("B"), "2/x");
    EXPECT_EQ(valueOf("C"), "1/x");
}

TEST_F(DefaultValuesReaderTest, AValueThatTheUserChangedStopsFollowing) {
    variables_.set("A", "changed");
    variables_.set("B", "x//y ");
    read(
        "<Value Name=\"A\" DataType=\"value\" Recalculate=\"1\" UseOld=\"1\">fresh</Value>"
        "<Value Name=\"B\" DataType=\"value\" Recalculate=\"1\" UseOld=\"1\">x\\y</Value>"
        "<Value Name=\"C\" DataType=\"value\" Recalculate=\"1\" UseOld=\"1\">new</Value>");
    EXPECT_FALSE(stored("A").recalculate);
    EXPECT_TRUE(stored("B").recalculate);
    EXPECT_TRUE(stored("C").recalculate);
}

TEST_F(DefaultValuesReaderTest, ANameWithADollarSetsTheEnvironment) {
    read("<Value Name=\"$FOO\" DataType=\"value\">bar</Value>");
    EXPECT_EQ(environment_.variables["FOO"], "bar");
    EXPECT_EQ(variables_.getCount(), 0);
}

TEST_F(DefaultValuesReaderTest, MissingAttributesAreToldWithTheirPlace) {
    read("<Value Name=\"A\">x</Value><Value DataType=\"value\">x</Value><Value>x</Value>");
    EXPECT_EQ(
        log_.lines(),
        (std::vector<std::string>{
            "WARNING: A variable in <DefValues> is missing \"Type\" attribute! (Value index: 0 with name: A)",
            "WARNING: A variable in <DefValues> is missing \"Name\" attribute! (Value index: 1)",
            "WARNING: A variable in <DefValues> is missing \"Type\" and \"Name\" attribute! (Value index: "
            "2)"}));
}

TEST_F(DefaultValuesReaderTest, OtherElementsAreTold) {
    read("<Thing/><value Name=\"A\" DataType=\"value\">1</value>");
    EXPECT_EQ(log_.lines(),
              std::vector<std::string>{"WARNING: Unrecognized tag type \"Thing\" in <DefValues> tag!"});
    EXPECT_EQ(valueOf("A"), "1");
}

constexpr char kRegistryValue[] =
    "<Value Name=\"A\" DataType=\"registry\" RegPlace=\"HKEY_LOCAL_MACHINE\" RegKey=\"k\" "
    "Default=\"fallback\">Name</Value>";

TEST_F(DefaultValuesReaderTest, ARegistryValueIsPublished) {
    system_.registryValues["HKEY_LOCAL_MACHINE\\k\\Name"] = {1, "found"};
    read(kRegistryValue);
    EXPECT_EQ(valueOf("A"), "found");
    EXPECT_EQ(defaultOf("A"), "found");
}

TEST_F(DefaultValuesReaderTest, AMissingRegistryValueGivesTheDefault) {
    read(kRegistryValue);
    EXPECT_EQ(valueOf("A"), "fallback");
}

TEST_F(DefaultValuesReaderTest, AMissingRegistryValueLeavesAnEarlierValueThatIsKept) {
    variables_.set("A", "old");
    read(
        "<Value Name=\"A\" DataType=\"registry\" UseOld=\"1\" RegPlace=\"HKEY_USERS\" RegKey=\"k\" "
        "Default=\"d\">N</Value>");
    EXPECT_EQ(valueOf("A"), "old");
}

TEST_F(DefaultValuesReaderTest, ARegistryValueNeedsPlaceAndKey) {
    read("<Value Name=\"A\" DataType=\"registry\" RegKey=\"k\" Default=\"d\">N</Value>");
    EXPECT_EQ(valueOf("A"), "");
    EXPECT_EQ(defaultOf("A"), "d");
}

TEST_F(DefaultValuesReaderTest, AVariableOfAnotherProductComesFromItsLog) {
    system_.installed.push_back({"Other", "", false, "/other.log"});
    logs_.values["/other.log:DIR"] = "/opt/other";
    read(
        "<Value Name=\"A\" DataType=\"installvar\" AppName=\"Other\" Default=\"d\">DIR</Value>"
        "<Value Name=\"B\" DataType=\"installvar\" AppName=\"Other\" Default=\"d\">NONE</Value>"
        "<Value Name=\"C\" DataType=\"installvar\" AppName=\"Missing\" Default=\"d\">DIR</Value>"
        "<Value Name=\"D\" DataType=\"installvar\" Default=\"d\">DIR</Value>");
    EXPECT_EQ(valueOf("A"), "/opt/other");
    EXPECT_EQ(valueOf("B"), "d");
    EXPECT_EQ(valueOf("C"), "d");
    EXPECT_EQ(valueOf("D"), "");
}

TEST_F(DefaultValuesReaderTest, AnInstalledApplicationIsOne) {
    system_.installed.push_back({"Other", "", false, ""});
    read(
        "<Value Name=\"A\" DataType=\"install_app\" Default=\"no\">Other</Value>"
        "<Value Name=\"B\" DataType=\"install_app\" Default=\"no\">Missing</Value>"
        "<Value Name=\"C\" DataType=\"install_app\">Missing</Value>");
    EXPECT_EQ(valueOf("A"), "1");
    EXPECT_EQ(defaultOf("A"), "no");
    EXPECT_EQ(valueOf("B"), "no");
    EXPECT_EQ(valueOf("C"), "0");
}

TEST_F(DefaultValuesReaderTest, AnApplicationWithoutNameIsNotAskedFor) {
    system_.installed.push_back({"", "", false, ""});
    read("<Value Name=\"A\" DataType=\"install_app\" Default=\"no\"></Value>");
    EXPECT_EQ(valueOf("A"), "");
    EXPECT_TRUE(system_.calls.empty());
}

TEST_F(DefaultValuesReaderTest, ARunningProcessIsOneInItsDirectory) {
    system_.running = {"tool.exe@\\opt\\bin"};
    variables_.set("D", "/opt");
    read(
        "<Value Name=\"A\" DataType=\"checkproc\" Directory=\"[D]//bin \">tool.exe</Value>"
        "<Value Name=\"B\" DataType=\"checkproc\" Directory=\"[D]/other\">tool.exe</Value>");
    EXPECT_EQ(valueOf("A"), "1");
    EXPECT_EQ(valueOf("B"), "0");
}

TEST_F(DefaultValuesReaderTest, ADirectoryThatCannotBeExpandedIsNotAskedFor) {
    system_.running = {"tool.exe"};
    read("<Value Name=\"A\" DataType=\"checkproc\" Directory=\"[NOWHERE]\">tool.exe</Value>");
    EXPECT_EQ(valueOf("A"), "1");
}

TEST_F(DefaultValuesReaderTest, OfTheCommandLineTheLastArgumentCounts) {
    arguments_.list = {{"Mode", "1"}, {"MODE", "2"}, {"Bare", ""}};
    read(
        "<Value Name=\"mode\" DataType=\"cmdlinearg\">d</Value><Value Name=\"bare\" "
        "DataType=\"cmdlinearg\">d</Value>"
        "<Value Name=\"absent\" DataType=\"cmdlinearg\">d</Value>");
    EXPECT_EQ(valueOf("mode"), "2");
    EXPECT_EQ(valueOf("bare"), "1");
    EXPECT_EQ(valueOf("absent"), "d");
    EXPECT_EQ(defaultOf("absent"), "d");
}

TEST_F(DefaultValuesReaderTest, WithoutACommandLineNothingIsTakenFromIt) {
    commandLine_ = nullptr;
    read("<Value Name=\"A\" DataType=\"cmdlinearg\">d</Value>");
    EXPECT_EQ(valueOf("A"), "");
}

TEST_F(DefaultValuesReaderTest, AFileThatExistsGivesItsPath) {
    files_.addFile("\\opt\\tool", "");
    variables_.set("D", "/opt");
    read(
        "<Value Name=\"A\" DataType=\"checkfile\" Default=\"none\">$D/tool</Value>"
        "<Value Name=\"B\" DataType=\"checkfile\">$D/other</Value>"
        "<Value Name=\"C\" DataType=\"checkfile\" Default=\"none\">$NOWHERE/tool</Value>");
    EXPECT_EQ(valueOf("A"), "\\opt\\tool");
    EXPECT_EQ(defaultOf("A"), "none");
    EXPECT_EQ(valueOf("B"), "0");
    EXPECT_EQ(valueOf("C"), "");
    EXPECT_EQ(defaultOf("C"), "none");
}

TEST_F(DefaultValuesReaderTest, AFileCheckShouldNotKeepOldValues) {
    variables_.set("A", "old");
    read("<Value Name=\"A\" DataType=\"checkfile\" UseOld=\"1\" Default=\"none\">/missing</Value>");
    EXPECT_EQ(valueOf("A"), "none");
    EXPECT_EQ(defaultOf("A"), "none");
    EXPECT_EQ(log_.lines(),
              std::vector<std::string>{
                  "WARNING: File check variables should NOT be used from previous installations!"});
}

TEST_F(DefaultValuesReaderTest, AnEnvironmentVariableOrItsDefault) {
    environment_.variables = {{"HOME", "/root"}, {"EMPTY", ""}};
    read(
        "<Value Name=\"A\" DataType=\"envvar\" Default=\"d\">HOME</Value>"
        "<Value Name=\"B\" DataType=\"envvar\" Default=\"d\">NOWHERE</Value>"
        "<Value Name=\"C\" DataType=\"envvar\">NOWHERE</Value>"
        "<Value Name=\"D\" DataType=\"envvar\" Default=\"d\">EMPTY</Value>");
    EXPECT_EQ(valueOf("A"), "/root");
    EXPECT_EQ(defaultOf("A"), "d");
    EXPECT_EQ(valueOf("B"), "d");
    EXPECT_EQ(valueOf("C"), "");
    EXPECT_EQ(valueOf("D"), "");
}

TEST_F(DefaultValuesReaderTest, NothingIsRecalculatedMeanwhile) {
    read(
        "<Value Name=\"A\" DataType=\"value\" Recalculate=\"1\">$B</Value><Value Name=\"B\" "
        "DataType=\"value\">1</Value>");
    EXPECT_EQ(valueOf("A"), "");
    variables_.set("B", "2");
    EXPECT_EQ(valueOf("A"), "2");
}

TEST_F(DefaultValuesReaderTest, TenThousandVariablesAreRead) {
    std::string values;
    for (int i = 0; i < 10000; ++i) {
        values +=
            "<Value Name=\"V" + std::to_string(i) + "\" DataType=\"value\">" + std::to_string(i) + "</Value>";
    }
    read(values);
    EXPECT_EQ(variables_.getCount(), 10000);
    EXPECT_EQ(valueOf("v9999"), "9999");
}

TEST_F(DefaultValuesReaderTest, NotesWhereEachValueComesFrom) {
    environment_.variables["PLACE"] = "/here";
    variables_.set("KEPT", "/old");
    read(
        "<Value Name='BASE' DataType='envvar'>PLACE</Value>"
        "<Value Name='DIR' DataType='value'>$BASE/x</Value>"
        "<Value Name='DOC' DataType='value' Recalculate='1'>$DIR/doc</Value>"
        "<Value Name='KEPT' DataType='value' UseOld='1'>$BASE/kept</Value>"
        "<Value Name='FIXED' DataType='value'>text</Value>"
        "<Value Name='MODE' DataType='cmdlinearg'>slow</Value>"
        "<Value Name='FILE' DataType='checkfile' Default='none'>/missing</Value>");
    const auto isFromItsOrigin = [this](const char* name) {
        return variables_.isFromItsOrigin(variables_.find(name).value());
    };
    for (const char* name : {"BASE", "DIR", "DOC", "FILE"}) {
        EXPECT_TRUE(isFromItsOrigin(name)) << name;
    }
    for (const char* name : {"KEPT", "FIXED", "MODE"}) {
        EXPECT_FALSE(isFromItsOrigin(name)) << name;
    }
}

}  // namespace
