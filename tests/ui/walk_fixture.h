#pragma once

#include <gtest/gtest.h>

#include <deque>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "description/control_variables.h"
#include "description/dialog_model.h"
#include "description/expressions.h"
#include "description/predefined_variables.h"
#include "description/pxml.h"
#include "description/variable_store.h"
#include "fakes/fake_console.h"
#include "fakes/fake_page_actions.h"
#include "fakes/recording_ui.h"
#include "platform/memory/memory_environment.h"
#include "platform/memory/memory_file_system.h"
#include "ui/dialog_walk.h"

// A gate that gives scripted answers; the last one stays.
class TestGate : public PageGate {
public:
    explicit TestGate(std::deque<bool> scripted) : answers(std::move(scripted)) {}
    std::deque<bool> answers;
    int questions = 0;

    bool isOpen(InstallerUI&) override {
        ++questions;
        const bool answer = answers.front();
        if (answers.size() > 1) {
            answers.pop_front();
        }
        return answer;
    }
};

// A whole walk through real dialogs and variables; the front end and the work are recorded, the files are in
// memory.
class Walk : public testing::Test {
protected:
    Walk() {
        PXML description;
        description.parseText(
            "<Root><InstallerControlVariables><DlgCondition>GATE</DlgCondition>"
            "<UninstallError>UNINSTALL_ERROR</UninstallError></InstallerControlVariables></Root>");
        controlNames.read(description, DebugLog());
        dialogs.getDialogs().reserve(64);  // so that references to pages stay valid
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
    static std::shared_ptr<TestGate> setGate(DialogDesc& page, std::deque<bool> answers) {
        auto gate = std::make_shared<TestGate>(std::move(answers));
        page.gate = gate;
        return gate;
    }
    void placeAt(int dialog, int sub = -1) {
        state.currentDialog = dialog;
        state.currentSubdialog = sub;
    }
    void expectAt(int dialog, int sub = -1) {
        EXPECT_EQ(state.currentDialog, dialog);
        EXPECT_EQ(state.currentSubdialog, sub);
    }
    std::string valueOf(std::string_view name) { return variables.get(name).value_or("(none)"); }

    FakeConsole log;
    DebugLog debugLog{log};
    MemoryEnvironment environment;
    MemoryFileSystem files;
    std::int32_t isGraphical = 0;
    PredefinedVariables predefined{isGraphical, environment, files, debugLog};
    VariableStore variables{predefined, environment, debugLog};
    Expressions expressions{variables, debugLog};
    DialogModel dialogs;
    ControlVariables controlNames;
    RecordingUI ui;
    FakePageActions actions;
    DialogWalk walk{{dialogs, controlNames, variables, expressions}, actions, files, debugLog};
    NavigationState& state = walk.state();
};

using Calls = std::vector<std::string>;
