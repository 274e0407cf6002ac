"""Simulated cameras for the tests. ZELCAM_CTI is the file of the default producer."""

import ctypes
import os

import pytest

import zelcam

LEFT = (
    "<Camera id='left' model='L' serial='1' userName='eye' width='64' height='48' frameRate='0'/>"
)
CAMERAS = (
    "<ZelSim><Interface id='eth0' type='GEV'>"
    + LEFT
    + "<Camera id='right' serial='2' width='30' height='20' frameRate='0' pixelFormat='BGR8'"
    " xPadding='6'/></Interface></ZelSim>"
)


class Simulator:
    """The control functions of the producer that the library loads, too."""

    def __init__(self) -> None:
        self._file = ctypes.CDLL(os.environ["ZELCAM_CTI"])
        self._file.ZelSim_GetNumOpenHandles.restype = ctypes.c_size_t

    def configure(self, text: str) -> None:
        assert self._file.ZelSim_Configure(text.encode()) == 0

    def plug(self, interface: str, camera: str) -> None:
        assert self._file.ZelSim_PlugCamera(interface.encode(), camera.encode()) == 0

    def unplug(self, camera: str) -> None:
        assert self._file.ZelSim_UnplugCamera(camera.encode()) == 0

    def open_handles(self) -> int:
        return self._file.ZelSim_GetNumOpenHandles()


@pytest.fixture
def simulator():
    simulator = Simulator()
    simulator.configure(CAMERAS)
    yield simulator
    assert simulator.open_handles() == 0


@pytest.fixture
def camera(simulator):
    with zelcam.open("left") as camera:
        yield camera
    del camera
