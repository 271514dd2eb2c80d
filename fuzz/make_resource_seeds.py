#!/usr/bin/env python3
"""Writes the seeds of icon_file_fuzz and pe_resources_fuzz. Run it in fuzz/seeds/."""

import pathlib
import struct


def bitmap(side, bits):
    palette = 4 << bits if bits <= 8 else 0
    rows = side * ((side * bits + 31) // 32 * 4 + (side + 31) // 32 * 4)
    return struct.pack("<IIIHHIIIIII", 40, side, 2 * side, 1, bits, 0, 0, 0, 0, 0, 0) + bytes(palette + rows)


def png(width, height):
    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + b"sum!"
    head = struct.pack(">IIBBBBB", width, height, 8, 6, 0, 0, 0)
    return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", head) + chunk(b"IDAT", b"pixels") + chunk(b"IEND", b"")


def icon(*pictures):
    head, contents = struct.pack("<HHH", 0, 1, len(pictures)), b""
    for side, picture in pictures:
        head += struct.pack("<BBBBHHII", side % 256, side % 256, 0, 0, 1, 32, len(picture),
                            6 + 16 * len(pictures) + len(contents))
        contents += picture
    return head + contents


def table(entries):
    named = sum(1 for name, _ in entries if name & 0x80000000)
    return bytes(12) + struct.pack("<HH", named, len(entries) - named) + b"".join(struct.pack("<II", *e) for e in entries)


def resources(address):
    """A manifest, and a resource whose type has a name: five tables, two places, a text, two contents."""
    deeper, places, text, contents = 0x80000000, 128, 160, 168
    tables = table([(deeper | text, deeper | 32), (24, deeper | 56)])
    tables += table([(1, deeper | 80)]) + table([(1, deeper | 104)])
    tables += table([(0, places)]) + table([(0x409, places + 16)])
    return (tables + struct.pack("<IIII", address + contents, 5, 0, 0) + struct.pack("<IIII", address + contents + 8, 4, 0, 0) +
            struct.pack("<H", 1) + "A".encode("utf-16-le") + bytes(4) + b"named" + bytes(3) + b"mani")


def image(content=b"", directory=(0, 0), headers=1024, magic=0x20b):
    raw = content + bytes(-len(content) % 512)
    wide = magic == 0x20b
    optional = bytearray(240 if wide else 224)
    struct.pack_into("<H", optional, 0, magic)
    struct.pack_into("<II", optional, 32, 0x1000, 0x200)
    struct.pack_into("<II", optional, 56, 0x2000, headers)
    struct.pack_into("<I", optional, 108 if wide else 92, 16)
    struct.pack_into("<II", optional, (112 if wide else 96) + 16, *directory)
    head = b"MZ" + bytes(58) + struct.pack("<I", 64) + b"PE\0\0" + struct.pack("<HHIIIHH", 0x8664, 1, 0, 0, 0, len(optional), 2)
    head += bytes(optional) + b".rsrc\0\0\0" + struct.pack("<IIII", len(content), 0x1000, len(raw), 1024) + bytes(16)
    return head + bytes(1024 - len(head)) + raw


def write(target, seeds):
    folder = pathlib.Path(target)
    folder.mkdir(exist_ok=True)
    for name, content in seeds.items():
        (folder / name).write_bytes(content)


def main():
    whole = icon((16, bitmap(16, 4)), (32, bitmap(32, 1)), (256, png(256, 256)))
    write("icon_file_fuzz", {
        "good-pictures": whole, "good-png": png(64, 64), "good-colours": icon((8, bitmap(8, 8)), (8, bitmap(8, 24))),
        "bad-cut": whole[:-10], "bad-png": png(64, 64)[:-3], "bad-kind": whole[:2] + b"\2" + whole[3:],
        "bad-size": icon((17, bitmap(16, 4))), "bad-large": png(300, 300)})
    content = resources(0x1000)
    good = image(content, (0x1000, len(content)))
    write("pe_resources_fuzz", {
        "good-resources": good, "good-none": image(b"data"), "good-32-bits": image(content, (0x1000, len(content)), magic=0x10b),
        "bad-cut": good[:700], "bad-no-room": image(b"data", headers=400), "bad-table": image(b"\xff" * 64, (0x1000, 64))})


if __name__ == "__main__":
    main()
