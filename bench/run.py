#!/usr/bin/env python3
"""Runs the benchmarks and prints one JSON record of all results.

Use: run.py DIRECTORY-OF-THE-PROGRAMS [ROUNDS]

Each operation of each library runs in a process of its own, so that it does not find a heap that
another has used. They take turns for several rounds, and the shortest time of all rounds counts:
other processes on the machine can only make a round longer.

SPDX-License-Identifier: MIT
"""
import json
import os
import platform
import re
import resource
import signal
import subprocess
import sys
import tempfile

PEERS = {  # the Debian package of each
    "libconfig": "libconfig-dev", "libconfuse": "libconfuse-dev", "inih": "libinih-dev",
    "toml++": "libtomlplusplus-dev", "yaml-cpp": "libyaml-cpp-dev", "pugixml": "libpugixml-dev",
    "RapidJSON": "rapidjson-dev", "nlohmann-json": "nlohmann-json3-dev", "jansson": "libjansson-dev",
    "simdjson": "libsimdjson-dev", "libxml2": "libxml2-dev"}
DEEPEST = 1_000_000
STACK = 8 * 1024 * 1024  # bytes, as most systems give a program


def output(*command):
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def machine():
    with open("/proc/cpuinfo", encoding="ascii") as info:
        cpu = re.search(r"model name\s*: (.*)", info.read())
    return {"processor": cpu.group(1) if cpu else platform.machine(), "cores": os.cpu_count(),
            "system": platform.freedesktop_os_release()["PRETTY_NAME"],
            "libc": " ".join(platform.libc_ver()),
            "compiler": output("g++", "--version").splitlines()[0],
            "date": output("date", "+%Y-%m-%d").strip()}


def versions(libraries):
    return {name: output("dpkg-query", "-W", "-f=${Version}", package)
            for name, package in PEERS.items() if name in libraries}


def measure(program, prefix, shapes, seconds):
    """Times the benchmarks of one prefix (Operation/library) on shapes, in a new process."""
    pattern = prefix.replace("+", r"\+")  # the other bytes of a name mean themselves
    with tempfile.NamedTemporaryFile() as out:
        subprocess.run([program, f"--benchmark_filter=^{pattern}/({shapes})",
                        f"--benchmark_min_time={seconds}", "--benchmark_out_format=json",
                        f"--benchmark_out={out.name}"],
                       check=True, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
        for run in json.load(out)["benchmarks"]:
            yield "/".join(run["name"].split("/")[:3]), run["ns"]


def times(program, rounds):
    names = output(program, "--benchmark_list_tests").split()
    prefixes = list(dict.fromkeys("/".join(name.split("/")[:2]) for name in names))
    sized = {"/".join(name.split("/")[:2]) for name in names if ":" in name}
    least = {}
    for number in range(rounds):
        for prefix in prefixes:
            print(f"round {number + 1} of {rounds}: {prefix}", file=sys.stderr)
            runs = list(measure(program, prefix, "typical|wide|deep", 0.1))
            if number == 0 and prefix in sized:
                runs += measure(program, prefix, ".*:", 0.5)
            for name, ns in runs:
                least[name] = min(ns, least.get(name, ns))
    return least


def memory(program):
    lines = (line.split() for line in output(program).splitlines())
    return {f"{library}/{shape}": [float(size), float(count)] for library, shape, size, count in lines}


def growth(program):
    """The nanoseconds for an element, by operation and number of siblings."""
    print("growth", file=sys.stderr)
    result = {}
    for line in output(program, "all", "keys").splitlines():
        cells = line.strip("| ").split(" | ")
        if name := re.match(r"(\w+): ", line):
            operation = name[1]
        elif cells[0].startswith("ns for"):
            sizes = cells[1:]
        elif len(cells) > 1:
            result[operation] = dict(zip(sizes, map(float, cells[1:])))
    return result


def survives(program, library, depth):
    """Whether a library reads and releases groups nested in each other, and how it ends if not."""
    try:
        run = subprocess.run([program, library, str(depth)], check=False, capture_output=True, timeout=60,
                             preexec_fn=lambda: resource.setrlimit(resource.RLIMIT_STACK, (STACK, STACK)))
    except subprocess.TimeoutExpired:
        return False, "takes more than a minute"
    return run.returncode == 0, "crashes" if run.returncode == -signal.SIGSEGV else "refuses"


def depths(program):
    """The largest nesting that each library survives, to three digits, and what happens beyond."""
    result = {}
    for library in output(program).split():
        print(f"depth: {library}", file=sys.stderr)
        good, bad = 0, DEEPEST
        survived, end = survives(program, library, bad)
        if survived:
            good, end = bad, ""
        while not survived and bad - good > max(1, bad // 1000):
            middle = (good + bad) // 2 if good else bad // 4
            passed, how = survives(program, library, middle)
            good, bad, end = (middle, bad, end) if passed else (good, middle, how)
        result[library] = [good, end]
    return result


def main():
    programs = sys.argv[1]
    rounds = int(sys.argv[2]) if len(sys.argv) > 2 else 3
    took = times(os.path.join(programs, "cf_bench"), rounds)
    libraries = {name.split("/")[1] for name in took}
    json.dump({"machine": machine(), "peers": versions(libraries), "ns": took,
               "memory": memory(os.path.join(programs, "cf_bench_memory")),
               "growth": growth(os.path.join(programs, "cf_growth")),
               "depth": depths(os.path.join(programs, "cf_bench_depth"))},
              sys.stdout, indent=1, sort_keys=True)


main()
