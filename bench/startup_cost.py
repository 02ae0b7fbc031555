#!/usr/bin/env python3
"""Start-up cost of whole processes: instructions (callgrind's total) and peak memory.

    startup_cost.py [BUILD_DIR]     (default build/default)

Each row is one process run under valgrind's callgrind, whose instruction count does not move
with the load of the machine; the floor rows (a C++ hello world, the bare interpreter) stand
beside the pgmdev rows. Peak memory is measured twice: what a query allocates at its peak
(valgrind's massif, heap and allocator overhead), and the peak RSS of a plain run (median of
five, started from bench/floor/peak_rss), which also counts the pages of the library's code
and data the kernel maps in; the build's files are first read back as an installed library's
would be (read_as_installed). The targets are checked and reported; nothing here fails a build.
"""
import os
import re
import statistics
import subprocess
import sys
import tempfile

ROUNDS_RSS = 5
PEAK_RSS = None  # bench/floor/peak_rss of the build, set by main()
MI = 1e6


def callgrind(argv, env):
    """Instructions of one process, and callgrind_annotate's inclusive view of it."""
    with tempfile.TemporaryDirectory() as tmp:
        out = os.path.join(tmp, "callgrind.out")
        run = subprocess.run(
            ["valgrind", "--tool=callgrind", "--callgrind-out-file=" + out] + argv,
            env=env, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True)
        if run.returncode != 0 or not os.path.exists(out):
            sys.exit("startup_cost: failed under valgrind: %s\n%s" % (" ".join(argv), run.stderr))
        with open(out) as data:
            total = next(int(line.split()[1]) for line in data
                         if line.startswith(("summary:", "totals:")))
        annotate = subprocess.run(["callgrind_annotate", "--inclusive=yes", "--threshold=100", out],
                                  stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, text=True)
        return total, annotate.stdout


def inclusive(annotated, function):
    """The inclusive instructions callgrind_annotate gives the function `function` (or 0)."""
    pattern = re.compile(r"^\s*([\d,]+)\s.*:" + re.escape(function) + r"\(")
    for line in annotated.splitlines():
        match = pattern.match(line)
        if match:
            return int(match.group(1).replace(",", ""))
    return 0


def peak_rss_kib(argv, env):
    """Median peak RSS of a plain run, in KiB, measured by floor/peak_rss (a peak survives
    exec, so a run started from this interpreter would report the interpreter's size)."""
    peaks = []
    for _ in range(ROUNDS_RSS):
        run = subprocess.run([PEAK_RSS] + argv, env=env, stdout=subprocess.PIPE,
                             stderr=subprocess.DEVNULL)
        if run.returncode != 0:
            sys.exit("startup_cost: failed: %s" % " ".join(argv))
        peaks.append(int(run.stdout.decode().split()[-1]))
    return int(statistics.median(peaks))


def read_as_installed(build):
    """Drops the page cache of the build's own programs and libraries. Just after a build it
    holds them as the linker wrote them, in folios as large as its writes, and a process that
    touches one byte of such a folio has all of it mapped and counted in its RSS; read back from
    the disk they are cached as any installed library is, and the RSS figures stop depending
    on when the build last linked."""
    for folder, _, files in os.walk(build):
        for name in files:
            if not (".so" in name or name in ("pgmdev", "floor_hello")):
                continue
            path = os.path.join(folder, name)
            if os.path.islink(path) or not os.path.isfile(path):
                continue
            fd = os.open(path, os.O_RDONLY)
            try:
                os.fsync(fd)  # a written page is dropped only once it is on the disk
                os.posix_fadvise(fd, 0, 0, os.POSIX_FADV_DONTNEED)
            finally:
                os.close(fd)


def peak_heap_kib(argv, env):
    """Peak heap of one process under massif (requested bytes and allocator overhead), KiB."""
    with tempfile.TemporaryDirectory() as tmp:
        out = os.path.join(tmp, "massif.out")
        subprocess.run(["valgrind", "--tool=massif", "--massif-out-file=" + out] + argv, env=env,
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, check=True)
        peak = heap = 0
        with open(out) as data:
            for line in data:
                if line.startswith("mem_heap_B="):
                    heap = int(line.split("=")[1])
                elif line.startswith("mem_heap_extra_B="):
                    peak = max(peak, heap + int(line.split("=")[1]))
        return peak // 1024


def main():
    build = os.path.abspath(sys.argv[1] if len(sys.argv) > 1 else "build/default")
    cli = os.path.join(build, "tools", "pgmdev", "pgmdev")
    floor = os.path.join(build, "bench", "floor")
    python = sys.executable
    env = {k: v for k, v in os.environ.items() if not k.startswith(("LD_", "PYTHON"))}
    env["PYTHONPATH"] = os.path.join(build, "python")
    # A fixed hash seed: with a random one the interpreter's own count moves by 0.1 M from run
    # to run, as much as the Python rows' margins.
    env["PYTHONHASHSEED"] = "0"
    global PEAK_RSS
    PEAK_RSS = os.path.join(floor, "floor_peak_rss")
    for needed in (cli, os.path.join(floor, "floor_hello"), PEAK_RSS):
        if not os.access(needed, os.X_OK):
            sys.exit("startup_cost: %s is not built" % needed)

    # (label, argv, kind): kind "floor", "start" (no data), "query" (a single question), "py".
    rows = [
        ("C++ hello world (libstdc++)", [os.path.join(floor, "floor_hello")], "floor"),
        ("python3 -c pass", [python, "-c", "pass"], "floor"),
        ("pgmdev --version", [cli, "--version"], "start"),
        ("pgmdev info", [cli, "info"], "start"),
        ("pgmdev catalog devices --family ZORQA_I",
         [cli, "catalog", "devices", "--family", "ZORQA_I"], "query"),
        ("pgmdev flash identify --device-id EF4018",
         [cli, "flash", "identify", "--device-id", "EF4018"], "query"),
        ("pgmdev opn 2", [cli, "opn", "2"], "query"),
        ("pgmdev device --part ZQ160M8C6", [cli, "device", "--part", "ZQ160M8C6"], "query"),
        ("pgmdev name ZQ160SM8", [cli, "name", "ZQ160SM8"], "query"),
        ("python3 -c 'import pgmdev'", [python, "-c", "import pgmdev"], "py"),
        ("python3 -c 'import pgmdev; pgmdev.name(\"ZQ160SM8\")'",
         [python, "-c", "import pgmdev; pgmdev.name('ZQ160SM8')"], "py"),
    ]
    rows = [row for row in rows if os.access(row[1][0], os.X_OK)]

    read_as_installed(build)
    results = {}
    for label, argv, kind in rows:
        total, annotated = callgrind(argv, env)
        # What inflating and checking the compressed blobs costs, the floor of a query that
        # needs one: zlib's inflate and the CRC over the inflated text.
        blob = (inclusive(annotated, "zlib_uncompress") +
                inclusive(annotated, "PGM_COMMON::msb_calculate_crc32"))
        measured = kind in ("start", "query")
        results[label] = {
            "total": total, "blob": blob, "kind": kind,
            "heap": peak_heap_kib(argv, env) if measured else None,
            "rss": peak_rss_kib(argv, env) if measured else None,
        }

    info = results["pgmdev info"]
    print("Whole processes: instructions (callgrind), peak heap (massif) and peak RSS (median of "
          "%d plain runs)" % ROUNDS_RSS)
    print("  %-58s %8s %7s %9s %9s %6s %8s %6s" % ("process", "M instr", "x info", "blob M",
                                                  "heap KiB", "+KiB", "RSS KiB", "+KiB"))
    for label, argv, kind in rows:
        r = results[label]
        line = "  %-58s %8.2f" % (label, r["total"] / MI)
        if r["heap"] is not None:
            line += " %6.2fx %9s %9d %+6d %8d %+6d" % (
                r["total"] / info["total"], "%.1f" % (r["blob"] / MI) if r["blob"] else "",
                r["heap"], r["heap"] - info["heap"], r["rss"], r["rss"] - info["rss"])
        elif r["blob"]:
            line += " %7s %9.1f" % ("", r["blob"] / MI)
        print(line)

    print("\nTargets:")
    checks = []
    for label in ("pgmdev --version", "pgmdev info"):
        total = results[label]["total"]
        checks.append(("%s at most 2.5 M" % label, total <= 2.5 * MI, "%.2f M" % (total / MI)))
    for label, _, kind in rows:
        if kind != "query":
            continue
        r = results[label]
        limit = 1.5 * info["total"] + r["blob"]
        checks.append(("%s at most 1.5x info + blob (%.1f M + %.1f M)" %
                       (label, 1.5 * info["total"] / MI, r["blob"] / MI), r["total"] <= limit,
                       "%.2f M" % (r["total"] / MI)))
        checks.append(("%s peak heap within 1 MiB of info" % label,
                       r["heap"] - info["heap"] <= 1024, "%+d KiB" % (r["heap"] - info["heap"])))
        checks.append(("%s peak RSS within 1 MiB of info" % label,
                       r["rss"] - info["rss"] <= 1024, "%+d KiB" % (r["rss"] - info["rss"])))
    py_pass = results.get("python3 -c pass")
    py_import = results.get("python3 -c 'import pgmdev'")
    py_name = results.get("python3 -c 'import pgmdev; pgmdev.name(\"ZQ160SM8\")'")
    if py_pass and py_import and py_name:
        checks.append(("import pgmdev at most 1.5x python3 -c pass (%.1f M)" %
                       (1.5 * py_pass["total"] / MI), py_import["total"] <= 1.5 * py_pass["total"],
                       "%.2f M" % (py_import["total"] / MI)))
        cli_adds = results["pgmdev name ZQ160SM8"]["total"] - info["total"]
        py_adds = py_name["total"] - py_import["total"]
        checks.append(("first pgmdev.name() adds at most what CLI name adds over info (%.1f M)" %
                       (cli_adds / MI), py_adds <= cli_adds, "%.2f M" % (py_adds / MI)))
    for text, holds, figure in checks:
        print("  %-4s %-88s %s" % ("ok" if holds else "MISS", text, figure))
    return 0


if __name__ == "__main__":
    sys.exit(main())
