#!/usr/bin/env python3
"""Times `zeimagemeta show` over N image files in one process against
`exiv2 -pa` over the same files in one process, and prints the ratio.

    bench/zeimagemeta_vs_exiv2.py build/default/bin/zeimagemeta [--files 150] [--runs 5]

The files are half JPEG, half LZW TIFF, 1600 x 1200 noise with a few EXIF
tags, made with vips and exiv2 in a temporary directory (or give --dir with
images of your own). Both programs run `--runs` times, alternating; the
figures are medians of the children's CPU time (user + system) and of the
wall-clock time, per file.
"""

import argparse
import os
import resource
import shutil
import statistics
import subprocess
import sys
import tempfile
import time


def make_images(folder, count):
    noise = os.path.join(folder, "noise.v")
    rgb = os.path.join(folder, "rgb.v")
    pixels = os.path.join(folder, "pixels.v")
    subprocess.run(["vips", "gaussnoise", noise, "1600", "1200"], check=True)
    subprocess.run(["vips", "bandjoin", f"{noise} {noise} {noise}", rgb], check=True)
    subprocess.run(["vips", "cast", rgb, pixels, "uchar"], check=True)
    originals = [os.path.join(folder, "original.jpg"), os.path.join(folder, "original.tif")]
    subprocess.run(["vips", "jpegsave", pixels, originals[0]], check=True)
    subprocess.run(["vips", "tiffsave", pixels, originals[1], "--compression", "lzw"], check=True)
    subprocess.run(["exiv2", "-M", "set Exif.Image.Make Bench", "-M",
                    "set Exif.Photo.FNumber 56/10", "-M", "set Exif.Photo.ExposureTime 1/125",
                    *originals], check=True)
    files = []
    for i in range(count):
        source = originals[i % 2]
        target = os.path.join(folder, f"image{i:04d}{os.path.splitext(source)[1]}")
        shutil.copyfile(source, target)
        files.append(target)
    return files


def timed(commands):
    """(CPU seconds of the children, wall seconds, worst exit status)"""
    before = resource.getrusage(resource.RUSAGE_CHILDREN)
    start = time.perf_counter()
    status = max(subprocess.run(command, stdout=subprocess.DEVNULL,
                                stderr=subprocess.DEVNULL).returncode for command in commands)
    wall = time.perf_counter() - start
    after = resource.getrusage(resource.RUSAGE_CHILDREN)
    cpu = (after.ru_utime - before.ru_utime) + (after.ru_stime - before.ru_stime)
    return cpu, wall, status


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("zeimagemeta")
    parser.add_argument("--files", type=int, default=150)
    parser.add_argument("--runs", type=int, default=5)
    parser.add_argument("--dir", help="image files to use instead of generated ones")
    parser.add_argument("--one-per-process", action="store_true",
                        help="run zeimagemeta once per file (for builds that take one FILE)")
    args = parser.parse_args()

    with tempfile.TemporaryDirectory() as scratch:
        if args.dir:
            files = sorted(os.path.join(args.dir, f) for f in os.listdir(args.dir))[: args.files]
        else:
            files = make_images(scratch, args.files)
        if args.one_per_process:
            ours = [[args.zeimagemeta, "show", f] for f in files]
        else:
            ours = [[args.zeimagemeta, "show", *files]]
        commands = {"zeimagemeta show": ours, "exiv2 -pa": [["exiv2", "-pa", *files]],
                    "zeimagemeta 1 file": [[args.zeimagemeta, "show", files[0]]],
                    "exiv2 1 file": [["exiv2", "-pa", files[0]]]}
        samples = {name: [] for name in commands}
        for _ in range(args.runs):
            for name, command_list in commands.items():
                cpu, wall, status = timed(command_list)
                if name.startswith("zeimagemeta") and status != 0:
                    sys.exit(f"zeimagemeta show failed with status {status}")
                samples[name].append((cpu, wall))

    def median_ms(name, index):
        return statistics.median(r[index] for r in samples[name]) * 1e3

    print(f"{len(files)} files, median of {args.runs} runs, per file:")
    for name in ("zeimagemeta show", "exiv2 -pa"):
        print(f"  {name:18s} CPU {median_ms(name, 0) / len(files):7.3f} ms   "
              f"wall {median_ms(name, 1) / len(files):7.3f} ms")
    ratio_cpu = median_ms("zeimagemeta show", 0) / median_ms("exiv2 -pa", 0)
    ratio_wall = median_ms("zeimagemeta show", 1) / median_ms("exiv2 -pa", 1)
    print(f"ratio zeimagemeta / exiv2: CPU {ratio_cpu:.2f}x, wall {ratio_wall:.2f}x")
    # Where the difference lies: a run over the first file alone is mostly
    # the program's start-up; the rest, spread over the other files, is the
    # cost of one more file.
    print("start-up (one file), then each further file, CPU:")
    for ours_or_theirs, whole in (("zeimagemeta", "zeimagemeta show"), ("exiv2", "exiv2 -pa")):
        one = median_ms(f"{ours_or_theirs} 1 file", 0)
        further = (median_ms(whole, 0) - one) / max(1, len(files) - 1)
        print(f"  {ours_or_theirs:12s} start-up {one:6.1f} ms   further file {further:6.3f} ms")

if __name__ == "__main__":
    main()
