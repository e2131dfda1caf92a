#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Compares UTM coordinates and their inverse with those of `cs2cs`, a program of other origin.

    cs2cs_agreement.py PROGRAM
"""

import random
import subprocess
import sys

SEED = 20240607
POINTS_PER_ZONE = 20
ZONES = (1, 10, 19, 31, 32, 33, 35, 47, 60)
METRES = 1e-3
DEGREES = 1e-8  # about a millimetre


def answers(command, points):
    text = "".join(f"{x!r} {y!r}\n" for x, y in points)
    result = subprocess.run(command, input=text, capture_output=True, text=True, check=True)
    return [tuple(float(field) for field in line.split()[:2]) for line in result.stdout.splitlines()]


def worst(ours, theirs):
    return max(max(abs(a[0] - b[0]), abs(a[1] - b[1])) for a, b in zip(ours, theirs, strict=True))


def check(program, zone, rng):
    """The worst disagreements in metres and degrees."""
    meridian = zone * 6 - 183
    points = [
        (meridian + rng.uniform(-3, 3), rng.uniform(-80, 84)) for _ in range(POINTS_PER_ZONE)
    ]
    utm = ["+proj=utm", f"+zone={zone}", "+ellps=WGS84"]
    ours = answers([program, "project", "--projection", f"utm:{zone}"], points)
    theirs = answers(["cs2cs", "-f", "%.6f", "+proj=longlat", "+ellps=WGS84", "+to", *utm], points)
    back = answers([program, "project", "--inverse", "--projection", f"utm:{zone}"], theirs)
    return worst(ours, theirs), worst(back, points)


def main():
    rng, failed = random.Random(SEED), False
    for zone in ZONES:
        metres, degrees = check(sys.argv[1], zone, rng)
        print(f"zone {zone}: {metres:.2e} m, {degrees:.2e} degrees (seed {SEED})")
        failed |= metres > METRES or degrees > DEGREES
    sys.exit(failed)


if __name__ == "__main__":
    main()
