"""The commands of kestms beside GDAL's programs: starting, writing, pictures, and many files."""

import os
import shutil

import processes
from table import amount

# Scenes of ten bands each.
SCENES = (100, 1000, 10000)
BANDS = [f"B{number}" for number in range(1, 8)] + ["B9", "B10", "B11"]


def names_in(path):
    with open(path, encoding="utf-8") as lines:
        return lines.read().split()


def start_rows(bench):
    """Commands that need no GDAL, beside the program of GDAL's that only loads it."""
    kestms = bench.program("kestms")
    loading = [["gdalinfo", "--version"]]
    rounds = 1 if bench.smoke else 20
    for option in ("--version", "--help"):
        best = processes.compare({"ours": [[kestms, option]], "other": loading}, rounds)
        bench.table.compare(f"kestms {option} : gdalinfo --version", best["ours"]["wall"],
                            best["other"]["wall"], 0.2)
    for count in (10, 100) if bench.smoke else (10, 1000):
        names = os.path.join(bench.samples, f"small{count}.txt")
        reading = [["cat", *names_in(names)]]
        for command in ("info", "check"):
            best = processes.compare({"ours": [[kestms, command, "@" + names]], "other": loading,
                                      "reading": reading}, rounds)
            other = best["other"]["wall"] / 2 + best["reading"]["wall"]
            bench.table.compare(f"kestms {command}, {amount(count)} files : "
                                "half of gdalinfo --version, and cat",
                                best["ours"]["wall"], other, 1.0)


def output_rows(bench):
    """What a scene becomes, beside the same by GDAL's programs."""
    bands, uncompressed = (names_in(os.path.join(bench.samples, name))
                           for name in ("scene.txt", "openscene.txt"))
    stack, out = (os.path.join(bench.samples, name) for name in ("scene.vrt", "out"))
    quiet = [bench.program("kestms"), "-q"]

    def by_gdal(files, *options):
        return [["gdalbuildvrt", "-q", "-overwrite", "-separate", stack, *files],
                ["gdal_translate", "-q", *options, stack, out + ".gdal"]]

    deflated = ("-of", "GTiff", "-co", "TILED=YES", "-co", "COMPRESS=DEFLATE", "-co", "PREDICTOR=2",
                "-co", "BIGTIFF=IF_SAFER", "-co", "NUM_THREADS=ALL_CPUS")
    picture = ("-of", "PNG", "-ot", "Byte", "-scale", "5000", "13000", "-outsize", "1024", "1024")
    for what, ours, other, aim in (
            ("kestms export : gdalbuildvrt + gdal_translate",
             [*quiet, "export", *bands, "-o", out + ".tif", "--overwrite"],
             by_gdal(bands, *deflated), 0.4),
            # The samples have the tiles of the output. With an option they are not copied.
            ("kestms export, packed anew : gdalbuildvrt + gdal_translate",
             [*quiet, "export", *bands, "-o", out + ".tif", "--overwrite", "--co", "ZLEVEL=1"],
             by_gdal(bands, *deflated), 0.4),
            ("kestms export, components not compressed : gdalbuildvrt + gdal_translate",
             [*quiet, "export", *uncompressed, "-o", out + ".tif", "--overwrite"],
             by_gdal(uncompressed, *deflated), 0.4),
            ("kestms quicklook : gdalbuildvrt + gdal_translate -outsize",
             [*quiet, "quicklook", *bands[:3], "-o", out + ".png", "--overwrite"],
             by_gdal(bands[:3], *picture), 0.7)):
        best = processes.compare({"ours": [ours], "other": other}, 1 if bench.smoke else 5)
        for measure, label in (("wall", "wall time"), ("cpu", "processor time")):
            bench.table.compare(f"{what}, {label}", best["ours"][measure], best["other"][measure],
                                aim if measure == "wall" else None)
        bench.table.compare(f"{what}, peak resident bytes", best["ours"]["peak"],
                            best["other"]["peak"], show=amount)


def make_scenes(folder, count, sources):
    """Folders with the names of Landsat 8 scenes, whose files are links to a few."""
    if os.path.exists(folder):
        return
    partial = folder + ".part"
    shutil.rmtree(partial, ignore_errors=True)
    for number in range(count):
        scene = f"LC08_L1TP_{number // 1000:03}{number % 1000:03}_20180629_20200831_02_T1"
        place = os.path.join(partial, scene)
        os.makedirs(place)
        for band, source in zip(BANDS, sources):
            os.link(source, os.path.join(place, f"{scene}_{band}.TIF"))
    os.rename(partial, folder)


def list_files(folder):
    """A list of all files in the folders of a folder, beside it; they are taken as one set."""
    path = folder + ".txt"
    with open(path, "w", encoding="utf-8") as file:
        for scene in sorted(os.scandir(folder), key=lambda entry: entry.name):
            for name in sorted(os.listdir(scene)):
                file.write(os.path.join(scene.path, name) + "\n")
    return path


def scale_rows(bench):
    """Folders of many scenes; the largest has 100,000 files."""
    small = os.path.join(bench.samples, "small10")
    sources = [os.path.join(small, name) for name in sorted(os.listdir(small))]
    folders = {}
    for count in SCENES[:1] if bench.smoke else SCENES:
        folders[count] = os.path.join(bench.samples, f"scenes{count}")
        make_scenes(folders[count], count, sources)
    kestms = [bench.program("kestms"), "-q"]
    for what, command in (
            ("kestms scenes", lambda folder: ["scenes", folder]),
            ("kestms info --json, one scene of all",
             lambda folder: ["info", "--json", "@" + list_files(folder)])):
        points = []
        for count, folder in folders.items():
            best = processes.compare({"ours": [[*kestms, *command(folder)]]}, 1)["ours"]
            files = count * len(BANDS)
            points.append((files, best["cpu"]))
            bench.table.fact(f"{what}, {amount(files)} files",
                             f"{files / best['wall']:,.0f} files/s",
                             f"{best['peak'] / files:,.0f} bytes a file")
        if len(points) > 1:
            bench.table.growth(what, points)
        # Not the largest: tracing takes a millisecond a file.
        count, folder = sorted(folders.items())[-2:][0]
        files = count * len(BANDS)
        traced = processes.trace([[*kestms, *command(folder)]], folder + "/")
        bench.table.fact(f"{what}, {amount(files)} files, opens and reads",
                         f"{amount(traced['opens'])}, {amount(traced['reads'])}",
                         f"{traced['bytes'] / files:,.0f} bytes read a file")


def add_rows(bench):
    start_rows(bench)
    output_rows(bench)
    scale_rows(bench)
