#include "xml/xml_tag.h"

#include "support/log_capture.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <ostream>
#include <sstream>
#include <string>

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

TEST(Tag, ClosesAnEmptyElementOnlyWhenAsked)
{
    std::ostringstream out;
    XmlTag tag("a");
    tag.write(out, false);
    tag.setClosed(false);
    tag.write(out, true);
    EXPECT_EQ(out.str(), "<a>\n<a>\n");
}

struct IntCase {
    const char* name;
    const char* text;
    int expected;

    friend void PrintTo(const IntCase& each, std::ostream* out) { *out << each.name; }
};

constexpr IntCase INT_CASES[] = {
    {"Decimal",         "12",                    12                             },
    {"Hexadecimal",     "0x10",                  16                             },
    {"Octal",           "010",                   8                              },
    {"LeadingSpace",    " \t\n7",                7                              },
    {"StopsAtThePoint", "2.9",                   2                              },
    {"Empty",           "",                      0                              },
    {"AboveInt",        "4294967296",            std::numeric_limits<int>::max()},
    {"BelowLong",       "-99999999999999999999", std::numeric_limits<int>::min()},
};

class IntValue : public testing::TestWithParam<IntCase> {};

TEST_P(IntValue, IsReadWithAutomaticBase)
{
    EXPECT_EQ(tagWith(GetParam().text).getValueInt("at"), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Cases, IntValue, testing::ValuesIn(INT_CASES),
                         [](const auto& each) { return std::string{each.param.name}; });

struct DoubleCase {
    const char* name;
    const char* text;
    double expected;

    friend void PrintTo(const DoubleCase& each, std::ostream* out) { *out << each.name; }
};

constexpr DoubleCase DOUBLE_CASES[] = {
    {"Fraction",        "-0.125",  -0.125   },
    {"Hexadecimal",     "0x1.8p1", 3.0      },
    {"LeadingSpace",    " \n+2",   2.0      },
    {"StopsAtTheComma", "1,5",     1.0      },
    {"Infinite",        "-inf",    -HUGE_VAL},
    {"TooLarge",        "1e999",   HUGE_VAL },
    {"Word",            "fast",    0.0      },
    {"Empty",           "",        0.0      },
};

class DoubleValue : public testing::TestWithParam<DoubleCase> {};

TEST_P(DoubleValue, IsReadAsInTheCLocale)
{
    EXPECT_EQ(tagWith(GetParam().text).getValueDouble("at"), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Cases, DoubleValue, testing::ValuesIn(DOUBLE_CASES),
                         [](const auto& each) { return std::string{each.param.name}; });

struct FormatCase {
    const char* name;
    double value;
    const char* expected;

    friend void PrintTo(const FormatCase& each, std::ostream* out) { *out << each.name; }
};

constexpr FormatCase FORMAT_CASES[] = {
    {"Short",       0.1,       "0.1"        },
    {"Negative",    -2.5,      "-2.5"       },
    {"SixDigits",   123456.0,  "123456"     },
    {"SevenDigits", 1234567.0, "1.23457e+06"},
    {"Smaller",     0.00001,   "1e-05"      },
    {"Infinite",    HUGE_VAL,  "inf"        },
};

class FormattedDouble : public testing::TestWithParam<FormatCase> {};

TEST_P(FormattedDouble, HasSixSignificantDigits)
{
    XmlTag tag;
    tag.setValue("at", GetParam().value);
    EXPECT_EQ(tag.getValue("at"), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Cases, FormattedDouble, testing::ValuesIn(FORMAT_CASES),
                         [](const auto& each) { return std::string{each.param.name}; });

/** A decimal comma and points between thousands, from the test's own locale. */
class UserLocale : public testing::Test {
protected:
    void SetUp() override
    {
        setenv("LOCPATH", CADENZA_TEST_SOURCE_DIR "/locale", 1);
        ASSERT_NE(std::setlocale(LC_NUMERIC, "comma"), nullptr);
        ASSERT_EQ(std::strtod("1,5", nullptr), 1.5);
    }

    void TearDown() override
    {
        std::setlocale(LC_NUMERIC, "C");
        unsetenv("LOCPATH");
    }
};

TEST_F(UserLocale, DoesNotChangeNumbers)
{
    XmlTag tag = tagWith("1.5");
    EXPECT_EQ(tag.getValueDouble("at"), 1.5);
    tag.setValue("at", 0.25);
    EXPECT_EQ(tag.getValue("at"), "0.25");
    tag.setValue("at", 1234567);
    EXPECT_EQ(tag.getValue("at"), "1234567");
}

} // namespace
} // namespace zavex::xml
