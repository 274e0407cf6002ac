"""The examples of the documents run, each by itself."""

import contextlib
import sys

import pytest

import zelcam
from documents import examples

EXAMPLES = examples("README.md", "docs/python.md")


@pytest.mark.parametrize("place, code", EXAMPLES, ids=[place for place, _ in EXAMPLES])
def test_an_example_runs(simulator, place, code, tmp_path, monkeypatch):
    monkeypatch.chdir(tmp_path)
    monkeypatch.setenv("QT_QPA_PLATFORM", "offscreen")
    if "cv2" in code:
        pytest.importorskip("cv2")
    with contextlib.ExitStack() as opened:
        names = {}
        if "zelcam.open(" not in code:
            names["camera"] = opened.enter_context(zelcam.open("left"))
        exec(compile("\n" * int(place.split(":")[1]) + code, place, "exec"), names)
        opened.callback(names.clear)
