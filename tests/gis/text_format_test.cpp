// Language texts are data: a translated text may put any conversion on any argument.

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "gis/text_format.h"

namespace {

TEST(TextFormat, RealsGivenToIntegerConversions) {
    const double inf = std::numeric_limits<double>::infinity();
    const struct {
        const char* name;
        const char* format;
        double value;
        std::string expected;
    } cases[] = {
        {"whole part of a coordinate", "%d", -93.25, "-93"},
        {"negative real as unsigned wraps like the integer", "%u", -1.5, "18446744073709551615"},
        {"negative real in hex", "%x", -93.25, "ffffffffffffffa3"},
        {"real above the integer range", "%d", 1e300, "9223372036854775807"},
        {"real below the integer range", "%i", -1e300, "-9223372036854775808"},
        {"infinity", "%o", inf, "777777777777777777777"},
        {"not a number", "%X", std::nan(""), "0"},
    };
    for (const auto& c : cases) EXPECT_EQ(FormatText(c.format, {c.value}), c.expected) << c.name;
}

}  // namespace
