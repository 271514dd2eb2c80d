#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "ui/gui/wx/window_fixture.h"

namespace {

class ToolkitTexts : public WindowTest {
protected:
    static std::string textEvent(ControlId control) { return "text " + std::to_string(control); }
};

}  // namespace

TEST_F(ToolkitTexts, ReportsEachChangeThatTheUserMakes) {
    inFrame([&] {
        const ControlId box = show(ControlKind::kTextBox, "ab");
        focus(box);
        EXPECT_EQ(toolkit->focused(), box);
        key("End");
        type("c");
        waitFor(textEvent(box));
        EXPECT_EQ(textOf(box), "abc");
    });
}

TEST_F(ToolkitTexts, SettingATextReportsNothing) {
    inFrame([&] {
        const ControlId box = show(ControlKind::kTextBox, "ab");
        toolkit->setText(box,
                         "Gr\xC3\xBC\xC3\x9F"
                         "e \xF0\x9F\x98\x80");
        key("shift");
        EXPECT_EQ(textOf(box),
                  "Gr\xC3\xBC\xC3\x9F"
                  "e \xF0\x9F\x98\x80");
        EXPECT_TRUE(notes.empty());
    });
}

TEST_F(ToolkitTexts, SettingTheSameTextKeepsTheCaret) {
    inFrame([&] {
        const ControlId box = show(ControlKind::kTextBox, "abcd");
        focus(box);
        key("Home");
        key("Right");
        toolkit->setText(box, "abcd");
        type("x");
        waitFor(textEvent(box));
        EXPECT_EQ(textOf(box), "axbcd");
    });
}

TEST_F(ToolkitTexts, APasswordIsReadBackInClear) {
    inFrame([&] {
        const ControlId box = show(ControlKind::kPasswordBox);
        focus(box);
        type("secret");
        waitUntil([&] { return textOf(box) == "secret"; }, "the password");
    });
}

TEST_F(ToolkitTexts, ATextWrapsInsideItsPlaceAndKeepsItsWords) {
    inFrame([&] {
        const std::string words = "The quick brown fox & the lazy dog jump over each other, and over again.";
        const ControlId wide = add(ControlKind::kText, words, {10, 10, 2000, 0});
        const ControlId narrow = add(ControlKind::kText, words, {10, 60, 120, 0});
        EXPECT_EQ(toolkit->place(narrow).width, 120);
        EXPECT_GE(toolkit->place(narrow).height, 3 * toolkit->place(wide).height);
        EXPECT_EQ(textOf(narrow), words);
        const ControlId twoLines = add(ControlKind::kText, "one\ntwo", {10, 200, 300, 0});
        EXPECT_GE(toolkit->place(twoLines).height, 2 * toolkit->place(wide).height - 4);
    });
}

TEST_F(ToolkitTexts, ALongListKeepsAllLines) {
    inFrame([&] {
        const ControlId lines = add(ControlKind::kLines, {}, {10, 10, 400, 200});
        toolkit->show(lines, true);
        std::string all;
        for (int piece = 0; piece < 100; ++piece) {
            std::string text;
            for (int i = 0; i < 20; ++i) {
                text += "C:\\Program Files\\Tandrel\\share\\documents\\file-" +
                        std::to_string(piece * 20 + i) + ".txt\n";
            }
            toolkit->appendText(lines, text);
            all += text;
        }
        toolkit->processEvents();
        EXPECT_TRUE(textOf(lines) == all) << textOf(lines).size() << " of " << all.size();
        toolkit->setText(lines, "");
        EXPECT_EQ(textOf(lines), "");
        toolkit->appendText(lines, "again\n");
        EXPECT_EQ(textOf(lines), "again\n");
    });
}

TEST_F(ToolkitTexts, ADocumentIsNotChangedByTyping) {
    inFrame([&] {
        for (const ControlKind kind :
             {ControlKind::kLines, ControlKind::kPlainText, ControlKind::kRichText}) {
            const ControlId document = add(kind, {}, {10, 10, 400, 200});
            toolkit->setText(document, "words");
            toolkit->show(document, true);
            focus(document);
            type("x");
            EXPECT_EQ(textOf(document), "words") << static_cast<int>(kind);
            toolkit->remove(document);
        }
        EXPECT_TRUE(notes.empty());
    });
}

TEST_F(ToolkitTexts, WritesRichText) {
    using Kind = RichTextCommand::Kind;
    inFrame([&] {
        const ControlId document = add(ControlKind::kRichText, {}, {10, 10, 400, 200});
        toolkit->show(document, true);
        const std::vector<RichTextCommand> commands = {
            {Kind::kSetPointSize, 14, {}},    {Kind::kBeginAlignment, 1, {}},
            {Kind::kWrite, 0, "Title"},       {Kind::kEndStyle, 0, {}},
            {Kind::kSetPointSize, 0, {}},     {Kind::kAddParagraph, 0, "first "},
            {Kind::kBeginBold, 0, {}},        {Kind::kBeginItalic, 0, {}},
            {Kind::kBeginUnderline, 0, {}},   {Kind::kWrite, 0, "and bold"},
            {Kind::kEndStyle, 0, {}},         {Kind::kEndStyle, 0, {}},
            {Kind::kEndStyle, 0, {}},         {Kind::kEndStyle, 0, {}},
            {Kind::kBeginLeftIndent, 60, {}}, {Kind::kBeginTextColour, 0xFF, {}},
            {Kind::kWrite, 0, "\nred"},
        };
        toolkit->setRichText(document, commands);
        toolkit->redraw();
        EXPECT_EQ(textOf(document), "Title\nfirst and bold\nred");
        toolkit->setRichText(document, {});
        EXPECT_EQ(textOf(document), "");
    });
}

TEST_F(ToolkitTexts, ShowsHtmlWithoutFetchingAnything) {
    inFrame([&] {
        const ControlId document = add(ControlKind::kHtml, {}, {10, 10, 400, 200});
        toolkit->show(document, true);
        toolkit->setHtml(
            document,
            "<html><head><title>t</title></head><body><h1>Agreement</h1><p>Some <b>bold</b> words."
            "<img src=\"file:///etc/passwd\"><img src=\"http://test.example/a.png\"></p></body></html>");
        toolkit->redraw();
        const std::string text = textOf(document);
        EXPECT_NE(text.find("Agreement"), std::string::npos) << text;
        EXPECT_NE(text.find("Some bold words."), std::string::npos) << text;
        toolkit->setHtml(document, "<p>Unclosed <b><i><table><tr><td>cell");
        toolkit->redraw();
        EXPECT_NE(textOf(document).find("cell"), std::string::npos);
    });
}

TEST_F(ToolkitTexts, ListsTasks) {
    inFrame([&] {
        const ControlId list = add(ControlKind::kTaskList, {}, {10, 10, 200, 200});
        const std::vector<std::uint8_t> pixels(std::size_t{16} * 16 * 3, 90);
        const std::vector<Picture> icons(5, Picture{16, 16, pixels.data(), nullptr});
        toolkit->setTaskIcons(list, {16, 16}, icons);
        toolkit->addTask(list, {"Welcome", 1, -1});
        toolkit->addTask(list, {"Copy files", 0, 0x808080});
        toolkit->show(list, true);
        EXPECT_EQ(textOf(list), "Welcome\nCopy files");
        toolkit->setTask(list, 1, {"Files are copied", 2, 0x0000FF});
        toolkit->setTask(list, 2, {"nobody", 2, -1});
        toolkit->setTask(list, -1, {"nobody", 2, -1});
        EXPECT_EQ(textOf(list), "Welcome\nFiles are copied");
        click(list);
        EXPECT_NE(toolkit->focused(), list);
    });
}
