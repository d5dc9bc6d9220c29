#include "xml/xml_iterator.h"

#include "support/log_capture.h"
#include "xml/xml_parser.h"

#include <gtest/gtest.h>

#include <ostream>
#include <sstream>
#include <string>

namespace zavex::xml {
namespace {

using test::thrownMessage;

class Iteration : public testing::Test {
protected:
    Iteration() { parser.parse("<r><k n=1/><x n=2/><k n=3><in n=4/></k><kk n=5/></r>"); }

    const XmlParser& constant() const { return parser; }

    XmlParser parser;
};

struct CriteriaCase {
    const char* name;
    const char* criteria;
    const char* expected;

    friend void PrintTo(const CriteriaCase& each, std::ostream* out) { *out << each.name; }
};

constexpr CriteriaCase CRITERIA_CASES[] = {
    {"EmptyVisitsAll",   "",   "1235"},
    {"NameVisitsItsOwn", "k",  "13"  },
    {"LastOnly",         "kk", "5"   },
    {"CaseMatters",      "K",  ""    },
    {"DoesNotDescend",   "in", ""    },
};

class IterationCriteria : public Iteration, public testing::WithParamInterface<CriteriaCase> {};

TEST_P(IterationCriteria, VisitsTheChildrenOfThatNameInOrder)
{
    std::string visited;
    IteratorConst each = constant().createIterator(GetParam().criteria);
    while (++each)
        visited += each->getValue("n");
    EXPECT_EQ(visited, GetParam().expected);
    EXPECT_TRUE(each.isAtEnd());
    EXPECT_EQ(each.getRoot().getName(), "r");
    EXPECT_EQ(each.getSearchCriteria(), GetParam().criteria);
}

INSTANTIATE_TEST_SUITE_P(Cases, IterationCriteria, testing::ValuesIn(CRITERIA_CASES),
                         [](const auto& each) { return std::string{each.param.name}; });

TEST_F(Iteration, GoesDownFromTheCurrentChild)
{
    Iterator key = parser.createIterator("k");
    ++key;
    ++key;
    Iterator inner = key.createIterator("");
    ASSERT_TRUE(++inner);
    inner->setValue("n", 9);
    EXPECT_EQ(inner.getRoot().getValue("n"), "3");

    std::ostringstream out;
    out << inner;
    EXPECT_EQ(out.str(), "<in n=\"9\"/>\n");
}

TEST_F(Iteration, RefusesToLookBesideTheChildren)
{
    IteratorConst reading = constant().createIterator("x");
    Iterator writing = parser.createIterator("x");
    EXPECT_TRUE(reading.isAtBegin());
    EXPECT_EQ(thrownMessage([&] { reading->getName(); }),
              "IteratorConst::operator->; Can't access before first element!");
    EXPECT_EQ(thrownMessage([&] { writing->getName(); }),
              "XmlParser::Iterator::operator->; Can't access before first element, try operator++ "
              "first!");
    EXPECT_EQ(thrownMessage([&] { reading.createIterator(""); }), "iterator stands on a child");
    EXPECT_EQ(thrownMessage([&] { writing.createIterator(""); }), "iterator stands on a child");

    while (++reading)
        EXPECT_FALSE(reading.isAtBegin());
    while (++writing)
        EXPECT_FALSE(writing.isAtEnd());
    EXPECT_EQ(thrownMessage([&] { reading->getName(); }),
              "IteratorConst::operator->; Can't access after last element!");
    EXPECT_EQ(thrownMessage([&] { writing->getName(); }),
              "XmlParser::Iterator::operator->; Can't access after last element, no Tags matching "
              "searchCriteria?");
    EXPECT_EQ(thrownMessage([&] { ++reading; }),
              "IteratorConst::operator++; Called after last tag!");
    EXPECT_EQ(thrownMessage([&] { writing.createIterator(""); }), "iterator stands on a child");
}

TEST_F(Iteration, InsertsBehindTheCurrentChildAndStandsOnTheNewOne)
{
    Iterator each = parser.createIterator("");
    each.addChild(XmlTag("first"));
    EXPECT_EQ(each->getName(), "first");
    ++each;
    EXPECT_EQ(each->getValue("n"), "1");
    each.addChild(XmlTag("second")).addChild(XmlTag("inner"));
    EXPECT_EQ(each->getName(), "second");
    EXPECT_TRUE(++each);

    std::string text;
    parser.write(text, "");
    EXPECT_EQ(text.substr(0, text.find("<x")),
              "<r>\n<first/>\n<k n=\"1\"/>\n<second>\n<inner/>\n</second>\n");
}

TEST_F(Iteration, InsertsBehindTheLastFindWhenASearchEnds)
{
    Iterator each = parser.createIterator("x");
    while (++each) {
    }
    each.addChild(XmlTag("added"));
    EXPECT_FALSE(each.isAtEnd());
    EXPECT_EQ(each->getName(), "added");
    EXPECT_EQ(each.getContext()->getChildren(2)->getTag().getName(), "added");

    Iterator none = parser.createIterator("none");
    EXPECT_FALSE(++none);
    none.addChild(XmlTag("first"));
    EXPECT_EQ(none.getContext()->getChildren(0)->getTag().getName(), "first");
}

TEST_F(Iteration, HasNoPlaceForAChildBehindItsEnd)
{
    Iterator each = parser.createIterator("");
    while (++each) {
    }
    EXPECT_EQ(thrownMessage([&] { each.addChild(XmlTag("late")); }),
              "0<=position<=getNumChildren()");
    EXPECT_TRUE(each.isAtEnd());
}

} // namespace
} // namespace zavex::xml
