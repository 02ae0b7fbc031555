#!/usr/bin/env bash
# A short tour of the pgmdev tool over the shipped data (run by `make demo` after the build).
# Any failing step stops the tour with its exit code; the CTest demo_tour runs it that way.
set -euo pipefail

root="$(cd "$(dirname "$0")/.." && pwd)"
build="$(cd "${1:-$root/build/default}" && pwd)"
pgmdev="$build/tools/pgmdev/pgmdev"
cd "$root"
scratch="$(mktemp -d)"
trap 'rm -rf "$scratch"' EXIT

step() {
  printf '\n$ pgmdev %s\n' "$*"
  "$pgmdev" "$@"
}

step info
step generate all --data data --out "$scratch/share"
step catalog devices --family ZORQA_I
step name ZQ160SM8
step opn 2
step device --part ZQ160M8C6
step flash identify --device-id EF4018 --device-id C22018
step flash list
step flash sfdp examples/w25q80bl_sfdp.hex --id EF4014
# A site's own chip: define it by dialogue (questions on standard error, the value alone on
# standard output), then check and use the value.
printf '\n$ pgmdev flash define < examples/flash_define_answers.txt 2>/dev/null\n'
value="$("$pgmdev" flash define < examples/flash_define_answers.txt 2>/dev/null)"
echo "$value"
step flash check "$value"
printf '\n$ PGM_3RD_PARTY_FLASH_INI=... pgmdev flash identify --device-id 0140EF\n'
PGM_3RD_PARTY_FLASH_INI="$value" "$pgmdev" flash identify --device-id 0140EF
# HPS boot flash: a user definition in a scratch module folder.
export PGMDEV_MODULE_DIR="$scratch"
printf '\n$ pgmdev hps add nand < examples/hps_nand_answers.txt\n'
"$pgmdev" hps add nand < examples/hps_nand_answers.txt
step hps list nand
step hps remove nand 1
printf '\n$ pgmdev dump share/pgmdev/programmer/pgm_flash.pcf | head -n 20\n'
"$pgmdev" dump "$scratch/share/programmer/pgm_flash.pcf" > "$scratch/dump.json"
head -n 20 "$scratch/dump.json"
printf '\n$ pgmdev device --device ZQ16   (a typing error)\n'
# The tool must refuse it (exit 1) with suggestions; anything else fails the tour.
status=0
"$pgmdev" device --device ZQ16 || status=$?
[ "$status" -eq 1 ]
