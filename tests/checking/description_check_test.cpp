#include "checking/description_check.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "checking/findings_of.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::string_view kProduct =
    "\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<!-- A product -->\n"
    "<TandrelGroupInstallation>\r\n"
    "  <ProductDesc><Fullname>Gr\xC3\xBC\xC3\x9F"
    "e &amp; more</Fullname></ProductDesc>\n"
    "  <DefValues><Value Name=\"DIR\" DataType='value' UseOld=\"1\">/opt/$A</Value></DefValues>\n"
    "  <Dialogs><CopyProgress Special=\"AutoNext;1\" Condition=\"'[DIR]'!=''\"/></Dialogs>\n"
    "  <Installation><FileSet Name=\"All\"><FN Dest=\"[DIR]\">a/b</FN></FileSet></Installation>\n"
    "</TandrelGroupInstallation>\n";

// Positions must lie within the text, whatever it is.
void expectPlacesInside(std::string_view text) {
    const SourcePlace end = SourceLines(text).placeOf(text.size());
    for (const Finding& finding : findingsOf(text)) {
        EXPECT_GE(finding.place, (SourcePlace{1, 1}));
        EXPECT_GE(finding.place.column, 1);
        EXPECT_LE(finding.place, end) << finding.code.name() << " in\n" << text;
        EXPECT_FALSE(finding.message.empty() || finding.hint.empty());
    }
}

TEST(DescriptionCheck, ChecksOnlyTheFormOfWhatIsNotWellFormed) {
    EXPECT_THAT(shown(findingsOf("<TandrelGroupInstallation><Nonsense></TandrelGroupInstallation>")),
                ElementsAre("1:37 form-mismatched-tag"));
}

TEST(DescriptionCheck, FindsTheWordsThatNobodyKnows) {
    EXPECT_THAT(shown(findingsOf("<TandrelGroupInstallation><Nonsense/></TandrelGroupInstallation>")),
                testing::Contains("1:27 element-unknown"));
}

TEST(DescriptionCheck, SurvivesATextCutAtEveryLength) {
    for (std::size_t size = 0; size <= kProduct.size(); ++size) {
        expectPlacesInside(kProduct.substr(0, size));
        if (size > 0 && size + 30 < kProduct.size()) {
            EXPECT_THAT(findingsOf(kProduct.substr(0, size)), testing::Not(IsEmpty())) << size;
        }
    }
}

TEST(DescriptionCheck, SurvivesEachByteReplaced) {
    constexpr std::string_view kBytes(
        "\0\r\n <>&;\"'=-/?!]\x80\xC3\xFF"
        "a[",
        21);
    std::string text(kProduct);
    for (std::size_t i = 0; i < text.size(); ++i) {
        for (const char byte : kBytes) {
            text[i] = byte;
            expectPlacesInside(text);
        }
        text[i] = kProduct[i];
    }
}

TEST(DescriptionCheck, SurvivesEachByteTakenOutOrDoubled) {
    for (std::size_t i = 0; i < kProduct.size(); ++i) {
        const std::string before(kProduct.substr(0, i));
        expectPlacesInside(before + std::string(kProduct.substr(i + 1)));
        expectPlacesInside(before + kProduct[i] + std::string(kProduct.substr(i)));
    }
}

}  // namespace
