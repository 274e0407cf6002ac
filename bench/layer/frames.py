"""What a frame costs in Python: prints nanoseconds of the thread for each, one number a round, and
then by how many KiB the memory grew during a million frames.

Usage: frames.py FOLDER_OF_PACKAGES ATTRIBUTES_OF_CAMERA ROUNDS FRAMES BUFFERS
"""

import os
import sys
import tempfile
import time
from itertools import islice

WARM_UP = 10_000
MANY = 1_000_000


def resident_kib() -> int:
    with open("/proc/self/statm") as numbers:
        return int(numbers.read().split()[1]) * os.sysconf("SC_PAGE_SIZE") // 1024


packages, attributes = sys.argv[1:3]
rounds, count, buffers = map(int, sys.argv[3:])
sys.path.insert(0, packages)

with tempfile.NamedTemporaryFile("w", suffix=".xml") as configuration:
    configuration.write(
        f"<ZelSim><Interface id='BENCH' type='GEV'><Camera id='1' {attributes}/></Interface></ZelSim>"
    )
    configuration.flush()
    os.environ["ZELSIM_CONFIG"] = configuration.name
    import zelcam

    for _ in range(rounds):
        with zelcam.open("1") as camera, camera.frames(buffers=buffers) as frames:
            for _ in islice(frames, 2 * buffers):
                pass
            start = time.thread_time_ns()
            for frame in islice(frames, count):
                frame.timestamp
                frame.array
            print((time.thread_time_ns() - start) / count)
            del frame

    with zelcam.open("1") as camera, camera.frames(buffers=buffers) as frames:
        for number, frame in enumerate(islice(frames, WARM_UP + MANY)):
            frame.array
            frame.image()
            if number == WARM_UP:
                before = resident_kib()
        print(resident_kib() - before)
        del frame
