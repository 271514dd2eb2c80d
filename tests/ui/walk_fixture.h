#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "contracts/system_operations.h"
#include "description/control_variables.h"
#include "description/dialog_model.h"
#include "description/environment_access.h"
#include "description/expressions.h"
#include "description/predefined_variables.h"
#include "description/pxml.h"
#include "description/variable_store.h"
#include "fakes/fake_console.h"
#include "fakes/fake_page_actions.h"
#include "fakes/recording_ui.h"
#include "ui/button_actions.h"
#include "ui/control_values.h"
#include "ui/dialog_condition_check.h"
#include "ui/external_uninstall_page.h"
#include "ui/navigation_state.h"
#include "ui/navigator.h"
#include "ui/page_conditions.h"
#include "ui/page_entry.h"
#include "ui/page_turner.h"
#include "ui/running_apps_page.h"
#include "ui/task_states.h"
#include "ui/triggers.h"
#include "support/debug_log.h"

class WalkEnvironment : public EnvironmentAccess {
public:
    std::map<std::string, std::string> environment;
    std::set<std::string> files;

    bool getEnvironment(const char* name, std::string& outValue) override {
        const auto found = environment.find(name);
        outValue = found == environment.end() ? std::string() : found->second;
        return found != environment.end();
    }
    bool setEnvironment(const char* name, const char* value) override {
        environment[name] = value;
        return true;
    }
    bool fileExists(const char* path) override { return files.contains(path); }
    bool getProgramPath(std::string& outPath) override {
        outPath = "/opt/installer";
        return true;
    }
    bool getTempDirectory(std::string& outPath) override {
        outPath = "/tmp";
        return true;
    }
};

// What a walk asks of the system: who is installed, and who runs.
class WalkSystem : public SystemOperations {
public:
    struct InstalledApplication {
        std::string name;
        std::string publisher;
        bool in32BitView = false;
    };

    std::vector<std::string> calls;  // looks at the list of installed applications
    std::vector<InstalledApplication> installed;
    std::set<std::string> running;  // a process, or "process@directory"

    bool findUninstallEntry(const char* name, std::uint32_t flags) override {
        calls.push_back("findUninstallEntry(" + std::string(name) + ")");
        return std::any_of(installed.begin(), installed.end(), [&](const InstalledApplication& application) {
            return application.name == name && isInView(application, flags);
        });
    }
    void findEntriesByPublisher(std::vector<std::string>& outNames, const char* filter, const char* publisher,
                                std::uint32_t flags) override {
        calls.push_back("findEntriesByPublisher(" + std::string(filter) + ", " + publisher + ")");
        for (const InstalledApplication& application : installed) {
            if (application.name.find(filter) != std::string::npos &&
                application.publisher.find(publisher) != std::string::npos && isInView(application, flags)) {
                outNames.push_back(application.name);
            }
        }
    }
    bool isApplicationRunning(const char* name, const char* directory) override {
        const bool anywhere = directory == nullptr || *directory == '\0';
        return running.contains(anywhere ? std::string(name) : std::string(name) + "@" + directory);
    }

    int getTemporaryFileName(char*, int) override { return -1; }
    bool getApplicationLogFile(const char*, char*, int) override { return false; }
    bool closeApplication(const char*, bool, const char*) override { return false; }
    bool copyFile(const char*, const char*) override { return false; }
    bool readRegistryValue(const char*, const char*, const char*, SystemRegistryValue&) override {
        return false;
    }
    bool listRegistryKeys(const char*, const char*, std::vector<std::string>&) override { return false; }
    bool openInDefaultBrowser(const char*) override { return false; }
    void sleepMilliseconds(std::uint32_t) override {}

private:
    static bool isInView(const InstalledApplication& application, std::uint32_t flags) {
        return application.in32BitView == ((flags & kEntryIn32BitView) != 0);
    }
};

// A gate that gives scripted answers; the last one stays.
class TestGate : public DlgCondition {
public:
    explicit TestGate(std::deque<int> scripted) : answers(std::move(scripted)) {}
    std::deque<int> answers;
    int evaluations = 0;

    int evaluate(SystemOperations*, InstallerUI*) override {
        ++evaluations;
        const int answer = answers.front();
        if (answers.size() > 1) {
            answers.pop_front();
        }
        return answer;
    }
};

// A whole walk over real dialogs and variables, with the front end, the work and the system recorded.
class Walk : public testing::Test {
protected:
    Walk() {
        description.parseText(
            "<Root><InstallerControlVariables><DlgCondition>GATE</DlgCondition>"
            "<UninstallError>UNINSTALL_ERROR</UninstallError></InstallerControlVariables></Root>");
        controlNames.read(description, nullptr);
        dialogs.getDialogs().reserve(64);  // references to pages stay good in small walks
    }

    DialogDesc& addDialog(const char* name, std::uint32_t special = 0) {
        dialogs.add(makePage(name, special));
        return dialogs.getDialogs().back();
    }
    // A frame with its sub-dialogs and a task for each.
    DialogDesc& addFrame(const char* name, const std::vector<const char*>& subs) {
        DialogDesc& frame = addDialog(name, kDialogHasSubDialogs);
        for (const char* sub : subs) {
            frame.subDialogs.push_back(makePage(sub, 0));
            frame.tasks.emplace_back();
            frame.tasks.back().name.assign(sub);
            frame.tasks.back().currentLabel.assign(sub);
        }
        return frame;
    }
    static DialogDesc makePage(const char* name, std::uint32_t special) {
        DialogDesc page;
        page.name.assign(name);
        page.special = special;
        return page;
    }
    static TriggerDesc& addTrigger(DialogDesc& page, std::uint32_t when, std::int32_t type,
                                   const char* variable, const char* value) {
        page.triggers.emplace_back();
        TriggerDesc& trigger = page.triggers.back();
        trigger.when = when;
        trigger.type = type;
        trigger.variable.assign(variable);
        trigger.value.assign(value);
        return trigger;
    }
    static std::shared_ptr<TestGate> setGate(DialogDesc& page, std::deque<int> answers) {
        auto gate = std::make_shared<TestGate>(std::move(answers));
        page.condition = gate;
        return gate;
    }
    // The node of the element, which is added to the description below the top element.
    std::int32_t addXml(const char* element, const std::string& xml) {
        description.parseText(("<Root>" + xml + "</Root>").c_str());
        std::int32_t node = -1;
        for (std::int32_t next = description.findByName(element, -1); next >= 0;
             next = description.findByName(element, next)) {
            node = next;
        }
        return node;
    }
    void stand(int dialog, int sub = -1) {
        state.currentDialog = dialog;
        state.currentSubdialog = sub;
    }
    void expectAt(int dialog, int sub = -1) {
        EXPECT_EQ(state.currentDialog, dialog);
        EXPECT_EQ(state.currentSubdialog, sub);
    }
    std::string valueOf(const char* name) {
        char value[OUtils::kPathCapacity] = "(none)";
        variables.getVariable(name, value, sizeof value);
        return value;
    }

    FakeConsole log;
    DebugLog console{log};
    WalkEnvironment environment;
    std::int32_t isGraphical = 0;
    PredefinedVariables predefined{isGraphical, environment, console};
    VariableStore variables{predefined, environment, console};
    Expressions expressions{variables, console};
    DialogModel dialogs;
    PXML description;
    ControlVariables controlNames;
    ControlValues controls{controlNames, variables};
    NavigationState state;
    RecordingUI ui;
    FakePageActions actions;
    WalkSystem system;
    Triggers triggers{dialogs, variables, expressions, actions, environment, console};
    TaskStates tasks{state, dialogs, expressions};
    PageConditions conditions{dialogs, expressions, system};
    RunningAppsPage runningApps{description, expressions, actions, system, console};
    ExternalUninstallPage externalUninstall{description, expressions, actions, system};
    PageEntry entry{controls, triggers, actions, runningApps, externalUninstall, console};
    PageTurner pages{state, dialogs, triggers, tasks, entry};
    Navigator navigator{state, dialogs, conditions, tasks, pages, console};
    ButtonActions buttons{state, variables};
    DialogConditionCheck conditionCheck{state, dialogs, conditions, controls};
};

using Calls = std::vector<std::string>;
