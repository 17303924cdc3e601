#!/usr/bin/env python3
# SPDX-License-Identifier: Apache-2.0
"""Writes the seeds of fuzz_case_read beside itself: small case files, whole and damaged.

The layout is that of docs/formats/case-file.md. It is written down here once more on purpose: seeds
made by the writer under test would only hold what that writer can write.
"""

import pathlib
import struct

FOLDER = pathlib.Path(__file__).parent


def words(*values):
    return struct.pack(f"<{len(values)}I", *values)


def doubles(*values):
    return struct.pack(f"<{len(values)}d", *values)


def short_text(text):
    return words(len(text)) + text


def long_text(text):
    return struct.pack("<Q", len(text)) + text


def pairs(*rows):
    return words(len(rows)) + b"".join(doubles(*row) for row in rows)


def rotor(name, rows):
    table = pairs(*[(0.5 * i, i) for i in range(rows)])
    return (
        short_text(name) + doubles(1, 2, 3) + doubles(10) + b"\1\0\1" + words(4, 50)
        + doubles(*range(10)) + b"\1" + table + b"\1\1" + table
        + b"\1" + table + b"\0" + table + b"\2" + table + b"\0" + table
        + words(72) + words(rows) + doubles(*range(rows))
        + words(rows) + b"".join(doubles(i) + short_text(b"table.aft") for i in range(rows))
    )


def case(restart=None, visc_path=b"", visc=b"", points=0, boxes=0, bodies=(), rotors=(), layers=0,
         moment=b"", adapt_boxes=0, trajectory=None, completion=b"done.txt"):
    box = doubles(0, 0, 0, 1, 1, 1)
    ref_boxes = words(boxes) + (box + words(3, 4)) * boxes
    return b"".join([
        words(17), short_text(b"demo"), short_text(b"model"),
        b"\0" if restart is None else b"\1" + short_text(restart),
        b"\0\1\2", doubles(-1, -1, -1, 1, 1, 1), words(2, 2, 2), b"\1\0",
        short_text(visc_path), long_text(visc),
        words(points) + doubles(1, 2, 3) * points, ref_boxes, ref_boxes, words(0),
        b"\0", words(1), b"\5\7",
        words(len(bodies)) + b"".join(
            words(7) + b"\1" + words(8) + words(facets) + doubles(*range(9)) * facets
            for facets in bodies),
        words(len(rotors)) + b"".join(rotors),
        words(0, 1, 2, 0, 1, 2), doubles(*range(6)), doubles(*range(18)), doubles(1, 2, 3),
        doubles(*range(6)), b"\1", words(1, 2, 3), doubles(1, 2),
        b"\1", words(layers) + (doubles(0.5) + words(100, 3) + doubles(.1, .2, .3, .4)) * layers,
        words(1, 2, 3, 4, 5), words(1), b"\0", struct.pack("<h", 1), words(8),
        b"\1\0\1\0", words(10), b"\1", words(1, 2), words(3), doubles(1, 2, 3),
        b"\1\1", words(1), b"\1", words(2), b"\1", words(3),
        long_text(moment), b"\1", words(1, 2), b"\1", words(1), doubles(1, 2, 3, 4), b"\1",
        b"\1\0", words(1, 2), doubles(1), b"\1", doubles(1, 2, 3, 4, 5),
        b"\1", words(100), words(5), doubles(1, 2), words(1), words(10), b"\1", words(99),
        doubles(1, 2, 3, 4),
        words(adapt_boxes) + box * adapt_boxes, words(adapt_boxes) + box * adapt_boxes,
        b"\0" if trajectory is None else b"\1" + long_text(trajectory),
        short_text(completion),
    ])


FULL = case(restart=b"old.Rst", visc_path=b"./visc.inp", visc=b"a\0b", points=2, boxes=1,
            bodies=(1, 0, 2), rotors=(rotor(b"Main", 2), rotor(b"", 0)), layers=2, moment=b"m\0m",
            adapt_boxes=1, trajectory=b"fly")

SEEDS = {
    "all-zero": bytes(732),
    "plain": case(),
    "everything": FULL,
    "restart-without-file": case(restart=b""),
    "trajectory-empty": case(trajectory=b""),
    "completion-1000": case(completion=b"p" * 1000),
    "completion-1001": case(completion=b"p" * 1001),
    "completion-collapses": case(completion=b"a/.."),
    "completion-home": case(completion=b"~/x"),
    "visc-path-collapses": case(visc_path=b"a/.."),
    "trailing-bytes": case() + b"anything",
    "cut-in-rotor": FULL[:700],
    "cut-last-byte": FULL[:-1],
    "case-name-length-huge": words(17) + words(0xFFFFFFFF) + b"demo",
    "points-count-huge": case().replace(long_text(b"") + words(0), long_text(b"") + b"\xff" * 4, 1),
    "empty": b"",
}

for name, content in SEEDS.items():
    (FOLDER / f"{name}.bin").write_bytes(content)
