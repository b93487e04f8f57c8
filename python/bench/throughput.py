#!/usr/bin/python3
"""Throughput of speciate_batch on a synthetic table of chloride waters, in process and through a
Dask LocalCluster, best of three runs:

    PYTHONPATH=build/python /usr/bin/python3 python/bench/throughput.py [ROWS] [THREADS]
"""

import sys
import time

import numpy as np
import pandas as pd

import brinecast
import brinecast.dask


def table(rows):
    rng = np.random.default_rng(1)
    na = rng.uniform(0.05, 2.0, rows)        # mol/kgw
    ca = rng.uniform(0.001, 0.05, rows)      # mol/kgw
    return pd.DataFrame({"Na": na, "Cl": na + 2 * ca, "Ca": ca, "C": 0.002, "unit": "mol/kgw",
                         "temperature": 323.15, "pressure": 1e6})


def best_of_three(run):
    best = float("inf")
    for _ in range(3):
        start = time.perf_counter()
        run()
        best = min(best, time.perf_counter() - start)
    return best


def main(rows, threads):
    frame = table(rows)
    speciator = brinecast.Speciator(method="robust")
    speciator.speciate_batch(frame.iloc[:1000], threads=threads)  # warm: engine, name caches
    seconds = best_of_three(lambda: speciator.speciate_batch(frame, threads=threads))
    print(f"speciate_batch: {rows} rows in {seconds:.3f} s, {seconds / rows * 1e6:.2f} us/row")

    import dask.dataframe as dd
    from dask.distributed import Client, LocalCluster

    with LocalCluster(n_workers=1, threads_per_worker=1, processes=False,
                      dashboard_address=None) as cluster, Client(cluster):
        ddf = dd.from_pandas(frame, npartitions=4)
        dask_seconds = best_of_three(
            lambda: brinecast.dask.speciate_frame(ddf, speciator, threads=threads).compute())
    print(f"dask, 1 worker, 4 partitions: {dask_seconds:.3f} s, "
          f"{(dask_seconds / seconds - 1) * 100:+.0f} % against in process")


if __name__ == "__main__":
    main(int(sys.argv[1]) if len(sys.argv) > 1 else 100000,
         int(sys.argv[2]) if len(sys.argv) > 2 else 0)
