#include "checking/page_check.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "base/text_functions.h"
#include "checking/check_context.h"
#include "checking/condition_analysis.h"
#include "checking/nearest_word.h"
#include "checking/quoted_text.h"
#include "description/dialog_model.h"
#include "description/dialog_words.h"

namespace {

// What shows files of the package, of which an uninstallation has none.
constexpr std::int32_t kNeedsFiles[] = {kElementRichEditText, kElementHtmlEditText, kElementPlainEditText,
                                        kElementImage, kElementSlideShow};

std::string lower(std::string_view text) {
    return OUtils::toLowerAscii(text);
}

// The pages of one walk, in the order in which they are shown; those of a frame stand behind it.
class Walk {
public:
    Walk(const CheckContext& context, std::string_view section)
        : context_(context), section_(context.firstOf(section)) {
        for (const std::int32_t page : context.nodesOf(grammar::kPage)) {
            if (context.enclosing(page, section) == section_ && section_ >= 0) {
                pages_.push_back(page);
            }
        }
    }

    std::int32_t section() const { return section_; }
    const std::vector<std::int32_t>& pages() const { return pages_; }
    // The first of this name; -1 when there is none.
    std::int32_t find(std::string_view name) const {
        const auto found = std::ranges::find_if(
            pages_, [&](std::int32_t page) { return context_.xml().getName(page) == name; });
        return found == pages_.end() ? -1 : *found;
    }
    bool isInFrame(std::int32_t page) const { return context_.xml().getNode(page)->parent != section_; }

private:
    const CheckContext& context_;
    std::int32_t section_;
    std::vector<std::int32_t> pages_;
};

class PageCheck {
public:
    explicit PageCheck(const CheckContext& context)
        : context_(context),
          installation_(context, "Dialogs"),
          uninstallation_(context, "UninstallDialogs") {}

    void run() {
        checkSections();
        if (installation_.section() >= 0) {
            checkSteps(installation_);
            checkRegistration();
        }
        if (uninstallation_.section() >= 0) {
            checkSteps(uninstallation_);
            checkUninstallationPages();
        }
        for (const Walk* const walk : {&installation_, &uninstallation_}) {
            checkEnd(*walk);
            for (const std::int32_t page : walk->pages()) {
                checkPage(page, *walk);
            }
        }
        checkContainers();
    }

private:
    std::string_view nameOf(std::int32_t node) const { return context_.xml().getName(node); }

    std::uint32_t specialOf(std::int32_t page) const {
        return DialogWords::special(context_.attribute(page, "Special").value_or(""));
    }

    bool hasCondition(std::int32_t page) const { return context_.attribute(page, "Condition").has_value(); }

    void checkSections() {
        const std::int32_t root = context_.firstOf("TandrelGroupInstallation");
        if (root < 0) {
            return;
        }
        for (const std::string_view section : {"ProductDesc", "DefValues", "Dialogs"}) {
            if (context_.firstOf(section) < 0) {
                context_.addAtElement(
                    "element-missing", root,
                    "without the element " + std::string(section) + " a setup ends at once");
            }
        }
        if (context_.firstOf("ProductDesc") >= 0 && context_.firstOf("Fullname") < 0) {
            context_.addAtElement("element-missing", context_.firstOf("ProductDesc"),
                                  "the product has no Fullname");
        }
        if (context_.firstOf("InstallLogFile") >= 0 && uninstallation_.section() < 0) {
            context_.addAtElement(
                "page-no-uninstallation", root,
                "the product keeps a log for its uninstallation, but there are no UninstallDialogs");
        }
    }

    void checkSteps(const Walk& walk) {
        const std::string section(nameOf(walk.section()));
        if (walk.find("CopyProgress") < 0) {
            context_.addAtElement("page-no-copy", walk.section(),
                                  section + " has no page CopyProgress, so nothing is " +
                                      (&walk == &installation_ ? "installed" : "uninstalled"));
        }
        const bool hasFinish =
            std::ranges::any_of(walk.pages(), [this](std::int32_t page) { return mayEndASuccess(page); });
        if (!hasFinish) {
            context_.addAtElement("page-no-finish", walk.section(),
                                  section + " has no last page, so each run counts as failed");
        }
    }

    // A page for failures is shown after others only without a condition.
    bool mayEndASuccess(std::int32_t page) const {
        const std::uint32_t special = specialOf(page);
        return (special & kDialogFinish) != 0 && ((special & kDialogBadFinish) == 0 || !hasCondition(page));
    }

    void checkRegistration() {
        const std::int32_t page = installation_.find("RegisterApplication");
        if (page < 0 && context_.firstOf("InstallLogFile") >= 0) {
            context_.addAtElement("page-no-register", installation_.section(),
                                  "the product is never registered, so users don't find how to uninstall it");
        }
        if (page < 0) {
            return;
        }
        for (const std::string_view needed : {"Fullname", "MajorVersion", "MinorVersion", "MinestVersion",
                                              "Website", "UninstallCmd", "InstallLogFile"}) {
            if (context_.firstOf(needed) < 0) {
                context_.addAtElement("page-incomplete", page,
                                      "the registration needs the element " + std::string(needed), "Add it.");
            }
        }
        const std::int32_t name = context_.firstOf("Fullname");
        if (name >= 0 && context_.text(name).find('\\') != std::string_view::npos) {
            context_.addAtText("page-incomplete", name, "a product with a \\ in its name can't be registered",
                               "Write the name without it.");
        }
        if (uninstallation_.section() >= 0 && uninstallation_.find("UnregisterApplication") < 0) {
            context_.addAtElement("page-no-unregister", uninstallation_.section(),
                                  "the product is registered, but stays registered when it is uninstalled");
        }
    }

    void checkUninstallationPages() {
        for (const std::int32_t field : context_.nodesOf("Field")) {
            if (context_.enclosing(field, "UninstallDialogs") >= 0) {
                context_.addAtElement("field-in-uninstallation", field,
                                      "a field has no effect in an uninstallation");
            }
        }
        for (const std::int32_t element : context_.nodesOf(grammar::kPageElement)) {
            const std::int32_t kind = DialogWords::elementKind(nameOf(element)).value_or(0);
            const bool needsFile = std::ranges::find(kNeedsFiles, kind) != std::end(kNeedsFiles);
            if (needsFile && context_.enclosing(element, "UninstallDialogs") >= 0) {
                context_.addAtElement("element-in-uninstallation", element,
                                      std::string(nameOf(element)) + " shows nothing in an uninstallation");
            }
        }
    }

    // Nothing comes behind a last page that is always reached.
    void checkEnd(const Walk& walk) {
        bool isOver = false;
        for (const std::int32_t page : walk.pages()) {
            if (walk.isInFrame(page)) {
                continue;
            }
            if (isOver) {
                context_.addAtElement(
                    "page-unreachable", page,
                    "the page " + std::string(nameOf(page)) + " stands behind the last one");
            }
            const bool isLast = (specialOf(page) & kDialogFinish) != 0 && !hasCondition(page);
            isOver = isOver || isLast;
        }
    }

    void checkPage(std::int32_t page, const Walk& walk) {
        checkName(page);
        checkFrame(page);
        checkHolding(page);
        checkWayOn(page, walk);
        checkRetained(page);
        checkCondition(page, walk);
        if (nameOf(page) == "PostInstall" && &walk == &installation_) {
            checkPostInstall(page);
            checkOrder(page);
        }
    }

    // A run begins with the first page and asks for conditions only when it moves to another one.
    void checkCondition(std::int32_t page, const Walk& walk) {
        const std::string_view condition = context_.attribute(page, "Condition").value_or("");
        if (condition.empty()) {
            return;
        }
        if (page == walk.pages().front()) {
            context_.addAtAttribute(
                "page-first-condition", page, "Condition",
                "the page " + std::string(nameOf(page)) + " is the first one, so it is shown in any case");
        } else if (constancyOf(condition) == Constancy::kAlwaysFalse) {
            context_.addAtAttribute("page-unreachable", page, "Condition",
                                    "the page " + std::string(nameOf(page)) + " is never shown");
        }
    }

    void checkPostInstall(std::int32_t page) {
        if (context_.firstOf("InstallLogFile") < 0) {
            context_.addAtElement("page-incomplete", page, "the page PostInstall needs an InstallLogFile",
                                  "Add it.");
        }
        if (!hasCondition(page)) {
            context_.addAtElement("page-condition", page,
                                  "the page PostInstall makes a failed installation look like a success");
        }
    }

    // The installation writes the log that this page changes.
    void checkOrder(std::int32_t page) {
        if (page < installation_.find("CopyProgress")) {
            context_.addAtElement("page-too-early", page,
                                  "the page PostInstall ends the setup, because there is no log yet");
        }
    }

    void checkName(std::int32_t page) {
        const std::string_view name = nameOf(page);
        const std::vector<std::string_view> known(std::begin(vocabulary::kPageNames),
                                                  std::end(vocabulary::kPageNames));
        if (std::ranges::find(known, name) != known.end()) {
            checkParts(page, name);
            return;
        }
        constexpr std::size_t kLongEnough = 7;  // a shorter name is soon like another
        const std::string_view nearest = nearestWord(name, known);
        const std::string hint = "Write " + inQuotes(nearest) + " if that is what is meant.";
        if (OUtils::equalsIgnoreCase(nearest, name)) {
            context_.addAtElement("page-name-case", page, "the page " + std::string(name) + " does nothing",
                                  hint);
        } else if (!nearest.empty() && name.size() >= kLongEnough && isNearlyTheSame(nearest, name)) {
            context_.addAtElement("page-name-near", page, "the page " + std::string(name) + " does nothing",
                                  hint);
        }
        checkParts(page, name);
    }

    // A letter or two, not another word.
    static bool isNearlyTheSame(std::string_view nearest, std::string_view name) {
        constexpr std::size_t kMost = 2;
        const std::size_t longer = std::max(nearest.size(), name.size());
        return longer - std::min(nearest.size(), name.size()) <= kMost &&
               lower(nearest).front() == lower(name).front();
    }

    // Children that only one page looks at.
    void checkParts(std::int32_t page, std::string_view name) {
        for (const std::int32_t child : context_.xml().childrenOf(page)) {
            const std::string_view type = context_.typeOf(child);
            const bool isForPrograms =
                type == "TestApp" || type == "TerminateApp" || type == "TerminateSequence";
            const std::string_view wanted = isForPrograms                         ? "RunningApps"
                                            : type == "ExternalLegacyApplication" ? "ExternalUninstall"
                                                                                  : name;
            if (name != wanted) {
                context_.addAtElement("element-misplaced", child,
                                      std::string(type) + " has no effect on this page",
                                      "Move it to a page " + std::string(wanted) + ".");
            }
        }
    }

    void checkFrame(std::int32_t page) {
        const std::int32_t tasks = context_.xml().findChild(page, "TaskList");
        const std::int32_t pages = context_.xml().findChild(page, "SubDialogs");
        const bool isFrame = (specialOf(page) & kDialogHasSubDialogs) != 0;
        if (isFrame && (tasks < 0 || pages < 0)) {
            context_.addAtElement("frame-incomplete", page,
                                  std::string("the frame has no ") + (tasks < 0 ? "TaskList" : "SubDialogs") +
                                      ", and the setup ends before its first page");
        } else if (!isFrame && (tasks >= 0 || pages >= 0)) {
            context_.addAtElement("frame-special", page, "the pages in this one are never read");
        } else if (isFrame) {
            compareTasks(tasks, pages);
        }
    }

    void compareTasks(std::int32_t tasks, std::int32_t pages) {
        std::unordered_set<std::string_view> taskNames;
        std::unordered_set<std::string_view> pageNames;
        for (const std::int32_t task : context_.xml().childrenOf(tasks)) {
            taskNames.insert(nameOf(task));
        }
        for (const std::int32_t page : context_.xml().childrenOf(pages)) {
            pageNames.insert(nameOf(page));
            if (!taskNames.contains(nameOf(page))) {
                context_.addAtElement(
                    "page-without-task", page,
                    "no task has the name " + std::string(nameOf(page)) + ", so this page is never read");
            }
        }
        for (const std::int32_t task : context_.xml().childrenOf(tasks)) {
            if (!pageNames.contains(nameOf(task))) {
                context_.addAtElement(
                    "task-without-page", task,
                    "the task " + std::string(nameOf(task)) + " has no page and only appears in the list");
            }
        }
    }

    void checkHolding(std::int32_t page) {
        const bool holds = nameOf(page) == "RunningApps" || nameOf(page) == "ExternalUninstall";
        const std::uint32_t special = specialOf(page);
        if (holds && (special & kDialogAutomated) != 0 && (special & kDialogWeakCondition) == 0) {
            context_.addAtAttribute(
                "page-waits", page, "Special",
                "an unattended run waits on this page for as long as the programs are there");
        }
    }

    // In a window a page is left by its buttons.
    void checkWayOn(std::int32_t page, const Walk& walk) {
        const std::uint32_t special = specialOf(page);
        const bool movesOn =
            (special & (kDialogAutoNext | kDialogHasSubDialogs)) != 0 || nameOf(page) == "PostInstall";
        if (context_.nodesOf("Button").empty() || movesOn) {
            return;
        }
        const std::int32_t firstButton = context_.nodesOf("Button").front();
        if (page < firstButton && !isAbove(page, firstButton)) {
            return;  // gets buttons of its own
        }
        if (!hasWayOn(page) && !(walk.isInFrame(page) && hasWayOn(frameOf(page)))) {
            context_.addAtElement("page-no-way-on", page,
                                  "no button leads on from the page " + std::string(nameOf(page)));
        }
    }

    bool isAbove(std::int32_t page, std::int32_t node) const {
        while (node >= 0 && node != page) {
            node = context_.xml().getNode(node)->parent;
        }
        return node == page;
    }

    std::int32_t frameOf(std::int32_t page) const {
        return context_.enclosing(context_.xml().getNode(page)->parent, grammar::kPage);
    }

    bool hasWayOn(std::int32_t page) const {
        const std::vector<std::int32_t> children = context_.xml().childrenOf(page);
        return std::ranges::any_of(children, [this](std::int32_t child) {
            if (context_.typeOf(child) != "Button") {
                return false;
            }
            const std::string_view name = context_.attribute(child, "Name").value_or("");
            const std::string_view shift = context_.attribute(child, "DialogShift").value_or("");
            return OUtils::equalsIgnoreCase(name, "Next") || OUtils::equalsIgnoreCase(name, "Customize") ||
                   (!shift.empty() && shift.front() != '-' && shift != "0");
        });
    }

    void checkRetained(std::int32_t page) {
        const std::string_view retained = context_.attribute(page, "Retain").value_or("");
        if (retained.empty()) {
            return;
        }
        for (const std::string& name : OUtils::splitText(retained, ';')) {
            if (!name.empty() && !elementNames().contains(name)) {
                context_.addAtAttribute("retain-unknown", page, "Retain",
                                        "no element has the name " + inQuotes(name));
            }
        }
    }

    const std::unordered_set<std::string>& elementNames() {
        if (!areNamesRead_) {
            areNamesRead_ = true;
            for (const std::int32_t element : context_.nodesOf(grammar::kPageElement)) {
                elementNames_.emplace(context_.attribute(element, "Name").value_or(""));
            }
        }
        return elementNames_;
    }

    // Containers of actions, and who asks for them.
    void checkContainers() {
        std::unordered_set<std::string> asked;
        for (const std::int32_t trigger : context_.nodesOf("Trigger")) {
            checkTrigger(trigger, asked);
        }
        for (const std::int32_t sequence : context_.nodesOf("TerminateSequence")) {
            asked.emplace(context_.text(sequence));
            if (!context_.text(sequence).empty() && !isContainer(context_.text(sequence))) {
                context_.addAtText(
                    "container-unknown", sequence,
                    "there is no container of actions with the name " + inQuotes(context_.text(sequence)));
            }
        }
        for (const std::int32_t container : context_.nodesOf(grammar::kContainer)) {
            if (!asked.contains(std::string(nameOf(container)))) {
                const std::string_view nearest =
                    nearestWord(nameOf(container), {"AdditionalInstall", "PostInstall", "PreUninstall"});
                context_.addAtElement("container-unused", container,
                                      "nothing runs the actions of " + std::string(nameOf(container)),
                                      nearest.empty()
                                          ? std::string()
                                          : "Write " + inQuotes(nearest) + " if that is what is meant.");
            }
        }
    }

    bool isContainer(std::string_view name) const { return context_.xml().findByName(name) >= 0; }

    void checkTrigger(std::int32_t trigger, std::unordered_set<std::string>& asked) {
        const std::string_view word = context_.attribute(trigger, "Type").value_or("VarChange");
        const auto type = DialogWords::triggerType(word).value_or(kTriggerVarChange);
        const auto value = context_.attribute(trigger, "Value");
        const bool needsValue = type != kTriggerVarReset && type != kTriggerVarRecalculation;
        const bool needsVariable =
            type == kTriggerVarChange || type == kTriggerVarReset || type == kTriggerFileCheck;
        if (needsValue && !value) {
            context_.addAtElement("trigger-incomplete", trigger,
                                  "a trigger of this type has no effect without Value");
        }
        if (needsVariable && context_.attribute(trigger, "Variable").value_or("").empty()) {
            context_.addAtElement("trigger-incomplete", trigger,
                                  "a trigger of this type has no effect without Variable");
        }
        if (type == kTriggerRunActions && value) {
            asked.emplace(*value);
            if (!isContainer(*value)) {
                context_.addAtAttribute("container-unknown", trigger, "Value",
                                        "there is no container of actions with the name " + inQuotes(*value));
            }
        }
    }

    const CheckContext& context_;
    Walk installation_;
    Walk uninstallation_;
    std::unordered_set<std::string> elementNames_;
    bool areNamesRead_ = false;
};

}  // namespace

void checkPages(const CheckContext& context) {
    PageCheck(context).run();
}
