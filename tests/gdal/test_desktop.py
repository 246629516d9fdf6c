"""QGIS without a screen, and R. They take long to install, so scripts/test-clients --all runs them."""

from __future__ import annotations

import json
import os
import shutil
import subprocess
import sys
from pathlib import Path

import numpy as np
import pytest
import rasterio

from conftest import BUILD, NO_DATA, component_name, write_component

pytestmark = pytest.mark.slow


def qgis(source: str, picture: Path) -> dict:
    program = Path(__file__).with_name("qgis_layer.py")
    ended = subprocess.run([sys.executable, program, source, picture],
                           capture_output=True, text=True, timeout=120, check=True)
    return json.loads(ended.stdout.splitlines()[-1])


def r(library: str, program: str) -> list[str]:
    ended = subprocess.run(
        ["Rscript", "-e", f"suppressMessages(suppressWarnings(library({library}))); {program}"],
        capture_output=True, text=True, timeout=120, check=False)
    assert ended.returncode == 0, ended.stderr
    return ended.stdout.split("\n")[:-1]


def test_qgis_shows_names_and_no_data(document, tmp_path):
    told = qgis(str(document), tmp_path / "any.png")
    assert told["valid"]
    assert told["names"][3] == "Band 4: Near infrared (band 4)"
    assert told["noData"] == [NO_DATA] * 5
    assert (told["system"], told["pixelSize"]) == ("EPSG:32632", 15)


def test_qgis_shows_a_pixel_size_of_its_own(scene, tmp_path):
    told = qgis(f'KESTMS:"{scene}":30m', tmp_path / "any.png")
    assert (told["pixelSize"], len(told["names"])) == (30, 4)


def test_qgis_draws_the_colours_that_the_bands_have(tmp_path):
    """Three fields, each bright in one band, come out red, green and blue."""
    fields = {"B30": slice(0, 16), "B20": slice(16, 32), "B10": slice(32, 50)}
    for code, columns in fields.items():
        with rasterio.open(write_component(tmp_path, code), "r+") as raster:
            samples = np.full(raster.shape, 100, np.uint16)
            samples[:, columns] = 4000
            raster.write(samples, 1)
    picture = tmp_path / "picture.png"
    told = qgis(f"KESTMS:{tmp_path}|option:ORDER=display", picture)
    assert told["shown"] == [1, 2, 3]
    with rasterio.open(picture) as image:
        colours = image.read((1, 2, 3))[:, 20, (8, 24, 41)].T
    assert (colours.argmax(axis=1) == [0, 1, 2]).all(), colours
    assert (np.sort(colours)[:, :2].max(axis=1) < 30).all(), colours


def test_qgis_draws_a_sample_scene(tmp_path):
    subprocess.run([BUILD / "bin" / "kestms", "samples", tmp_path / "scenes"], check=True,
                   capture_output=True)
    picture = tmp_path / "qgis.png"
    qgis(f'{tmp_path}/scenes/landsat7/set.xml|option:ORDER=display', picture)
    with rasterio.open(picture) as image:
        assert image.shape == (512, 512)
        assert image.read((1, 2, 3)).std(axis=(1, 2)).min() > 20
    if "KEST_PICTURE" in os.environ:  # for docs/images
        shutil.copy(picture, os.environ["KEST_PICTURE"])


def test_qgis_draws_a_written_raster_as_quicklook_does(tmp_path):
    """The style beside it names the bands; QGIS by itself would swap red and blue."""
    tool = BUILD / "bin" / "kestms"
    subprocess.run([tool, "samples", tmp_path / "scenes", "--size", "128"], check=True,
                   capture_output=True)
    scene = tmp_path / "scenes/quickbird-1234/set.xml"
    raster, drawn, picture = (tmp_path / name for name in ("out.vrt", "drawn.png", "qgis.png"))
    subprocess.run([tool, "vrt", scene, "-o", raster], check=True, capture_output=True)
    told = qgis(str(raster), picture)
    assert told["shown"] == [3, 2, 1]
    with rasterio.open(picture) as image:
        shown = image.read((1, 2, 3))
    subprocess.run([tool, "quicklook", scene, "-o", drawn, "--size", str(max(shown.shape))],
                   check=True, capture_output=True)
    with rasterio.open(drawn) as image:
        ours = image.read((1, 2, 3))
    difference = np.abs(shown.astype(int) - ours).mean(axis=(1, 2))
    assert (difference < 8).all(), difference
    swapped = np.abs(shown[::-1].astype(int) - ours).mean(axis=(1, 2))
    assert (swapped[[0, 2]] > 2 * difference[[0, 2]]).all(), (swapped, difference)


def test_terra_reads_names_places_and_samples(scene):
    lines = r("terra", f"""
        r <- rast('KESTMS:"{scene}":30m')
        cat(names(r), sep = "\\n"); cat(xmin(r), ymax(r), res(r), "\\n")
        cat(r[[4]][5, 8][[1]], is.na(r[[4]][4, 6][[1]]), "\\n")""")
    assert lines[3] == "Near infrared (band 4)"
    assert lines[4].split() == ["5e+05", "4600000", "30", "30"]
    with rasterio.open(scene / component_name("B40")) as component:
        assert lines[5].split() == [str(component.read(1)[4, 7]), "TRUE"]


def test_stars_reads_names_and_samples(scene):
    lines = r("stars", f"""
        s <- read_stars('KESTMS:"{scene}":30m', quiet = TRUE)
        cat(st_get_dimension_values(s, "band"), sep = "\\n")
        cat(s[[1]][8, 5, 2], is.na(s[[1]][6, 4, 2]), "\\n")""")
    assert lines[:2] == ["Blue (band 1)", "Green (band 2)"]
    with rasterio.open(scene / component_name("B20")) as component:
        assert lines[4].split() == [str(component.read(1)[4, 7]), "TRUE"]
