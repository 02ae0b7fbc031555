#!/usr/bin/env python3
"""Derives the naming sources (eight grammar sections and the OPN slot table) from the
device catalogue in data/catalog/.

Deterministic: the OPN slots come from a fixed-seed splitmix64 stream and everything else
follows the catalogue, so each run writes byte-identical files. Standard library only.
    python3 data/naming/generate.py [catalog-dir] [output-dir]
The file format is described in data/naming/README.md.
"""

import csv
import importlib.util
import os
import re
import sys

SEED = 0x0B_4E_2026
OPN_SLOTS = 18830
OPN_ASSIGNED = 2999
NONE = "NONE"

# Section number, file stem. The packer takes the sections in this order.
SECTIONS = [
    (0, "package_name"),
    (1, "pgm_name"),
    (2, "pgm_part_pcf"),
    (3, "pgm_family_pcf"),
    (4, "dev_part_pcf"),
    (5, "dev_family_pcf"),
    (6, "pcf_family_pcf"),
    (7, "family"),
]

NAME_RE = re.compile(r"^[A-Z0-9_]{1,37}$")
PART_NAME_RE = re.compile(r"^[A-Z0-9_-]{1,37}$")


def load_rng():
    """The catalogue generator's splitmix64 stream, so both generators draw alike."""
    path = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "catalog", "generate.py")
    found = importlib.util.spec_from_file_location("catalog_generate", path)
    module = importlib.util.module_from_spec(found)
    found.loader.exec_module(module)
    return module.Rng


Rng = load_rng()


def read_csv(path):
    with open(path, newline="") as f:
        return list(csv.DictReader(f))


class Catalogue:
    def __init__(self, directory):
        self.families = read_csv(os.path.join(directory, "families.csv"))
        self.devices = read_csv(os.path.join(directory, "devices.csv"))
        self.parts = read_csv(os.path.join(directory, "parts.csv"))
        # The generic entries (last rows) name no real product and stay out of the grammar.
        self.families = [f for f in self.families if f["kind"] != "GENERIC"]
        self.family_by_enum = {f["family_enum"]: f for f in self.families}
        self.devices = [d for d in self.devices if d["family_enum"] in self.family_by_enum]
        self.device_by_enum = {d["device_enum"]: d for d in self.devices}
        self.parts = [p for p in self.parts if p["device_enum"] in self.device_by_enum]

    def family_of_device(self, device):
        return self.family_by_enum[device["family_enum"]]


class Section:
    """An ordered mapping key -> list, refusing a string under two keys."""

    def __init__(self, number):
        self.number = number
        self.entries = {}
        self.owner = {}

    def add(self, key, text):
        previous = self.owner.setdefault(text, key)
        if previous != key:
            raise SystemExit(f"section {self.number}: {text} under {previous} and {key}")
        entry = self.entries.setdefault(key, [])
        if text not in entry:
            entry.append(text)

    def check(self):
        pattern = PART_NAME_RE if self.number == 0 else NAME_RE
        for key, texts in self.entries.items():
            for name in [key] + texts:
                if not pattern.match(name):
                    raise SystemExit(f"section {self.number}: bad name {name!r}")


def upper(text):
    return text.upper()


def build_sections(cat):
    s = [Section(n) for n, _ in SECTIONS]
    pgm_device = {}
    for part in cat.parts:
        s[0].add(part["package_name"], part["part_name"])
        s[1].add(part["pgm_name"], part["package_name"])
        pgm_device[part["pgm_name"]] = cat.device_by_enum[part["device_enum"]]
    # Programmer pcf names: CPLDs have no per-die programmer file, configuration devices
    # no family file; those programmer names are collected under NONE.
    for pgm, device in sorted(pgm_device.items()):
        family = cat.family_of_device(device)
        s[2].add(NONE if family["kind"] == "CPLD" else upper(device["die_pcf"]), pgm)
        s[3].add(NONE if family["kind"] == "CONFIG" else upper(family["family_pcf"]), pgm)
    # Device pcf names: configuration devices share no die file, CPLDs no family file.
    for device in cat.devices:
        family = cat.family_of_device(device)
        name = upper(device["pcf_name"])
        s[4].add(NONE if family["kind"] == "CONFIG" else upper(device["die_pcf"]), name)
        s[5].add(NONE if family["kind"] == "CPLD" else upper(family["family_pcf"]), name)
    # pcf family files describe the dies of the first family of each line.
    first_family = {}
    for family in cat.families:
        first_family.setdefault(family["line"], family["family_enum"])
    for device in cat.devices:
        family = cat.family_of_device(device)
        if family["kind"] in ("FPGA", "SOC") and first_family[family["line"]] == family["family_enum"]:
            s[6].add(upper(family["family_pcf"]), upper(device["die_pcf"]))
    for device in cat.devices:
        family = cat.family_of_device(device)
        if family["kind"] != "CONFIG":
            s[7].add(family["family_name"], upper(device["die_pcf"]))
    for section in s:
        section.check()
    return s


def assign_opn_slots(cat):
    rng = Rng(SEED)
    candidates = [p for p in cat.parts if p["released"] == "1" and p["hidden"] == "0"]
    rng.shuffle(candidates)
    chosen = candidates[:OPN_ASSIGNED]
    slots = list(range(OPN_SLOTS))
    rng.shuffle(slots)
    return sorted(zip(slots[:OPN_ASSIGNED], chosen), key=lambda pair: pair[0])


def write_section(path, number, stem, section):
    with open(path, "w", newline="\n") as f:
        f.write(f"# Grammar section {number} ({stem}); generated by data/naming/generate.py.\n")
        f.write("# One entry per line: the key, then its list, separated by single blanks.\n")
        for key in sorted(section.entries, key=lambda k: k.encode()):
            f.write(" ".join([key] + section.entries[key]) + "\n")


def write_opn(path, assigned):
    with open(path, "w", newline="\n") as f:
        f.write("# OPN slot table; generated by data/naming/generate.py.\n")
        f.write("# 'slots N' gives the table size; then one line per assigned slot:\n")
        f.write("# slot number, part enumeration, part name. Other slots are unassigned (0).\n")
        f.write(f"slots {OPN_SLOTS}\n")
        for slot, part in assigned:
            f.write(f"{slot} {part['part_enum']} {part['part_name']}\n")


def main():
    here = os.path.dirname(os.path.abspath(__file__))
    catalog_dir = sys.argv[1] if len(sys.argv) > 1 else os.path.join(here, "..", "catalog")
    out_dir = sys.argv[2] if len(sys.argv) > 2 else here
    cat = Catalogue(catalog_dir)
    sections = build_sections(cat)
    for (number, stem), section in zip(SECTIONS, sections):
        write_section(os.path.join(out_dir, f"grammar_{number}_{stem}.txt"), number, stem, section)
        strings = sum(len(v) for v in section.entries.values())
        print(f"section {number} {stem}: {len(section.entries)} keys, {strings} strings")
    assigned = assign_opn_slots(cat)
    write_opn(os.path.join(out_dir, "opn_slots.txt"), assigned)
    print(f"opn: {OPN_SLOTS} slots, {len(assigned)} assigned")


if __name__ == "__main__":
    main()
