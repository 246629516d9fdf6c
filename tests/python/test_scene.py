"""kestms.open: scenes, bands, and lazy arrays."""

from __future__ import annotations

from concurrent.futures import ThreadPoolExecutor

import numpy as np
import pytest
import rasterio
from rasterio.windows import Window

import kestms
from conftest import NO_DATA, component_name, write_component, write_document


def test_a_scene_knows_its_bands(document, scene):
    opened = kestms.open(document)
    assert (opened.name, opened.scheme, len(opened)) == ("L71026029_02920000609", "landsat-7", 5)
    assert [band.common_name for band in opened] == ["blue", "green", "red", "nir", "pan"]
    assert [band.number for band in opened] == [1, 2, 3, 4, 5]
    assert list(opened.buckets) == ["30m", "15m"]
    nir = opened["nir"]
    assert nir is opened["Near infrared (band 4)"] is opened[3]
    assert (nir.shape, nir.dtype, nir.pixel_size) == ((40, 50), np.dtype("uint16"), (30.0, 30.0))
    assert (nir.nodata, nir.wavelength, nir.scale, nir.offset) == (NO_DATA, 0.835, 1.0, 0.0)
    assert nir.crs.to_epsg() == 32632
    assert nir.path == scene / component_name("B40")
    assert str(document) in opened.files
    assert list(kestms.open(f"{scene}/*_B[12]0.TIF").buckets) == ["30m"]
    with pytest.raises(KeyError):
        opened["swir16"]


@pytest.mark.parametrize("key", [
    np.s_[:], np.s_[3], np.s_[3, 5], np.s_[-1, :], np.s_[2:9, 10:40:7], np.s_[::-1, 4:4],
    np.s_[30:20:-3, ::5], np.s_[[1, 5], :], np.s_[5:100, 1],
    np.s_[True], (),
])
def test_bands_are_indexed_like_arrays(key, scene):
    band = kestms.open(scene)["green"]
    with rasterio.open(scene / component_name("B20")) as component:
        expected = component.read(1)
    np.testing.assert_array_equal(band[key], expected[key])
    np.testing.assert_array_equal(np.asarray(band), expected)


def test_buckets_are_read_as_a_stack(scene):
    bucket = kestms.open(scene).buckets["30m"]
    stack = bucket.read(Window(4, 2, 10, 5), masked=True)
    assert stack.shape == (4, 5, 10)
    assert stack.mask.sum() == 4
    for band, plane in zip(bucket.bands, stack):
        np.testing.assert_array_equal(band[2:7, 4:14], plane.data)


def test_a_scene_opened_anew_shows_what_changed(tmp_path):
    for code in ("B10", "B20"):
        write_component(tmp_path, code)
    with ThreadPoolExecutor(1) as thread:
        before = thread.submit(lambda: kestms.open(tmp_path)["blue"][:]).result()
        with rasterio.open(tmp_path / component_name("B10"), "r+") as component:
            component.write(before + 1, 1)
        blue = kestms.open(tmp_path)["blue"]
        for after in (blue[:], thread.submit(lambda: blue[:]).result()):
            np.testing.assert_array_equal(after, before + 1)


def test_scenes_below_a_folder(tmp_path):
    for name in ("first", "second/inner", "third"):
        (tmp_path / name).mkdir(parents=True)
    products = [f"LC08_L2SP_005009_201507{day}_20200908_02_T2" for day in range(10, 22)]
    for code, band in {"B10": "SR_B2", "B20": "SR_B3"}.items():
        for name in ("first", "second/inner"):
            write_component(tmp_path / name, code)
        for product in products:
            path = tmp_path / "third" / f"{product}_{band}.TIF"
            write_component(tmp_path / "third", code).rename(path)
        for size in ("10m", "20m"):  # the coarser bands are part of the scene
            path = tmp_path / f"tile/R{size}/T32TQM_20210920T101019_B0{band[-1]}_{size}.tif"
            path.parent.mkdir(parents=True, exist_ok=True)
            write_component(path.parent, code).rename(path)
        for ending in ("", "_10m"):  # two products of one name
            path = tmp_path / f"both/T33UXP_20210920T101019_B0{band[-1]}{ending}.tif"
            path.parent.mkdir(exist_ok=True)
            write_component(path.parent, code).rename(path)
    (tmp_path / "first" / f"{products[0]}_MTL.xml").write_text("<LANDSAT_METADATA_FILE/>")
    write_document(tmp_path / "SET.xml", sorted((tmp_path / "first").glob("*.TIF")))
    (tmp_path / "notes.xml").write_text("<notes/>")
    (tmp_path / "empty").mkdir()
    found = [(scene.path, scene.name) for scene in kestms.scenes(tmp_path)]
    assert found == [(str(tmp_path / name), scene) for name, scene in (
        ("SET.xml", "L71026029_02920000609"), ("first", "L71026029_02920000609"),
        ("second", "L71026029_02920000609"), ("tile", "T32TQM_20210920T101019"),
        *(("third", product) for product in products), *[("both", "T33UXP_20210920T101019")] * 2)]


def test_what_is_no_set_says_why(tmp_path):
    with pytest.raises(rasterio.errors.RasterioIOError, match="holds no raster files"):
        kestms.open(tmp_path)
