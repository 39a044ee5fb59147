#!/usr/bin/env python3
"""Fits how each benchmark family grows with its argument.

    bench_QZESpectrum --benchmark_format=json --benchmark_repetitions=3 | bench/fit_scaling.py

For every family "BM_Name/arg" with two or more arguments, prints the CPU
time per argument (the median when repetitions were run) and the exponent k
of the least-squares fit time ~ arg^k on a log-log scale: 1 is linear, 2
quadratic.
"""

import json
import math
import re
import statistics
import sys
from collections import defaultdict


def main():
    report = json.load(sys.stdin)
    times = defaultdict(lambda: defaultdict(list))
    units = {}
    for run in report["benchmarks"]:
        if run.get("run_type") == "aggregate" and run.get("aggregate_name") != "median":
            continue
        if run.get("run_type") == "iteration" and run.get("repetitions", 1) > 1:
            continue
        name = run["run_name"] if "run_name" in run else run["name"]
        # "BM_Load/1000" and "FullUpdate/600x300/1000samples": the last part's
        # number is the size, the rest names the family.
        family, _, last = name.rpartition("/")
        size = re.fullmatch(r"(\d+)(\D*)", last)
        if not family or not size:
            continue
        family += "/*" + size.group(2) if size.group(2) else ""
        times[family][int(size.group(1))].append(run["cpu_time"])
        units[family] = run["time_unit"]
    for family, points in times.items():
        if len(points) < 2:
            continue
        unit = units[family]
        args = sorted(points)
        xs = [math.log(a) for a in args]
        ys = [math.log(statistics.median(points[a])) for a in args]
        mx, my = statistics.mean(xs), statistics.mean(ys)
        slope = sum((x - mx) * (y - my) for x, y in zip(xs, ys)) / sum((x - mx) ** 2 for x in xs)
        figures = ", ".join(f"{a}: {statistics.median(points[a]):.4g} {unit}" for a in args)
        print(f"{family}: exponent {slope:.2f} ({figures})")


if __name__ == "__main__":
    main()
