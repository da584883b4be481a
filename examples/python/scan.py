"""A picture of a scan as a height map: scan.py SCAN PICTURE.png"""
import sys

import matplotlib

import kxmath as kx

matplotlib.use("Agg") # draws into files
scan = kx.ProfileSet.open(sys.argv[1])
heights = scan.to_grid(step=0.5)
da = heights.to_xarray()
print(f"{da.sizes['z']} rows, {da.sizes['x']} columns, {float(da.max()):.1f} {da.units} at most")
print(f"mean along the scan at x = 5 mm: {float(da.sel(x=5, method='nearest').mean()):.2f} mm")
heights.plot().figure.savefig(sys.argv[2])
