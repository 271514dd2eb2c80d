#pragma once

#include "description/answers_file.h"
#include "platform/memory/memory_console_device.h"
#include "platform/memory/memory_file_system.h"
#include "ui/gui/page_fixture.h"
#include "ui/gui/wx_gui.h"

// The whole front end in a window without a screen.
class FrontEndTest : public testing::Test {
public:
    FrontEndTest() {
        ui.setEngine(&session);
        session.addDialog("Welcome");
    }

    // Runs the front end; `script` plays the user.
    int run(std::function<void()> script) {
        window.script = std::move(script);
        return ui.run();
    }
    DialogButtonDesc& addButton(const char* label, std::uint32_t flags, const char* action = "",
                                int shift = 0, int dialog = 0) {
        auto& list = session.dialogs[static_cast<std::size_t>(dialog)].buttons;
        list.emplace_back();
        list.back().label.assign(label);
        list.back().flags = flags;
        list.back().action.assign(action);
        list.back().shift = shift;
        return list.back();
    }
    DialogFieldDesc& addField(DialogFieldType type, const char* variable) {
        auto& list = session.dialogs[0].fields;
        list.emplace_back();
        list.back().type = type;
        list.back().variable.assign(variable);
        list.back().label.assign(variable);
        return list.back();
    }
    DialogElementDesc& addElement(DialogElementKind kind, const char* name, const char* text = "",
                                  std::vector<DialogDesc>* pages = nullptr, std::size_t page = 0) {
        auto& list = (pages == nullptr ? session.dialogs : *pages)[page].elements;
        list.emplace_back();
        list.back().kind = kind;
        list.back().name.assign(name);
        list.back().text = text;
        return list.back();
    }
    ControlId button(const char* label) { return window.find(ControlKind::kButton, label); }
    void press(const char* label) { window.press(ControlKind::kButton, label); }

    PageEngine session;
    RecordingToolkit window;
    MemoryFileSystem files;
    MemoryConsoleDevice terminal;
    AnswersFile answers{files};
    std::uint64_t now = 0;
    WxGUI ui{false, {window, terminal, answers, files, [this] { return now; }, [] { return 0U; }}, {}};
};
