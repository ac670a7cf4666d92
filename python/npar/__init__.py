"""npar tests nonparametric hypotheses on tables of data.

`analyse` runs tests on fields of a table; each test also has a function of its own, which takes
fields or arrays. docs/python.md of the project shows both.
"""

from . import independent, one_sample, related
from ._analysis import Analysis, analyse
from ._counting import Counts, count
from ._single import Settings
from .errors import (
    CancelledError,
    DataError,
    NparError,
    OutOfMemoryError,
    RefusedError,
    TestFailedError,
    UsageError,
)
from .files import Dataset, read_csv, read_dta, read_excel, read_parquet, read_sav
from .independent import *  # noqa: F403
from .one_sample import *  # noqa: F403
from .related import *  # noqa: F403
from .results import EffectSize, Interval, Message, Table, TestResult

__all__ = [
    "analyse",
    "count",
    "read_csv",
    "read_dta",
    "read_excel",
    "read_parquet",
    "read_sav",
    "Analysis",
    "Counts",
    "Dataset",
    "EffectSize",
    "Interval",
    "Message",
    "Settings",
    "Table",
    "TestResult",
    "CancelledError",
    "DataError",
    "NparError",
    "OutOfMemoryError",
    "RefusedError",
    "TestFailedError",
    "UsageError",
]
__all__ += one_sample.__all__
__all__ += related.__all__
__all__ += independent.__all__
