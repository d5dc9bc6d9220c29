#include "xml/xml_tag.h"

#include <gtest/gtest.h>

#include <climits>
#include <clocale>
#include <cmath>
#include <cstdlib>
#include <sstream>
#include <string>
#include <utility>

namespace zavex::xml {
namespace {

XmlTag tagWith(const char* value)
{
    XmlTag tag("key");
    tag.setValue("at", value);
    return tag;
}

TEST(Tag, ReplacesAValueInItsPlaceAndAppendsAnUnknownOne)
{
    XmlTag tag("key");
    tag.setValue("time", 1);
    tag.setValue("value", "x");
    tag.setValue("time", std::string{"3"});
    std::ostringstream out;
    out << tag;
    EXPECT_EQ(out.str(), "<key time=\"3\" value=\"x\"/>\n");
    EXPECT_TRUE(tag.hasValue("value"));
    EXPECT_FALSE(tag.hasValue("Value"));
    EXPECT_EQ(tag.getValue("Value"), "");
}

TEST(Tag, ReadsAndWritesNumbersAsInTheCLocale)
{
    // clang-format off
    const std::pair<const char*, int> whole[] = {
        {"12", 12}, {"0x10", 16}, {"010", 8}, {" \t\n7", 7}, {"2.9", 2}, {"", 0},
        {"4294967296", INT_MAX}, {"-99999999999999999999", INT_MIN},
    };
    const std::pair<const char*, double> fractions[] = {
        {"-0.125", -0.125}, {"0x1.8p1", 3.0}, {" \n+2", 2.0}, {"1,5", 1.0}, {"-inf", -HUGE_VAL},
        {"1e999", HUGE_VAL}, {"fast", 0.0}, {"", 0.0},
    };
    const std::pair<double, const char*> written[] = { // in six significant digits
        {-2.5, "-2.5"}, {123456.0, "123456"}, {1234567.0, "1.23457e+06"}, {0.00001, "1e-05"},
        {HUGE_VAL, "inf"},
    };
    // clang-format on
    for (const auto& [text, expected] : whole)
        EXPECT_EQ(tagWith(text).getValueInt("at"), expected) << text;
    for (const auto& [text, expected] : fractions)
        EXPECT_EQ(tagWith(text).getValueDouble("at"), expected) << text;
    for (const auto& [value, expected] : written) {
        XmlTag tag;
        tag.setValue("at", value);
        EXPECT_EQ(tag.getValue("at"), expected);
    }
}

/** In a locale of the test's own, with a decimal comma and points between thousands. */
TEST(Tag, ReadsAndWritesNumbersAlikeInEveryLocale)
{
    setenv("LOCPATH", CADENZA_TEST_SOURCE_DIR "/locale", 1);
    ASSERT_NE(std::setlocale(LC_NUMERIC, "comma"), nullptr);
    EXPECT_EQ(std::strtod("1,5", nullptr), 1.5);
    XmlTag tag = tagWith("1.5");
    EXPECT_EQ(tag.getValueDouble("at"), 1.5);
    tag.setValue("at", 0.25);
    EXPECT_EQ(tag.getValue("at"), "0.25");
    tag.setValue("at", 1234567);
    EXPECT_EQ(tag.getValue("at"), "1234567");
    std::setlocale(LC_NUMERIC, "C");
    unsetenv("LOCPATH");
}

} // namespace
} // namespace zavex::xml
