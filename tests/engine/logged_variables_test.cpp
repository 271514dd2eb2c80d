#include "engine/logged_variables.h"

#include "engine_fixture.h"

namespace {

class LoggedVariablesTest : public EngineTest {
protected:
    std::string names() {
        std::string all;
        for (const LoggedVariable& variable : LoggedVariables(variables_, exclusions_).collect()) {
            all += std::string(variable.name) + "=" + std::string(variable.value) + ";";
        }
        return all;
    }
};

TEST_F(LoggedVariablesTest, keepsTheStoresOrderWithoutWhatIsExcludedFromLogs) {
    for (const char* name : {"B", "HIDDEN", "A", "CONFIG"}) {
        variables_.setVariable(name, "1");
    }
    exclusions_.add("HIDDEN", kExcludeFromAll);
    exclusions_.add("CONFIG", kExcludeFromConfig);
    EXPECT_EQ(names(), "B=1;A=1;CONFIG=1;");
}

TEST_F(LoggedVariablesTest, comparesExclusionsExactly) {
    variables_.setVariable("Hidden", "1");
    exclusions_.add("HIDDEN", kExcludeFromLog);
    EXPECT_EQ(names(), "Hidden=1;");
}

TEST_F(LoggedVariablesTest, hasNothingToKeepInAnEmptyStore) {
    EXPECT_EQ(names(), "");
}

}  // namespace
