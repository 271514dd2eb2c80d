#include "checking/description_schema.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "checking/grammar.h"
#include "description/pxml.h"

namespace {

using grammar::AttributeRule;
using grammar::ElementRule;

std::string schemaText() {
    std::string text;
    for (const std::string& line : descriptionSchema()) {
        EXPECT_EQ(line.find('\n'), std::string::npos) << line;
        text += line + "\n";
    }
    return text;
}

class DescriptionSchema : public testing::Test {
protected:
    DescriptionSchema() { schema_.parseText(text_); }

    // The first definition of this kind and name; -1 when there is none.
    std::int32_t find(std::string_view kind, std::string_view name) const {
        for (std::int32_t node = schema_.findByName(kind); node >= 0; node = schema_.findByName(kind, node)) {
            if (schema_.getAttribute(node, "name") == name) {
                return node;
            }
        }
        return -1;
    }

    bool isBelow(std::int32_t node, std::int32_t ancestor) const {
        while (node >= 0 && node != ancestor) {
            node = schema_.getNode(node)->parent;
        }
        return node == ancestor;
    }

    std::int32_t attributeBelow(std::int32_t type, std::string_view name) const {
        for (std::int32_t node = schema_.findByName("xs:attribute", type); node >= 0;
             node = schema_.findByName("xs:attribute", node)) {
            if (!isBelow(node, type)) {
                return -1;
            }
            if (schema_.getAttribute(node, "name") == name) {
                return node;
            }
        }
        return -1;
    }

    std::string text_ = schemaText();
    PXML schema_;
};

TEST_F(DescriptionSchema, KnowsEveryElementWithAName) {
    for (const ElementRule& rule : grammar::elementRules()) {
        for (const std::string_view name : grammar::namesOf(rule)) {
            EXPECT_GE(find("xs:element", name), 0) << rule.type << " " << name;
        }
    }
}

TEST_F(DescriptionSchema, KnowsEveryAttributeAndWhetherItIsRequired) {
    const std::pair<const char*, const char*> kTypes[] = {
        {"FileSet", "T.FileSet"},   {"FN", "T.FN"},           {"(page)", "T.page"},
        {"(element)", "T.element"}, {"Field", "T.Field"},     {"Add@IniFiles", "T.Add.IniFiles"},
        {"AddValue", "T.AddValue"}, {"(colour)", "T.colour"},
    };
    for (const auto& [type, name] : kTypes) {
        const std::int32_t node = find("xs:complexType", name);
        ASSERT_GE(node, 0) << name;
        for (const AttributeRule* const rule : grammar::attributesOf(type)) {
            const std::int32_t attribute = attributeBelow(node, rule->name);
            ASSERT_GE(attribute, 0) << type << " " << rule->name;
            EXPECT_EQ(schema_.getAttribute(attribute, "use") == "required", rule->isRequired)
                << type << " " << rule->name;
        }
    }
}

TEST_F(DescriptionSchema, DefinesEachTypeThatItUses) {
    std::set<std::string> defined;
    for (const char* const kind : {"xs:complexType", "xs:simpleType"}) {
        for (std::int32_t node = schema_.findByName(kind); node >= 0; node = schema_.findByName(kind, node)) {
            const auto name = schema_.getAttribute(node, "name");
            EXPECT_TRUE(!name || defined.insert(std::string(*name)).second) << *name << " is defined twice";
        }
    }
    for (std::int32_t node = 0; node < schema_.getNodeCount(); ++node) {
        const std::string type(schema_.getAttribute(node, "type").value_or("xs:string"));
        EXPECT_TRUE(type.starts_with("xs:") || defined.contains(type)) << type;
    }
}

TEST_F(DescriptionSchema, DefinesNoElementTwiceAtTheTop) {
    std::set<std::string_view> names;
    for (const std::int32_t node : schema_.childrenOf(0)) {
        if (schema_.getName(node) == "xs:element") {
            EXPECT_TRUE(names.insert(*schema_.getAttribute(node, "name")).second)
                << *schema_.getAttribute(node, "name");
        }
    }
    EXPECT_TRUE(names.contains("TandrelGroupInstallation"));
    EXPECT_TRUE(names.contains("CopyProgress"));
}

TEST_F(DescriptionSchema, EnumeratesTheWordsOfAList) {
    EXPECT_NE(text_.find("<xs:enumeration value=\"REG_DWORD\"/>"), std::string::npos);
    EXPECT_NE(text_.find("([Ll][Ee][Ff][Tt]|"), std::string::npos) << "case doesn't count";
    EXPECT_NE(text_.find("(TCP|UDP)"), std::string::npos) << "case counts";
}

TEST_F(DescriptionSchema, ExplainsWithTheManualsSentences) {
    EXPECT_NE(text_.find("<xs:documentation>A set of files that belong together.</xs:documentation>"),
              std::string::npos);
    EXPECT_NE(text_.find("&amp;amp; precedes the letter"), std::string::npos);
    EXPECT_NE(text_.find(" Words: TCP, UDP.</xs:documentation>"), std::string::npos);
}

TEST_F(DescriptionSchema, LeavesNamesOfAuthorsFree) {
    const std::int32_t dialogs = find("xs:complexType", "T.Dialogs");
    const std::int32_t any = schema_.findByName("xs:any", dialogs);
    ASSERT_TRUE(isBelow(any, dialogs));
    EXPECT_EQ(schema_.getAttribute(any, "processContents"), "lax");
    const std::int32_t tasks = find("xs:complexType", "T.TaskList");
    EXPECT_EQ(schema_.getAttribute(schema_.findByName("xs:any", tasks), "processContents"), "skip")
        << "tasks have the names of pages and other attributes";
}

}  // namespace
