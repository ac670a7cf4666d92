"""The examples of the pages, of the notebook and of the docstrings run."""

import doctest
import importlib
import json
import pkgutil
import re

import pytest
from conftest import ROOT

import npar

PAGES = ["README.md", "docs/python.md", "docs/from_scipy.md", "docs/from_pingouin.md"]
NOTEBOOKS = sorted(path.relative_to(ROOT) for path in ROOT.glob("examples/python/*.ipynb"))
MODULES = [module.name for module in pkgutil.iter_modules(npar.__path__)]


@pytest.fixture
def folder(tmp_path, monkeypatch):
    """A folder as the root of a checkout looks to an example."""
    (tmp_path / "examples").symlink_to(ROOT / "examples")
    (tmp_path / "out").mkdir()
    monkeypatch.chdir(tmp_path)


@pytest.mark.parametrize("page", PAGES)
def test_a_pages_examples_run(page, folder):
    text = (ROOT / page).read_text(encoding="utf-8")
    blocks = re.findall(r"^```python\n(.*?)^```", text, re.S | re.M)
    assert blocks
    exec(compile("\n".join(blocks), page, "exec"), {})


@pytest.mark.parametrize("notebook", NOTEBOOKS, ids=str)
def test_a_notebooks_cells_run(notebook, folder):
    cells = json.loads((ROOT / notebook).read_text(encoding="utf-8"))["cells"]
    code = ["".join(cell["source"]) for cell in cells if cell["cell_type"] == "code"]
    assert code
    names = {}
    for cell in code:
        exec(compile(cell, str(notebook), "exec"), names)


@pytest.mark.parametrize("name", MODULES)
def test_docstrings_tell_the_truth(name):
    module = importlib.import_module("npar." + name)
    assert doctest.testmod(module).failed == 0
