"""Blurs a picture by one disc with OpenCV's filter2D, which transforms; run by run.py.

    python3 opencv_filter.py PICTURE.exr RESULT.exr DIAMETER THREADS

Prints "seconds S": the filter alone, without reading and writing. DIAMETER is made odd.
"""

import os
import sys
import time

os.environ["OPENCV_IO_ENABLE_OPENEXR"] = "1"  # read when the library is loaded

import cv2  # noqa: E402
import numpy  # noqa: E402


def disc(diameter):
    radius = diameter // 2
    y, x = numpy.mgrid[-radius:radius + 1, -radius:radius + 1]
    inside = (x * x + y * y <= radius * radius).astype(numpy.float32)
    return inside / inside.sum()


def main():
    path, result, diameter, threads = sys.argv[1:]
    cv2.setNumThreads(int(threads))
    picture = cv2.imread(path, cv2.IMREAD_UNCHANGED)
    if picture is None:
        sys.exit(f"{path}: OpenCV cannot read it")
    if picture.ndim != 3 or picture.shape[2] < 3:
        sys.exit(f"{path}: OpenCV reads no colours in it")
    if picture.shape[2] == 3:  # it may leave alpha out
        alpha = numpy.ones(picture.shape[:2] + (1,), numpy.float32)
        picture = numpy.concatenate((picture, alpha), axis=2)
    kernel = disc(int(float(diameter)))
    begin = time.perf_counter()
    blurred = cv2.filter2D(picture, -1, kernel, borderType=cv2.BORDER_REPLICATE)
    print(f"seconds {time.perf_counter() - begin:.4f}")
    cv2.imwrite(result, blurred)


main()
