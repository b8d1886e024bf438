#!/usr/bin/env python3
# Prints the results of the benchmarks as Markdown tables: medians, and their ratios to the floor.
#
#   bench/report.py RESULTS.json…
import json
import os
import statistics
import sys

FLOOR = "c"  # the participant that others are compared with
STORAGES = ("memory", "normal", "full")


def read(path):
    """The runs of one program: name -> list of nanoseconds (or of bytes a second)."""
    runs, rates = {}, {}
    if os.path.getsize(path) == 0:
        return runs, rates
    with open(path) as file:
        for run in json.load(file)["benchmarks"]:
            if run.get("run_type") != "iteration" or run.get("error_occurred"):
                continue
            # In memory all the time is the processor's: what others do on the machine is left out.
            time = "cpu_time" if "/memory/" in run["run_name"] else "real_time"
            runs.setdefault(run["run_name"], []).append(run[time])
            if "bytes_per_second" in run:
                rates.setdefault(run["run_name"], []).append(run["bytes_per_second"])
    return runs, rates


def operations(runs):
    """operation -> storage -> participant -> median."""
    table = {}
    for name, times in runs.items():
        parts = name.split("/")
        if len(parts) == 3 and parts[1] in STORAGES:
            operation, storage, participant = parts
            table.setdefault(operation, {}).setdefault(storage, {})[participant] = statistics.median(times)
    return table


def print_operations(table):
    participants = [p for p in dict.fromkeys(
        p for storages in table.values() for medians in storages.values() for p in medians) if p != FLOOR]
    print("| operation | storage | floor, µs | " + " | ".join(participants) + " |")
    print("|---|---|---|" + "---|" * len(participants))
    for operation in sorted(table):
        for storage, medians in sorted(table[operation].items(), key=lambda s: STORAGES.index(s[0])):
            floor = medians.get(FLOOR)
            if not floor:
                continue
            cells = [f"{medians[p] / floor:.2f}" if p in medians else "" for p in participants]
            print(f"| `{operation}` | {storage} | {floor / 1000:.1f} | " + " | ".join(cells) + " |")


def print_rates(rates):
    """A text's name ends with who else treats it: nobody, or "literal", "copy_alone", …"""
    print("| text | MB/s | by the literal steps |\n|---|---|---|")
    for name in sorted(rates):
        if not name.endswith("/literal"):
            literal = rates.get(name + "/literal")
            cells = [f"{statistics.median(r) / 1e6:,.0f}" if r else "" for r in (rates[name], literal)]
            print(f"| {name} | {cells[0]} | {cells[1]} |")


def main():
    for path in sys.argv[1:]:
        runs, rates = read(path)
        table = operations(runs)
        if table:
            print_operations(table)
        if rates:
            print_rates(rates)
        print()


if __name__ == "__main__":
    main()
