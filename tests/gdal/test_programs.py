"""GDAL's own programs, each in its own process."""

from __future__ import annotations

import json
import subprocess
import sys

import numpy as np
import pytest
import rasterio
from rasterio.transform import Affine

from conftest import BUILD, NAMES, component_name, samples, write_component, write_document

DESCRIPTIONS = [
    "Blue (band 1)", "Green (band 2)", "Red (band 3)", "Near infrared (band 4)",
    "Panchromatic (band 8)",
]


def read(path, band=1):
    with rasterio.open(path) as raster:
        return raster.read(band)


@pytest.mark.parametrize("how", ["document", "folder", "pattern"])
def test_gdalinfo_describes_the_set(how, scene, document, run):
    name = {"document": document, "folder": f"KESTMS:{scene}", "pattern": f"KESTMS:{scene}/*.TIF"}
    told = json.loads(run("gdalinfo", "-json", name[how]))
    assert told["driverShortName"] == "KESTMS"
    assert told["metadata"][""]["REFERENCE_NAME"] == "L71026029_02920000609"
    assert told["size"] == [99, 79]
    assert told["geoTransform"] == [500007.5, 15, 0, 4599992.5, 0, -15]
    assert [band["description"] for band in told["bands"]] == DESCRIPTIONS
    assert [band["colorInterpretation"] for band in told["bands"]] == [
        "Blue", "Green", "Red", "Undefined", "Gray",
    ]
    assert {band["noDataValue"] for band in told["bands"]} == {65535}
    parts = told["metadata"]["SUBDATASETS"]
    quoted = str(name[how]).removeprefix("KESTMS:")
    assert [parts[f"SUBDATASET_{i}_NAME"] for i in (1, 2)] == [
        f'KESTMS:"{quoted}":30m', f'KESTMS:"{quoted}":15m',
    ]
    assert told["bands"][0]["metadata"][""]["wavelength"] == "0.485"
    assert told["bands"][3]["metadata"][""]["common_name"] == "nir"
    files = {str(scene / component_name(code)) for code in NAMES}
    assert set(told["files"]) == files | ({str(document)} if how == "document" else set())


def test_a_folder_that_is_never_listed_is_no_hindrance(document, run):
    told = run("gdalinfo", document, GDAL_DISABLE_READDIR_ON_OPEN="EMPTY_DIR")
    assert "Near infrared (band 4)" in told


@pytest.mark.parametrize(("size", "codes"), [("30m", ["B10", "B20", "B30", "B40"]), ("15m", ["B80"])])
def test_translate_of_a_pixel_size_gives_the_components(size, codes, scene, run, tmp_path):
    out = tmp_path / "out.tif"
    run("gdal_translate", "-q", f'KESTMS:"{scene}":{size}', out)
    with rasterio.open(out) as copied:
        assert copied.descriptions == tuple(
            DESCRIPTIONS[list(NAMES).index(code)] for code in codes
        )
        for number, code in enumerate(codes, start=1):
            with rasterio.open(scene / component_name(code)) as component:
                assert copied.transform == component.transform
                assert copied.crs == component.crs
                np.testing.assert_array_equal(copied.read(number), component.read(1))


def test_translate_of_the_set_puts_each_pixel_in_its_place(scene, run, tmp_path):
    out = tmp_path / "out.tif"
    run("gdal_translate", "-q", f"KESTMS:{scene}", out)
    with rasterio.open(out) as copied:
        for number, code in enumerate(NAMES, start=1):
            with rasterio.open(scene / component_name(code)) as component:
                rows, columns = np.indices(copied.shape)
                x, y = copied.transform * (columns.ravel() + 0.5, rows.ravel() + 0.5)
                expected = np.array([value[0] for value in component.sample(zip(x, y))])
                # Where the component ends short of the pixel's centre, there is no data.
                np.testing.assert_array_equal(copied.read(number).ravel(), expected)


def test_the_set_is_what_the_tool_writes_to_the_last_edge(run, tmp_path):
    # The centres of the last panchromatic line lie on the lower edge of the other band.
    places = {"B80": (82, Affine(15, 0, 483277.5, 0, -15, 5628517.5)),
              "B30": (41, Affine(30, 0, 483285, 0, -30, 5628525))}
    for code, (size, transform) in places.items():
        with rasterio.open(
            tmp_path / component_name(code), "w", driver="GTiff", width=size, height=size, count=1,
            dtype="uint16", crs="EPSG:32632", transform=transform
        ) as raster:
            raster.write(samples(code, size, size), 1)
    run("gdal_translate", "-q", f"KESTMS:{tmp_path}", tmp_path / "driver.tif")
    run(BUILD / "bin" / "kestms", "-q", "vrt", tmp_path, "-o", tmp_path / "tool.vrt")
    for band in (1, 2):
        np.testing.assert_array_equal(
            read(tmp_path / "driver.tif", band), read(tmp_path / "tool.vrt", band))


def test_warp_gives_what_it_gives_for_the_components(scene, run, tmp_path):
    frame = ["-t_srs", "EPSG:4326", "-te", 9.001, 41.535, 9.015, 41.545, "-ts", 60, 50]
    for method in ("near", "cubic"):
        out = tmp_path / f"{method}.tif"
        run("gdalwarp", "-q", "-r", method, *frame, f'KESTMS:"{scene}":30m', out)
        for number, code in enumerate(["B10", "B20", "B30", "B40"], start=1):
            alone = tmp_path / f"{method}{code}.tif"
            run("gdalwarp", "-q", "-r", method, *frame, scene / component_name(code), alone)
            np.testing.assert_array_equal(read(out, number), read(alone))


def test_open_options_choose_scene_bands_and_catalogue(run, tmp_path):
    for name in ("cam_111111_20200101", "cam_111111_20200202"):
        for code in ("B1", "B2", "B3"):
            write_component(tmp_path, "B10").rename(tmp_path / f"{name}_{code}.tif")
    catalogue = tmp_path / "mine.xml"
    catalogue.write_text("""<catalogue version="1"><bands id="camera">
        <bucket id="all" number="0"><name>All</name></bucket>
        <band code="B1" type="red"><name>Ruby</name></band>
        <band code="B2" type="green"><name>Emerald</name></band>
        <band code="B3" type="blue"><name>Sapphire</name></band></bands>
        <product id="camera" bands="camera"><name>Camera</name><source>us</source>
        <file>[CAM_######_{date}]_{band}</file></product></catalogue>""")

    def names(*options: str) -> list[str]:
        told = json.loads(run("gdalinfo", "-json", f"KESTMS:{tmp_path}/*.tif",
                              *(word for option in options for word in ("-oo", option))))
        return [told["metadata"][""]["REFERENCE_NAME"]] + [band["description"] for band in told["bands"]]

    second = "SCENE=cam_111111_20200202"
    with_products = f"PRODUCTS={catalogue}"
    assert names(with_products, second) == ["cam_111111_20200202", "Ruby", "Emerald", "Sapphire"]
    assert names(with_products, second, "BANDS=blue,*_B1.tif")[1:] == ["Sapphire", "Ruby"]
    for options, reason in {
        (with_products,): "holds 2 scenes; choose one with the open option SCENE=NAME",
        (with_products, "SCENE=no"): "no such scene; there are cam_111111_20200101",
        ("PRODUCTS=/no/such.xml",): "/no/such.xml",
        (with_products, second, "BANDS=nir"): "nir",
    }.items():
        words = [word for option in options for word in ("-oo", option)]
        ended = subprocess.run(["gdalinfo", f"KESTMS:{tmp_path}/*.tif", *words],
                               capture_output=True, text=True, check=False)
        assert ended.returncode == 1
        assert reason in ended.stderr
    with rasterio.open(f"KESTMS:{tmp_path}", products=catalogue, scene="cam_111111_20200101") as raster:
        assert raster.descriptions == ("Ruby", "Emerald", "Sapphire")
    with pytest.raises(rasterio.errors.RasterioIOError, match="no such scene"):
        # The catalogue of one dataset is none of another.
        rasterio.open(f"KESTMS:{tmp_path}", scene="cam_111111_20200101")


def test_a_virtual_raster_of_a_set_is_read_but_not_that_of_itself(document, tmp_path):
    raster = tmp_path / "set.vrt"
    itself = write_document(tmp_path / "SET.xml", [raster] * 40)  # other threads read so many ahead
    for source, code in {itself: 3, document: 0}.items():
        band = f"<SimpleSource><SourceFilename>KESTMS:{source}</SourceFilename></SimpleSource>"
        raster.write_text('<VRTDataset rasterXSize="9" rasterYSize="9">'
                          '<GeoTransform>0,1,0,0,0,-1</GeoTransform><VRTRasterBand'
                          f' dataType="UInt16" band="1">{band}</VRTRasterBand></VRTDataset>')
        ended = subprocess.run([BUILD / "bin" / "kestms", "check", "--allow-vrt", raster, raster],
                               capture_output=True, check=False, timeout=60)
        assert ended.returncode == code


def test_reasons_are_those_of_the_tool(scene, run):
    for name, reason in {
        f"KESTMS:{scene}/none": "No such file or directory",
        f'KESTMS:"{scene}/*.TIF":20m': "has no bands of pixel size 20m, but of 30m, 15m",
    }.items():
        ended = subprocess.run(["gdalinfo", name], capture_output=True, text=True, check=False)
        assert ended.returncode == 1
        assert reason in ended.stderr


@pytest.mark.parametrize(
    "ending", ["", "band = raster = None", "band = raster = None; gdal.GDALDestroyDriverManager()"]
)
def test_python_may_end_without_closing(ending, document, run):
    program = f"""
from osgeo import gdal
raster = gdal.Open({str(document)!r})
band = raster.GetRasterBand(5)
print(band.ReadAsArray().shape, raster.GetRasterBand(1).GetMaskFlags())
{ending}
"""
    assert run(sys.executable, "-c", program) == "(79, 99) 8\n"
