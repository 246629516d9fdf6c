"""What the tests of clients share: the driver just built, and a scene made by rasterio.

The scene has the names and the places of a real one: the panchromatic band has half the pixel size
and begins and ends within the outermost pixels of the others. Each sample holds its column, row and
band, so that one that is moved shows.
"""

from __future__ import annotations

import os
import subprocess
from collections.abc import Callable
from pathlib import Path

ROOT = Path(__file__).resolve().parents[1]
BUILD = Path(os.environ.get("KEST_BUILD", ROOT / "build" / "debug"))
# Before any GDAL is loaded: the folders are read once.
os.environ["GDAL_DRIVER_PATH"] = str(BUILD / "lib" / "gdalplugins")

import numpy as np  # noqa: E402
import pytest  # noqa: E402
import rasterio  # noqa: E402
from rasterio.transform import Affine  # noqa: E402

NO_DATA = 65535
NAMES = {"B10": "blue", "B20": "green", "B30": "red", "B40": "nir", "B80": "pan"}


def pytest_configure(config: pytest.Config) -> None:
    config.addinivalue_line("markers", "slow: programs that only scripts/test-clients --all installs")


def component_name(code: str) -> str:
    return f"L71026029_02920000609_{code}.TIF"


def samples(code: str, width: int, height: int) -> np.ndarray:
    """Shape (height, width): a number for each column, row and band; one pixel has no data."""
    rows, columns = np.indices((height, width))
    values = (list(NAMES).index(code) * 10000 + rows * 97 + columns).astype(np.uint16)
    values[3, 5] = NO_DATA
    return values


def write_component(folder: Path, code: str, **profile: object) -> Path:
    pan = code == "B80"
    width, height = (99, 79) if pan else (50, 40)
    transform = (
        Affine(15, 0, 500007.5, 0, -15, 4599992.5) if pan else Affine(30, 0, 500000, 0, -30, 4600000)
    )
    path = folder / component_name(code)
    with rasterio.open(
        path, "w", driver="GTiff", width=width, height=height, count=1, dtype="uint16",
        crs="EPSG:32632", transform=transform, nodata=NO_DATA, **profile
    ) as raster:
        raster.write(samples(code, width, height), 1)
    return path


def write_document(path: Path, components: list[Path]) -> Path:
    entries = "".join(
        f'<component><data><file path="{component}" frame="0"/></data></component>'
        for component in components
    )
    path.write_text(f'<storage version="1.00"><image>{entries}</image></storage>')
    return path


@pytest.fixture(scope="session")
def scene(tmp_path_factory: pytest.TempPathFactory) -> Path:
    """A folder of five bands, 30 m and 15 m."""
    folder = tmp_path_factory.mktemp("scene")
    for code in NAMES:
        write_component(folder, code)
    return folder


@pytest.fixture(scope="session")
def document(scene: Path, tmp_path_factory: pytest.TempPathFactory) -> Path:
    """SET.xml for the scene, in another folder."""
    return write_document(tmp_path_factory.mktemp("set") / "SET.xml", sorted(scene.iterdir()))


@pytest.fixture
def run() -> Callable[..., str]:
    """Runs a program to its end; what it prints. Nothing may come on the error stream."""

    def run_program(*arguments: object, **environment: str) -> str:
        ended = subprocess.run(
            [str(argument) for argument in arguments],
            capture_output=True, text=True, env=os.environ | environment, timeout=120, check=False,
        )
        assert (ended.returncode, ended.stderr) == (0, ""), ended.stdout
        return ended.stdout

    return run_program
