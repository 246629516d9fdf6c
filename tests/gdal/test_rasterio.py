"""rasterio, the way into Python."""

from __future__ import annotations

from concurrent.futures import ThreadPoolExecutor

import numpy as np
import pytest
import rasterio
import rasterio.shutil
from rasterio.windows import Window

from conftest import NO_DATA, component_name


def test_bands_and_places(document):
    with rasterio.open(document) as raster:
        assert raster.count == 5
        assert raster.descriptions[3] == "Near infrared (band 4)"
        assert raster.crs.to_epsg() == 32632
        assert raster.nodatavals == (NO_DATA,) * 5
        assert [colour.name for colour in raster.colorinterp] == [
            "blue", "green", "red", "undefined", "gray",
        ]
        assert raster.tags(4)["common_name"] == "nir"
        assert raster.tags(4, ns="IMAGERY")["CENTRAL_WAVELENGTH_UM"] == "0.835"
        assert [name.rsplit(":", 1)[1] for name in raster.subdatasets] == ["30m", "15m"]
    with rasterio.open(f"KESTMS:{document}:15m") as part:
        assert (part.count, part.subdatasets) == (1, [])


@pytest.mark.parametrize("window", [Window(0, 0, 99, 79), Window(17, 3, 1, 40), Window(98, 78, 1, 1),
                                    Window(28.27, 12.66, 7.44, 1.2)])
def test_windows_are_those_of_the_component(window, document, scene):
    with rasterio.open(document) as raster, rasterio.open(scene / component_name("B80")) as pan:
        np.testing.assert_array_equal(raster.read(5, window=window), pan.read(1, window=window))


def test_no_data_is_a_mask(scene):
    with rasterio.open(f'KESTMS:"{scene}":30m') as raster:
        masked = raster.read(masked=True)
        assert masked.mask.sum(axis=(1, 2)).tolist() == [1, 1, 1, 1]
        assert masked.mask[:, 3, 5].all()


def test_copies_to_memory(scene):
    name = f'KESTMS:"{scene}":30m'
    rasterio.shutil.copy(name, "/vsimem/copy.tif", driver="GTiff")
    with rasterio.open("/vsimem/copy.tif") as copy, rasterio.open(name) as raster:
        np.testing.assert_array_equal(copy.read(), raster.read())
        assert copy.descriptions == raster.descriptions
    rasterio.shutil.delete("/vsimem/copy.tif")


def test_resampled_reads_use_the_place_of_each_band(document):
    with rasterio.open(document) as raster:
        half = raster.read(1, out_shape=(20, 25))
        full = raster.read(1)
        rows = ((np.arange(20) + 0.5) * 79 / 20).astype(int)
        columns = ((np.arange(25) + 0.5) * 99 / 25).astype(int)
        # Between the centres of two fine pixels lie at most one coarse column and row.
        assert np.abs(half.astype(int) - full[np.ix_(rows, columns)].astype(int)).max() <= 98


def test_threads_read_sets_of_their_own(document):
    def total(_: int) -> int:
        with rasterio.open(document) as raster:
            return int(raster.read().sum(dtype=np.int64))

    with ThreadPoolExecutor(4) as threads:
        assert len(set(threads.map(total, range(24)))) == 1


def test_files_that_change_are_read_anew(tmp_path, scene):
    for code in ("B10", "B20"):
        rasterio.shutil.copyfiles(scene / component_name(code), tmp_path / component_name(code))
    with rasterio.open(f"KESTMS:{tmp_path}") as raster:
        before = raster.read(1)
    with rasterio.open(tmp_path / component_name("B10"), "r+") as component:
        component.write(before + 1, 1)
    with rasterio.open(f"KESTMS:{tmp_path}") as raster:
        np.testing.assert_array_equal(raster.read(1), before + 1)
