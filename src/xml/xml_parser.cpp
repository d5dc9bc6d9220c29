#include "xml/xml_parser.h"

#include "common/zvx_system.h"
#include "xml/xml_bufferreader.h"

#include <algorithm>
#include <iterator>
#include <ostream>
#include <utility>
#include <vector>

namespace zavex::xml {

namespace {

constexpr std::string_view DECLARATION = "xml"; // the name in <?xml ...?>

/** Whether `tag`, just read, is the end tag of `element`. */
bool ends(const XmlTag& tag, const XmlTag& element)
{
    return tag.getClosed() && tag.getArg().empty() && tag.getName() == element.getName();
}

/** Throws when `open` elements, which lie inside one another, are too many. */
void requireDepth(std::size_t open)
{
    if (open > XmlParser::DEEPEST)
        throw Exception("More than %d elements lie inside one another", XmlParser::DEEPEST);
}

/** Writes a tree line by line into a text, walking it with its own stack. */
class TreeWriter {
public:
    explicit TreeWriter(const std::string& indent) : mIndent(indent) {}

    void writeDocument(const XmlTag& declaration, const XmlNode& root);

    std::string& text() { return mText; }

    /** Where in the text each start tag, declaration, comment and run of text ends. */
    const std::vector<std::size_t>& tagEnds() const { return mTagEnds; }

private:
    /** An element whose start tag is written and whose content is under way. */
    struct OpenElement {
        const XmlNode* node = nullptr;
        int written = 0; // children
    };

    void writeNextChild();
    void writeTag(const XmlTag& tag, bool closeEmpty);
    void writeMargin();
    void open(const XmlNode& node);
    void close();

    const std::string& mIndent;
    std::string mText;
    std::string mMargin;          // indentation of the innermost open element's children
    std::size_t mIndentation = 0; // bytes of all margins written
    std::vector<std::size_t> mTagEnds;
    std::vector<OpenElement> mOpen;
};

void TreeWriter::writeDocument(const XmlTag& declaration, const XmlNode& root)
{
    if (declaration.getName() == DECLARATION) {
        writeTag(declaration, true);
        mText.push_back('\n');
    }
    writeTag(root.getTag(), false);
    open(root);
    while (!mOpen.empty()) {
        const OpenElement& innermost = mOpen.back();
        innermost.written == innermost.node->getNumChildren() ? close() : writeNextChild();
    }
}

void TreeWriter::writeNextChild()
{
    OpenElement& parent = mOpen.back();
    const XmlNode& child = *parent.node->getChildren(parent.written++);
    const XmlTag& tag = child.getTag();
    const bool wouldEndParent = ends(tag, parent.node->getTag());
    if (wouldEndParent && tag.getType() != XmlTag::NORMAL)
        throw Exception("XmlParser::write; A declaration named as its parent '%s' would end it",
                        tag.getName().c_str());
    writeMargin();
    writeTag(tag, !wouldEndParent);
    if (!tag.getClosed() || wouldEndParent)
        open(child);
}

void TreeWriter::writeTag(const XmlTag& tag, bool closeEmpty)
{
    tag.appendTo(mText, closeEmpty);
    mTagEnds.push_back(mText.size());
}

void TreeWriter::writeMargin()
{
    mIndentation += mMargin.size();
    if (mIndentation > XmlParser::MOST_INDENTATION)
        throw Exception("XmlParser::write; The indentation of elements inside one another takes "
                        "more than %zu bytes",
                        XmlParser::MOST_INDENTATION);
    mText.append(mMargin);
}

void TreeWriter::open(const XmlNode& node)
{
    mOpen.push_back({&node});
    requireDepth(mOpen.size());
    mMargin.append(mIndent);
}

void TreeWriter::close()
{
    mMargin.resize(mMargin.size() - mIndent.size());
    writeMargin();
    mText.append("</").append(mOpen.back().node->getTag().getName()).append(">\n");
    mOpen.pop_back();
}

} // namespace

void XmlParser::parse(const char* data, int length)
{
    ZVX_REQUIRE(length >= 0, "length>=0");
    parseBuffer(data, static_cast<std::size_t>(length));
}

void XmlParser::parse(const std::string& text)
{
    parseBuffer(text.data(), text.size());
}

void XmlParser::parse(std::string_view bytes, const std::string& fileName)
{
    try {
        parseBuffer(bytes.data(), bytes.size());
    } catch (const Exception& exception) {
        throw Exception("%s: %s", fileName.c_str(), exception.what());
    }
}

void XmlParser::parseBuffer(const char* data, std::size_t length)
{
    BufferReader reader(data, length);
    try {
        parse(reader);
    } catch (const Exception& exception) {
        throw Exception("(error at line %d, col %d); %s (when reading tag at %d:%d)",
                        reader.getLine(), reader.getChar(), exception.what(),
                        reader.getLineMemory(), reader.getCharMemory());
    }
}

void XmlParser::parse(BufferReader& reader)
{
    if (!m_root.getTag().getName().empty())
        throw Exception("Parser has already parsed a xml-file, use clear() first!");

    m_metaTag.clear();
    mHasContentOutside = false;
    XmlTag tag;
    std::vector<XmlTag::Argument> laterDeclared;
    for (tag.parse(reader); tag.getType() != XmlTag::NORMAL; tag.parse(reader)) {
        if (tag.getType() != XmlTag::SPECIAL_QUESTION || tag.getName() != DECLARATION)
            mHasContentOutside = true;
        else if (m_metaTag.getName().empty())
            m_metaTag.setTag(tag);
        else
            std::ranges::copy(tag.getArg(), std::back_inserter(laterDeclared));
    }
    m_metaTag.setValues(laterDeclared);
    if (tag.getClosed())
        throw Exception("Root tag is closed!");

    m_root.setTag(tag);
    parseRecurse(reader, createIterator(""));
    reader.skipWhitespace();
    mHasContentOutside |= !reader.isEof();
}

/** Keeps the elements under way on its own stack. */
void XmlParser::parseRecurse(BufferReader& reader, const Iterator& element)
{
    std::vector<Iterator> open{element};
    XmlTag tag;
    while (!open.empty()) {
        tag.parse(reader);
        Iterator& innermost = open.back();
        if (ends(tag, innermost.getRoot())) {
            if (innermost.getContext()->getNumChildren() == 0)
                innermost.getRoot().setClosed(true);
            open.pop_back();
            continue;
        }
        Iterator child = innermost.addChild(tag);
        if (!tag.getClosed()) {
            open.push_back(std::move(child));
            requireDepth(open.size());
        }
    }
}

void XmlParser::write(std::ostream& out, const std::string& indent) const
{
    TreeWriter writer(indent);
    writer.writeDocument(m_metaTag, m_root);
    const std::string& text = writer.text();
    std::size_t begin = 0;
    for (const std::size_t end : writer.tagEnds()) {
        out.write(text.data() + begin, static_cast<std::streamsize>(end - begin)).flush();
        begin = end;
    }
    out.write(text.data() + begin, static_cast<std::streamsize>(text.size() - begin));
}

void XmlParser::write(std::string& out, const std::string& indent) const
{
    TreeWriter writer(indent);
    writer.writeDocument(m_metaTag, m_root);
    out = std::move(writer.text());
}

} // namespace zavex::xml
