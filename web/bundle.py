#!/usr/bin/env python3
"""bundle.py --glue npar.js --wasm npar.wasm --version V --out npar.html: one HTML file of the page's
modules, its style, the examples and the program, which it holds packed."""
import argparse
import base64
import gzip
import hashlib
import html
import json
import pathlib
import re

WEB = pathlib.Path(__file__).resolve().parent
ROOT = WEB.parent
IMPORT = re.compile(r"^import [^;]*? from '\./([\w.]+)';\n", re.M)


def modules(folder, name, done):
    """The texts of a module and all that it imports, those first, in one scope: their names differ."""
    if name in done:
        return []
    done.add(name)
    text = (folder / name).read_text(encoding="utf-8")
    before = [part for imported in IMPORT.findall(text) for part in modules(folder, imported, done)]
    return before + [re.sub(r"^export ", "", IMPORT.sub("", text), flags=re.M)]


def packed(data):
    return base64.b64encode(gzip.compress(data, 9, mtime=0)).decode()


def policy(script):
    """Nothing is loaded and nothing sent; no scripts run but the page's own and the report's."""
    page = base64.b64encode(hashlib.sha256(script.encode()).digest()).decode()
    source = (ROOT / "host/render/html/script.cpp").read_text(encoding="utf-8")
    report = re.search(r'kPageScriptHash = "([^"]+)"', source).group(1)
    return ("default-src 'none'; connect-src 'none'; form-action 'none'; base-uri 'none'; img-src data:; "
            f"style-src 'unsafe-inline'; script-src 'sha256-{page}' '{report}' 'wasm-unsafe-eval'; worker-src blob:")


def examples():
    rows = json.loads((WEB / "examples.json").read_text(encoding="utf-8"))
    for row in rows:
        row["text"] = (ROOT / "examples" / row["file"]).read_text(encoding="utf-8")
    return json.dumps(rows).replace("<", "\\u003c")


def main():
    arguments = argparse.ArgumentParser(description=__doc__)
    for name in ("glue", "wasm", "version", "out"):
        arguments.add_argument(f"--{name}", required=True)
    arguments.add_argument("--source", default=WEB / "src", type=pathlib.Path)
    given = arguments.parse_args()
    script = "\n" + "\n".join(modules(given.source, "main.js", set()))
    if "</script" in script:
        raise SystemExit("bundle.py: the script would end the page's script element")
    worker = pathlib.Path(given.glue).read_bytes() + b"\n" + (given.source / "worker.js").read_bytes()
    parts = {
        "POLICY": policy(script),
        "STYLE": (WEB / "style.css").read_text(encoding="utf-8"),
        "VERSION": html.escape(given.version),
        "LICENCES": html.escape((WEB / "licences.txt").read_text(encoding="utf-8")),
        "WASM": packed(pathlib.Path(given.wasm).read_bytes()),
        "WORKER": packed(worker),
        "EXAMPLES": examples(),
        "SCRIPT": script,
    }
    page = (WEB / "page.html").read_text(encoding="utf-8")
    page = re.sub(r"@([A-Z]+)@", lambda match: parts[match.group(1)], page)
    pathlib.Path(given.out).write_text(page, encoding="utf-8")


main()
