"""Opens a raster in QGIS without a screen and draws it: qgis_layer.py SOURCE PICTURE.

Prints what the layer shows as JSON. It runs as a program of its own, as QGIS ends its process in
its own way.
"""

import json
import os
import sys

os.environ["QT_QPA_PLATFORM"] = "offscreen"

from qgis.core import (  # noqa: E402
    QgsApplication,
    QgsContrastEnhancement,
    QgsMapRendererParallelJob,
    QgsMapSettings,
    QgsRasterLayer,
    QgsRasterMinMaxOrigin,
)
from qgis.PyQt.QtCore import QSize  # noqa: E402


def describe(source: str, picture: str) -> dict:
    layer = QgsRasterLayer(source, "set", "gdal")
    told = {"valid": layer.isValid()}
    if layer.isValid():
        provider = layer.dataProvider()
        bands = range(1, layer.bandCount() + 1)
        told |= {
            "names": [layer.bandName(band) for band in bands],
            "noData": [provider.sourceNoDataValue(band) for band in bands],
            "system": layer.crs().authid(),
            "pixelSize": layer.rasterUnitsPerPixelX(),
            "shown": layer.renderer().usesBands(),
        }
        # As a click on "stretch" does; dark scenes are hard to judge.
        layer.setContrastEnhancement(
            QgsContrastEnhancement.StretchToMinimumMaximum, QgsRasterMinMaxOrigin.CumulativeCut
        )
        settings = QgsMapSettings()
        settings.setLayers([layer])
        settings.setDestinationCrs(layer.crs())
        settings.setExtent(layer.extent())
        settings.setOutputSize(QSize(layer.width(), layer.height()))
        job = QgsMapRendererParallelJob(settings)
        job.start()
        job.waitForFinished()
        job.renderedImage().save(picture)
    return told


application = QgsApplication([], False)
application.initQgis()
print(json.dumps(describe(*sys.argv[1:])))  # the layer is gone before QGIS ends
application.exitQgis()
