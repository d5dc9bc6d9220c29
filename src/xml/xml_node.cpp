#include "xml/xml_node.h"

#include "common/zvx_system.h"
#include "xml/xml_iterator.h"
#include "xml/xml_iteratorconst.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace zavex::xml {

XmlNode::~XmlNode()
{
    // As clear does, but a parent that does not know this node is no fault here.
    if (mParent != nullptr)
        std::erase(mParent->children, this);
    deleteChildren();
}

Iterator XmlNode::addChild(const XmlTag& childTag, int position)
{
    const int index = position == -1 ? getNumChildren() : position;
    ZVX_REQUIRE(index >= 0 && index <= getNumChildren(), "0<=position<=getNumChildren()");

    tag.setClosed(false);
    auto child = std::make_unique<XmlNode>(childTag, this);
    children.insert(children.begin() + index, child.get());
    return {*child.release(), ""};
}

int XmlNode::detachChild(XmlNode* child)
{
    const auto found = std::ranges::find(children, child);
    if (found == children.end())
        throw Exception("detachChild(%p); No such child in '%s'", static_cast<void*>(child),
                        tag.getName().c_str());

    const auto index = static_cast<int>(found - children.begin());
    children.erase(found);
    child->mParent = nullptr;
    return index;
}

void XmlNode::clear()
{
    tag.clear();
    if (mParent != nullptr)
        mParent->detachChild(this);
    deleteChildren();
}

Iterator XmlNode::createIterator(std::string_view criteria)
{
    return {*this, criteria};
}

IteratorConst XmlNode::createIterator(std::string_view criteria) const
{
    return {*this, criteria};
}

const XmlNode* XmlNode::getChildren(int index) const
{
    requireChild(index);
    return children[static_cast<std::size_t>(index)];
}

XmlNode* XmlNode::getChildren(int index)
{
    requireChild(index);
    return children[static_cast<std::size_t>(index)];
}

void XmlNode::requireChild(int index) const
{
    ZVX_REQUIRE(index >= 0 && index < getNumChildren(), "0<=index<getNumChildren()");
}

/** Walks to a leaf, deletes it and goes on from its parent: depth costs neither stack nor heap. */
void XmlNode::deleteChildren()
{
    XmlNode* node = this;
    while (true) {
        while (!node->children.empty()) {
            XmlNode* child = node->children.back();
            node->children.pop_back();
            child->mParent = node;
            node = child;
        }
        if (node == this)
            return;
        XmlNode* leaf = std::exchange(node, node->mParent);
        leaf->mParent = nullptr;
        delete leaf;
    }
}

} // namespace zavex::xml
