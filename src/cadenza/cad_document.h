#pragma once

#include <string>
#include <string_view>

namespace zavex::am {
class SaveSet;
}

namespace zavex::xml {
class XmlParser;
}

namespace zavex::cadenza {

/**
 * A document in the show's folder that is read when a run starts and written when it is saved.
 *
 * Nothing of the author's is lost by it: what could not be read is not written; what was changed by
 * somebody else meanwhile stays, and ours goes beside it; what saving would drop is kept in a copy.
 */
class DocumentFile {
public:
    enum class Links {
        INSIDE,   // followed inside the working directory only
        ANYWHERE, // for a file that is not to be saved
    };

    /** @param path  Relative to the working directory. Forgets another file that was read. */
    void setPath(const std::string& path);

    /**
     * Reads the file into an empty document.
     *
     * Throws `Exception` with the file's name when the file leads outside, cannot be read or is
     * malformed.
     *
     * @return False when there is no such file.
     */
    bool read(xml::XmlParser& document, Links links = Links::INSIDE);

    /** Whether there was no such file when it was read. */
    bool wasMissing() const { return mKnown == Known::MISSING; }

    /** Takes the file, if there is one by then, for one that may be replaced. */
    void forget() { mKnown = Known::NOTHING; }

    /**
     * Says that the document to be saved does not hold all that was read: the file as it was read
     * is put beside it before the first save, as "PATH.bak".
     */
    void keepCopy() { mKeepsCopy = true; }

    /**
     * Adds the document, tab-indented, to a save, unless the file holds just that.
     *
     * A file that was changed, or made, since it was read stays as it is; the document then becomes
     * "PATH.mine", which is logged. A name that other bytes have already gets a number:
     * "PATH.bak.2". What cannot be saved is refused in `set`, with the reason. A file that `read`
     * was never called for is replaced.
     */
    void save(const xml::XmlParser& document, am::SaveSet& set);

private:
    enum class Known {
        NOTHING,    // never read
        MISSING,    // there was no file
        BYTES,      // the file held `mRead`
        UNREADABLE, // the file may hold anything
    };

    bool isOurs(std::string_view bytes) const;
    void replace(const std::string& text, am::SaveSet& set);

    std::string mPath;
    std::string mRead;    // the file's bytes
    std::string mWritten; // those of the last save, which may have failed; empty before
    Known mKnown = Known::NOTHING;
    bool mKeepsCopy = false; // to be made before the next save
};

/** Whether `kept` says all that `original` says, in whatever order, numbers to six digits. */
bool saysAll(const xml::XmlParser& kept, const xml::XmlParser& original);

/**
 * Puts a save in place. Every file that failed is said in the log and in one line on standard
 * error.
 *
 * @return Whether all were saved.
 */
bool commitSave(am::SaveSet& set);

} // namespace zavex::cadenza
