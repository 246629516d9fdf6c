"""The xarray engine "kestms", also with dask."""

from __future__ import annotations

import pickle

import numpy as np
import pytest
import rasterio

from conftest import NO_DATA, component_name, write_component

xr = pytest.importorskip("xarray")


def component(scene, code):
    with rasterio.open(scene / component_name(code)) as raster:
        return raster.read(1)


def test_one_variable_a_band(scene):
    data = xr.open_dataset(scene, engine="kestms", group="30m")
    assert list(data.data_vars) == ["blue", "green", "red", "nir"]
    assert data.nir.dims == ("y", "x")
    assert data.attrs["reference_name"] == "L71026029_02920000609"
    assert data.nir.attrs["long_name"] == "Near infrared (band 4)"
    assert data.nir.attrs["wavelength"] == 0.835
    np.testing.assert_array_equal(data.x[[0, -1]], [500015, 501485])
    np.testing.assert_array_equal(data.y[[0, -1]], [4599985, 4598815])
    assert rasterio.crs.CRS.from_wkt(data.spatial_ref.attrs["crs_wkt"]).to_epsg() == 32632
    assert data.nir.attrs["grid_mapping"] == "spatial_ref"


@pytest.mark.parametrize("mask", [True, False])
def test_no_data_is_a_mask(mask, scene):
    data = xr.open_dataset(scene, engine="kestms", group="30m", mask_and_scale=mask)
    samples = component(scene, "B10")
    if mask:
        assert np.isnan(data.blue[3, 5]) and np.isnan(data.blue).sum() == 1
        np.testing.assert_array_equal(data.blue.fillna(NO_DATA), samples)
    else:
        assert data.blue.dtype == "uint16"
        np.testing.assert_array_equal(data.blue, samples)


def test_the_mask_of_a_component_is_a_mask(tmp_path):
    for code in ("B10", "B80"):
        with rasterio.Env(GDAL_TIFF_INTERNAL_MASK=True):
            with rasterio.open(write_component(tmp_path, code)) as made:
                profile, samples = made.profile | {"nodata": None}, made.read(1)
            with rasterio.open(tmp_path / component_name(code), "w", **profile) as raster:
                raster.write(samples, 1)
                raster.write_mask(samples % 2 == 0)
    for group in (None, "15m"):
        data = xr.open_dataset(tmp_path, engine="kestms", group=group)
        np.testing.assert_array_equal(np.isnan(data.pan), samples % 2 == 1)


def test_the_set_itself_has_all_bands_on_the_finest_grid(document, scene):
    data = xr.open_dataset(document)  # recognised without naming the engine
    assert list(data.data_vars) == ["blue", "green", "red", "nir", "pan"]
    assert data.pan.shape == data.nir.shape == (79, 99)
    assert data.attrs["pixel_sizes"] == "30m 15m"  # netCDF holds no lists of texts
    at = {"x": 500073.0, "y": 4599867.0, "method": "nearest"}
    assert data.nir.sel(**at) == component(scene, "B40")[4, 2]


@pytest.mark.parametrize("key", [
    {"y": 3, "x": 5}, {"y": slice(2, 9), "x": [1, 7, 3]}, {"x": -1}, {"y": slice(None, None, -4)},
    {"y": slice(5, 5)},
])
def test_windows(key, scene):
    data = xr.open_dataset(scene, engine="kestms", group="15m", mask_and_scale=False,
                           decode_coords="all", decode_times=False)
    whole = xr.DataArray(component(scene, "B80"), dims=("y", "x"))
    np.testing.assert_array_equal(data.pan.isel(key), whole.isel(key))


def test_a_pickled_data_set_reads_elsewhere(scene, monkeypatch):
    monkeypatch.chdir(scene.parent)
    data = xr.open_dataset(scene.name, engine="kestms", group="30m", mask_and_scale=False)
    monkeypatch.chdir("/")
    copy = pickle.loads(pickle.dumps(data))
    np.testing.assert_array_equal(copy.red, component(scene, "B30"))


def test_a_cluster_computes_what_numpy_computes(tmp_path):
    distributed = pytest.importorskip("dask.distributed")
    rows, columns = 3000, 2000
    rng = np.random.default_rng(3)
    planes = {}
    for code in ("B30", "B40"):
        planes[code] = rng.integers(1, 10000, (rows, columns), dtype=np.uint16)
        path = write_component(tmp_path, code)
        with rasterio.open(path) as made:
            profile = made.profile | {"width": columns, "height": rows, "nodata": None}
        with rasterio.open(path, "w", **profile) as raster:
            raster.write(planes[code], 1)
    data = xr.open_dataset(tmp_path, engine="kestms", chunks={})
    red, nir = data.red.astype("float32"), data.nir.astype("float32")
    ndvi = (nir - red) / (nir + red)
    chunks = ndvi.data.npartitions
    assert 4 <= chunks <= 8
    assert len(ndvi.__dask_graph__()) <= 12 * chunks
    near, far = planes["B40"].astype("float32"), planes["B30"].astype("float32")
    with distributed.LocalCluster(n_workers=2, threads_per_worker=2, dashboard_address=None) as cluster:
        with distributed.Client(cluster):
            np.testing.assert_array_equal(ndvi.compute(), (near - far) / (near + far))
