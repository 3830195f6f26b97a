#!/usr/bin/env python3
"""Pairs each library benchmark with its floor and writes the summary.

    summarize.py RAW.json [MORE.json ...] [--markdown OUT.md] [--json OUT.json] [--merged-raw OUT.json]

RAW.json is the --benchmark_out file of brennvik_bench. The runs of several
such files (one program run each) count together; the first file gives the
context and the order of the scenarios, and --merged-raw writes them as one
file. Benchmarks are named "<Scenario>/<Library|Floor|FloorSameRows>/<N>[/...]".
For every scenario and N the summary holds both times (ms), their ratio, the
time and the added memory per row of each side and the ratio per row, both
peak resident sets and what the measured part added to them (MiB); for every
scenario the growth exponent log(t2/t1)/log(N2/N1) between its smallest and
largest N, and whether it stays within N log N. FloorSameRows, where a scenario has it,
is a second floor built with exactly the library's rows.

A case run several times (--large-repetitions) counts with the median of its
runs; the summary also keeps every run's time, and the table shows the range.
Memory is the largest of the runs.
"""

import argparse
import json
import math
import re
import statistics
import sys

NAME = re.compile(r"^(?P<scenario>[^/]+)/(?P<side>Library|FloorSameRows|Floor)/(?P<n>\d+)(/|$)")
MIB = 1024 * 1024
TO_MS = {"ns": 1e-6, "us": 1e-3, "ms": 1.0, "s": 1e3}


def read_raw(paths):
    """The raw files as one: the first file's context, every file's benchmarks."""
    merged = None
    for path in paths:
        with open(path, encoding="utf-8") as f:
            raw = json.load(f)
        if merged is None:
            merged = raw
            continue
        # Family indexes count within one program run, so only the first
        # file's decide the order of the scenarios.
        for bench in raw.get("benchmarks", []):
            bench.pop("family_index", None)
            merged.setdefault("benchmarks", []).append(bench)
    return merged


def load(raw):
    cells = {}
    order = []
    # Shuffled runs (random interleaving) come out in any order; the table
    # keeps the order in which the program registered the scenarios.
    first_family = {}
    for bench in raw.get("benchmarks", []):
        if bench.get("run_type", "iteration") != "iteration":
            continue
        match = NAME.match(bench["name"])
        if not match:
            continue
        scenario, side, n = match["scenario"], match["side"], int(match["n"])
        if scenario not in order:
            order.append(scenario)
        family = bench.get("family_index")
        if family is not None:
            first_family[scenario] = min(family, first_family.get(scenario, family))
        cell = cells.setdefault((scenario, n), {})
        if bench.get("error_occurred"):
            cell[side] = {"error": bench.get("error_message", "failed")}
            continue
        if "error" in cell.get(side, {}):
            continue  # one failed run spoils the case
        runs = cell.setdefault(side, {"runs_ms": []})
        runs["runs_ms"].append(bench["real_time"] * TO_MS[bench.get("time_unit", "ns")])
        runs["peak_mib"] = max_of(runs.get("peak_mib"), bench.get("peak_MiB"))
        runs["added_mib"] = max_of(runs.get("added_mib"), bench.get("added_MiB"))
        runs["rows"] = bench.get("rows")
        runs["iterations"] = bench.get("iterations")
    seen = {scenario: i for i, scenario in enumerate(order)}
    order = sorted(order, key=lambda scenario: (first_family.get(scenario, len(seen)), seen[scenario]))
    for cell in cells.values():
        for runs in cell.values():
            if "runs_ms" in runs:
                runs["ms"] = statistics.median(runs["runs_ms"])
    return raw.get("context", {}), order, cells


def max_of(a, b):
    if a is None:
        return b
    if b is None:
        return a
    return max(a, b)


def exponent(t1, t2, n1, n2):
    if not t1 or not t2 or n1 == n2 or t1 <= 0 or t2 <= 0:
        return None
    return math.log(t2 / t1) / math.log(n2 / n1)


def n_log_n_exponent(n1, n2):
    """The growth exponent of N log N between n1 and n2 (1.09 from 10,000 to 1,000,000)."""
    return math.log((n2 * math.log(n2)) / (n1 * math.log(n1))) / math.log(n2 / n1)


def per_row(value, rows, scale=1.0):
    if value is None or not rows:
        return None
    return value * scale / rows


def quotient(a, b):
    return a / b if a and b else None


# Scenarios whose floor has one row per item while the library also shows
# geometry duplicates; compared per row.
ROW_SHAPED_FLOORS = ("TreeBuild", "CloneMode")


def result_of(scenario, n, cell):
    lib = cell.get("Library", {})
    floor = cell.get("Floor", {})
    same = cell.get("FloorSameRows", {})
    lib_ms, floor_ms = lib.get("ms"), floor.get("ms")
    lib_ns_row = per_row(lib_ms, lib.get("rows"), 1e6)
    floor_ns_row = per_row(floor_ms, floor.get("rows"), 1e6)
    result = {
        "scenario": scenario,
        "n": n,
        "library_ms": lib_ms,
        "floor_ms": floor_ms,
        "ratio": quotient(lib_ms, floor_ms),
        "library_rows": lib.get("rows"),
        "floor_rows": floor.get("rows"),
        "library_ns_per_row": lib_ns_row,
        "floor_ns_per_row": floor_ns_row,
        "per_row_ratio": quotient(lib_ns_row, floor_ns_row),
        "library_peak_mib": lib.get("peak_mib"),
        "floor_peak_mib": floor.get("peak_mib"),
        "library_added_mib": lib.get("added_mib"),
        "floor_added_mib": floor.get("added_mib"),
        "library_added_bytes_per_row": per_row(lib.get("added_mib"), lib.get("rows"), MIB),
        "floor_added_bytes_per_row": per_row(floor.get("added_mib"), floor.get("rows"), MIB),
        "same_rows_floor_ms": same.get("ms"),
        "same_rows_ratio": quotient(lib_ms, same.get("ms")),
        "same_rows_floor_runs_ms": same.get("runs_ms"),
        "same_rows_floor_added_bytes_per_row": per_row(same.get("added_mib"), same.get("rows"), MIB),
        "rows": lib.get("rows"),
        "iterations": lib.get("iterations"),
        "library_runs_ms": lib.get("runs_ms"),
        "floor_runs_ms": floor.get("runs_ms"),
        "errors": [f"{side}: {c['error']}" for side, c in cell.items() if "error" in c],
    }
    # The floor meant to have the library's rows must have them: the
    # same-rows floor where there is one, else the floor itself unless it has
    # one row per item by design.
    matched = same if same else ({} if scenario in ROW_SHAPED_FLOORS else floor)
    if lib.get("rows") is not None and matched.get("rows") is not None and lib["rows"] != matched["rows"]:
        result["errors"].append(f"rows differ: library {lib['rows']:.0f}, floor {matched['rows']:.0f}")
    return result


def summarize(context, order, cells):
    results = []
    growth = []
    for scenario in order:
        sizes = sorted(n for (s, n) in cells if s == scenario)
        for n in sizes:
            results.append(result_of(scenario, n, cells[(scenario, n)]))
        timed = [n for n in sizes if cells[(scenario, n)].get("Library", {}).get("ms")]
        if len(timed) >= 2:
            n1, n2 = timed[0], timed[-1]
            c1, c2 = cells[(scenario, n1)], cells[(scenario, n2)]
            library_exponent = exponent(c1["Library"].get("ms"), c2["Library"].get("ms"), n1, n2)
            growth.append({
                "scenario": scenario,
                "n_from": n1,
                "n_to": n2,
                "library_exponent": library_exponent,
                "floor_exponent": exponent(c1.get("Floor", {}).get("ms"), c2.get("Floor", {}).get("ms"), n1, n2),
                "n_log_n_exponent": n_log_n_exponent(n1, n2),
                "within_n_log_n": library_exponent is not None and library_exponent <= n_log_n_exponent(n1, n2),
            })
    # Not "library_build_type": that is the benchmark framework's own build, not the code measured.
    keys = ("date", "host_name", "num_cpus", "mhz_per_cpu", "load_avg", "qt_version", "heap_pages")
    return {"context": {k: context[k] for k in keys if k in context}, "results": results, "growth": growth}


def fmt(value, digits=1):
    if value is None:
        return "–"
    if isinstance(value, float) and abs(value) >= 100:
        return f"{value:,.0f}"
    return f"{value:,.{digits}f}"


def timing(median, runs):
    if median is None or not runs or len(runs) < 2:
        return fmt(median)
    return f"{fmt(median)} ({fmt(min(runs))}–{fmt(max(runs))})"


def memory(peak, added):
    if peak is None:
        return "–"
    return f"{peak:,.0f} (+{added:,.0f})" if added is not None else f"{peak:,.0f}"


def ratio_text(value):
    return f"{value:.2f}×" if value is not None else "–"


def rows_text(r):
    lib, floor = r.get("library_rows"), r.get("floor_rows")
    if lib is None:
        return "–"
    if floor is None or floor == lib:
        return f"{lib:,.0f}"
    return f"{lib:,.0f} / {floor:,.0f}"


def growth_text(g):
    mark = "" if g["within_n_log_n"] else " ⚠ above N log N"
    return f"{fmt(g['library_exponent'], 2)} / {fmt(g['floor_exponent'], 2)}{mark}"


def time_table(summary):
    growth = {g["scenario"]: g for g in summary["growth"]}
    lines = ["| scenario | N | rows library / floor | library ms | floor ms | ratio | per row | growth library / floor |",
             "|---|---:|---:|---:|---:|---:|---:|---:|"]
    for r in summary["results"]:
        g = growth.get(r["scenario"])
        grow = growth_text(g) if g and r["n"] == g["n_to"] else "–"
        note = f" ⚠ {'; '.join(r['errors'])}" if r["errors"] else ""
        lines.append(f"| {r['scenario']} | {r['n']:,} | {rows_text(r)} | "
                     f"{timing(r['library_ms'], r['library_runs_ms'])} | "
                     f"{timing(r['floor_ms'], r['floor_runs_ms'])} | {ratio_text(r['ratio'])} | "
                     f"{ratio_text(r['per_row_ratio'])} | {grow}{note} |")
    return lines


def same_rows_table(summary):
    rows = [r for r in summary["results"] if r.get("same_rows_floor_ms") is not None]
    if not rows:
        return []
    lines = ["Floors with exactly the library's rows (geometry duplicates included):", "",
             "| scenario | N | same-rows floor ms | ratio | floor added bytes per row |", "|---|---:|---:|---:|---:|"]
    for r in rows:
        lines.append(f"| {r['scenario']} | {r['n']:,} | "
                     f"{timing(r['same_rows_floor_ms'], r['same_rows_floor_runs_ms'])} | "
                     f"{ratio_text(r['same_rows_ratio'])} | {fmt(r['same_rows_floor_added_bytes_per_row'], 0)} |")
    return lines + [""]


def memory_table(summary):
    lines = ["| scenario | N | peak MiB (+added) | floor peak MiB (+added) | added bytes per row library / floor |",
             "|---|---:|---:|---:|---:|"]
    for r in summary["results"]:
        per_row_bytes = (f"{fmt(r['library_added_bytes_per_row'], 0)} / "
                         f"{fmt(r['floor_added_bytes_per_row'], 0)}")
        lines.append(f"| {r['scenario']} | {r['n']:,} | "
                     f"{memory(r['library_peak_mib'], r['library_added_mib'])} | "
                     f"{memory(r['floor_peak_mib'], r['floor_added_mib'])} | {per_row_bytes} |")
    return lines


def markdown(summary):
    ctx = summary["context"]
    lines = ["# Benchmark results", ""]
    if ctx:
        load = ", ".join(f"{x:.2f}" for x in ctx.get("load_avg", []))
        qt = f" with Qt {ctx['qt_version']}" if "qt_version" in ctx else ""
        pages = f" Heap pages: {ctx['heap_pages']}." if "heap_pages" in ctx else ""
        lines.append(f"Run {ctx.get('date', '?')} on {ctx.get('num_cpus', '?')} CPUs at "
                     f"{ctx.get('mhz_per_cpu', '?')} MHz{qt}, load average {load or '?'}.{pages}")
        lines.append("")
    lines += time_table(summary)
    lines.append("")
    lines.append("Times are wall-clock per run of the measured part only. \"Per row\" divides the "
                 "time per row of each side. Growth is log(t2/t1)/log(N2/N1) from the smallest to "
                 "the largest N: 1 is linear, 2 quadratic; N log N is 1.09 from 10,000 to 1,000,000.")
    if any(len(r.get("library_runs_ms") or []) > 1 for r in summary["results"]):
        lines.append("Where a case ran several times, its time is the median of the runs, with the "
                     "fastest and the slowest in brackets; the ratio divides the medians.")
    lines.append("")
    lines += same_rows_table(summary)
    lines += memory_table(summary)
    lines.append("")
    lines.append("Memory is the largest of the runs. Added bytes per row divide what the measured part "
                 "added to the resident set by the rows of that side.")
    return "\n".join(lines) + "\n"


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("raw", nargs="+")
    parser.add_argument("--markdown")
    parser.add_argument("--json")
    parser.add_argument("--merged-raw")
    args = parser.parse_args()

    raw = read_raw(args.raw)
    if args.merged_raw:
        with open(args.merged_raw, "w", encoding="utf-8") as f:
            json.dump(raw, f, indent=2)
            f.write("\n")
    summary = summarize(*load(raw))
    text = markdown(summary)
    if args.markdown:
        with open(args.markdown, "w", encoding="utf-8") as f:
            f.write(text)
    else:
        sys.stdout.write(text)
    if args.json:
        with open(args.json, "w", encoding="utf-8") as f:
            json.dump(summary, f, indent=2)
            f.write("\n")


if __name__ == "__main__":
    main()
