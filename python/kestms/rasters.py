"""Opened datasets. GDAL allows a dataset one thread at a time, so each thread has its own."""

from __future__ import annotations

import os
import threading
import uuid
from collections import OrderedDict
from dataclasses import dataclass, field
from typing import Union

import rasterio
from rasterio.errors import RasterioIOError

PathLike = Union[str, "os.PathLike[str]"]

PREFIX = "KESTMS:"
#: Datasets that a thread keeps open. Opening one takes as long as reading a few blocks.
_MOST_OPEN = 8
_local = threading.local()


def new_mark() -> str:
    """A text that differs from call to call, in all processes."""
    return uuid.uuid4().hex


@dataclass(frozen=True)
class Source:
    """A dataset as one call opened it. It can be pickled, and opened in any thread or process."""

    #: GDAL's name.
    name: str
    #: Of several scenes the one to open; None for the only one.
    scene: str | None = None
    #: Files may have changed since a thread opened them for an earlier call.
    mark: str = field(default_factory=new_mark, compare=False)

    def part(self, name: str) -> Source:
        """Another dataset of the same set, by GDAL's name."""
        return Source(name, self.scene, self.mark)

    def open(self) -> rasterio.DatasetReader:
        """A dataset of the caller's own, which no other reader shares."""
        options = {} if self.scene is None else {"SCENE": self.scene}
        return rasterio.open(self.name, sharing=False, **options)


def data_set_name(path: PathLike) -> str:
    """GDAL's name for the set at `path`: a folder, a pattern, a list, or a document.

    Paths become absolute, since arrays may be read in another directory, or process.
    """
    text = os.fspath(path)
    if text.upper().startswith(PREFIX):
        return text
    mark, place = ("@", text[1:]) if text.startswith("@") else ("", text)
    if not place.startswith("/vsi") and "://" not in place:
        place = os.path.abspath(place)
    return f"{PREFIX}{mark}{place}"


def part_name(path: PathLike, label: str) -> str:
    """GDAL's name for the bands of one pixel size ("30m") of the set at `path`."""
    plain = data_set_name(path)[len(PREFIX):].strip('"')
    return f'{PREFIX}"{plain}":{label}'


def is_document(path: PathLike) -> bool:
    """Whether a file is a document that lists a set, by its content."""
    try:
        with rasterio.open(path, driver="KESTMS", sharing=False):
            return True
    except RasterioIOError:
        return False


def opened(source: Source) -> rasterio.DatasetReader:
    """The dataset, open for this thread; it stays open for the next read."""
    rasters: OrderedDict[tuple[Source, str], rasterio.DatasetReader] | None = getattr(
        _local, "rasters", None)
    if rasters is None:
        rasters = _local.rasters = OrderedDict()
    key = (source, source.mark)
    if key not in rasters:
        rasters[key] = source.open()
        while len(rasters) > _MOST_OPEN:
            rasters.popitem(last=False)[1].close()
    rasters.move_to_end(key)
    return rasters[key]
