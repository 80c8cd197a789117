#!/usr/bin/env python3
"""Writes the seed corpora of the fuzz targets into corpus/<target>/ beside this script.

The binary targets read their input through FuzzedDataProvider, so their seeds are short runs of
random bytes from a fixed seed (the same files on every run); the point-file reader gets small
point files, good and bad."""
import os
import random

HERE = os.path.dirname(os.path.abspath(__file__))
BINARY = ["fit_line_fuzz", "fit_plane_fuzz", "fit_circle_fuzz", "poly_roots_fuzz",
          "linalg_fuzz", "point_array_fuzz"]
LATER_BINARY = ["fit_cylinder_fuzz", "fit_cone_fuzz", "constrained_l1_fuzz", "fit_sphere_fuzz"]
TEXTS = [
    "0 0 0\n1 0 0\n2 0.001 0\n", "0,0\n1,1\n2,2\n", "# header\n\n1 2 3 # note\n4\t5\t6\r\n",
    "1 2\n", "1 2 3 4\n", "x y z\n", "1e308 1e308 0\n", "1e999 0 0\n", "nan 0 0\n",
    "inf 1 2\n", "-0 0x1p-1074 4.9e-324\n", "1,,2\n", "  \n\t\n", "", "# only a comment\n",
    "1 2 3\n1 2 3\n1 2 3\n", "0.5 -0.5\n-0.5 0.5\n0.5 0.5\n-0.5 -0.5\n", "1 2 3abc\n",
    "1 2\0 3\n", "+1 -2 .5\n", "1e-310 2e-320 0\n", "1 2 3 ,\n",
]


def write_binary(rng, names):
    """32 seeds of random bytes per target."""
    for name in names:
        folder = os.path.join(HERE, "corpus", name)
        os.makedirs(folder, exist_ok=True)
        for i in range(32):
            size = rng.choice([4, 16, 64, 256, 1024])
            with open(os.path.join(folder, "seed_%02d" % i), "wb") as f:
                f.write(bytes(rng.randrange(256) for _ in range(size)))


def main():
    rng = random.Random(20261123)
    write_binary(rng, BINARY)
    folder = os.path.join(HERE, "corpus", "point_file_fuzz")
    os.makedirs(folder, exist_ok=True)
    for i, text in enumerate(TEXTS):
        with open(os.path.join(folder, "seed_%02d.txt" % i), "w", newline="") as f:
            f.write(text)
    for i in range(10):
        rows = ["%s %s %s" % tuple(repr(rng.uniform(-100, 100)) for _ in range(3))
                for _ in range(rng.randrange(1, 12))]
        with open(os.path.join(folder, "points_%02d.txt" % i), "w") as f:
            f.write("\n".join(rows) + "\n")
    # Targets added later draw on after all the others, so that the earlier seeds stay the same.
    write_binary(rng, LATER_BINARY)


if __name__ == "__main__":
    main()
