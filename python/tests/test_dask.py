import numpy as np
import pandas as pd
import pytest

import brinecast

dd = pytest.importorskip("dask.dataframe")
distributed = pytest.importorskip("distributed")
brinecast_dask = pytest.importorskip("brinecast.dask")


def analyses(rows):
    """Chloride waters of rising salinity, with a bad unit and a sulfate-only tail: the later
    partitions hold rows the first one lacks."""
    rng = np.random.default_rng(7)
    na = rng.uniform(0.01, 1.5, rows)
    frame = pd.DataFrame({"Na": na, "Cl": na, "S(6)": np.nan, "temperature": 298.15,
                          "pressure": 101325.0, "unit": "mol/kgw"},
                         index=pd.Index(np.arange(rows) * 3, name="sample"))
    frame.loc[frame.index[5], "unit"] = "furlongs"
    frame.loc[frame.index[-3:], "S(6)"] = 0.01
    frame.loc[frame.index[-3:], "Cl"] -= 0.02
    return frame


def test_a_two_worker_cluster_gives_the_in_process_frame():
    frame = analyses(120)
    expected = brinecast.speciate_batch(frame, method="robust")
    with distributed.LocalCluster(n_workers=2, threads_per_worker=1, processes=False,
                                  dashboard_address=None) as cluster, \
            distributed.Client(cluster):
        ddf = dd.from_pandas(frame, npartitions=4)
        result = brinecast_dask.speciate_frame(ddf, method="robust").compute()
    assert set(result.columns) == set(expected.columns)
    pd.testing.assert_frame_equal(result[expected.columns], expected)
    assert result.loc[15, "status"] == "invalid input"
