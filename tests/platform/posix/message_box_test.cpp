#include "platform/message_box.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <string>

namespace {

// What `action` writes to standard error.
template <typename Action>
std::string errorsOf(Action action) {
    int ends[2] = {-1, -1};
    EXPECT_EQ(pipe2(ends, O_CLOEXEC), 0);
    const int before = dup(STDERR_FILENO);
    EXPECT_EQ(dup2(ends[1], STDERR_FILENO), STDERR_FILENO);
    close(ends[1]);
    action();
    EXPECT_EQ(dup2(before, STDERR_FILENO), STDERR_FILENO);
    close(before);
    char text[1000];
    const ssize_t size = read(ends[0], text, sizeof text);
    close(ends[0]);
    return std::string(text, size > 0 ? static_cast<std::size_t>(size) : 0);
}

TEST(MessageBoxTest, WritesAMessageToStandardError) {
    EXPECT_EQ(errorsOf([] { platform::showMessage("two\nlines", "Caption", platform::MessageIcon::kError); }),
              "Caption:\ntwo\nlines\n");
}

TEST(MessageBoxTest, PassesNoCommandToTheTerminal) {
    EXPECT_EQ(errorsOf([] { platform::showMessage("a\x1B[2J", "b\b", platform::MessageIcon::kError); }),
              "b?:\na?[2J\n");
}

TEST(MessageBoxTest, PrintsAnEmptyTextAsAnEmptyLine) {
    EXPECT_EQ(errorsOf([] { platform::showMessage("", "Caption", platform::MessageIcon::kWarning); }),
              "Caption:\n\n");
}

}  // namespace
