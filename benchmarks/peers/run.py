#!/usr/bin/env python3
"""Times the command drevin and what else one could blur a picture with, on the same files, in turn.

    benchmarks/peers/run.py --programs build/bench/bin

Prints a Markdown table of medians. Peers, of the Debian packages that a message names if they are
missing (nothing is installed):

  blender   Blender's Defocus node: blur by depth, without slices. Timed inside Blender: loading,
            blurring, saving, not its start.
  oiiotool  OpenImageIO's convolution of RGB with one disc, the same for all pixels: the whole
            command.
  opencv    OpenCV's filter2D of RGBA with one disc: the filter alone. A lower bound: no depth, no
            coverage, no slices.

drevin is timed twice: the whole command, with its start, reading and writing, and all but these.
The latter is what OpenCV's time is to be held to, the former the others'.
"""

import argparse
import json
import os
import pathlib
import re
import shutil
import statistics
import subprocess
import sys
import tempfile
import time

HERE = pathlib.Path(__file__).resolve().parent
FOCAL_PLANE = 10.0  # of all scenes of drevin_frames
FOCUS_REGION = 8.0
PACKAGES = {"blender": "blender", "oiiotool": "openimageio-tools", "opencv": "python3-opencv"}

HEAD = ("| peer | picture | blur | peer's time | drevin, whole command | drevin, blurring | "
        "peer / command | peer / blurring |\n|---|---|---|---|---|---|---|---|")


class Failure(Exception):
    """Ends the run with one line."""


def run(command):
    """What the command prints; its time in seconds."""
    begin = time.perf_counter()
    words = [str(word) for word in command]
    done = subprocess.run(words, capture_output=True, text=True, check=False)
    seconds = time.perf_counter() - begin
    if done.returncode != 0:
        tail = (done.stderr or done.stdout).strip().splitlines()[-1:]
        raise Failure(f"{command[0]} failed ({done.returncode}): {' '.join(tail)}")
    return done.stdout, seconds


def told_seconds(text):
    found = re.search(r"^seconds ([0-9.]+)$", text, re.MULTILINE)
    if not found:
        raise Failure("a peer told no time")
    return float(found.group(1))


def succeeds(command):
    return subprocess.run(command, capture_output=True, check=False).returncode == 0


def python_with_opencv():
    """Debian's Python, where another one comes first on the path."""
    for python in (sys.executable, "/usr/bin/python3"):
        command = [python, "-c", "import cv2"]
        if os.path.exists(python) and succeeds(command):
            return python
    return None


def missing_packages(peers):
    missing = [PACKAGES[peer] for peer in peers if peer != "opencv" and not shutil.which(peer)]
    if "opencv" in peers and python_with_opencv() is None:
        missing.append(PACKAGES["opencv"])
    return missing


def blender(picture, result, blur, threads):
    return told_seconds(run(
        ["blender", "--background", "--factory-startup", "--python-exit-code", "1", "--python",
         HERE / "blender_defocus.py", "--", picture, result, blur, FOCAL_PLANE, FOCUS_REGION / 2,
         threads])[0])


def oiiotool(picture, result, blur, threads):
    side = blur // 2 * 2 + 1
    return run(["oiiotool", "--threads", threads, picture, "--ch", "R,G,B", "--kernel", "disk",
                f"{side}x{side}", "--convolve", "-o", result])[1]


def opencv(picture, result, blur, threads):
    return told_seconds(
        run([python_with_opencv(), HERE / "opencv_filter.py", picture, result, blur, threads])[0])


PEERS = {"blender": blender, "oiiotool": oiiotool, "opencv": opencv}


def drevin(programs, picture, result, blur, threads):
    """Seconds of the whole command, and without reading and writing."""
    report = result.with_suffix(".json")
    whole = run([programs / "drevin", "render", "--quiet", "--threads", threads, "--input", picture,
                 "--output", result, "--report", report, "--set", f"focalPlane={FOCAL_PLANE}",
                 "--set", f"focusRegionSize={FOCUS_REGION}", "--set", f"multiplier={blur}"])[1]
    stages = json.loads(report.read_text(encoding="utf-8"))["seconds"]
    return whole, stages["total"] - stages["read"] - stages["write"]


def timed(work, result):
    """What the work returns, of which the picture must be there."""
    result.unlink(missing_ok=True)
    seconds = work()
    if not result.exists() or result.stat().st_size == 0:
        raise Failure(f"{result.name} was not written")
    return seconds


def table_line(arguments, folder, peer, kind, blur):
    picture = folder / f"{kind}.exr"
    theirs, whole, inner = [], [], []
    for _ in range(arguments.rounds):
        result = folder / f"{peer}.exr"
        theirs.append(timed(lambda: PEERS[peer](picture, result, blur, arguments.threads), result))
        ours = folder / "drevin.exr"
        times = timed(
            lambda: drevin(arguments.programs, picture, ours, blur, arguments.threads), ours)
        whole.append(times[0])
        inner.append(times[1])
    other = statistics.median(theirs)
    command = statistics.median(whole)
    alone = statistics.median(inner)
    return (f"| {peer} | {kind} | {blur} px | {other:.2f} s | {command:.2f} s | {alone:.2f} s | "
            f"{other / command:.2f}× | {other / alone:.2f}× |")


def write_pictures(arguments, folder):
    for kind in arguments.pictures:
        run([arguments.programs / "drevin_frames", kind, 1, arguments.width, arguments.height,
             "--write", folder / f"{kind}.exr"])


def parsed():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--programs", type=pathlib.Path, required=True,
                        help="folder of drevin and drevin_frames")
    parser.add_argument("--peers", nargs="+", choices=sorted(PEERS), default=list(PEERS))
    parser.add_argument("--pictures", nargs="+", choices=["uniform", "scene", "ramp", "random"],
                        default=["uniform", "scene"])
    parser.add_argument("--blurs", nargs="+", type=int, default=[32, 64], help="px")
    parser.add_argument("--rounds", type=int, default=3, help="medians of so many")
    parser.add_argument("--threads", type=int, default=2)
    parser.add_argument("--width", type=int, default=1920)
    parser.add_argument("--height", type=int, default=1080)
    arguments = parser.parse_args()
    if min(arguments.blurs + [arguments.rounds, arguments.threads]) < 1:
        parser.error("--blurs, --rounds and --threads must be at least 1")
    return arguments


def main():
    arguments = parsed()
    missing = missing_packages(arguments.peers)
    if missing:
        raise Failure(f"missing packages: {' '.join(missing)}; install them, or choose --peers")
    for program in ("drevin", "drevin_frames"):
        if not (arguments.programs / program).exists():
            raise Failure(f"{arguments.programs / program}: no such program; build it, or name "
                          "another folder with --programs")
    with tempfile.TemporaryDirectory(prefix="drevin-peers-") as name:
        folder = pathlib.Path(name)
        write_pictures(arguments, folder)
        print(HEAD)
        for peer in arguments.peers:
            for kind in arguments.pictures:
                for blur in arguments.blurs:
                    print(table_line(arguments, folder, peer, kind, blur), flush=True)


try:
    main()
except Failure as failure:
    sys.exit(f"run.py: {failure}")
