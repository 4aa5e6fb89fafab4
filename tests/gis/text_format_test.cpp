// Language texts are data: a translated text may put any conversion on any argument.

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "gis/text_format.h"

namespace {

TEST(TextFormat, RealsGivenToIntegerConversions) {
    const struct {
        const char* format;
        double value;
        std::string expected;
    } cases[] = {{"%d", -93.25, "-93"},
                 {"%u", -1.5, "18446744073709551615"},
                 {"%d", 1e300, "9223372036854775807"},
                 {"%i", -1e300, "-9223372036854775808"},
                 {"%X", std::nan(""), "0"}};
    for (const auto& c : cases)
        EXPECT_EQ(FormatText(c.format, {c.value}), c.expected) << c.format << " " << c.value;
}

}  // namespace
