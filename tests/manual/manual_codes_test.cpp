// Each finding of packager check is described on its page of the manual, with an example in which it is
// found.

#include <gtest/gtest.h>

#include <algorithm>

#include "checking/description_check.h"
#include "manual/check_examples.h"
#include "manual/manual_text.h"
#include "platform/memory/memory_file_system.h"

namespace {

// A file of this size, or an icon, can't be an example.
const std::set<std::string_view> kWithoutExample = {"form-too-large", "icon-sizes"};

std::string_view pageText() {
    for (const ManualPage& page : manualPages()) {
        if (page.name == "check.md") {
            return page.text;
        }
    }
    return {};
}

std::vector<Finding> findingsIn(const CheckExample& example) {
    MemoryFileSystem files;
    files.addFile("/root/greet.sh", "#!/bin/sh\necho Hello\n");
    for (const auto& [name, content] : example.files) {
        files.addFile("/root/" + name, content);
    }
    CheckOptions options;
    if (example.hasRoot) {
        options.root = "/root";
    }
    return checkDescription(example.description, options, files);
}

std::string shown(const Finding& finding) {
    return std::to_string(finding.place.line) + ":" + std::to_string(finding.place.column) + " " +
           finding.message + " [" + std::string(finding.code.name()) + "]";
}

std::size_t countOf(std::string_view text, const std::string& part) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string_view::npos; at = text.find(part, at + 1)) {
        ++count;
    }
    return count;
}

TEST(ManualOfFindings, HasOneHeadingAndOneExampleForEachCode) {
    const std::vector<CheckExample> examples = checkExamples(pageText());
    for (const FindingKind& kind : finding_kinds::kAll) {
        const std::string name(kind.name);
        const std::string severity = kind.severity == Severity::kError ? "Error. " : "Warning. ";
        EXPECT_EQ(countOf(pageText(), "\n### `" + name + "`\n\n" + severity), 1U) << name;
        EXPECT_EQ(std::ranges::count(examples, name, &CheckExample::code),
                  kWithoutExample.contains(kind.name) ? 0 : 1)
            << name;
    }
}

TEST(ManualOfFindings, DescribesNoCodeThatThereIsNot) {
    for (const CheckExample& example : checkExamples(pageText())) {
        const bool isKnown = example.code.empty() ||
                             std::ranges::find(finding_kinds::kAll, example.code, &FindingKind::name) !=
                                 std::end(finding_kinds::kAll);
        EXPECT_TRUE(isKnown) << example.code;
    }
    EXPECT_EQ(countOf(pageText(), "\n### `"), std::size(finding_kinds::kAll));
}

TEST(ManualOfFindings, BeginsWithADescriptionInWhichNothingIsFound) {
    CheckExample base = checkExamples(pageText()).front();
    ASSERT_EQ(base.code, "");
    for (const bool hasRoot : {false, true}) {
        base.hasRoot = hasRoot;
        for (const Finding& finding : findingsIn(base)) {
            ADD_FAILURE() << shown(finding);
        }
    }
}

TEST(ManualOfFindings, FindsEachExampleAtItsMark) {
    for (const CheckExample& example : checkExamples(pageText())) {
        if (example.code.empty()) {
            continue;
        }
        const std::string where = "check.md:" + std::to_string(example.line) + ": " + example.code + " at " +
                                  std::to_string(example.place.line) + ":" +
                                  std::to_string(example.place.column) + ": ";
        int found = 0;
        for (const Finding& finding : findingsIn(example)) {
            if (finding.code.name() == example.code && finding.place == example.place) {
                ++found;
            } else {
                EXPECT_TRUE(example.also.contains(std::string(finding.code.name())))
                    << where << shown(finding) << "\n"
                    << example.description;
            }
        }
        EXPECT_EQ(found, 1) << where << "is not found";
    }
}

}  // namespace
