"""Draws the charts of a run as SVG, readable on light and on dark pages.

SPDX-License-Identifier: MIT
"""
import math
import statistics

import matplotlib

from results import OURS as OUR_LIBRARIES
from results import SHAPES, number

matplotlib.use("svg")
matplotlib.rcParams.update({
    "font.family": "sans-serif", "font.sans-serif": ["DejaVu Sans", "Verdana", "Arial"], "font.size": 9,
    "svg.fonttype": "none", "svg.hashsalt": "cf",  # text stays text; the same run gives the same file
    "axes.spines.top": False, "axes.spines.right": False, "xtick.major.size": 0, "ytick.major.size": 0,
    "xtick.minor.size": 0, "ytick.minor.size": 0})

from matplotlib import pyplot  # noqa: E402 (reads the settings above)

# Each colour of a light page with the one that takes its place on a dark page.
PAGE, INK, FAINT, GRID = "#ffffff", "#24292e", "#656d75", "#d9dee3"
OURS, PEER = "#0b62c4", "#aab4be"
LINES = ["#0b62c4", "#c2410b", "#0f7b43", "#8a3fc0", "#94690a", "#0e7490", "#be1a5f"]
DARK = {PAGE: "#1b1e22", INK: "#e4e7ea", FAINT: "#9aa4ae", GRID: "#3a4047", OURS: "#58a2f6", PEER: "#5f6972",
        LINES[1]: "#f08a5c", LINES[2]: "#4cc487", LINES[3]: "#c592ec", LINES[4]: "#d8ae4a", LINES[5]: "#4fbdd3",
        LINES[6]: "#f27aa9"}
STYLE = "<style>@media (prefers-color-scheme: dark) {" + "".join(
    f'[style*="{way}: {light}"] {{ {way}: {dark} !important }}'
    for light, dark in DARK.items() for way in ("fill", "stroke")) + "}</style>"


def figure(columns, height, title, about, **settings):
    drawing, panels = pyplot.subplots(1, columns, figsize=(9.2, height), squeeze=False, facecolor=PAGE, **settings)
    drawing.text(0.012, 1 - 0.22 / height, title, color=INK, fontsize=11, fontweight="bold", va="center")
    drawing.text(0.012, 0.16 / height, about, color=FAINT, fontsize=7.5, va="center")
    for panel in panels[0]:
        panel.set_facecolor("none")
        panel.tick_params(colors=INK)
        for spine in panel.spines.values():
            spine.set_color(GRID)
    return drawing, panels[0]


def save(drawing, path, title):
    drawing.savefig(path, format="svg", facecolor=PAGE, metadata={"Date": None, "Title": title})
    pyplot.close(drawing)
    with open(path, encoding="utf-8") as file:
        text = file.read()
    with open(path, "w", encoding="utf-8") as file:
        file.write(text.replace("<defs>", STYLE + "\n <defs>", 1))


def bars(panel, values, limit, fills):
    """Horizontal bars with their values; a bar beyond the limit is cut, and a gap in it shows that."""
    for row, (value, colour) in enumerate(zip(values, fills)):
        if value is None:
            continue
        panel.barh(row, min(value, limit), height=0.68, color=colour)
        if value > limit:
            panel.plot([0.9 * limit, 0.92 * limit], [row + 0.5, row - 0.5], color=PAGE, linewidth=2.5)
        panel.text(min(value, limit) + 0.015 * limit, row, number(value), color=INK, fontsize=8, va="center")
    panel.set_xlim(0, 1.25 * limit)
    panel.set_ylim(len(values) - 0.4, -0.6)
    panel.spines["bottom"].set_visible(False)
    panel.set_xticks([])


def is_ours(name):
    return name.split(",")[0] in OUR_LIBRARIES


def label_rows(panel, names):
    panel.set_yticks(range(len(names)), names)
    for label in panel.get_yticklabels():
        label.set_fontweight("bold" if is_ours(label.get_text()) else "normal")


def colours(names):
    return [OURS if is_ours(name) else PEER for name in names]


def comparison(path, title, about, rows):
    """Times of libraries on each shape; a row is (name, times)."""
    height = 1.0 + 0.235 * len(rows)
    drawing, panels = figure(len(SHAPES), height, title, about, sharey=True)
    drawing.subplots_adjust(left=0.165, right=0.995, top=1 - 0.7 / height, bottom=0.32 / height, wspace=0.05)
    names = [name for name, _ in rows]
    limit = 3 * statistics.median(time for _, times in rows for time in times if time is not None)
    for column, (panel, shape) in enumerate(zip(panels, SHAPES)):
        panel.set_title(shape, loc="left", color=INK, fontsize=9)
        bars(panel, [times[column] for _, times in rows], limit, colours(names))
    label_rows(panels[0], names)
    save(drawing, path, title)


def apart(places, distance):
    """Places at least a distance apart, in the same order, near the ones given."""
    order = sorted(range(len(places)), key=places.__getitem__)
    moved = [places[i] for i in order]
    for _ in range(200):
        for i in range(len(moved) - 1):
            lack = distance - (moved[i + 1] - moved[i])
            if lack > 0:
                moved[i] -= lack / 2
                moved[i + 1] += lack / 2
    result = list(places)
    for place, i in zip(moved, order):
        result[i] = place
    return result


def growth(path, title, about, plots):
    """Times by number of elements; a plot is (its title, {name of a line: {elements: time}})."""
    drawing, panels = figure(len(plots), 4.4, title, about, sharey=True)
    drawing.subplots_adjust(left=0.065, right=0.87, top=0.83, bottom=0.17, wspace=0.5)
    all_times = [time for _, lines in plots for line in lines.values() for time in line.values()]
    low, high = 0.7 * min(all_times), 1.4 * max(all_times)
    for panel, (heading, lines) in zip(panels, plots):
        panel.set_title(heading, loc="left", color=INK, fontsize=9)
        panel.set_xscale("log")
        panel.set_yscale("log")
        panel.set_ylim(low, high)
        panel.grid(True, which="major", color=GRID, linewidth=0.7)
        panel.set_axisbelow(True)
        sizes = sorted({size for line in lines.values() for size in line})
        panel.set_xticks(sizes, [f"{size:,}" for size in sizes])
        panel.yaxis.set_major_formatter(lambda value, _: f"{value / 1000:.0f} µs" if value >= 1000 else f"{value:.0f} ns")
        ends = [math.log(line[max(line)]) for line in lines.values()]
        labels = apart(ends, 0.042 * math.log(high / low))
        for (name, line), label, colour in zip(lines.items(), labels, LINES * 2):
            places = sorted(line)
            ours = name.startswith("cf")
            panel.plot(places, [line[place] for place in places], color=colour, linewidth=2.4 if ours else 1.6,
                       marker="o", markersize=3.5)
            panel.annotate(name, (1.03, (label - math.log(low)) / math.log(high / low)), xycoords="axes fraction",
                           color=colour, fontsize=8.5, va="center", fontweight="bold" if ours else "normal")
        panel.set_xlabel("elements", color=FAINT, fontsize=8)
    save(drawing, path, title)


def nesting(path, title, about, rows):
    """The nesting that libraries survive; a row is (name, (depth, what happens beyond))."""
    height = 0.9 + 0.26 * len(rows)
    drawing, (panel,) = figure(1, height, title, about)
    drawing.subplots_adjust(left=0.13, right=0.8, top=1 - 0.45 / height, bottom=0.55 / height)
    names = [name for name, _ in rows]
    deepest = max(depth for _, (depth, _) in rows)
    for row, ((_, (depth, end)), colour) in enumerate(zip(rows, colours(names))):
        panel.barh(row, depth - 1, left=1, height=0.68, color=colour)
        text = f"{depth:,}, then it {end}" if end else f"{depth:,} and more"
        panel.text(1.12 * depth, row, text, color=INK, fontsize=8.5, va="center")
    panel.set_xscale("log")
    panel.set_xlim(1, deepest)
    ticks = [10 ** power for power in range(int(math.log10(deepest)) + 1)]
    panel.set_xticks(ticks, [f"{tick:,}" for tick in ticks])
    panel.grid(True, axis="x", which="major", color=GRID, linewidth=0.7)
    panel.set_axisbelow(True)
    panel.set_ylim(len(rows) - 0.4, -0.6)
    label_rows(panel, names)
    save(drawing, path, title)


def comparisons(run):
    """The charts that compare libraries: name, title, rows."""
    for name, title, operation in (("reading", "Reading a file", "ReadFile"),
                                   ("writing", "Writing to a stream", "Print")):
        yield name, title + ": ns for an element", [(library, run.times(operation, library))
                                                    for library in run.libraries(operation)]
    yield ("loading", "Loading: ns for an element. cf checks a schema and reads every value, the others only parse",
           run.loading())


def growths(run):
    """The plots of times by number of elements."""
    ours = {operation: {int(size): time for size, time in run.growth[operation].items()}
            for operation in ("check", "catalog", "compare", "copy", "print", "delete") if operation in run.growth}
    reading = run.sizes("ReadMemory", "cf", "crowded")
    peers = {library: run.sizes("ReadMemory", library, "crowded") for library in run.libraries("ReadMemory")
             if library not in OUR_LIBRARIES}
    loading = {"cf": run.sizes("Load", "cf", "crowded")} | peers
    plots = [("one group of different keys, each operation", {"read": reading} | ours),
             ("the same, ready for look-ups", loading)]
    plots = [(title, {name: line for name, line in lines.items() if line}) for title, lines in plots]
    return [(title, lines) for title, lines in plots if lines]


def draw(run, directory):
    """Draws the charts that the results suffice for. Gives {name: (file, title)}."""
    directory.mkdir(exist_ok=True)
    machine = run.machine
    about = (f"{machine['date']}, {machine['processor']}, {machine['cores']} cores, {machine['system']}, "
             f"g++ {machine['compiler'].split()[-1]}")
    charts = {}

    def add(name, title, drawer, *data):
        if data[-1]:
            charts[name] = directory / f"{name}.svg", title
            drawer(charts[name][0], title, about, *data)

    for name, title, rows in comparisons(run):
        add(name, title, comparison, rows)
    add("siblings", "Time for an element, by the number of its siblings", growth, growths(run))
    add("nesting", "Nesting depth that reading survives, with a stack of 8 MiB", nesting,
        sorted(run.depth.items(), key=lambda entry: (-entry[1][0], not is_ours(entry[0]))))
    return charts
