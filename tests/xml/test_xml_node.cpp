#include "xml/xml_node.h"

#include "support/log_capture.h"
#include "xml/xml_iterator.h"

#include <gtest/gtest.h>

#include <memory>

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

TEST_F(Node, PutsAChildAtThePositionOrAtTheEnd)
{
    root.addChild(XmlTag("first"), 0);
    root.addChild(XmlTag("between"), 2);
    root.addChild(XmlTag("last"), 4);
    root.addChild(XmlTag("end"), -1);
    EXPECT_EQ(childNames(root), "first a between b last end ");
}

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

TEST_F(Node, ClearedOrDeletedLeavesItsParent)
{
    const std::unique_ptr<XmlNode> child(root.getChildren(0));
    child->addChild(XmlTag("inner"), 0).addChild(XmlTag("innermost"));
    child->clear();
    EXPECT_EQ(childNames(root), "b ");
    EXPECT_EQ(child->getTag().getName(), "");
    EXPECT_TRUE(child->getTag().getClosed());
    EXPECT_EQ(child->getNumChildren(), 0);

    delete root.getChildren(0);
    EXPECT_EQ(childNames(root), "");
}

TEST_F(Node, WhoseParentDoesNotKnowItCanStillBeDestroyed)
{
    XmlNode stranger(XmlTag("stranger"), &root);
    EXPECT_NE(thrownMessage([&] { stranger.clear(); }).find("No such child in 'root'"),
              std::string::npos);
}

} // namespace
} // namespace zavex::xml
