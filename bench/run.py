#!/usr/bin/env python3
"""Runs the benchmarks and prints one JSON record of all results.

Use: run.py DIRECTORY-OF-THE-PROGRAMS [ROUNDS]

Each operation of each library runs in a process of its own, so that none finds the heap as another
left it. They take turns in several rounds, and the least time of all rounds counts: what else runs on
the machine can only add.

SPDX-License-Identifier: MIT
"""
import json
import os
import platform
import re
import subprocess
import sys
import tempfile

PEERS = {  # Debian's packages
    "libconfig": "libconfig-dev", "libconfuse": "libconfuse-dev", "inih": "libinih-dev",
    "toml++": "libtomlplusplus-dev", "yaml-cpp": "libyaml-cpp-dev", "pugixml": "libpugixml-dev",
    "RapidJSON": "rapidjson-dev", "nlohmann-json": "nlohmann-json3-dev", "jansson": "libjansson-dev",
    "simdjson": "libsimdjson-dev", "libxml2": "libxml2-dev"}


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
    """Times the benchmarks of one prefix (Operation/library) on shapes, in a fresh process."""
    pattern = prefix.replace("+", "[+]")
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
    scaled = {"/".join(name.split("/")[:2]) for name in names if "/scale:" in name}
    least = {}
    for number in range(rounds):
        for prefix in prefixes:
            print(f"round {number + 1} of {rounds}: {prefix}", file=sys.stderr)
            runs = list(measure(program, prefix, "typical|wide|deep", 0.1))
            if number == 0 and prefix in scaled:
                runs += measure(program, prefix, "scale", 0.5)
            for name, ns in runs:
                least[name] = min(ns, least.get(name, ns))
    return least


def memory(program):
    lines = (line.split() for line in output(program).splitlines())
    return {f"{library}/{shape}": [float(size), float(count)] for library, shape, size, count in lines}


def main():
    programs = sys.argv[1]
    rounds = int(sys.argv[2]) if len(sys.argv) > 2 else 3
    took = times(os.path.join(programs, "cf_bench"), rounds)
    libraries = {name.split("/")[1] for name in took}
    json.dump({"machine": machine(), "peers": versions(libraries), "ns": took,
               "memory": memory(os.path.join(programs, "cf_bench_memory"))},
              sys.stdout, indent=1, sort_keys=True)


main()
