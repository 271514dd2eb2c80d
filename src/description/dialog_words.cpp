#include "description/dialog_words.h"

#include <string>
#include <vector>

#include "base/text_functions.h"
#include "description/dialog_model.h"

namespace DialogWords {

namespace {

struct Word {
    const char* word;
    std::int32_t number;
};

constexpr Word kElementKinds[] = {
    {"Text", kElementText},
    {"Image", kElementImage},
    {"HLine", kElementHLine},
    {"RichEditText", kElementRichEditText},
    {"Progress", kElementProgress},
    {"List", kElementList},
    {"TaskLB", kElementTaskLB},
    {"Border", kElementBorder},
    {"SlideShow", kElementSlideShow},
    {"HtmlEditText", kElementHtmlEditText},
    {"PlainEditText", kElementPlainEditText},
};

constexpr Word kFieldTypes[] = {
    {"Directory", kFieldDirectory},       {"CheckBox", kFieldCheckBox},
    {"RadioButtons", kFieldRadioButtons}, {"InstallParameter", kFieldInstallParameter},
    {"EditBox", kFieldEditBox},           {"Password", kFieldPassword},
};

constexpr Word kHorizontal[] = {{"left", kAlignLeft}, {"center", kAlignCenter}, {"right", kAlignRight}};
constexpr Word kVertical[] = {{"top", kAlignTop}, {"center", kAlignCenter}, {"bottom", kAlignBottom}};

constexpr Word kTriggerTypes[] = {
    {"VarChange", kTriggerVarChange}, {"RunActions", kTriggerRunActions},
    {"VarReset", kTriggerVarReset},   {"VarRecalculation", kTriggerVarRecalculation},
    {"FileCheck", kTriggerFileCheck}, {"DebugExpression", kTriggerDebugExpression},
};

constexpr Word kSpecial[] = {
    {"BadFinish", kDialogBadFinish}, {"1", kDialogBadFinish},         {"HasSubDialogs", kDialogHasSubDialogs},
    {"AutoNext", kDialogAutoNext},   {"Finish", kDialogFinish},       {"WeakCondition", kDialogWeakCondition},
    {"Busy", kDialogBusy},           {"Automated", kDialogAutomated},
};

constexpr Word kTriggerMoments[] = {
    {"Start", kTriggerOnStart}, {"Set", kTriggerOnStart},       {"Dynamic", kTriggerOnDynamic},
    {"End", kTriggerOnEnd},     {"DlgEval", kTriggerOnDlgEval}, {"EvalDlg", kTriggerOnDlgEval},
};

template <std::size_t Count>
std::int32_t find(const Word (&words)[Count], const char* word, std::int32_t unknown) {
    for (const Word& known : words) {
        if (OUtils::equalsIgnoreCase(known.word, word)) {
            return known.number;
        }
    }
    return unknown;
}

template <std::size_t Count>
std::uint32_t collect(const Word (&words)[Count], const char* text) {
    std::vector<std::string> list;
    OUtils::splitText(text, ';', list);
    std::uint32_t bits = 0;
    for (const std::string& word : list) {
        bits |= static_cast<std::uint32_t>(find(words, word.c_str(), 0));
    }
    return bits;
}

template <std::size_t Count>
std::vector<std::string_view> all(const Word (&words)[Count]) {
    std::vector<std::string_view> list;
    for (const Word& word : words) {
        list.emplace_back(word.word);
    }
    return list;
}

}  // namespace

std::int32_t elementKind(const char* word) {
    return find(kElementKinds, word, -1);
}

std::int32_t fieldType(const char* word) {
    return find(kFieldTypes, word, -1);
}

std::int32_t horizontalAlign(const char* word) {
    return find(kHorizontal, word, 0);
}

std::int32_t verticalAlign(const char* word) {
    return find(kVertical, word, 0);
}

std::int32_t triggerType(const char* word) {
    return find(kTriggerTypes, word, -1);
}

std::uint32_t special(const char* words) {
    return collect(kSpecial, words);
}

std::uint32_t triggerMoments(const char* words) {
    return collect(kTriggerMoments, words);
}

std::vector<std::string_view> allElementKinds() {
    return all(kElementKinds);
}

std::vector<std::string_view> allFieldTypes() {
    return all(kFieldTypes);
}

std::vector<std::string_view> allHorizontalAligns() {
    return all(kHorizontal);
}

std::vector<std::string_view> allVerticalAligns() {
    return all(kVertical);
}

std::vector<std::string_view> allTriggerTypes() {
    return all(kTriggerTypes);
}

std::vector<std::string_view> allSpecials() {
    return all(kSpecial);
}

std::vector<std::string_view> allTriggerMoments() {
    return all(kTriggerMoments);
}

}  // namespace DialogWords
