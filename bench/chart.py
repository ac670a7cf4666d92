#!/usr/bin/env python3
"""chart TABLE PICTURE: draws the table that compare.py wrote, as SVG: seconds over records, both in decades, of npar, SciPy
and the machine's floor (a scan, a sort and a walk). A panel for each test that has two sizes or more beside SciPy."""
import collections
import math
import pathlib
import sys
from xml.sax.saxutils import escape

WIDTH, HEIGHT = 250, 200  # of a panel's plot; pixels
LEFT, TOP, GAP_X, GAP_Y = 62, 70, 74, 84
COLUMNS = 3
SERIES = {"SciPy": "peer", "npar": "own", "floor": "floor"}
STYLE = """text{font:12px sans-serif;fill:#1f2328}.title{font-weight:600}.grid{stroke:#d0d7de;stroke-width:1}
path{fill:none;stroke-width:2}.own{stroke:#0550ae;fill:#0550ae}.peer{stroke:#bc4c00;fill:#bc4c00}
.floor{stroke:#6e7781;fill:#6e7781}path.floor{stroke-dasharray:5 4}path.own,path.peer,path.floor{fill:none}
rect{fill:#ffffff}@media(prefers-color-scheme:dark){text{fill:#e6edf3}.grid{stroke:#30363d}rect{fill:#0d1117}
.own{stroke:#79c0ff;fill:#79c0ff}.peer{stroke:#ffa657;fill:#ffa657}.floor{stroke:#8b949e;fill:#8b949e}}"""


def panels(table):
    """By test and kind of values: by series the seconds at each number of records."""
    lines = [line.strip("|\n ").split("|") for line in table.read_text(encoding="utf-8").splitlines() if line.startswith("|")]
    names = [name.strip() for name in lines[0]]
    found = collections.defaultdict(lambda: collections.defaultdict(dict))
    for line in lines[2:]:
        row = dict(zip(names, (cell.strip() for cell in line)))
        if not row["SciPy"]:
            continue
        series, records = found[row["run"], row["values"]], int(row["records"])
        series["npar"][records] = float(row["npar"])
        series["SciPy"][records] = float(row["SciPy"])
        series["floor"][records] = sum(float(part) for part in row["scan, sort, walk"].split(","))
    return {name: series for name, series in found.items() if len(series["npar"]) > 1}


def decades(numbers):
    return math.floor(math.log10(min(numbers)) + 1e-9), math.ceil(math.log10(max(numbers)) - 1e-9)


def draw_panel(name, series, x_range, y_range):
    def at(records, seconds):
        x = (math.log10(records) - x_range[0]) / (x_range[1] - x_range[0])
        y = (math.log10(seconds) - y_range[0]) / (y_range[1] - y_range[0])
        return x * WIDTH, (1 - y) * HEIGHT

    yield f'<text class="title" y="-12">{escape(", ".join(name))}</text>'
    for exponent in range(y_range[0], y_range[1] + 1):
        y = at(10 ** x_range[0], 10.0**exponent)[1]
        yield f'<path class="grid" d="M0 {y:.1f}H{WIDTH}"/>'
        yield f'<text x="-8" y="{y + 4:.1f}" text-anchor="end">{10.0**exponent:g} s</text>'
    for exponent in range(x_range[0], x_range[1] + 1):
        x = at(10**exponent, 10.0 ** y_range[0])[0]
        yield f'<text x="{x:.1f}" y="{HEIGHT + 18}" text-anchor="middle">10<tspan dy="-5" font-size="9">{exponent}</tspan></text>'
    for label, kind in SERIES.items():
        points = [at(records, seconds) for records, seconds in sorted(series[label].items())]
        yield f'<path class="{kind}" d="M{"L".join(f"{x:.1f} {y:.1f}" for x, y in points)}"/>'
        if kind != "floor":
            yield from (f'<circle class="{kind}" cx="{x:.1f}" cy="{y:.1f}" r="3"/>' for x, y in points)


def draw(found):
    every = [series[label] for series in found.values() for label in SERIES]
    x_range = decades([records for values in every for records in values])
    y_range = decades([seconds for values in every for seconds in values.values()])
    rows = math.ceil(len(found) / COLUMNS)
    width, height = LEFT + COLUMNS * (WIDTH + GAP_X), TOP + rows * (HEIGHT + GAP_Y)
    yield f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width} {height}" role="img" aria-labelledby="t">'
    yield f'<title id="t">Seconds of processor time over records: npar, SciPy and the floor</title><style>{STYLE}</style>'
    yield f'<rect width="{width}" height="{height}"/>'
    for i, (label, kind) in enumerate(SERIES.items()):
        x = LEFT + 230 * i
        words = {"SciPy": "SciPy, the bare call", "npar": "npar, the whole run", "floor": "scan, sort and walk"}[label]
        yield f'<path class="{kind}" d="M{x} 20h28"/><text x="{x + 36}" y="24">{words}</text>'
    for i, (name, series) in enumerate(sorted(found.items())):
        x, y = LEFT + i % COLUMNS * (WIDTH + GAP_X), TOP + i // COLUMNS * (HEIGHT + GAP_Y)
        yield f'<g transform="translate({x} {y})">'
        yield from draw_panel(name, series, x_range, y_range)
        yield "</g>"
    yield "</svg>"


def main(table, picture):
    found = panels(pathlib.Path(table))
    if not found:
        sys.exit(f"chart: {table} has no test with two sizes beside SciPy")
    pathlib.Path(picture).write_text("\n".join(draw(found)) + "\n", encoding="utf-8")


if __name__ == "__main__":
    main(*sys.argv[1:])
