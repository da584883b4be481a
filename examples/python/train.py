"""The distances of a passing train as a data frame: train.py FOLDER SETTINGS"""
import sys

import kxmath as kx

result = kx.Pass(sys.argv[1], settings=sys.argv[2], station="A12").measure()
distances = result.distances
print(distances[["pair", "distance", "inTolerance"]].round(2).to_string(index=False))
print(f"mean {distances['distance'].mean():.1f} mm of {distances['distance'].count()} pairs")
