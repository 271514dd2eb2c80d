#include "ui/console/console_ui.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "description/answers_file.h"
#include "description/vocabulary.h"
#include "fakes/fake_console.h"
#include "fakes/fake_engine.h"
#include "platform/memory/memory_console_device.h"
#include "platform/memory/memory_file_system.h"
#include "text/document_text.h"

namespace {

class OpenGate : public PageGate {
public:
    bool isOpen(InstallerUI&) override { return true; }
};

const std::string kBlankLine = "\r" + std::string(78, ' ') + "\r\n";

struct ConsoleFrontEnd : testing::Test {
    MemoryConsoleDevice terminal;
    FakeEngine engine;
    MemoryFileSystem files;
    AnswersFile answers{files};
    FakeConsole log;
    DebugLog debugLog{log};
    std::unique_ptr<ConsoleUI> ui;

    ConsoleFrontEnd() { open(false, false); }

    void open(bool uninstall, bool quiet, const char* mode = "") {
        ui = std::make_unique<ConsoleUI>(uninstall, false, quiet, terminal, answers, debugLog);
        ui->setEngine(&engine);
        bool automated = false;
        ASSERT_EQ(ui->createInputProvider(mode, automated), 0);
    }
    static DialogElementDesc& addElement(DialogDesc& page, std::int32_t kind, const char* text) {
        page.elements.emplace_back();
        page.elements.back().kind = kind;
        page.elements.back().text = text;
        return page.elements.back();
    }
    static void addField(DialogDesc& page, const char* variable) {
        page.fields.emplace_back();
        page.fields.back().label.assign(variable);
        page.fields.back().variable.assign(variable);
        page.fields.back().type = kFieldEditBox;
    }
    std::string take() { return std::exchange(terminal.output, {}); }
    std::string show(int dialog, int sub = -1) {
        take();
        EXPECT_EQ(ui->showSubDialog(dialog, sub), 0);
        return take();
    }
};

TEST_F(ConsoleFrontEnd, IsNotGraphical) {
    EXPECT_EQ(ui->isGraphical(), 0);
    EXPECT_EQ(ui->getIgnoreErrors(), 0);
    EXPECT_EQ(ConsoleUI(false, true, false, terminal, answers, debugLog).getIgnoreErrors(), 1);
}

TEST_F(ConsoleFrontEnd, PrintsTheInstallerBannerWithTheFirstDialog) {
    engine.addDialog("Welcome");
    engine.addDialog("Next");
    ui->showDialog(0);
    EXPECT_EQ(take(),
              "*******************************\n"
              "* Tandrel Group installer     *\n"
              "*******************************\n");
    ui->showDialog(1);
    EXPECT_EQ(take(), "");
}

TEST_F(ConsoleFrontEnd, PrintsTheUninstallerBanner) {
    open(true, false);
    engine.addDialog("Welcome");
    ui->showDialog(0);
    EXPECT_EQ(take(),
              "*******************************\n"
              "* Tandrel Group uninstaller   *\n"
              "*******************************\n");
}

TEST_F(ConsoleFrontEnd, FramesTheBannerOfTheDescription) {
    engine.addDialog("Welcome");
    engine.banner =
        "Gr\xC3\xBC\xC3\x9F"
        "e";
    ui->showDialog(0);
    EXPECT_EQ(take(),
              "*******************************\n"
              "* Gr\xC3\xBC\xC3\x9F"
              "e                       *\n"
              "*******************************\n");
    engine.banner = std::string(30, 'x');
    ui->showDialog(0);
    EXPECT_EQ(take(), std::string(34, '*') + "\n* " + engine.banner + " *\n" + std::string(34, '*') + "\n");
}

TEST_F(ConsoleFrontEnd, PrintsNoBannerWhenQuiet) {
    open(false, true);
    engine.addDialog("Welcome");
    ui->showDialog(0);
    EXPECT_EQ(take(), "");
}

TEST_F(ConsoleFrontEnd, PrintsTextsAndNothingElseOfAPage) {
    DialogDesc& page = engine.addDialog("Page");
    addElement(page, kElementText, "First");
    addElement(page, kElementHLine, "line");
    addElement(page, kElementImage, "image");
    addElement(page, kElementHtmlEditText, "html");
    addElement(page, kElementText, "");
    addElement(page, kElementText, "a\r\nb");
    EXPECT_EQ(show(0), "First\n\na\r\nb\n");
}

TEST_F(ConsoleFrontEnd, PrintsATextWithTheValuesThatItHasNow) {
    DialogDesc& page = engine.addDialog("Page");
    addElement(page, kElementText, "To [DIR]").expandsVariables = true;
    engine.shownTexts["To [DIR]"] = "To /opt\r\n\x1B[2J";
    EXPECT_EQ(show(0), "To /opt\r\n?[2J\n");
}

TEST_F(ConsoleFrontEnd, SkipsATextWhoseConditionIsFalse) {
    DialogDesc& page = engine.addDialog("Page");
    addElement(page, kElementText, "hidden").condition.assign("[A]");
    addElement(page, kElementText, "shown").condition.assign("[B]");
    engine.conditions["[A]"] = 0;
    engine.conditions["[B]"] = -1;
    EXPECT_EQ(show(0), "shown\n");
}

TEST_F(ConsoleFrontEnd, PrintsTextsOfAQuietRunOnlyOnPagesWithAGate) {
    open(false, true);
    addElement(engine.addDialog("Page"), kElementText, "text");
    addElement(engine.addDialog("Held"), kElementText, "held");
    engine.dialogs[1].gate = std::make_shared<OpenGate>();
    EXPECT_EQ(show(0), "");
    EXPECT_EQ(show(1), "held\n");
}

TEST_F(ConsoleFrontEnd, PrintsAPageThatIsShownAgainOnlyOnce) {
    DialogDesc& page = engine.addDialog("Page");
    addElement(page, kElementText, "one");
    addElement(page, kElementHLine, "");
    addElement(page, kElementText, "two");
    EXPECT_EQ(show(0), "one\ntwo\n");
    EXPECT_EQ(show(0), "");
    engine.addDialog("Other");
    show(1);
    EXPECT_EQ(show(0), "one\ntwo\n");
}

TEST_F(ConsoleFrontEnd, CountsPrintedElementsAndNotPositions) {
    DialogDesc& page = engine.addDialog("Page");
    addElement(page, kElementText, "hidden").condition.assign("[A]");
    addElement(page, kElementText, "one");
    addElement(page, kElementText, "two");
    engine.conditions["[A]"] = 0;
    EXPECT_EQ(show(0), "one\ntwo\n");
    EXPECT_EQ(show(0), "two\n");
    EXPECT_EQ(show(0), "");
}

TEST_F(ConsoleFrontEnd, CountsOtherElementsOnlyWhenNotQuiet) {
    open(false, true);
    DialogDesc& page = engine.addDialog("Held");
    page.gate = std::make_shared<OpenGate>();
    addElement(page, kElementHLine, "");
    addElement(page, kElementText, "one");
    EXPECT_EQ(show(0), "one\n");
    EXPECT_EQ(show(0), "one\n");
    EXPECT_EQ(show(0), "");
}

TEST_F(ConsoleFrontEnd, DistinguishesSubDialogs) {
    DialogDesc& frame = engine.addDialog("Frame");
    frame.subDialogs.resize(2);
    addElement(frame, kElementText, "frame");
    addElement(frame.subDialogs[0], kElementText, "first");
    addElement(frame.subDialogs[1], kElementText, "second");
    EXPECT_EQ(show(0, -1), "frame\n");
    EXPECT_EQ(show(0, 0), "first\n");
    EXPECT_EQ(show(0, 1), "second\n");
    EXPECT_EQ(show(0, 7), "");
}

TEST_F(ConsoleFrontEnd, AsksTheFieldsInTheirOrder) {
    DialogDesc& page = engine.addDialog("Page");
    addElement(page, kElementText, "text");
    addField(page, "A");
    addField(page, "B");
    terminal.lines = {"1", "2"};
    EXPECT_EQ(show(0), "text\nA:B:");
    EXPECT_EQ(engine.variables["A"], "1");
    EXPECT_EQ(engine.variables["B"], "2");
}

TEST_F(ConsoleFrontEnd, SkipsFieldsWithoutAConsoleForm) {
    DialogDesc& page = engine.addDialog("Page");
    addField(page, "A");
    addField(page, "B");
    addField(page, "C");
    page.fields[0].type = 0;
    page.fields[1].type = kFieldInstallParameter;
    terminal.lines = {"3"};
    EXPECT_EQ(show(0), "C:");
    EXPECT_EQ(engine.variables.count("A"), 0U);
}

TEST_F(ConsoleFrontEnd, AsksNoMoreFieldsOnceCancelled) {
    DialogDesc& page = engine.addDialog("Page");
    addField(page, "A");
    addField(page, "B");
    terminal.beforeRead = [this] { engine.cancel(ui.get()); };
    EXPECT_EQ(show(0), "A:\n[CTRL-C] Aborting installation...\n");
    EXPECT_EQ(engine.variables.count("B"), 0U);
}

TEST_F(ConsoleFrontEnd, PrintsNothingOfAPageOnceCancelled) {
    DialogDesc& page = engine.addDialog("Page");
    addElement(page, kElementText, "text");
    addField(page, "A");
    engine.cancelled = true;
    EXPECT_EQ(show(0), "");
}

TEST_F(ConsoleFrontEnd, HasNoFieldsWithoutEngineOrProvider) {
    ConsoleUI bare(false, false, false, terminal, answers, debugLog);
    EXPECT_EQ(bare.processFields(0), -1);
    bare.setEngine(&engine);
    EXPECT_EQ(bare.processFields(0), -1);
    EXPECT_EQ(ui->processFields(0), 0);
    ui->setEngine(nullptr);
    EXPECT_EQ(ui->processFields(0), -1);
    EXPECT_EQ(ui->showSubDialog(0, -1), -1);
    EXPECT_EQ(ui->run(), -1);
    EXPECT_EQ(ui->finish(), -1);
}

constexpr const char* kPause = "Press Enter to continue...";

TEST_F(ConsoleFrontEnd, PrintsAMarkdownDocumentAfterAPause) {
    DialogDesc& page = engine.addDialog("Page");
    addElement(page, kElementRichEditText, "licence").format.assign("TandrelMarkdown");
    engine.resources["licence"] = "# Title\n\nSome *plain*\nwords.\n\n- item\n";
    terminal.lines = {""};
    EXPECT_EQ(show(0), std::string(kPause) + "Title\n\n\nSome plain words.\n\n- item\n\n");
    EXPECT_EQ(show(0), "");
}

TEST_F(ConsoleFrontEnd, PrintsAPlainTextOfTheMarkdownFormat) {
    DialogDesc& page = engine.addDialog("Page");
    addElement(page, kElementPlainEditText, "notes").format.assign("TandrelMarkdown");
    engine.resources["notes"] = "1. one\n2. two";
    terminal.lines = {""};
    EXPECT_EQ(show(0), std::string(kPause) + "1. one\n\n2. two\n\n");
}

TEST_F(ConsoleFrontEnd, TakesADocumentOfAnyOtherFormatForRichText) {
    DialogDesc& page = engine.addDialog("Page");
    addElement(page, kElementRichEditText, "letter");
    addElement(page, kElementRichEditText, "letter").format.assign("Other");
    engine.resources["letter"] = "{\\rtf1{\\fonttbl Times;}# A \\b bold\\b0  word\\par}";
    terminal.lines = {"", ""};
    const std::string shown = std::string(kPause) + "# A bold word\n";
    EXPECT_EQ(show(0), shown + shown) << "without attributes of a terminal";
}

TEST_F(ConsoleFrontEnd, ComparesFormatsWithoutRegardToCase) {
    DialogDesc& page = engine.addDialog("Page");
    addElement(page, kElementRichEditText, "notes").format.assign("tandrelMARKDOWN");
    addElement(page, kElementPlainEditText, "notes").format.assign("TANDRELmarkdown");
    engine.resources["notes"] = "text";
    terminal.lines = {"", ""};
    EXPECT_EQ(show(0), std::string(kPause) + "text\n" + kPause + "text\n");
}

TEST_F(ConsoleFrontEnd, WrapsForTheColumnsOfTheConsoleLessTwo) {
    DialogDesc& page = engine.addDialog("Page");
    addElement(page, kElementRichEditText, "notes").format.assign("TandrelMarkdown");
    addElement(page, kElementRichEditText, "letter");
    engine.resources["notes"] = "one two three";
    engine.resources["letter"] = "{one two three}";
    terminal.columns = 11;
    terminal.rows = 2;
    terminal.lines = {"", ""};
    EXPECT_EQ(show(0), std::string(kPause) + "one two\nthree\n" + kPause + "one   two\nthree\n")
        << "rich text is justified, markdown isn't";
}

TEST_F(ConsoleFrontEnd, AssumesEightyColumnsWithoutAWindow) {
    DialogDesc& page = engine.addDialog("Page");
    addElement(page, kElementRichEditText, "notes").format.assign("TandrelMarkdown");
    addElement(page, kElementRichEditText, "letter");
    const std::string words = std::string(38, 'a') + " " + std::string(39, 'b');
    engine.resources["notes"] = words + "\n\n" + words + "c";
    engine.resources["letter"] = "{" + words + "\\par " + words + "c}";
    terminal.lines = {"", ""};
    const std::string broken = std::string(38, 'a') + "\n" + std::string(39, 'b') + "c\n";
    EXPECT_EQ(show(0), kPause + words + "\n\n" + broken + kPause + words + "\n" + broken);
}

TEST_F(ConsoleFrontEnd, PrintsAVerbatimTextOfEachKindOfElement) {
    DialogDesc& page = engine.addDialog("Page");
    for (const int kind : {kElementRichEditText, kElementPlainEditText, kElementHtmlEditText}) {
        addElement(page, kind, "licence")
            .format.assign(kind == kElementRichEditText ? "TandrelText" : "tandrelTEXT");
    }
    engine.resources["licence"] = "7. *seven*\r\n> {quote}\n\n  one two three";
    terminal.columns = 12;
    terminal.rows = 2;
    terminal.lines = {"", "", ""};
    const std::string shown = std::string(kPause) + "7. *seven*\n> {quote}\n\n  one two\n  three\n";
    EXPECT_EQ(show(0), shown + shown + shown);
}

TEST_F(ConsoleFrontEnd, KnowsEveryFormatOfTheDescription) {
    for (const std::string_view word : vocabulary::kDocumentFormats) {
        EXPECT_NE(documentFormat(word), DocumentFormat::kOfElement) << word;
    }
}

TEST_F(ConsoleFrontEnd, PrintsNoPageOfHtml) {
    DialogDesc& page = engine.addDialog("Page");
    addElement(page, kElementHtmlEditText, "page");
    addElement(page, kElementHtmlEditText, "page").format.assign("TandrelMarkdown");
    addElement(page, kElementHtmlEditText, "page").format.assign("TandrelText");
    page.elements[2].condition.assign("[A]");
    engine.conditions["[A]"] = 0;
    engine.resources["page"] = "<p>text</p>";
    EXPECT_EQ(show(0), "");
}

TEST_F(ConsoleFrontEnd, PagesALongDocument) {
    addElement(engine.addDialog("Page"), kElementRichEditText, "licence");
    engine.resources["licence"] = "{a\\par b\\par cc\\par}";
    terminal.columns = 80;
    terminal.rows = 4;
    terminal.lines = {"", "", ""};
    EXPECT_EQ(show(0), std::string(kPause) +
                           "a\nb\n"
                           "\nPress ENTER for the next page...\n\n\n"
                           "cc\n");
    EXPECT_EQ(terminal.lines.size(), 1U) << "6 of 7 bytes are a multiple of 2, so there is no closing pause";
}

TEST_F(ConsoleFrontEnd, SkipsAPlainTextOfAnotherFormatSilently) {
    DialogDesc& page = engine.addDialog("Page");
    addElement(page, kElementPlainEditText, "licence").format.assign("Other");
    addElement(page, kElementPlainEditText, "licence");
    engine.resources["licence"] = "content";
    EXPECT_EQ(show(0), "");
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(ConsoleFrontEnd, SkipsADocumentWhoseConditionIsFalseWithoutAPause) {
    DialogDesc& page = engine.addDialog("Page");
    addElement(page, kElementRichEditText, "licence").condition.assign("[A]");
    addElement(page, kElementPlainEditText, "licence").condition.assign("[A]");
    page.elements[1].format.assign("TandrelMarkdown");
    engine.conditions["[A]"] = 0;
    EXPECT_EQ(show(0), "");
}

TEST_F(ConsoleFrontEnd, SkipsAMissingDocumentSilently) {
    addElement(engine.addDialog("Page"), kElementRichEditText, "missing").format.assign("TandrelMarkdown");
    terminal.lines = {""};
    EXPECT_EQ(show(0), kPause);
    EXPECT_TRUE(log.lines().empty());
}

TEST_F(ConsoleFrontEnd, PrintsNothingOfABrokenDocumentAndLogsIt) {
    DialogDesc& page = engine.addDialog("Page");
    addElement(page, kElementRichEditText, "broken.md").format.assign("TandrelMarkdown");
    addElement(page, kElementRichEditText, "broken.rtf");
    addElement(page, kElementRichEditText, "empty.md").format.assign("TandrelMarkdown");
    engine.resources["broken.md"] = "Fine.\n\na**";
    engine.resources["broken.rtf"] = "{a";
    engine.resources["empty.md"] = "";
    terminal.lines = {"", "", ""};
    EXPECT_EQ(show(0), std::string(kPause) + kPause + kPause);
    EXPECT_TRUE(log.hasLine("WARNING: The document \"broken.md\" is broken and isn't shown"));
    EXPECT_TRUE(log.hasLine("WARNING: The document \"broken.rtf\" is broken and isn't shown"));
    debugLog.setTarget(nullptr, 0);
    terminal.lines = {""};
    show(0);
}

TEST_F(ConsoleFrontEnd, ADocumentEndsAtItsFirstZeroByte) {
    DialogDesc& page = engine.addDialog("Page");
    addElement(page, kElementRichEditText, "notes").format.assign("TandrelMarkdown");
    addElement(page, kElementRichEditText, "letter");
    engine.resources["notes"] = std::string("text\0*more", 10);
    engine.resources["letter"] = std::string("{text}\0}", 8);
    terminal.lines = {"", ""};
    EXPECT_EQ(show(0), std::string(kPause) + "text\n" + kPause + "text\n");
}

TEST_F(ConsoleFrontEnd, PrintsDocumentsOfAQuietRunOnlyOnPagesWithAGate) {
    open(false, true);
    for (const char* name : {"Page", "Held"}) {
        DialogDesc& page = engine.addDialog(name);
        addElement(page, kElementRichEditText, "notes").format.assign("TandrelMarkdown");
        addElement(page, kElementPlainEditText, "notes").format.assign("TandrelMarkdown");
    }
    engine.dialogs[1].gate = std::make_shared<OpenGate>();
    engine.resources["notes"] = "text";
    terminal.lines = {"", ""};
    EXPECT_EQ(show(0), "");
    EXPECT_EQ(show(1), std::string(kPause) + "text\n" + kPause + "text\n");
}

TEST_F(ConsoleFrontEnd, BlanksTheStatusLineBeforeADocument) {
    addElement(engine.addDialog("Page"), kElementRichEditText, "notes").format.assign("TandrelMarkdown");
    engine.resources["notes"] = "text";
    terminal.lines = {""};
    ui->beginProgress();
    EXPECT_EQ(show(0), kPause + kBlankLine + "text\n");
    ui->setStatusText("muted");
    EXPECT_EQ(take(), "");
}

TEST_F(ConsoleFrontEnd, PrintsNoDocumentWhenCancelledAtItsPause) {
    DialogDesc& page = engine.addDialog("Page");
    addElement(page, kElementRichEditText, "licence").format.assign("TandrelMarkdown");
    addElement(page, kElementText, "text");
    engine.resources["licence"] = "content";
    terminal.beforeRead = [this] { engine.cancel(ui.get()); };
    EXPECT_EQ(show(0), "Press Enter to continue...\n[CTRL-C] Aborting installation...\n");
}

TEST_F(ConsoleFrontEnd, BlanksTheStatusLineBeforeAText) {
    DialogDesc& page = engine.addDialog("Page");
    addElement(page, kElementText, "one");
    addElement(page, kElementText, "two");
    ui->beginProgress();
    EXPECT_EQ(show(0), kBlankLine + "one\n" + kBlankLine + "two\n");
    ui->setStatusText("muted");
    EXPECT_EQ(take(), "");
}

TEST_F(ConsoleFrontEnd, PrintsStatusLinesUntilProgressIsShown) {
    ui->setStatusText("one\n");
    EXPECT_EQ(take(), "one\n");
    EXPECT_EQ(ui->getStatusText(), "one");
    ui->setCurrentProgress(5);
    ui->setStatusText("two\n\n");
    EXPECT_EQ(take(), "two\n\n");
    ui->setOverallProgress(10);
    ui->setStatusText("three");
    EXPECT_EQ(take(), "");
    EXPECT_EQ(ui->getStatusText(), "three");
    EXPECT_EQ(ui->endProgress(), 0);
    EXPECT_EQ(take(), kBlankLine);
    ui->setStatusText(nullptr);
    EXPECT_EQ(take(), "\n");
    EXPECT_EQ(ui->getCurrentProgress(), 5);
    EXPECT_EQ(ui->getOverallProgress(), 10);
}

TEST_F(ConsoleFrontEnd, BoundsTheStatusText) {
    ui->setStatusText(std::string(100000, 'x').c_str());
    EXPECT_EQ(take(), std::string(4096, 'x') + "\n");
}

TEST_F(ConsoleFrontEnd, MutesTheStatusBetweenBeginAndEndOfProgress) {
    EXPECT_EQ(ui->beginProgress(), 0);
    ui->setStatusText("muted");
    EXPECT_EQ(take(), "");
    ui->endProgress();
    take();
    ui->setStatusText("loud");
    EXPECT_EQ(take(), "loud\n");
}

TEST_F(ConsoleFrontEnd, PrintsFileLines) {
    ui->addFileLine("Create a", false);
    ui->addFileLine(nullptr, true);
    ui->addFileLine("Create b", true);
    EXPECT_EQ(take(), "Create a\nCreate b\n");
    EXPECT_EQ(terminal.flushes, 2);
}

TEST_F(ConsoleFrontEnd, WritesMessagesToStandardErrorEvenWhenQuiet) {
    ui->addMessage("first");
    EXPECT_EQ(terminal.flushes, 1);
    open(false, true);
    ui->addMessage("second");
    EXPECT_EQ(take(), "");
    EXPECT_EQ(terminal.errors, "first\nsecond\n");
}

TEST_F(ConsoleFrontEnd, PrintsNeitherStatusNorFilesNorBlanksWhenQuiet) {
    open(false, false);
    EXPECT_FALSE(ui->isQuiet());
    open(false, true);
    EXPECT_TRUE(ui->isQuiet());
    take();
    ui->setStatusText("status");
    EXPECT_EQ(ui->getStatusText(), "");
    ui->addFileLine("Create a", true);
    ui->beginProgress();
    ui->endProgress();
    ui->finish();
    EXPECT_EQ(take(), "");
}

TEST_F(ConsoleFrontEnd, SaysWhatABoxInformsOfWhenQuiet) {
    open(false, true);
    ui->messageBox("broken\n", MessageKind::kInformation);
    ui->messageBox("Go on?", MessageKind::kYesNo);
    ui->messageBox(nullptr, MessageKind::kInformation);
    EXPECT_EQ(take(), "");
    EXPECT_EQ(terminal.errors, "broken\n");
}

TEST_F(ConsoleFrontEnd, AgreesToEveryBoxWhenQuiet) {
    open(false, true);
    for (const int kind : {0, 1, 2, 3}) {
        EXPECT_EQ(ui->messageBox("text", static_cast<MessageKind>(kind)), 1);
    }
    EXPECT_EQ(take(), "");
}

TEST_F(ConsoleFrontEnd, AsksOkOrCancel) {
    terminal.lines = {"O", "o", "Cancel", ""};
    EXPECT_EQ(ui->messageBox("Go on?", MessageKind::kOkCancel), 1);
    EXPECT_EQ(take(), "\nGo on? ([OK] or Cancel): ");
    EXPECT_EQ(ui->messageBox("Go on?", MessageKind::kOkCancel), 0);
    EXPECT_EQ(take(), "\nGo on? ([OK] or Cancel): Please, answer with OK or Cancel: ");
    EXPECT_EQ(ui->messageBox("Go on?", MessageKind::kOkCancel), 1);
}

TEST_F(ConsoleFrontEnd, AsksYesOrNo) {
    terminal.lines = {"Y", "no", "YES"};
    EXPECT_EQ(ui->messageBox("Sure?", MessageKind::kYesNo), 0);
    EXPECT_EQ(take(), "\nSure? ([yes] or no): Please, answer with yes or no: ");
    EXPECT_EQ(ui->messageBox("Sure?", MessageKind::kYesNo), 1);
}

TEST_F(ConsoleFrontEnd, ShowsAMessage) {
    terminal.lines = {""};
    EXPECT_EQ(ui->messageBox("Done", MessageKind::kInformation), 0);
    EXPECT_EQ(take(), "\nDone\nPress Enter to continue...");
}

TEST_F(ConsoleFrontEnd, AgreesToAnUnknownKindOfBox) {
    EXPECT_EQ(ui->messageBox("text", static_cast<MessageKind>(3)), 1);
    EXPECT_EQ(take(), "\n");
}

TEST_F(ConsoleFrontEnd, CountsAnInterruptedBoxAsAgreed) {
    terminal.beforeRead = [this] { engine.cancel(ui.get()); };
    EXPECT_EQ(ui->messageBox("Sure?", MessageKind::kYesNo), 1);
    EXPECT_TRUE(engine.isCancelled());
}

TEST_F(ConsoleFrontEnd, AnswersBoxesByTheirDefaultWhenAutomated) {
    open(false, false, "autoInstall");
    EXPECT_EQ(ui->messageBox("Sure?", MessageKind::kYesNo), 1);
    EXPECT_EQ(ui->messageBox("Go on?", MessageKind::kOkCancel), 1);
    EXPECT_EQ(ui->messageBox("Done", MessageKind::kInformation), 0);
    EXPECT_EQ(take(), "\n\n\nDone");
}

TEST_F(ConsoleFrontEnd, FinishesTheProviderWithTheOutcome) {
    open(false, false, "autoInstall");
    EXPECT_EQ(ui->finish(), 0);
    EXPECT_EQ(take(), kBlankLine + "Automatic installation was successful!\n");
    engine.errors = true;
    ui->finish();
    EXPECT_EQ(take(), kBlankLine + "The automatic installer has encountered an ERROR!\n");
}

TEST_F(ConsoleFrontEnd, RefusesToCancelWhileTheInstallationRuns) {
    engine.uiState = kUiInstallationRunning;
    EXPECT_EQ(ui->confirmCancel(), 0);
    EXPECT_EQ(take(), "\n[CTRL-C] The installation is running and can not be aborted!\n");
    terminal.lines = {"typed"};
    EXPECT_EQ(ui->messageBox("Sure?", MessageKind::kYesNo), 1);  // at the end of the input: agreed
    EXPECT_EQ(terminal.linesRead, 1);
}

TEST_F(ConsoleFrontEnd, CancelsAnUninstallationThatRuns) {
    open(true, false, "autoUninstall");
    engine.uiState = kUiInstallationRunning;
    EXPECT_EQ(ui->confirmCancel(), 1);
    EXPECT_EQ(take(), "\n[CTRL-C] Aborting installation...\n");
}

TEST_F(ConsoleFrontEnd, RefusesToCancelWhileBusy) {
    engine.uiState = kUiBusy;
    EXPECT_EQ(ui->confirmCancel(), 0);
    EXPECT_EQ(take(), "\n[CTRL-C] The installer is busy and cannot be interrupted\n");
}

TEST_F(ConsoleFrontEnd, CancelsInEveryOtherState) {
    for (const UiState state : {kUiReady, kUiNoChange, kUiConditionUnmet, kUiFieldInvalid}) {
        engine.uiState = state;
        EXPECT_EQ(ui->confirmCancel(), 1);
        EXPECT_EQ(take(), "\n[CTRL-C] Aborting installation...\n");
    }
    terminal.lines = {"yes"};
    EXPECT_EQ(ui->messageBox("Sure?", MessageKind::kYesNo), 1);
    EXPECT_EQ(terminal.linesRead, 0);
}

TEST_F(ConsoleFrontEnd, WaitsForTheMarkOfTheCancelThatWokeItsQuestion) {
    addField(engine.addDialog("Page"), "A");
    terminal.beforeRead = [this] { ui->confirmCancel(); };
    terminal.onSleep = [this] { engine.cancelled = terminal.slept == 3; };
    show(0);
    EXPECT_TRUE(engine.isCancelled());
    EXPECT_EQ(terminal.slept, 3U);
}

TEST_F(ConsoleFrontEnd, WaitsForTheMarkBeforeTheWorkOfAPageWithoutQuestions) {
    engine.addDialog("Page");
    ui->confirmCancel();
    terminal.onSleep = [this] { engine.cancelled = true; };
    EXPECT_EQ(show(0), "");
    EXPECT_TRUE(engine.isCancelled());
}

TEST_F(ConsoleFrontEnd, WaitsForTheMarkOfAnInterruptedBox) {
    terminal.beforeRead = [this] { ui->confirmCancel(); };
    terminal.onSleep = [this] { engine.cancelled = true; };
    EXPECT_EQ(ui->messageBox("Sure?", MessageKind::kYesNo), 1);
    EXPECT_TRUE(engine.isCancelled());
}

TEST_F(ConsoleFrontEnd, DoesNotWaitForEverForAMark) {
    engine.addDialog("Page");
    ui->confirmCancel();
    show(0);
    EXPECT_GT(terminal.slept, 1000U);
}

TEST_F(ConsoleFrontEnd, CannotBeCancelledWithoutEngineOrProvider) {
    ConsoleUI bare(false, false, false, terminal, answers, debugLog);
    EXPECT_EQ(bare.confirmCancel(), 0);
    bare.setEngine(&engine);
    EXPECT_EQ(bare.confirmCancel(), 0);
    ui->setEngine(nullptr);
    EXPECT_EQ(ui->confirmCancel(), 0);
    EXPECT_EQ(take(), "");
}

TEST_F(ConsoleFrontEnd, WalksForwardUntilTheSessionIsFinished) {
    engine.addDialog("Page");
    int shifts = 0;
    engine.onShift = [&] {
        engine.finished = ++shifts == 3;
        return 0;
    };
    EXPECT_EQ(ui->run(), 0);
    EXPECT_EQ(engine.calls, (std::vector<std::string>{"goToDialog(0)", "checkDialogCondition", "shift(1)",
                                                      "checkDialogCondition", "shift(1)",
                                                      "checkDialogCondition", "shift(1)"}));
}

TEST_F(ConsoleFrontEnd, EndsTheWalkWithItsError) {
    engine.addDialog("Page");
    engine.onShift = [] { return -1; };
    EXPECT_EQ(ui->run(), -1);
}

TEST_F(ConsoleFrontEnd, EndsTheWalkWhenTheFirstPageCancelsIt) {
    engine.addDialog("Page");
    engine.onGoToDialog = [this](int) {
        engine.cancelled = true;
        return 0;
    };
    EXPECT_EQ(ui->run(), 0);
    EXPECT_EQ(engine.calls, std::vector<std::string>{"goToDialog(0)"});
}

TEST_F(ConsoleFrontEnd, EndsTheWalkWhenAStepCancelsIt) {
    engine.addDialog("Page");
    engine.onShift = [this] {
        engine.cancelled = true;
        return 0;
    };
    EXPECT_EQ(ui->run(), 0);
}

TEST_F(ConsoleFrontEnd, PollsTheConditionOfAnAutomatedPage) {
    engine.addDialog("Page").special = kDialogAutomated;
    int checks = 0;
    engine.onCheckCondition = [&] { return ++checks < 5 ? 0 : 1; };
    EXPECT_EQ(ui->run(), 0);
    EXPECT_EQ(checks, 5);
    EXPECT_EQ(terminal.slept, 300U);
}

TEST_F(ConsoleFrontEnd, DoesNotPollOtherPages) {
    engine.addDialog("Page");
    engine.onCheckCondition = [] { return 0; };
    EXPECT_EQ(ui->run(), 0);
    EXPECT_EQ(terminal.slept, 0U);
}

TEST_F(ConsoleFrontEnd, DoesNotPollAnAutomatedPageWithoutCondition) {
    engine.addDialog("Page").special = kDialogAutomated;
    EXPECT_EQ(ui->run(), 0);
    EXPECT_EQ(terminal.slept, 0U);
}

TEST_F(ConsoleFrontEnd, StopsPollingWhenCancelled) {
    engine.addDialog("Page").special = kDialogAutomated;
    int checks = 0;
    engine.onCheckCondition = [&] {
        engine.cancelled = ++checks == 4;
        return 0;
    };
    EXPECT_EQ(ui->run(), 0);
    EXPECT_EQ(checks, 4);
    EXPECT_EQ(std::count(engine.calls.begin(), engine.calls.end(), "shift(1)"), 0);
}

TEST_F(ConsoleFrontEnd, EndsTheWalkWhenTheInputEndsAtAQuestion) {
    DialogDesc& page = engine.addDialog("Page");
    page.fields.resize(1);
    page.fields[0].type = kFieldRadioButtons;
    page.fields[0].content.assign("one;two");
    EXPECT_EQ(ui->run(), -1);
    EXPECT_TRUE(engine.isCancelled());
    EXPECT_TRUE(
        take().ends_with("\n  1) one\n  2) two\nEnter your choice [1-2]: "
                         "\nThe input has ended. Aborting installation...\n"));
    EXPECT_EQ(std::count(engine.calls.begin(), engine.calls.end(), "shift(1)"), 0);
    EXPECT_TRUE(log.hasLine("ERROR: The input ended at a question"));
}

TEST_F(ConsoleFrontEnd, SaysThatTheInputOfAnUninstallationHasEnded) {
    open(true, false, "uninstall");
    EXPECT_EQ(ui->messageBox("Sure?", MessageKind::kYesNo), 1);
    EXPECT_TRUE(engine.isCancelled());
    EXPECT_TRUE(take().ends_with("\nThe input has ended. Aborting uninstallation...\n"));
}

TEST_F(ConsoleFrontEnd, CompletesRunningWorkWhenTheInputEnds) {
    engine.addDialog("Page");
    engine.onShift = [this] {
        engine.uiState = kUiInstallationRunning;
        EXPECT_EQ(ui->messageBox("Sure?", MessageKind::kYesNo), 1);
        EXPECT_FALSE(engine.isCancelled());
        engine.uiState = kUiReady;
        engine.finished = true;
        return 0;
    };
    EXPECT_EQ(ui->run(), 0);
    EXPECT_EQ(take().find("The input has ended"), std::string::npos);
}

TEST_F(ConsoleFrontEnd, EndsTheWalkWhenItsQuestionsReachNobody) {
    addField(engine.addDialog("Page"), "A");
    terminal.outputLimit = 0;
    terminal.lines = {"1"};
    EXPECT_EQ(ui->run(), -1);
    EXPECT_TRUE(engine.isCancelled());
    EXPECT_EQ(terminal.linesRead, 0);
    EXPECT_TRUE(log.hasLine("ERROR: The output failed ahead of a question"));
}

TEST_F(ConsoleFrontEnd, FinishesAnAutomatedWalkWithoutAnOutput) {
    open(false, false, "autoInstall");
    DialogDesc& page = engine.addDialog("Page");
    addElement(page, kElementText, "text");
    addField(page, "A");
    engine.variables["A"] = "1";
    terminal.outputLimit = 0;
    EXPECT_EQ(ui->run(), 0);
    EXPECT_FALSE(engine.isCancelled());
    EXPECT_EQ(engine.variables["A"], "1");
}

TEST_F(ConsoleFrontEnd, AnswersWhatItDoesNotShowWithSuccess) {
    EXPECT_EQ(ui->updateNavigationState(), 0);
    EXPECT_EQ(ui->refreshDialog(0, -1, kRefreshElements, true), 0);
    EXPECT_EQ(ui->refreshFields(0, -1), 0);
    EXPECT_EQ(ui->refreshElements(), 0);
    EXPECT_EQ(ui->prepareDialog(0), 0);
    EXPECT_EQ(ui->leaveDialog(0), 0);
    EXPECT_EQ(ui->pumpEventsWhileCopying(), 0);
    ui->showPage(0, -1, true);
    ui->setTaskState("name", "text", kTaskCurrent);
    EXPECT_EQ(take(), "");
}

}  // namespace
