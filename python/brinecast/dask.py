"""Speciation of a dask DataFrame, partition by partition, on whatever cluster runs it.

The Speciator travels to the workers once, as a delayed object that each task shares, and is
rebuilt there from its keywords; each partition is then one C++ batch on all of the worker's
cores.
"""

import dask
import dask.dataframe as dd

from . import Speciator, _split

__all__ = ["speciate_frame"]


def _partition(frame, speciator, call, columns):
    result = speciator.speciate_batch(frame, **call)
    # The first partition's columns first, in its order; a species only this one has follows.
    extra = [c for c in result.columns if c not in set(columns)]
    return result.reindex(columns=list(columns) + extra)


def speciate_frame(ddf, speciator=None, **options):
    """A dask DataFrame of results with ``ddf``'s index and divisions.

    ``speciator`` (a ``brinecast.Speciator``) or the Speciator keywords choose the solver;
    ``unit``, ``temperature_unit``, ``pressure_unit`` and ``threads`` apply to every partition.
    Species columns are those of the first rows, then any species only later rows have.
    """
    settings, call = _split(options)
    if speciator is None:
        speciator = Speciator(**settings)
    elif settings:
        raise TypeError("give either a Speciator or its keywords, not both")
    # A lazy frame must know its columns: the first rows give them, and a species that only
    # later rows have is added after them (see _partition).
    meta = speciator.speciate_batch(ddf.head(256, npartitions=1, compute=True), **call).iloc[:0]
    shipped = dask.delayed(speciator, pure=True)
    return ddf.map_partitions(_partition, shipped, call, list(meta.columns), meta=meta,
                              enforce_metadata=False, align_dataframes=False)
