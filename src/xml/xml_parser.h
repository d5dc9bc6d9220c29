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
     * How many elements may be open inside one another. Nothing here recurses, but each level is
     * indented once more: a document of so many elements in one another fills 100 MB with tabs.
     */
    static constexpr int DEEPEST = 10'000;

    /** What indentation may take in a written document, in bytes: enough for any of real use. */
    static constexpr std::size_t MOST_INDENTATION = 128u << 20;

    /**
     * Reads a document of `length` bytes; what follows the root element's end tag is not read.
     *
     * Throws `Exception` naming the line and column (from 1) of the fault and of the end of the tag
     * before it; what was read until then stays until `clear`. Elements deeper than `DEEPEST` are
     * a fault. The buffer is not needed afterwards.
     */
    void parse(const char* data, int length);
    void parse(const std::string& text);

    /** The same, with the file's name before what is wrong in it. */
    void parse(std::string_view bytes, const std::string& fileName);

    /** Forgets the tree. The declaration stays until the next `parse`. */
    void clear() { m_root.clear(); }

    /**
     * Writes the declaration, if there is one, and the tree; each level is indented once more. What
     * was read is read back the same, see `XmlTag::write` for how: an empty element that bears its
     * parent's name gets an end tag, since its short form would end the parent.
     *
     * Throws `Exception`, having written nothing, when a tag cannot be written, a declaration
     * without attributes bears its parent's name, more than `DEEPEST` elements lie inside one
     * another or the indentation takes more than `MOST_INDENTATION`.
     */
    void write(std::ostream& out, const std::string& indent) const;

    /** Replaces `out` by the written document. Throws as above and leaves `out` as it was. */
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

    XmlNode m_root{nullptr}; // the document element itself
    XmlTag m_metaTag;        // the merged <?xml ...?> declarations; nameless when there was none
    bool mHasContentOutside = false;
};

} // namespace zavex::xml
