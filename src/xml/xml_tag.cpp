#include "xml/xml_tag.h"

#include "common/zvx_system.h"
#include "xml/xml_bufferreader.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <climits>
#include <cstdlib>
#include <locale.h>
#include <map>
#include <ostream>
#include <utility>

namespace zavex::xml {

namespace {

constexpr std::string_view CONTENT = "content";   // holds the characters of comments and text
constexpr std::string_view COMMENT_BEGIN = "!--"; // behind the '<'
constexpr std::string_view COMMENT_END = "-->";
constexpr std::string_view QUESTION_END = "?>";
constexpr int DOUBLE_DIGITS = 6; // significant digits of a stored number

/** Up to so many attributes, looking at each is the fastest way to find one. */
constexpr std::size_t FEW_ARGUMENTS = 32;

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

bool consistsOf(std::string_view text, int classes)
{
    return (BufferReader::classesIn(text) & ~classes) == 0;
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
    uniteRepeated();
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

void XmlTag::setValues(const std::vector<Argument>& values)
{
    for (const Argument& each : values)
        storeValue(each.name, std::string{each.value});
    uniteRepeated();
}

void XmlTag::parse(BufferReader& reader)
{
    clear();
    readTag(reader);
    uniteRepeated();
}

void XmlTag::readTag(BufferReader& reader)
{
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
    storeValue(CONTENT, std::string{content});
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
    storeValue(attribute, std::string{value});
}

/** Behind the first few attributes, one that repeats another waits for `uniteRepeated`. */
void XmlTag::storeValue(std::string_view attribute, std::string&& value)
{
    if (arg.size() < FEW_ARGUMENTS) {
        const auto found = std::ranges::find(arg, attribute, &Argument::name);
        if (found != arg.end()) {
            found->value = std::move(value);
            return;
        }
    }
    arg.push_back({std::string{attribute}, std::move(value)});
}

/** Gives attributes of one name the place of the first and the value of the last. */
void XmlTag::uniteRepeated()
{
    if (arg.size() <= FEW_ARGUMENTS)
        return;

    std::map<std::string_view, Argument*> firsts;
    std::vector<bool> isFirst;
    for (Argument& each : arg) {
        const auto [first, inserted] = firsts.try_emplace(each.name, &each);
        if (!inserted)
            first->second->value = std::move(each.value);
        isFirst.push_back(inserted);
    }
    if (firsts.size() == arg.size())
        return;

    std::vector<Argument> united;
    for (std::size_t index = 0; index < arg.size(); ++index)
        if (isFirst[index])
            united.push_back(std::move(arg[index]));
    arg = std::move(united);
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
        case NORMAL: appendElement(out, closeEmpty); break;
        case COMMENT: appendComment(out); break;
        case SPECIAL_QUESTION:
            requireName(name, BufferReader::WORD | BufferReader::CLOSING_ANGLE);
            out.append("<?").append(name);
            appendArguments(out);
            out.append("?>");
            break;
        case SPECIAL_EXCLAIM: appendDeclaration(out); break;
        case TEXT: appendText(out); break;
        default: throw Exception("XmlTag::write; Unknown tagtype!");
    }
    out.push_back('\n');
}

void XmlTag::appendElement(std::string& out, bool closeEmpty) const
{
    requireName(name, BufferReader::WORD | BufferReader::COLON);
    out.append(1, '<').append(name);
    const bool closes = closed && closeEmpty;
    if (name.empty() && !arg.empty() && !arg.front().name.empty()) {
        // The attribute's name would be read as the element's, if it were not for the slashes.
        if (!closes)
            refuseToWrite("an attribute of an open element without a name", arg.front().name);
        out.append("//");
    }
    appendArguments(out);
    out.append(closes ? "/>" : ">");
}

void XmlTag::appendComment(std::string& out) const
{
    const std::string& content = getValue(CONTENT);
    if (content.empty() || content.back() == '-' || content.find(COMMENT_END) != std::string::npos)
        refuseToWrite("a comment that is empty, ends with '-' or holds its end mark", content);
    out.append("<!--").append(content).append(COMMENT_END);
}

void XmlTag::appendText(std::string& out) const
{
    const std::string& content = getValue(CONTENT);
    if (content.find_first_of("<\t\r") != std::string::npos)
        refuseToWrite("text with '<', a tab or a carriage return", content);
    const std::string_view visible =
        std::string_view{content}.substr(0, content.find_last_not_of(" \n") + 1);
    // Read back, what was written has its apostrophes already; they must not grow in number.
    if (visible.size() >= 2 && visible.front() == '\'' && visible.back() == '\'')
        out.append(visible);
    else
        out.append(1, '\'').append(content).append(1, '\'');
}

void XmlTag::appendArguments(std::string& out) const
{
    for (const Argument& each : arg) {
        requireName(each.name, BufferReader::WORD);
        out.append(1, ' ').append(each.name).append(1, '=');
        appendQuoted(out, each);
    }
}

void XmlTag::appendQuoted(std::string& out, const Argument& argument) const
{
    const int classes = BufferReader::classesIn(argument.value);
    const bool holdsDoubleQuote = (classes & BufferReader::DOUBLE_QUOTE) != 0;
    if (holdsDoubleQuote && (classes & BufferReader::APOSTROPHE) != 0)
        refuseToWrite("a value with both kinds of quotes", argument.name + "=" + argument.value);
    if ((classes & BufferReader::CONTROL) != 0)
        refuseToWrite("a value with a tab or the end of a line",
                      argument.name + "=" + argument.value);
    const char quote = holdsDoubleQuote ? '\'' : '"';
    out.append(1, quote).append(argument.value).append(1, quote);
}

void XmlTag::requireName(const std::string& text, int classes) const
{
    if (!consistsOf(text, classes))
        refuseToWrite("a name with a byte that none may have", text);
}

void XmlTag::refuseToWrite(const char* reason, const std::string& text) const
{
    throw Exception("XmlTag::write; In '%s': %s could not be read back: %s", name.c_str(), reason,
                    text.c_str());
}

void XmlTag::appendDeclaration(std::string& out) const
{
    out.append("<!");
    for (const Argument& each : arg) {
        if (&each != &arg.front())
            out.push_back(' ');
        requireName(each.name, BufferReader::WORD);
        out.append(each.name).append(1, ' ');
        // Bare, a value is a word; an empty one would take the next name for its own.
        const bool standsBare = !each.name.empty() && consistsOf(each.value, BufferReader::WORD) &&
                                (!each.value.empty() || &each == &arg.back());
        if (standsBare)
            out.append(each.value);
        else
            appendQuoted(out, each);
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
