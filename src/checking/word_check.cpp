#include "checking/word_check.h"

#include <algorithm>
#include <charconv>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "base/text_functions.h"
#include "checking/check_context.h"
#include "checking/nearest_word.h"
#include "checking/quoted_text.h"
#include "description/vocabulary_lookup.h"

namespace {

using grammar::AttributeRule;
using grammar::ElementRule;
using vocabulary::Kind;

// They are read, and mean nothing.
constexpr std::string_view kIdleElements[] = {"LetterVersion", "Supportsite"};

std::string didYouMean(std::string_view nearest) {
    return nearest.empty() ? std::string() : "Write " + inQuotes(nearest) + " if that is what is meant.";
}

bool isForEditors(std::string_view attribute) {
    return attribute == "xmlns" || attribute.starts_with("xmlns:") || attribute.starts_with("xml:") ||
           attribute.starts_with("xsi:");
}

bool isNumber(std::string_view text) {
    std::int32_t number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && stop == end;
}

bool isHexadecimal(std::string_view text) {
    return !text.empty() && text.find_first_not_of("0123456789abcdefABCDEF") == std::string_view::npos;
}

class WordCheck {
public:
    explicit WordCheck(const CheckContext& context) : context_(context) {
        for (const std::int32_t node : context.nodesOf("CustomGroup")) {
            groups_.insert(std::string(context.attribute(node, "Name").value_or("")));
        }
    }

    void run() {
        for (std::int32_t node = 0; node < context_.xml().getNodeCount(); ++node) {
            const ElementRule* const rule = context_.ruleOf(node);
            if (rule != nullptr) {
                checkElement(node, *rule);
            } else {
                checkUnknown(node);
            }
        }
    }

private:
    const PXMLNode& nodeAt(std::int32_t node) const { return *context_.xml().getNode(node); }

    // Of what is below an unknown element nothing is known.
    void checkUnknown(std::int32_t node) {
        const std::int32_t parent = nodeAt(node).parent;
        if (parent >= 0 && context_.ruleOf(parent) == nullptr) {
            return;
        }
        const std::string_view parentType = parent < 0 ? std::string_view() : context_.typeOf(parent);
        const std::string name(nodeAt(node).name);
        if (parentType == "ProductDesc" &&
            std::ranges::find(kIdleElements, name) != std::end(kIdleElements)) {
            context_.addAtElement("element-idle", node, "the element " + name + " has no effect");
            return;
        }
        const std::vector<std::string_view> names = namesBelow(parentType);
        const auto same = std::ranges::find_if(
            names, [&](std::string_view known) { return OUtils::equalsIgnoreCase(known, name); });
        if (same != names.end()) {
            context_.addAtElement("element-case", node,
                                  "the element " + name + " isn't found under this name",
                                  "Write " + inQuotes(*same) + ".");
        } else if (isKnownElement(name)) {
            context_.addAtElement("element-misplaced", node,
                                  "the element " + name + " has no effect " + placeOf(parent));
        } else {
            context_.addAtElement("element-unknown", node,
                                  "there is no element " + name + " " + placeOf(parent),
                                  didYouMean(nearestWord(name, names)));
        }
    }

    std::string placeOf(std::int32_t parent) const {
        return parent < 0 ? "at the top" : "in " + std::string(nodeAt(parent).name);
    }

    static std::vector<std::string_view> namesBelow(std::string_view parentType) {
        std::vector<std::string_view> names;
        for (const ElementRule& rule : grammar::elementRules()) {
            const bool isHere = parentType.empty() ? rule.parents.empty()
                                                   : grammar::listsType(rule.parents, parentType) ||
                                                         rule.parents == grammar::kAnywhere;
            if (!isHere) {
                continue;
            }
            const std::span<const std::string_view> listed = grammar::namesOf(rule);
            names.insert(names.end(), listed.begin(), listed.end());
        }
        return names;
    }

    static bool isKnownElement(std::string_view name) {
        return std::ranges::any_of(grammar::elementRules(), [name](const ElementRule& rule) {
            return std::ranges::any_of(grammar::namesOf(rule),
                                       [name](std::string_view known) { return known == name; });
        });
    }

    void checkElement(std::int32_t node, const ElementRule& rule) {
        checkRepetition(node, rule);
        checkText(node, rule);
        const std::vector<const AttributeRule*> rules = grammar::attributesOf(rule.type);
        const PXMLNode& element = nodeAt(node);
        for (std::size_t i = 0; i < element.attributes.size(); ++i) {
            const std::string_view name = element.attributes[i].name;
            const auto found = std::ranges::find_if(rules, [name](const AttributeRule* known) {
                return OUtils::equalsIgnoreCase(known->name, name);
            });
            if (found != rules.end()) {
                checkAttribute(node, i, rule.type, **found);
            } else if (!isForEditors(name)) {
                reportUnknownAttribute(node, i, rules);
            }
        }
        for (const AttributeRule* const known : rules) {
            if (known->isRequired && !context_.xml().getAttribute(node, known->name)) {
                context_.addAtElement("attribute-missing", node,
                                      std::string(element.name) + " has no effect without the attribute " +
                                          std::string(known->name));
            }
        }
    }

    void checkRepetition(std::int32_t node, const ElementRule& rule) {
        const std::int32_t scope = rule.parents == grammar::kAnywhere ? -1 : nodeAt(node).parent;
        std::string key = std::to_string(scope) + "/" + OUtils::toLowerAscii(nodeAt(node).name);
        if (rule.isOnce && !seen_.insert(std::move(key)).second) {
            context_.addAtElement("element-repeated", node,
                                  "only the first element " + std::string(nodeAt(node).name) + " counts");
        }
    }

    void checkText(std::int32_t node, const ElementRule& rule) {
        const std::string_view text = context_.text(node);
        const std::string name(nodeAt(node).name);
        if (rule.text == grammar::Text::kRequired && OUtils::trimWhiteSpace(text).empty()) {
            context_.addAtElement("text-missing", node, name + " has no effect without a text");
        } else if (rule.text == grammar::Text::kNone && !text.empty()) {
            context_.addAtText("text-ignored", node, "a text of " + name + " has no effect");
        }
        if (rule.limit != 0 && text.size() > rule.limit) {
            context_.addAtText("text-too-long", node,
                               "this text has " + std::to_string(text.size()) + " bytes, and " + name +
                                   " has room for " + std::to_string(rule.limit));
        }
        if (grammar::kindOfText(rule) == Kind::kColour && !text.empty() && !isHexColour(text)) {
            context_.addAtText("colour-invalid", node, inQuotes(text) + " is no colour");
        }
    }

    void reportUnknownAttribute(std::int32_t node, std::size_t index,
                                const std::vector<const AttributeRule*>& rules) {
        const PXMLNode& element = nodeAt(node);
        const std::string name(element.attributes[index].name);
        std::vector<std::string_view> names(rules.size());
        std::ranges::transform(rules, names.begin(), &AttributeRule::name);
        const std::string_view nearest = nearestWord(name, names);
        context_.addAtAttributeName("attribute-unknown", node, index,
                                    std::string(element.name) + " has no attribute " + name,
                                    didYouMean(nearest));
    }

    void checkAttribute(std::int32_t node, std::size_t index, std::string_view type,
                        const AttributeRule& rule) {
        const PXMLNode& element = nodeAt(node);
        const std::string_view value = *element.attributes[index].value;
        const std::string name(rule.name);
        for (std::size_t i = 0; i < index; ++i) {
            if (OUtils::equalsIgnoreCase(element.attributes[i].name, name)) {
                context_.addAtAttributeName("attribute-repeated", node, index,
                                            name + " is given twice, and only this one counts");
            }
        }
        if (rule.limit != 0 && value.size() > rule.limit) {
            context_.addAtAttribute("text-too-long", node, index,
                                    "this text has " + std::to_string(value.size()) + " bytes, and " + name +
                                        " has room for " + std::to_string(rule.limit));
        }
        if (rule.isRequired && value.empty() && !mayBeEmpty(type, name)) {
            context_.addAtAttribute("attribute-empty", node, index,
                                    std::string(element.name) + " has no effect with an empty " + name);
            return;
        }
        checkValue(node, index, type, rule);
    }

    // The default value of a key has no name.
    static bool mayBeEmpty(std::string_view type, std::string_view attribute) {
        return attribute == "Value" && (type == "AddValue" || type == "RemoveValue");
    }

    void checkValue(std::int32_t node, std::size_t index, std::string_view type, const AttributeRule& rule) {
        const std::string_view value = *nodeAt(node).attributes[index].value;
        switch (grammar::kindOf(type, rule)) {
            case Kind::kNumber:
                checkNumber(node, index, rule.name, value);
                break;
            case Kind::kColour:
                checkColour(node, index, value);
                break;
            case Kind::kWord:
                checkWord(node, index, rule, value);
                break;
            case Kind::kWords:
                vocabulary::forEachWord(value, [&](std::string_view word) {
                    checkWord(node, index, rule, OUtils::trimWhiteSpace(word));
                });
                break;
            case Kind::kPresence:
                checkSwitch(node, index, rule.name, value);
                break;
            default:
                break;
        }
    }

    void checkNumber(std::int32_t node, std::size_t index, std::string_view name, std::string_view value) {
        constexpr int kMostPorts = 65535;
        if (!isNumber(value)) {
            context_.addAtAttribute("number-invalid", node, index,
                                    inQuotes(value) + " is no number for " + std::string(name));
            return;
        }
        int number = 0;
        std::from_chars(value.data(), value.data() + value.size(), number);
        const bool isPort = name == "Port" && (number < 1 || number > kMostPorts);
        const bool isCount = name == "KeyCount" && number < 1;
        if (isPort || isCount) {
            context_.addAtAttribute("number-range", node, index,
                                    inQuotes(value) + " is out of range for " + std::string(name),
                                    isPort ? "Write a number from 1 to 65535." : "Write a number from 1 on.");
        }
    }

    static bool isHexColour(std::string_view text) {
        constexpr std::size_t kLeast = 6;
        constexpr std::size_t kMost = 8;
        const std::string_view digits = OUtils::startsWithIgnoreCase(text, "0x") ? text.substr(2) : text;
        return digits.size() >= kLeast && digits.size() <= kMost && isHexadecimal(digits);
    }

    void checkColour(std::int32_t node, std::size_t index, std::string_view value) {
        constexpr std::string_view kGroup = "Group:";
        if (!value.starts_with(kGroup)) {
            if (!isHexColour(value)) {
                context_.addAtAttribute("colour-invalid", node, index, inQuotes(value) + " is no colour");
            }
        } else if (!groups_.empty() && !groups_.contains(std::string(value.substr(kGroup.size())))) {
            const std::vector<std::string_view> names(groups_.begin(), groups_.end());
            context_.addAtAttribute("colour-group-unknown", node, index,
                                    "no CustomGroup has the name " + inQuotes(value.substr(kGroup.size())),
                                    didYouMean(nearestWord(value.substr(kGroup.size()), names)));
        }
    }

    void checkWord(std::int32_t node, std::size_t index, const AttributeRule& rule, std::string_view word) {
        const std::span<const std::string_view> words = grammar::wordsOf(rule.list);
        if (words.empty() || std::ranges::find(words, word) != words.end()) {
            return;
        }
        const auto same = std::ranges::find_if(
            words, [&](std::string_view known) { return OUtils::equalsIgnoreCase(known, word); });
        if (same != words.end() && grammar::isExactList(rule.list)) {
            context_.addAtAttribute("word-case", node, index,
                                    inQuotes(word) + " isn't understood in this spelling",
                                    "Write " + inQuotes(*same) + ".");
        } else if (same == words.end()) {
            context_.addAtAttribute("word-unknown", node, index,
                                    inQuotes(word) + " isn't one of the " + std::string(rule.list),
                                    unknownWordHint(word, words));
        }
    }

    static std::string unknownWordHint(std::string_view word, std::span<const std::string_view> words) {
        const std::vector<std::string_view> all(words.begin(), words.end());
        const std::string_view nearest = nearestWord(word, all);
        if (!nearest.empty()) {
            return didYouMean(nearest);
        }
        std::string hint = "Write one of";
        for (std::size_t i = 0; i < all.size(); ++i) {
            hint += (i == 0 ? " " : ", ") + inQuotes(all[i]);
        }
        return hint + ".";
    }

    // The attribute's presence counts, but for Recalculate.
    void checkSwitch(std::int32_t node, std::size_t index, std::string_view name, std::string_view value) {
        const bool looksOff = value == "0" || OUtils::equalsIgnoreCase(value, "no") ||
                              OUtils::equalsIgnoreCase(value, "false") ||
                              OUtils::equalsIgnoreCase(value, "off");
        if (looksOff && !OUtils::equalsIgnoreCase(name, "Recalculate")) {
            context_.addAtAttribute("switch-on", node, index,
                                    std::string(name) + " is switched on by being there, whatever its value");
        }
    }

    const CheckContext& context_;
    std::set<std::string> groups_;
    std::set<std::string> seen_;
};

}  // namespace

void checkWords(const CheckContext& context) {
    WordCheck(context).run();
}
