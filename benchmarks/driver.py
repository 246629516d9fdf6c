#!/usr/bin/env python3
"""Opening and reading a set through the GDAL driver, beside GDAL on the components.

usage: GDAL_DRIVER_PATH=... benchmarks/driver.py [ROUNDS]

Times are the least of the rounds, in milliseconds of processor time (of wall time where threads
read). The ways of a row take turns, and a ratio is the median over the rounds.
"""

from __future__ import annotations

import os
import sys
import tempfile
import time
from collections.abc import Callable, Iterator
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

import numpy as np
from osgeo import gdal

gdal.UseExceptions()
BANDS, SIZE, THREADS = 12, 4096, 2
OPENS = 10  # a run, as one takes less than a millisecond


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


def measured(rounds: int, ways: list[Callable[[], object]],
             clock: Callable[[], float]) -> np.ndarray:
    """Times of the ways, shape (rounds, ways)."""
    times = np.empty((rounds, len(ways)))
    for turn in range(rounds):
        for number, way in enumerate(ways):
            start = clock()
            way()
            times[turn, number] = clock() - start
    return times


def open_components(paths: list[str]) -> None:
    for path in paths:
        gdal.Open(path)


def read_windows(raster, number: int) -> None:
    band = raster.GetRasterBand(number)
    for y in range(0, SIZE, 512):
        for x in range(0, SIZE, 512):
            band.ReadRaster(x, y, 512, 512)


def fresh(name: str, number: int, read: Callable) -> Callable[[], None]:
    def run() -> None:
        read(gdal.Open(name), number)  # opened again: GDAL's block cache is empty
    return run


def one_call(raster, number: int) -> None:
    raster.GetRasterBand(number).ReadRaster()


def in_threads(name: str, number: int) -> Callable[[], None]:
    """Threads with a dataset each read the windows of one band, every second row of them."""
    def part(first: int) -> None:
        band = (raster := gdal.Open(name)).GetRasterBand(number)
        for y in range(first * 512, SIZE, THREADS * 512):
            for x in range(0, SIZE, 512):
                band.ReadRaster(x, y, 512, 512)
        del band, raster

    def run() -> None:
        with ThreadPoolExecutor(THREADS) as threads:
            list(threads.map(part, range(THREADS)))
    return run


def opens(ways: dict[str, Callable[[], object]]) -> dict[str, Callable[[], object]]:
    """The ways, several times in a run."""
    return {name: lambda way=way: [way() for _ in range(OPENS)] for name, way in ways.items()}


def unseen(folder: Path, paths: list[str], rounds: int) -> dict[str, Callable[[], object]]:
    """Ways to open files that the process has not opened before: other names for the same ones."""
    def copies(way: str) -> Iterator[tuple[str, list[str]]]:
        for turn in range(rounds * OPENS):
            place = folder / f"{way}{turn}"
            place.mkdir()
            links = [str(place / Path(path).name) for path in paths]
            for path, link in zip(paths, links):
                os.link(path, link)
            yield write_set(place, links), links

    driver, components, virtual = (iter(list(copies(way))) for way in ("d", "c", "v"))
    return opens({
        "driver": lambda: gdal.Open(next(driver)[0]),
        "components": lambda: open_components(next(components)[1]),
        "virtual": lambda: gdal.BuildVRT("", next(virtual)[1], separate=True),
    })


def main(rounds: int) -> None:
    with tempfile.TemporaryDirectory() as place:
        folder = Path(place)
        paths = make_components(folder)
        document = write_set(folder, paths)
        virtual = str(folder / "bands.vrt")
        gdal.BuildVRT(virtual, paths, separate=True)
        gdal.Open(document)  # loads what is loaded once in a process
        time.sleep(0.1)  # files older than that are opened once for all
        rows = {
            f"open {BANDS} bands {OPENS} times, unseen": unseen(folder, paths, rounds),
            f"open {BANDS} bands {OPENS} times, again": opens({
                "driver": lambda: gdal.Open(document),
                "components": lambda: open_components(paths),
                "virtual": lambda: gdal.BuildVRT("", paths, separate=True),
            }),
        }
        for name, read in {"in one call": one_call, "in windows": read_windows}.items():
            rows[f"open, read band 5 {name}"] = {
                "driver": fresh(document, 5, read),
                "components": fresh(paths[4], 1, read),
                "virtual": fresh(virtual, 5, read),
            }
        rows[f"the same in {THREADS} threads"] = {
            "driver": in_threads(document, 5),
            "components": in_threads(paths[4], 1),
            "virtual": in_threads(virtual, 5),
        }
        print(f"{'':36}{'driver':>10}{'components':>12}{'virtual':>10}{'ratios':>16}")
        for name, ways in rows.items():
            clock = time.perf_counter if "threads" in name else time.process_time
            times = measured(rounds, list(ways.values()), clock)
            ratios = np.median(times[:, :1] / times[:, 1:], axis=0)
            print(f"{name:36}" + "".join(f"{least * 1e3:11.2f}" for least in times.min(axis=0))
                  + "".join(f"{ratio:9.3f}" for ratio in ratios))


main(int(sys.argv[1]) if len(sys.argv) > 1 else 7)
