"""Every product of the catalogue through the driver, under file names made from its own patterns."""

from __future__ import annotations

import json
import re
import subprocess

import numpy as np
import pytest
import rasterio
from rasterio.transform import Affine

from conftest import BUILD

PRODUCTS = json.loads(
    subprocess.run([BUILD / "bin" / "kestms", "--language", "en", "products", "--json"],
                   capture_output=True, check=True).stdout
)["products"]
SIGNS = {"#+": "12", "#": "1", "@": "A", "{date}": "20180629", "{yearday}": "2018180", "{y/m/d}": "2018/6/29",
         "[": "", "]": ""}


def name_of(pattern: str, code: str) -> str:
    """A name that the pattern matches: the first of alternatives, and any digits and letters."""
    parts = re.findall(r"#\+|\{[^}]+\}|\([^)]*\)|.", pattern)
    return "".join(
        code if part == "{band}" else part[1:-1].split("|")[0] if part[0] == "(" else SIGNS.get(part, part)
        for part in parts
    )


@pytest.mark.parametrize("product", PRODUCTS, ids=lambda product: product["id"])
def test_a_product_opens_with_its_own_names(product, tmp_path):
    bands = [band for band in product["bands"] if band["role"] == "band"]
    for number, band in enumerate(bands, start=1):
        path = tmp_path / (name_of(product["fileNames"][0], band["code"]) + ".tif")
        path.parent.mkdir(parents=True, exist_ok=True)
        with rasterio.open(path, "w", driver="GTiff", width=6, height=4, count=1, dtype="uint16",
                           crs="EPSG:32632", transform=Affine(30, 0, 500000, 0, -30, 4600000)) as raster:
            raster.write(np.full((1, 4, 6), number, np.uint16))
        for witness in product["witnesses"]:
            for folder in {path.parent, path.parent.parent} - {tmp_path.parent}:
                (folder / witness).write_text("<witness/>")
    if len(bands) == 1:
        with pytest.raises(rasterio.errors.RasterioIOError, match="at least two bands"):
            rasterio.open(f"KESTMS:{tmp_path}")
        return
    with rasterio.open(f"KESTMS:{tmp_path}") as opened:
        assert opened.tags()["NAMING_SCHEME"] == "catalogue"
        assert opened.descriptions == tuple(band["name"] for band in bands)
        tags = [opened.tags(number) for number in opened.indexes]
        assert [tag.get("common_name") for tag in tags] == [band["commonName"] for band in bands]
        assert [tag.get("wavelength") and float(tag["wavelength"]) for tag in tags] == [
            band.get("centreWavelength") for band in bands
        ]
        assert opened.read()[:, 0, 0].tolist() == list(range(1, len(bands) + 1))
