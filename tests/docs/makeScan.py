"""makeScan.py FILE: writes a scan of profile records, 0.5 mm apart: a plate 12.5 mm high on a ground at 2 mm."""
import struct
import sys

with open(sys.argv[1], "wb") as file:
    for row in range(70):
        points = [(-15 + i * 0.5, 12.5 if 10 <= row < 50 and 15 <= i < 50 else 2.0) for i in range(61)]
        file.write(struct.pack("<BHf", 5, len(points), row * 0.5))
        for point in points:
            file.write(struct.pack("<2f", *point))
