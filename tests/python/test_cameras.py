"""Cameras, features, events and settings from Python."""

import enum
import threading

import numpy
import pytest

import zelcam


def test_cameras_are_found_and_opened_by_their_names(simulator):
    found = zelcam.cameras()
    assert [camera.id for camera in found] == ["left", "right"]
    assert "serial number 1" in repr(found[0])
    with zelcam.open("eye") as camera:
        assert camera.info.serial == "1"
        with zelcam.open() as other:
            assert other.info.id == "right"
    with pytest.raises(zelcam.NotFound, match="serial number 2") as raised:
        zelcam.open("4711")
    assert raised.value.code == -40006
    assert isinstance(raised.value, LookupError)


def test_a_broken_producer_is_logged_and_hides_no_other(simulator, tmp_path, caplog):
    broken = tmp_path / "broken.cti"
    broken.write_text("no producer")
    assert len(zelcam.cameras(producers=[broken])) == 2
    assert "broken.cti" in caplog.text


def test_features_are_attributes_and_items(camera):
    class Size(enum.IntEnum):
        HALF = 32

    camera.ExposureTime = 5000
    assert camera.ExposureTime == 5000.0 and isinstance(camera.ExposureTime, float)
    camera.Width = Size.HALF
    assert camera.Width == 32 and isinstance(camera.Width, int)
    camera.Width = numpy.int64(64)
    camera.ExposureTime = numpy.float32(2.5)
    assert camera["ExposureTime"].value == 2.5
    camera.PixelFormat = "Mono16"
    assert camera.PixelFormat == "Mono16"
    camera.ReverseX = True
    assert camera.ReverseX is True
    camera.TimestampLatch()
    assert camera.TimestampLatchValue > 0
    assert "ExposureTime" in camera and "ExposureTim" not in camera
    assert "ExposureTime" in dir(camera) and "frames" in dir(camera)
    assert len(list(camera.features)) > 50
    assert camera.of(zelcam.Module.STREAM)["StreamID"].is_readable


def test_a_feature_describes_itself(camera):
    exposure = camera["ExposureTime"]
    assert exposure.unit == "us" and exposure.min < exposure.max
    assert exposure.kind == zelcam.Kind.FLOAT
    assert exposure.description and exposure.__doc__ == exposure.description
    assert camera["Width"].max == 64 and isinstance(camera["Width"].max, int)
    assert "Mono8" in camera["PixelFormat"].entries
    assert "Mono8" in repr(camera["PixelFormat"]) and "read-only" in repr(camera["PayloadSize"])
    assert "us, from" in repr(exposure)


def test_failures_are_exceptions_with_code_and_feature(camera):
    with pytest.raises(zelcam.Error, match="us") as raised:
        camera.ExposureTime = 1e12
    assert raised.value.code == -40204
    assert raised.value.feature == "ExposureTime"
    with pytest.raises(AttributeError, match="similar: .*ExposureTime"):
        camera.ExposureTim = 1
    with pytest.raises(AttributeError):
        camera.Widht
    with pytest.raises(AttributeError):
        camera.frames = 1
    with pytest.raises(zelcam.NotFound):
        camera["Widht"]
    with pytest.raises(zelcam.Error):
        camera["Width"].execute()


def test_a_value_under_a_selector_leaves_the_selector(camera):
    camera.GainSelector = "All"
    red = camera["Gain"].at("GainSelector", "Red")
    red.value = 3
    assert camera.GainSelector == "All"
    assert red.value == 3.0
    assert camera["Gain"].at("GainSelector", "Blue").value == 0.0


def test_changes_and_events_call_functions(camera):
    seen = []
    with camera["ExposureTime"].on_change(lambda feature: seen.append(feature.value)):
        camera.ExposureTime = 100
    camera.ExposureTime = 200
    assert seen == [100.0]

    called = threading.Event()
    stamps = []

    def take(event):
        stamps.append((event.name, event["Timestamp"]))
        called.set()

    subscription = camera.on("Test", take)
    camera.TestEventGenerate()
    assert called.wait(30)
    assert stamps[0][0] == "Test" and stamps[0][1] > 0
    subscription.end()


def test_settings_are_saved_loaded_and_compared(camera, tmp_path):
    file = tmp_path / "settings.xml"
    camera.save(file)
    camera.Width = 32
    (difference,) = camera.diff(file)
    assert (difference.feature, difference.saved, difference.current) == ("Width", "64", "32")
    camera.load(str(file))
    assert camera.diff(file) == []
    with pytest.raises(zelcam.Error):
        camera.load(tmp_path / "none.xml")
