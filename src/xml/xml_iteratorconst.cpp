#include "xml/xml_iteratorconst.h"

#include "common/zvx_system.h"

namespace zavex::xml {

bool IteratorConst::operator++()
{
    if (atEnd)
        throw Exception("IteratorConst::operator++; Called after last tag!");

    atBegin = false;
    const int count = context->getNumChildren();
    for (int next = currentChild + 1; next < count; ++next) {
        if (searchCriteria.empty() ||
            context->getChildren(next)->getTag().getName() == searchCriteria) {
            currentChild = next;
            return true;
        }
    }
    if (currentChild + 1 >= count)
        currentChild = count;
    atEnd = true;
    return false;
}

const XmlTag* IteratorConst::operator->() const
{
    if (atBegin)
        throw Exception("IteratorConst::operator->; Can't access before first element!");
    if (atEnd)
        throw Exception("IteratorConst::operator->; Can't access after last element!");
    return &child().getTag();
}

IteratorConst IteratorConst::createIterator(std::string_view criteria) const
{
    return child().createIterator(criteria);
}

const XmlNode& IteratorConst::child() const
{
    ZVX_REQUIRE(!atBegin && !atEnd, "iterator stands on a child");
    return *context->getChildren(currentChild);
}

std::ostream& operator<<(std::ostream& out, const IteratorConst& iterator)
{
    return out << *iterator.operator->();
}

} // namespace zavex::xml
