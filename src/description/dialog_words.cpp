#include "description/dialog_words.h"

#include "description/dialog_model.h"
#include "description/vocabulary_lookup.h"

namespace DialogWords {

namespace {

using Word = vocabulary::Row<std::int32_t>;

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
std::uint32_t collect(const Word (&rows)[Count], std::string_view words) {
    std::uint32_t bits = 0;
    vocabulary::forEachWord(words, [&](std::string_view word) {
        bits |= static_cast<std::uint32_t>(vocabulary::meaningOf(rows, word).value_or(0));
    });
    return bits;
}

}  // namespace

std::optional<std::int32_t> elementKind(std::string_view name) {
    return vocabulary::meaningOf(kElementKinds, name);
}

std::optional<std::int32_t> fieldType(std::string_view word) {
    return vocabulary::meaningOf(kFieldTypes, word);
}

std::optional<std::int32_t> triggerType(std::string_view word) {
    return vocabulary::meaningOf(kTriggerTypes, word);
}

std::int32_t horizontalAlign(std::string_view word) {
    return vocabulary::meaningOf(kHorizontal, word).value_or(0);
}

std::int32_t verticalAlign(std::string_view word) {
    return vocabulary::meaningOf(kVertical, word).value_or(0);
}

std::uint32_t special(std::string_view words) {
    return collect(kSpecial, words);
}

std::uint32_t triggerMoments(std::string_view words) {
    return collect(kTriggerMoments, words);
}

}  // namespace DialogWords
