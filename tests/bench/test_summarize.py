#!/usr/bin/env python3
"""The benchmark summary: runs of several program runs count together."""

import json
import os
import subprocess
import sys
import tempfile
import unittest

SUMMARIZE = os.path.join(os.path.dirname(__file__), "..", "..", "bench", "summarize.py")


def bench(name, ms, family, rows=1000, added=1.0):
    return {"name": name, "run_type": "iteration", "family_index": family, "real_time": ms,
            "time_unit": "ms", "iterations": 1, "rows": rows, "added_MiB": added, "peak_MiB": 100.0}


def raw(context, benchmarks):
    return {"context": context, "benchmarks": benchmarks}


class SummarizeTest(unittest.TestCase):
    def setUp(self):
        self.dir = tempfile.TemporaryDirectory()

    def tearDown(self):
        self.dir.cleanup()

    def write(self, name, content):
        path = os.path.join(self.dir.name, name)
        with open(path, "w", encoding="utf-8") as f:
            json.dump(content, f)
        return path

    def summarize(self, *paths, merged=None):
        out = os.path.join(self.dir.name, "summary.json")
        args = [sys.executable, SUMMARIZE, *paths, "--json", out, "--markdown", os.devnull]
        if merged:
            args += ["--merged-raw", merged]
        subprocess.run(args, check=True)
        with open(out, encoding="utf-8") as f:
            return json.load(f)

    def result(self, summary, scenario, n):
        return next(r for r in summary["results"] if r["scenario"] == scenario and r["n"] == n)

    def test_runs_of_several_files_count_together(self):
        small = self.write("small.json", raw({"qt_version": "5.15.8", "heap_pages": "small"}, [
            bench("Second/Library/10000", 2.0, 0), bench("Second/Floor/10000", 1.0, 1),
            bench("First/Library/10000", 4.0, 2), bench("First/Floor/10000", 4.0, 3),
        ]))
        # One process per run: each file's own family indexes start at 0.
        parts = [
            self.write("a.json", raw({"qt_version": "other"}, [bench("First/Library/1000000", 30.0, 0)])),
            self.write("b.json", raw({}, [bench("First/Library/1000000", 10.0, 0)])),
            self.write("c.json", raw({}, [bench("First/Library/1000000", 20.0, 0)])),
            self.write("d.json", raw({}, [bench("First/Floor/1000000", 5.0, 0, added=2.0)])),
            self.write("e.json", raw({}, [bench("First/Floor/1000000", 15.0, 0, added=3.0)])),
        ]
        merged = os.path.join(self.dir.name, "merged.json")
        summary = self.summarize(small, *parts, merged=merged)

        self.assertEqual(summary["context"], {"qt_version": "5.15.8", "heap_pages": "small"})
        self.assertEqual([r["scenario"] for r in summary["results"]], ["Second", "First", "First"])
        large = self.result(summary, "First", 1000000)
        self.assertEqual(sorted(large["library_runs_ms"]), [10.0, 20.0, 30.0])
        self.assertEqual(large["library_ms"], 20.0)
        self.assertEqual(large["floor_ms"], 10.0)
        self.assertEqual(large["ratio"], 2.0)
        self.assertEqual(large["floor_added_mib"], 3.0)
        self.assertEqual(self.result(summary, "Second", 10000)["ratio"], 2.0)

        with open(merged, encoding="utf-8") as f:
            written = json.load(f)
        self.assertEqual(len(written["benchmarks"]), 9)
        self.assertEqual(written["context"]["qt_version"], "5.15.8")
        self.assertEqual(self.summarize(merged)["results"], summary["results"])

    def test_one_file_alone(self):
        path = self.write("raw.json", raw({}, [bench("Only/Library/10000", 3.0, 0), bench("Only/Floor/10000", 2.0, 1)]))
        summary = self.summarize(path)
        self.assertEqual(self.result(summary, "Only", 10000)["ratio"], 1.5)


if __name__ == "__main__":
    unittest.main()
