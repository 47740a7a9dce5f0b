#!/usr/bin/env python3
"""Makes the tables of a run, and puts them between the marks of a document.

Use: report.py RESULTS [DOCUMENT]

SPDX-License-Identifier: MIT
"""
import json
import re
import sys

SHAPES = ["typical", "wide", "deep"]
SCALE = [1000, 10000, 100000, 1000000]
OURS = ["cf", "cf-arena"]
OPERATIONS = {  # with the floor that each stands on
    "Read": "`fgets`, one allocation for each element, copying, linking, grouping",
    "ReadArena": "the same from an arena",
    "Print": "a line assembled and written by one `fwrite`",
    "Check": "scope strings behind a kept prefix, callbacks; all `multi`",
    "CheckEvaluate": "the same, and the evaluators",
    "CheckOnce": "the same, and a linear search for each element; none `multi`",
    "Catalog": "searching and linking",
    "LookupCatalog": "a bare linear search in each level",
    "LookupTree": "a bare linear search in each list",
    "Copy": "one allocation for each element, copying, linking",
    "Compare": "two walks side by side that compare texts",
    "Delete": "a walk that frees"}


def number(value):
    """Three digits at least, and no more than tell something."""
    return f"{value:.2f}" if value < 10 else f"{value:.1f}" if value < 100 else f"{value:,.0f}"


def table(head, rows):
    lines = [head, ["---"] + ["--:"] * (len(head) - 1)] + rows
    return "\n".join("| " + " | ".join(line) + " |" for line in lines)


class Run:
    """The results of one run."""

    def __init__(self, results):
        self.ns, self.memory = results["ns"], results["memory"]
        self.machine, self.peers = results["machine"], results["peers"]

    def cell(self, operation, library, shape):
        value = self.ns.get(f"{operation}/{library}/{shape}")
        return "" if value is None else number(value)

    def ratio(self, operation, shape):
        return self.ns[f"{operation}/cf/{shape}"] / self.ns[f"{operation}/floor/{shape}"]

    def libraries(self, operation, shape):
        """All that have an operation, the fastest on a shape first."""
        found = [name.split("/")[1] for name in self.ns
                 if name.startswith(operation + "/") and name.endswith("/" + shape)]
        return sorted((library for library in found if library != "floor"),
                      key=lambda library: self.ns[f"{operation}/{library}/{shape}"])

    def about(self):
        peers = ", ".join(f"{name} {version}" for name, version in sorted(self.peers.items()))
        machine = self.machine
        return (f"{machine['date']}, {machine['processor']}, {machine['cores']} cores, "
                f"{machine['system']}, {machine['libc']}, {machine['compiler']}, optimised (`-O3`), "
                f"the shared library. Peers: {peers}.")

    def ratios(self):
        rows = [[operation] + [f"{self.ratio(operation, shape):.2f}" for shape in SHAPES] +
                [self.cell(operation, library, "wide") for library in ("cf", "floor")] + [floor]
                for operation, floor in OPERATIONS.items()]
        return table(["operation", *SHAPES, "cf, ns", "floor, ns", "the floor"], rows)

    def beside(self, operations):
        """One operation, or the same under several names, of all libraries."""
        shapes = sorted({(library, operation) for operation in operations
                         for library in self.libraries(operation, "typical")},
                        key=lambda pair: self.ns[f"{pair[1]}/{pair[0]}/typical"])
        names = {"LookupCatalog": "cf, catalog", "LookupTree": "cf, plain tree",
                 "EditAddDelete": "cf, a group added and deleted"}
        rows = [[f"**{names.get(operation, library)}**" if library in OURS else library] +
                [self.cell(operation, library, shape) for shape in SHAPES]
                for library, operation in shapes]
        return table(["ns", *SHAPES], rows)

    def memories(self):
        libraries = sorted({name.split("/")[0] for name in self.memory},
                           key=lambda library: self.memory[f"{library}/wide"][0])
        rows = [[f"**{library}**" if library in OURS else library] +
                [number(self.memory[f"{library}/{shape}"][field])
                 for field in (0, 1) for shape in SHAPES] for library in libraries]
        return table(["library", *(f"bytes, {shape}" for shape in SHAPES),
                      *(f"allocations, {shape}" for shape in SHAPES)], rows)

    def growth(self, names):
        rows = [[title] + [self.cell(*prefix.split("/"), f"scale:{size}") for size in SCALE]
                for title, prefix in names]
        return table(["ns for an element", *(f"{size:,}" for size in SCALE)], rows)

    def ourgrowth(self):
        return self.growth([(operation, operation + "/cf") for operation in OPERATIONS
                            if f"{operation}/cf/scale:1000" in self.ns])

    def peergrowth(self):
        return self.growth([(f"**{library}**" if library in OURS else library, "ReadMemory/" + library)
                            for library in self.libraries("ReadMemory", "scale:1000")])

    def thumb(self):
        read, check, catalog, print_ = (self.ns[f"{operation}/cf/typical"] for operation in
                                        ("ReadFile", "CheckEvaluate", "Catalog", "Print"))
        size = self.memory["cf/wide"][0]
        return (f"On this machine a file of 50 elements is read in {50 * read / 1000:.1f} µs, checked and "
                f"evaluated in {50 * check / 1000:.1f} µs, catalogued in {50 * catalog / 1000:.1f} µs and "
                f"printed in {50 * print_ / 1000:.1f} µs; a look-up in it takes "
                f"{number(self.ns['LookupCatalog/cf/typical'])} ns. An element takes {size:.0f} bytes.")

    def sections(self):
        return {"machine": self.about(), "ratios": self.ratios(), "thumb": self.thumb(),
                "readfile": self.beside(["ReadFile"]), "readmemory": self.beside(["ReadMemory"]),
                "lookup": self.beside(["Lookup", "LookupCatalog", "LookupTree"]),
                "edit": self.beside(["EditSet", "EditAddDelete"]),
                "print": self.beside(["Print"]), "delete": self.beside(["Delete"]),
                "memory": self.memories(), "growth": self.ourgrowth(), "peergrowth": self.peergrowth()}


def fill(text, sections):
    for name, content in sections.items():
        pattern = re.compile(rf"(<!-- begin {name} -->\n).*?(<!-- end {name} -->)", re.DOTALL)
        text, count = pattern.subn(lambda mark, content=content: mark[1] + content + "\n" + mark[2], text)
        if count != 1:
            sys.exit(f"the marks of {name} stand {count} times in the document")
    return text


def main():
    with open(sys.argv[1], encoding="utf-8") as results:
        sections = Run(json.load(results)).sections()
    for name, content in sections.items():
        print(f"\n{name}\n\n{content}")
    if len(sys.argv) > 2:
        with open(sys.argv[2], encoding="utf-8") as document:
            text = fill(document.read(), sections)
        with open(sys.argv[2], "w", encoding="utf-8") as document:
            document.write(text)


main()
