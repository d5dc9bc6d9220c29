#pragma once

#include "xml/xml_node.h"

#include <iosfwd>
#include <string>
#include <string_view>

namespace zavex::xml {

/**
 * A cursor over the children of one node, optionally only over those with a given tag name.
 *
 * Begins before the first child: step it, then look.
 *
 *     for (IteratorConst key = plugin.createIterator("key"); ++key;)
 *         use(key->getValue("time"));
 *
 * Points into the tree without owning it: must not outlive it, nor be used after `clear`.
 */
class IteratorConst {
public:
    /** @param criteria  Only children with exactly this tag name are visited; empty: all of them.
     */
    IteratorConst(const XmlNode& node, std::string_view criteria)
        : context(&node), searchCriteria(criteria)
    {}

    /**
     * Steps to the next child that is to be visited.
     *
     * @return  False when there is none: the iterator is then at its end. Throws `Exception` when
     *          it was there already.
     */
    bool operator++();

    /** The current child's tag. Throws `Exception` before the first step and at the end. */
    const XmlTag* operator->() const;

    /**
     * An iterator over the children of the current child. Throws `Exception` unless the iterator
     * stands on a child.
     */
    IteratorConst createIterator(std::string_view criteria) const;

    /** True until the first step. */
    bool isAtBegin() const { return atBegin; }
    bool isAtEnd() const { return atEnd; }

    /** The tag of the node whose children are visited. */
    const XmlTag& getRoot() const { return context->getTag(); }
    const XmlNode* getContext() const { return context; }
    const std::string& getSearchCriteria() const { return searchCriteria; }

protected:
    const XmlNode& child() const;

    const XmlNode* context; // not owned
    std::string searchCriteria;
    int currentChild = -1; // index among the context's children; -1 before the first step
    bool atEnd = false;
    bool atBegin = true;
};

/** Writes the current child's tag as one line. Throws as `operator->` does. */
std::ostream& operator<<(std::ostream& out, const IteratorConst& iterator);

} // namespace zavex::xml
