#include "checking/grammar.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

namespace {

using grammar::AttributeRule;
using grammar::ElementRule;
using vocabulary::Kind;

// The types of a list, separated by blanks. Those in parentheses may have blanks of their own.
std::vector<std::string> typesIn(std::string_view list) {
    std::vector<std::string> types;
    std::istringstream words{std::string(list)};
    for (std::string word; words >> word;) {
        if (!types.empty() && types.back().starts_with('(') && !types.back().ends_with(')')) {
            types.back() += " " + word;
        } else {
            types.push_back(word);
        }
    }
    return types;
}

const ElementRule* ruleOfType(std::string_view type) {
    const auto rules = grammar::elementRules();
    const auto found = std::ranges::find(rules, type, &ElementRule::type);
    return found == rules.end() ? nullptr : &*found;
}

// The name in the vocabulary's table of attributes that stands for a type.
std::set<std::string> typesOfVocabulary(std::string_view element) {
    static const std::map<std::string_view, std::set<std::string>> kSpecial = {
        {vocabulary::kEveryDialog, {"(page)"}},
        {vocabulary::kEveryDialogElement, {"(element)"}},
        {vocabulary::kEveryTask, {"(task)"}},
        {vocabulary::kEveryExcluded, {"(excluded variable)"}},
        {vocabulary::kEveryColour, {"(colour)"}},
        {vocabulary::kEveryPattern, {"(pattern)"}},
        {vocabulary::kEveryAction,
         {"OpenDocument", "OpenURL", "RunProgram", "CopyFile", "CreateFile", "RemoveFile", "RemoveDir",
          "Registry"}},
        {"Add", {"Add@IniFiles", "Add@Shortcuts"}},
    };
    const auto found = kSpecial.find(element);
    return found == kSpecial.end() ? std::set<std::string>{std::string(element)} : found->second;
}

TEST(Grammar, HasAPlaceForEveryElementOfTheVocabulary) {
    for (const vocabulary::Element& element : vocabulary::kElements) {
        EXPECT_TRUE(std::ranges::any_of(grammar::elementRules(), [&](const ElementRule& rule) {
            return grammar::nameOf(rule) == element.name;
        })) << element.name;
    }
}

TEST(Grammar, KnowsNoElementThatTheVocabularyDoesNotKnow) {
    for (const ElementRule& rule : grammar::elementRules()) {
        if (!grammar::nameOf(rule).empty()) {
            EXPECT_TRUE(vocabulary::isElement(grammar::nameOf(rule))) << rule.type;
        }
    }
}

TEST(Grammar, HasEveryAttributeOfTheVocabularyAtItsElements) {
    for (const vocabulary::Attribute& attribute : vocabulary::kAttributes) {
        const std::set<std::string> types = typesOfVocabulary(attribute.element);
        EXPECT_TRUE(std::ranges::any_of(grammar::attributeRules(),
                                        [&](const AttributeRule& rule) {
                                            return rule.name == attribute.name &&
                                                   std::ranges::any_of(types, [&](const std::string& type) {
                                                       return grammar::listsType(rule.types, type);
                                                   });
                                        }))
            << attribute.element << " " << attribute.name;
    }
}

TEST(Grammar, KnowsNoAttributeThatTheVocabularyDoesNotKnow) {
    for (const AttributeRule& rule : grammar::attributeRules()) {
        EXPECT_TRUE(vocabulary::isAttribute(rule.name)) << rule.name;
    }
}

TEST(Grammar, NamesOnlyTypesThatItHas) {
    for (const ElementRule& rule : grammar::elementRules()) {
        for (const std::string& parent : typesIn(rule.parents)) {
            EXPECT_TRUE(parent == grammar::kAnywhere || ruleOfType(parent) != nullptr)
                << rule.type << " in " << parent;
        }
    }
    for (const AttributeRule& rule : grammar::attributeRules()) {
        EXPECT_FALSE(typesIn(rule.types).empty()) << rule.name;
        for (const std::string& type : typesIn(rule.types)) {
            EXPECT_NE(ruleOfType(type), nullptr) << rule.name << " of " << type;
        }
    }
}

TEST(Grammar, DescribesEachTypeAndEachAttributeOfATypeOnce) {
    std::set<std::string_view> types;
    for (const ElementRule& rule : grammar::elementRules()) {
        EXPECT_TRUE(types.insert(rule.type).second) << rule.type;
        std::set<std::string_view> names;
        for (const AttributeRule* const attribute : grammar::attributesOf(rule.type)) {
            EXPECT_TRUE(names.insert(attribute->name).second) << rule.type << " " << attribute->name;
        }
    }
}

TEST(Grammar, HasAListForEachWordAndNoOtherAttribute) {
    for (const AttributeRule& rule : grammar::attributeRules()) {
        for (const std::string& type : typesIn(rule.types)) {
            const Kind kind = grammar::kindOf(type, rule);
            const bool isWord = kind == Kind::kWord || kind == Kind::kWords;
            // Every format but one word means the same.
            const bool hasList = !rule.list.empty() || rule.name == "Format";
            EXPECT_EQ(isWord, hasList) << type << " " << rule.name;
        }
        EXPECT_EQ(rule.list.empty(), grammar::wordsOf(rule.list).empty()) << rule.list;
    }
    EXPECT_TRUE(grammar::wordsOf("no such list").empty());
}

TEST(Grammar, KnowsTheListsWhoseCaseCounts) {
    EXPECT_TRUE(grammar::isExactList("protocols of a port"));
    EXPECT_FALSE(grammar::isExactList("types of fields"));
    EXPECT_FALSE(grammar::isExactList(""));
}

std::string_view typeOf(std::string_view parent, std::string_view name) {
    const ElementRule* const rule = grammar::elementRule(parent, name);
    return rule == nullptr ? "none" : rule->type;
}

TEST(Grammar, FindsTheTypeOfAnElementByItsPlace) {
    EXPECT_EQ(typeOf("", "TandrelGroupInstallation"), "TandrelGroupInstallation");
    EXPECT_EQ(typeOf("", "Dialogs"), "none");
    EXPECT_EQ(typeOf("TandrelGroupInstallation", "Dialogs"), "Dialogs");
    EXPECT_EQ(typeOf("TandrelGroupInstallation", "dialogs"), "none");
    EXPECT_EQ(typeOf("Dialogs", "Welcome"), "(page)");
    EXPECT_EQ(typeOf("Dialogs", "Registry"), "(page)") << "a page may have any name";
    EXPECT_EQ(typeOf("SubDialogs", "Welcome"), "(page)");
    EXPECT_EQ(typeOf("(page)", "Text"), "(element)");
    EXPECT_EQ(typeOf("(page)", "text"), "(element)");
    EXPECT_EQ(typeOf("(page)", "FIELD"), "Field");
    EXPECT_EQ(typeOf("(page)", "Unknown"), "none");
    EXPECT_EQ(typeOf("IniFiles", "Add"), "Add@IniFiles");
    EXPECT_EQ(typeOf("Shortcuts", "Add"), "Add@Shortcuts");
    EXPECT_EQ(typeOf("Installation", "FileSet"), "FileSet");
    EXPECT_EQ(typeOf("TandrelGroupInstallation", "FileSet"), "FileSet");
    EXPECT_EQ(typeOf("Installation", "FN"), "none");
    EXPECT_EQ(typeOf("ColourTheme", "buttonstext"), "(colour)");
    EXPECT_EQ(typeOf("InstallerControlVariables", "InstallError"), "(control variable)");
    EXPECT_EQ(typeOf("InstallerControlVariables", "installerror"), "none");
    EXPECT_EQ(typeOf("InstallerExcludeVariables", "Anything"), "(excluded variable)");
}

TEST(Grammar, TakesAnElementWithActionsForAContainer) {
    PXML description;
    description.parseText(
        "<TandrelGroupInstallation><Installation><Mine><RunProgram>a</RunProgram></Mine>"
        "<Other><Unknown/></Other></Installation></TandrelGroupInstallation>");
    const std::vector<const ElementRule*> types = grammar::typesOf(description);
    ASSERT_EQ(types.size(), 6U);
    EXPECT_EQ(types[2]->type, grammar::kContainer);
    EXPECT_EQ(types[3]->type, "RunProgram");
    EXPECT_EQ(types[4], nullptr);
    EXPECT_EQ(types[5], nullptr) << "nothing is known of what is below";
}

TEST(Grammar, TakesTypesInParenthesesAsWhole) {
    EXPECT_TRUE(grammar::listsType("a (control variable) b", "(control variable)"));
    EXPECT_TRUE(grammar::listsType("Field Button", "Button"));
    EXPECT_FALSE(grammar::listsType("Field Button", "Butt"));
    EXPECT_FALSE(grammar::listsType("Field Button", "utton"));
    EXPECT_FALSE(grammar::listsType("", "Field"));
}

TEST(Grammar, KnowsTheNamesOfATypeFromItsList) {
    EXPECT_THAT(grammar::namesOf(*ruleOfType("Dialogs")), testing::ElementsAre("Dialogs"));
    EXPECT_THAT(grammar::namesOf(*ruleOfType("Add@IniFiles")), testing::ElementsAre("Add"));
    EXPECT_THAT(grammar::namesOf(*ruleOfType(grammar::kColour)),
                testing::ElementsAreArray(vocabulary::kThemeColours));
    EXPECT_TRUE(grammar::namesOf(*ruleOfType(grammar::kPage)).empty());
}

TEST(Grammar, KnowsWhatATextIsReadAs) {
    EXPECT_EQ(grammar::kindOfText(*ruleOfType("Field")), Kind::kVariable);
    EXPECT_EQ(grammar::kindOfText(*ruleOfType(grammar::kColour)), Kind::kColour);
    EXPECT_EQ(grammar::kindOfText(*ruleOfType(grammar::kControlVariable)), Kind::kVariable);
    EXPECT_EQ(grammar::kindOfText(*ruleOfType(grammar::kPage)), Kind::kText);
    EXPECT_EQ(grammar::kindOfText(*ruleOfType("UninstallCmd")), Kind::kExpandedText);
}

}  // namespace
