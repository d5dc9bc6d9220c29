#include "xml/xml_node.h"

#include "support/log_capture.h"
#include "xml/xml_iterator.h"

#include <gtest/gtest.h>

#include <memory>
#include <ostream>
#include <string>

namespace zavex::xml {
namespace {

using test::thrownMessage;

/** The children's names in order, each followed by a space. */
std::string childNames(const XmlNode& node)
{
    std::string names;
    for (int index = 0; index < node.getNumChildren(); ++index)
        names += node.getChildren(index)->getTag().getName() + ' ';
    return names;
}

class Node : public testing::Test {
protected:
    Node()
    {
        root.addChild(XmlTag("a"), -1);
        root.addChild(XmlTag("b"), -1);
    }

    XmlNode root{XmlTag("root"), nullptr};
};

struct InsertCase {
    const char* name;
    int position;
    const char* expected;

    friend void PrintTo(const InsertCase& each, std::ostream* out) { *out << each.name; }
};

constexpr InsertCase INSERT_CASES[] = {
    {"First",           0,  "new a b "},
    {"Between",         1,  "a new b "},
    {"Last",            2,  "a b new "},
    {"MinusOneAppends", -1, "a b new "},
};

class NodeInsertion : public Node, public testing::WithParamInterface<InsertCase> {};

TEST_P(NodeInsertion, PutsTheChildAtThePosition)
{
    root.addChild(XmlTag("new"), GetParam().position);
    EXPECT_EQ(childNames(root), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Cases, NodeInsertion, testing::ValuesIn(INSERT_CASES),
                         [](const auto& each) { return std::string{each.param.name}; });

TEST_F(Node, RefusesAPositionOrIndexOutside)
{
    for (const int position : {-2, 3})
        EXPECT_EQ(thrownMessage([&] { root.addChild(XmlTag("new"), position); }),
                  "0<=position<=getNumChildren()")
            << position;
    for (const int index : {-1, 2})
        EXPECT_EQ(thrownMessage([&] { root.getChildren(index); }), "0<=index<getNumChildren()")
            << index;
    EXPECT_EQ(childNames(root), "a b ");
}

TEST_F(Node, AddingAChildOpensTheParentAndEntersTheChild)
{
    XmlNode parent(XmlTag("parent"), nullptr);
    const Iterator inside = parent.addChild(XmlTag("child"), 0);
    EXPECT_FALSE(parent.getTag().getClosed());
    EXPECT_TRUE(parent.getChildren(0)->getTag().getClosed());
    EXPECT_EQ(inside.getContext(), parent.getChildren(0));
    EXPECT_EQ(inside.getContext()->getParent(), &parent);
}

TEST_F(Node, DetachesAChildToItsCaller)
{
    const std::unique_ptr<XmlNode> child(root.getChildren(1));
    EXPECT_EQ(root.detachChild(child.get()), 1);
    EXPECT_EQ(child->getParent(), nullptr);
    EXPECT_EQ(childNames(root), "a ");

    char expected[64];
    std::snprintf(expected, sizeof expected, "detachChild(%p); No such child in 'root'",
                  static_cast<void*>(child.get()));
    EXPECT_EQ(thrownMessage([&] { root.detachChild(child.get()); }), expected);
}

TEST_F(Node, ClearedLeavesItsParentAndLosesItsContent)
{
    const std::unique_ptr<XmlNode> child(root.getChildren(0));
    child->addChild(XmlTag("inner"), 0).addChild(XmlTag("innermost"));
    child->clear();
    EXPECT_EQ(childNames(root), "b ");
    EXPECT_EQ(child->getTag().getName(), "");
    EXPECT_TRUE(child->getTag().getClosed());
    EXPECT_EQ(child->getNumChildren(), 0);
}

TEST_F(Node, DeletedLeavesItsParent)
{
    delete root.getChildren(0);
    EXPECT_EQ(childNames(root), "b ");
}

TEST_F(Node, WhoseParentDoesNotKnowItCanStillBeDestroyed)
{
    XmlNode stranger(XmlTag("stranger"), &root);
    EXPECT_NE(thrownMessage([&] { stranger.clear(); }).find("No such child in 'root'"),
              std::string::npos);
}

} // namespace
} // namespace zavex::xml
