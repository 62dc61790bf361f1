#!/usr/bin/env python3
"""Joins pictures into an icon for Windows: make_icon.py ICON PNG..."""
import struct
import sys

HEADER = struct.Struct("<HHH")
ENTRY = struct.Struct("<BBBBHHII")
ICON_FILE, COLOUR_PLANES, BITS_PER_PIXEL = 1, 1, 32

pictures = [open(name, "rb").read() for name in sys.argv[2:]]
offset = HEADER.size + len(pictures) * ENTRY.size
entries = b""
for picture in pictures:
    width, height = struct.unpack(">II", picture[16:24])
    # 0 stands for 256.
    entries += ENTRY.pack(width % 256, height % 256, 0, 0, COLOUR_PLANES, BITS_PER_PIXEL, len(picture), offset)
    offset += len(picture)
with open(sys.argv[1], "wb") as icon:
    icon.write(HEADER.pack(0, ICON_FILE, len(pictures)) + entries + b"".join(pictures))
