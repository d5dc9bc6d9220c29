#pragma once

#include "cadenza/cad_plugin.h"
#include "xml/xml_parser.h"

#include <string>

namespace zavex::test {

/** Loads a plugin from what its element in a script file holds. */
inline void loadBody(cadenza::PluginBase& plugin, const std::string& body)
{
    xml::XmlParser parser;
    parser.parse("<effect><plugin name=\"it\">" + body + "</plugin></effect>");
    xml::IteratorConst element = const_cast<const xml::XmlParser&>(parser).createIterator("plugin");
    ++element;
    plugin.load(element);
}

/** What a plugin writes into its element, without line breaks and indents. */
inline std::string savedBody(cadenza::PluginBase& plugin)
{
    xml::XmlParser parser;
    xml::Iterator root = parser.createIterator("");
    root.setRoot(xml::XmlTag("plugin"));
    plugin.save(root);

    std::string text;
    parser.write(text, "");
    std::erase(text, '\n');
    const std::size_t start = text.find('>') + 1;
    return text.substr(start, text.rfind('<') - start);
}

} // namespace zavex::test
