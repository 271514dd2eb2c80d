#include "checking/path_values.h"

#include "checking/check_bench.h"

namespace {

class PathValuesTest : public testing::Test {
protected:
    // What a function of the values gives for a description with these variables.
    template <typename Look>
    auto ask(const std::string& values, const Look& look) {
        decltype(look(std::declval<const PathValues&>())) result;
        CheckBench bench([&](const CheckedParts& parts) { result = look(parts.paths); });
        bench.findings("<DefValues>" + values +
                       "</DefValues><Dialogs><P><Field Type='Directory'>ASKED</Field>"
                       "<Trigger EvaluateOn='End' Variable='SET' Value='1'/></P></Dialogs>");
        return result;
    }
    std::string resolved(const std::string& values, const std::string& text) {
        return ask(values, [&](const PathValues& paths) { return paths.resolve(text); });
    }
};

TEST_F(PathValuesTest, PutsKnownValuesInPlaceOfReferences) {
    const std::string values =
        "<Value Name='Base' DataType='value'>/opt//x/</Value>"
        "<Value Name='DIR' DataType='value'>$BASE/y</Value>";
    EXPECT_EQ(resolved(values, "[dir]\\bin//"), "/opt/x/y/bin");
    EXPECT_EQ(resolved(values, ""), "");
    EXPECT_EQ(resolved(values, "/"), "/");
    EXPECT_EQ(resolved(values, "\\\\server\\share\\"), "//server/share");
}

TEST_F(PathValuesTest, LeavesWhatOnlyARunKnows) {
    const std::string values =
        "<Value Name='ASKED' DataType='value'>/a</Value><Value Name='SET' DataType='value'>/s</Value>"
        "<Value Name='ENV' DataType='envvar' Default='/e'>ProgramFiles</Value>"
        "<Value Name='TWO' DataType='value' Condition='1==1'>/one</Value>"
        "<Value Name='TWO' DataType='value' Condition='1==2'>/two</Value>";
    EXPECT_EQ(resolved(values, "[Asked]/[SET]"), "[asked]/[set]");
    EXPECT_EQ(resolved(values, "[ENV]/[TWO]/[$HOME]/[NONE]"), "[env]/[two]/[$home]/[none]");
}

TEST_F(PathValuesTest, AreThoseOfTheDescriptionWhereNobodyChangesThem) {
    const std::string values =
        "<Value Name='ASKED' DataType='value'>/a</Value><Value Name='SET' DataType='value'>/s</Value>";
    EXPECT_EQ(ask(values, [](const PathValues& paths) { return paths.unchanged().resolve("[ASKED]/[SET]"); }),
              "/a/[set]");
}

TEST_F(PathValuesTest, TriesEveryValueOfAVariable) {
    const std::string values =
        "<Value Name='A' DataType='value' Condition='1==1'>1</Value>"
        "<Value Name='A' DataType='value' Condition='1==2'>2</Value>"
        "<Value Name='B' DataType='value'>$A</Value>";
    const auto paths = ask(values, [](const PathValues& known) {
        std::vector<std::string> found;
        for (const PathValues::Choice& choice : known.choicesOf("/[B]/[A]")) {
            found.push_back(known.resolve("/[B]/[A]", choice));
        }
        return found;
    });
    EXPECT_EQ(paths, (std::vector<std::string>{"/1/1", "/2/2"}));
}

TEST_F(PathValuesTest, TriesAtMostSixteenChoices) {
    std::string values;
    for (const std::string name : {"A", "B", "C", "D", "E"}) {
        values += "<Value Name='" + name + "' DataType='value'>1</Value><Value Name='" + name +
                  "' DataType='value'>2</Value>";
    }
    const auto count = [&](const std::string& text) {
        return ask(values, [&](const PathValues& known) { return known.choicesOf(text).size(); });
    };
    EXPECT_EQ(count("x"), 1U);
    EXPECT_EQ(count("[A][B][C][D]"), 16U);
    EXPECT_EQ(count("[A][B][C][D][E]"), 0U);
}

TEST_F(PathValuesTest, EndsWhereVariablesReferToEachOtherOrGrow) {
    EXPECT_EQ(resolved("<Value Name='A' DataType='value'>$B/$B</Value>"
                       "<Value Name='B' DataType='value'>$A/$A</Value>",
                       "[A]"),
              "[a]/[a]/[a]/[a]");
    std::string values = "<Value Name='V0' DataType='value'>xxxxxxxxxx</Value>";
    for (int i = 1; i < 30; ++i) {
        const std::string below = "$V" + std::to_string(i - 1);
        values += "<Value Name='V" + std::to_string(i) + "' DataType='value'>" + below + below + "</Value>";
    }
    EXPECT_LE(resolved(values, "[V29]").size(), 8192U);
}

TEST_F(PathValuesTest, NamesTheEnvironmentVariableBehindAReference) {
    const auto environment = [&](const std::string& reference) {
        return ask(
            "<Value Name='ENV' DataType='envvar'>ProgramFiles</Value>"
            "<Value Name='V' DataType='value'>x</Value>",
            [&](const PathValues& known) { return known.environmentOf(reference); });
    };
    EXPECT_EQ(environment("env"), "programfiles");
    EXPECT_EQ(environment("$Home"), "home");
    EXPECT_EQ(environment("v"), "");
    EXPECT_EQ(environment("none"), "");
}

TEST_F(PathValuesTest, KnowsTheVariablesThatTheDescriptionHasValuesFor) {
    const auto isDescribed = [&](const std::string& name) {
        return ask(
            "<Value Name='V' DataType='value'>/x</Value><Value Name='ASKED' DataType='value'>/a</Value>"
            "<Value Name='ENV' DataType='envvar'>ProgramFiles</Value>",
            [&](const PathValues& known) { return known.isDescribed(name); });
    };
    EXPECT_TRUE(isDescribed("v"));
    EXPECT_TRUE(isDescribed("asked"));
    EXPECT_FALSE(isDescribed("env"));
    EXPECT_FALSE(isDescribed("$home"));
    EXPECT_FALSE(isDescribed("none"));
}

TEST(MatchPaths, ComparesWhatDoesNotDependOnTheRun) {
    EXPECT_EQ(matchPaths("/a/b", "/a/b"), PathMatch::kSame);
    EXPECT_EQ(matchPaths("[x]/b", "[x]/b"), PathMatch::kSame);
    EXPECT_EQ(matchPaths("/a/b", "/a/c"), PathMatch::kDifferent);
    EXPECT_EQ(matchPaths("[x]/b", "[x]/c"), PathMatch::kDifferent);
    EXPECT_EQ(matchPaths("[x]/b", "[x]"), PathMatch::kDifferent);
    EXPECT_EQ(matchPaths("[x]/b", "[y]/b"), PathMatch::kPossible);
    EXPECT_EQ(matchPaths("[x1]/b", "[x2]/b"), PathMatch::kPossible);
    EXPECT_EQ(matchPaths("/a/b", "[y]/b"), PathMatch::kPossible);
    EXPECT_EQ(matchPaths("[x]/a/[y]", "[x]/b/c"), PathMatch::kDifferent);
    EXPECT_EQ(matchPaths("[x]/a/[y]", "[x]/a/c"), PathMatch::kPossible);
    EXPECT_EQ(matchPaths("[x]/a.log", "[y]/b.log"), PathMatch::kDifferent);
    EXPECT_EQ(matchPaths("[x]/a", "/b/[y]"), PathMatch::kPossible);
}

TEST(MatchPaths, KnowsThatAPathBeginsWithSomething) {
    EXPECT_EQ(matchPaths("[x][x]/a", "[x]/a"), PathMatch::kDifferent);
    EXPECT_EQ(matchPaths("[x]", "[x][x]/a"), PathMatch::kDifferent);
    EXPECT_EQ(matchPaths("[x][y]/a", "[x]/a"), PathMatch::kPossible);
    EXPECT_EQ(matchPaths("[x][x]/a", "[x]/long/a"), PathMatch::kPossible);
}

TEST(HasReference, KnowsWhatCanBeTheNameOfAVariable) {
    EXPECT_TRUE(hasReference("/a/[b_1]"));
    EXPECT_TRUE(hasReference("[a b]/[$programfiles(x86)]"));
    EXPECT_FALSE(hasReference("/a/[b c]/[]/[$]/[d"));
    EXPECT_TRUE(beginsWithReference("[b]/a"));
    EXPECT_FALSE(beginsWithReference("[b c]/[a]"));
    EXPECT_FALSE(beginsWithReference("/[a]"));
}

}  // namespace
