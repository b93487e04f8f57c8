"""Speciation and pH of oil- and gas-field produced water, from pandas tables of lab analyses.

Columns are the command line's CSV columns: one per element, lab ion or gas (``Na``, ``Na+``,
``Cl-``, ``S(6)``, ``CO2``), ``unit``, ``temperature`` (K) and ``pressure`` (Pa) unless
``temperature_unit`` / ``pressure_unit`` say otherwise, and optionally ``density`` (g/cm3),
``name`` and ``description``. Results are the command line's CSV report as columns.
"""

import math
import os

import numpy as np

from ._brinecast import FrameSpeciator as _FrameSpeciator
from ._brinecast import KorvaneError, Method as _Method, Settings as _Settings
from ._brinecast import text_columns as _text_columns

__all__ = ["KorvaneError", "Speciator", "speciate", "speciate_batch"]
__version__ = "0.1.0"
__license__ = "Apache-2.0"


def _choice(kind, choices):
    def convert(value):
        try:
            return choices[value]
        except (KeyError, TypeError):
            raise ValueError(f"{kind}={value!r} is not a choice; use one of "
                             + ", ".join(repr(c) for c in choices)) from None
    return convert


def _positive(kind, cast):
    def convert(value):
        number = cast(value)
        if not number > 0 or (isinstance(number, float) and math.isinf(number)):
            raise ValueError(f"{kind}={value!r} must be a finite number above zero")
        return number
    return convert


def _flag(kind):
    def convert(value):
        if not isinstance(value, bool):
            raise ValueError(f"{kind}={value!r} must be True or False")
        return value
    return convert


def _text(kind):
    def convert(value):
        if not isinstance(value, str):
            raise ValueError(f"{kind}={value!r} must be a string")
        return value
    return convert


# Keyword -> how its value becomes the setting of the same name. Anything left out keeps the
# command line's default, which the compiled module takes from the program itself.
_SETTINGS = {
    "method": _choice("method", {"auto": _Method.auto, "robust": _Method.robust,
                                 "specified": _Method.specified}),
    "activity": _choice("activity", {name: name for name in ("auto", "debye-huckel", "pitzer", "davies",
                                                             "ideal")}),
    "macinnes": _flag("macinnes"),
    "tolerance": _positive("tolerance", float),
    "iteration_limit": _positive("iteration_limit", int),
    "engine_dir": _text("engine_dir"),
    "balance_with": _text("balance_with"),
}

# Keywords of one call, not of the Speciator: units for columns the table lacks, and threads.
_CALL = ("unit", "temperature_unit", "pressure_unit", "threads")


def _split(options):
    settings = {k: v for k, v in options.items() if k in _SETTINGS}
    call = {k: v for k, v in options.items() if k in _CALL}
    unknown = sorted(set(options) - set(settings) - set(call))
    if unknown:
        raise TypeError(f"unknown keyword {unknown[0]!r}; use "
                        + ", ".join(list(_SETTINGS) + list(_CALL)))
    return settings, call


class Speciator:
    """Speciates tables of analyses with fixed solver settings (keywords as ``_SETTINGS``).

    Immutable, and picklable: unpickling rebuilds it from its keywords, so that Dask ships only
    those to a worker and the worker parses the reaction data once.
    """

    __slots__ = ("_options", "_native")

    def __init__(self, **options):
        settings, call = _split(options)
        if call:
            raise TypeError(f"{sorted(call)[0]!r} is a keyword of speciate_batch, not of Speciator")
        native_settings = _Settings()
        for key, value in settings.items():
            setattr(native_settings, key, _SETTINGS[key](value))
        if "engine_dir" not in settings and os.path.isdir(_INSTALLED_ENGINE):
            native_settings.engine_dir = _INSTALLED_ENGINE
        object.__setattr__(self, "_options", dict(settings))
        object.__setattr__(self, "_native", _FrameSpeciator(native_settings))

    def __setattr__(self, name, value):
        raise AttributeError("a Speciator cannot be changed; build another with other keywords")

    def __reduce__(self):
        return (_rebuild, (self._options,))

    def __repr__(self):
        keywords = ", ".join(f"{k}={v!r}" for k, v in self._options.items())
        return f"brinecast.Speciator({keywords})"

    @property
    def options(self):
        """The keywords it was built with."""
        return dict(self._options)

    def speciate_batch(self, columns, unit="", temperature_unit="K", pressure_unit="Pa",
                       threads=0):
        """A DataFrame of results, one row per analysis, with the input's index.

        ``columns`` is a pandas DataFrame or a dict of equal-length arrays. A bad row never
        raises: its ``status`` says ``invalid input`` or ``failed`` and ``message`` says why.
        """
        import pandas as pd

        if isinstance(columns, pd.DataFrame):
            index = columns.index
            items = [(str(name), columns[name]) for name in columns.columns]
        else:
            items = [(str(name), values) for name, values in columns.items()]
            lengths = {len(values) for _, values in items}
            if len(lengths) > 1:
                raise ValueError("the columns are of different lengths "
                                 f"({sorted(lengths)}); give every column one value per analysis")
            index = pd.RangeIndex(lengths.pop() if lengths else 0)
        numbers, texts = {}, {}
        for name, values in items:
            if name in _text_columns:
                texts[name] = ["" if _missing(v) else str(v) for v in values]
            else:
                numbers[name] = _numbers(name, values)
        labels = [str(label) for label in index]
        result = self._native.speciate_columns(labels, numbers, texts, unit, temperature_unit,
                                               pressure_unit, int(threads))
        return pd.DataFrame(dict(result), index=index, copy=False)

    def speciate(self, analysis, **options):
        """One analysis (a dict of column -> value) as a dict of the report's columns.

        Raises ``ValueError`` for an analysis that cannot be read and ``KorvaneError`` when the
        library fails on it; a result whose balances do not close is returned with its status.
        """
        frame = self.speciate_batch({k: [v] for k, v in analysis.items()}, **options)
        row = frame.iloc[0]
        if row["status"] == "invalid input":
            raise ValueError(row["message"])
        if row["status"] == "failed":
            raise KorvaneError(row["message"])
        return {k: v for k, v in row.items() if not (k.endswith(" (mol/kgw)") and _missing(v))}


def _missing(value):
    return value is None or (isinstance(value, float) and math.isnan(value))


def _numbers(name, values):
    try:
        return np.ascontiguousarray(values, dtype=np.float64)
    except (TypeError, ValueError):
        raise ValueError(f"column {name!r} holds values that are not numbers; give amounts, "
                         "temperatures, pressures and densities as numbers (empty as NaN)") from None


def _rebuild(options):
    return Speciator(**options)


# Where `cmake --install` puts the reference density engine, seen from this package:
# <prefix>/lib/brinecast/engines/reference beside <prefix>/lib/python3.X/dist-packages/brinecast.
_INSTALLED_ENGINE = os.path.normpath(os.path.join(os.path.dirname(os.path.abspath(__file__)),
                                                  "..", "..", "..", "brinecast", "engines",
                                                  "reference"))

_default = {}


def _speciator(settings):
    key = tuple(sorted(settings.items()))
    if key not in _default:
        _default[key] = Speciator(**settings)
    return _default[key]


def speciate(analysis, **options):
    """One analysis as a dict of results; see ``Speciator.speciate``."""
    settings, call = _split(options)
    return _speciator(settings).speciate(analysis, **call)


def speciate_batch(columns, **options):
    """A DataFrame of results with the input's index; see ``Speciator.speciate_batch``."""
    settings, call = _split(options)
    return _speciator(settings).speciate_batch(columns, **call)
