"""A store of passes for tests, written by SQL into the tables that docs/fleet.md describes."""
import contextlib
import os
import random
import sqlite3

FIRST_DAY = 20514  # 2026-03-02, in days since 1970-01-01
DAYS = 60
NOISE = 0.02  # mm
SHIFT = (50, "left", 0.3)  # from this day on a sensor measures other thicknesses, mm
TURNED = ("V03", 30)  # a vehicle, and the day on which its wheels are turned
WORN = ("V01", 1, "left", 0.04)  # a wheel and its wear, mm a day; it is 10 days from its limit at the end
BAD = ("V02", 2, "right")  # a wheel that is beyond its limit on the last three days
LIMIT = 22.0  # of the thickness of flanges, mm


def make_result(run):
    """The result of a simulated pass as JSON. `run` runs kxmath with arguments in the folder. Returns its name."""
    run("simulate", "stored", "--cars", "1", "--bogies", "1", "--axles", "1", "--rate", "300", "--points", "200",
        "--no-background")
    run("train", "stored/train_101.bin", "stored/train_102.bin", "--settings", "stored/settings.ini", "--station", "north",
        "--time", "2026-03-01T12:00:00Z", "--keep", "none", "--json", "result.json")
    return "result.json"


def thickness_on(vehicle, axle, side, day, noise):
    value = 28.0 + noise
    if (vehicle, axle, side) == WORN[:3]:
        value = LIMIT + WORN[3] * (DAYS + 9 - day) + noise
    elif (vehicle, axle, side) == BAD and day >= DAYS - 3:
        value = LIMIT - 1.0 + noise
    elif vehicle == TURNED[0] and day >= TURNED[1]:
        value += 3.0
    return value + (SHIFT[2] if side == SHIFT[1] and day >= SHIFT[0] else 0.0)


def make_store(run, folder, name, vehicles=12, days=DAYS):
    """A store of `vehicles` with two axles that pass each day; what happens to them is at the top of this file."""
    run("store", "add", name, make_result(run))
    noise = random.Random(1)
    with contextlib.closing(sqlite3.connect(os.path.join(folder, name))) as store, store:
        for day in range(days):
            for number in range(1, vehicles + 1):
                add_pass(store, day, number, noise)


def add_pass(store, day, number, noise):
    vehicle = f"V{number:02}"
    time = (FIRST_DAY + day) * 86400000 + 43200000 + number * 60000
    of = store.execute("INSERT INTO pass (key, station, time_ms, vehicle_order, version, warnings) "
                       "VALUES (?, 'north', ?, 1, '', 0)", (f"{day}/{number}", time)).lastrowid
    for axle in (1, 2):
        store.execute("INSERT INTO axle (pass, number, vehicle, axle) VALUES (?, ?, ?, ?)", (of, axle, vehicle, axle))
        for side in ("left", "right"):
            value = thickness_on(vehicle, axle, side, day, noise.gauss(0, NOISE))
            store.execute("INSERT INTO wheel (pass, number, vehicle, axle, side, vehicle_class, flange_thickness) "
                          "VALUES (?, ?, ?, ?, ?, 'metro', ?)", (of, axle, vehicle, axle, side, value))
