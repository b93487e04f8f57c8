#!/usr/bin/python3
"""Writes a large batch CSV for measuring `brinecast batch`: mixtures of North Sea seawater and a
formation water at random fractions, temperatures and pressures, some with sulfate or barium left
out and half without a density (the reference engine computes it). Seeded, so every run writes the
same file. Usage: scripts/make-batch-file.py ROWS OUT.csv"""

import random
import sys

# mg/L, the end members of examples/seawater-formation-water-mixing.csv
SEAWATER = {"Na+": 10890, "K+": 460, "Mg++": 1368, "Ca++": 428, "Sr++": 7, "Ba++": 0,
            "Cl-": 19766, "SO4--": 2960, "HCO3-": 140}
FORMATION = {"Na+": 29370, "K+": 372, "Mg++": 504, "Ca++": 2809, "Sr++": 574, "Ba++": 252,
             "Cl-": 52360, "SO4--": 0, "HCO3-": 496}
IONS = list(SEAWATER)


def main():
    rows, path = int(sys.argv[1]), sys.argv[2]
    random.seed(20261123)
    with open(path, "w", encoding="utf-8") as out:
        out.write("name,temperature,temperature_unit,pressure,pressure_unit,density,unit," + ",".join(IONS) + "\n")
        for r in range(rows):
            fraction = random.random()  # of seawater
            cells = []
            for ion in IONS:
                amount = fraction * SEAWATER[ion] + (1 - fraction) * FORMATION[ion]
                left_out = (ion == "SO4--" and r % 3 == 0) or (ion == "Ba++" and r % 5 == 0)
                cells.append("" if left_out or amount == 0 else "%.6g" % amount)
            density = "" if r % 2 else "%.4f" % (1.02 + 0.04 * (1 - fraction))
            out.write("mix %d,%.1f,°C,%.2f,bar,%s,mg/L,%s\n" % (
                r + 1, 20 + 130 * random.random(), 1 + 299 * random.random(), density, ",".join(cells)))


if __name__ == "__main__":
    main()
