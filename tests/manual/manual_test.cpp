// The author's manual names every word that the programs understand. A word that is missing here was added to
// its table in the code and not yet to the page of docs/manual that the message names: describe it there, in
// backticks or in an example. A new table of words goes into kTables.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "description/condition_parser.h"
#include "description/pxml.h"
#include "description/pxml_entities.h"
#include "description/run_option_table.h"
#include "description/vocabulary.h"
#include "engine/additional_actions.h"
#include "manual/manual_reader.h"
#include "manual/manual_text.h"
#include "packager/command_line.h"
#include "support/run_outcome.h"
#include "text/rtf_control_words.h"
#include "ui/page_entry.h"

namespace {

using Words = std::vector<std::string>;

template <typename List>
Words wordsOf(const List& list) {
    return Words(list.begin(), list.end());
}

Words rtfWords() {
    Words words;
    for (const RtfControlWord& word : rtfControlWords()) {
        words.push_back("\\" + std::string(word.word));
    }
    return words;
}

Words optionWords() {
    Words words;
    for (const RunOptionRow& row : run_options::kTable) {
        words.emplace_back(row.name);
    }
    return words;
}

Words runEndWords() {
    Words words;
    for (const RunEndRow& row : kRunEnds) {
        words.push_back(std::to_string(static_cast<int>(row.end)));
        words.emplace_back(row.name);
    }
    return words;
}

struct Table {
    const char* page;  // of docs/manual, that describes each word
    const char* name;
    const char* source;  // where the table is
    std::function<Words()> words;
};

const Table kTables[] = {
    {"description.md", "characters with names", "src/description/pxml_entities.cpp",
     [] { return wordsOf(PXMLEntities::names()); }},
    {"pages.md", "names of pages", "src/ui/page_entry.cpp", [] { return wordsOf(PageEntry::pageNames()); }},
    {"documents.md", "control words of rich text", "src/text/rtf_control_words.cpp", rtfWords},
    {"system-changes.md", "actions", "src/engine/additional_actions.cpp",
     [] { return wordsOf(AdditionalActions::actionNames()); }},
    {"running.md", "options of a setup", "src/description/run_option_table.h", optionWords},
    {"running.md", "exit codes of a setup", "src/support/run_outcome.h", runEndWords},
    {"packager.md", "commands of the packager", "src/packager/command_line.cpp",
     [] { return wordsOf(commandNames()); }},
    {"packager.md", "options of the packager", "src/packager/command_line.cpp",
     [] { return wordsOf(optionNames()); }},
};

// What the programs read from the environment. Each module has its own names for them.
const std::string_view kEnvironmentVariables[] = {"OLD_CHECKSUMMING",          "ORMEL_NUM_THREADS",
                                                  "ORMEL_USE_THREAD_AFFINITY", "TANDREL_INSTALLER_DEBUG",
                                                  "TANDREL_STATE_DIR",         "TMPDIR"};

const ManualPage* findPage(const std::string& name) {
    const auto& pages = manualPages();
    const auto found =
        std::find_if(pages.begin(), pages.end(), [&](const ManualPage& page) { return page.name == name; });
    return found == pages.end() ? nullptr : &*found;
}

// The elements that a text opens, by a plain count.
int countOpenedElements(const std::string& text) {
    int count = 0;
    for (std::size_t at = text.find('<'); at != std::string::npos; at = text.find('<', at + 1)) {
        count += at + 1 < text.size() && std::string_view("/!?").find(text[at + 1]) == std::string_view::npos;
    }
    return count;
}

TEST(Manual, NamesEveryWordOfEveryTable) {
    for (const Table& table : kTables) {
        const ManualPage* page = findPage(table.page);
        ASSERT_NE(page, nullptr) << "docs/manual/" << table.page << " is not there";
        const std::string code = ManualReader::codeOf(page->text);
        const Words words = table.words();
        EXPECT_FALSE(words.empty()) << table.name << ": " << table.source << " gives no words";
        for (const std::string& word : words) {
            EXPECT_TRUE(ManualReader::holdsWord(code, word))
                << "docs/manual/" << table.page << " doesn't name \"" << word << "\" of the " << table.name
                << " (" << table.source << "): describe it there, as `" << word << "`";
        }
    }
}

// The page of the vocabulary that describes a word, and whether it does.
void expectDescribed(std::string_view word, std::string_view pageName, std::string_view what) {
    const ManualPage* page = findPage(std::string(pageName));
    ASSERT_NE(page, nullptr) << "docs/manual/" << pageName << " is not there";
    EXPECT_TRUE(ManualReader::holdsWord(ManualReader::codeOf(page->text), word))
        << "docs/manual/" << pageName << " doesn't name \"" << word << "\" (" << what
        << "): describe it there, as `" << word << "`";
}

TEST(Manual, NamesEveryWordOfTheVocabulary) {
    for (const vocabulary::Element& element : vocabulary::kElements) {
        expectDescribed(element.name, element.page, "element");
    }
    for (const vocabulary::Attribute& attribute : vocabulary::kAttributes) {
        expectDescribed(attribute.name, attribute.page, "attribute of " + std::string(attribute.element));
    }
    for (const vocabulary::WordList& list : vocabulary::kWordLists) {
        for (const std::string_view word : list.words) {
            expectDescribed(word, list.page, list.name);
        }
    }
}

TEST(Manual, ShowsEveryWordOfTheWizardWithItsText) {
    const ManualPage* page = findPage("brand.md");
    ASSERT_NE(page, nullptr);
    for (const WizardWord& word : kWizardWords) {
        std::string text(word.text);
        for (std::size_t end = text.find('\n'); end != std::string::npos; end = text.find('\n')) {
            text.replace(end, 1, "⏎");
        }
        const std::string row = "| `" + std::string(word.name) + "` | `" + text + "` |\n";
        EXPECT_NE(page->text.find(row), std::string::npos) << row;
    }
}

TEST(Manual, NamesEveryEnvironmentVariable) {
    std::string code;
    for (const ManualPage& page : manualPages()) {
        code += ManualReader::codeOf(page.text) + "\n";
    }
    for (const std::string_view name : kEnvironmentVariables) {
        EXPECT_TRUE(ManualReader::holdsWord(code, name)) << name << " is on no page of docs/manual";
    }
}

TEST(Vocabulary, ListsThePagesThatTheWalkKnows) {
    EXPECT_THAT(PageEntry::pageNames(), testing::UnorderedElementsAreArray(vocabulary::kPageNames));
}

TEST(Manual, IsMissedWhenAWordIsNotThere) {
    const std::string code =
        ManualReader::codeOf("Plain AutoNext, `Finish` and\n```xml\n<Busy/>\n```\nEnd `open");
    EXPECT_TRUE(ManualReader::holdsWord(code, "Finish"));
    EXPECT_TRUE(ManualReader::holdsWord(code, "Busy"));
    EXPECT_FALSE(ManualReader::holdsWord(code, "AutoNext"));
    EXPECT_FALSE(ManualReader::holdsWord(code, "Fini"));
    EXPECT_FALSE(ManualReader::holdsWord(code, "inish"));
    EXPECT_FALSE(ManualReader::holdsWord(code, "open"));
}

TEST(Manual, HoldsExamplesThatTheProgramReadsAsTheyAreWritten) {
    int examples = 0;
    for (const ManualPage& page : manualPages()) {
        for (const ManualReader::FencedBlock& block : ManualReader::fencedBlocks(page.text)) {
            const bool isMistake = block.info.find("finding=") != std::string::npos;
            if (!block.info.starts_with("xml") || isMistake) {
                continue;
            }
            ++examples;
            PXML document;
            document.parseText("<Examples>" + block.text + "</Examples>");
            EXPECT_EQ(document.getNodeCount(), countOpenedElements(block.text) + 1)
                << page.name << ":" << block.line << ": an example isn't read to its end";
        }
    }
    EXPECT_GE(examples, 7);
}

TEST(Manual, SaysWhatConditionsGive) {
    const ManualPage* page = findPage("conditions.md");
    ASSERT_NE(page, nullptr);
    const std::pair<std::string_view, std::optional<bool>> kResults[] = {
        {"true", true}, {"false", false}, {"a mistake", std::nullopt}};
    int rows = 0;
    for (std::size_t at = page->text.find("\n| `"); at != std::string::npos;
         at = page->text.find("\n| `", at + 1)) {
        const std::size_t start = at + 4;
        const std::size_t end = page->text.find("` | ", start);
        const std::string condition = page->text.substr(start, end - start);
        const std::string_view said = std::string_view(page->text).substr(end + 4);
        for (const auto& [text, result] : kResults) {
            if (said.starts_with(text)) {
                ++rows;
                EXPECT_EQ(ConditionParser(condition).evaluate(), result) << condition;
            }
        }
    }
    EXPECT_GE(rows, 13);
}

}  // namespace
