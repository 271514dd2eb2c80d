#include "packager/loss_warnings.h"

#include <gtest/gtest.h>

#include "packager/recorded_output.h"

namespace {

using namespace std::string_view_literals;
using Lines = std::vector<std::string>;

TEST(LossWarnings, BeginWithTheNameOfTheDocument) {
    RecordedOutput output;
    warnOfLosses("/in/a\nb", "\xEF\xBB\xBFtext\n# a\tb\n\0"sv, DocumentFormat::kMarkdown, output);
    EXPECT_EQ(
        (Lines{
            "packager: warning: /in/a?b: line 3: the document ends here at a zero byte: save it as UTF-8",
            "packager: warning: /in/a?b: there is a byte order mark before the first line: save it without "
            "one",
            "packager: warning: /in/a?b: line 2: this heading is shown as text of the paragraph above it: "
            "put a blank line before it"}),
        output.errors);
}

}  // namespace
