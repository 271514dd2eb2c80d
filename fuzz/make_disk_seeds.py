#!/usr/bin/env python3
"""Writes the seeds of the fuzz targets whose inputs hold several files or texts.

    fuzz/make_disk_seeds.py

Writes below fuzz/seeds/, the same bytes each time.
"""

import hashlib
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


def before(content, *record):
    """A record after the line that says what was in its place."""
    return b"BEFORE\t" + hashlib.md5(content).hexdigest().encode() + b"\r\n" + b"\t".join(record) + b"\r\n"


def write_former_states():
    """The first two changes were never made: their places hold what they held before."""
    records = (before(b"alpha\nadded\n", b"FILE", b"CREATE", b"/app/text.txt")
               + before(b"[main]\nkey=value\n", b"INI", b"CREATE", b"/app/set.ini", b"main", b"key", b"value")
               + before(b"something else", b"FILE", b"CREATE", b"/app/change"))
    write("uninstall_fuzz", "good-former", records)
    head = b"/app/demo.xml\r\n/app/backup.bin\r\nNUMVARS\t1\r\n"
    write("action_log_fuzz", "good-former", head + b"VAR\tSTDROOT\t/app\r\n" + records)
    write("action_log_fuzz", "bad-torn-former", head + records[:20])


def note(name, text):
    return b"note " + name + b"\n" + text


def journal_text(text):
    return struct.pack("<I", len(text)) + text


def body(step, path=b"", other=b"", kept=0, left=(0, 0), before=(), after=()):
    """The body of a record of the removal journal."""
    digest = hashlib.md5(b"").digest() if left[0] == 1 else b"\0" * 16
    content = struct.pack("<4B2IBq", step, 0, 0, 0, 0, kept, *left) + digest + journal_text(path) + journal_text(other)
    for values in (before, after):
        content += struct.pack("<I", len(values))
        for name, kind, data in values:
            content += journal_text(name) + struct.pack("<I", kind) + journal_text(data)
    return b"body\n" + content


def write_journals():
    own = b"/var/state/removal-1/"
    begun = (note(b"levels made", b"1"), note(b"product", b"Demo"), note(b"description", own + b"description.xml"),
             note(b"stage", b"begun"))
    removal = (note(b"application 1", b"Demo"), note(b"log 1", b"/app/install.log"), note(b"for good 1", b"yes"),
               note(b"backed up 1", b"Demo"), note(b"archive 1", own + b"files.tmp"),
               note(b"directories 1", own + b"dirs.tmp"), note(b"copied 1", b"/app/install.log"),
               note(b"copy 1", own + b"copy.tmp"))
    installing = (note(b"temporary log", own + b"log.tmp"), note(b"temporary archive", own + b"bin.tmp"),
                  note(b"installation log", b"/app/install.log"), note(b"installation archive", b"/app/backup.bin"),
                  note(b"continues", b"yes"), note(b"stage", b"installing"), note(b"attempts", b"2"),
                  note(b"partly undone", b"yes"))
    value = ((b"name", 1, b"old"),)
    changes = (body(2, b"/app/tool", kept=1), body(10, b"/app/tool", kept=2), body(11, b"/app/dir", kept=3),
               body(12, b"/app/new", left=(1, 0)), body(14, b"/app/b", b"/app/a", left=(1, 0)),
               body(20, b"Software\\A"), body(22, b"Software\\A", b"name", before=value, after=value),
               body(40), body(3))
    for name, sections in {
        "good-begun": begun,
        "good-installing": begun + removal + installing,
        "good-changes": begun + changes,
        "good-torn": begun + (b"\x9eRec\0",),
        "bad-ended": begun + (note(b"stage", b"ended"),),
        "bad-nobody": (note(b"stage", b"begun"),),
        "bad-damaged": begun + (b"\x9eRec" + b"\0" * 40,) + installing,
        "bad-body": begun + (body(10, b"relative"), body(99), body(14, b"/a", b"b"), body(22, before=value)[:-1]),
        "strange-places": begun + (note(b"description", b"/etc/passwd"), note(b"temporary log", own + b"../x"),
                                   note(b"installation log", b"relative"), note(b"stage", b"what"),
                                   note(b"attempts", b"-9"), note(b"application 1", b""), note(b"log 1", b"C:"),
                                   note(b"backed up 1", b""), note(b"archive 1", b"/home/x"), note(b"copied 1", b"/x")),
    }.items():
        write("removal_journal_fuzz", name, b"\n%%\n".join(sections))


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
    write_former_states()
    write_journals()
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
