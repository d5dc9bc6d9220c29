#pragma once

#include "am/am_file.h"

#include <string>

namespace zavex::am {

/** A place that files are read from by name, and perhaps written to. */
class ArchiveBase {
public:
    ArchiveBase() = default;
    ArchiveBase(const ArchiveBase&) = delete;
    ArchiveBase& operator=(const ArchiveBase&) = delete;
    virtual ~ArchiveBase() = default;

    /** A copy of the file's bytes; null when there is no such file or it cannot be read. */
    virtual File read(const std::string& name) = 0;

    /** Writes the file under its own name. False when that is not possible. */
    virtual bool write(File file) = 0;

    virtual void flush() {}

    /** The directory or file that this archive stands for, as messages name it. */
    virtual const std::string& getLocation() const = 0;
};

} // namespace zavex::am
