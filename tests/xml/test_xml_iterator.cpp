#include "xml/xml_iterator.h"

#include "support/log_capture.h"
#include "xml/xml_parser.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <utility>

namespace zavex::xml {
namespace {

using test::thrownMessage;

class Iteration : public testing::Test {
protected:
    Iteration() { parser.parse("<r><k n=1/><x n=2/><k n=3><in n=4/></k><kk n=5/></r>"); }

    const XmlParser& constant() const { return parser; }

    XmlParser parser;
};

TEST_F(Iteration, VisitsTheChildrenOfThatNameInOrder)
{
    const std::pair<const char*, const char*> cases[] = {
        {"",   "1235"},
        {"k",  "13"  },
        {"kk", "5"   },
        {"K",  ""    },
        {"in", ""    }, // a grandchild
    };
    for (const auto& [criteria, expected] : cases) {
        std::string visited;
        IteratorConst each = constant().createIterator(criteria);
        while (++each)
            visited += each->getValue("n");
        EXPECT_EQ(visited, expected);
        EXPECT_TRUE(each.isAtEnd());
        EXPECT_EQ(each.getRoot().getName(), "r");
        EXPECT_EQ(each.getSearchCriteria(), criteria);
    }
}

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

TEST_F(Iteration, InsertsBehindTheLastFindWhenASearchEndsButNotBehindTheEnd)
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

    Iterator all = parser.createIterator("");
    while (++all) {
    }
    EXPECT_EQ(thrownMessage([&] { all.addChild(XmlTag("late")); }),
              "0<=position<=getNumChildren()");
    EXPECT_TRUE(all.isAtEnd());
}

} // namespace
} // namespace zavex::xml
