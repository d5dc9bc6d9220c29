#include "xml/xml_iterator.h"

#include "common/zvx_system.h"

namespace zavex::xml {

XmlTag* Iterator::operator->() const
{
    if (atBegin)
        throw Exception("XmlParser::Iterator::operator->; Can't access before first element, "
                        "try operator++ first!");
    if (atEnd)
        throw Exception("XmlParser::Iterator::operator->; Can't access after last element, "
                        "no Tags matching searchCriteria?");
    return &writableChild().getTag();
}

Iterator Iterator::addChild(const XmlTag& tag)
{
    Iterator added = getContext()->addChild(tag, currentChild + 1);
    atBegin = false;
    atEnd = false;
    ++currentChild;
    return added;
}

Iterator Iterator::createIterator(std::string_view criteria) const
{
    return writableChild().createIterator(criteria);
}

XmlNode* Iterator::getContext() const
{
    // Only ever built from a writable node; the base keeps the pointer for both.
    return const_cast<XmlNode*>(context);
}

XmlNode& Iterator::writableChild() const
{
    return const_cast<XmlNode&>(child());
}

} // namespace zavex::xml
