#!/usr/bin/env python3
"""Prints the tables of a run. With a document, also puts them between its marks, and draws the charts
in the directory charts next to it.

Use: report.py RESULTS [DOCUMENT]

SPDX-License-Identifier: MIT
"""
import pathlib
import re
import sys

from results import OURS, SHAPES, SIZES, Run, number

OPERATIONS = {  # with what its floor does
    "Read": "`fgets`, one allocation for each element, copying, linking, grouping",
    "ReadArena": "the same with an arena",
    "Print": "assembles each line and writes it with one `fwrite`",
    "Check": "scope strings that share a prefix, callbacks; everything `multi`",
    "CheckEvaluate": "the same, and the evaluators",
    "CheckOnce": "the same, and a linear search for each element; nothing `multi`",
    "Catalog": "searching and linking",
    "LookupCatalog": "a linear search in each level",
    "LookupTree": "a linear search in each list",
    "Copy": "one allocation for each element, copying, linking",
    "Compare": "two walks in step that compare texts",
    "Delete": "a walk that frees"}
ROWS = {"LookupCatalog": "cf, catalog", "LookupTree": "cf, plain tree",
        "EditAddDelete": "cf, a group added and deleted"}


def table(head, rows, last="--:"):
    lines = [head, ["---"] + ["--:"] * (len(head) - 2) + [last]] + rows
    return "\n".join("| " + " | ".join(line) + " |" for line in lines)


def named(library):
    return f"**{library}**" if library.split(",")[0] in OURS else library


def cell(time):
    return "" if time is None else number(time)


def about(run):
    peers = ", ".join(f"{name} {version}" for name, version in sorted(run.peers.items()))
    machine = run.machine
    return (f"{machine['date']}, {machine['processor']}, {machine['cores']} cores, {machine['system']}, "
            f"{machine['libc']}, {machine['compiler']}, optimised (`-O3`), the shared library. Peers: {peers}.")


def thumb(run):
    read, check, catalog, print_ = (run.time(operation, "cf", "typical") for operation in
                                    ("ReadFile", "CheckEvaluate", "Catalog", "Print"))
    return (f"On this machine a file of 50 elements is read in {50 * read / 1000:.1f} µs, checked and "
            f"evaluated in {50 * check / 1000:.1f} µs, catalogued in {50 * catalog / 1000:.1f} µs and "
            f"printed in {50 * print_ / 1000:.1f} µs; a look-up in it takes "
            f"{number(run.time('LookupCatalog', 'cf', 'typical'))} ns. An element takes "
            f"{run.memory['cf/wide'][0]:.0f} bytes.")


def ratios(run):
    def ratio(operation, shape):
        return run.time(operation, "cf", shape) / run.time(operation, "floor", shape)
    rows = [[operation] + [f"{ratio(operation, shape):.2f}" for shape in SHAPES] +
            [cell(run.time(operation, library, "wide")) for library in ("cf", "floor")] + [floor]
            for operation, floor in OPERATIONS.items()]
    return table(["operation", *SHAPES, "cf, ns", "floor, ns", "the floor"], rows, last="---")


def compared(run, *operations):
    """One operation, or the same under several names, of all libraries."""
    pairs = sorted(((operation, library) for operation in operations for library in run.libraries(operation)),
                   key=lambda pair: run.time(*pair, "typical"))
    return table(["ns", *SHAPES], [[named(ROWS.get(operation, library))] + list(map(cell, run.times(operation, library)))
                                   for operation, library in pairs])


def loading(run):
    return table(["ns", *SHAPES], [[named(library)] + list(map(cell, times)) for library, times in run.loading()])


def memories(run):
    libraries = sorted({name.split("/")[0] for name in run.memory}, key=lambda name: run.memory[f"{name}/wide"][0])
    rows = [[named(library)] + [number(run.memory[f"{library}/{shape}"][field]) for field in (0, 1) for shape in SHAPES]
            for library in libraries]
    return table(["library", *(f"bytes, {shape}" for shape in SHAPES),
                  *(f"allocations, {shape}" for shape in SHAPES)], rows)


def sized(run, shape, names):
    """Times by size; names are pairs of a row's name and (operation, library)."""
    rows = [[title] + [cell(run.time(*what, f"{shape}:{size}")) for size in SIZES] for title, what in names]
    return table(["ns for an element", *(f"{size:,}" for size in SIZES)], rows)


def growth(run):
    return sized(run, "scale", [(operation, (operation, "cf")) for operation in OPERATIONS
                                if run.time(operation, "cf", "scale:1000")])


def peergrowth(run):
    return sized(run, "scale", [(named(library), ("ReadMemory", library))
                                for library in run.libraries("ReadMemory", "scale:1000")])


def crowded(run):
    ours = [("**cf**, read, checked and catalogued", ("Load", "cf")), ("**cf**, read", ("ReadMemory", "cf"))]
    return sized(run, "crowded", ours + [(library, ("ReadMemory", library))
                                         for library in run.libraries("ReadMemory", "crowded:1000") if library not in OURS])


def sections(run):
    return {"machine": about(run), "ratios": ratios(run), "thumb": thumb(run), "loading": loading(run),
            "readfile": compared(run, "ReadFile"), "readmemory": compared(run, "ReadMemory"),
            "lookup": compared(run, "Lookup", "LookupCatalog", "LookupTree"),
            "edit": compared(run, "EditSet", "EditAddDelete"), "print": compared(run, "Print"),
            "delete": compared(run, "Delete"), "memory": memories(run), "growth": growth(run),
            "peergrowth": peergrowth(run), "crowded": crowded(run)}


def charts(run, document):
    import charts  # needs matplotlib, which the tables do not
    return {f"chart {name}": f"![{title}]({path.relative_to(document.parent)})"
            for name, (path, title) in charts.draw(run, document.parent / "charts").items()}


def fill(text, contents):
    for name, content in contents.items():
        pattern = re.compile(rf"(<!-- begin {name} -->\n).*?(<!-- end {name} -->)", re.DOTALL)
        text, count = pattern.subn(lambda mark, content=content: mark[1] + content + "\n" + mark[2], text)
        if count != 1:
            sys.exit(f"the document has the marks of {name} {count} times instead of once")
    return text


def main():
    run = Run(sys.argv[1])
    contents = sections(run)
    for name, content in contents.items():
        print(f"\n{name}\n\n{content}")
    if len(sys.argv) > 2:
        document = pathlib.Path(sys.argv[2])
        contents |= charts(run, document)
        document.write_text(fill(document.read_text(encoding="utf-8"), contents), encoding="utf-8")


main()
