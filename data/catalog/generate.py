#!/usr/bin/env python3
"""Generates the invented device catalogue: families.csv, devices.csv and parts.csv.

Deterministic: a fixed-seed splitmix64 stream drives every choice, so each run writes
byte-identical files. Standard library only. Run from anywhere:
    python3 data/catalog/generate.py [output-dir]
"""

import os
import sys

SEED = 0x5EED_C0DE_2026

# Scale of the shipped catalogue.
FAMILY_COUNT = 71
DEVICE_COUNT = 989
PGM_NAME_COUNT = 2304
PACKAGE_NAME_COUNT = 3427
PART_COUNT = 15988
GENERIC_NAME = "GENERIC"

# Product lines: code, line name, kind, number of families, package separator.
# The configuration-device line has no packages: its parts are named by the device alone.
LINES = [
    ("ZQ", "ZORQA", "FPGA", 12, ""),
    ("KX", "KALIX", "FPGA", 10, ""),
    ("VR", "VERANT", "FPGA", 9, ""),
    ("NL", "NOLTA", "CPLD", 8, "-"),
    ("TM", "TAMRIS", "FPGA", 8, ""),
    ("HX", "HEXOR", "SOC", 7, ""),
    ("PD", "PADRO", "FPGA", 6, ""),
    ("RB", "RUBEL", "FPGA", 5, ""),
    ("GL", "GALMO", "CPLD", 4, ""),
    ("CF", "CONFLEX", "CONFIG", 2, ""),
]
CONFIG_KIND = "CONFIG"
CONFIG_DEVICES = 12  # one part each, full name = programmer name = device name

ROMAN = ["I", "II", "III", "IV", "V", "VI", "VII", "VIII", "IX", "X"]
SUBTYPES = ["", "E", "GX", "LP", "SX", "GT"]
PREFIX_LETTERS = "ABCDEGHJKLMNPRSTUVWXYZ"
CAPACITIES = [4, 8, 10, 12, 16, 20, 25, 30, 35, 40, 50, 60, 70, 80, 100, 120, 150, 160, 200,
              220, 250, 270, 300, 320, 360, 400, 450, 500, 550, 600, 660, 700, 800, 900, 1000,
              1100, 1200, 1500, 1800, 2000, 2200, 2500, 2800, 3000, 3500, 4000, 4500, 5000]
# Programmer-name variants of one device (same die, different feature set).
VARIANTS = ["A", "S", "D", "K", "N", "R", "X"]
# Package codes: a letter for the package style, a number for its size.
PACKAGE_POOL = {
    "FPGA": ["M8", "M11", "U15", "U19", "F17", "F23", "F27", "F29", "F31", "F35", "F40",
             "F45", "B12", "E14", "Q8"],
    "SOC": ["U19", "U23", "F27", "F31", "F35", "F40", "F45", "B14"],
    "CPLD": ["T10", "T14", "Q8", "Q10", "M6", "M8", "E14", "W4", "W6"],
}
TEMPERATURES = ["C", "I", "A", "E", "M"]


class Rng:
    """splitmix64: small, fast and identical on every Python version."""

    def __init__(self, seed):
        self.state = seed & 0xFFFFFFFFFFFFFFFF

    def next64(self):
        self.state = (self.state + 0x9E3779B97F4A7C15) & 0xFFFFFFFFFFFFFFFF
        z = self.state
        z = ((z ^ (z >> 30)) * 0xBF58476D1CE4E5B9) & 0xFFFFFFFFFFFFFFFF
        z = ((z ^ (z >> 27)) * 0x94D049BB133111EB) & 0xFFFFFFFFFFFFFFFF
        return z ^ (z >> 31)

    def below(self, n):
        return self.next64() % n

    def unit(self):
        return (self.next64() >> 11) / float(1 << 53)

    def sample_sorted(self, items, k):
        pool = list(items)
        picked = []
        for _ in range(k):
            picked.append(pool.pop(self.below(len(pool))))
        return sorted(picked, key=items.index)

    def shuffle(self, items):
        for i in range(len(items) - 1, 0, -1):
            j = self.below(i + 1)
            items[i], items[j] = items[j], items[i]


def allocate(rng, total, caps):
    """Splits `total` over len(caps) slots, each 1..cap, summing exactly to `total`."""
    n = len(caps)
    assert n <= total <= sum(caps), (n, total, sum(caps))
    weights = [0.2 + rng.unit() * rng.unit() * 3.0 for _ in range(n)]
    scale = (total - n) / sum(weights)
    counts = [min(caps[i], 1 + int(weights[i] * scale)) for i in range(n)]
    while sum(counts) < total:
        i = rng.below(n)
        if counts[i] < caps[i]:
            counts[i] += 1
    while sum(counts) > total:
        i = rng.below(n)
        if counts[i] > 1:
            counts[i] -= 1
    return counts


def make_families(rng):
    families = []
    for code, line, kind, count, sep in LINES:
        names = set()
        for index in range(count):
            generation = index * 2 // 3
            while True:
                subtype = SUBTYPES[rng.below(len(SUBTYPES))] if index % 3 else ""
                name = line + "_" + ROMAN[generation] + ("_" + subtype if subtype else "")
                if name not in names:
                    break
            names.add(name)
            prefix = code if index == 0 else code + PREFIX_LETTERS[index - 1]
            families.append({"name": name, "line": line, "kind": kind, "prefix": prefix,
                             "family_pcf": code.lower() + "_family", "sep": sep})
    assert len(families) == FAMILY_COUNT
    return families


def family_combos(rng, family):
    """The speed/temperature/power suffixes one family sells, mainstream first."""
    temps = TEMPERATURES[:2 + rng.below(3)]
    first_speed = 1 + rng.below(6)
    speeds = [str(first_speed + i) for i in range(3 + rng.below(2))]
    powers = ["", "L"] if rng.below(3) == 0 else [""]
    return [(t, s, p) for p in powers for t in temps for s in speeds]


def make_devices(rng, families):
    config = [f for f in families if f["kind"] == CONFIG_KIND]
    others = [f for f in families if f["kind"] != CONFIG_KIND]
    per_family = allocate(rng, DEVICE_COUNT - CONFIG_DEVICES, [30] * len(others))
    config_split = [CONFIG_DEVICES // 2, CONFIG_DEVICES - CONFIG_DEVICES // 2]
    counts = dict(zip((f["name"] for f in others), per_family))
    counts.update(zip((f["name"] for f in config), config_split))
    devices = []
    for family_enum, family in enumerate(families, start=1):
        family["combos"] = family_combos(rng, family)
        pool = PACKAGE_POOL.get(family["kind"], [])
        family["packages"] = rng.sample_sorted(pool, 4 + rng.below(4)) if pool else []
        count = counts[family["name"]]
        start = rng.below(len(CAPACITIES) - count + 1)
        capacities = CAPACITIES[start:start + count]
        for die_index, capacity in enumerate(capacities):
            name = family["prefix"] + str(capacity)
            devices.append({"name": name, "family_enum": family_enum, "family": family,
                            "pcf_name": name.lower(),
                            "die_pcf": family["prefix"].lower() + str(die_index // 3 + 1)})
    assert len(devices) == DEVICE_COUNT
    return devices


def make_pgm_names(rng, devices):
    packaged = [d for d in devices if d["family"]["packages"]]
    counts = allocate(rng, PGM_NAME_COUNT - CONFIG_DEVICES, [1 + len(VARIANTS)] * len(packaged))
    pgm_names = []
    for device_enum, device in enumerate(devices, start=1):
        device["enum"] = device_enum
        if not device["family"]["packages"]:
            pgm_names.append({"name": device["name"], "device": device})
            continue
        variants = [""] + rng.sample_sorted(VARIANTS, counts[packaged.index(device)] - 1)
        for variant in variants:
            pgm_names.append({"name": device["name"] + variant, "device": device})
    assert len(pgm_names) == PGM_NAME_COUNT
    return pgm_names


def make_package_names(rng, pgm_names):
    packaged = [p for p in pgm_names if p["device"]["family"]["packages"]]
    caps = [len(p["device"]["family"]["packages"]) for p in packaged]
    counts = allocate(rng, PACKAGE_NAME_COUNT - CONFIG_DEVICES, caps)
    index = {id(p): i for i, p in enumerate(packaged)}
    packages = []
    for pgm in pgm_names:
        family = pgm["device"]["family"]
        if not family["packages"]:
            packages.append({"pgm": pgm, "package": "", "name": pgm["name"]})
            continue
        codes = family["packages"]
        count = counts[index[id(pgm)]]
        start = rng.below(len(codes) - count + 1)
        for code in codes[start:start + count]:
            packages.append({"pgm": pgm, "package": code, "name": pgm["name"] + code})
    assert len(packages) == PACKAGE_NAME_COUNT
    return packages


def make_parts(rng, packages):
    packaged = [p for p in packages if p["package"]]
    caps = [len(p["pgm"]["device"]["family"]["combos"]) for p in packaged]
    counts = allocate(rng, PART_COUNT - CONFIG_DEVICES, caps)
    index = {id(p): i for i, p in enumerate(packaged)}
    parts = []
    for package in packages:
        device = package["pgm"]["device"]
        family = device["family"]
        if not package["package"]:
            combos = [("", "", "")]
        else:
            count = counts[index[id(package)]]
            combos = family["combos"][:1] + rng.sample_sorted(family["combos"][1:], count - 1)
        for rank, (temp, speed, power) in enumerate(combos):
            suffix = (family["sep"] + temp + speed + power) if temp else ""
            released = rng.unit() < 0.9
            hidden = rng.unit() < 0.04
            preferred = released and not hidden and (rank == 0 or rng.unit() < 0.2)
            parts.append({"name": package["name"] + suffix, "device": device,
                          "pgm": package["pgm"]["name"], "package": package["package"],
                          "package_name": package["name"], "suffix": suffix, "speed": speed,
                          "temperature": temp, "power": power, "released": released,
                          "preferred": preferred, "hidden": hidden})
    assert len(parts) == PART_COUNT
    return parts


def check_unique(names, what):
    seen = set()
    for name in names:
        key = name.upper()
        assert key not in seen, "duplicate %s %s" % (what, name)
        assert 0 < len(name) <= 37, name
        seen.add(key)


def check(families, devices, pgm_names, packages, parts):
    check_unique([f["name"] for f in families] + [GENERIC_NAME], "family")
    check_unique([d["name"] for d in devices] + [GENERIC_NAME], "device")
    check_unique([p["name"] for p in pgm_names], "programmer name")
    check_unique([p["name"] for p in packages], "package name")
    check_unique([p["name"] for p in parts] + [GENERIC_NAME], "part")
    allowed = set("ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_-")
    for part in parts:
        assert set(part["name"]) <= allowed, part["name"]
        assert part["name"] == part["package_name"] + part["suffix"]
        assert part["package_name"] == part["pgm"] + part["package"]


def flag(value):
    return "1" if value else "0"


def write_csv(path, header, rows):
    with open(path, "w", encoding="ascii", newline="\n") as out:
        out.write(",".join(header) + "\n")
        for row in rows:
            out.write(",".join(str(cell) for cell in row) + "\n")


def main():
    out_dir = sys.argv[1] if len(sys.argv) > 1 else os.path.dirname(os.path.abspath(__file__))
    rng = Rng(SEED)
    families = make_families(rng)
    devices = make_devices(rng, families)
    pgm_names = make_pgm_names(rng, devices)
    packages = make_package_names(rng, pgm_names)
    parts = make_parts(rng, packages)
    check(families, devices, pgm_names, packages, parts)

    generic_family = FAMILY_COUNT + 1
    generic_device = DEVICE_COUNT + 1
    write_csv(os.path.join(out_dir, "families.csv"),
              ["family_enum", "family_name", "line", "kind", "device_prefix", "family_pcf"],
              [[i, f["name"], f["line"], f["kind"], f["prefix"], f["family_pcf"]]
               for i, f in enumerate(families, start=1)] +
              [[generic_family, GENERIC_NAME, GENERIC_NAME, GENERIC_NAME, "",
                "generic_family"]])
    write_csv(os.path.join(out_dir, "devices.csv"),
              ["device_enum", "device_name", "family_enum", "pcf_name", "die_pcf"],
              [[d["enum"], d["name"], d["family_enum"], d["pcf_name"], d["die_pcf"]]
               for d in devices] +
              [[generic_device, GENERIC_NAME, generic_family, "generic", "generic"]])
    write_csv(os.path.join(out_dir, "parts.csv"),
              ["part_enum", "part_name", "device_enum", "pgm_name", "package", "package_name",
               "suffix", "speed", "temperature", "power", "released", "preferred", "hidden"],
              [[i, p["name"], p["device"]["enum"], p["pgm"], p["package"], p["package_name"],
                p["suffix"], p["speed"], p["temperature"], p["power"], flag(p["released"]),
                flag(p["preferred"]), flag(p["hidden"])]
               for i, p in enumerate(parts, start=1)] +
              [[PART_COUNT + 1, GENERIC_NAME, generic_device, GENERIC_NAME, "", GENERIC_NAME,
                "", "", "", "", "0", "0", "0"]])


if __name__ == "__main__":
    main()
