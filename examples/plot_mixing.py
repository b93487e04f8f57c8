#!/usr/bin/python3
"""Speciates a CSV of analyses and plots pH and the barium sulfate ion product against the
seawater share of each mix: the barite-scaling picture of seawater injection.

    PYTHONPATH=build/python /usr/bin/python3 examples/plot_mixing.py \
        examples/seawater-formation-water-mixing.csv mixing.png

The share and temperature are read from each row's name ("SW 30% in FW at 60 °C").
"""

import sys

import matplotlib

matplotlib.use("Agg")  # a PNG file, no display needed
import matplotlib.pyplot as plt
import numpy as np
import pandas as pd

import brinecast


def main(csv_path, png_path):
    analyses = pd.read_csv(csv_path)
    results = brinecast.speciate_batch(analyses)
    bad = results[results["status"] != "ok"]
    for label, row in bad.iterrows():
        print(f"{analyses.loc[label, 'name']}: {row['status']}: {row['message']}", file=sys.stderr)

    mix = analyses["name"].str.extract(r"SW (?P<share>[\d.]+)% in FW at (?P<celsius>[\d.]+)")
    table = pd.concat([mix.astype(float), results], axis=1)[results["status"] == "ok"]
    # Free Ba+2 times free SO4-2 (mol/kgw)^2: the ion product a barite saturation index compares
    # with the solubility product.
    table["log_ion_product"] = np.log10(table["Ba+2 (mol/kgw)"] * table["SO4-2 (mol/kgw)"])

    figure, (ph_axis, ion_axis) = plt.subplots(2, 1, sharex=True, figsize=(6, 6))
    for celsius, group in table.groupby("celsius"):
        group = group.sort_values("share")
        ph_axis.plot(group["share"], group["pH"], marker="o", label=f"{celsius:g} °C")
        ion_axis.plot(group["share"], group["log_ion_product"], marker="o", label=f"{celsius:g} °C")
    ph_axis.set_ylabel("pH")
    ion_axis.set_ylabel("log10 m(Ba+2) m(SO4-2)")
    ion_axis.set_xlabel("seawater in formation water (% by volume)")
    ph_axis.legend()
    figure.tight_layout()
    figure.savefig(png_path, dpi=120)
    print(f"{len(table)} of {len(analyses)} analyses plotted to {png_path}")


if __name__ == "__main__":
    if len(sys.argv) != 3:
        sys.exit("usage: plot_mixing.py ANALYSES.csv PLOT.png")
    main(sys.argv[1], sys.argv[2])
