"""Cameras and their features."""

from __future__ import annotations

import asyncio
import concurrent.futures
import difflib
import os
from collections.abc import AsyncIterator, Callable, Iterator
from pathlib import Path
from types import TracebackType
from typing import Any, Optional, Union

from . import _zelcam
from ._errors import NotFound
from ._log import logger
from ._zelcam import CameraInfo, Difference, Frame, Kind, Module, Subscription

_Path = Union[str, "os.PathLike[str]"]
Value = Union[int, float, bool, str]


class _Description:
    """The documentation of a class, and of each object what the camera says of it."""

    def __init__(self, text: str) -> None:
        self._text = text

    def __get__(self, instance: Optional[Feature], owner: type) -> str:
        return self._text if instance is None else instance.description


class Feature:
    __doc__ = _Description('One feature of a camera: ``camera["ExposureTime"]``.')  # type: ignore

    def __init__(self, feature: _zelcam.Feature) -> None:
        self._feature = feature

    @property
    def name(self) -> str:
        """The name in the standard list of features (SFNC)."""
        return self._feature.name

    @property
    def value(self) -> Value:
        """The value, as int, float, bool or str."""
        return self._feature.value

    @value.setter
    def value(self, value: Value) -> None:
        self._feature.value = value

    @property
    def text(self) -> str:
        """The value as a text, which can be set as the value, too."""
        return self._feature.text

    @property
    def kind(self) -> Kind:
        """What it takes and gives."""
        return self._feature.kind

    @property
    def min(self) -> Union[int, float]:
        """The smallest value at the moment."""
        return self._feature.min

    @property
    def max(self) -> Union[int, float]:
        """The largest value at the moment."""
        return self._feature.max

    @property
    def increment(self) -> int:
        """The step of an integer; 0 for any other kind."""
        return self._feature.increment

    @property
    def unit(self) -> str:
        """The physical unit, or ""."""
        return self._feature.unit

    @property
    def entries(self) -> list[str]:
        """What an enumeration can be at the moment."""
        return self._feature.entries

    @property
    def display_name(self) -> str:
        """The name for people."""
        return self._feature.display_name

    @property
    def description(self) -> str:
        """What the camera's description says of it."""
        return self._feature.description or self._feature.tool_tip

    @property
    def is_available(self) -> bool:
        """Whether it is there at the moment."""
        return self._feature.is_available

    @property
    def is_readable(self) -> bool:
        """Whether it can be read at the moment."""
        return self._feature.is_readable

    @property
    def is_writable(self) -> bool:
        """Whether it can be set at the moment."""
        return self._feature.is_writable

    @property
    def is_streamable(self) -> bool:
        """Whether saved settings have it."""
        return self._feature.is_streamable

    def at(self, selector: str, value: str) -> Feature:
        """The feature as it is under a value of its selector, which stays as it is."""
        return Feature(self._feature.at(selector, value))

    def on_change(self, function: Callable[[Feature], object]) -> Subscription:
        """Call a function whenever the value or the state may have changed."""
        return self._feature.on_change(lambda feature: function(Feature(feature)))

    def execute(self, timeout: float = 5.0) -> None:
        """Execute a command and wait until it is done."""
        self._feature.execute(timeout)

    def __call__(self, timeout: float = 5.0) -> None:
        self.execute(timeout)

    def __repr__(self) -> str:
        if not self.is_readable or self.kind in (Kind.COMMAND, Kind.CATEGORY, Kind.OTHER):
            return f"<Feature {self.name}, {self.kind.name.lower()}>"
        text = f"<Feature {self.name} = {self.text}"
        if self.unit:
            text += f" {self.unit}"
        if self.kind in (Kind.INTEGER, Kind.FLOAT):
            text += f", from {self.min:g} to {self.max:g}"
        if self.kind == Kind.ENUMERATION:
            text += ", of " + ", ".join(self.entries)
        return text + ("" if self.is_writable else ", read-only") + ">"


class Features:
    """The features of one module, by their names."""

    def __init__(self, camera: _zelcam.Camera, module: Module) -> None:
        self._camera = camera
        self._module = module

    def __getitem__(self, name: str) -> Feature:
        if not self._camera.has(name, self._module):
            raise NotFound(-40205, self._unknown(name), "finding", name)
        return Feature(self._camera.feature(name, self._module))

    def __contains__(self, name: object) -> bool:
        return isinstance(name, str) and self._camera.has(name, self._module)

    def __iter__(self) -> Iterator[Feature]:
        for name in self.names():
            yield self[name]

    def names(self) -> list[str]:
        """The names of all features."""
        return self._camera.feature_names(self._module)

    def _unknown(self, name: str) -> str:
        similar = difflib.get_close_matches(name, self.names(), 3)
        hint = f"; similar: {', '.join(similar)}" if similar else ""
        return f"the camera has no feature {name}{hint}"


class Event:
    """An event of a camera, while its function is called."""

    def __init__(self, event: _zelcam.Event) -> None:
        self._event = event

    @property
    def name(self) -> str:
        """The name of the event."""
        return self._event.name

    def __getitem__(self, value: str) -> Value:
        return self._event[value].value


class Frames:
    """Frames as they come, for one loop or one ``async for``."""

    def __init__(self, frames: _zelcam.Frames) -> None:
        self._frames = frames
        self._thread: Optional[concurrent.futures.ThreadPoolExecutor] = None

    def __iter__(self) -> Iterator[Frame]:
        return self._frames

    def __next__(self) -> Frame:
        return next(self._frames)

    def __aiter__(self) -> AsyncIterator[Frame]:
        return self

    async def __anext__(self) -> Frame:
        if self._thread is None:
            self._thread = concurrent.futures.ThreadPoolExecutor(1, "zelcam frames")
        loop = asyncio.get_running_loop()
        try:
            frame = await loop.run_in_executor(self._thread, self.fetch)
        except asyncio.CancelledError:
            self.stop()
            raise
        if frame is None:
            self.stop()
            raise StopAsyncIteration
        return frame

    def fetch(self) -> Optional[Frame]:
        """The next frame; None after the last one, with the camera not yet stopped."""
        return self._frames.fetch()

    def cancel(self) -> None:
        """End the loop of another thread, also while it waits."""
        self._frames.cancel()

    def stop(self) -> None:
        """Stop the camera now."""
        self._frames.stop()
        if self._thread is not None:
            self._thread.shutdown(wait=False)

    @property
    def underruns(self) -> int:
        """Frames lost because the program had all buffers."""
        return self._frames.underruns

    def __enter__(self) -> Frames:
        return self

    def __exit__(
        self,
        kind: Optional[type[BaseException]],
        error: Optional[BaseException],
        trace: Optional[TracebackType],
    ) -> None:
        self.stop()


class Camera:
    """An open camera. Its features are its attributes and items:

    >>> camera.ExposureTime = 5000
    >>> camera["ExposureTime"].max
    """

    _camera: _zelcam.Camera
    features: Features

    def __init__(self, camera: _zelcam.Camera) -> None:
        object.__setattr__(self, "_camera", camera)
        object.__setattr__(self, "features", Features(camera, Module.CAMERA))

    def __enter__(self) -> Camera:
        return self

    def __exit__(
        self,
        kind: Optional[type[BaseException]],
        error: Optional[BaseException],
        trace: Optional[TracebackType],
    ) -> None:
        self.close()

    def __getitem__(self, name: str) -> Feature:
        return self.features[name]

    def __contains__(self, name: object) -> bool:
        return name in self.features

    def __getattr__(self, name: str) -> Any:
        if name.startswith("_"):
            raise AttributeError(name)
        try:
            feature = self[name]
        except NotFound as error:
            raise AttributeError(str(error)) from None
        return feature if feature.kind == Kind.COMMAND else feature.value

    def __setattr__(self, name: str, value: Value) -> None:
        if name in ("features", "info") or hasattr(type(self), name):
            raise AttributeError(f"{name} cannot be set")
        try:
            feature = self[name]
        except NotFound as error:
            raise AttributeError(str(error)) from None
        feature.value = value

    def __dir__(self) -> list[str]:
        return sorted({*super().__dir__(), *self.features.names()})

    def __repr__(self) -> str:
        return f"<Camera {self.info}>"

    @property
    def info(self) -> CameraInfo:
        """The camera as it was found."""
        return self._camera.info

    def of(self, module: Module) -> Features:
        """The features of another module, such as the stream."""
        return Features(self._camera, module)

    def frames(
        self,
        count: Optional[int] = None,
        *,
        buffers: int = 16,
        timeout: float = 5.0,
        newest_only: bool = False,
        reconnect: bool = False,
        reconnect_time: Optional[float] = None,
    ) -> Frames:
        """Start the camera and give its frames.

        count: how many; None for ever.
        buffers: how many frames may wait or be kept.
        timeout: seconds until a frame that does not come raises Timeout.
        newest_only: leave out frames that waited.
        reconnect: go on with a camera that was unplugged and comes back.
        reconnect_time: seconds to wait for it; None for ever.
        """
        return Frames(
            self._camera.frames(count, buffers, timeout, newest_only, reconnect, reconnect_time)
        )

    def grab(self) -> Frame:
        """One frame, with memory of its own."""
        with self.frames(1) as frames:
            return next(frames).copy()

    def cancel(self) -> None:
        """End the loop of another thread, also while it waits."""
        self._camera.cancel()

    def close(self) -> None:
        """End the frames and close the camera."""
        self._camera.close()

    def on(self, name: str, function: Callable[[Event], object]) -> Subscription:
        """Switch an event on and call a function for each, until the subscription ends."""
        return self._camera.on(name, lambda event: function(Event(event)))

    def on_lost(self, function: Callable[[str], object]) -> None:
        """Call a function with a sentence when the camera no longer answers."""

        def lost(text: str) -> None:
            logger.warning("%s: %s", self.info, text)
            function(text)

        self._camera.on_lost(lost)

    def save(self, file: _Path) -> None:
        """Save the settings."""
        self._camera.save(Path(file))

    def load(self, file: _Path) -> None:
        """Load saved settings."""
        self._camera.load(Path(file))

    def diff(self, file: _Path) -> list[Difference]:
        """What load() would change."""
        return self._camera.diff(Path(file))
