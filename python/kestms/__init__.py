"""Multispectral image sets of single-band files, as arrays.

>>> import kestms
>>> scene = kestms.open("scene/")
>>> scene["nir"][0:100, 0:100]          # reads this window only
"""

from kestms.scene import Band, Bucket, Scene, open, scenes  # noqa: A004

__all__ = ["Band", "Bucket", "Scene", "open", "scenes"]
