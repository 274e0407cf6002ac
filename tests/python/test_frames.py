"""Frames from Python: arrays, leases, waits and losses."""

import asyncio
import gc
import signal
import threading
import time

import numpy
import pytest

import zelcam
from conftest import LEFT


def test_a_loop_gives_frames_and_stops_the_camera(camera):
    ids = [frame.id for frame in camera.frames(10)]
    assert ids == list(range(ids[0], ids[0] + 10))
    assert camera.TLParamsLocked == 0
    with camera.frames() as frames:
        assert next(frames).is_complete
        assert camera.TLParamsLocked == 1
    assert camera.TLParamsLocked == 0
    frame = camera.grab()
    assert frame.missed == 0 and frame.parts == [] and frame.timestamp > 0


def test_an_array_is_the_memory_of_the_frame(camera):
    with camera.frames() as frames:
        frame = next(frames)
        array = frame.array
        assert array.shape == (48, 64) and array.dtype == numpy.uint8
        assert numpy.shares_memory(array, numpy.frombuffer(frame.image(), numpy.uint8))
        assert numpy.shares_memory(array, numpy.from_dlpack(frame.image()))
        before = array.copy()
        del frame
        for _ in range(40):
            next(frames)
        assert (array == before).all()
        late = next(frames)
    camera.close()
    gc.collect()
    assert (array == before).all()
    with pytest.raises(zelcam.Error, match="stream has ended"):
        late.id


def test_the_shape_follows_the_format(simulator):
    with zelcam.open("right") as camera:
        frame = camera.grab()
        assert frame.array.shape == (20, 30, 3)
        assert frame.array.strides == (96, 3, 1)
        red = frame.image("RGB8").array
        assert (red == frame.array[:, :, ::-1]).all()
        camera.PixelFormat = "BayerRG12p"
        packed = camera.grab()
        with pytest.raises(zelcam.Error, match="BayerRG12p"):
            packed.array
        assert packed.image("unpacked").array.dtype == numpy.uint16
        assert packed.image("RGB8", edge_aware=True).array.shape == (20, 30, 3)


def test_pictures_are_saved(camera, tmp_path):
    camera.grab().image().save(tmp_path / "shot.png")
    assert (tmp_path / "shot.png").read_bytes().startswith(b"\x89PNG")
    with pytest.raises(zelcam.Error, match="xyz"):
        camera.grab().image().save(tmp_path / "shot.xyz")


def test_chunks_are_those_of_their_frame(camera):
    camera.ChunkModeActive = True
    for kind in ("ExposureTime", "FrameID"):
        camera["ChunkEnable"].at("ChunkSelector", kind).value = True
    camera.ExposureTime = 123
    with camera.frames() as frames:
        first, second = next(frames), next(frames)
        assert second.chunks["ChunkFrameID"] == second.id
        assert first.chunks == {"ChunkExposureTime": 123.0, "ChunkFrameID": first.id}
        copy = first.copy()
    assert copy.chunks["ChunkFrameID"] == copy.id


def test_parts_are_images(simulator):
    simulator.configure(
        "<ZelSim><Interface id='eth0' type='GEV'>"
        "<Camera id='deep' width='64' height='48' payload='MultiPart'/></Interface></ZelSim>"
    )
    with zelcam.open() as camera:
        parts = camera.grab().parts
        assert len(parts) > 1 and parts[0].type == 1
        assert {part.array.shape[:2] for part in parts} == {(48, 64)}
        assert len({part.image.format for part in parts}) > 1


def test_who_keeps_all_buffers_is_told(simulator):
    simulator.configure(
        "<ZelSim><Interface id='eth0' type='GEV'>"
        "<Camera id='fast' width='64' height='48' frameRate='200'/></Interface></ZelSim>"
    )
    with zelcam.open() as camera, camera.frames(buffers=4, timeout=0.3) as frames:
        kept = [next(frames) for _ in range(4)]
        with pytest.raises(zelcam.Timeout, match="has all buffers") as raised:
            next(frames)
        assert isinstance(raised.value, TimeoutError)
        time.sleep(1)
        kept.clear()
        with pytest.warns(zelcam.StarvationWarning, match="all 4 buffers"):
            for _ in range(10):
                next(frames)
        assert frames.underruns > 0


def test_cancel_and_ctrl_c_end_a_wait(camera):
    camera["TriggerMode"].at("TriggerSelector", "FrameStart").value = "On"
    frames = camera.frames(timeout=60)
    threading.Timer(0.2, camera.cancel).start()
    assert list(frames) == []
    threading.Timer(0.2, signal.raise_signal, [signal.SIGINT]).start()
    with pytest.raises(KeyboardInterrupt):
        next(camera.frames(timeout=60))


def test_frames_come_to_a_coroutine(camera):
    async def count():
        others = 0

        async def other():
            nonlocal others
            while True:
                others += 1
                await asyncio.sleep(0)

        task = asyncio.create_task(other())
        ids = [frame.id async for frame in camera.frames(20)]
        task.cancel()
        return ids, others

    ids, others = asyncio.run(count())
    assert len(ids) == 20 and others > 0
    assert camera.TLParamsLocked == 0


def test_a_camera_that_comes_back_goes_on(simulator, camera, caplog):
    camera.Width = 32
    lost = []
    camera.on_lost(lost.append)
    with camera.frames(reconnect=True) as frames:
        camera.ExposureTime = 2345
        next(frames)
        simulator.unplug("left")
        threading.Timer(0.2, simulator.plug, ["eth0", LEFT]).start()
        while not lost:
            frame = next(frames)
        assert frame.array.shape == (48, 32)
        assert camera.ExposureTime == 2345
        assert "left" in caplog.text
    with camera.frames() as frames:
        simulator.unplug("left")
        with pytest.raises(zelcam.Lost) as raised:
            for _ in frames:
                pass
        assert isinstance(raised.value, ConnectionError)


def test_frames_of_several_cameras_come_together(simulator):
    with zelcam.open("left") as left, zelcam.open("right") as right:
        shapes = [[], []]
        for source, frame in zelcam.merge(left.frames(5), right.frames(7)):
            shapes[source].append(frame.array.shape)
        assert shapes == [[(48, 64)] * 5, [(20, 30, 3)] * 7]

        pairs = zelcam.groups(2**62, left.frames(), right.frames(3))
        assert [len(next(pairs)) for _ in range(2)] == [2, 2]
        pairs.close()
        assert left.TLParamsLocked == right.TLParamsLocked == 0
        assert list(zelcam.groups(0, left.frames(3), right.frames(3))) == []

        with pytest.raises(zelcam.Lost):
            merged = zelcam.merge(left.frames(), right.frames())
            next(merged)
            simulator.unplug("right")
            for _ in merged:
                pass
        assert left.TLParamsLocked == 0


@pytest.mark.filterwarnings("ignore::pytest.PytestUnraisableExceptionWarning")
def test_a_callback_that_raises_harms_nobody(camera):
    def fail(feature):
        raise ValueError("of a callback")

    with camera["ExposureTime"].on_change(fail):
        camera.ExposureTime = 100
    assert camera.ExposureTime == 100
