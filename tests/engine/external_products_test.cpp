#include "engine/external_products.h"

#include "engine_fixture.h"

namespace {

class ExternalProductsTest : public EngineTest {
protected:
    // Enters a page with these elements; the calls of the system's list, and of the start.
    std::vector<ExternalProduct> uninstallAll(const std::string& elements) {
        describe("<ExternalUninstall>" + elements + "</ExternalUninstall>");
        return products_.uninstallAll(
            document_.findByName("ExternalUninstall"), report_,
            [this] { system_.calls.emplace_back("first"); },
            [this] { return static_cast<int>(uninstalls().size()) > allowed_; });
    }
    std::vector<std::string> uninstalls() const {
        std::vector<std::string> found;
        for (const std::string& call : system_.calls) {
            if (call.starts_with("uninstallApplication") || call == "first") {
                found.push_back(call);
            }
        }
        return found;
    }

    int allowed_ = 1000;  // the session is cancelled after so many of those calls
    ExternalProducts products_{DescriptionTags(document_, expressions_), system_};
};

using Calls = std::vector<std::string>;

TEST_F(ExternalProductsTest, DoesNothingWhenNothingIsInstalled) {
    const auto found = uninstallAll("<ExternalLegacyApplication>Demo</ExternalLegacyApplication>");
    EXPECT_TRUE(found.empty());
    EXPECT_TRUE(uninstalls().empty());
    EXPECT_TRUE(ui_.calls.empty());
    EXPECT_FALSE(products_.isAnyInstalled(found));
}

TEST_F(ExternalProductsTest, UninstallsAProductAndWaits) {
    system_.installed = {{"Demo", "", false, ""}};
    const auto found = uninstallAll("<ExternalLegacyApplication>Demo</ExternalLegacyApplication>");
    EXPECT_EQ(uninstalls(), (Calls{"first", "uninstallApplication(Demo, wait)"}));
    EXPECT_EQ(ui_.calls, Calls{"addFileLine(\"Uninstalling \"Demo\" ...\", 1)"});
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].name, "Demo");
    EXPECT_FALSE(products_.isAnyInstalled(found));
}

TEST_F(ExternalProductsTest, SeesAProductThatStays) {
    system_.installed = {{"Demo", "", false, ""}};
    system_.staying = {"Demo"};
    const auto found = uninstallAll("<ExternalLegacyApplication>Demo</ExternalLegacyApplication>");
    EXPECT_TRUE(products_.isAnyInstalled(found));
    system_.installed.clear();
    EXPECT_FALSE(products_.isAnyInstalled(found));
}

TEST_F(ExternalProductsTest, FindsProductsByAPartOfTheirName) {
    system_.installed = {{"Demo 1", "Acme", false, ""},
                         {"Demo 2", "Other", false, ""},
                         {"My Demo", "Acme", false, ""},
                         {"Tool", "Acme", false, ""}};
    uninstallAll(
        "<ExternalLegacyApplication Details=';substring;' Publisher='Acme'>Demo</ExternalLegacyApplication>");
    EXPECT_EQ(uninstalls(),
              (Calls{"first", "uninstallApplication(Demo 1, wait)", "uninstallApplication(My Demo, wait)"}));
}

TEST_F(ExternalProductsTest, SearchesWithoutAPublisher) {
    uninstallAll("<ExternalLegacyApplication Details='substring'>Demo</ExternalLegacyApplication>");
    EXPECT_EQ(system_.calls, Calls{"findEntriesByPublisher(Demo, )"});
}

TEST_F(ExternalProductsTest, LooksIntoTheViewOf32BitPrograms) {
    constexpr char kElement[] = "<ExternalLegacyApplication Details='x86'>Demo</ExternalLegacyApplication>";
    system_.installed = {{"Demo", "", false, ""}};
    EXPECT_TRUE(uninstallAll(kElement).empty());
    system_.installed = {{"Demo", "", true, ""}};
    system_.staying = {"Demo"};
    const auto found = uninstallAll(kElement);
    ASSERT_EQ(found.size(), 1U);
    EXPECT_TRUE(found[0].in32BitView);
    EXPECT_EQ(uninstalls(), (Calls{"first", "uninstallApplication(Demo, x86, wait)"}));
    EXPECT_TRUE(products_.isAnyInstalled(found));
}

// The page has one element for each view, and each product is looked for where it was found.
TEST_F(ExternalProductsTest, LooksForEachProductInItsOwnView) {
    constexpr char kWide[] = "<ExternalLegacyApplication>Wide</ExternalLegacyApplication>";
    constexpr char kNarrow[] = "<ExternalLegacyApplication Details='x86'>Narrow</ExternalLegacyApplication>";
    for (const std::string& elements : {std::string(kWide) + kNarrow, std::string(kNarrow) + kWide}) {
        system_.installed = {{"Wide", "", false, ""}, {"Narrow", "", true, ""}};
        system_.staying = {"Wide", "Narrow"};
        const auto found = uninstallAll(elements);
        EXPECT_EQ(found.size(), 2U);
        EXPECT_TRUE(products_.isAnyInstalled(found));
        system_.installed = {{"Wide", "", false, ""}};
        EXPECT_TRUE(products_.isAnyInstalled(found));
        system_.installed = {{"Narrow", "", true, ""}};
        EXPECT_TRUE(products_.isAnyInstalled(found));
        system_.installed = {{"Wide", "", true, ""}, {"Narrow", "", false, ""}};  // others of those names
        EXPECT_FALSE(products_.isAnyInstalled(found));
    }
}

TEST_F(ExternalProductsTest, SaysWhichProductIsStillThere) {
    system_.installed = {{"Demo", "", false, ""}, {"Tool", "", true, ""}};
    system_.staying = {"Tool"};
    uninstallAll(
        "<ExternalLegacyApplication>Demo</ExternalLegacyApplication>"
        "<ExternalLegacyApplication Details='x86'>Tool</ExternalLegacyApplication>");
    EXPECT_EQ(ui_.callsOf("addMessage"), Calls{"addMessage(\"\"Tool\" is still installed\")"});
}

TEST_F(ExternalProductsTest, BeginsNoOtherProductAfterACancellation) {
    system_.installed = {{"Demo 1", "", false, ""}, {"Demo 2", "", false, ""}, {"Demo 3", "", false, ""}};
    system_.staying = {"Demo 1", "Demo 2", "Demo 3"};
    allowed_ = 2;  // the start and the first product
    const auto found =
        uninstallAll("<ExternalLegacyApplication Details='substring'>Demo</ExternalLegacyApplication>");
    EXPECT_EQ(uninstalls(),
              (Calls{"first", "uninstallApplication(Demo 1, wait)", "uninstallApplication(Demo 2, wait)"}));
    EXPECT_EQ(found.size(), 2U);
    EXPECT_EQ(ui_.callsOf("addMessage"), Calls{"addMessage(\"\"Demo 1\" is still installed\")"});
}

TEST_F(ExternalProductsTest, BeginsNothingWhenTheSessionIsCancelledAlready) {
    system_.installed = {{"Demo", "", false, ""}};
    allowed_ = -1;
    EXPECT_TRUE(uninstallAll("<ExternalLegacyApplication>Demo</ExternalLegacyApplication>").empty());
    EXPECT_TRUE(uninstalls().empty());
}

// The list is searched by view alone; that an uninstaller is waited for is no matter of a search.
TEST_F(ExternalProductsTest, SearchesByTheViewAlone) {
    std::vector<std::uint32_t> flags;
    describe("<A Details='x86'>Demo</A>");
    system_.onFind = [&](std::uint32_t asked) { flags.push_back(asked); };
    products_.countInstalled(document_.findByName("A"));
    uninstallAll("<ExternalLegacyApplication Details='x86'>Demo</ExternalLegacyApplication>");
    EXPECT_EQ(flags, (std::vector<std::uint32_t>{kEntryIn32BitView, kEntryIn32BitView}));
}

TEST_F(ExternalProductsTest, PassesExpandedArgumentsOn) {
    variables_.set("LONG", std::string(1500, 'x'));
    system_.installed = {{"Demo", "", false, ""}};
    uninstallAll("<ExternalLegacyApplication Arguments='-q [LONG][LONG]'>Demo</ExternalLegacyApplication>");
    EXPECT_EQ(uninstalls().back(), "uninstallApplication(Demo, -q " + std::string(3000, 'x') + ", wait)");
}

TEST_F(ExternalProductsTest, SkipsOtherElementsAndFalseConditions) {
    system_.installed = {{"Demo", "", false, ""}};
    uninstallAll(
        "<ExternalLegacyApplication Condition='0'>Demo</ExternalLegacyApplication>"
        "<Other>Demo</Other><ExternalLegacyApplication/>");
    EXPECT_TRUE(uninstalls().empty());
}

TEST_F(ExternalProductsTest, CountsInstalledProducts) {
    system_.installed = {{"Tool 1", "", false, ""}, {"Tool 2", "", false, ""}, {"Plain", "", false, ""}};
    describe("<A>Plain</A><A Details='SUBSTRING'>Tool</A><A>Tool</A><A Condition='1==2'>Plain</A><A/>");
    std::vector<std::int32_t> counts;
    for (std::int32_t node = document_.findByName("A"); node >= 0; node = document_.findByName("A", node)) {
        counts.push_back(products_.countInstalled(node));
    }
    EXPECT_EQ(counts, (std::vector<std::int32_t>{1, 2, 0, 0, 0}));
}

}  // namespace
