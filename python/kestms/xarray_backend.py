"""The engine "kestms" of xarray: one variable a band."""

from __future__ import annotations

import os
import re
from collections.abc import Iterable
from typing import Any

import numpy as np
import rasterio
import xarray as xr
from rasterio.enums import MaskFlags
from rasterio.windows import Window
from xarray.backends import BackendArray, BackendEntrypoint
from xarray.core import indexing

from kestms.rasters import PREFIX, PathLike, Source, data_set_name, is_document, opened, part_name

#: Chunks hold at least this many pixels, so that a graph stays small.
_CHUNK_PIXELS = 1 << 20


class BandArray(BackendArray):
    """Samples of one band, shape (rows, columns); read by window. Pickled without open files."""

    def __init__(self, source: Source, index: int, shape: tuple[int, int], dtype: np.dtype[Any],
                 own_mask: bool) -> None:
        self.source = source
        self.index = index
        self.shape = shape
        #: Floating point if the band has its own mask.
        self.dtype = np.result_type(dtype, np.float32) if own_mask else dtype
        self.own_mask = own_mask

    def __getitem__(self, key: indexing.ExplicitIndexer) -> np.ndarray[Any, Any]:
        if isinstance(key, (indexing.BasicIndexer, indexing.OuterIndexer)):
            # Not through the adapter: it moves slices of negative step in some releases of xarray.
            return self._read(key.tuple)
        return indexing.explicit_indexing_adapter(
            key, self.shape, indexing.IndexingSupport.OUTER, self._read)

    def _read(self, key: tuple[Any, ...]) -> np.ndarray[Any, Any]:
        chosen = [np.arange(length)[part] for part, length in zip(key, self.shape)]
        if any(part.size == 0 for part in chosen):
            return np.empty([part.size for part in chosen if part.ndim], self.dtype)
        window = Window.from_slices(*((int(part.min()), int(part.max()) + 1) for part in chosen))
        samples = opened(self.source).read(self.index, window=window, masked=self.own_mask)
        if self.own_mask:
            samples = samples.astype(self.dtype).filled(np.nan)
        # From the last axis on: a number for an index drops its axis.
        for axis in (1, 0):
            samples = np.take(samples, chosen[axis] - chosen[axis].min(), axis=axis)
        return samples


class KestmsBackendEntrypoint(BackendEntrypoint):
    """Opens a folder, a pattern, a list of files or a document.

    Variables are named after the common name of their band ("nir"), else after its name; they have
    the dimensions (y, x). Without `group` all bands are on the finest grid, coarser ones with each
    pixel repeated where it lies; `group="30m"` gives the bands of that pixel size as they are
    stored.
    """

    description = "Multispectral image sets of single-band files"
    open_dataset_parameters = ("filename_or_obj", "drop_variables", "group", "mask_and_scale",
                               "scene")

    def open_dataset(
        self,
        filename_or_obj: PathLike,
        *,
        drop_variables: str | Iterable[str] | None = None,
        group: str | None = None,
        mask_and_scale: bool = True,
        scene: str | None = None,
        decode_times: Any = None,
        decode_timedelta: Any = None,
        use_cftime: Any = None,
        concat_characters: Any = None,
        decode_coords: Any = None,
    ) -> xr.Dataset:
        """With `mask_and_scale` samples without data are NaN, and scale and offset are applied.

        `scene` names one of several. The other decoders, which programs give for any engine, find
        nothing to decode: there are no times or texts, and coordinates are coordinates already.
        """
        path = os.fspath(filename_or_obj)
        source = Source(data_set_name(path) if group is None else part_name(path, group), scene)
        with source.open() as raster:
            names = variable_names(raster)
            variables = {name: _variable(raster, source, index, mask_and_scale)
                         for index, name in enumerate(names, start=1)}
            coordinates = _coordinates(raster)
            attributes = {key.lower(): value for key, value in raster.tags().items()}
        variables, attributes, _ = xr.conventions.decode_cf_variables(
            variables, attributes, mask_and_scale=mask_and_scale, decode_times=False,
            decode_coords=False, drop_variables=drop_variables)
        return xr.Dataset(variables, coords=coordinates, attrs=attributes)

    def guess_can_open(self, filename_or_obj: Any) -> bool:
        if not isinstance(filename_or_obj, (str, os.PathLike)):
            return False
        path = os.fspath(filename_or_obj)
        if path.upper().startswith(PREFIX):
            return True
        if not path.lower().endswith(".xml"):
            return False
        return is_document(path)


def variable_names(raster: rasterio.DatasetReader) -> list[str]:
    """A name for each band, none twice: its common name, else its name as an identifier."""
    common = [raster.tags(index).get("common_name", "") for index in raster.indexes]
    names: list[str] = []
    for name, description in zip(common, raster.descriptions):
        if not name or common.count(name) > 1:
            name = re.sub(r"\W+", "_", (description or "band").lower()).strip("_")
        number = 2
        unique = name
        while unique in names:
            unique, number = f"{name}_{number}", number + 1
        names.append(unique)
    return names


def _variable(raster: rasterio.DatasetReader, source: Source, index: int,
              mask_and_scale: bool) -> xr.Variable:
    at = index - 1
    own_mask = mask_and_scale and raster.mask_flag_enums[at] in ([], [MaskFlags.per_dataset])
    array = BandArray(source, index, raster.shape, np.dtype(raster.dtypes[at]), own_mask)
    attributes: dict[str, Any] = {
        key: value for key, value in raster.tags(index).items() if not key.startswith("STATISTICS_")
    }
    for key in ("wavelength", "fwhm"):
        if key in attributes:
            attributes[key] = float(attributes[key])
    attributes |= {"long_name": raster.descriptions[at] or "", "grid_mapping": "spatial_ref"}
    if raster.units[at]:
        attributes["units"] = raster.units[at]
    if raster.nodatavals[at] is not None and not own_mask:
        attributes["_FillValue"] = np.array(raster.nodatavals[at]).astype(array.dtype)[()]
    if (raster.scales[at], raster.offsets[at]) != (1.0, 0.0):
        attributes |= {"scale_factor": raster.scales[at], "add_offset": raster.offsets[at]}
    variable = xr.Variable(("y", "x"), indexing.LazilyIndexedArray(array), attributes)
    variable.encoding["preferred_chunks"] = _chunks(raster.block_shapes[at], raster.shape)
    return variable


def _chunks(block: tuple[int, int], shape: tuple[int, int]) -> dict[str, int]:
    """Whole blocks, as many as make a chunk of a million pixels or so."""
    rows, columns = block
    columns = min(shape[1], columns * max(1, round(1024 / columns)))
    rows = min(shape[0], rows * max(1, _CHUNK_PIXELS // (rows * columns)))
    return {"y": rows, "x": columns}


def _coordinates(raster: rasterio.DatasetReader) -> dict[str, xr.Variable]:
    """Centres of columns and rows, and the coordinate system."""
    transform = raster.transform
    about: dict[str, Any] = {"GeoTransform": " ".join(map(repr, transform.to_gdal()))}
    if raster.crs is not None:
        about |= {"crs_wkt": raster.crs.to_wkt(), "spatial_ref": raster.crs.to_wkt()}
    coordinates = {"spatial_ref": xr.Variable((), 0, about)}
    if transform.b == 0 and transform.d == 0:  # else x and y depend on both
        geographic = raster.crs is not None and raster.crs.is_geographic
        for name, axis, size, step, start in (
            ("x", "longitude" if geographic else "projection_x_coordinate", raster.width,
             transform.a, transform.c),
            ("y", "latitude" if geographic else "projection_y_coordinate", raster.height,
             transform.e, transform.f),
        ):
            coordinates[name] = xr.Variable(
                (name,), start + (np.arange(size) + 0.5) * step, {"standard_name": axis})
    return coordinates
