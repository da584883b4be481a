"""The width and the area of a weld from a profile across it: weld.py PROFILE.csv"""
import sys

import numpy as np

import kxmath as kx

profile = kx.Profile.from_csv(sys.argv[1]).remove_missing().sort()
middle = profile.center().x
plates = profile[np.abs(profile.x - middle) > 10] # mm; both sides of the weld
base = plates.fit_line()
height = profile.y - (base.slope * profile.x + base.intercept)
weld = kx.Profile.from_xy(profile.x, height)[height > 0.1]
print(f"width {weld.x[-1] - weld.x[0]:.1f} mm, area {weld.integral():.1f} mm2, top {weld.range.max_y:.2f} mm")
