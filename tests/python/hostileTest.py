"""Constructors over hostile arrays: what they take is what NumPy makes of it, and all else is refused in words.

KXMATH_FUZZ_SECONDS says how long; a failure names the seed.
"""
import os
import time

import numpy as np
import pytest

import kxmath as kx

TYPES = ["f2", "f4", "f8", "g", ">f4", ">f8", "i1", "i4", ">i8", "u1", "u8", "c8", "?", "O", "S3", "U2", "M8[s]", "m8[s]",
         [("x", "f4")], "V5"]


class Odd(np.ndarray):
    """A subclass that lies about itself."""

    @property
    def shape(self):
        return (2**62, 2)

    def __len__(self):
        return -1

    def __array_finalize__(self, other):
        pass


class Source:
    """Something that NumPy asks for an array, and that gives whatever it likes."""

    def __init__(self, given):
        self.given = given

    def __array__(self, *arguments, **keywords):
        if isinstance(self.given, Exception):
            raise self.given
        return self.given


def memory(random, kind):
    count = int(random.integers(0, 200))
    if kind in ("O", "U2"):
        return np.array([None, 1.5, "x", 2**80] * 50, kind)[:count]
    return np.frombuffer(random.bytes(count * np.dtype(kind).itemsize), kind)


def array_of(random):
    kind = TYPES[random.integers(len(TYPES))]
    flat = memory(random, kind)
    shape = tuple(int(n) for n in random.integers(0, 5, random.integers(0, 4))) + ((2,) if random.random() < 0.7 else ())
    need = int(np.prod(shape, dtype="i8"))
    array = np.resize(flat, shape) if need and flat.size else np.zeros(shape, kind)
    for _ in range(random.integers(0, 3)):
        choice = random.integers(5)
        if choice == 0 and array.ndim:
            array = array[:: int(random.choice([-2, -1, 2, 3]))]
        elif choice == 1:
            array = array.T
        elif choice == 2 and array.ndim == 2 and len(array) and type(array) is np.ndarray:
            array = np.broadcast_to(array[:1], (int(random.integers(1, 50)), array.shape[1]))
        elif choice == 3 and array.dtype.kind in "fiu":
            array = np.ma.masked_array(array, mask=random.random(array.shape) < 0.3)
        elif choice == 4 and array.ndim == 2 and array.dtype.kind in "fiu" and type(array) is np.ndarray:
            odd = np.zeros(array.nbytes + 1, "u1")[1:].view(array.dtype).reshape(array.shape) # not aligned
            odd[:] = array
            array = odd
    return array.view(Odd) if random.random() < 0.1 and type(array) is np.ndarray else array


def wanted(array, columns):
    """What the points must be, or None where they must be refused."""
    plain = np.ma.filled(array.astype(np.result_type(array, "f4")), np.nan) if isinstance(
        array, np.ma.MaskedArray) else np.asarray(array).view(np.ndarray)
    if plain.ndim == 1 and plain.shape[0] == 0:
        return np.zeros((0, columns), "f4")
    if plain.dtype.kind not in "fiu" or plain.ndim != 2 or plain.shape[1] != columns:
        return None
    return plain.astype("f4")


def check(seed):
    random = np.random.default_rng(seed)
    array = array_of(random)
    for make, columns in ((kx.Profile, 2), (kx.Cloud, 3), (lambda a: kx.ColourCloud(np.zeros((3, 3)), a), 3)):
        source = Source(array) if seed % 7 == 0 and not isinstance(array, np.ma.MaskedArray) else array
        expected = wanted(array, columns) if make in (kx.Profile, kx.Cloud) else None
        try:
            points = make(source).points
        except (ValueError, TypeError) as error:
            assert str(error) and expected is None, f"seed {seed}: {error}"
            continue
        if expected is not None:
            assert points.tobytes() == np.ascontiguousarray(expected).tobytes() or \
                np.array_equal(points, expected, equal_nan=True), f"seed {seed}"
        else:
            assert make not in (kx.Profile, kx.Cloud), f"seed {seed}"
    index = array_of(random)
    try:
        part = kx.Profile(np.zeros((7, 2)))[index]
        assert len(part) <= max(7, np.size(index))
    except (ValueError, TypeError, IndexError, OverflowError): # as NumPy refuses it
        pass


@pytest.mark.filterwarnings("ignore")
def test_hostile_arrays():
    end = time.monotonic() + float(os.environ.get("KXMATH_FUZZ_SECONDS", "0"))
    seed = 0
    while seed < 3000 or time.monotonic() < end:
        check(seed)
        seed += 1


def test_sources_that_fail():
    for given, error in ((KeyError("no"), KeyError), (MemoryError(), MemoryError), ([1, 2], ValueError), (3, ValueError)):
        with pytest.raises(error):
            kx.Profile(Source(given))


def test_bytes_are_no_points():
    for source in (bytes(80), memoryview(bytes(79)), bytearray(16)):
        with pytest.raises((ValueError, TypeError)):
            kx.Profile(source)
    state = kx.Profile(np.zeros((3, 2))).__reduce_ex__(2)
    for content in (b"1234567", state[2][0][:-1]): # buffers too small
        with pytest.raises(ValueError, match="no whole points"):
            state[0](*state[1]).__setstate__((content, 0.0))
