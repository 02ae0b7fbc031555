#!/usr/bin/env bash
# A short tour of the pgmdev tool over the shipped data (run by `make demo` after the build).
set -euo pipefail

build="${1:-build/default}"
pgmdev="$build/tools/pgmdev/pgmdev"
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
# A site's own chip: define it by dialogue, then check and use the value it prints.
answers='1\nAcme\nAC25Q128\nEF\n2\n40\n1\n1\n0\nY\nN\nN\nN\nN\nN\n1\n128\n64\n200\n3\n3000\n1C\n1C\n0\n-1\n-1\nN\n3.3V\n'
printf '\n$ pgmdev flash define   (answers from a file)\n'
value="$(printf "$answers" | "$pgmdev" flash define | sed -n 's/.*INI : //p')"
echo "value: $value"
step flash check "$value"
printf '\n$ PGM_3RD_PARTY_FLASH_INI=... pgmdev flash identify --device-id 0140EF\n'
PGM_3RD_PARTY_FLASH_INI="$value" "$pgmdev" flash identify --device-id 0140EF
# HPS boot flash: a user definition in a scratch module folder.
export PGMDEV_MODULE_DIR="$scratch"
printf '\n$ pgmdev hps add nand   (answers: 2C, 68, 4096)\n'
printf '2C\n68\n4096\n' | "$pgmdev" hps add nand
step hps list nand
step hps remove nand 1
printf '\n$ pgmdev dump %s | sed -n 1,20p\n' "$build/share/pgmdev/programmer/pgm_flash.pcf"
"$pgmdev" dump "$build/share/pgmdev/programmer/pgm_flash.pcf" | sed -n 1,20p
printf '\n$ pgmdev device --device ZQ16   (a typing error)\n'
"$pgmdev" device --device ZQ16 || true
