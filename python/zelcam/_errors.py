"""What the package raises and warns of."""


class Error(Exception):
    """A failure of the library, a producer or a camera.

    code: of the library or of GenTL, a negative number.
    operation: what was tried.
    feature: the feature that it was tried with, or "".
    """

    def __init__(self, code: int, text: str, operation: str = "", feature: str = "") -> None:
        super().__init__(text)
        self.code = code
        self.operation = operation
        self.feature = feature


class Timeout(Error, TimeoutError):
    """Nothing came in time."""


class Lost(Error, ConnectionError):
    """The camera no longer answers."""


class NotFound(Error, LookupError):
    """There is no such camera or feature."""


class StarvationWarning(RuntimeWarning):
    """Frames are lost because the program has all buffers."""


_CLASSES: dict[int, type[Error]] = {
    -1011: Timeout,
    -1010: Lost,
    -40006: NotFound,
    -40205: NotFound,
}


def make(code: int, text: str, operation: str, feature: str) -> Error:
    """The exception for a code."""
    return _CLASSES.get(code, Error)(code, text, operation, feature)
