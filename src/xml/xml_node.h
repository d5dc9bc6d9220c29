#pragma once

#include "xml/xml_tag.h"

#include <string_view>
#include <vector>

namespace zavex::xml {

class Iterator;
class IteratorConst;

/**
 * One node of a document: a tag and, for an element, its content in document order.
 *
 * Owns its children, to any depth; does not own its parent. No operation recurses, so a tree may be
 * as deep as memory allows.
 */
class XmlNode {
public:
    /** @param parent  Null for a root. It is only remembered; it does not gain a child. */
    explicit XmlNode(XmlNode* parent) : mParent(parent) {}
    XmlNode(const XmlTag& ownTag, XmlNode* parent) : tag(ownTag), mParent(parent) {}

    XmlNode(const XmlNode&) = delete;
    XmlNode& operator=(const XmlNode&) = delete;

    /** Takes the node out of its parent's children and deletes its own. */
    ~XmlNode();

    void setTag(const XmlTag& newTag) { tag.setTag(newTag); }

    /** Only remembers `parent`; the children of neither the old nor the new one change. */
    void setParent(XmlNode* parent) { mParent = parent; }

    /**
     * Inserts a new child holding a copy of `childTag` and clears this node's closed flag.
     *
     * @param position  Index of the new child, in 0..number of children; -1 appends. Throws
     *                  `Exception` when it is anything else.
     * @return  An iterator over the new child's own children.
     */
    Iterator addChild(const XmlTag& childTag, int position);

    /**
     * Takes `child` out of the children, without deleting it: it becomes a root and the caller
     * owns it.
     *
     * @return  The index that the child had. Throws `Exception` when it is not among the children.
     */
    int detachChild(XmlNode* child);

    /**
     * Resets the tag, takes the node out of its parent's children (the caller owns it from then
     * on) and deletes everything below it. Throws `Exception` when the parent does not have this
     * node among its children.
     */
    void clear();

    /** An iterator over the children named `criteria`, over all of them when it is empty. */
    Iterator createIterator(std::string_view criteria);
    IteratorConst createIterator(std::string_view criteria) const;

    const XmlTag& getTag() const { return tag; }
    XmlTag& getTag() { return tag; }

    /** Null for a root. */
    XmlNode* getParent() const { return mParent; }

    int getNumChildren() const { return static_cast<int>(children.size()); }

    /** @param index  In [0, number of children); throws `Exception` otherwise. */
    const XmlNode* getChildren(int index) const;
    XmlNode* getChildren(int index);

private:
    void requireChild(int index) const;
    void deleteChildren();

    XmlTag tag;
    std::vector<XmlNode*> children; // owned
    XmlNode* mParent = nullptr;     // not owned
};

} // namespace zavex::xml
