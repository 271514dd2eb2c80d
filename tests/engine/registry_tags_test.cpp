#include "engine/registry_tags.h"

#include <gmock/gmock.h>

#include "tags_fixture.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class RegistryTagsTest : public TagsTest {
protected:
    void apply(const std::string& children) {
        describe(
            "<Installation><Uninstall><InstallLogFile>/tmp/product.log</InstallLogFile></Uninstall>"
            "</Installation><Registry>" +
            children + "</Registry>");
        walker_.applyRegistryTag(&ui_, tags_.firstOf("Registry"));
    }

    const std::string at_ = "Place='HKEY_LOCAL_MACHINE' Path='Software/Demo' ";
    RegistryTags walker_{context_, product_};
};

TEST_F(RegistryTagsTest, WriteAValueAndRecordItAlone) {
    apply("<AddValue " + at_ + "Value='N' Type='REG_DWORD'>10</AddValue>");
    EXPECT_THAT(changes_.calls,
                ElementsAre("writeRegistryValue(HKEY_LOCAL_MACHINE, Software\\Demo, REG_DWORD, N, 10)"));
    EXPECT_EQ(records(), "REGVAL\tHKEY_LOCAL_MACHINE\tSoftware\\Demo\tN\r\n");
    EXPECT_THAT(ui_.calls, ElementsAre("addFileLine(null, 1)"));
}

TEST_F(RegistryTagsTest, RecordTheLevelsThatAValueNeeded) {
    changes_.createdKeys = 2;
    apply("<AddValue " + at_ + "Value='N'>x</AddValue>");
    EXPECT_EQ(records(),
              "REGKEY\t2\tHKEY_LOCAL_MACHINE\tSoftware\\Demo\r\n"
              "REGVAL\tHKEY_LOCAL_MACHINE\tSoftware\\Demo\tN\r\n");
}

TEST_F(RegistryTagsTest, RecordNothingOfAFailedOrUnrecordedChange) {
    changes_.createdKeys = 1;
    apply("<AddValue " + at_ +
          "Value='N' ActionLog='1==2'>x</AddValue>"
          "<AddKey " +
          at_ + "ActionLog='1==2'/>");
    EXPECT_EQ(changes_.calls.size(), 2U);
    changes_.failing = {"writeRegistryValue", "createRegistryKey"};
    apply("<AddValue " + at_ + "Value='N'>x</AddValue><AddKey " + at_ + "/>");
    EXPECT_EQ(changes_.calls.size(), 4U);
    EXPECT_EQ(records(), "");
}

TEST_F(RegistryTagsTest, RecordAKeyOnlyWhenItWasMade) {
    apply("<AddKey " + at_ + ">unused</AddKey>");
    EXPECT_EQ(records(), "");
    changes_.createdKeys = 3;
    apply("<AddKey " + at_ + "/>");
    EXPECT_EQ(records(), "REGKEY\t3\tHKEY_LOCAL_MACHINE\tSoftware\\Demo\r\n");
}

TEST_F(RegistryTagsTest, RemoveValuesAndKeysWithoutARecord) {
    apply("<RemoveValue " + at_ + "Value='N'/><RemoveKey " + at_ + "/><RemoveKey " + at_ + "KeyCount='2'/>");
    EXPECT_THAT(changes_.calls, ElementsAre("deleteRegistryValue(HKEY_LOCAL_MACHINE, Software\\Demo, N)",
                                            "deleteRegistryKeys(HKEY_LOCAL_MACHINE, Software\\Demo, 1)",
                                            "deleteRegistryKeys(HKEY_LOCAL_MACHINE, Software\\Demo, 2)"));
    EXPECT_EQ(records(), "");
}

TEST_F(RegistryTagsTest, ExpandTextsOnlyWhereAsked) {
    variables_.setVariable("V", "val");
    apply(
        "<AddValue Place='HKEY_USERS' Path='[V]' Value='[V]' Log='[V]'>[V]</AddValue>"
        "<AddValue Expand='1' Place='HKEY_USERS' Path='[V]' Value='[V]' Log='[V]'>[V]</AddValue>");
    EXPECT_THAT(changes_.calls, ElementsAre("writeRegistryValue(HKEY_USERS, [V], null, [V], [V])",
                                            "writeRegistryValue(HKEY_USERS, val, null, val, val)"));
    EXPECT_THAT(ui_.calls,
                ElementsAre("addFileLine(\"[V]\", 0)", "addFileLine(\"val\", 0)", "addFileLine(null, 1)"));
}

TEST_F(RegistryTagsTest, ShowTheirLineWhetherOrNotTheChangeWorked) {
    changes_.failing = {"writeRegistryValue"};
    apply("<AddValue " + at_ + "Value='N' Log='line'>x</AddValue>");
    EXPECT_THAT(ui_.calls, ElementsAre("addFileLine(\"line\", 0)", "addFileLine(null, 1)"));
}

TEST_F(RegistryTagsTest, PassOverChildrenWithoutAPlaceOrPathOrWithAFalseCondition) {
    apply("<AddKey Path='p'/><AddKey Place='HKEY_USERS'/><AddKey " + at_ + "Condition='1==2'/>");
    EXPECT_THAT(changes_.calls, IsEmpty());
}

TEST_F(RegistryTagsTest, TellWhatTheyCanNotCarryOut) {
    apply("<AddValue " + at_ + ">x</AddValue><RemoveValue " + at_ + "/><Drop " + at_ + "/>");
    EXPECT_THAT(changes_.calls, IsEmpty());
    EXPECT_THAT(log_.lines(), ElementsAre("ERROR: No registry value name supplied!",
                                          "ERROR: No registry value name supplied!",
                                          "ERROR: Usupported registry action \"Drop\""));
}

TEST_F(RegistryTagsTest, ContinueTheProductsLogWhenNoneIsOpen) {
    writer_.close();
    files_.addFile("/tmp/product.log", "FIRST\r\n");
    apply("<AddValue " + at_ + "Value='N'>x</AddValue>");
    EXPECT_EQ(files_.content("/tmp/product.log"),
              "FIRST\r\nREGVAL\tHKEY_LOCAL_MACHINE\tSoftware\\Demo\tN\r\n");
    EXPECT_FALSE(writer_.isOpen());
}

TEST_F(RegistryTagsTest, ChangeTheRegistryWithoutALogAsWell) {
    writer_.close();
    files_.failAt(MemoryFileSystem::Operation::kOpen, "/tmp/product.log", 1);
    apply("<AddValue " + at_ + "Value='N'>x</AddValue>");
    EXPECT_EQ(changes_.calls.size(), 1U);
    EXPECT_FALSE(files_.hasFile("/tmp/product.log"));
}

}  // namespace
