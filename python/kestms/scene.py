"""Scenes, their bands, and the groups of bands that share a pixel size."""

from __future__ import annotations

import os
import re
from collections.abc import Iterator, Mapping
from dataclasses import dataclass, field
from pathlib import Path
from typing import Any

import numpy as np
import numpy.typing as npt
import rasterio
from rasterio.crs import CRS
from rasterio.errors import RasterioIOError
from rasterio.transform import Affine
from rasterio.windows import Window

from kestms.rasters import PathLike, Source, data_set_name, is_document, opened

__all__ = ["Band", "Bucket", "Scene", "open", "scenes"]

_OF_PRODUCT = "catalogue"
#: A scene in the driver's message: "NAME", or "NAME (PRODUCT, FOLDER)" if several have the name.
_LABEL = re.compile(r"([^,(]+?)(?: \((?:([^,()]+), )?([^()]*)\))?(?:, |$)")


@dataclass(frozen=True)
class Band:
    """One band, on its component's own grid. Nothing is read before it is indexed."""

    name: str
    #: Name in the vocabulary of STAC ("red", "nir"); empty for a band without one.
    common_name: str
    #: Position in the scene, from 1.
    number: int
    #: (rows, columns).
    shape: tuple[int, int]
    dtype: np.dtype[Any]
    #: Width and height of a pixel, in units of the coordinate system.
    pixel_size: tuple[float, float]
    #: From (column, row) to coordinates; (0, 0) is the upper-left corner of the first pixel.
    transform: Affine
    crs: CRS | None
    #: The value that means "no data"; None without one.
    nodata: float | None
    #: Physical value = sample * scale + offset.
    scale: float
    offset: float
    unit: str
    #: Centre and full width at half maximum, in micrometres; None if the sensor is unknown.
    wavelength: float | None
    fwhm: float | None
    #: The file that holds the band.
    path: Path
    #: (rows, columns) of the file's natural blocks.
    block: tuple[int, int]
    #: GDAL's dataset and number for it.
    source: Source = field(repr=False)
    index: int = field(repr=False)

    def read(self, window: Window | None = None, *, masked: bool = False) -> npt.NDArray[Any]:
        """Samples of a window (of the whole band without one), shape (rows, columns).

        With `masked` a masked array; samples without data are masked.
        """
        return opened(self.source).read(self.index, window=window, masked=masked)

    def __getitem__(self, key: Any) -> npt.NDArray[Any]:
        """Samples by rows and columns, as numpy indexes: `band[0:100, ::2]`."""
        parts = key if isinstance(key, tuple) else (key, slice(None))
        plain = [isinstance(part, (slice, int, np.integer)) and not isinstance(part, bool)
                 for part in parts]
        if plain != [True, True]:
            return self.read()[key]
        window, rest = _window(parts, self.shape)
        return self.read(window)[rest]

    def __array__(self, dtype: npt.DTypeLike = None,
                  copy: bool | None = None) -> npt.NDArray[Any]:
        return self.read().astype(dtype or self.dtype, copy=False)

    @property
    def ndim(self) -> int:
        return 2


@dataclass(frozen=True)
class Bucket:
    """The bands of one pixel size, on one grid."""

    #: "30m": pixel size and unit.
    label: str
    name: str
    bands: tuple[Band, ...]
    #: GDAL's dataset of them.
    source: Source = field(repr=False)

    def read(self, window: Window | None = None, *, masked: bool = False) -> npt.NDArray[Any]:
        """Samples of all bands, shape (bands, rows, columns)."""
        return opened(self.source).read(window=window, masked=masked)


@dataclass(frozen=True)
class Scene:
    """A set of bands that belong together, in the order of their numbers."""

    path: str
    #: The set's short name.
    name: str
    #: How its files are named ("landsat-7").
    scheme: str
    bands: tuple[Band, ...]
    #: By label, in the order of the bands.
    buckets: Mapping[str, Bucket]
    #: The document and the files of the components.
    files: tuple[str, ...]

    def __iter__(self) -> Iterator[Band]:
        return iter(self.bands)

    def __len__(self) -> int:
        return len(self.bands)

    def __getitem__(self, key: int | str) -> Band:
        """A band by position (from 0), common name, or name. KeyError when there is none."""
        if isinstance(key, int):
            return self.bands[key]
        for attribute in ("common_name", "name"):
            found = [band for band in self.bands if getattr(band, attribute) == key]
            if len(found) == 1:
                return found[0]
            if found:
                raise KeyError(f"{key!r} is the {attribute} of {len(found)} bands")
        raise KeyError(key)


def open(path: PathLike, *, scene: str | None = None) -> Scene:  # noqa: A001
    """Opens a folder, a pattern, a list of files ("@list.txt") or a document.

    `scene` names one of several. Raises rasterio.errors.RasterioIOError, with the reason, if it is
    not a set.
    """
    source = Source(data_set_name(path), scene)
    with source.open() as whole:
        tags, files = whole.tags(), tuple(whole.files)
        parts = dict(zip(tags["PIXEL_SIZES"].split(), whole.subdatasets or [source.name]))
        order = [whole.tags(number)["component"] for number in whole.indexes]
        descriptions = list(zip(order, whole.descriptions))
    buckets = {}
    for label, name in parts.items():
        part = source.part(name)
        with part.open() as raster:
            bands = tuple(_band(raster, part, number, descriptions) for number in raster.indexes)
            bucket = raster.tags(1).get("bucket", "")
            buckets[label] = Bucket(label, bucket, bands, part)
    bands = sorted((band for bucket in buckets.values() for band in bucket.bands),
                   key=lambda band: band.number)
    return Scene(os.fspath(path), tags.get("REFERENCE_NAME", ""), tags.get("NAMING_SCHEME", ""),
                 tuple(bands), buckets, files)


def scenes(path: PathLike) -> Iterator[Scene]:
    """The scenes in a folder and those below it, each once, and the documents there."""
    known: list[Scene] = []
    several: list[tuple[str, str]] = []

    def unknown(folder: str, name: str | None = None) -> Iterator[Scene]:
        try:
            scene = open(folder, scene=name)
        except RasterioIOError as error:
            # The reason lists them; those with a folder of their own are found there.
            names = re.search(r"SCENE=NAME: (.+)", str(error))
            if names and name is None:
                several.append((folder, names[1]))
            return
        if not any(_is_part(scene, whole, name is not None) for whole in known):
            known.append(scene)
            yield scene

    for folder, folders, files in os.walk(path):
        folders.sort()
        yield from unknown(folder)
        for name in sorted(files):
            document = os.path.join(folder, name)
            if name.lower().endswith(".xml") and is_document(document):
                yield open(document)
    for folder, labels in reversed(several):
        for name, product, place in _LABEL.findall(labels):
            yield from unknown(place or folder, product or name)


def _is_part(scene: Scene, whole: Scene, is_listed: bool) -> bool:
    """Whether a set has bands of another one, or below it other forms of them, or pictures.

    What the driver lists are scenes, even if they share a name and a folder.
    """
    files = {band.path for band in scene}
    others = {band.path for band in whole}
    if files <= others or is_listed or whole.scheme != _OF_PRODUCT:
        return files <= others
    if scene.scheme == _OF_PRODUCT:
        return scene.name == whole.name and _are_below(files, os.path.abspath(whole.path))
    return _are_below(files, os.path.commonpath([path.parent for path in others]))


def _are_below(files: set[Path], folder: str) -> bool:
    return all(path.is_relative_to(folder) for path in files)


def _band(raster: rasterio.DatasetReader, source: Source, index: int,
          order: list[tuple[str, str | None]]) -> Band:
    tags = raster.tags(index)
    name = raster.descriptions[index - 1] or ""
    return Band(
        name=name,
        common_name=tags.get("common_name", ""),
        number=order.index((tags["component"], raster.descriptions[index - 1])) + 1,
        shape=raster.shape,
        dtype=np.dtype(raster.dtypes[index - 1]),
        pixel_size=raster.res,
        transform=raster.transform,
        crs=raster.crs,
        nodata=raster.nodatavals[index - 1],
        scale=raster.scales[index - 1],
        offset=raster.offsets[index - 1],
        unit=raster.units[index - 1] or "",
        wavelength=float(tags["wavelength"]) if "wavelength" in tags else None,
        fwhm=float(tags["fwhm"]) if "fwhm" in tags else None,
        path=Path(tags["component"]),
        block=raster.block_shapes[index - 1],
        source=source,
        index=index,
    )


def _window(key: tuple[Any, Any], shape: tuple[int, int]) -> tuple[Window, tuple[Any, Any]]:
    """The window that holds what is indexed, and how to index what was read from it."""
    starts, lengths, rest = [], [], []
    for part, length in zip(key, shape):
        if isinstance(part, slice):
            chosen = range(length)[part]
            low, high = (min(chosen), max(chosen) + 1) if len(chosen) else (0, 0)
            inner = slice(None, None, part.step) if len(chosen) else slice(0, 0)
        else:
            low = range(length)[part]  # IndexError past the end
            high, inner = low + 1, 0
        starts.append(low)
        lengths.append(max(high - low, 1))
        rest.append(inner)
    return Window(starts[1], starts[0], lengths[1], lengths[0]), (rest[0], rest[1])
