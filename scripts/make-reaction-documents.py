#!/usr/bin/env python3
"""Writes the two reaction documents (src/database/data/reactions-1.json, reactions-2.json).

The committed JSON files are the data the library carries; this script is how they were first
laid out, from the reaction table (tests/database/data/reaction_records.tsv) and the transport and
molar-volume table (dw_vm.tsv). The "stoich" object of every record is derived from its reaction
text: reactants negative, products positive, a master record "X = X" as {X: 1}.

Usage: scripts/make-reaction-documents.py [path/to/dw_vm.tsv]
"""
import csv
import json
import os
import re
import sys

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
REACTIONS = os.path.join(ROOT, "tests", "database", "data", "reaction_records.tsv")
DW_VM = os.path.join(ROOT, "..", "shared", "data", "dw_vm.tsv")
OUT_DIR = os.path.join(ROOT, "src", "database", "data")

# Reference-only keys the library skips; they keep the parser's ignore rule honest on real data.
EXTRA_KEYS = {
    "Na+ = Na+": [("gamma2", "[4.08, 0.082]")],
    "H+ = H+": [("comment", json.dumps(
        "Dw(TK) = 9.31e-9 * exp(1000/TK - 1000/298.15) * TK * 0.89/(298.15 * viscos)"))],
}
# Key order inside a record carries no meaning; one record lists "analytical" first to show it.
ANALYTICAL_FIRST = {"Na+ + H+ + CO3-2 = NaHCO3"}


def rows(path):
    with open(path, newline="") as f:
        lines = [l for l in f if not l.startswith("#")]
    return list(csv.DictReader(lines, delimiter="\t"))


def json_number(text):
    """A decimal literal as JSON accepts it (".5" -> "0.5"), value unchanged."""
    text = text.strip()
    text = re.sub(r"^(-?)\.", r"\g<1>0.", text)
    float(text)
    return text


def number_list(text, separator):
    items = [t for t in text.split(separator) if t.strip()]
    return "[" + ", ".join(json_number(t) for t in items) + "]"


def side(terms, sign):
    result = []
    for term in terms.split(" + "):
        m = re.match(r"^(\d+)\s*(\S+)$", term.strip())
        count, species = (int(m.group(1)), m.group(2)) if m else (1, term.strip())
        result.append((species, sign * count))
    return result


def stoich(reaction):
    left, right = reaction.split(" = ")
    if left == right:
        return [(left, 1)]
    entries = side(left, -1) + side(right, 1)
    names = [n for n, _ in entries]
    assert len(names) == len(set(names)), reaction
    return entries


def record_text(reaction, row, dw, vm):
    fields = [("reaction", json.dumps(reaction)),
              ("stoich", "{" + ", ".join(f"{json.dumps(n)}: {c}" for n, c in stoich(reaction)) + "}")]
    numeric = []
    if row["log_k"]:
        numeric.append(("log_k", json_number(row["log_k"])))
    if row["delta_h"]:
        numeric.append(("delta_h", json_number(row["delta_h"])))
    if row["analytical"]:
        numeric.append(("analytical", number_list(row["analytical"], ",")))
    if reaction in ANALYTICAL_FIRST:
        numeric.sort(key=lambda kv: kv[0] != "analytical")
    fields += numeric
    if dw:
        fields.append(("dw", number_list(dw, " ")))
    if vm:
        fields.append(("Vm", number_list(vm, " ")))
    if row["gamma"]:
        fields.append(("gamma", number_list(row["gamma"], ",")))
    fields += EXTRA_KEYS.get(reaction, [])
    return "  {\n" + ",\n".join(f"    {json.dumps(k)}: {v}" for k, v in fields) + "\n  }"


def main():
    dw_vm_path = sys.argv[1] if len(sys.argv) > 1 else DW_VM
    reactions = rows(REACTIONS)
    transport = rows(dw_vm_path)
    assert len(reactions) == len(transport), "the two tables list different records"
    documents = {"1": [], "2": []}
    for row, extra in zip(reactions, transport):
        assert row["reaction"] == extra["reaction"] and row["document"] == extra["document"], row
        documents[row["document"]].append(record_text(row["reaction"], row, extra["dw"], extra["Vm"]))
    for number, records in documents.items():
        text = "[\n" + ",\n".join(records) + "\n]\n"
        json.loads(text)
        with open(os.path.join(OUT_DIR, f"reactions-{number}.json"), "w") as f:
            f.write(text)


if __name__ == "__main__":
    main()
