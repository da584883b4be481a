"""Exceptions: kinds of Python's own, with their parts, through pickles too."""
import pickle

import pytest

import kxmath as kx
from kxmath import _errors


def test_kinds():
    assert issubclass(kx.FileError, (OSError,)) and issubclass(kx.FileMissing, FileNotFoundError)
    assert issubclass(kx.ArgumentError, ValueError) and not issubclass(kx.NoResult, (ValueError, OSError))
    assert all(issubclass(e, kx.Error) for e in (kx.FileError, kx.FileMissing, kx.ArgumentError, kx.NoResult))


@pytest.mark.parametrize("kind, expected", [
    ("not found", kx.FileMissing), ("unreadable", kx.FileError), ("damaged", kx.FileError),
    ("unsuitable", kx.FileError), ("unwritable", kx.FileError), ("bad argument", kx.ArgumentError),
    ("no result", kx.NoResult)])
def test_failures_of_the_library(kind, expected):
    made = _errors.made(kind, "a/b.bin", "SENSOR1/SN", "is bad at byte 7", "file 'a/b.bin' is bad at byte 7",
                        (7, 2, None, None))
    for error in (made, pickle.loads(pickle.dumps(made))):
        assert type(error) is expected and str(error) == "file 'a/b.bin' is bad at byte 7"
        assert error.reason == "is bad at byte 7"
        if isinstance(error, kx.FileError):
            assert (error.path, error.filename, error.kind, error.key) == ("a/b.bin", "a/b.bin", kind, "SENSOR1/SN")
            assert error.place == kx.Place(byte=7, record=2)


def test_wrong_arguments_name_what_is_taken():
    profile = kx.Profile([[0, 1], [1, 2]])
    for call in (lambda: profile.trim(x=3), lambda: profile.trim(x=(1, 2, 3)), lambda: profile.trim(x=("a", 2)),
                 lambda: profile.moving_average(window=2.5), lambda: profile.remove_noise(3, 1, "x"),
                 lambda: profile.moving_average(window=2**40), lambda: kx.Line("a", 1), lambda: profile.below(3)):
        with pytest.raises(TypeError):
            call()
    for call, error in ((lambda: profile.integral(0, 5), IndexError), (lambda: profile.remove([2]), IndexError),
                        (lambda: profile.fit_polynomial(51), ValueError), (lambda: profile.resample(0), ValueError)):
        with pytest.raises(error):
            call()
