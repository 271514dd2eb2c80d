"""Reads what the tests need from the headers of programs: ELF and PE images of 64 bits."""

import struct


class ElfImage:
    LOAD, DYNAMIC, INTERPRETER = 1, 2, 3
    EH_FRAME, STACK, RELRO = 0x6474e550, 0x6474e551, 0x6474e552
    EXECUTABLE, WRITABLE = 1, 2
    NEEDED, STRING_TABLE, SYMBOL_TABLE, FLAGS, FLAGS_1 = 1, 5, 6, 30, 0x6ffffffb
    VERSIONS_NEEDED, VERSIONS_NEEDED_COUNT = 0x6ffffffe, 0x6fffffff

    def __init__(self, data):
        assert data[:6] == b"\177ELF\2\1", "no ELF image of 64 bits"
        self.data = data
        self.kind, = struct.unpack_from("<H", data, 16)
        offset, = struct.unpack_from("<Q", data, 32)
        size, count = struct.unpack_from("<HH", data, 54)
        fields = [struct.unpack_from("<IIQQQQQ", data, offset + i * size) for i in range(count)]
        self.segments = [{"type": f[0], "flags": f[1], "offset": f[2], "address": f[3], "size": f[5]} for f in fields]
        self.dynamic = {}
        for segment in self.of_type(self.DYNAMIC):
            for at in range(segment["offset"], segment["offset"] + segment["size"], 16):
                tag, value = struct.unpack_from("<QQ", data, at)
                self.dynamic.setdefault(tag, []).append(value)

    def of_type(self, kind):
        return [segment for segment in self.segments if segment["type"] == kind]

    def offset_of(self, address):
        for segment in self.of_type(self.LOAD):
            if segment["address"] <= address < segment["address"] + segment["size"]:
                return address - segment["address"] + segment["offset"]
        raise AssertionError(f"no byte of the file is at {address:#x}")

    def text(self, index):
        start = self.offset_of(self.dynamic[self.STRING_TABLE][0]) + index
        return self.data[start:self.data.index(b"\0", start)].decode()

    def libraries(self):
        return [self.text(index) for index in self.dynamic.get(self.NEEDED, [])]

    def flags(self, tag):
        return self.dynamic.get(tag, [0])[0]

    def imported(self):
        """The names of the symbols that other libraries give."""
        names, at = [], self.offset_of(self.dynamic[self.SYMBOL_TABLE][0])
        # The table of the texts follows that of the symbols.
        end = self.offset_of(self.dynamic[self.STRING_TABLE][0])
        while at < end:
            name, _, _, section = struct.unpack_from("<IBBH", self.data, at)
            if section == 0 and name != 0:
                names.append(self.text(name))
            at += 24
        return names

    def versions(self):
        """The versions of the libraries' symbols that the program needs."""
        found, at = [], self.offset_of(self.dynamic[self.VERSIONS_NEEDED][0])
        for _ in range(self.dynamic[self.VERSIONS_NEEDED_COUNT][0]):
            _, count, _, first, following = struct.unpack_from("<HHIII", self.data, at)
            entry = at + first
            for _ in range(count):
                _, _, _, name, step = struct.unpack_from("<IHHII", self.data, entry)
                found.append(self.text(name))
                entry += step
            at += following
        return found

    def functions(self):
        """The addresses at which functions start, by the table that exceptions use."""
        segment, = self.of_type(self.EH_FRAME)
        at = segment["offset"]
        assert self.data[at:at + 4] == b"\1\x1b\3\x3b", "another form of table"
        count, = struct.unpack_from("<I", self.data, at + 8)
        return [segment["address"] + struct.unpack_from("<i", self.data, at + 12 + 8 * i)[0] for i in range(count)]

    def code(self):
        return b"".join(self.data[s["offset"]:s["offset"] + s["size"]] for s in self.of_type(self.LOAD)
                        if s["flags"] & self.EXECUTABLE)


class PeImage:
    IMPORTS, RESOURCES, CERTIFICATES, RELOCATIONS, DELAYED = 1, 2, 4, 5, 13
    HIGH_ENTROPY, DYNAMIC_BASE, NO_EXECUTION_OF_DATA = 0x20, 0x40, 0x100
    RELOCATIONS_STRIPPED = 1
    EXECUTABLE, WRITABLE = 0x20000000, 0x80000000
    VERSION, MANIFEST = 16, 24

    def __init__(self, data):
        self.data = data
        header, = struct.unpack_from("<I", data, 0x3c)
        assert data[header:header + 4] == b"PE\0\0", "no PE image"
        sections, = struct.unpack_from("<H", data, header + 6)
        optional_size, self.characteristics = struct.unpack_from("<HH", data, header + 20)
        optional = header + 24
        assert struct.unpack_from("<H", data, optional)[0] == 0x20b, "not of 64 bits"
        self.dll_characteristics, = struct.unpack_from("<H", data, optional + 70)
        self.directory_offset = optional + 112
        self.sections = []
        for i in range(sections):
            at = optional + optional_size + 40 * i
            size, address, raw_size, raw = struct.unpack_from("<IIII", data, at + 8)
            self.sections.append({"address": address, "size": max(size, raw_size), "raw": raw,
                                  "flags": struct.unpack_from("<I", data, at + 36)[0]})

    def directory(self, index):
        """The address and size of a data directory; that of the certificates has an offset of the file instead."""
        return struct.unpack_from("<II", self.data, self.directory_offset + 8 * index)

    def offset_of(self, address):
        for section in self.sections:
            if section["address"] <= address < section["address"] + section["size"]:
                return address - section["address"] + section["raw"]
        raise AssertionError(f"no section has {address:#x}")

    def libraries(self):
        """In lower case."""
        return self._library_names(self.IMPORTS, name_at=12, step=20)

    def delayed_libraries(self):
        """In lower case."""
        return self._library_names(self.DELAYED, name_at=4, step=32)

    def _library_names(self, table, name_at, step):
        if self.directory(table) == (0, 0):
            return []
        names, at = [], self.offset_of(self.directory(table)[0])
        while True:
            name, = struct.unpack_from("<I", self.data, at + name_at)
            if name == 0:
                return names
            start = self.offset_of(name)
            names.append(self.data[start:self.data.index(b"\0", start)].decode().lower())
            at += step

    def resource(self, kind):
        """The first resource of a type, whatever its name and language."""
        base = self.offset_of(self.directory(self.RESOURCES)[0])
        for wanted in (kind, None, None):
            at = base if wanted is not None else base + (following & 0x7fffffff)
            named, numbered = struct.unpack_from("<HH", self.data, at + 12)
            entries = [struct.unpack_from("<II", self.data, at + 16 + 8 * i) for i in range(named + numbered)]
            following = next((offset for number, offset in entries if wanted in (None, number)), None)
            if following is None:
                return None
        address, size = struct.unpack_from("<II", self.data, base + following)
        start = self.offset_of(address)
        return self.data[start:start + size]


def signed(data, certificate=b"\x30\x82" + b"c" * 1500):
    """A PE file with a certificate table at its end, as signing makes one. The certificate is none."""
    padded = data + bytes(-len(data) % 8)
    certificate += bytes(-len(certificate) % 8)
    table = struct.pack("<IHH", 8 + len(certificate), 0x0200, 0x0002) + certificate
    result = bytearray(padded + table)
    image = PeImage(data)
    struct.pack_into("<II", result, image.directory_offset + 8 * PeImage.CERTIFICATES, len(padded), len(table))
    return bytes(result)
