"""Files of points: kinds by content, places of damage, and back bit by bit."""
import copy
import os
import pickle
import struct
import threading
import warnings
import weakref

import numpy as np
import pytest

import kxmath as kx

XYZ = np.array([[0, 1, 2], [3, 4.5, 5], [6, np.nan, 8], [-1, 0.1, 9]], dtype="f4")
RGB = np.arange(12, dtype="u1").reshape(4, 3) * 20


@pytest.mark.parametrize("item, names", [
    (kx.Profile(XYZ[:, :2]), ["a.bin", "a.xyz"]),
    (kx.Profile(XYZ[:, :2], z=4.5), ["a.profiles"]),
    (kx.Cloud(XYZ), ["a.bin", "a.xyz", "a.ply", "a.pcd", "a.xyzf"]),
    (kx.ColourCloud(XYZ, RGB), ["a.bin", "a.ply", "a.pcd"])])
def test_what_is_saved_is_read_again(item, names, tmp_path):
    for name in names:
        item.save(tmp_path / name)
        again = kx.read(tmp_path / name)
        assert again == item and type(again) is type(item), name
        item.save(os.fsencode(tmp_path / "named"), kind={"bin": "cloud"}.get(name[2:], name[2:]))
        assert (tmp_path / "named").read_bytes() == (tmp_path / name).read_bytes()


def test_text_is_read_as_it_is_written_elsewhere(tmp_path):
    file = tmp_path / "shaft.csv"
    for text, options, told in (
            ("x;y\n1,5;2\n-3;4e1\n", {}, "read with ';' between the columns and ',' as decimal sign"),
            ("1.5\t2\n-3\t40\n", {}, ""), ("1.5,2\n-3,40\n", {}, ""), ("9 2 1.5\n9 40 -3\n", {"columns": [2, 1]}, ""),
            ("ColumnDef=X,Y\n\n1,5 2 worn\n-3 40\n", {}, "decimal sign, without the remarks behind the columns of 1 points"),
            ("ColumnDef=X,Y\n\n1.5 2\n-3 40 worn\n", {}, "without the remarks behind the columns of 1 points"),
            ("1,5 2\n-3 40\n", {"separator": " ", "decimal_sign": ","}, "")):
        file.write_text(text)
        for read in (kx.Profile.from_csv, kx.read):
            with warnings.catch_warnings(record=True) as caught:
                warnings.simplefilter("always")
                assert read(file, **options) == kx.Profile([[1.5, 2], [-3, 40]]), text
            assert [(w.category, w.filename) for w in caught] == [(kx.ReadingWarning, __file__)] * bool(told), text
            assert all(f"'{file}' is " in str(w.message) and str(w.message).endswith(told) for w in caught), text
    assert kx.read(file, decimal_sign=",", separator=" ") == kx.Profile([[1.5, 2], [-3, 40]])


def test_what_is_wrong_is_told_with_its_place(tmp_path):
    file = tmp_path / "a.csv"
    file.write_text("1;2\n3;x\n")
    with pytest.raises(kx.FileError, match="line 2") as caught:
        kx.Profile.from_csv(file)
    assert caught.value.place == kx.Place(line=2, column=2, byte=caught.value.place.byte)
    assert (caught.value.path, caught.value.kind) == (str(file), "damaged")
    with pytest.raises(kx.FileMissing) as caught:
        kx.read(tmp_path / "missing.csv")
    assert caught.value.errno == 2 and caught.value.filename == str(tmp_path / "missing.csv")
    with pytest.raises(kx.FileError) as caught:
        kx.Cloud(XYZ).save(tmp_path / "missing" / "a.ply")
    assert caught.value.kind == "unwritable"
    for failing in (lambda: kx.Cloud(XYZ).save(tmp_path / "a.what"), lambda: kx.Cloud(XYZ).save(file, kind="what"),
                    lambda: kx.read(file, separator=";;"), lambda: kx.read("a\0b")):
        with pytest.raises(ValueError):
            failing()
    for what in (7.5, 0, None, XYZ): # 0 would be the standard input
        with pytest.raises(TypeError):
            kx.read(what)


def test_odd_files_are_refused_in_words(tmp_path):
    """By whatever reads files of points."""
    (tmp_path / "folder").mkdir()
    (tmp_path / "loop").symlink_to("loop")
    ply = "ply\nformat {} 1.0\nelement vertex {}\nproperty float x\nproperty float y\nproperty float z\nend_header\n"
    npy = b"\x93NUMPY\x01\x00\x76\x00{'descr': '<f4', 'fortran_order': False, 'shape': (999999999999, 2), }".ljust(128)
    for name, content, says in (
            ("empty", b"", "is empty"), ("zeros", bytes(4096), "no known kind"), ("empty.ply", b"", "not a PLY"),
            ("head.bin", b"\x05\xff\xff", "cut short"), ("huge.bin", b"\x05\xff\xff" + bytes(100), "cut short"),
            ("huge.ply", ply.format("binary_little_endian", 10**14).encode() + bytes(36), "ends after 3"),
            ("more.ply", ply.format("ascii", 2**64 + 1).encode() + b"1 2 3\n", "no count"), ("huge.npy", npy, "not those of"),
            ("words.csv", b"a;b\nc;d\n", "no points"), ("nul.csv", b"1;2\n\0;4\n", "line 2"), ("one.csv", b"5\n", "1 columns")):
        (tmp_path / name).write_bytes(content)
        with pytest.raises(kx.FileError, match=says):
            kx.read(tmp_path / name)
    numbers = np.arange(6.0, dtype="f4").reshape(3, 2)
    for array, says in ((numbers.astype("i8"), "'<i8'"), (np.zeros(4, [("x", "f4"), ("y", "f4")]), "'x'"),
                        (numbers.astype(">f4"), "'>f4'"), (np.array([[1, None]], object), "'|O'"),
                        (np.zeros((2, 2, 2), "f4"), r"\(2, 2, 2\)"), (np.float32(3), r"'\(\)'")):
        np.save(tmp_path / "odd.npy", array)
        with pytest.raises(kx.FileError, match=says):
            kx.read(tmp_path / "odd.npy")
    np.save(tmp_path / "columns.npy", np.asfortranarray(numbers))
    assert kx.read(tmp_path / "columns.npy") == kx.Profile(numbers)
    for read in (kx.read, kx.Profile.from_csv, kx.HeightMap.open, kx.ProfileSet.open, kx.read_arrays, kx.file_info):
        for name, error in (("missing", kx.FileMissing), ("folder", kx.FileError), ("loop", kx.FileError)):
            with pytest.raises(error):
                read(tmp_path / name)


def test_a_pipe_is_read_from_its_beginning(tmp_path):
    os.mkfifo(tmp_path / "pipe")
    writer = threading.Thread(target=lambda: (tmp_path / "pipe").write_text("1;2\n3;4\n"))
    writer.start()
    assert kx.read(tmp_path / "pipe", kind="csv") == kx.Profile([[1, 2], [3, 4]])
    writer.join()


def test_names_that_are_no_text(tmp_path):
    file = os.fsencode(tmp_path) + b"/\xfc.bin"
    profile = kx.Profile(XYZ[:, :2], z=1)
    profile.save(file, kind="profiles")
    assert kx.read(file) == profile == kx.read(os.fsdecode(file)) == kx.ProfileSet.open(file)[0]
    with pytest.raises(kx.FileMissing) as caught:
        kx.read(file + b"x.csv")
    assert os.fsencode(caught.value.path) == file + b"x.csv" and "%FC" in str(caught.value)


def records(path, profiles):
    """A file of profile records, as its page describes it."""
    with open(path, "wb") as out:
        for z, points in profiles:
            out.write(struct.pack("<BHf", 5, len(points), z) + np.asarray(points, "<f4").tobytes())
    return path


def scan_of(count):
    random = np.random.default_rng(4)
    for i in range(count):
        x = np.arange(-6, 6.05, 0.1)
        yield 0.25 * i + 10, np.column_stack([x, 2 + 0.1 * i + 0.3 * x + random.normal(0, 0.01, x.size)])


def test_a_set_of_a_file_reads_what_is_asked_for(tmp_path):
    source = list(scan_of(30)) + [(50, np.zeros((0, 2)))]
    file = records(tmp_path / "weld_7.bin", source)
    scan = kx.Recording.open(file)
    assert (len(scan), scan.serial, scan.name) == (31, 7, "weld_7")
    assert scan[17] == scan[-14] == kx.Profile(source[17][1], z=source[17][0]) and len(scan[30]) == 0
    part = scan[5:25:4]
    assert [p.z for p in part] == [source[i][0] for i in range(5, 25, 4)] and type(part) is kx.Recording
    assert part == kx.ProfileSet(kx.Profile(a, z=z) for z, a in source[5:25:4]) and part[1:] != part
    assert scan.index(part[1], 3) == 9 and scan.count(part[1]) == 1 and scan[17] in scan and scan[17] not in part[:2]
    assert scan.counts.tolist() == [len(a) for _, a in source] and scan.z[:2].tolist() == [10, 10.25]
    assert np.array_equal(part.to_cloud().points[:121], np.column_stack([source[5][1], [11.25] * 121]).astype("f4"))
    for index in (31, -32):
        with pytest.raises(IndexError):
            scan[index]
    for value in (scan, part, kx.ProfileSet(part)):
        assert pickle.loads(pickle.dumps(value)) == value == copy.deepcopy(value)
    assert kx.read(file) == scan
    with pytest.raises(TypeError):
        kx.ProfileSet([XYZ])


def sections(path, profiles):
    """A file of 2-D cloud sections, which have no position."""
    with open(path, "wb") as out:
        for _, points in profiles:
            out.write(struct.pack("<BH", 2, len(points)) + np.asarray(points, "<f4").tobytes())
    return path


def test_all_points_of_a_scan_in_one_array(tmp_path):
    """However the records follow one another, also past the number that is read at once."""
    random = np.random.default_rng(9)
    same = [(i, random.random((3, 2)).astype("f4")) for i in range(1300)]
    mixed = [(i, random.random((n, 2)).astype("f4")) for i, n in enumerate([4, 4, 4, 0, 0, 7, 65535, 1, 4, 4, 4, 4, 9])]
    whole = records(tmp_path / "mixed.bin", mixed).read_bytes() + sections(tmp_path / "s.bin", mixed[:4]).read_bytes()
    (tmp_path / "both.bin").write_bytes(whole)
    for file, source in ((records(tmp_path / "same.bin", same), same), (tmp_path / "mixed.bin", mixed),
                         (records(tmp_path / "last.bin", same[:40] + mixed[3:4]), same[:40] + mixed[3:4]),
                         (tmp_path / "s.bin", [(np.nan, a) for _, a in mixed[:4]]),
                         (tmp_path / "both.bin", mixed + [(np.nan, a) for _, a in mixed[:4]])):
        scan = kx.ProfileSet.open(file)
        for arrays in (kx.read_arrays(file), scan.to_arrays(), kx.ProfileSet(scan).to_arrays()):
            assert arrays.points.tobytes() == np.concatenate([a for _, a in source]).astype("f4").tobytes()
            assert np.diff(arrays.starts).tolist() == [len(a) for _, a in source] == scan.counts.tolist()
            assert np.array_equal(arrays.z, np.array([z for z, _ in source], "f4"), equal_nan=True)
        profiles = list(scan)
        assert len(profiles) == len(source)
        for i in (0, len(source) // 2, len(source) - 1):
            assert profiles[i] == scan[i] == kx.Profile(source[i][1], z=None if source[i][0] != source[i][0] else source[i][0])
    part = kx.ProfileSet.open(tmp_path / "same.bin")[1200:3:-7]
    assert part.to_arrays().points.tobytes() == np.concatenate([a for _, a in same[1200:3:-7]]).tobytes()
    assert kx.read_arrays(tmp_path / "same.bin").points.flags.writeable
    assert len(kx.ProfileSet().to_arrays().points) == 0


def test_iteration_writes_only_profiles_again_that_nobody_holds(tmp_path):
    random = np.random.default_rng(6)
    source = [(i, random.random((int(random.integers(0, 400)), 2)).astype("f4")) for i in range(2100)]
    scan = kx.ProfileSet.open(records(tmp_path / "a.bin", source))
    wanted, kept, views, identities, dead = list(scan), [], [], set(), []
    for i, profile in enumerate(scan):
        assert profile == wanted[i]
        identities.add(id(profile))
        if i % 7 == 0:
            kept.append(profile)
        if i % 5 == 0:
            views.append((profile.x, profile.points))
        if i % 11 == 0:
            dead.append(weakref.ref(profile))
    del profile
    assert kept == wanted[::7] and len(identities) < 2000
    assert all(x.tobytes() == w.x.tobytes() and points.tobytes() == w.points.tobytes()
               for (x, points), w in zip(views, wanted[::5]))
    assert all(ref() is None or ref() in kept for ref in dead)


def test_a_file_that_shrinks_or_changes_is_noticed(tmp_path):
    file = records(tmp_path / "a.bin", scan_of(600))
    whole = file.read_bytes()
    size = len(whole) // 600
    for content, record in ((whole[:size * 3 + 20], 4), (b"", 1), (whole[:size * 2] + b"\x07" + whole[size * 2 + 1:], 3),
                            (whole[:size] + b"\x05\x01\x00" + whole[size + 3:], 2)):
        scan = kx.ProfileSet.open(file)
        file.write_bytes(content)
        for failing in (scan.to_arrays, lambda: list(scan), lambda: scan.z, lambda: scan[record - 1]):
            with pytest.raises(kx.FileError, match="has changed since") as caught:
                failing()
            assert caught.value.place.record >= record
        with pytest.raises(kx.FileError):
            kx.read_arrays(file)
        file.write_bytes(whole)
    os.mkfifo(tmp_path / "pipe")
    for path in (tmp_path / "pipe", tmp_path, tmp_path / "missing"): # not one of them is waited for
        for read in (kx.read_arrays, kx.ProfileSet.open):
            with pytest.raises(kx.FileError):
                read(path)


def test_what_is_in_a_file(tmp_path):
    source = list(scan_of(3))
    info = kx.file_info(records(tmp_path / "a.bin", source))
    assert (info.kind, info.parts, info.points, info.missing) == (None, {"profileRecord": 3}, 363, 0)
    assert info.x == (-6.0, 6.0) and info.z == (10.0, 10.5) and abs(info.spacing - 0.1) < 1e-5 and info.text is None
    (tmp_path / "a.bin").write_bytes((tmp_path / "a.bin").read_bytes()[:-1])
    damage = kx.file_info(tmp_path / "a.bin").damage
    assert isinstance(damage, kx.FileError) and damage.place.record == 3
    (tmp_path / "a.csv").write_text("x;y\n1,5;2\n3;4\n")
    info = kx.file_info(tmp_path / "a.csv")
    assert (info.kind, info.text["separator"], info.text["titleLines"], info.damage) == ("csv", ";", 1, None)
    with pytest.raises(kx.FileMissing):
        kx.file_info(tmp_path / "missing")


def test_parts_of_a_scan_and_slices_of_a_cloud():
    scan = kx.ProfileSet(kx.Profile(a, z=z) for z, a in scan_of(12))
    part = scan.between(10.25, 11)
    assert part.z.tolist() == [10.25, 10.5, 10.75, 11.0] and part[0] == scan[1] and part[1:3].z.tolist() == [10.5, 10.75]
    again = kx.ProfileSet(scan.to_cloud().slices(0.25))
    assert again == scan
    for step in (0.0, -1.0, float("nan")):
        with pytest.raises(kx.NoResult):
            scan.to_cloud().slices(step)
    with pytest.raises(kx.NoResult):
        kx.Cloud(XYZ[:1]).slices(1)


def test_damaged_recordings(tmp_path):
    file = records(tmp_path / "a_1.bin", scan_of(5))
    whole = file.read_bytes()
    scan = kx.ProfileSet.open(file)
    for content in (whole[:-1], whole[:3000] + b"\x77" + whole[3001:], whole[:2928] + b"\x77" + whole[2929:]):
        file.write_bytes(content)
        try:
            opened = kx.ProfileSet.open(file)
            assert len(opened) == 5 # a byte of a number
        except kx.FileError as error:
            assert error.kind == "damaged" and error.place.record and error.place.byte is not None
    file.write_bytes(whole[:2000])
    with pytest.raises(kx.FileError, match="has changed since") as caught:
        scan[4]
    assert caught.value.place.record == 5
    file.write_bytes(b"")
    with pytest.raises(kx.FileError):
        kx.ProfileSet.open(file)


def test_height_maps(tmp_path):
    scan = kx.ProfileSet(kx.Profile(a, z=z) for z, a in scan_of(12))
    h = scan.to_grid(step=0.25)
    assert h.shape == (12, 48) and h.heights.dtype == np.float32 and np.shares_memory(h.heights, np.asarray(h))
    assert np.allclose(h.z, 10 + 0.25 * np.arange(12)) and h.x[0] == -6 and h.pitch == 0.25
    i, j = 7, 20
    assert abs(h.heights[i, j] - (2 + 0.1 * i + 0.3 * h.x[j])) < 0.05
    with pytest.raises(ValueError):
        h.heights[0, 0] = 1
    same = scan.to_grid(step=0.25, distance=0.25, first_z=10)
    assert np.array_equal(same.heights, h.heights, equal_nan=True)
    means = h.block_means(3)
    assert means.shape == h.shape and np.isnan(means[0]).all()
    assert np.isclose(means[5, 9], h.heights[2:5, 6:9].mean(), atol=1e-5)
    assert len(h.to_cloud()) == np.isfinite(h.heights).sum()
    assert len(h) == 12 and np.array_equal(h[3:5, ::2], h.heights[3:5, ::2], equal_nan=True) and len(list(h)) == 12
    twin = pickle.loads(pickle.dumps(h))
    assert twin == h == copy.deepcopy(h) and twin.x.tolist() == h.x.tolist() and scan.to_grid(step=0.5) != h == same
    state = h._map.__getstate__()
    for damaged in ((-1, -48, *state[2:]), (13, *state[1:]), (*state[:-1], state[-1][:-1]), state[1:]):
        with pytest.raises((ValueError, TypeError)):
            h._map.__class__.__new__(h._map.__class__).__setstate__(damaged)
    heights = h.heights
    del h, same
    assert np.isfinite(heights).any()


def test_height_maps_in_other_programs(tmp_path):
    h = kx.ProfileSet(kx.Profile(a, z=z) for z, a in scan_of(12)).to_grid(step=0.25)
    da = h.to_xarray()
    assert da.dims == ("z", "x") and da.attrs["units"] == da.x.attrs["units"] == "mm"
    assert float(da.sel(x=-1.0, z=11.75)) == h.heights[7, 20] and np.array_equal(da, h.heights, equal_nan=True)
    h.to_npy(tmp_path / "a.npy")
    assert np.array_equal(np.load(tmp_path / "a.npy"), h.heights, equal_nan=True)
    h.to_ply(tmp_path / "a.ply")
    assert kx.read(tmp_path / "a.ply") == h.to_cloud()
    h.to_gsf(tmp_path / "a.gsf")
    h.save(tmp_path / "a.vti")
    for back in [kx.HeightMap.open(tmp_path / "a.gsf"), kx.HeightMap.open(tmp_path / "a.vti"),
                 kx.HeightMap.open(tmp_path / "a.npy", pitch=0.25)]:
        assert back.pitch == 0.25 and np.allclose(back.heights, h.heights, rtol=2e-7, equal_nan=True)
    assert kx.HeightMap.open(tmp_path / "a.gsf").z[0] == 10
    with pytest.raises(kx.ArgumentError, match="pitch"):
        kx.HeightMap.open(tmp_path / "a.npy")
    with pytest.raises(ValueError, match="kind"):
        h.save(tmp_path / "a.abc")


def test_scans_without_a_map_say_why():
    profiles = [kx.Profile(a, z=z) for z, a in scan_of(4)]
    with pytest.raises(kx.ArgumentError, match="distance"):
        kx.ProfileSet(profiles[::-1]).to_grid(step=0.25)
    with pytest.raises(kx.ArgumentError):
        kx.ProfileSet(kx.Profile(p) for p in profiles).to_grid(step=0.25)
    with pytest.raises(kx.NoResult):
        kx.ProfileSet(profiles).to_grid(step=50.0)
    with pytest.raises(kx.ArgumentError):
        kx.ProfileSet(profiles).to_grid(step=-1.0)


def test_plates_are_found():
    x = np.arange(0, 20, 0.5)
    def profile(z):
        y = np.where((x > 5) & (x < 15) & (5 < z < 15), 12.5, 2.0)
        return kx.Profile.from_xy(x, y, z=z)
    patches = kx.ProfileSet(profile(z) for z in np.arange(0, 20, 0.5)).to_grid(step=0.5).patches(tolerance=0.5)
    assert sorted(round(p.mean, 1) for p in patches) == [2.0, 12.5]
    assert all(p.cells == len(p.cloud) and p.area > 0 for p in patches)
