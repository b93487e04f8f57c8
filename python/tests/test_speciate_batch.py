import json
import math
import os
import pickle
import subprocess
import threading
import time

import numpy as np
import pandas as pd
import pytest

import brinecast
from conftest import brine_frame

SPECIES = " (mol/kgw)"


def reference(method_code, activity_code):
    """The C++ Speciator's numbers for the catalogue, from the reference program."""
    out = subprocess.run([os.environ["BRINECAST_REFERENCE"], os.environ["BRINECAST_BRINES"],
                          os.environ.get("BRINECAST_ENGINE_DIR") or "/no/engine", str(method_code),
                          str(activity_code)], check=True, capture_output=True, text=True)
    return json.loads(out.stdout)


@pytest.mark.parametrize("method,code,activity,activity_code",
                         [("robust", 1, "debye-huckel", 2), ("auto", 2, "ideal", 0),
                          ("robust", 1, "pitzer", 3)])
def test_results_are_bit_identical_to_the_cpp_speciator(brines, method, code, activity, activity_code):
    expected = reference(code, activity_code)
    compared = 0
    for i, brine in enumerate(brines):
        # One table per brine: its columns in the catalogue's element order, which the sums
        # of the calculation follow, so that the C++ input is the same to the last bit.
        row = brinecast.speciate_batch(brine_frame([brine]), method=method, activity=activity).iloc[0]
        want = expected[brine["name"]]
        if want is None:
            assert row["status"] != "ok", brine["name"]
            continue
        assert row["status"] in ("ok", "not closed"), (brine["name"], row["message"])
        assert row["pH"] == want["pH"], brine["name"]
        for species, molality in want["species"].items():
            assert row[species + SPECIES] == molality, (brine["name"], species)
        compared += 1
    assert compared >= len(brines) // 2, "most reference brines must solve"


def test_bad_rows_stay_in_place_with_their_messages():
    table = pd.DataFrame({
        "Na": [0.1, 0.1, -1.0, 0.1, 0.1],
        "Cl": [0.1, 0.1, 0.1, 0.1, 0.1],
        "unit": ["mol/kgw", "furlongs", "mol/kgw", "mol/kgw", "mol/kgw"],
        "temperature": [298.15, 298.15, 298.15, np.nan, 25.0],
        "temperature_unit": ["K", "K", "K", "K", "C"],
        "pressure": [1.0, 1.0, 1.0, 1.0, 1.0],
    }, index=[10, 20, 30, 40, 50])
    out = brinecast.speciate_batch(table, method="robust", pressure_unit="bar")
    assert list(out.index) == [10, 20, 30, 40, 50]
    assert list(out["status"]) == ["ok", "invalid input", "invalid input", "invalid input", "ok"]
    cases = {20: ['column "unit"', "furlongs"], 30: ['column "Na"', "negative"],
             40: ["temperature", "missing"]}
    for label, parts in cases.items():
        assert out.loc[label, "message"].startswith(f"row {label}: ")
        for part in parts:
            assert part in out.loc[label, "message"]
        assert np.isnan(out.loc[label, "pH"])
    # 25 °C is the same water as 298.15 K.
    assert out.loc[50, "pH"] == out.loc[10, "pH"]
    assert out.loc[10, "message"] == ""


@pytest.mark.parametrize("columns,keywords,problem", [
    ({"Unobtainium": [1.0]}, {}, "not a known column"),
    ({"Na": [0.1], "Na+": [0.1]}, {}, "a second time"),
    ({"Na": [0.1], "Cl": [0.1, 0.2]}, {}, "different lengths"),
    ({"Na": ["lots"]}, {}, "not numbers"),
    ({"Na": [0.1]}, {"method": "fastest"}, "not a choice"),
    ({"Na": [0.1]}, {"tolerance": -1}, "above zero"),
    ({"Na": [0.1]}, {"macinnes": "no"}, "True or False"),
    ({"Na": [0.1]}, {"balance_with": "Xx"}, "not an element or ion to balance with"),
])
def test_a_table_that_no_row_could_fix_is_refused(columns, keywords, problem):
    with pytest.raises(ValueError, match=problem):
        brinecast.speciate_batch(columns, **keywords)


def test_the_pitzer_single_ion_scale_moves_the_ph_and_no_molality(brines):
    frame = brine_frame([b for b in brines if b["name"] == "seawater-like"])
    on = brinecast.speciate_batch(frame, activity="pitzer").iloc[0]
    off = brinecast.speciate_batch(frame, activity="pitzer", macinnes=False).iloc[0]
    assert abs(on["pH"] - off["pH"]) > 0.01
    for column in ("Na+" + SPECIES, "HCO3-" + SPECIES, "MgCO3" + SPECIES):
        assert on[column] == pytest.approx(off[column], rel=1e-8)


def test_unknown_keyword_is_a_type_error():
    with pytest.raises(TypeError, match="activty"):
        brinecast.speciate_batch({"Na": [0.1]}, activty="ideal")


def test_dict_of_arrays_and_single_analysis_agree_with_the_frame(brines):
    frame = brine_frame(brines)
    columns = {name: frame[name].to_numpy() for name in frame.columns}
    by_dict = brinecast.speciate_batch(columns)
    assert list(by_dict.index) == list(range(len(frame)))
    one = brinecast.speciate({k: v for k, v in frame.iloc[1].items() if not pd.isna(v)})
    assert one["pH"] == by_dict.loc[1, "pH"]
    assert one["status"] == by_dict.loc[1, "status"]


def test_single_analysis_raises_what_a_batch_reports():
    with pytest.raises(ValueError, match='column "unit"'):
        brinecast.speciate({"Na": 0.1, "Cl": 0.1, "unit": "furlongs", "temperature": 298.15,
                            "pressure": 101325.0})


def test_a_pickled_speciator_gives_identical_results(brines):
    speciator = brinecast.Speciator(method="robust", tolerance=1e-12)
    copy = pickle.loads(pickle.dumps(speciator))
    assert copy.options == {"method": "robust", "tolerance": 1e-12}
    frame = brine_frame(brines)
    pd.testing.assert_frame_equal(copy.speciate_batch(frame), speciator.speciate_batch(frame))
    with pytest.raises(AttributeError):
        speciator.tolerance = 1.0


def test_the_gil_is_released_while_a_batch_runs():
    rows = 20000
    table = {"Na": np.full(rows, 0.5), "Cl": np.full(rows, 0.5), "unit": ["mol/kgw"] * rows,
             "temperature": np.full(rows, 298.15), "pressure": np.full(rows, 1e5)}
    speciator = brinecast.Speciator()
    ticks = []
    done = threading.Event()

    def tick():
        while not done.is_set():
            ticks.append(time.perf_counter())
            time.sleep(0.001)

    ticker = threading.Thread(target=tick)
    ticker.start()
    try:
        start = time.perf_counter()
        speciator.speciate_batch(table, threads=1)
        end = time.perf_counter()
    finally:
        done.set()
        ticker.join()
    during = [t for t in ticks if start < t < end]
    # Held, the GIL would let the ticker in about once, at the end: a released one lets it run
    # throughout the batch.
    assert len(during) >= 10, f"{len(during)} ticks in {end - start:.3f} s"


def test_a_library_failure_stays_in_its_row_and_raises_alone():
    # Per-litre amounts without a density need the engine, which is not in /nowhere.
    analysis = {"Na": 1000.0, "Cl": 1540.0, "unit": "mg/L", "temperature": 300.0,
                "pressure": 1e5}
    table = {k: [v, v] for k, v in analysis.items()}
    table["density"] = [1.0, np.nan]
    out = brinecast.speciate_batch(table, engine_dir="/nowhere")
    assert list(out["status"]) == ["ok", "failed"]
    assert "engine_dir=DIR" in out.loc[1, "message"]
    assert "--" not in out.loc[1, "message"]
    with pytest.raises(brinecast.KorvaneError, match="could not be loaded"):
        brinecast.speciate(analysis, engine_dir="/nowhere")


def test_saturation_indices_are_columns_where_a_mineral_can_form(brines):
    # Gypsum needs Ca and sulfate: a column holds its SI exactly for the rows that have both.
    frame = brinecast.speciate_batch(brine_frame(brines))
    assert "SI Gypsum" in frame.columns
    for (_, row), brine in zip(frame.iterrows(), brines):
        elements = {name for name, value in brine["elements"] if value > 0}
        can_form = row["status"] == "ok" and {"Ca", "S(6)"} <= elements
        assert math.isfinite(row["SI Gypsum"]) == can_form, brine["name"]


def test_oilfield_units_give_the_same_brine():
    """meq/L, °F and psig are read as the command line reads them: the same brine, the same pH."""
    ions = {"Na+": 490.0, "Cl-": 488.0, "HCO3-": 1.95}
    lab = brinecast.speciate_batch({**{k: [v] for k, v in ions.items()}, "Ca++": [19.6], "SO4--": [19.6],
                                    "temperature": [77.0], "pressure": [0.0], "density": [1.02]},
                                   unit="meq/L", temperature_unit="°F", pressure_unit="psig")
    si = brinecast.speciate_batch({**{k: [v] for k, v in ions.items()}, "Ca++": [9.8], "SO4--": [9.8],
                                   "temperature": [298.15], "pressure": [101325.0], "density": [1.02]},
                                  unit="mmol/L")
    assert lab.loc[0, "status"] == "ok", lab.loc[0, "message"]
    assert lab.loc[0, "pH"] == pytest.approx(si.loc[0, "pH"], abs=1e-9)


def test_measured_ph_and_alkalinity_columns_are_imposed_per_row():
    # Seawater-like with 0.008 eq/kgw more cations than anions at pH 7.5; the last row measures nothing.
    table = pd.DataFrame({
        "Na": [0.5, 0.5, 0.5], "Mg": [0.05, 0.05, 0.05], "Cl": [0.55, 0.55, 0.55],
        "S(6)": [0.02, 0.02, 0.02], "C": [0.002, 0.002, 0.002], "unit": ["mol/kgw"] * 3,
        "temperature": [298.15] * 3, "pressure": [101325.0] * 3,
        "ph": [7.5, 7.5, np.nan], "alkalinity_eq_per_kgw": [np.nan, 0.0025, np.nan],
    })
    out = brinecast.speciate_batch(table, method="robust", balance_with="Cl", activity="debye-huckel")
    assert list(out["status"]) == ["ok", "ok", "ok"]
    assert list(out["pH"][:2]) == [7.5, 7.5]
    assert all(out["charge_imbalance"] < 1e-9)
    # The measured rows close at their pH through the library; the last is balanced beforehand.
    assert out["balance_adjustment_mol_per_kgw"][0] == pytest.approx(0.008, abs=1e-3)
    assert math.isnan(out["balance_adjustment_mol_per_kgw"][2])
    assert out["balanced_with"][2] == "Cl"
    assert out["alkalinity_eq_per_kgw"][1] == pytest.approx(0.0025, rel=1e-9)
    assert out["derived_carbon_mol_per_kgw"][1] > 0.002
    assert math.isnan(out["derived_carbon_mol_per_kgw"][0])


def test_the_programs_lab_columns_give_the_measured_quantities_in_any_alkalinity_unit():
    # 2.5 meq/L of alkalinity in each unit the program reads, titrated at pH 7.5, and the pH
    # closed with a row's own ion; the older "ph" and "alkalinity_eq_per_kgw" names still work.
    units = ["meq/L", "mg/L as HCO3-", "mg/L as CaCO3"]
    table = pd.DataFrame({
        "Na": [0.5] * 3, "Mg": [0.05] * 3, "Cl": [0.55] * 3, "S(6)": [0.02] * 3, "unit": ["mol/kgw"] * 3,
        "temperature": [298.15] * 3, "pressure": [101325.0] * 3, "density": [1.02] * 3, "pH": [7.5] * 3,
        "alkalinity": [2.5, 2.5 * 61.0168, 2.5 * 50.0436], "alkalinity_unit": units, "balance_with": ["Na"] * 3,
    })
    out = brinecast.speciate_batch(table, activity="debye-huckel")
    assert list(out["status"]) == ["ok"] * 3, list(out["message"])
    assert list(out["pH"]) == [7.5] * 3
    assert out["alkalinity_eq_per_kgw"].tolist() == pytest.approx([out["alkalinity_eq_per_kgw"][0]] * 3, rel=1e-4)
    assert 0.0024 < out["alkalinity_eq_per_kgw"][0] < 0.0026  # a little over 1 kg of water per litre
    assert all(out["balance_adjustment_mol_per_kgw"].notna())
    assert all(out["tds_mg_per_kg"] > 30000) and all(out["tds_mg_per_l"] > out["tds_mg_per_kg"])

    older = table.drop(columns=["pH", "alkalinity", "alkalinity_unit", "balance_with"]).assign(
        ph=7.5, alkalinity_eq_per_kgw=out["alkalinity_eq_per_kgw"][0])
    again = brinecast.speciate_batch(older.iloc[:1], activity="debye-huckel", balance_with="Na")
    assert again["derived_carbon_mol_per_kgw"][0] == pytest.approx(out["derived_carbon_mol_per_kgw"][0], rel=1e-12)

    for bad, words in [({"alkalinity_unit": None}, "alkalinity_unit"), ({"ph": 7.5}, '"pH" and "ph"')]:
        broken = table.iloc[:1].drop(columns=[k for k, v in bad.items() if v is None]).assign(
            **{k: v for k, v in bad.items() if v is not None})
        try:
            result = brinecast.speciate_batch(broken)
        except ValueError as e:
            assert words in str(e)
        else:
            assert result["status"][0] == "invalid input" and words in result["message"][0]


def test_auto_activity_is_the_default_and_falls_back_per_row_with_the_reason():
    table = pd.DataFrame({"Na": [1.0, 1.0], "Cl": [1.0, 1.002], "Zn": [np.nan, 0.001], "unit": ["mol/kgw"] * 2,
                          "temperature": [298.15] * 2, "pressure": [101325.0] * 2})
    out = brinecast.speciate_batch(table)
    assert list(out["status"]) == ["ok", "ok"]
    assert list(out["activity_model"]) == ["pitzer", "debye-huckel"]
    assert list(out["activity_note"]) == ["auto", "auto: Pitzer data lack Zn"]
    assert brinecast.speciate_batch(table, activity="pitzer")["status"][1] == "invalid input"
    assert list(brinecast.speciate_batch(table, activity="debye-huckel")["activity_note"]) == ["", ""]
