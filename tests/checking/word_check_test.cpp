#include "checking/word_check.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "checking/check_context.h"
#include "checking/findings_of.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<Finding> wordFindings(std::string_view text) {
    MemoryFileSystem files;
    Findings findings(text);
    SourceDocument source;
    EXPECT_TRUE(source.read(text, findings)) << text;
    checkWords(CheckContext(source, {}, findings, files, std::nullopt));
    return findings.sorted();
}

// Of the content of the top element, which counts from line 2 on.
std::vector<Finding> findingsIn(const std::string& content) {
    return wordFindings("<TandrelGroupInstallation>\n" + content + "\n</TandrelGroupInstallation>");
}

std::vector<std::string> shownIn(const std::string& content) {
    return shown(findingsIn(content));
}

std::vector<std::string> shownOnPage(const std::string& content) {
    return shownIn("<Dialogs><Page>\n" + content + "\n</Page></Dialogs>");
}

TEST(WordCheck, FindsElementsThatHaveNoPlace) {
    EXPECT_THAT(shownIn("<Dialog/>"), ElementsAre("2:1 element-unknown"));
    EXPECT_THAT(shownIn("<dialogs/>"), ElementsAre("2:1 element-case"));
    EXPECT_THAT(shownIn("<Dialogs><P><FN>a</FN></P></Dialogs>"), ElementsAre("2:13 element-misplaced"));
    EXPECT_THAT(shownIn("<ProductDesc><LetterVersion>a</LetterVersion></ProductDesc>"),
                ElementsAre("2:14 element-idle"));
    EXPECT_THAT(shown(wordFindings("<Other><ProductDesc/></Other>")), ElementsAre("1:1 element-unknown"))
        << "nothing is said of what is below";
}

TEST(WordCheck, SaysWhatIsPerhapsMeant) {
    EXPECT_EQ(findingsIn("<Dialog/>").front().hint, "Write \"Dialogs\" if that is what is meant.");
    EXPECT_EQ(findingsIn("<Quite/>").front().hint, "Take it out, or correct its name.");
    EXPECT_EQ(findingsIn("<dialogs/>").front().hint, "Write \"Dialogs\".");
    EXPECT_EQ(findingsIn("<FileSet Name='a' Conditoin='1'/>").front().hint,
              "Write \"Condition\" if that is what is meant.");
}

TEST(WordCheck, FindsARepeatedElementOnlyWhereTheFirstOneCounts) {
    EXPECT_THAT(shownIn("<Dialogs/>\n<Dialogs/>"), ElementsAre("3:1 element-repeated"));
    EXPECT_THAT(shownIn("<Firewall/><Installation>\n<Firewall/></Installation>"),
                ElementsAre("3:1 element-repeated"));
    EXPECT_THAT(shownIn("<FileSet Name='a'/>\n<FileSet Name='b'/>"), IsEmpty());
    for (const std::string container : {"AdditionalInstall", "PostInstall", "PreUninstall"}) {
        EXPECT_THAT(shownIn("<Installation><" + container + "/>\n<" + container + "/></Installation>"),
                    IsEmpty())
            << container;
    }
}

TEST(WordCheck, FindsUnknownAndMissingAttributes) {
    EXPECT_THAT(shownIn("<FileSet Name='a' Order='1'/>"), ElementsAre("2:19 attribute-unknown"));
    EXPECT_THAT(shownIn("<FileSet/>"), ElementsAre("2:1 attribute-missing"));
    EXPECT_THAT(shownIn("<FileSet Name=''/>"), ElementsAre("2:16 attribute-empty"));
    EXPECT_THAT(shownIn("<FileSet name='a'/>"), IsEmpty()) << "case doesn't count";
    EXPECT_THAT(shownIn("<FileSet Name='a' NAME='b'/>"), ElementsAre("2:19 attribute-repeated"));
    EXPECT_THAT(shownIn("<FileSet Name='a' xmlns:e='urn:e' xml:lang='en' "
                        "xsi:noNamespaceSchemaLocation='install.xsd'/>"),
                IsEmpty())
        << "they are for editors";
}

TEST(WordCheck, LetsTheDefaultValueOfAKeyHaveNoName) {
    EXPECT_THAT(shownIn("<PostInstall><Registry><AddValue Place='HKEY_USERS' Path='a' Value=''>b</AddValue>"
                        "</Registry></PostInstall>"),
                IsEmpty());
}

TEST(WordCheck, FindsTextsThatAreMissingOrHaveNoPlace) {
    EXPECT_THAT(shownIn("<ProductDesc><Fullname/></ProductDesc>"), ElementsAre("2:14 text-missing"));
    EXPECT_THAT(shownIn("<FileSet Name='a'>\n text</FileSet>"), ElementsAre("3:2 text-ignored"));
}

TEST(WordCheck, FindsTextsThatWouldBeCut) {
    const std::string room(1023, 'a');
    EXPECT_THAT(shownIn("<ProductDesc><Fullname>" + room + "</Fullname></ProductDesc>"), IsEmpty());
    EXPECT_THAT(shownIn("<ProductDesc><Fullname>" + room + "a</Fullname></ProductDesc>"),
                ElementsAre("2:24 text-too-long"));
    EXPECT_THAT(shownIn("<FileSet Name='" + std::string(199, 'a') + "'/>"),
                ElementsAre("2:16 text-too-long"));
}

TEST(WordCheck, FindsWordsThatNobodyUnderstands) {
    EXPECT_THAT(shownOnPage("<Field Type='EditBoxes'>A</Field>"), ElementsAre("3:14 word-unknown"));
    EXPECT_THAT(shownOnPage("<Field Type='editbox'>A</Field>"), IsEmpty());
    EXPECT_THAT(shownIn("<Firewall><Port Port='80' Protocol='tcp'>a</Port></Firewall>"),
                ElementsAre("2:37 word-case"));
    EXPECT_THAT(shownOnPage("<Trigger EvaluateOn='Start;Often' Type='VarReset' Variable='A'/>"),
                ElementsAre("3:22 word-unknown"))
        << "at the list that has it";
    EXPECT_EQ(findingsIn("<Firewall><Port Port='80' Protocol='quite other'>a</Port></Firewall>").front().hint,
              "Write one of \"TCP\", \"UDP\".");
}

TEST(WordCheck, FindsNumbersThatAreNone) {
    EXPECT_THAT(shownOnPage("<Text x='1o' y='20'>a</Text>"), ElementsAre("3:10 number-invalid"));
    EXPECT_THAT(shownOnPage("<Text x='-1' y='20'>a</Text>"), IsEmpty());
    EXPECT_THAT(shownOnPage("<Text x='' y='99999999999'>a</Text>"),
                ElementsAre("3:10 attribute-empty", "3:15 number-invalid"));
    for (const char* port : {"0", "65536", "-1"}) {
        EXPECT_THAT(shownIn(std::string("<Firewall><Port Port='") + port + "'>a</Port></Firewall>"),
                    ElementsAre("2:23 number-range"))
            << port;
    }
    EXPECT_THAT(shownIn("<Firewall><Port Port='65535'>a</Port></Firewall>"), IsEmpty());
    EXPECT_THAT(shownIn("<PostInstall><Registry><RemoveKey Place='HKEY_USERS' Path='a' KeyCount='0'/>"
                        "</Registry></PostInstall>"),
                ElementsAre("2:73 number-range"));
}

TEST(WordCheck, FindsColoursThatAreNone) {
    EXPECT_THAT(shownIn("<ColourTheme><ButtonsText>red</ButtonsText></ColourTheme>"),
                ElementsAre("2:27 colour-invalid"));
    EXPECT_THAT(shownIn("<ColourTheme><ButtonsText>0xFF00ff</ButtonsText><ButtonsText>12345678</ButtonsText>"
                        "</ColourTheme>"),
                IsEmpty());
    EXPECT_THAT(shownIn("<Dialogs><Page BkgColour='12345'/></Dialogs>"), ElementsAre("2:27 colour-invalid"));
    const std::string theme = "<ColourTheme><CustomGroup Name='Warning'>e84d00</CustomGroup></ColourTheme>";
    EXPECT_THAT(shownIn(theme + "\n<Dialogs><Page BkgColour='Group:Warning'/></Dialogs>"), IsEmpty());
    EXPECT_THAT(shownIn(theme + "\n<Dialogs><Page BkgColour='Group:warning'/></Dialogs>"),
                ElementsAre("3:27 colour-group-unknown"));
}

TEST(WordCheck, FindsSwitchesThatAreOnAlthoughTheyLookOff) {
    for (const char* value : {"0", "no", "False", "OFF"}) {
        EXPECT_THAT(shownIn(std::string("<FileSet Name='a'><FN Dest='b' Executable='") + value +
                            "'>c</FN></FileSet>"),
                    ElementsAre("2:44 switch-on"))
            << value;
    }
    EXPECT_THAT(shownIn("<FileSet Name='a'><FN Dest='b' Executable='1'>c</FN></FileSet>"), IsEmpty());
    EXPECT_THAT(shownIn("<DefValues><Value Name='A' DataType='value' Recalculate='0'>b</Value></DefValues>"),
                IsEmpty());
}

}  // namespace
