#!/usr/bin/env python3
"""Prints one table from the JSON reports of portraitcut_bench, one report a processor level.

usage: summary.py REPORT.json...

Times are medians of processor time on one core. Rows of another library on the same picture stand beside ours:
the last columns give that library's time and, for each level, our time over it (below 1 is faster).
"""
import json
import sys

MILLISECONDS = {"ns": 1e-6, "us": 1e-3, "ms": 1.0, "s": 1e3}
PERFORMANCE_LEVELS = ("fast", "balanced", "thorough")

# Rows whose opponent has another name than "opencv" before their own.
OPPONENTS = {
    "jpeg_load/12mp": "libjpeg/jpeg_load/12mp",
    "jpeg12M/load file": "jpeg12M/libjpeg alone",
    "jpeg12M/load/mode:1": "jpeg12M/libjpeg alone",
    "png12M/load/mode:1": "png12M/libpng alone",
    "ScanOwnCascade": "ScanOpenCv",
    "Scan": "ScanOpenCv",
    **{"portrait_cut/12mp/" + level: "libjpeg/jpeg_load/12mp" for level in PERFORMANCE_LEVELS},
}

# The largest ratio that is aimed at.
AIMS = {
    "scan/faces_384": 0.5,
    "scan/texture_384": 0.5,
    "resize_area/gray_12mp_to_384": 1.0,
    "resize_area/gray_1000_by_0.85": 1.0,
    "resize_area/color_12mp_by_0.3": 1.0,
    "rotate/gray_384": 1.0,
    "rotate/gray_1000": 1.0,
    "rotate/color_1000": 1.0,
    "portrait_cut/12mp/balanced": 1.6,
}


def row_name(entry):
    """The run's name, with the performance level in place of its number."""
    name = entry.get("run_name", entry["name"])
    level = entry.get("label", "").split(",")[0]
    return name.rpartition("/")[0] + "/" + level if level in PERFORMANCE_LEVELS else name


def read_report(path):
    """Processor level, milliseconds by row (the median where a row was repeated), remarks."""
    with open(path, encoding="utf-8") as file:
        report = json.load(file)
    times, medians, remarks = {}, {}, set()
    for entry in report["benchmarks"]:
        if entry.get("error_occurred"):
            print(f"{entry['name']}: {entry.get('error_message', 'failed')}", file=sys.stderr)
            continue
        name = row_name(entry)
        if entry.get("aggregate_name", "median") == "median":
            kind = medians if "aggregate_name" in entry else times
            kind[name] = entry["cpu_time"] * MILLISECONDS[entry["time_unit"]]
        if "no face" in entry.get("label", ""):
            remarks.add(f"{name}: no face was found, so nothing was cut")
        if "stages" in entry and entry.get("aggregate_name", "median") == "median":
            remarks.add(f"{name}: a cascade of {entry['stages']:.0f} stages")
    return report["context"].get("processor_level", path), {**times, **medians}, remarks


def opponent_of(name, times):
    """The row that `name` is compared with, or None."""
    for other in (OPPONENTS.get(name), "opencv/" + name, "opencv_" + name):
        if other in times:
            return other
    return None


def print_times(levels):
    names = sorted({name for times in levels.values() for name in times})
    opponents = {opponent_of(name, times) for times in levels.values() for name in times}
    width = max(len(name) for name in names)
    header = "".join(level.rjust(10) for level in levels)
    print("milliseconds".ljust(width) + header + "     other    ratio")
    for name in names:
        if name in opponents:
            continue
        line = name.ljust(width)
        ratios, other_time = [], None
        for times in levels.values():
            line += f"{times[name]:10.3f}" if name in times else " " * 9 + "-"
            other = opponent_of(name, times)
            if name in times and other:
                other_time = times[other]
                ratios.append(f"{times[name] / other_time:5.2f}")
        print(line + (f"{other_time:10.3f}   " + " ".join(ratios) if ratios else ""))


def print_aims(levels):
    level, times = list(levels.items())[-1]
    rows = [(name, aim, opponent_of(name, times)) for name, aim in AIMS.items() if name in times]
    if not any(other for _, _, other in rows):
        return
    print(f"\nratios at level {level}, and the largest that is aimed at")
    for name, aim, other in rows:
        if other:
            ratio = times[name] / times[other]
            print(f"  {name:32} {ratio:6.2f} {aim:5.1f}  {'reached' if ratio <= aim else 'MISSED'}")


def main(paths):
    if not paths:
        sys.exit(__doc__)
    levels, remarks = {}, set()
    for path in paths:
        level, times, found = read_report(path)
        levels[level] = times
        remarks |= found
    if not any(levels.values()):
        sys.exit("no measurements in " + " ".join(paths))
    print_times(levels)
    print_aims(levels)
    for remark in sorted(remarks):
        print(remark)


if __name__ == "__main__":
    main(sys.argv[1:])
