// Nodes and the iterators over their children.

#include "xml/xml_node.h"

#include "support/log_capture.h"
#include "xml/xml_iterator.h"
#include "xml/xml_parser.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <sstream>
#include <string>
#include <utility>

namespace zavex::xml {
namespace {

using test::thrownMessage;

class Node : public testing::Test {
protected:
    Node() { parser.parse("<r><k n=1/><x n=2/><k n=3><in n=4/></k><kk n=5/></r>"); }

    const XmlParser& constant() const { return parser; }

    /** The names of the root's children in order, each followed by a space. */
    std::string names() const
    {
        std::string found;
        for (IteratorConst each = constant().createIterator(""); ++each;)
            found += each->getName() + ' ';
        return found;
    }

    XmlParser parser;
    XmlNode& root = *parser.createIterator("").getContext();
};

TEST_F(Node, VisitsItsChildrenOfANameInOrder)
{
    const std::pair<const char*, const char*> rows[] = {
        {"",   "1235"},
        {"k",  "13"  },
        {"kk", "5"   },
        {"K",  ""    },
        {"in", ""    }, // a grandchild
    };
    for (const auto& [criteria, expected] : rows) {
        std::string visited;
        IteratorConst each = constant().createIterator(criteria);
        EXPECT_TRUE(each.isAtBegin());
        while (++each)
            visited += each->getValue("n");
        EXPECT_EQ(visited, expected);
        EXPECT_TRUE(each.isAtEnd() && !each.isAtBegin());
        EXPECT_EQ(each.getRoot().getName() + each.getSearchCriteria(), std::string("r") + criteria);
    }
    Iterator key = parser.createIterator("k");
    ++key;
    ++key;
    Iterator inner = key.createIterator("");
    ASSERT_TRUE(++inner);
    EXPECT_FALSE(inner.isAtEnd());
    inner->setValue("n", 9);
    EXPECT_EQ(inner.getRoot().getValue("n"), "3");
    std::ostringstream out;
    out << inner;
    EXPECT_EQ(out.str(), "<in n=\"9\"/>\n");
}

TEST_F(Node, RefusesWhatStandsBesideItsChildren)
{
    IteratorConst before = constant().createIterator("x");
    IteratorConst behind = before;
    Iterator writing = parser.createIterator("x");
    Iterator written = writing;
    Iterator all = parser.createIterator("");
    while (++behind) {
    }
    while (++written) {
    }
    while (++all) {
    }
    const std::string position = "0<=position<=getNumChildren()";
    const std::string index = "0<=index<getNumChildren()";
    const std::pair<std::function<void()>, std::string> rows[] = {
        {[&] { before->getName(); },
         "IteratorConst::operator->; Can't access before first element!"                                         },
        {[&] { behind->getName(); },                "IteratorConst::operator->; Can't access after last element!"},
        {[&] { writing->getName(); },
         "XmlParser::Iterator::operator->; Can't access before first element, try operator++ "
         "first!"                                                                                                },
        {[&] { written->getName(); },
         "XmlParser::Iterator::operator->; Can't access after last element, no Tags matching "
         "searchCriteria?"                                                                                       },
        {[&] { before.createIterator(""); },        "iterator stands on a child"                                 },
        {[&] { writing.createIterator(""); },       "iterator stands on a child"                                 },
        {[&] { written.createIterator(""); },       "iterator stands on a child"                                 },
        {[&] { ++behind; },                         "IteratorConst::operator++; Called after last tag!"          },
        {[&] { all.addChild(XmlTag("late")); },     position                                                     },
        {[&] { root.addChild(XmlTag("new"), -2); }, position                                                     },
        {[&] { root.addChild(XmlTag("new"), 5); },  position                                                     },
        {[&] { root.getChildren(-1); },             index                                                        },
        {[&] { root.getChildren(4); },              index                                                        },
    };
    for (const auto& [action, message] : rows)
        EXPECT_EQ(thrownMessage(action), message);
    EXPECT_TRUE(all.isAtEnd());
    EXPECT_EQ(names(), "k x k kk ");
}

TEST_F(Node, TakesAChildBehindTheIteratorWhichStandsOnItAfterwards)
{
    Iterator each = parser.createIterator("");
    each.addChild(XmlTag("first"));
    EXPECT_EQ(each->getName(), "first");
    ++each;
    EXPECT_EQ(each->getValue("n"), "1");
    each.addChild(XmlTag("second")).addChild(XmlTag("inner"));
    EXPECT_EQ(each->getName(), "second");
    EXPECT_TRUE(++each);
    EXPECT_EQ(names(), "first k second x k kk ");

    // Behind the last that was found when a search ends.
    Iterator found = parser.createIterator("x");
    while (++found) {
    }
    found.addChild(XmlTag("added"));
    EXPECT_FALSE(found.isAtEnd());
    EXPECT_EQ(found->getName(), "added");
    Iterator none = parser.createIterator("none");
    EXPECT_FALSE(++none);
    none.addChild(XmlTag("foremost"));
    EXPECT_EQ(names(), "foremost first k second x added k kk ");
}

TEST_F(Node, PutsAChildAtAPositionAndIsOpenedByIt)
{
    root.addChild(XmlTag("first"), 0);
    root.addChild(XmlTag("between"), 2);
    root.addChild(XmlTag("end"), -1);
    root.addChild(XmlTag("last"), 7);
    EXPECT_EQ(names(), "first k between x k kk end last ");

    XmlNode* const child = root.getChildren(0);
    const Iterator inside = child->addChild(XmlTag("inner"), 0);
    EXPECT_FALSE(child->getTag().getClosed());
    EXPECT_EQ(inside.getContext(), child->getChildren(0));
    EXPECT_TRUE(inside.getContext()->getTag().getClosed());
    EXPECT_EQ(inside.getContext()->getParent(), child);
}

TEST_F(Node, LeavesItsParentWhenDetachedClearedOrDeleted)
{
    const std::unique_ptr<XmlNode> detached(root.getChildren(1));
    EXPECT_EQ(root.detachChild(detached.get()), 1);
    EXPECT_EQ(detached->getParent(), nullptr);
    std::ostringstream expected;
    expected << "detachChild(" << detached.get() << "); No such child in 'r'";
    EXPECT_EQ(thrownMessage([&] { root.detachChild(detached.get()); }), expected.str());

    const std::unique_ptr<XmlNode> cleared(root.getChildren(0));
    cleared->addChild(XmlTag("inner"), 0).addChild(XmlTag("innermost"));
    cleared->clear();
    EXPECT_EQ(cleared->getTag().getName(), "");
    EXPECT_TRUE(cleared->getTag().getClosed());
    EXPECT_EQ(cleared->getNumChildren(), 0);

    delete root.getChildren(0);
    EXPECT_EQ(names(), "kk ");

    XmlNode stranger(XmlTag("stranger"), &root);
    EXPECT_NE(thrownMessage([&] { stranger.clear(); }).find("No such child in 'r'"),
              std::string::npos);
}

} // namespace
} // namespace zavex::xml
