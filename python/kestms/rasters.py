"""Opened datasets. GDAL allows a dataset one thread at a time, so each thread has its own."""

from __future__ import annotations

import os
import threading
from collections import OrderedDict
from typing import Union

import rasterio

PathLike = Union[str, "os.PathLike[str]"]

_PREFIX = "KESTMS:"
#: Datasets that a thread keeps open. Opening one takes as long as reading a few blocks.
_MOST_OPEN = 8
_local = threading.local()


def data_set_name(path: PathLike) -> str:
    """GDAL's name for the set at `path`: a folder, a pattern, a list, or a document."""
    text = os.fspath(path)
    return text if text.upper().startswith(_PREFIX) else f"{_PREFIX}{text}"


def part_name(path: PathLike, label: str) -> str:
    """GDAL's name for the bands of one pixel size ("30m") of the set at `path`."""
    plain = data_set_name(path)[len(_PREFIX):].strip('"')
    return f'{_PREFIX}"{plain}":{label}'


def opened(name: str) -> rasterio.DatasetReader:
    """The dataset, open for this thread; it stays open for the next read."""
    rasters: OrderedDict[str, rasterio.DatasetReader] | None = getattr(_local, "rasters", None)
    if rasters is None:
        rasters = _local.rasters = OrderedDict()
    if name not in rasters:
        rasters[name] = rasterio.open(name)
        while len(rasters) > _MOST_OPEN:
            rasters.popitem(last=False)[1].close()
    rasters.move_to_end(name)
    return rasters[name]


def close(path: PathLike) -> None:
    """Closes this thread's datasets of the set at `path`, whose files may have changed."""
    rasters = getattr(_local, "rasters", {})
    plain = data_set_name(path)[len(_PREFIX):].strip('"')
    for name in [name for name in rasters if plain in name]:
        rasters.pop(name).close()
