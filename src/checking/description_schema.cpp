#include "checking/description_schema.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <set>
#include <span>
#include <string_view>

#include "checking/grammar.h"
#include "checking/word_sentences.h"

namespace {

using grammar::AttributeRule;
using grammar::ElementRule;
using vocabulary::Kind;

constexpr std::string_view kRoot = "TandrelGroupInstallation";
constexpr std::string_view kInstallation = "Installation";
// A page of this name and the place of the records share an element.
constexpr std::string_view kSharedName = "Uninstall";

std::string quoted(std::string_view text) {
    return "\"" + std::string(text) + "\"";
}

// The sentences hold no control characters.
std::string escaped(std::string_view text) {
    std::string xml;
    for (const char c : text) {
        switch (c) {
            case '&':
                xml += "&amp;";
                break;
            case '<':
                xml += "&lt;";
                break;
            case '>':
                xml += "&gt;";
                break;
            default:
                xml += c;
        }
    }
    return xml;
}

// As one sentence, with a capital letter and a full stop.
std::string sentence(std::string_view text) {
    std::string whole(text);
    if (!whole.empty()) {
        whole.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(whole.front())));
        whole += '.';
    }
    return whole;
}

// What can be the name of a type: "(element)" and "Add@IniFiles" are names of the grammar alone.
std::string typeName(std::string_view type) {
    std::string name = "T.";
    for (const char c : type) {
        if (c == '@' || c == ' ') {
            name += '.';
        } else if (c != '(' && c != ')') {
            name += c;
        }
    }
    return name;
}

std::string listName(std::string_view list, bool isSeveral) {
    std::string name = isSeveral ? "L." : "W.";
    for (const char c : list) {
        name += c == ' ' ? '.' : c;
    }
    return name;
}

// A pattern for words in any case, or in just this one.
std::string wordPattern(std::span<const std::string_view> words, bool isExact) {
    std::string pattern;
    for (const std::string_view word : words) {
        pattern += pattern.empty() ? "" : "|";
        for (const char c : word) {
            const auto byte = static_cast<unsigned char>(c);
            if (std::isalpha(byte) != 0 && !isExact) {
                pattern += '[';
                pattern += static_cast<char>(std::toupper(byte));
                pattern += static_cast<char>(std::tolower(byte));
                pattern += ']';
            } else {
                pattern += c;
            }
        }
    }
    return pattern;
}

class SchemaWriter {
public:
    std::vector<std::string> write() {
        add(R"(<?xml version="1.0" encoding="UTF-8"?>)");
        add("<!-- Descriptions of setups, for editors. Made by packager schema; packager check knows more. "
            "-->");
        add(R"(<xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema" elementFormDefault="qualified">)");
        addGlobalElements();
        for (const ElementRule& rule : grammar::elementRules()) {
            if (!isFreeName(rule)) {
                addType(rule);
            }
        }
        addType(pageRule());
        addValueTypes();
        add("</xs:schema>");
        return std::move(lines_);
    }

private:
    void add(std::string line) { lines_.push_back(std::move(line)); }

    static const ElementRule& pageRule() {
        return *std::ranges::find(grammar::elementRules(), grammar::kPage, &ElementRule::type);
    }

    static bool isFreeName(const ElementRule& rule) { return grammar::namesOf(rule).empty(); }

    static bool isChild(const ElementRule& rule, std::string_view type) {
        return grammar::listsType(rule.parents, type);
    }

    // Below it authors choose names.
    static bool isOpen(std::string_view type) {
        return std::ranges::any_of(grammar::elementRules(), [type](const ElementRule& rule) {
            return isFreeName(rule) && rule.type != grammar::kContainer && isChild(rule, type);
        });
    }

    // The types of what may stand below elements whose content is open: they are found by their names alone.
    static bool isGlobal(const ElementRule& rule) {
        return rule.type == kRoot || rule.parents == grammar::kAnywhere || isChild(rule, kInstallation) ||
               isChild(rule, grammar::kPage);
    }

    void addGlobalElements() {
        std::set<std::string_view> known;
        for (const std::string_view name : vocabulary::kPageNames) {
            if (known.insert(name).second && name != kSharedName) {
                add("<xs:element name=" + quoted(name) + " type=" + quoted(typeName(grammar::kPage)) + "/>");
            }
        }
        for (const ElementRule& rule : grammar::elementRules()) {
            if (isFreeName(rule) || !isGlobal(rule)) {
                continue;
            }
            for (const std::string_view name : grammar::namesOf(rule)) {
                if (name == kSharedName || known.insert(name).second) {
                    addElement(name, rule);
                }
            }
        }
    }

    void addElement(std::string_view name, const ElementRule& rule) {
        addDocumented("xs:element", "name=" + quoted(name) + " type=" + quoted(typeName(rule.type)),
                      sentence(sentenceOf(rule.type)));
    }

    void addDocumented(const std::string& tag, const std::string& attributes, const std::string& text) {
        std::string line = "<" + tag + " " + attributes;
        if (text.empty()) {
            line += "/>";
        } else {
            line += "><xs:annotation><xs:documentation>" + escaped(text) +
                    "</xs:documentation></xs:annotation></" + tag + ">";
        }
        add(std::move(line));
    }

    void addType(const ElementRule& rule) {
        std::vector<const ElementRule*> children = childrenOf(rule.type);
        const bool isShared = rule.type == kSharedName;
        if (isShared) {
            const std::vector<const ElementRule*> ofPages = childrenOf(grammar::kPage);
            children.insert(children.end(), ofPages.begin(), ofPages.end());
        }
        add("<xs:complexType name=" + quoted(typeName(rule.type)) + ">");
        if (isOpen(rule.type) || rule.type == kInstallation) {
            addOpenContent(rule.type);
        } else if (!children.empty()) {
            addContent(children);
        } else if (rule.text != grammar::Text::kNone) {
            addTextContent(rule);
            return;
        }
        addAttributes(isShared ? grammar::kPage : rule.type);
        add("</xs:complexType>");
    }

    static std::vector<const ElementRule*> childrenOf(std::string_view type) {
        std::vector<const ElementRule*> children;
        for (const ElementRule& rule : grammar::elementRules()) {
            const bool isOfRoot = type == kRoot && rule.parents == grammar::kAnywhere;
            if (!isFreeName(rule) && (isChild(rule, type) || isOfRoot)) {
                children.push_back(&rule);
            }
        }
        return children;
    }

    // Names of pages and sections are known everywhere; of other lists nothing is known but that they are
    // lists.
    void addOpenContent(std::string_view type) {
        const bool hasKnownNames = type == kInstallation || isChild(pageRule(), type);
        add(std::string("<xs:sequence><xs:any minOccurs=\"0\" maxOccurs=\"unbounded\" processContents=") +
            (hasKnownNames ? "\"lax\"" : "\"skip\"") + "/></xs:sequence>");
    }

    void addContent(const std::vector<const ElementRule*>& children) {
        add(R"(<xs:choice minOccurs="0" maxOccurs="unbounded">)");
        for (const ElementRule* const child : children) {
            for (const std::string_view name : grammar::namesOf(*child)) {
                if (isGlobal(*child)) {
                    add("<xs:element ref=" + quoted(name) + "/>");
                } else {
                    addElement(name, *child);
                }
            }
        }
        add("</xs:choice>");
    }

    void addTextContent(const ElementRule& rule) {
        const std::string_view base = grammar::kindOfText(rule) == Kind::kColour ? "V.colour"
                                      : rule.text == grammar::Text::kRequired    ? "V.text"
                                                                                 : "xs:string";
        add("<xs:simpleContent><xs:extension base=" + quoted(base) + ">");
        addAttributes(rule.type);
        add("</xs:extension></xs:simpleContent>");
        add("</xs:complexType>");
    }

    void addAttributes(std::string_view type) {
        for (const AttributeRule* const rule : grammar::attributesOf(type)) {
            addDocumented("xs:attribute",
                          "name=" + quoted(rule->name) + " type=" + quoted(valueType(type, *rule)) +
                              (rule->isRequired ? " use=\"required\"" : ""),
                          documentationText(type, *rule));
        }
        add(R"(<xs:anyAttribute namespace="##other" processContents="lax"/>)");
    }

    static std::string documentationText(std::string_view type, const AttributeRule& rule) {
        std::string text = sentence(sentenceOf(type, rule.name));
        const std::span<const std::string_view> words = grammar::wordsOf(rule.list);
        for (std::size_t i = 0; i < words.size(); ++i) {
            text += (i == 0 ? " Words: " : ", ") + std::string(words[i]);
        }
        return text + (words.empty() ? "" : ".");
    }

    static std::string valueType(std::string_view type, const AttributeRule& rule) {
        const Kind kind = grammar::kindOf(type, rule);
        if (!rule.list.empty()) {
            return listName(rule.list, kind == Kind::kWords);
        }
        switch (kind) {
            case Kind::kNumber:
                return rule.name == "Port" ? "V.port" : rule.name == "KeyCount" ? "V.count" : "xs:int";
            case Kind::kColour:
                return "V.colour";
            default:
                return "xs:string";
        }
    }

    void addRestriction(const std::string& name, std::string_view base, const std::string& facets) {
        add("<xs:simpleType name=" + quoted(name) + "><xs:restriction base=" + quoted(base) + ">" + facets +
            "</xs:restriction></xs:simpleType>");
    }

    void addValueTypes() {
        addRestriction("V.text", "xs:token", R"(<xs:minLength value="1"/>)");
        addRestriction("V.colour", "xs:string", R"(<xs:pattern value="Group:.*|(0[xX])?[0-9A-Fa-f]{6,8}"/>)");
        addRestriction("V.port", "xs:int", R"(<xs:minInclusive value="1"/><xs:maxInclusive value="65535"/>)");
        addRestriction("V.count", "xs:int", R"(<xs:minInclusive value="1"/>)");
        std::set<std::string> known;
        for (const ElementRule& element : grammar::elementRules()) {
            for (const AttributeRule* const rule : grammar::attributesOf(element.type)) {
                const bool isSeveral = grammar::kindOf(element.type, *rule) == Kind::kWords;
                if (!rule->list.empty() && known.insert(listName(rule->list, isSeveral)).second) {
                    addWordType(rule->list, isSeveral);
                }
            }
        }
    }

    // Editors offer what is enumerated; the pattern accepts the other spellings.
    void addWordType(std::string_view list, bool isSeveral) {
        const std::span<const std::string_view> words = grammar::wordsOf(list);
        const bool isExact = grammar::isExactList(list);
        const std::string pattern = "(" + wordPattern(words, isExact) + ")";
        std::string enumerations;
        for (const std::string_view word : words) {
            enumerations += "<xs:enumeration value=" + quoted(word) + "/>";
        }
        const std::string name = listName(list, isSeveral);
        if (isExact && !isSeveral) {
            addRestriction(name, "xs:string", enumerations);
            return;
        }
        const std::string several = "\\s*" + pattern + "?\\s*(;\\s*" + pattern + "?\\s*)*";
        add("<xs:simpleType name=" + quoted(name) + "><xs:union>");
        add("<xs:simpleType><xs:restriction base=\"xs:string\">" + enumerations +
            "</xs:restriction></xs:simpleType>");
        add("<xs:simpleType><xs:restriction base=\"xs:string\"><xs:pattern value=" +
            quoted(isSeveral ? several : pattern) + "/></xs:restriction></xs:simpleType>");
        add("</xs:union></xs:simpleType>");
    }

    std::vector<std::string> lines_;
};

}  // namespace

std::vector<std::string> descriptionSchema() {
    return SchemaWriter().write();
}
