#include "xml/xml_parser.h"

#include "common/zvx_system.h"
#include "xml/xml_bufferreader.h"

#include <ostream>
#include <utility>
#include <vector>

namespace zavex::xml {

namespace {

constexpr std::string_view DECLARATION = "xml"; // the name in <?xml ...?>

/**
 * Writes a tree line by line, walking it with its own stack: it may be as deep as memory allows.
 *
 * Collects the text; given a stream, passes it on and flushes after every tag.
 */
class TreeWriter {
public:
    /** @param out  Null to keep the text for `text`. */
    TreeWriter(std::ostream* out, const std::string& indent) : mStream(out), mIndent(indent) {}

    void writeDocument(const XmlTag& declaration, const XmlNode& root);

    /** What was not passed on to a stream. */
    std::string& text() { return mText; }

private:
    /** An element whose start tag is written and whose content is under way. */
    struct OpenElement {
        const XmlNode* node = nullptr;
        int written = 0; // children
    };

    void writeNextChild();
    void writeTag(const XmlTag& tag, bool closeEmpty);
    void open(const XmlNode& node);
    void close();
    void passOn();

    std::ostream* mStream; // null when the text is kept
    const std::string& mIndent;
    std::string mText;
    std::string mMargin; // indentation of the innermost open element's children
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
    passOn();
}

void TreeWriter::writeNextChild()
{
    OpenElement& parent = mOpen.back();
    const XmlNode& child = *parent.node->getChildren(parent.written++);
    mText.append(mMargin);
    writeTag(child.getTag(), true);
    if (!child.getTag().getClosed())
        open(child);
}

void TreeWriter::writeTag(const XmlTag& tag, bool closeEmpty)
{
    tag.appendTo(mText, closeEmpty);
    passOn();
    if (mStream != nullptr)
        mStream->flush();
}

void TreeWriter::open(const XmlNode& node)
{
    mOpen.push_back({&node});
    mMargin.append(mIndent);
}

void TreeWriter::close()
{
    mMargin.resize(mMargin.size() - mIndent.size());
    mText.append(mMargin).append("</").append(mOpen.back().node->getTag().getName()).append(">\n");
    mOpen.pop_back();
}

void TreeWriter::passOn()
{
    if (mStream == nullptr)
        return;
    mStream->write(mText.data(), static_cast<std::streamsize>(mText.size()));
    mText.clear();
}

/** Whether `tag`, just read, is the end tag of `element`. */
bool ends(const XmlTag& tag, const XmlTag& element)
{
    return tag.getClosed() && tag.getArg().empty() && tag.getName() == element.getName();
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
    for (tag.parse(reader); tag.getType() != XmlTag::NORMAL; tag.parse(reader)) {
        if (tag.getType() == XmlTag::SPECIAL_QUESTION && tag.getName() == DECLARATION)
            mergeDeclaration(tag);
        else
            mHasContentOutside = true;
    }
    if (tag.getClosed())
        throw Exception("Root tag is closed!");

    m_root.setTag(tag);
    parseRecurse(reader, createIterator(""));
    reader.skipWhitespace();
    mHasContentOutside |= !reader.isEof();
}

void XmlParser::mergeDeclaration(const XmlTag& declaration)
{
    if (m_metaTag.getName().empty())
        m_metaTag.setTag(declaration);
    for (const XmlTag::Argument& each : declaration.getArg())
        m_metaTag.setValue(each.name, each.value);
}

/** Keeps the elements under way on its own stack: documents may be as deep as memory allows. */
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
        if (!tag.getClosed())
            open.push_back(std::move(child));
    }
}

void XmlParser::write(std::ostream& out, const std::string& indent) const
{
    TreeWriter(&out, indent).writeDocument(m_metaTag, m_root);
}

void XmlParser::write(std::string& out, const std::string& indent) const
{
    TreeWriter writer(nullptr, indent);
    writer.writeDocument(m_metaTag, m_root);
    out = std::move(writer.text());
}

} // namespace zavex::xml
