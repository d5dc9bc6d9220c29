#include "xml/xml_tag.h"

#include "common/zvx_system.h"
#include "xml/xml_bufferreader.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <climits>
#include <cstdlib>
#include <locale.h>
#include <ostream>
#include <utility>

namespace zavex::xml {

namespace {

constexpr std::string_view CONTENT = "content";   // holds the characters of comments and text
constexpr std::string_view COMMENT_BEGIN = "!--"; // behind the '<'
constexpr std::string_view COMMENT_END = "-->";
constexpr std::string_view QUESTION_END = "?>";
constexpr int DOUBLE_DIGITS = 6; // significant digits of a stored number

const std::string emptyString; // NOLINT(readability-identifier-naming): a fixed name

/** Never freed: numbers may be read until the last static object is gone. */
locale_t cLocale()
{
    static const locale_t locale = newlocale(LC_ALL_MASK, "C", nullptr);
    return locale;
}

void skip(BufferReader& reader, std::string_view bytes)
{
    for (std::size_t count = 0; count < bytes.size(); ++count)
        reader.skipChar();
}

[[noreturn]] void refuse(BufferReader& reader)
{
    reader.skipChar();
    throw Exception("'=' expected!");
}

/** Reads a value and both its quotes; the reader stands on the opening one. */
std::string readQuoted(BufferReader& reader)
{
    const char quote = reader.readChar();
    std::string value;
    reader.readLine(value, quote);
    if (reader.peekChar() != quote)
        throw Exception("You must close the value using %c", quote);
    reader.skipChar();
    return value;
}

} // namespace

void XmlTag::clear()
{
    tagType = NORMAL;
    closed = true;
    name.clear();
    arg.clear();
}

void XmlTag::setValue(std::string_view attribute, std::string_view value)
{
    storeValue(attribute, std::string{value});
}

void XmlTag::setValue(std::string_view attribute, int value)
{
    setValue(attribute, std::to_string(value));
}

void XmlTag::setValue(std::string_view attribute, double value)
{
    std::array<char, 32> digits{};
    const auto written = std::to_chars(digits.data(), digits.data() + digits.size(), value,
                                       std::chars_format::general, DOUBLE_DIGITS);
    setValue(attribute, std::string_view{digits.data(), written.ptr});
}

void XmlTag::parse(BufferReader& reader)
{
    clear();
    reader.rememberPosition();
    reader.skipWhitespace();
    if (reader.peekChar() != '<')
        return parseText(reader);

    reader.skipChar();
    const char kind = reader.peekChar();
    if (kind == '!' && reader.peekChar(1) == '-' && reader.peekChar(2) == '-')
        return parseComment(reader);
    if (kind == '!')
        return parseSpecialExclaim(reader);
    if (kind == '?')
        return parseSpecialQuestion(reader);
    parseNormal(reader);
}

void XmlTag::parseText(BufferReader& reader)
{
    tagType = TEXT;
    name = "!!!text";
    std::string content;
    reader.readText(content, '<');
    storeValue(CONTENT, std::move(content));
}

void XmlTag::parseNormal(BufferReader& reader)
{
    closed = false;
    reader.skipWhitespace();
    if (reader.peekChar() == '/') {
        closed = true;
        reader.skipChar();
        reader.skipWhitespace();
    }
    name = reader.readWord(BufferReader::WORD | BufferReader::COLON);

    while (true) {
        reader.skipWhitespace();
        const char next = reader.peekChar();
        if (next == '/') {
            closed = true;
            reader.skipChar();
        } else if (next == '>') {
            reader.skipChar();
            return;
        } else {
            parseAttribute(reader, true);
        }
    }
}

void XmlTag::parseComment(BufferReader& reader)
{
    tagType = COMMENT;
    skip(reader, COMMENT_BEGIN);
    name = "COMMENT";
    const std::string_view content = reader.readVerbatim(COMMENT_END);
    reader.skipChar();
    if (content.empty() || content.back() == '-')
        throw Exception("Xml: Ill formatted comment!");
    skip(reader, COMMENT_END.substr(1));
    setValue(CONTENT, content);
}

void XmlTag::parseSpecialQuestion(BufferReader& reader)
{
    tagType = SPECIAL_QUESTION;
    reader.skipChar();
    name = reader.readWord(BufferReader::WORD | BufferReader::CLOSING_ANGLE);

    while (true) {
        reader.skipWhitespace();
        const char next = reader.peekChar();
        if (next == '>')
            throw Exception("Xml: Ill formed <?xml?> tag, forgot to close it using '?>'?");
        if (next != '?') {
            parseAttribute(reader, true);
            continue;
        }
        if (reader.peekChar(1) != '>')
            throw Exception("Xml: Ill formed <?xml?> tag");
        return skip(reader, QUESTION_END);
    }
}

void XmlTag::parseSpecialExclaim(BufferReader& reader)
{
    tagType = SPECIAL_EXCLAIM;
    reader.skipChar();
    name = "SPECIAL_EXCLAIM";

    reader.skipWhitespace();
    while (reader.peekChar() != '>') {
        parseAttribute(reader, false);
        reader.skipWhitespace();
    }
    reader.skipChar();
}

void XmlTag::parseAttribute(BufferReader& reader, bool requiresEquals)
{
    const std::string_view attribute = reader.readWord();
    reader.skipWhitespace();
    if (requiresEquals) {
        if (reader.peekChar() != '=')
            refuse(reader);
        reader.skipChar();
        reader.skipWhitespace();
    }

    const char first = reader.peekChar();
    if (first == '"' || first == '\'')
        return storeValue(attribute, readQuoted(reader));

    const std::string_view value = reader.readWord();
    // Only a declaration gets here without having consumed anything; it would stay here forever.
    if (!requiresEquals && attribute.empty() && value.empty())
        refuse(reader);
    setValue(attribute, value);
}

void XmlTag::storeValue(std::string_view attribute, std::string&& value)
{
    const auto found = std::ranges::find(arg, attribute, &Argument::name);
    if (found != arg.end())
        found->value = std::move(value);
    else
        arg.push_back({std::string{attribute}, std::move(value)});
}

void XmlTag::write(std::ostream& out, bool closeEmpty) const
{
    std::string line;
    appendTo(line, closeEmpty);
    out.write(line.data(), static_cast<std::streamsize>(line.size()));
    out.flush();
}

void XmlTag::appendTo(std::string& out, bool closeEmpty) const
{
    switch (tagType) {
        case NORMAL:
            out.append(1, '<').append(name);
            appendArguments(out);
            out.append(closed && closeEmpty ? "/>" : ">");
            break;
        case COMMENT: out.append("<!--").append(getValue(CONTENT)).append(COMMENT_END); break;
        case SPECIAL_QUESTION:
            out.append("<?").append(name);
            appendArguments(out);
            out.append("?>");
            break;
        case SPECIAL_EXCLAIM: appendDeclaration(out); break;
        case TEXT: out.append(1, '\'').append(getValue(CONTENT)).append(1, '\''); break;
        default: throw Exception("XmlTag::write; Unknown tagtype!");
    }
    out.push_back('\n');
}

void XmlTag::appendArguments(std::string& out) const
{
    for (const Argument& each : arg)
        out.append(1, ' ').append(each.name).append("=\"").append(each.value).append(1, '"');
}

void XmlTag::appendDeclaration(std::string& out) const
{
    out.append("<!");
    for (const Argument& each : arg) {
        if (&each != &arg.front())
            out.push_back(' ');
        out.append(each.name).append(1, ' ').append(each.value);
    }
    out.push_back('>');
}

const std::string& XmlTag::getValue(std::string_view attribute) const
{
    const auto found = std::ranges::find(arg, attribute, &Argument::name);
    return found != arg.end() ? found->value : emptyString;
}

bool XmlTag::hasValue(std::string_view attribute) const
{
    return std::ranges::find(arg, attribute, &Argument::name) != arg.end();
}

int XmlTag::getValueInt(std::string_view attribute) const
{
    const long value = strtol_l(getValue(attribute).c_str(), nullptr, 0, cLocale());
    return static_cast<int>(std::clamp<long>(value, INT_MIN, INT_MAX));
}

float XmlTag::getValueFloat(std::string_view attribute) const
{
    return static_cast<float>(getValueDouble(attribute));
}

double XmlTag::getValueDouble(std::string_view attribute) const
{
    return strtod_l(getValue(attribute).c_str(), nullptr, cLocale());
}

std::ostream& operator<<(std::ostream& out, const XmlTag& tag)
{
    tag.write(out, true);
    return out;
}

} // namespace zavex::xml
