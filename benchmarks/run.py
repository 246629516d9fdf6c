"""Runs all benchmarks, prints one table and writes it as JSON. Called by scripts/bench."""

import argparse
import json
import os
import subprocess
import sys

import processes
import tool
from table import Table, amount

ROUNDS = {10: 20, 100: 15, 1000: 10}
LARGE_SET = 10000
# The heap of a process that has run for a while has its pages. Getting them from the kernel, and
# giving them back, costs more than what is measured.
KEEP_PAGES = {"MALLOC_MMAP_THRESHOLD_": "4000000000", "MALLOC_TRIM_THRESHOLD_": "16000000000"}
TABLE_START = "<!-- the table of scripts/bench -->\n"
TABLE_END = "<!-- end of the table -->\n"


class Bench:
    def __init__(self, build, smoke):
        self.bin = os.path.join(build, "bin")
        self.samples = os.path.join(build, "samples")
        self.smoke = smoke
        self.table = Table()
        self.raw = {}

    def program(self, name):
        return os.path.join(self.bin, name)

    def contenders(self, count):
        """Commands that describe so many files: the tool, a bare loop, and a virtual raster."""
        files = os.path.join(self.samples, f"small{count}.txt")
        stack = os.path.join(self.samples, "stack.vrt")
        return {
            "ours": [[self.program("kestms"), "info", "@" + files]],
            "loop": [[self.program("open_loop"), files]],
            "vrt": [["gdalbuildvrt", "-q", "-overwrite", "-separate", "-input_file_list", files,
                     stack], ["gdalinfo", stack]],
        }

    # Each of these measures one subject and adds its rows.

    def whole_processes(self):
        times = {}
        for count in (10, 100) if self.smoke else ROUNDS:
            times[count] = processes.compare(self.contenders(count),
                                             1 if self.smoke else ROUNDS[count])
            for measure, label in (("cpu", "processor"), ("wall", "wall")):
                what = f"kestms info, {amount(count)} files, {label} time"
                ours, loop, vrt = (times[count][name][measure] for name in ("ours", "loop", "vrt"))
                goal = count == 1000
                self.table.compare(f"{what} : loop of opens", ours, loop, 1.15 if goal else None)
                self.table.compare(f"{what} : gdalbuildvrt + gdalinfo", ours, vrt,
                                   1.0 if goal else None)
        self.raw["processes"] = times

    def file_counts(self):
        count = 100 if self.smoke else 1000
        folder = os.path.join(self.samples, f"small{count}") + "/"
        contenders = self.contenders(count)
        kestms = self.program("kestms")
        contenders["check"] = [[kestms, "check", "@" + folder[:-1] + ".txt"]]
        contenders["scenes"] = [[kestms, "scenes", folder]]
        traced = {name: processes.trace(commands, folder) for name, commands in contenders.items()}
        for measure, label in (("opens", "opens"), ("reads", "reads"), ("bytes", "bytes read")):
            for ours, command, name, other in (
                    ("ours", "info", "loop", "loop of opens"),
                    ("ours", "info", "vrt", "gdalbuildvrt + gdalinfo"),
                    ("check", "check", "loop", "loop of opens"),
                    ("scenes", "scenes", "loop", "loop of opens")):
                self.table.compare(f"{label} of {amount(count)} files, kestms {command} : {other}",
                                   traced[ours][measure], traced[name][measure], show=amount)
        self.raw["file counts"] = traced

    def peak_memory(self):
        if self.smoke:
            return
        contenders = self.contenders(LARGE_SET)
        del contenders["vrt"]
        large = processes.compare(contenders, 2)
        self.table.compare(f"peak resident bytes, {amount(LARGE_SET)} files, kestms info : loop",
                           large["ours"]["peak"], large["loop"]["peak"], show=amount)
        self.raw["processes"][LARGE_SET] = large
        self.table.growth("kestms info",
                          [(n, self.raw["processes"][n]["ours"]["cpu"]) for n in (1000, LARGE_SET)])

    def measured(self, environment, pattern):
        """The fastest run of each benchmark of a name, in seconds of processor time."""
        command = [self.program("kest_benchmarks"), "--benchmark_format=json",
                   "--benchmark_filter=" + pattern]
        command += (["--benchmark_min_time=0"] if self.smoke else
                    ["--benchmark_min_time=0.03", "--benchmark_repetitions=7",
                     "--benchmark_enable_random_interleaving=true"])
        done = subprocess.run(command, stdout=subprocess.PIPE, check=True,
                              env={**os.environ, **environment})
        units = {"ns": 1e-9, "us": 1e-6, "ms": 1e-3}
        best = {}
        for each in json.loads(done.stdout)["benchmarks"]:
            if each.get("error_occurred"):
                raise RuntimeError(f"{each['name']}: {each['error_message']}")
            if each["run_type"] == "iteration":
                time = each["cpu_time"] * units[each["time_unit"]]
                name = each["run_name"].split("/iterations:")[0]
                best[name] = min(best.get(name, time), time)
        return best

    def microbenchmarks(self):
        self.raw["benchmarks"] = self.measured(
            KEEP_PAGES, "/(10|100|256|set)$" if self.smoke else ".")
        self.raw["fresh pages"] = self.measured(
            {}, f"^(parse|write)/.*/{10 if self.smoke else 100000}$")

    def ratio_rows(self):
        best = {**self.raw["benchmarks"],
                **{name + " fresh": time for name, time in self.raw["fresh pages"].items()}}
        for what, ours, other, most in (
                ("window of 256 x 256 through a frame : GDAL", "read/ours/256", "read/gdal/256", 1.01),
                ("window of 256 x 256 through a frame : virtual raster", "read/ours/256", "read/vrt/256", 1.0),
                ("whole band through a frame : GDAL", "read/ours/2048", "read/gdal/2048", 1.01),
                ("whole band through a frame : virtual raster", "read/ours/2048", "read/vrt/2048", 1.0),
                ("frame operation through a set : component's own", "forward/set", "forward/component", None),
                ("opening 1,000 files in one process : loop of opens", "open/ours/1000", "open/loop/1000", 1.0),
                ("opening 1,000 files in one process : virtual raster", "open/ours/1000", "open/vrt/1000", 1.0),
                ("parse a list of 1,000 : libxml2", "parse/ours/1000", "parse/libxml2/1000", 1.0),
                ("parse a list of 1,000 : pugixml", "parse/ours/1000", "parse/pugixml/1000", 2.0),
                ("parse a list of 100,000 : libxml2", "parse/ours/100000", "parse/libxml2/100000", 1.0),
                ("parse a list of 100,000 : pugixml", "parse/ours/100000", "parse/pugixml/100000", 2.0),
                ("parse a list of 100,000, fresh pages : libxml2", "parse/ours/100000 fresh",
                 "parse/libxml2/100000 fresh", 1.0),
                ("parse a list of 100,000, fresh pages : pugixml", "parse/ours/100000 fresh",
                 "parse/pugixml/100000 fresh", 2.0),
                ("write a list of 1,000 : libxml2", "write/ours/1000", "write/libxml2/1000", 1.0),
                ("write a list of 1,000 : pugixml", "write/ours/1000", "write/pugixml/1000", 2.0),
                ("write a list of 100,000 : libxml2", "write/ours/100000", "write/libxml2/100000", 1.0),
                ("write a list of 100,000 : pugixml", "write/ours/100000", "write/pugixml/100000", 2.0),
                ("write a list of 100,000, fresh pages : libxml2", "write/ours/100000 fresh",
                 "write/libxml2/100000 fresh", 1.0),
                ("write a list of 100,000, fresh pages : pugixml", "write/ours/100000 fresh",
                 "write/pugixml/100000 fresh", 2.0)):
            if ours in best and other in best:
                self.table.compare(what, best[ours], best[other], most)

    def growth_rows(self):
        series = {}
        for name, time in self.raw["benchmarks"].items():
            family, _, size = name.rpartition("/")
            if size.isdigit():
                series.setdefault(family, []).append((int(size), time))
        for family, points in sorted(series.items()):
            if len(points) > 1 and not family.startswith("read/"):
                points.sort()
                self.table.growth(family, points)

    def memory_rows(self):
        done = subprocess.run([self.program("kest_memory")], stdout=subprocess.PIPE, check=True)
        self.raw["memory"] = json.loads(done.stdout)
        for what, count in self.raw["memory"].items():
            self.table.fact(f"heap bytes: {what}", amount(count))

    def all(self):
        self.microbenchmarks()
        self.whole_processes()
        self.ratio_rows()
        self.growth_rows()
        self.peak_memory()
        self.file_counts()
        self.memory_rows()
        tool.add_rows(self)


def put_in_document(path, table):
    with open(path, encoding="utf-8") as file:
        before, rest = file.read().split(TABLE_START)
    after = rest.split(TABLE_END)[1]
    with open(path, "w", encoding="utf-8") as file:
        file.write(before + TABLE_START + table + "\n" + TABLE_END + after)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("build")
    parser.add_argument("--smoke", action="store_true")
    parser.add_argument("--doc", help="a document whose table is replaced")
    arguments = parser.parse_args()
    bench = Bench(os.path.abspath(arguments.build), arguments.smoke)
    bench.all()
    print(bench.table.text())
    if arguments.doc:
        put_in_document(arguments.doc, bench.table.text())
    result = {"table": [dict(zip(Table.HEAD, row)) for row in bench.table.rows], **bench.raw}
    with open(os.path.join(arguments.build, "benchmarks.json"), "w", encoding="utf-8") as file:
        json.dump(result, file, indent=1)


if __name__ == "__main__":
    sys.exit(main())
