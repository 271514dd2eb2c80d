#include "ui/console/console_fields.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "base/text_functions.h"
#include "description/dialog_model.h"
#include "fakes/fake_engine.h"
#include "platform/written_path.h"

namespace {

using ConsoleInterface::makeField;

// Records the questions and gives one answer to all of them.
class ScriptedInput : public InputProvider {
public:
    std::string text;  // the answer to a text
    int textResult = 1;
    int choice = 0;        // the answer to a choice or list
    std::string question;  // of the last one asked, with everything it offered
    int size = 0;

    int init() override { return 1; }
    int askText(const char* label, char* buffer, int bufferSize, const char* value, const char* fallback,
                bool echo) override {
        question = std::string(label) + "|" + value + "|" + fallback + (echo ? "|echo" : "|hidden");
        size = bufferSize;
        OUtils::copyText(buffer, text.c_str(), bufferSize);
        return textResult;
    }
    int askChoice(const char* label, int preset, std::string_view first, std::string_view second,
                  bool caseSensitive, bool prefixMatch) override {
        question = std::string(label) + "|" + std::to_string(preset) + "|" + std::string(first) + "|" +
                   std::string(second) + (caseSensitive ? "|case" : "|any case") +
                   (prefixMatch ? "|prefix" : "|whole");
        return choice;
    }
    int askList(const char* label, int preset, const std::vector<std::string>& items,
                const std::vector<bool>& enabled) override {
        question = std::string(label) + "|" + std::to_string(preset);
        for (std::size_t i = 0; i < items.size(); ++i) {
            question += "|" + items[i] + (enabled.at(i) ? "" : " (off)");
        }
        EXPECT_EQ(items.size(), enabled.size());
        return choice;
    }
    void tell(const char*) override {}
    void pause(std::string_view) override {}
    int finish(bool) override { return 1; }
    void abort() override {}
};

struct ConsoleFields : testing::Test {
    FakeEngine engine;
    ScriptedInput input;
    DialogFieldDesc field;

    ConsoleFields() {
        field.label.assign("Label");
        field.variable.assign("VAR");
    }

    std::string process(std::int32_t type) {
        makeField(type)->process(field, input, engine);
        return engine.variables["VAR"];
    }
    std::string answer(std::int32_t type, const std::string& text) {
        input.text = text;
        return process(type);
    }
};

TEST_F(ConsoleFields, HasAHandlerForEachTypeThatAsks) {
    for (const std::int32_t type :
         {kFieldDirectory, kFieldCheckBox, kFieldRadioButtons, kFieldEditBox, kFieldPassword}) {
        input.question.clear();
        process(type);
        EXPECT_NE(input.question, "") << type;
    }
}

TEST_F(ConsoleFields, SkipsTypesWithoutAQuestion) {
    EXPECT_EQ(makeField(kFieldInstallParameter), nullptr);
    EXPECT_EQ(makeField(0), nullptr);
    EXPECT_EQ(makeField(35), nullptr);
}

TEST_F(ConsoleFields, SkipsAFieldWhoseConditionIsFalse) {
    engine.conditions["[A]"] = 0;
    engine.variables["VAR"] = "kept";
    field.condition.assign("[A]");
    for (const std::int32_t type :
         {kFieldDirectory, kFieldCheckBox, kFieldRadioButtons, kFieldEditBox, kFieldPassword}) {
        EXPECT_EQ(process(type), "kept");
    }
    EXPECT_EQ(input.question, "");
}

TEST_F(ConsoleFields, AsksAFieldWhoseConditionIsBroken) {
    engine.conditions["[A]"] = -1;
    field.condition.assign("[A]");
    EXPECT_EQ(answer(kFieldEditBox, "typed"), "typed");
}

TEST_F(ConsoleFields, OffersValueAndDefaultOfAText) {
    engine.variables["VAR"] = "value";
    engine.defaults["VAR"] = "default";
    process(kFieldEditBox);
    EXPECT_EQ(input.question, "Label|value|default|echo");
    EXPECT_EQ(input.size, 1560);
    engine.variables["VAR"] = "value";
    process(kFieldDirectory);
    EXPECT_EQ(input.question, "Label|value|default|echo");
    engine.variables["VAR"] = "value";
    process(kFieldPassword);
    EXPECT_EQ(input.question, "Label|value|default|hidden");
}

TEST_F(ConsoleFields, OffersNothingForAnUnknownVariable) {
    process(kFieldEditBox);
    EXPECT_EQ(input.question, "Label|||echo");
}

TEST_F(ConsoleFields, TakesTheDefaultWhenATextIsInterrupted) {
    engine.variables["VAR"] = "value";
    engine.defaults["VAR"] = "default";
    input.textResult = 0;
    EXPECT_EQ(answer(kFieldEditBox, "half"), "default");
    EXPECT_EQ(answer(kFieldPassword, "half"), "default");
    EXPECT_EQ(answer(kFieldDirectory, "half"), "default");
}

TEST_F(ConsoleFields, CutsWhiteSpaceOffATextAndKeepsItsInside) {
    EXPECT_EQ(answer(kFieldEditBox, " \t\v\f a b//c \r\n"), "a b//c");
    EXPECT_EQ(answer(kFieldEditBox, " \t "), "");
}

TEST_F(ConsoleFields, KeepsAPasswordAsItIs) {
    EXPECT_EQ(answer(kFieldPassword, " a//b\\ "), " a//b\\ ");
}

TEST_F(ConsoleFields, CleansADirectory) {
    EXPECT_EQ(answer(kFieldDirectory, "  C:/apps//demo/ "), "C:\\apps\\demo");
    EXPECT_EQ(answer(kFieldDirectory, "C:\\apps\\\\\\demo\\\\"), "C:\\apps\\demo");
    EXPECT_EQ(answer(kFieldDirectory, "/opt/demo"), "\\opt\\demo");
    EXPECT_EQ(answer(kFieldDirectory, "//server//share/"), "\\\\server\\share");
    EXPECT_EQ(answer(kFieldDirectory, "////server"), "\\\\server");
    EXPECT_EQ(answer(kFieldDirectory, "C:/apps/ /"), "C:\\apps");
    EXPECT_EQ(answer(kFieldDirectory, "/"), "");
    EXPECT_EQ(answer(kFieldDirectory, "  "), "");
    EXPECT_EQ(answer(kFieldDirectory, "a b/c d"), "a b\\c d");
}

TEST_F(ConsoleFields, OffersNoAndYesForACheckBox) {
    engine.variables["VAR"] = "1";
    EXPECT_EQ(process(kFieldCheckBox), "0");
    EXPECT_EQ(input.question, "Label|1|no|yes|any case|prefix");
    input.choice = 1;
    EXPECT_EQ(process(kFieldCheckBox), "1");
    EXPECT_EQ(input.question, "Label|0|no|yes|any case|prefix");
}

TEST_F(ConsoleFields, HasNoDefaultForACheckBoxWithAnotherValue) {
    for (const char* value : {"2", "-1", "yes", "", "1x"}) {
        engine.variables["VAR"] = value;
        process(kFieldCheckBox);
        EXPECT_EQ(input.question, "Label|-1|no|yes|any case|prefix") << value;
    }
    engine.variables.clear();
    process(kFieldCheckBox);
    EXPECT_EQ(input.question, "Label|-1|no|yes|any case|prefix");
}

TEST_F(ConsoleFields, StoresAnInterruptedChoiceLikeAnyOther) {
    input.choice = -1;
    EXPECT_EQ(process(kFieldCheckBox), "-1");
    field.content.assign("a;b");
    EXPECT_EQ(process(kFieldRadioButtons), "-1");
}

TEST_F(ConsoleFields, ListsTheItemsOfRadioButtons) {
    field.content.assign("one;two;three");
    engine.variables["VAR"] = "2";
    input.choice = 1;
    EXPECT_EQ(process(kFieldRadioButtons), "1");
    EXPECT_EQ(input.question, "Label|2|one|two|three");
}

TEST_F(ConsoleFields, KeepsEmptyItemsOfRadioButtons) {
    field.content.assign(";two;");
    process(kFieldRadioButtons);
    EXPECT_EQ(input.question, "Label|-1||two|");
}

TEST_F(ConsoleFields, AppendsTheDetailsOfRadioButtons) {
    field.content.assign("one;two;three");
    field.description.assign("(first);");
    process(kFieldRadioButtons);
    EXPECT_EQ(input.question, "Label|-1|one (first)|two |three");
}

TEST_F(ConsoleFields, DropsTheDetailsOfRadioButtonsWhenThereAreMoreThanItems) {
    field.content.assign("one;two");
    field.description.assign("a;b;c");
    process(kFieldRadioButtons);
    EXPECT_EQ(input.question, "Label|-1|one|two");
}

TEST_F(ConsoleFields, EnablesRadioButtonsByTheirConditions) {
    field.content.assign("one;two;three;four");
    field.enable.assign("[A]==1|[B]==1|[C]");
    engine.conditions["[B]==1"] = 0;
    engine.conditions["[C]"] = -1;
    process(kFieldRadioButtons);
    EXPECT_EQ(input.question, "Label|-1|one|two (off)|three|four");
}

TEST_F(ConsoleFields, HasNoDefaultForRadioButtonsWithAnotherValue) {
    field.content.assign("one;two");
    for (const char* value : {"2", "-1", "one", "", "99999999999"}) {
        engine.variables["VAR"] = value;
        process(kFieldRadioButtons);
        EXPECT_EQ(input.question, "Label|-1|one|two") << value;
    }
}

TEST_F(ConsoleFields, ShowsADirectoryAsTheSystemWritesItAndKeepsItsForm) {
    engine.variables["VAR"] = "\\opt\\demo";
    engine.defaults["VAR"] = "C:\\other";
    const std::string value = platform::writtenPath("\\opt\\demo");
    const std::string fallback = platform::writtenPath("C:\\other");
    EXPECT_EQ(answer(kFieldDirectory, value), "\\opt\\demo");
    EXPECT_EQ(input.question, "Label|" + value + "|" + fallback + "|echo");
    EXPECT_EQ(answer(kFieldDirectory, fallback), "C:\\other");
    engine.variables["VAR"] = "\\d";
    answer(kFieldEditBox, "x");
    EXPECT_EQ(input.question, "Label|\\d|C:\\other|echo");
}

}  // namespace
