#!/usr/bin/env python3
# Prints the results of the benchmarks as Markdown tables: medians, and their ratios to the floor.
# Where only the processor counts, the least of the rounds too: others on the machine can make a round
# longer and never shorter.
#
#   bench/report.py [--picture FILE.svg] RESULTS.json…
#   bench/report.py --compare THEN.json… -- NOW.json…
import json
import os
import statistics
import sys

import picture

FLOOR = "c"  # the participant that others are compared with
STORAGES = ("memory", "normal", "full")


def read(paths):
    """The rounds of some programs: name -> nanoseconds; name -> bytes a second; as the programs list them."""
    times, rates, places = {}, {}, {}
    for program, path in enumerate(paths):
        if os.path.getsize(path) == 0:  # nothing matched
            continue
        with open(path) as file:
            runs = json.load(file).get("benchmarks", [])
        for run in runs:
            if run.get("run_type") != "iteration" or run.get("error_occurred"):
                continue
            name = run["run_name"]
            # Without a disk all the time is the processor's, and others on the machine are left out.
            of_disk = "/normal/" in name or "/full/" in name
            unit = {"ns": 1, "us": 1e3, "ms": 1e6}[run["time_unit"]]
            places[name] = (program, run["family_index"])  # the rounds mix their order
            times.setdefault(name, []).append(run["real_time" if of_disk else "cpu_time"] * unit)
            if "bytes_per_second" in run:
                rates.setdefault(name, []).append(run["bytes_per_second"])
    return ({name: times[name] for name in sorted(times, key=places.get)},
            {name: rates[name] for name in sorted(rates, key=places.get)})


def by_operation(times, of_rounds, storages=STORAGES):
    """operation -> storage -> participant -> what `of_rounds` makes of its rounds."""
    table = {}
    for name, rounds in times.items():
        parts = name.split("/")
        if len(parts) == 3 and parts[1] in storages:
            operation, storage, participant = parts
            table.setdefault(operation, {}).setdefault(storage, {})[participant] = of_rounds(rounds)
    return table


def order(participant):
    """The component first, then its peers by name."""
    return ({"component": 0, "by_name": 1, "page": 2}.get(participant, 3), participant)


def print_operations(table):
    participants = sorted({p for storages in table.values() for figures in storages.values() for p in figures
                           if p != FLOOR}, key=order)
    print("| operation | storage | floor, µs | " + " | ".join(participants) + " |")
    print("|---|---|---|" + "---|" * len(participants))
    for operation in table:
        for storage, figures in sorted(table[operation].items(), key=lambda s: STORAGES.index(s[0])):
            floor = figures.get(FLOOR)
            if not floor:
                continue
            cells = [f"{figures[p] / floor:.2f}" if p in figures else "" for p in participants]
            print(f"| `{operation}` | {storage} | {floor / 1000:,.2f} | " + " | ".join(cells) + " |")
    print()


def print_calls(times):
    print("| call | ns | least |\n|---|---|---|")
    for name, rounds in times.items():
        print(f"| {name} | {statistics.median(rounds):,.0f} | {min(rounds):,.0f} |")
    print()


def print_rates(rates):
    """A text's name ends with who else treats it: nobody, or "literal", "copy_alone", …"""
    print("| text | MB/s | best | by the literal steps |\n|---|---|---|---|")
    for name in sorted(rates):
        if not name.endswith("/literal"):
            literal = rates.get(name + "/literal")
            print(f"| {name} | {statistics.median(rates[name]) / 1e6:,.0f} | {max(rates[name]) / 1e6:,.0f} | "
                  f"{f'{statistics.median(literal) / 1e6:,.0f}' if literal else ''} |")
    print()


def compare(then, now):
    """The ratio of each turn stands by itself, for what disturbs one half of it often disturbs both; where
    1 lies between the lowest and the highest, no difference was seen."""
    print("| | then, µs | now, µs | ratio | lowest | highest |\n|---|---|---|---|---|---|")
    for name, after in now.items():
        if name in then:
            before = then[name]
            if len(before) != len(after):
                sys.exit(f"{name}: measured {len(before)} times then and {len(after)} times now; see what the "
                         "benchmark says of it")
            ratios = [a / b for b, a in zip(before, after)]
            cells = [f"{statistics.median(half) / 1000:.2f}" for half in (before, after)]
            cells += [f"{of(ratios):.2f}" for of in (statistics.median, min, max)]
            print(f"| {name} | " + " | ".join(cells) + " |")


def main():
    arguments = sys.argv[1:]
    if arguments[:1] == ["--compare"]:
        half = arguments.index("--")
        compare(read(arguments[1:half])[0], read(arguments[half + 1:])[0])
        return
    drawing = None
    if arguments[:1] == ["--picture"]:
        drawing, arguments = arguments[1], arguments[2:]
    times, rates = read(arguments)
    table = by_operation(times, statistics.median)
    if table:
        print_operations(table)
    in_memory = by_operation(times, min, ("memory",))
    if in_memory:
        print_operations(in_memory)
    calls = {n: t for n, t in times.items() if n.split("/")[0] in ("call", "barcode", "calendar")}
    if calls:
        print_calls(calls)
    if rates:
        print_rates(rates)
    if drawing:
        with open(drawing, "w") as file:
            file.write(picture.drawn(table, FLOOR))


if __name__ == "__main__":
    main()
