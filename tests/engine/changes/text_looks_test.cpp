#include "engine/changes/text_looks.h"

#include "engine/changes/former_state.h"
#include "look_fixture.h"
#include "platform/written_path.h"

namespace {

using platform::writtenPath;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr char kKey[] = "/app/a.ini\tMain\tColour";

class TextLooksTest : public LookTest {
protected:
    TextLooksTest() { machine_.files.addDirectory("/app"); }

    PlaceState iniState(const std::string& kind, const std::string& value, const std::string& former = "") {
        return stateOf(makeIniLooker, kind + "\t" + kKey + "\t" + value, former);
    }
    // The script adds two lines after "first" and one after "last".
    void addScript() { machine_.files.addFile("/app/script", "1\nfirst\n2\none\ntwo\n1\nlast\n1\nend\n"); }
    static Line edit() { return {"ADDAFTER\t/app/a.txt\t/app/script", ""}; }
};

TEST_F(TextLooksTest, ACreatedKeyIsAsMadeWhileItHasItsValue) {
    EXPECT_EQ(iniState("CREATE", "red"), PlaceState::kAbsent) << "without the file";
    machine_.files.addFile("/app/a.ini", "[Main]\nColour=red\n");
    EXPECT_EQ(iniState("CREATE", "red"), PlaceState::kAsMade);
    EXPECT_EQ(iniState("CREATE", "blue"), PlaceState::kDifferent);
    machine_.files.addFile("/app/a.ini", "\xef\xbb\xbf[Main]\nOther=red\n");
    EXPECT_EQ(iniState("CREATE", "red"), PlaceState::kAbsent);
    machine_.files.addFile("/app/a.ini", "[Else]\nColour=red\n");
    EXPECT_EQ(iniState("CREATE", "red"), PlaceState::kAbsent);
}

TEST_F(TextLooksTest, ALongValueIsComparedAsFarAsTheRecordHasIt) {
    const std::string value(990, 'x');
    machine_.files.addFile("/app/a.ini", "[Main]\nColour=" + value + "yz\n");
    EXPECT_EQ(iniState("CREATE", value), PlaceState::kAsMade);
    machine_.files.addFile("/app/a.ini", "[Main]\nColour=redder\n");
    EXPECT_EQ(iniState("CREATE", "red"), PlaceState::kDifferent) << "a short one wasn't cut";
}

TEST_F(TextLooksTest, AReplacedValueIsKnownByTheEarlierOne) {
    machine_.files.addFile("/app/a.ini", "[Main]\nColour = \"blue\"\n");
    EXPECT_EQ(stateOf(makeIniLooker, "REPLACE\t/app/a.ini\tMain\tColour \tblue"), PlaceState::kFormer);
    machine_.files.addFile("/app/a.ini", "[Main]\nColour=red\n");
    EXPECT_EQ(iniState("REPLACE", "blue"), PlaceState::kAsMade);
    machine_.files.addFile("/app/a.ini", "[Main]\n");
    EXPECT_EQ(iniState("REPLACE", "blue"), PlaceState::kAbsent);
}

TEST_F(TextLooksTest, OfSeveralRecordsOfOneKeyNoneKnowsTheValue) {
    machine_.files.addFile("/app/a.ini", "[Main]\nColour=green\n");
    const std::string key = kKey;
    EXPECT_THAT(
        statesOf(makeIniLooker, {{"CREATE\t" + key + "\tred", ""}, {"REPLACE\t" + key + "\tblue", ""}}),
        ElementsAre(PlaceState::kAsMade, PlaceState::kAsMade));
}

TEST_F(TextLooksTest, TheFirstRecordOfAKeyDecidesForAll) {
    machine_.files.addFile("/app/a.ini", "[Main]\nColour=red\n");
    const std::string key = kKey;
    EXPECT_THAT(
        statesOf(makeIniLooker, {{"REPLACE\t" + key + "\tred", ""}, {"REPLACE\t" + key + "\tblue", ""}}),
        ElementsAre(PlaceState::kFormer, PlaceState::kFormer));
}

TEST_F(TextLooksTest, AnIniFileAsItWasBeforeIsNotTheProducts) {
    const std::string content = "[Main]\nColour=\n";
    machine_.files.addFile("/app/a.ini", content);
    EXPECT_EQ(iniState("CREATE", "red", FormerState::ofBytes(content)), PlaceState::kOthers);
}

TEST_F(TextLooksTest, AnIniFileThatIsALinkIsNotFollowed) {
    machine_.files.addFile("/home/x", "[Main]\nColour=red\n");
    machine_.files.addLink("/app/a.ini", "/home/x");
    const RecordLook look = lookAt(makeIniLooker, std::string("CREATE\t") + kKey + "\tred");
    EXPECT_EQ(look.state, PlaceState::kUnreadable);
    EXPECT_NE(look.note, "");
    EXPECT_EQ(look.name, writtenPath("/app/a.ini") + ": [Main]/Colour");
}

TEST_F(TextLooksTest, AnIniRecordWithoutAKeyMadeNothing) {
    for (const char* fields : {"", "NONE", "CREATE", "CREATE\t/app/a.ini\tMain",
                               "REPLACE\t/app/a.ini\tMain\tColour", "X\ta\tb\tc\td"}) {
        looker_.reset();
        EXPECT_THAT(lookAtAll(makeIniLooker, {{fields, ""}}), IsEmpty()) << fields;
    }
}

TEST_F(TextLooksTest, AnEditIsAsMadeWhileAllItsLinesAreThere) {
    addScript();
    EXPECT_EQ(stateOf(makeEditLooker, edit().fields), PlaceState::kAbsent) << "without the file";
    machine_.files.addFile("/app/a.txt", "first\none\ntwo\nmiddle\nlast\nend\n");
    const RecordLook look = lookAt(makeEditLooker, edit().fields);
    EXPECT_EQ(look.state, PlaceState::kAsMade);
    EXPECT_EQ(look.rule, UndoRule::kKeepsChanged);
    machine_.files.addFile("/app/a.txt", "first\none\nTWO\nlast\nend\n");
    EXPECT_EQ(stateOf(makeEditLooker, edit().fields), PlaceState::kDifferent);
    machine_.files.addFile("/app/a.txt", "first\nlast\n");
    EXPECT_EQ(stateOf(makeEditLooker, edit().fields), PlaceState::kAbsent);
}

TEST_F(TextLooksTest, AnEditThatFindsNoPlaceWasNotNeeded) {
    addScript();
    machine_.files.addFile("/app/a.txt", "other\nlast\n");
    const RecordLook look = lookAt(makeEditLooker, edit().fields);
    EXPECT_EQ(look.state, PlaceState::kNotNeeded);
    EXPECT_EQ(look.note, "the lines that it looks for aren't there");
}

TEST_F(TextLooksTest, LinesThatWereAddedTwiceCountTwice) {
    machine_.files.addFile("/app/script", "1\nfirst\n1\none\n");
    machine_.files.addFile("/app/a.txt", "first\none\none\n");
    const std::vector<Line> log = {edit(), edit(), edit()};
    const std::vector<PlaceState> expected = {PlaceState::kAsMade, PlaceState::kAsMade, PlaceState::kAbsent};
    EXPECT_EQ(statesOf(makeEditLooker, log), expected);
    EXPECT_EQ(statesOf(makeEditLooker, log), expected) << "a second walk";
}

TEST_F(TextLooksTest, AScriptIsRememberedWhenItHasGoneWithTheProduct) {
    addScript();
    machine_.files.addFile("/app/a.txt", "first\none\ntwo\nlast\nend\n");
    EXPECT_THAT(statesOf(makeEditLooker, {edit()}), ElementsAre(PlaceState::kAsMade));
    machine_.files.removeFile("/app/script");
    EXPECT_THAT(statesOf(makeEditLooker, {edit()}), ElementsAre(PlaceState::kAsMade));
}

TEST_F(TextLooksTest, WithoutAScriptTheLinesAreNotKnown) {
    machine_.files.addFile("/app/a.txt", "first\none\n");
    EXPECT_EQ(stateOf(makeEditLooker, edit().fields), PlaceState::kUnreadable);
    machine_.files.addFile("/app/script", "no script");
    EXPECT_EQ(stateOf(makeEditLooker, edit().fields), PlaceState::kUnreadable);
}

TEST_F(TextLooksTest, AnEditedFileAsItWasBeforeIsNotTheProducts) {
    addScript();
    const std::string content = "first\none\ntwo\nlast\nend\n";
    machine_.files.addFile("/app/a.txt", content);
    EXPECT_EQ(stateOf(makeEditLooker, edit().fields, FormerState::ofBytes(content)), PlaceState::kOthers);
    machine_.files.removeFile("/app/a.txt");
    machine_.files.addLink("/app/a.txt", "/app/script");
    EXPECT_EQ(stateOf(makeEditLooker, edit().fields), PlaceState::kUnreadable);
}

TEST_F(TextLooksTest, AnEditRecordWithoutAScriptMadeNothing) {
    for (const char* fields : {"", "ADDAFTER", "ADDAFTER\t/app/a.txt", "X\t/app/a.txt\t/app/script"}) {
        looker_.reset();
        EXPECT_THAT(lookAtAll(makeEditLooker, {{fields, ""}}), IsEmpty()) << fields;
    }
}

}  // namespace
