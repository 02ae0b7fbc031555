#!/usr/bin/env bash
# Line and branch coverage of each parser's files, from replaying the checked-in corpus and
# findings of its fuzz target (clang source-based coverage; doc/fuzzing.md).
#   scripts/fuzz_coverage.sh [target]   report in build/coverage/report/<target>.txt
set -euo pipefail
cd "$(dirname "$0")/.."

BUILD=build/coverage
PROFDATA=${LLVM_PROFDATA:-llvm-profdata-14}
COV=${LLVM_COV:-llvm-cov-14}

# The files each target exists to exercise.
files_of() {
  local lib=pgm/pgmdev
  case "$1" in
    dev_info_file) echo "$lib/dev_info/pgmdev_dev_info_manager.cpp $lib/dev_info/pgmdev_dev_info_lookup.cpp $lib/codec/pgmdev_db_codec.cpp $lib/codec/pgmdev_db_container.cpp" ;;
    dev_info_csv) echo "$lib/dev_info/pgmdev_dev_info_generator.cpp" ;;
    flash_file) echo "$lib/flash/pgmdev_flash_manager.cpp $lib/flash/pgmdev_flash_queries.cpp $lib/codec/pgmdev_db_codec.cpp $lib/codec/pgmdev_db_container.cpp" ;;
    flash_csv) echo "$lib/flash/pgmdev_flash_generator.cpp" ;;
    flash_user_ini) echo "$lib/flash/pgmdev_flash_user_codec.cpp $lib/flash/pgmdev_flash_user_def.cpp" ;;
    flash_ini_file) echo "$lib/flash_ini/pgmdev_flash_ini_file.cpp $lib/flash_ini/pgmdev_flash_ini_codec.cpp $lib/hps/pgmdev_hps_lists.cpp $lib/hps/pgmdev_hps_user_section.h" ;;
    flash_ini_convert) echo "$lib/flash_ini/pgmdev_flash_ini_convert.cpp" ;;
    flash_ini_roundtrip) echo "$lib/flash_ini/pgmdev_flash_ini_file.cpp $lib/flash_ini/pgmdev_flash_ini_codec.cpp $lib/base/pgmdev_file_replace.cpp" ;;
    grammar_payload) echo "$lib/naming/pgmdev_grammar_parse.cpp $lib/naming/pgmdev_naming_blob.cpp $lib/naming/pgmdev_naming_db.cpp" ;;
    opn_payload) echo "$lib/naming/pgmdev_opn_parse.cpp $lib/naming/pgmdev_naming_blob.cpp" ;;
    *) echo "" ;;
  esac
}

cmake -S . -B "$BUILD" -G Ninja -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_COMPILER=clang++ \
  -DCMAKE_CXX_FLAGS="-fprofile-instr-generate -fcoverage-mapping" \
  -DCMAKE_EXE_LINKER_FLAGS="-fprofile-instr-generate" -DPGMDEV_BUILD_BENCH=OFF >/dev/null
targets=${1:-$(for s in fuzz/fuzz_*.cpp; do n=$(basename "$s" .cpp); echo "${n#fuzz_}"; done)}
# Build-time tools are instrumented too; their profiles are of no interest.
LLVM_PROFILE_FILE=/dev/null cmake --build "$BUILD" --target $(for t in $targets; do echo "replay_$t"; done)

mkdir -p "$BUILD/report" "$BUILD/profiles"
printf '%-22s %8s %8s  %s\n' target lines branches files
for t in $targets; do
  rm -f "$BUILD/profiles/$t".*
  LLVM_PROFILE_FILE="$BUILD/profiles/$t.profraw" PGMDEV_DEBUG_LEVEL=0 \
    "$BUILD/tests/replay_$t" "fuzz/corpus/$t" "fuzz/findings/$t" >/dev/null 2>&1
  "$PROFDATA" merge -sparse "$BUILD/profiles/$t.profraw" -o "$BUILD/profiles/$t.profdata"
  files=$(files_of "$t")
  # shellcheck disable=SC2086
  "$COV" report "$BUILD/tests/replay_$t" -instr-profile="$BUILD/profiles/$t.profdata" \
    $files >"$BUILD/report/$t.txt"
  # shellcheck disable=SC2086
  "$COV" show "$BUILD/tests/replay_$t" -instr-profile="$BUILD/profiles/$t.profdata" \
    -show-branches=count $files >"$BUILD/report/$t.show.txt"
  total=$(grep '^TOTAL' "$BUILD/report/$t.txt" || true)
  # TOTAL regions missed cover functions missed cover lines missed cover branches missed cover
  lines=$(echo "$total" | awk '{print $10}')
  branches=$(echo "$total" | awk '{print $13}')
  [ -z "$total" ] && lines=$(awk 'NR==3{print $10}' "$BUILD/report/$t.txt") &&
    branches=$(awk 'NR==3{print $13}' "$BUILD/report/$t.txt")
  printf '%-22s %8s %8s  %s\n' "$t" "$lines" "$branches" "$files"
done
