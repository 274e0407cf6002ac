"""Cameras for machine vision, in five lines:

    import zelcam
    with zelcam.open() as camera:
        camera.ExposureTime = 5000
        for frame in camera.frames(100):
            print(frame.id, frame.array.mean())
"""

from __future__ import annotations

import os
from collections.abc import Iterable
from pathlib import Path
from typing import Union

from . import _zelcam
from ._camera import Camera, Event, Feature, Frames
from ._errors import Error, Lost, NotFound, StarvationWarning, Timeout
from ._log import logger
from ._merge import groups, merge
from ._zelcam import Access, CameraInfo, Difference, Frame, Image, Kind, Module, Part, Subscription

__all__ = [
    "Access", "Camera", "CameraInfo", "Difference", "Error", "Event", "Feature", "Frame", "Frames",
    "Image", "Kind", "Lost", "Module", "NotFound", "Part", "StarvationWarning", "Subscription",
    "Timeout", "cameras", "groups", "merge", "open",
]

_Path = Union[str, "os.PathLike[str]"]


def cameras(*, producers: Iterable[_Path] = (), time: float = 1.0) -> list[CameraInfo]:
    """All cameras, real ones first. Producers that cannot be used are logged.

    producers: files (.cti) beside the default one and those of GENICAM_GENTL64_PATH.
    time: seconds to wait for answers.
    """
    found, problems = _zelcam.cameras([Path(file) for file in producers], time)
    for problem in problems:
        logger.warning("%s", problem)
    return found


def open(
    name: str = "",
    *,
    producers: Iterable[_Path] = (),
    access: Access = Access.EXCLUSIVE,
    time: float = 1.0,
) -> Camera:
    """Open the camera with this identifier, serial number or user name.

    Without a name, it is the first camera that no other program uses, a real one if there is one.
    """
    opened = _zelcam.open(name, [Path(file) for file in producers], access, time)
    logger.info("opened %s", opened.info)
    return Camera(opened)
