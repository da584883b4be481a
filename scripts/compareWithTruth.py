"""compareWithTruth.py RESULT.json DIR: compares the result of `kxmath train` with the truth that `kxmath simulate` left.

Ends with 1 when a wheel is missing or invented, when a distance or a measure of a wheel is off by more than 0.1 mm, or when
one is absent though all sensors saw the wheel.
"""
import csv
import json
import pathlib
import sys

ALLOWED_MM = 0.1


def overlap(found, true):
    return found["firstRecord"] <= true["lastRecord"] and true["firstRecord"] <= found["lastRecord"]


def wheel_of(pair, sensor):
    """What the sensor saw of a wheel of the pair."""
    return next(seen for wheel in pair["wheels"] for seen in wheel.get("seen", [wheel]) if seen["sensor"] == sensor)


def records(wheel):
    return f"{wheel['firstRecord']}-{wheel['lastRecord']}" if wheel else "none"


def compare(result, truth):
    sensors = [recording["sensor"] for recording in result["recordings"]]
    unexplained = {id(wheel) for pair in result["pairs"] for wheel in pair["sides"] if wheel}
    faults = 0
    print(f"{'pair':>4}  {'records left':>14}  {'records right':>14}  {'measured mm':>12}  {'truth mm':>10}  {'error mm':>9}")
    for true in truth["pairs"]:
        # The measured pair whose wheels are both at the positions of the true ones.
        sides = [wheel_of(true, sensor) for sensor in sensors]
        found = [
            pair
            for pair in result["pairs"]
            if all(wheel and overlap(wheel, side) for wheel, side in zip(pair["sides"], sides))
        ]
        pair = found[0] if found else {"sides": [None, None], "distance": None}
        unexplained -= {id(wheel) for wheel in pair["sides"]}
        measured = pair["distance"]
        error = None if measured is None else measured - true["backToBack"]
        is_good = error is not None and abs(error) <= ALLOWED_MM
        faults += not is_good
        print(
            f"{true['pair']:>4}  {records(pair['sides'][0]):>14}  {records(pair['sides'][1]):>14}"
            f"  {'none' if measured is None else format(measured, '.3f'):>12}  {true['backToBack']:>10.3f}"
            f"  {'' if error is None else format(error, '+.3f'):>9}{'' if is_good else '  WRONG'}"
        )
    print(f"{len(truth['pairs'])} true pairs, {faults} missing or wrong, {len(unexplained)} invented wheels")
    return faults == 0 and not unexplained


# Measures in the result, and the columns of truth.csv.
MEASURES = {"diameter": "diameter", "flangeHeight": "flange_height", "flangeThickness": "flange_thickness",
            "flangeSlope": "qr", "treadHollow": "hollow"}


def not_seen_by_all(truth):
    """Pair and side of the wheels that a sensor did not see: its first record is 0."""
    return {(pair["pair"], wheel["side"]) for pair in truth["pairs"] for wheel in pair["wheels"]
            if any(seen["firstRecord"] == 0 for seen in wheel.get("seen", [wheel]))}


def compare_wheels(result, truth, not_seen):
    """Prints the errors of the measures of each wheel, mm."""
    true = {(int(row["pair"]), row["side"]): row for row in truth}
    faults = 0
    print("\npair   side  " + "  ".join(f"{name:>15}" for name in MEASURES) + "  (errors, mm)")
    for wheel in result.get("wheels", []):
        row = true[wheel["pair"], wheel["side"]]
        values = {name: wheel["measures"][name]["value"] for name in MEASURES}
        errors = [None if v is None else v - float(row[MEASURES[name]]) for name, v in values.items()]
        may_lack = (wheel["pair"], wheel["side"]) in not_seen
        is_good = all(may_lack if error is None else abs(error) <= ALLOWED_MM for error in errors)
        faults += not is_good
        print(f"{wheel['pair']:>4}  {wheel['side']:>5}  "
              + "  ".join(f"{'none' if e is None else format(e, '+.3f'):>15}" for e in errors)
              + ("" if is_good else "  WRONG") + ("  not seen by all sensors" if may_lack else ""))
    print(f"{len(true)} true wheels, {len(true) - len(result.get('wheels', [])) + faults} missing or wrong")
    return faults == 0 and len(true) == len(result.get("wheels", []))


def main():
    folder = pathlib.Path(sys.argv[2])
    result = json.loads(pathlib.Path(sys.argv[1]).read_text(encoding="utf-8"))
    truth = json.loads((folder / "truth.json").read_text(encoding="utf-8"))
    are_pairs_good = compare(result, truth)
    with open(folder / "truth.csv", encoding="utf-8", newline="") as file:
        are_wheels_good = compare_wheels(result, list(csv.DictReader(file)), not_seen_by_all(truth))
    sys.exit(0 if are_pairs_good and are_wheels_good else 1)


main()
