#!/usr/bin/env python3
"""Fails when an #include "..." line reaches upward through the source layers.

Layers, bottom up: platform/ -> pgm/pgmdev/{base, codec, naming | dev_info | flash,
flash_ini, hps}/ -> h/ -> tools/. Each public header of h/ belongs to the layer whose
objects it declares, so a subsystem may include the public header of a layer it builds on
and no other. The front ends see the public API only (h/ and the platform headers installed
with it): tools/answers that alone, tools/pgmdev and python/ also the answers.
Usage: check_include_order.py SOURCE_DIR
"""
import pathlib
import re
import sys

INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"]+)"')

# What each internal folder may include besides itself and the platform.
BELOW = {
    "base": set(),
    "codec": {"base"},
    "naming": {"base", "codec"},
    "dev_info": {"base", "codec"},
    "flash": {"base", "codec"},
    "flash_ini": {"base", "codec"},
    "hps": {"base", "codec", "flash_ini"},
}

# The layer each public header serves ("api" sits above every subsystem).
PUBLIC = {
    "pgmdev_file_set.h": "base",
    "pgmdev_manager_type.h": "codec",
    "pgmdev_ddb_mgr.h": "naming",
    "pgmdev_mgr_naming.h": "naming",
    "pgmdev_enum_vocabularies.h": "naming",
    "pgmdev_dev_info_manager.h": "dev_info",
    "pgmdev_dev_info_manager_auto_export.h": "dev_info",
    "pgmdev_dev_info_names.h": "dev_info",
    "pgmdev_flash_manager.h": "flash",
    "pgmdev_flash_names.h": "flash",
    "pgmdev_flash_ini.h": "flash_ini",
    "pgmdev_hps_table.h": "hps",
    "pgmdev_hps_mgr.h": "hps",
    "pgmdev_hps_names.h": "hps",
    "pgmdev_sfdp.h": "flash",
    "pgmdev_flash_definition.h": "flash",
    "pgmdev_mgr.h": "api",
    "pgmdev_catalog_names.h": "api",
    "pgmdev_encoded_messages.h": "api",
    "pgmdev_static_tables.h": "api",
}

# Headers the build writes; only these sources may use them.
GENERATED = re.compile(r"^(catalog_\w+_csv\.h|catalog_tables_size\.h|pgmdev_build_config\.h)$")
BUILD_CONFIG_USERS = ("platform/", "pgm/pgmdev/")


def headers_in(folder):
    return {p.name for p in folder.glob("*.h")}


def installed_platform(root):
    """platform.h and what it includes, installed beside the public headers."""
    header = root / "platform" / "platform.h"
    if not header.is_file():
        return set()
    names = {m.group(1) for m in map(INCLUDE.match, header.read_text().splitlines()) if m}
    return names | {"platform.h"}


def check(root):
    platform = headers_in(root / "platform")
    public = headers_in(root / "h")
    answers = headers_in(root / "tools" / "answers")
    api = public | installed_platform(root)
    front_ends = ("tools/answers/", "tools/pgmdev/", "python/")
    problems = []
    unknown = sorted(public - PUBLIC.keys())
    if unknown:
        problems.append(f"h/: no layer assigned to {', '.join(unknown)} in {__file__}")

    def verdict(rel, target, local):
        folder = rel.split("/")[0]
        name = target.split("/")[-1]
        if GENERATED.match(target):
            if name == "pgmdev_build_config.h" and not rel.startswith(BUILD_CONFIG_USERS):
                return "a build-tree header"
            return None
        if rel.startswith(front_ends):
            if target in api or target in local:
                return None
            if rel.startswith("tools/answers/"):
                return "an internal header (the answers use the public API only)"
            if target in answers:
                return None
            if rel.startswith("tools/pgmdev/"):
                return "an internal header (the CLI uses the public API and the answers only)"
            return "an internal header (the module uses the public API and the answers only)"
        if target in platform:
            return None
        if folder == "platform":
            return "above the platform"
        if folder == "h":
            if "/" in target or target not in public:
                return "an internal header in the public API"
            return None
        if folder == "tools":
            return None  # build-time tools link the static library
        # Inside pgm/pgmdev/<layer>/.
        layer = rel.split("/")[2]
        allowed = BELOW[layer] | {layer}
        if "/" in target:
            used = target.split("/")[0]
            if used in allowed:
                return None
            return f"{used}/ above or beside {layer}/"
        if target in public:
            used = PUBLIC.get(target, "api")
            if used in allowed:
                return None
            return f"the public header of {used} from {layer}/"
        return "not included by folder"

    for pattern in ("platform/*", "h/*", "pgm/pgmdev/*/*", "tools/*/*", "python/*"):
        for path in sorted(root.glob(pattern)):
            if path.suffix not in (".h", ".cpp"):
                continue
            rel = path.relative_to(root).as_posix()
            local = headers_in(path.parent)
            for number, line in enumerate(path.read_text().splitlines(), 1):
                match = INCLUDE.match(line)
                if not match:
                    continue
                why = verdict(rel, match.group(1), local)
                if why:
                    problems.append(f"{rel}:{number}: includes \"{match.group(1)}\": {why}")
    return problems


def main():
    root = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else ".").resolve()
    if not (root / "pgm/pgmdev").is_dir():
        print(f"{root}: no pgm/pgmdev folder", file=sys.stderr)
        return 2
    stray = [p.name for p in (root / "pgm/pgmdev").iterdir() if p.is_file()]
    problems = check(root)
    if stray:
        problems.append(f"pgm/pgmdev/: files beside the subsystem folders: {', '.join(stray)}")
    for problem in problems:
        print(problem)
    return 1 if problems else 0


if __name__ == "__main__":
    sys.exit(main())
