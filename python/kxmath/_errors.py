"""The exceptions of this package."""
from __future__ import annotations

import errno
import os
import sys
import warnings
from typing import NamedTuple

__all__ = ["ArgumentError", "Error", "FileError", "FileMissing", "NoResult", "Place", "ReadingWarning"]


class Place(NamedTuple):
    """Where in a file something is wrong, as far as it is known."""

    byte: int | None = None #: from 0
    record: int | None = None #: from 1
    line: int | None = None #: from 1
    column: int | None = None #: from 1


class Error(Exception):
    """Everything that this package raises of its own accord."""

    reason: str = "" #: the predicate of a sentence about the file or argument


class FileError(Error, OSError):
    """A file that cannot be read, or that does not hold what is needed; or an output that cannot be written.

    `kind` is "not found", "unreadable", "damaged", "unsuitable" or "unwritable".
    """

    path: str #: as the caller named it; also as `filename`
    place: Place
    kind: str
    key: str #: of settings; empty when it is about none

    def __init__(self, path: str, place: Place, reason: str, kind: str = "unsuitable", key: str = "",
                 sentence: str = "") -> None:
        super().__init__(_ERRNO.get(kind), reason, path or None)
        self.path, self.place, self.reason, self.kind, self.key = path, place, reason, kind, key
        self._sentence = sentence or f"'{path}' {reason}"

    def __str__(self) -> str:
        return self._sentence

    def __reduce__(self):
        return type(self), (self.path, self.place, self.reason, self.kind, self.key, self._sentence)


class FileMissing(FileError, FileNotFoundError):
    """There is no such file."""


class ArgumentError(Error, ValueError):
    """An argument is out of its range. `key` names it."""

    def __init__(self, sentence: str, reason: str = "", key: str = "") -> None:
        super().__init__(sentence)
        self.reason, self.key = reason or sentence, key

    def __reduce__(self):
        return type(self), (str(self), self.reason, self.key)


class NoResult(Error):
    """The data give no result; `reason` says why."""

    def __init__(self, sentence: str, reason: str = "") -> None:
        super().__init__(sentence)
        self.reason = reason or sentence

    def __reduce__(self):
        return type(self), (str(self), self.reason)


class ReadingWarning(UserWarning):
    """How a text was read, where that may not be what was meant: commas as decimal signs, remarks left out.

    Who says `decimal_sign` is not told. `kx.file_info(path).text` holds the same, and more.
    """


def warn_of_reading(path: str, note: str) -> None:
    """Warns at the line outside of this package."""
    frame, level = sys._getframe().f_back, 2
    while frame is not None and frame.f_globals.get("__name__", "").startswith("kxmath."):
        frame, level = frame.f_back, level + 1
    warnings.warn(f"'{path}' {note}", ReadingWarning, stacklevel=level)


_ERRNO = {"not found": errno.ENOENT, "unreadable": errno.EIO, "damaged": errno.EINVAL, "unsuitable": errno.EINVAL,
          "unwritable": errno.EIO}


def made(kind: str, path: str, key: str, reason: str, sentence: str, place: tuple) -> Error:
    """The exception for a failure of the library."""
    if kind == "bad argument":
        return ArgumentError(sentence, reason, key)
    if kind == "no result":
        return NoResult(sentence, reason)
    error = FileMissing if kind == "not found" else FileError
    return error(os.fspath(path), Place(*place), reason, kind, key, sentence)
