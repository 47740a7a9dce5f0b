"""What a run of the benchmarks measured.

SPDX-License-Identifier: MIT
"""
import json

SHAPES = ["typical", "wide", "deep"]
SIZES = [1000, 10000, 100000, 1000000]
OURS = ["cf", "cf-arena", "cf.hpp"]


def number(value):
    """At least three digits, and no more than the measurement is good for."""
    return f"{value:.2f}" if value < 10 else f"{value:.1f}" if value < 100 else f"{value:,.0f}"


class Run:
    """The results of one run, as run.py prints them. Times are in nanoseconds for an element or a look-up."""

    def __init__(self, path):
        with open(path, encoding="utf-8") as file:
            results = json.load(file)
        self.ns, self.memory = results["ns"], results["memory"]
        self.machine, self.peers = results["machine"], results["peers"]
        self.growth, self.depth = results.get("growth", {}), results.get("depth", {})

    def time(self, operation, library, shape):
        return self.ns.get(f"{operation}/{library}/{shape}")

    def times(self, operation, library):
        return [self.time(operation, library, shape) for shape in SHAPES]

    def libraries(self, operation, shape="typical"):
        """All libraries that have an operation, the fastest first; the floor is none."""
        found = [name.split("/")[1] for name in self.ns
                 if name.startswith(operation + "/") and name.endswith("/" + shape)]
        return sorted((library for library in found if library != "floor"),
                      key=lambda library: self.time(operation, library, shape))

    def sizes(self, operation, library, shape):
        """The times on the shapes of all sizes that were measured, by size."""
        times = {size: self.time(operation, library, f"{shape}:{size}") for size in SIZES}
        return {size: time for size, time in times.items() if time is not None}

    def loading(self):
        """Rows of (library, times) for loading. cf also checks and reads every value; the others parse only."""
        rows = [(name, self.times("UseFile", library)) for library, name in
                (("cf.hpp", "cf, C++ interface"), ("cf", "cf, C interface")) if self.time("UseFile", library, "typical")]
        return rows and rows + [(library, self.times("ReadFile", library))
                                for library in self.libraries("ReadFile") if library not in OURS]
