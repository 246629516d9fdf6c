#!/usr/bin/env python3
"""Opening and reading a set through the GDAL driver, beside GDAL on the components.

usage: GDAL_DRIVER_PATH=... benchmarks/driver.py [ROUNDS]

Each row is the least time of the rounds, in milliseconds; the rounds of a row's ways alternate.
"""

from __future__ import annotations

import sys
import tempfile
import time
from pathlib import Path
from typing import Callable

import numpy as np
from osgeo import gdal

gdal.UseExceptions()
BANDS, SIZE = 12, 4096


def make_components(folder: Path) -> list[str]:
    noise = np.random.default_rng(1).integers(0, 4000, (SIZE, SIZE), dtype=np.uint16)
    paths = []
    for number in range(1, BANDS + 1):
        path = str(folder / f"scene_{number:02}.tif")
        raster = gdal.GetDriverByName("GTiff").Create(
            path, SIZE, SIZE, 1, gdal.GDT_UInt16,
            ["TILED=YES", "COMPRESS=DEFLATE", "PREDICTOR=2", "ZLEVEL=1"])
        raster.SetGeoTransform((500000, 10, 0, 4600000, 0, -10))
        raster.SetSpatialRef(_system())
        raster.GetRasterBand(1).WriteArray(noise)
        paths.append(path)
    return paths


def _system():
    from osgeo import osr

    system = osr.SpatialReference()
    system.ImportFromEPSG(32632)
    return system


def write_set(folder: Path, paths: list[str]) -> str:
    entries = "".join(f'<component><data><file path="{path}" frame="0"/></data></component>'
                      for path in paths)
    document = folder / "SET.xml"
    document.write_text(f'<storage version="1.00"><image>{entries}</image></storage>')
    return str(document)


def least(rounds: int, ways: dict[str, Callable[[], object]]) -> dict[str, float]:
    times = {name: float("inf") for name in ways}
    for _ in range(rounds):
        for name, way in ways.items():
            start = time.process_time()
            way()
            times[name] = min(times[name], time.process_time() - start)
    return times


def open_components(paths: list[str]) -> None:
    for path in paths:
        raster = gdal.Open(path)
        raster.GetSpatialRef()


def read_windows(raster, number: int) -> None:
    band = raster.GetRasterBand(number)
    for y in range(0, SIZE, 512):
        for x in range(0, SIZE, 512):
            band.ReadRaster(x, y, 512, 512)


def fresh(name: str, number: int, read: Callable) -> Callable[[], None]:
    def run() -> None:
        read(gdal.Open(name), number)  # opened anew: nothing is left in GDAL's block cache
    return run


def main(rounds: int) -> None:
    with tempfile.TemporaryDirectory() as place:
        folder = Path(place)
        paths = make_components(folder)
        document = write_set(folder, paths)
        virtual = str(folder / "bands.vrt")
        gdal.BuildVRT(virtual, paths, separate=True)
        print(f"{'':34}{'driver':>10}{'components':>12}{'virtual':>10}{'ratios':>16}")
        rows = {
            f"open {BANDS} bands": {
                "driver": lambda: gdal.Open(document),
                "components": lambda: open_components(paths),
                "virtual": lambda: gdal.BuildVRT("", paths, separate=True),
            },
            "open, read band 5 in one call": {
                "driver": fresh(document, 5, lambda r, n: r.GetRasterBand(n).ReadRaster()),
                "components": fresh(paths[4], 1, lambda r, n: r.GetRasterBand(n).ReadRaster()),
                "virtual": fresh(virtual, 5, lambda r, n: r.GetRasterBand(n).ReadRaster()),
            },
            "open, read band 5 in windows": {
                "driver": fresh(document, 5, read_windows),
                "components": fresh(paths[4], 1, read_windows),
                "virtual": fresh(virtual, 5, read_windows),
            },
        }
        for name, ways in rows.items():
            times = least(rounds, ways)
            driver, components, virtual_time = times.values()
            print(f"{name:34}{driver * 1e3:10.2f}{components * 1e3:12.2f}{virtual_time * 1e3:10.2f}"
                  f"{driver / components:8.3f}{driver / virtual_time:8.3f}")


main(int(sys.argv[1]) if len(sys.argv) > 1 else 7)
