#pragma once

#include "vellum/probe.h"

#include "xml/xml_iteratorconst.h"
#include "xml/xml_parser.h"

#include <string>
#include <utility>

namespace zavex::vellum::test {

/** A root that answers with the styles of a document, as the workspace does. */
class StyledRoot final : public Root {
public:
    using Root::Root;

    xml::IteratorConst getStyle(const std::string& name) const override
    {
        return std::as_const(styles).createIterator(name);
    }

    xml::XmlParser styles;
};

} // namespace zavex::vellum::test
