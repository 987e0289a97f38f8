#!/usr/bin/env python3
"""Reads what the benchmarks print and writes it as one table.

    table.py [--small]     a small run's times tell nothing: no goal is compared
"""
import sys

HEADERS = ("What", "Entries", "Qorvenix", "Bare", "Reading alone", "Compared", "Goal", "Reached")


def number(value, unit):
    if unit == "ms":
        return f"{value:,.1f} ms"
    return f"{value:,.2f} s" if unit == "s" else f"{value:,.0f} {unit}"


def compare(measured, bare, unit, kind, goal):
    """The compared figure and the goal as texts, and whether it is reached."""
    if kind == "ratio":
        ratio = measured / bare
        return f"{ratio:.2f} times", f"{goal:.2f} times", round(ratio, 2) <= goal
    if kind == "more":
        return number(measured - bare, unit) + " more", number(goal, unit) + " more", measured - bare <= goal
    return number(measured, unit), f"under {number(goal, unit)}", measured < goal


def row(line):
    what, entries, unit, measured, bare, reading, kind, goal = line.split("\t")[1:]
    measured, bare, reading, goal = map(float, (measured, bare, reading, goal))
    compared, goal_text, reached = compare(measured, bare, unit, kind, goal)
    cells = [what, f"{int(entries):,}" if entries else "", number(measured, unit), number(bare, unit) if bare else "",
             number(reading, unit) if reading else "", compared]
    return cells + ([goal_text, "yes" if reached else "NO"] if goal and "--small" not in sys.argv else ["", ""])


def results(lines):
    return (line.rstrip("\r\n") for line in lines if line.startswith("result\t"))


def main():
    rows = [HEADERS] + [row(line) for line in results(sys.stdin)]
    rows.insert(1, ["-"] * len(HEADERS))
    widths = [max(len(each[column]) for each in rows) for column in range(len(HEADERS))]
    for each in rows:
        fill = each[0] == "-"
        print("|" + "|".join(("-" * (width + 2) if fill else f" {text:<{width}} ")
                             for text, width in zip(each, widths)) + "|")


if __name__ == "__main__":
    main()
