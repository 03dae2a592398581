#!/usr/bin/env python3
"""Makes the point files in tracks/: three walks of some thousand points, the same each time."""

import datetime
import math
import pathlib
import random

WALKS = [
    # file, points, first name, start, latitude, longitude, altitude, seconds between points
    ("coast", 2400, "C0001", "2015-06-01 05:58:12", 38.4423, 27.1430, 3.0, 15),
    ("glacier", 3100, "G1", "2015-08-19 04:12:00", 46.0243, 7.7491, 1620.4, 10),
    ("harbour", 1800, "H097", "2016-02-28 22:30:00", 53.5436, 9.9661, 4.2, 5),
]


def next_name(name):
    stem = name.rstrip("0123456789")
    digits = name[len(stem):]
    return stem + str(int(digits) + 1).zfill(len(digits))


def main():
    folder = pathlib.Path(__file__).parent / "tracks"
    for file, count, name, start, latitude, longitude, altitude, step in WALKS:
        chance = random.Random(file)
        time = datetime.datetime.fromisoformat(start)
        heading = chance.uniform(0, 2 * math.pi)
        lines = []
        for i in range(count):
            # Every fifth point or so was not named in the field.
            shown = name if i == 0 or chance.random() < 0.8 else ""
            lines.append(f"{shown}, {time}, {latitude:.5f}, {longitude:.5f}, {altitude:.1f}\r\n")
            name = next_name(name)
            time += datetime.timedelta(seconds=step + chance.randint(0, 2))
            heading += chance.gauss(0, 0.2)
            latitude += 0.0001 * math.cos(heading)
            longitude += 0.00015 * math.sin(heading)
            altitude = max(0.0, altitude + chance.gauss(0.1, 1.5))
        (folder / f"{file}.csv").write_text("".join(lines), newline="")


if __name__ == "__main__":
    main()
