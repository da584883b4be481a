"""compareWithTruth.py RESULT.json TRUTH.json: compares the result of `kxmath train` with the truth of `kxmath simulate`.

Ends with 1 when a wheel is missing or invented, or when a distance is off by more than 0.1 mm.
"""
import json
import sys

ALLOWED_MM = 0.1


def overlap(found, true):
    return found["firstRecord"] <= true["lastRecord"] and true["firstRecord"] <= found["lastRecord"]


def wheel_of(pair, sensor):
    return next(wheel for wheel in pair["wheels"] if wheel["sensor"] == sensor)


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


def main():
    result, truth = (json.load(open(name, encoding="utf-8")) for name in sys.argv[1:])
    sys.exit(0 if compare(result, truth) else 1)


main()
