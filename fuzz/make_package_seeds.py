#!/usr/bin/env python3
"""Writes the seeds of the fuzz targets for packages, streams, catalogues and backup archives.

    fuzz/make_package_seeds.py

Writes below fuzz/seeds/, the same bytes each time.
"""

import hashlib
import pathlib
import struct
import zlib

SEEDS = pathlib.Path(__file__).resolve().parent / "seeds"


def entry(name, alias, content, magic=0x63270010, file_size=None):
    size = len(content) if file_size is None else file_size
    header = struct.pack("<4I", magic, size, len(content), 0) + hashlib.md5(content).digest()
    return header + name.encode().ljust(300, b"\0") + alias.encode().ljust(276, b"\0") + content


def end_record():
    return struct.pack("<I", 0x63270003).ljust(608, b"\0")


def stream(pieces):
    records, data, position = b"", b"", 0
    for piece in pieces:
        packed = zlib.compress(piece, 9)
        records += struct.pack("<4I", position, len(piece), 20 + 16 * len(pieces) + len(data), len(packed))
        position += len(piece)
        data += packed
    return b"SolidHD\0" + struct.pack("<3I", 100, 0x20121111, len(pieces)) + records + data


def lead_block(payload, count):
    return struct.pack("<6I", 0x63276327, 0x75092612, 0x78011813, payload, payload, count).ljust(64, b"\0")


def elf_image(room):
    """One segment with all bytes, no sections, a stamped offset."""
    size = 120 + 20 + room
    image = b"\177ELF" + bytes([2, 1, 1]).ljust(12, b"\0")
    image += struct.pack("<HHIQQQIHHHHHH", 2, 62, 1, 0, 64, 0, 0, 64, 56, 1, 64, 0, 0)
    image += struct.pack("<IIQQQQQQ", 1, 5, 0, 0, 0, size, size, 4096)
    return image + struct.pack("<I", size) + b"ARYIMAGEOFFSET_\0" + bytes(room)


def pe_image(room):
    image = bytearray(1024 + 512 + room)
    image[0:2] = b"MZ"
    struct.pack_into("<I", image, 0x3C, 0x80)
    struct.pack_into("<IHH", image, 0x80, 0x4550, 0x8664, 1)
    struct.pack_into("<H", image, 0x94, 240)
    struct.pack_into("<I", image, 0x98 + 60, 1024)
    struct.pack_into("<II", image, 0x98 + 240 + 16, 512 + room, 1024)
    image[1024:1044] = struct.pack("<I", len(image)) + b"ARYIMAGEOFFSET_\0"
    return bytes(image)


def archive_entry(name, size, check_sum, content):
    return name + b"\0" + struct.pack("<qI", size, check_sum) + content


def check_sum(content):
    value = len(content)
    for i, byte in enumerate(content):
        value ^= byte << (8 * (i % 4) if i < len(content) // 4 * 4 else 0)
    return value


def write(target, name, content):
    folder = SEEDS / target
    folder.mkdir(parents=True, exist_ok=True)
    (folder / name).write_bytes(content)


def main():
    cabinet = entry("install.xml", "install.xml", b"<x/>") + entry("empty", "e", b"") + \
        entry("b.txt", "again", b"text") + entry("b.txt", "again", b"later text") + end_record()
    half = len(cabinet) // 2
    packed = stream([cabinet[:half], cabinet[half:]])
    body = lead_block(18, 4) + packed
    write("package_fuzz", "good-bin", body)
    for name, image_of in (("elf", elf_image), ("pe", pe_image)):
        whole = image_of(0) + body
        write("package_fuzz", f"good-{name}-v1", whole + b"MD5SUM: " + hashlib.md5(whole).digest())
        # This sum leaves out the first 5,000 bytes.
        whole = image_of(5000) + body
        write("package_fuzz", f"good-{name}-v2", whole + b"v2sum: " + hashlib.md5(whole[5000:]).digest() + b"\0" * 3)
    write("package_fuzz", "bad-cut-elf", elf_image(0)[:100])
    write("package_fuzz", "bad-image-only", pe_image(0))
    write("package_fuzz", "bad-catalogue", lead_block(4, 1) + stream([entry("a", "a", b"text", magic=1)]))
    write("package_fuzz", "bad-digest", lead_block(4, 1) + stream([entry("a", "a", b"text")[:-1] + b"x" + end_record()]))
    write("package_fuzz", "bad-totals", lead_block(9, 9) + stream([end_record()]))
    write("package_fuzz", "bad-plain-form", lead_block(4, 1) + entry("a", "a", zlib.compress(b"text"), file_size=4) +
          end_record())
    write("solid_stream_fuzz", "good-one-chunk", stream([b"some text, some text"]))
    write("solid_stream_fuzz", "good-three-chunks", stream([b"first", b"second" * 20, b"third"]))
    write("solid_stream_fuzz", "good-empty-output", stream([b""]))
    good = stream([b"first", b"second"])
    write("solid_stream_fuzz", "bad-version", good[:12] + b"\1" + good[13:])
    write("solid_stream_fuzz", "bad-count", good[:16] + struct.pack("<I", 257) + good[20:])
    for name, record in {
        "bad-offset": (0, 5, 20, 13),
        "bad-negative-offset": (-1, 5, 52, 13),
        "bad-overlap": (0, 6, 52, 13),
        "bad-hole": (0, 3, 52, 13),
        "bad-start": (0, 5, 5000, 13),
        "bad-end": (0, 5, 65, 5000),
        "bad-size": (0, 5, 52, 12),
    }.items():
        write("solid_stream_fuzz", name, good[:20] + struct.pack("<4i", *record) + good[36:])
    write("solid_stream_fuzz", "bad-data", good[:54] + b"\xff" + good[55:])
    write("solid_stream_fuzz", "bad-cut", stream([b"first", b"second"])[:-3])
    write("catalogue_fuzz", "good-entries", cabinet)
    write("catalogue_fuzz", "empty", end_record())
    write("catalogue_fuzz", "good-full-fields", entry("n" * 300, "a" * 276, b"x") + end_record())
    write("catalogue_fuzz", "bad-name", entry("../up", "C:\\x", b"x") + end_record())
    write("catalogue_fuzz", "bad-no-end", entry("a", "a", b"x"))
    new = archive_entry(b"/a/user", 3, check_sum(b"user"), b"old")
    write("backup_archive_fuzz", "good-restored", new + b"\0")
    write("backup_archive_fuzz", "bad-edited", archive_entry(b"/a/user", 3, 1, b"old") + b"\0")
    write("backup_archive_fuzz", "missing-and-empty", archive_entry(b"/a/gone", 4, 0, b"back") +
          archive_entry(b"/a/none", 0, 0, b"") + b"\0")
    write("backup_archive_fuzz", "bad-cut", new[:-1])
    write("backup_archive_fuzz", "bad-negative-size", archive_entry(b"/a/user", -1, 0, b"") + b"\0")


if __name__ == "__main__":
    main()
