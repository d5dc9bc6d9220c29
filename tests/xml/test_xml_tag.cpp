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

TEST(Tag, CopiesAndForgetsEverything)
{
    XmlTag tag("a");
    tag.setClosed(false);
    tag.setTagType(XmlTag::COMMENT);
    tag.setValue("content", "c");
    XmlTag copy;
    copy.setTag(tag);
    tag.clear();

    EXPECT_EQ(copy.getName(), "a");
    EXPECT_FALSE(copy.getClosed());
    EXPECT_EQ(copy.getType(), XmlTag::COMMENT);
    EXPECT_EQ(copy.getValue("content"), "c");
    EXPECT_EQ(tag.getName(), "");
    EXPECT_TRUE(tag.getClosed());
    EXPECT_EQ(tag.getType(), XmlTag::NORMAL);
    EXPECT_TRUE(tag.getArg().empty());
}

TEST(Tag, OfAnUnknownTypeIsNotWritten)
{
    std::ostringstream out;
    XmlTag tag("a");
    tag.setTagType(-1);
    EXPECT_EQ(test::thrownMessage([&] { out << tag; }), "XmlTag::write; Unknown tagtype!");
    EXPECT_EQ(out.str(), "");
}

struct IntCase {
    const char* name;
    const char* text;
    int expected;

    friend void PrintTo(const IntCase& each, std::ostream* out) { *out << each.name; }
};

constexpr IntCase INT_CASES[] = {
    {"Decimal",                  "12",                    12                             },
    {"Negative",                 "-3",                    -3                             },
    {"Plus",                     "+3",                    3                              },
    {"Hexadecimal",              "0x10",                  16                             },
    {"HexadecimalNegative",      "-0XfF",                 -255                           },
    {"Octal",                    "010",                   8                              },
    {"OctalStopsAtEight",        "0178",                  15                             },
    {"HexadecimalWithoutDigits", "0x",                    0                              },
    {"LeadingSpace",             " \t\n7",                7                              },
    {"StopsAtThePoint",          "2.9",                   2                              },
    {"Word",                     "on",                    0                              },
    {"Empty",                    "",                      0                              },
    {"AboveInt",                 "4294967296",            std::numeric_limits<int>::max()},
    {"BelowLong",                "-99999999999999999999", std::numeric_limits<int>::min()},
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
    {"Fraction",              "-0.125",  -0.125   },
    {"WithoutZero",           ".5",      0.5      },
    {"Exponent",              "1e3",     1000.0   },
    {"ExponentWithoutDigits", "2e",      2.0      },
    {"Hexadecimal",           "0x1.8p1", 3.0      },
    {"LeadingSpace",          " \n+2",   2.0      },
    {"StopsAtTheComma",       "1,5",     1.0      },
    {"Infinite",              "-inf",    -HUGE_VAL},
    {"TooLarge",              "1e999",   HUGE_VAL },
    {"Word",                  "fast",    0.0      },
    {"Empty",                 "",        0.0      },
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
    {"Short",        0.1,        "0.1"        },
    {"Whole",        20.0,       "20"         },
    {"Negative",     -2.5,       "-2.5"       },
    {"SixDigits",    123456.0,   "123456"     },
    {"SevenDigits",  1234567.0,  "1.23457e+06"},
    {"RoundedUp",    0.99999961, "1"          },
    {"Small",        0.0001,     "0.0001"     },
    {"Smaller",      0.00001,    "1e-05"      },
    {"NegativeZero", -0.0,       "-0"         },
    {"Infinite",     HUGE_VAL,   "inf"        },
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

TEST(Numbers, MissingOnesAreZero)
{
    EXPECT_EQ(XmlTag().getValueInt("at"), 0);
    EXPECT_EQ(XmlTag().getValueFloat("at"), 0.0f);
}

TEST(Numbers, KeepFloatsAndNegativeInts)
{
    XmlTag tag;
    tag.setValue("at", -3);
    tag.setValue("end", 0.75f);
    EXPECT_EQ(tag.getValue("at"), "-3");
    EXPECT_EQ(tag.getValue("end"), "0.75");
    EXPECT_EQ(tag.getValueFloat("end"), 0.75f);
}

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
