"""Frames of several cameras at once.

The layer below has this, too, but a wait within it would not end with Ctrl-C.
"""

from __future__ import annotations

import queue
import threading
from collections import deque
from collections.abc import Iterator
from typing import Optional, Union

from ._camera import Frames
from ._zelcam import Frame

_MOST_WAITING = 2  # of each source: what waits is a buffer less for the camera

_Arrival = tuple[int, Union[Frame, BaseException, None]]


class _Merging:
    """Fetches the frames of each source on a thread of its own."""

    def __init__(self, sources: tuple[Frames, ...]) -> None:
        self._sources = sources
        self._arrived: queue.SimpleQueue[_Arrival] = queue.SimpleQueue()
        self._room = [threading.Semaphore(_MOST_WAITING) for _ in sources]
        self._is_ended = False
        self._num_running = len(sources)
        self._threads = [
            threading.Thread(target=self._fetch, args=(index,), daemon=True)
            for index in range(len(sources))
        ]
        for thread in self._threads:
            thread.start()

    def _fetch(self, index: int) -> None:
        try:
            while not self._is_ended:
                frame = self._sources[index].fetch()
                if frame is None:
                    break
                self._room[index].acquire()
                self._arrived.put((index, frame))
        except BaseException as error:  # whoever waits gets it
            self._arrived.put((index, error))
        self._arrived.put((index, None))

    def next(self) -> Optional[tuple[int, Frame]]:
        """The next frame and where it is from; None after the last one of all."""
        while self._num_running > 0:
            index, arrival = self._arrived.get()
            if isinstance(arrival, BaseException):
                raise arrival
            if arrival is None:
                self._num_running -= 1
                continue
            self._room[index].release()
            return index, arrival
        return None

    def end(self) -> None:
        """Stop the cameras."""
        self._is_ended = True
        for source, room in zip(self._sources, self._room):
            source.cancel()
            room.release()
        for thread in self._threads:
            thread.join()
        for source in self._sources:
            source.stop()


def merge(*sources: Frames) -> Iterator[tuple[int, Frame]]:
    """The frames of several cameras as they arrive, each with the number of its source.

    The failure of one ends all. The end of the loop stops the cameras.
    """
    merging = _Merging(sources)
    try:
        while (one := merging.next()) is not None:
            yield one
    finally:
        merging.end()


def groups(tolerance: int, *sources: Frames) -> Iterator[tuple[Frame, ...]]:
    """One frame of each camera, taken at the same time.

    Their time stamps differ by at most ``tolerance`` ticks of the cameras, whose clocks must agree
    (as with PTP). Frames without counterparts are left out.
    """
    waiting: list[deque[Frame]] = [deque() for _ in sources]
    for index, frame in merge(*sources):
        waiting[index].append(frame)
        while all(waiting):
            stamps = [frames[0].timestamp for frames in waiting]
            if max(stamps) - min(stamps) <= tolerance:
                yield tuple(frames.popleft() for frames in waiting)
            else:
                waiting[stamps.index(min(stamps))].popleft()
