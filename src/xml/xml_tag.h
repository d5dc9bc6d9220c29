#pragma once

#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

namespace zavex::xml {

class BufferReader;

/**
 * One tag of a document: an element's start or end tag, a comment, a declaration or a run of text.
 *
 * A plain value. Works on bytes: nothing is escaped or unescaped, in either direction. Comments and
 * text keep their characters in one attribute named "content". Numbers are read and written as in
 * the C locale, whatever the user's locale is.
 *
 * A tag may hold what no document can, such as a value with both kinds of quotes: `setValue` does
 * not know yet what kind of tag the value is for, so writing refuses it. What is written is read
 * back the same, but for text, which gains the apostrophes around it once.
 */
class XmlTag {
public:
    enum : int {
        NORMAL = 0,           // an element
        COMMENT = 1,          // named "COMMENT"
        SPECIAL_QUESTION = 2, // a declaration <?name ...?>
        SPECIAL_EXCLAIM = 3,  // a declaration <!...>, named "SPECIAL_EXCLAIM"
        TEXT = 4,             // character data, named "!!!text"
    };

    /** One attribute; the value holds the raw characters between the quotes. */
    struct Argument {
        std::string name;
        std::string value;
    };

    /** A closed element without name and attributes. */
    XmlTag() = default;

    /** A closed element without attributes. */
    explicit XmlTag(std::string_view tagName) : name(tagName) {}

    void setTagType(int type) { tagType = type; }
    void setName(std::string_view newName) { name = newName; }

    /** @param isClosed  For an element: true when it has no content. */
    void setClosed(bool isClosed) { closed = isClosed; }

    /** Makes this a copy of `other`: type, closed flag, name and attributes. */
    void setTag(const XmlTag& other) { *this = other; }

    /** Back to a default-constructed tag. Keeps the memory of the attribute list for reuse. */
    void clear();

    /** Replaces the value of the attribute `attribute`, or appends it behind the others. */
    void setValue(std::string_view attribute, std::string_view value);

    /** Stores plain decimal digits, with a leading '-' when negative. */
    void setValue(std::string_view attribute, int value);

    /** Stores six significant digits as `printf("%.6g")` does: 0.1, 1.23457e+06, inf. */
    void setValue(std::string_view attribute, double value);

    /** As `setValue` for each of `values` in turn, but in time for any number of them. */
    void setValues(const std::vector<Argument>& values);

    /**
     * Replaces this tag by the next one in the buffer; whitespace before it is skipped.
     *
     * Throws `Exception` with "EOF" when the buffer ends before the tag does, and with what was
     * expected when the tag is malformed; the tag then holds what was read so far, attributes
     * that repeat each other included. A `<!`
     * declaration with a byte that starts neither a word nor a quoted value (such as '[') throws
     * "'=' expected!".
     */
    void parse(BufferReader& reader);

    /**
     * Writes the tag as one line, then flushes the stream. Values stand between double quotes,
     * those that hold one between apostrophes; a `<!` declaration's only where they need quotes.
     * Text stands between apostrophes, unless it begins and ends with one already; whitespace
     * behind the last one is then left out.
     *
     * @param closeEmpty  Whether a closed element ends in "/>"; otherwise it ends in ">".
     * Throws `Exception`, having written nothing, when the type is none of the enumeration and when
     * the tag would not be read back as it is: a name that is none, a value with both kinds of
     * quotes, a tab or the end of a line, text with '<', a tab or a carriage return, a comment that
     * is empty, ends with '-' or holds its end mark.
     */
    void write(std::ostream& out, bool closeEmpty) const;

    /** Appends what `write` writes, newline included. Throws as `write` does, leaving a part. */
    void appendTo(std::string& out, bool closeEmpty) const;

    /** One of the enumeration, unless something else was set. */
    int getType() const { return tagType; }
    const std::string& getName() const { return name; }
    bool getClosed() const { return closed; }

    /** The attributes in the order of first insertion, names unique. */
    const std::vector<Argument>& getArg() const { return arg; }
    std::vector<Argument>& getArg() { return arg; }

    /**
     * The value of the first attribute with exactly this name; the empty string when there is none.
     * The reference is valid until the tag is changed.
     */
    const std::string& getValue(std::string_view attribute) const;

    bool hasValue(std::string_view attribute) const;

    /**
     * The value read as `strtol` does with automatic base: decimal, "0x" hexadecimal, leading-0
     * octal; characters behind the number are ignored. 0 when missing or not a number. A number
     * outside the range of int gives the end of the range that it passed.
     */
    int getValueInt(std::string_view attribute) const;

    /** `getValueDouble`, rounded to float. */
    float getValueFloat(std::string_view attribute) const;

    /**
     * The value read as `strtod` does, hexadecimal, "inf" and "nan" included; characters behind
     * the number are ignored. 0 when missing or not a number.
     */
    double getValueDouble(std::string_view attribute) const;

private:
    void readTag(BufferReader& reader);
    void parseText(BufferReader& reader);
    void parseNormal(BufferReader& reader);
    void parseComment(BufferReader& reader);
    void parseSpecialQuestion(BufferReader& reader);
    void parseSpecialExclaim(BufferReader& reader);
    void parseAttribute(BufferReader& reader, bool requiresEquals);
    void storeValue(std::string_view attribute, std::string&& value);
    void uniteRepeated();

    void appendElement(std::string& out, bool closeEmpty) const;
    void appendComment(std::string& out) const;
    void appendText(std::string& out) const;
    void appendArguments(std::string& out) const;
    void appendQuoted(std::string& out, const Argument& argument) const;
    void requireName(const std::string& text, int classes) const;
    [[noreturn]] void refuseToWrite(const char* reason, const std::string& text) const;
    void appendDeclaration(std::string& out) const;

    std::string name;
    std::vector<Argument> arg;
    int tagType = NORMAL;
    bool closed = true;
};

/** Writes the tag as `write` does, an empty element as "<name/>". */
std::ostream& operator<<(std::ostream& out, const XmlTag& tag);

} // namespace zavex::xml
