#!/usr/bin/env python3
"""Writes the seeds of the fuzz targets whose inputs hold several files or texts.

    fuzz/make_disk_seeds.py

Writes below fuzz/seeds/, the same bytes each time.
"""

import struct

from make_package_seeds import archive_entry, check_sum, write


def disk(log, archive, *entries):
    """`archive` without its banner; each of the entries is a path, a line feed and a content."""
    return b"\n%%\n".join([log.replace(b"\n", b"\r\n"), archive, *entries])


HEAD = b"/kit/backup.bin\nNUMVARS\t1\nVAR\tDIR\t/app\n"
RESTORED = archive_entry(b"/app/replaced.txt", 10, check_sum(b"installed"), b"the user's") + b"\0"
PRODUCT = (
    b"/app/replaced.txt\ninstalled",
    b"/app/program\n\177ELF",
    b"/app/set.ini\n[main]\nkey=value\nother=1\n",
    b"/app/text.txt\nalpha\nadded\n",
    b"/app/change\n1\nalpha\n1\nadded\n",
    b"/app/deep/old.tmp\n",
    b"/app/cache/a/b/1\nx",
)


def main():
    write("hostile_disk_fuzz", "good-product", disk(
        HEAD + b"RECORDS\nDIR\t1\t/app/cache/\nFILE\tCREATE\t/app/program\nFILE\tOVER\t/app/replaced.txt\n"
        b"INI\tCREATE\t/app/set.ini\tmain\tkey\tvalue\nMODIFYFILE\tADDAFTER\t/app/text.txt\t/app/change\n"
        b"FILE\tCREATE\t/app/change\nENV\tADD\tPATH\t/app;\nREGVAL\tHKEY_LOCAL_MACHINE\tSoftware\\A\tv\n",
        RESTORED, *PRODUCT))
    write("hostile_disk_fuzz", "good-links", disk(
        HEAD + b"FILE\tCREATE\t/app/to-file\nSHORTCUT\tCREATE\t/app/to-directory\nFILE\tCREATE\t/app/letter\n",
        RESTORED, *PRODUCT, b"/app/to-file\n-> /data/file.txt", b"/app/to-directory\n-> /data",
        b"/app/cache/other\n-> /data", b"/data/file.txt\nkept", b"/data/1.tmp\nkept"))
    write("hostile_disk_fuzz", "edits-through-links", disk(
        HEAD + b"INI\tCREATE\t/app/letter\tmain\tkey\tvalue\nINI\tREPLACE\t/app/ini\tmain\tkey\told\n"
        b"MODIFYFILE\tADDAFTER\t/app/text\t/app/change\nFILE\tOVER\t/app/letter\n",
        archive_entry(b"/app/letter", 3, check_sum(b"dear"), b"new") + b"\0",
        b"/app/ini\n-> /data/set.ini", b"/data/set.ini\n[main]\nkey=value\n", b"/app/text\n-> /data/text",
        b"/data/text\nalpha\nadded\n", b"/app/change\n1\nalpha\n1\nadded\n"))
    write("hostile_disk_fuzz", "names", disk(
        b"\nNUMVARS\t2\nVAR\tDIR\t/\nVAR\tDIR\t/app/..\nFILE\tCREATE\t/app/../data/named\n"
        b"FILE\tCREATE\trelative\nFILE\tCREATE\t/\nDIR\t9\t/app/cache/a/b/\nDIR\t3\t/data/\n",
        b"", b"/data/named\nx", b"/data/1.tmp\nkept", b"/app/cache/a/b/\n", b"/app/.. /odd\nx", b"/1.tmp\nkept"))
    write("hostile_disk_fuzz", "bad-log", disk(
        b"/nowhere\nNUMVARS\tx\nVAR\tDIR\t/data\nFILE\tCREATE\n\t\t\nFILE\tOVER\t/data/a\nINI\tCREATE\t/data\n",
        RESTORED[:-4], b"/data/a\nx", b"/data/b.tmp\nx"))
    write("uninstall_fuzz", "bad-resisting", b"DIR\t1\t/app/cache/\r\n")
    for name, texts in {
        "good-plain": (b"NAME", b"/opt/demo/install.log", b"/opt/demo/bin", b"-x y", b"/icon.png"),
        "good-shell": (b"A_1", b"a'b`c$(d)\\e;/g h\n#!", b"/opt/it's here;/a b;C:\\c\\d;rel", b'"a b" c% $d', b" \t"),
        "good-signs": (b"x", b"[Desktop Entry]\nExec=rm \\s \\\\", b"/opt/x' ; rm -rf / ; '", b"%f %% \\ `x` \"", b"\r\n"),
        "good-quotes-in-name": (b"n", b"/log", b'/Foo "Bar" -gui=1', b"", b""),
        "option-in-name": (b"n", b"/l", b'a"# -gui=1', b"", b""),
        "bad-quoted-path": (b'/opt/a" -x="b', b'/log" -uninstallApp="', b"App", b"", b""),
        "bad-empty": (b"",),
    }.items():
        write("quoting_fuzz", name, b"\0".join(texts))
    for name, text in {
        "good-ascii": b"C:\\Program Files\\x/y\tz",
        "good-characters": "äöü € 𝄞 漢字\u200f\u202e\u0085\u2028".encode(),
        "good-drives": b"C:C:\\a/C:",
        "bad-cut": "€".encode()[:2] + b"a\xff",
        "bad-overlong": b"\xc0\x80\xe0\x80\x80\xf8\x88\x80\x80\x80\xfc\x84\x80\x80\x80\x80",
        "bad-surrogates": b"\xed\xa0\x80\xed\xb0\x80\xed\xb0\x80",
        "bad-raw-bytes": "\U00100080\U001000ff".encode() + b"\x80",
        "units": struct.pack("<6H", 0xD800, 0xDC00, 0xDC00, 0x41, 0xDBC0, 0xDCE2),
    }.items():
        write("text_conversion_fuzz", name, text)


if __name__ == "__main__":
    main()
