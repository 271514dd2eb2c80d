#include "checking/document_check.h"

#include "checking/check_bench.h"

namespace {

class DocumentCheckTest : public testing::Test {
protected:
    // The findings for an element that shows a document with this content.
    std::vector<Finding> show(const std::string& element, const std::string& content) {
        bench_.files.addFile("/root/d", content);
        return bench_.findings("<Dialogs><P>\n" + element +
                               "</P></Dialogs><FileSet Name='S'><FN Alias='D'>d</FN></FileSet>");
    }
    std::vector<std::string> messages(const std::string& element, const std::string& content) {
        std::vector<std::string> found;
        for (const Finding& finding : show(element, content)) {
            found.push_back(std::string(finding.code.name()) + " " + finding.message);
        }
        return found;
    }

    DocumentCheckTest() { bench_.root = "/root"; }

    static constexpr char kMarkdown[] = "<RichEditText Format='tandrelmarkdown'>D</RichEditText>";
    static constexpr char kRichText[] = "<RichEditText>D</RichEditText>";

    CheckBench bench_{[](const CheckedParts& parts) { checkDocuments(parts.context, parts.files); }};
};

TEST_F(DocumentCheckTest, FindsDocumentsThatAreNotShown) {
    EXPECT_EQ(messages(kMarkdown, ""),
              (Found{"document-broken \"d\": the document is empty: a setup shows nothing"}));
    const std::vector<Finding> found = show(kRichText, "{\\rtf1 a\n}}");
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].code.name(), "document-broken");
    EXPECT_EQ(found[0].message,
              "\"d\": line 2: this } closes nothing: remove it, or write \\} for a brace of the text");
    EXPECT_EQ(found[0].place, (SourcePlace{3, 15}));
}

TEST_F(DocumentCheckTest, FindsWhatIsNotShownAsItIsWritten) {
    EXPECT_EQ(
        messages(kMarkdown, "text\n# Title\n\nend\n"),
        (Found{"document-loss \"d\": line 2: this heading is shown as text of the paragraph above it: put a "
               "blank line before it"}));
    EXPECT_EQ(messages(kRichText, "{\\rtf1 a\\'e9}"),
              (Found{"document-loss \"d\": line 1: left out: \\'e9: write the letter itself, in UTF-8"}));
}

TEST_F(DocumentCheckTest, EndsAfterTwentyLosses) {
    std::string document = "{\\rtf1 ";
    for (int i = 0; i < 22; ++i) {
        document += "\\'e9\n";
    }
    const std::vector<std::string> found = messages(kRichText, document + "}");
    ASSERT_EQ(found.size(), 21U);
    EXPECT_EQ(
        std::ranges::count(found, "document-loss \"d\": 2 more places aren't shown as they are written"), 1);
}

TEST_F(DocumentCheckTest, LeavesOtherFormatsAlone) {
    const std::string content = "}}\n* a **b\n";
    EXPECT_EQ(messages("<PlainEditText>D</PlainEditText>", content), Found());
    EXPECT_EQ(messages("<HtmlEditText>D</HtmlEditText>", content), Found());
    EXPECT_EQ(messages("<Image>D</Image>", content), Found());
    EXPECT_EQ(messages(kMarkdown, "# A\n\nb\n"), Found());
}

TEST_F(DocumentCheckTest, SaysEverythingOnceForEachFormat) {
    EXPECT_EQ(messages(std::string(kMarkdown) + kMarkdown +
                           "<PlainEditText Format='TandrelMarkdown'>D</PlainEditText>",
                       "")
                  .size(),
              1U);
    EXPECT_EQ(messages(std::string(kMarkdown) + kRichText, "a}\n# b\n").size(), 2U);
}

TEST_F(DocumentCheckTest, SaysNothingWithoutTheDocument) {
    bench_.root.reset();
    EXPECT_EQ(messages(kMarkdown, ""), Found());
}

}  // namespace
