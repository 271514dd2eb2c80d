#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ui/gui/wx/window_fixture.h"

namespace {

class ToolkitKeys : public WindowTest {
protected:
    // Presses Tab until it has gone round, and gives the stops.
    std::vector<ControlId> stops(const std::string& tab, std::size_t count) {
        std::vector<ControlId> found;
        for (std::size_t i = 0; i < count; ++i) {
            const std::size_t before = notes.size();
            key(tab);
            waitUntil([&] { return notes.size() > before; }, "Tab");
            waitUntil([&] { return lastFocus == toolkit->focused(); }, "the focus");
            found.push_back(lastFocus);
        }
        return found;
    }
};

// Opens a box for Return and Escape, and presses the same key again when the box has been there for a while.
class ToolkitKeysThatAsk : public WindowTest {
public:
    bool onEnter(bool /*boxUsesEnter*/) override {
        ask("Return");
        return true;
    }
    bool onClose() override {
        ask("Escape");
        return false;
    }
    void onTimer() override {
        if (!answer_.empty() && ++timersOfBox_ == 2) {
            key(answer_);
        }
    }

protected:
    int boxes_ = 0;
    int timersOfBox_ = 0;

private:
    void ask(const std::string& answer) {
        ++boxes_;
        timersOfBox_ = 0;
        answer_ = answer;
        toolkit->showMessage("It can't be done.", "A box", MessageButtons::kOk, MessageSign::kInformation);
        answer_.clear();
    }

    std::string answer_;
};

}  // namespace

TEST_F(ToolkitKeysThatAsk, TheKeyThatOpensABoxDoesNotAnswerIt) {
    inFrame([&] {
        toolkit->setFocus(show(ControlKind::kButton, "Next"));
        int expected = 0;
        for (const char* name : {"Escape", "Return"}) {
            key(name);
            waitUntil([&] { return boxes_ > expected; }, "a box");
            ++expected;
            EXPECT_EQ(boxes_, expected);
            EXPECT_GE(timersOfBox_, 2) << name << " closed it";
        }
    });
}

TEST_F(ToolkitKeys, TabFollowsTheOrderOfCreationThroughDocuments) {
    inFrame([&] {
        const ControlId first = add(ControlKind::kButton, "Next", {400, 400, 80, 30});
        const ControlId box = add(ControlKind::kTextBox, {}, {10, 300, 200, 30});
        add(ControlKind::kLabel, "Label", {10, 340, 200, 30});
        const ControlId rich = add(ControlKind::kRichText, {}, {10, 10, 200, 80});
        const ControlId html = add(ControlKind::kHtml, {}, {10, 100, 200, 80});
        const ControlId lines = add(ControlKind::kLines, {}, {10, 200, 200, 80});
        const ControlId tasks = add(ControlKind::kTaskList, {}, {300, 100, 100, 80});
        const ControlId hidden = add(ControlKind::kButton, "Hidden", {300, 10, 80, 30});
        const ControlId disabled = add(ControlKind::kButton, "Disabled", {400, 10, 80, 30});
        const ControlId last = add(ControlKind::kCheckBox, "Last", {10, 400, 80, 30});
        for (const ControlId control : {first, box, rich, html, lines, tasks, disabled, last}) {
            toolkit->show(control, true);
        }
        toolkit->setHtml(html, "<p><a href=\"http://test.example\">link</a></p>");
        toolkit->enable(disabled, false);
        EXPECT_FALSE(toolkit->isShown(hidden));
        focus(first);
        EXPECT_EQ(stops("Tab", 6), (std::vector<ControlId>{box, rich, html, lines, last, first}));
        EXPECT_EQ(notes, std::vector<std::string>(6, "forward"));
        notes.clear();
        EXPECT_EQ(stops("shift+Tab", 6), (std::vector<ControlId>{last, lines, html, rich, box, first}));
        EXPECT_EQ(notes, std::vector<std::string>(6, "back"));
    });
}

TEST_F(ToolkitKeys, TabEntersAGroupAtTheChosenButton) {
    for (const bool themed : {false, true}) {
        inFrame(
            [&] {
                const ControlId before = show(ControlKind::kButton, "Back");
                const ControlId one = show(ControlKind::kRadioButton, "one");
                const ControlId two = show(ControlKind::kRadioButton, "two");
                const ControlId after = show(ControlKind::kButton, "Next");
                focus(before);
                EXPECT_EQ(stops("Tab", 3), (std::vector<ControlId>{one, after, before})) << themed;
                toolkit->setChecked(two, true);
                EXPECT_EQ(stops("Tab", 3), (std::vector<ControlId>{two, after, before})) << themed;
            },
            themed);
    }
}

TEST_F(ToolkitKeys, EnterIsReportedWhereverTheFocusIs) {
    for (const bool themed : {false, true}) {
        inFrame(
            [&] {
                const ControlId button = show(ControlKind::kButton, "Next");
                toolkit->setDefaultButton(button);
                for (const ControlKind kind :
                     {ControlKind::kButton, ControlKind::kLinkButton, ControlKind::kTextBox,
                      ControlKind::kPasswordBox, ControlKind::kCheckBox, ControlKind::kRadioButton,
                      ControlKind::kLines, ControlKind::kRichText, ControlKind::kHtml,
                      ControlKind::kPlainText}) {
                    const ControlId control = add(kind, {}, {20, 100, 200, 60});
                    toolkit->setHtml(control, "<p>words</p>");
                    toolkit->show(control, true);
                    focus(control);
                    notes.clear();
                    key("Return");
                    waitFor("enter");
                    key("KP_Enter");
                    expectNoted({"enter", "enter"});
                    toolkit->remove(control);
                }
                toolkit->setDefaultButton(0);
            },
            themed);
    }
}

TEST_F(ToolkitKeys, EnterThatNobodyTookGoesToTheButtonWithTheFocus) {
    for (const bool themed : {false, true}) {
        inFrame(
            [&] {
                takesEnter = false;
                const ControlId other = show(ControlKind::kButton, "Back");
                toolkit->setDefaultButton(other);
                const ControlId button = show(ControlKind::kButton, "Next");
                focus(button);
                key("Return");
                expectNoted({"enter", press(button)});
                key("Return");
                expectNoted({"enter", press(button)});
                toolkit->setDefaultButton(0);
            },
            themed);
    }
}

TEST_F(ToolkitKeys, EscapeAsksToClose) {
    inFrame([&] {
        for (const ControlKind kind : {ControlKind::kButton, ControlKind::kTextBox, ControlKind::kHtml}) {
            const ControlId control = add(kind, {}, {20, 100, 200, 60});
            toolkit->setHtml(control, "<p>words</p>");
            toolkit->show(control, true);
            focus(control);
            notes.clear();
            key("Escape");
            expectNoted({"close"});
            toolkit->remove(control);
        }
    });
}

TEST_F(ToolkitKeys, AltAloneAndAccessKeysWorkInAThemedFrame) {
    inFrame(
        [&] {
            const ControlId next = show(ControlKind::kButton, "&Next");
            const ControlId box = show(ControlKind::kTextBox);
            const std::vector<AccessKey> keys = {{U'n', next}};
            toolkit->setAccessKeys(keys);
            focus(box);
            notes.clear();
            key("Alt_L");
            expectNoted({"alt"});
            toolkit->showAccessKeys(true);
            key("alt+n");
            expectNoted({press(next)});
            key("alt+x");
            toolkit->enable(next, false);
            key("alt+n");
            toolkit->showAccessKeys(false);
            key("Alt_L");
            expectNoted({"alt"});
        },
        true);
}

TEST_F(ToolkitKeys, AltAloneIsNothingWithoutATheme) {
    inFrame([&] {
        const ControlId next = show(ControlKind::kButton, "&Next");
        focus(show(ControlKind::kTextBox));
        key("alt+n");
        waitFor(press(next));
        EXPECT_EQ(notes, std::vector<std::string>{press(next)});
    });
}
