#!/usr/bin/env bash
# Fuzzing campaigns over the libFuzzer targets of the fuzz preset (doc/fuzzing.md).
#   scripts/fuzz.sh smoke [seconds]     every target for a short run (CI), default 30 s each
#   scripts/fuzz.sh long [seconds] [t]  the long campaign, default 600 s per target
#   scripts/fuzz.sh merge [t]           minimise fuzz/corpus/<t> with what the campaign found
#   scripts/fuzz.sh seeds               rewrite the seed inputs from the shipped data
#   scripts/fuzz.sh coverage            line and branch coverage of each target's parser files
# Runs one fuzzer at a time (the machine is shared), niced, one worker each.
set -euo pipefail
cd "$(dirname "$0")/.."

FUZZ_BUILD=build/fuzz
WORK=${FUZZ_WORK:-build/fuzz/campaign}
# libFuzzer timeout per input. A run on a busy shared machine can stall for a second;
# every timeout is replayed by hand, and the slowest input of each run is reported.
TIMEOUT=${FUZZ_TIMEOUT:-5}

targets() {
  if [ $# -gt 0 ] && [ -n "$1" ]; then echo "$1"; return; fi
  for source in fuzz/fuzz_*.cpp; do
    name=$(basename "$source" .cpp)
    echo "${name#fuzz_}"
  done
}

# FUZZ_NO_BUILD=1 runs the binaries as built (for example while the tree is being edited).
build_fuzz() {
  [ -n "${FUZZ_NO_BUILD:-}" ] && return
  cmake --preset fuzz >/dev/null
  cmake --build --preset fuzz --target fuzz_targets
}

# run <target> <seconds> <output corpus>: one in-process run; a crash, leak, timeout or
# uncaught exception leaves an artifact in $WORK/artifacts/<target>/ and fails.
run() {
  local target=$1 seconds=$2 corpus=$3
  local artifacts="$WORK/artifacts/$target" log="$WORK/logs/$target.log"
  mkdir -p "$corpus" "$artifacts" "$WORK/logs"
  local dict=()
  [ -f "fuzz/dict/$target.dict" ] && dict=(-dict="fuzz/dict/$target.dict")
  echo "fuzz: $target for ${seconds}s"
  local status=0
  nice -n 10 "$FUZZ_BUILD/fuzz/fuzz_$target" "${dict[@]}" -max_total_time="$seconds" \
    -timeout="$TIMEOUT" -rss_limit_mb=2048 -close_fd_mask=1 -print_final_stats=1 \
    -artifact_prefix="$artifacts/" "$corpus" "fuzz/corpus/$target" >"$log" 2>&1 || status=$?
  grep -E '^stat::(number_of_executed_units|average_exec_per_sec|slowest_unit_time_sec)|DONE' "$log" | tail -4 |
    sed "s/^/  $target: /"
  if [ $status -ne 0 ]; then
    echo "fuzz: $target FAILED (see $log; inputs in $artifacts)"
    grep -E 'ERROR|SUMMARY|Test unit written' "$log" | head -5
    return 1
  fi
}

cmd=${1:-smoke}
shift || true
case "$cmd" in
  smoke)
    build_fuzz
    seconds=${1:-30}
    failed=0
    for t in $(targets); do
      rm -rf "$WORK/smoke/$t"
      run "$t" "$seconds" "$WORK/smoke/$t" || failed=1
    done
    exit $failed
    ;;
  long)
    build_fuzz
    seconds=${1:-600}
    failed=0
    for t in $(targets "${2:-}"); do run "$t" "$seconds" "$WORK/corpus/$t" || failed=1; done
    exit $failed
    ;;
  merge)
    # Inputs are cut to MERGE_MAX_LEN bytes while merging, so the checked-in corpus stays
    # small; the seeds (full-size shipped data) are kept whole beside the merged inputs.
    build_fuzz
    max_len=${FUZZ_MERGE_MAX_LEN:-4096}
    for t in $(targets "${1:-}"); do
      fresh="$WORK/merged/$t" seeds="$WORK/seeds/$t"
      rm -rf "$fresh" "$seeds" && mkdir -p "$fresh" "$seeds" "$WORK/corpus/$t" "$WORK/logs"
      cp fuzz/corpus/"$t"/seed_* "$seeds/" 2>/dev/null || true
      nice -n 10 "$FUZZ_BUILD/fuzz/fuzz_$t" -merge=1 -max_len="$max_len" -timeout="$TIMEOUT" \
        -close_fd_mask=1 "$fresh" "fuzz/corpus/$t" "$WORK/corpus/$t" >"$WORK/logs/$t.merge.log" 2>&1
      rm -rf "fuzz/corpus/$t" && mkdir -p "fuzz/corpus/$t"
      # libFuzzer names the kept inputs by their SHA-1.
      cp "$fresh"/* "$seeds"/* "fuzz/corpus/$t/" 2>/dev/null || true
      echo "merge: $t $(ls "fuzz/corpus/$t" | wc -l) inputs, $(du -sh "fuzz/corpus/$t" | cut -f1)"
    done
    ;;
  seeds)
    cmake --preset default >/dev/null
    cmake --build --preset default --target pgmdev_fuzz_seeds
    build/default/tests/pgmdev_fuzz_seeds fuzz/corpus
    ;;
  coverage)
    exec scripts/fuzz_coverage.sh "$@"
    ;;
  *)
    echo "usage: $0 smoke|long|merge|seeds|coverage" >&2
    exit 2
    ;;
esac
