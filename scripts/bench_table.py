"""Prints the results of a Google Benchmark run as a table, beside a stored run if there is one."""

import json
import os
import sys

MILLISECONDS = {"ns": 1e-6, "us": 1e-3, "ms": 1.0, "s": 1e3}


def real_times(path):
    """Time of each benchmark in milliseconds, by name, in the order of the run."""
    with open(path, encoding="utf-8") as file:
        runs = json.load(file)["benchmarks"]
    # With repetitions the median stands for them.
    medians = [run for run in runs if run.get("aggregate_name") == "median"]
    return {
        run["run_name"]: run["real_time"] * MILLISECONDS[run["time_unit"]]
        for run in medians or runs
        if not run.get("error_occurred")
    }


def main(result, stored):
    times = real_times(result)
    before = real_times(stored) if os.path.exists(stored) else {}
    width = max(map(len, times), default=4)
    print(f"{'task':{width}} {'ms':>12} {'stored ms':>12} {'ratio':>7}")
    for name, time in times.items():
        line = f"{name:{width}} {time:12.3f}"
        if before.get(name):
            line += f" {before[name]:12.3f} {time / before[name]:7.2f}"
        print(line)


main(*sys.argv[1:])
