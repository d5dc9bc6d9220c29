"""package.py FOLDER: puts the show in demo/ of the working directory into a new folder; what that holds: ./package."""

import os
import sys
import tempfile
import zipfile

import process
import show

ARCHIVE = "demo.zip"
EARLIEST = (1980, 1, 1, 0, 0, 0)  # that an archive can name


def is_left_out(name):
    """Settings, which are no part of the archive, the gallery, and what editors and version control leave behind."""
    base = os.path.basename(name)
    is_settings = base.startswith("setup") and base.endswith(".xml")
    return base.startswith(".") or base.endswith("~") or (base == name and (is_settings or base.startswith("gallery.")))


def write_archive(files, path):
    """The same files give the same bytes: no times, no permissions, and no compressor whose version counts."""
    with zipfile.ZipFile(path, "w", zipfile.ZIP_STORED) as archive:
        for name, source in files:
            entry = zipfile.ZipInfo(name, EARLIEST)
            entry.external_attr = 0o100644 << 16
            with open(source, "rb") as file, archive.open(entry, "w", force_zip64=False) as target:
                while part := file.read(1 << 20):
                    target.write(part)


def write_settings(path):
    files = dict(show.files("demo", lambda name: name != "setup.xml"))
    if "setup.xml" not in files:
        raise show.ShowError("there is no demo/setup.xml")
    setup = show.Setup(files["setup.xml"])
    with open(path, "wb") as file:
        file.write(setup.edited(first=b'\n\t<archive path="%s"/>' % ARCHIVE.encode()))


def fill(folder):
    files = show.files("demo", is_left_out)
    write_archive(files, os.path.join(folder, ARCHIVE))
    # Scripts are read and saved beside the settings, never in an archive.
    show.copy([each for each in files if each[0].startswith("script/")], folder)
    write_settings(os.path.join(folder, "setup.xml"))


def make(folder):
    if os.path.lexists(folder):
        raise show.ShowError("%s is there already; scripts that were edited in it would be lost" % show.one_line(folder))
    demo = os.path.realpath("demo")
    if os.path.commonpath([demo, os.path.realpath(folder)]) == demo:
        raise show.ShowError("%s lies in the show itself" % show.one_line(folder))
    missing = []
    above = os.path.dirname(folder)
    while not os.path.isdir(above):
        missing.append(above)
        above = os.path.dirname(above)
    try:
        for each in reversed(missing):
            os.mkdir(each)
        # Beside the folder, so that it appears whole.
        with tempfile.TemporaryDirectory(prefix=".package.", dir=os.path.dirname(folder)) as scratch:
            filled = os.path.join(scratch, "filled")
            os.mkdir(filled)
            fill(filled)
            os.rename(filled, folder)
    except BaseException:
        for each in missing:
            if os.path.isdir(each):
                os.rmdir(each)
        raise


def main():
    process.exit_on_signals()
    os.umask(0o022)
    folder = os.path.abspath(sys.argv[1])
    try:
        make(folder)
    except (OSError, show.ShowError) as error:
        print("package: " + show.one_line(str(error)), file=sys.stderr)
        return 1
    except UnicodeEncodeError as error:
        print("package: %s: names must be UTF-8" % show.one_line(str(error.object)), file=sys.stderr)
        return 1
    print("%s: play it there with cadenza" % folder)
    return 0


if __name__ == "__main__":
    sys.exit(main())
