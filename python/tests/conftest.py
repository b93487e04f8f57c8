import json
import os

import pytest

# The brine catalogue's unit codes as the names a table gives them.
UNIT_NAMES = {1: "mol/kgw", 2: "mmol/kgw", 3: "mmol/L", 4: "mg/L", 5: "mg/kg"}


@pytest.fixture(scope="session")
def brines():
    with open(os.environ["BRINECAST_BRINES"]) as f:
        return json.load(f)


def brine_frame(brines):
    """The catalogue as a table with the command line's columns, one row per brine."""
    import pandas as pd

    rows = []
    for b in brines:
        row = {"name": b["name"], "unit": UNIT_NAMES[b["unit"]],
               "temperature": b["temperatureK"], "pressure": 101325.0}
        row.update({name: value for name, value in b["elements"]})
        row.update({name: value for name, value in b["gases"]})
        rows.append(row)
    return pd.DataFrame(rows, index=[f"brine-{i}" for i in range(len(rows))])
