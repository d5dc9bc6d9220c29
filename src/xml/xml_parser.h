#pragma once

#include "xml/xml_iterator.h"
#include "xml/xml_iteratorconst.h"
#include "xml/xml_node.h"
#include "xml/xml_tag.h"

#include <cstddef>
#include <iosfwd>
#include <string>
#include <string_view>

namespace zavex::xml {

class BufferReader;

/**
 * One document: reads it from memory, owns its tree, writes it back as indented text.
 *
 * Not a conforming reader: no entities, CDATA, namespaces or encodings, and an end tag that fits no
 * open element is kept as an empty child. Comments and text become child nodes. Reads one document;
 * `clear` makes it ready for another.
 */
class XmlParser {
public:
    /**
     * Reads a document of `length` bytes; what follows the root element's end tag is not read.
     *
     * Throws `Exception` naming the line and column (from 1) of the fault and of the end of the tag
     * before it; what was read until then stays until `clear`. The buffer is not needed
     * afterwards.
     */
    void parse(const char* data, int length);
    void parse(const std::string& text);

    /** Forgets the tree. The declaration stays until the next `parse`. */
    void clear() { m_root.clear(); }

    /** Writes the declaration, if there is one, and the tree; each level is indented once more. */
    void write(std::ostream& out, const std::string& indent) const;

    /** Replaces `out` by the written document. */
    void write(std::string& out, const std::string& indent) const;

    /** An iterator over the root element's children; its `getRoot` is the root element's tag. */
    Iterator createIterator(std::string_view criteria) { return m_root.createIterator(criteria); }
    IteratorConst createIterator(std::string_view criteria) const
    {
        return m_root.createIterator(criteria);
    }

    /**
     * Whether the document last read held anything outside its root element that writing it leaves
     * out: text, comments or declarations before it, `<?xml?>` excepted, or anything but whitespace
     * behind it. After a `parse` that threw: what was found until then.
     */
    bool hasContentOutside() const { return mHasContentOutside; }

private:
    void parseBuffer(const char* data, std::size_t length);
    void parse(BufferReader& reader);
    void parseRecurse(BufferReader& reader, const Iterator& element);
    void mergeDeclaration(const XmlTag& declaration);

    XmlNode m_root{nullptr}; // the document element itself
    XmlTag m_metaTag;        // the merged <?xml ...?> declarations; nameless when there was none
    bool mHasContentOutside = false;
};

} // namespace zavex::xml
