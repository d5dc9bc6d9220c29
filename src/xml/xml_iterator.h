#pragma once

#include "xml/xml_iteratorconst.h"

#include <string_view>

namespace zavex::xml {

/**
 * An `IteratorConst` that may also change what it visits.
 *
 * Repeated calls of `addChild` on a fresh iterator append children in order:
 *
 *     Iterator root = parser.createIterator("");
 *     root.setRoot(XmlTag("effect"));
 *     root.addChild(XmlTag("time"));
 *     root->setValue("start", 1.5);
 */
class Iterator : public IteratorConst {
public:
    Iterator(XmlNode& node, std::string_view criteria) : IteratorConst(node, criteria) {}

    /** The current child's tag. Throws `Exception` before the first step and at the end. */
    XmlTag* operator->() const;

    /**
     * Inserts a copy of `tag` behind the current child (as the first one before the first step) and
     * stands on it, whether or not it meets the search criteria. After a search that found nothing
     * more, that is behind the last child found; but after a step from the last child of all there
     * is no place, and `Exception` is thrown.
     *
     * @return  An iterator over the new child's own children.
     */
    Iterator addChild(const XmlTag& tag);

    /** Replaces the tag of the node whose children are visited. */
    void setRoot(const XmlTag& tag) { getRoot().setTag(tag); }

    /** See `IteratorConst::createIterator`. */
    Iterator createIterator(std::string_view criteria) const;

    using IteratorConst::getRoot;
    XmlTag& getRoot() { return getContext()->getTag(); }

    XmlNode* getContext() const;

private:
    XmlNode& writableChild() const;
};

} // namespace zavex::xml
