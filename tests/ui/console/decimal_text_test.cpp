#include "ui/console/decimal_text.h"

#include <gtest/gtest.h>

TEST(DecimalText, ReadsWholeNumbers) {
    EXPECT_EQ(parseDecimal("0"), 0);
    EXPECT_EQ(parseDecimal("42"), 42);
    EXPECT_EQ(parseDecimal("-7"), -7);
    EXPECT_EQ(parseDecimal("+7"), 7);
    EXPECT_EQ(parseDecimal(" 12\t\r"), 12);
    EXPECT_EQ(parseDecimal("2147483647"), 2147483647);
}

TEST(DecimalText, RefusesWhatIsNoNumber) {
    for (const char* text : {"", " ", "x", "1x", "x1", "1 2", "+-1", "--1", "+", "-", "0x10", "1.0"}) {
        EXPECT_EQ(parseDecimal(text), std::nullopt) << text;
    }
}

TEST(DecimalText, RefusesWhatIsBeyond32Bits) {
    EXPECT_EQ(parseDecimal("2147483648"), std::nullopt);
    EXPECT_EQ(parseDecimal("99999999999999999999999"), std::nullopt);
}
