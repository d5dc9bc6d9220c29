"""A show's folder and settings, as the program reads them. Nothing read here ever becomes part of a command or program."""

import ctypes
import dataclasses
import os
import re
import shutil
import stat

_SPACE = re.compile(rb"[ \t\r\n]*")
_NAME = re.compile(rb"[ \t\r\n]*(/?)[ \t\r\n]*([A-Za-z0-9:]*)")
_VALUE = rb"""(?:"([^"\n]*)"|'([^'\n]*)'|([A-Za-z0-9]*))"""
_ATTRIBUTE = re.compile(rb"([A-Za-z0-9]*)[ \t\r\n]*=[ \t\r\n]*" + _VALUE)
_WORD_AND_VALUE = re.compile(rb"([A-Za-z0-9]*)[ \t\r\n]*" + _VALUE)

_strtod = ctypes.CDLL(None).strtod  # reads numbers as the program does: 0x10, 12abc, nothing
_strtod.restype = ctypes.c_double
_strtod.argtypes = [ctypes.c_char_p, ctypes.c_void_p]


class ShowError(Exception):
    """Why nothing can be made of the show, in one line."""


@dataclasses.dataclass
class Element:
    """A start or end tag: bytes from `start` up to `end` of the document."""

    name: bytes
    closed: bool
    attributes: dict
    start: int
    end: int

    def text(self, attribute):
        """The value; empty where there is none."""
        return self.attributes.get(attribute, b"")

    def number(self, attribute):
        """The value as a number; 0 where there is none."""
        return _strtod(self.text(attribute), None)


class Setup:
    """A settings file. Other bytes than those asked for stay as they are."""

    def __init__(self, path):
        """Throws ShowError unless the program could read the file."""
        self._name = os.path.basename(path)
        with open(path, "rb") as file:
            self._text = file.read()
        self._sections = []  # the root's elements, each with where its content and end tag stop
        self._read()

    def last(self, name):
        """The section that counts, of those with this name; None without one."""
        found = [element for element, _ in self._sections if element.name == name]
        return found[-1] if found else None

    def edited(self, first=b"", last=b"", without=b""):
        """The document with sections added at both ends of the root, and none of the name `without`."""
        pieces = [self._text[: self._root.end], first]
        position = self._root.end
        for element, end in self._sections:
            if element.name == without:
                pieces.append(self._text[position : element.start])
                position = end
        return b"".join(pieces + [self._text[position : self._end.start], last, self._text[self._end.start :]])

    def _read(self):
        open_elements = []
        for element in self._elements():
            if not open_elements:
                self._root = element
                if element.name != b"demo" or element.closed:
                    raise self._error(element.start, "expected the root element <demo>")
                open_elements.append(element)
            elif element.closed and not element.attributes and element.name == open_elements[-1].name:
                done = open_elements.pop()
                if not open_elements:
                    self._end = element
                    return
                if len(open_elements) == 1:
                    self._sections.append((done, element.end))
            elif not element.closed:
                open_elements.append(element)
            elif len(open_elements) == 1:
                self._sections.append((element, element.end))

    def _elements(self):
        position = 0
        while True:
            start = _SPACE.match(self._text, position).end()
            if self._text.startswith(b"<!--", start):
                position = self._find(b"-->", start + 4) + 3
            elif self._text.startswith(b"<!", start):
                position = self._attributes(start + 2, b">", _WORD_AND_VALUE)[2]
            elif self._text.startswith(b"<?", start):
                name = re.compile(rb"[A-Za-z0-9>]*").match(self._text, start + 2)
                position = self._attributes(name.end(), b"?>", _ATTRIBUTE)[2]
            elif self._text.startswith(b"<", start):
                name = _NAME.match(self._text, start + 1)
                attributes, closed, position = self._attributes(name.end(), b">", _ATTRIBUTE)
                yield Element(name[2], closed or name[1] != b"", attributes, start, position)
            else:
                position = self._find(b"<", start)

    def _attributes(self, position, end, pattern):
        """Those up to `end`; whether a slash stood among them; where the next tag may begin."""
        found, closed = {}, False
        while True:
            position = _SPACE.match(self._text, position).end()
            if self._text.startswith(end, position):
                return found, closed, position + len(end)
            if self._text.startswith(b"/", position):
                closed = True
                position += 1
                continue
            attribute = pattern.match(self._text, position)
            if attribute is None or attribute.end() == position:
                raise self._error(position, "expected an attribute or '%s'" % end.decode())
            value = next(each for each in attribute.groups()[1:] if each is not None)
            found[attribute[1]] = value.replace(b"\r", b"").replace(b"\t", b"    ")
            position = attribute.end()

    def _find(self, part, position):
        found = self._text.find(part, position)
        if found < 0:
            raise self._error(len(self._text), "ends before its root element does")
        return found

    def _error(self, position, message):
        return ShowError("%s:%d: %s" % (self._name, self._text.count(b"\n", 0, position) + 1, message))


def files(folder, is_left_out=lambda name: False):
    """
    Name within the folder and real path of every file in it, in order. A link to a file of the folder
    stands for that file. Throws ShowError, with the name, for all other links, pipes, sockets and devices.

    is_left_out -- says of a name within the folder that neither it nor anything below it counts.
    """
    top = os.path.realpath(folder)
    waiting = [""]
    found = []
    while waiting:
        below = waiting.pop()
        for entry in os.scandir(os.path.join(top, below)):
            name = os.path.join(below, entry.name)
            if is_left_out(name):
                continue
            if entry.is_dir(follow_symlinks=False):
                waiting.append(name)
            else:
                found.append((name, _real_file(top, name)))
    return sorted(found)


def _real_file(top, name):
    path = os.path.realpath(os.path.join(top, name))
    if os.path.commonpath([top, path]) != top:
        raise ShowError("%s is a link to %s, which is outside of the show" % (one_line(name), one_line(path)))
    if not os.path.lexists(path):
        raise ShowError("%s is a link to %s, which is not there" % (one_line(name), one_line(path)))
    if not stat.S_ISREG(os.lstat(path).st_mode):
        raise ShowError("%s is not a file, nor a link to one" % one_line(name))
    return path


def copy(found, folder):
    """Puts what `files` found into a folder, which is made, as files of the user's own."""
    for name, path in found:
        target = os.path.join(folder, name)
        os.makedirs(os.path.dirname(target), exist_ok=True)
        shutil.copyfile(path, target)


def one_line(text):
    """A name for a message: without line ends and other characters that steer a terminal."""
    return "".join(each if each.isprintable() else "?" for each in text)
