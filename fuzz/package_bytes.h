#pragma once

#include <zlib.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>

#include "package/cabinet_format.h"
#include "package/package_layout.h"
#include "package/solid_format.h"
#include "support/md5.h"

// The pieces of a package, made the short way.

inline unsigned char* bytesOf(std::string& text) {
    return reinterpret_cast<unsigned char*>(text.data());
}

// Says nothing about the content.
inline std::string leadBlock() {
    std::string lead(PackageLayout::kLeadBlockSize, '\0');
    LittleEndian::writeUnsigned(bytesOf(lead) + PackageLayout::kMagic0Offset, PackageLayout::kMagic0);
    LittleEndian::writeUnsigned(bytesOf(lead) + PackageLayout::kMagic1Offset, PackageLayout::kMagic1);
    LittleEndian::writeUnsigned(bytesOf(lead) + PackageLayout::kMagic2Offset, PackageLayout::kMagic2);
    return lead;
}

// The content as the one chunk of a stream, not compressed.
inline std::string solidStream(std::string_view content) {
    const auto size = static_cast<uLong>(content.size());
    uLongf packedSize = compressBound(size);
    std::string packed(packedSize, '\0');
    compress2(bytesOf(packed), &packedSize, reinterpret_cast<const Bytef*>(content.data()), size, 0);
    packed.resize(packedSize);
    std::string header(SolidFormat::totalHeaderSize(1), '\0');
    header.replace(0, sizeof(SolidFormat::kMagic), SolidFormat::kMagic, sizeof(SolidFormat::kMagic));
    LittleEndian::writeUnsigned(bytesOf(header) + SolidFormat::kFormatIdOffset, SolidFormat::kFormatId);
    LittleEndian::writeUnsigned(bytesOf(header) + SolidFormat::kVersionOffset, SolidFormat::kVersion);
    LittleEndian::writeUnsigned(bytesOf(header) + SolidFormat::kChunkCountOffset, 1);
    const SolidChunk chunk{0, static_cast<std::uint32_t>(size), static_cast<std::int32_t>(header.size()),
                           static_cast<std::uint32_t>(packedSize)};
    chunk.encode(bytesOf(header) + SolidFormat::kHeaderSize);
    return header + packed;
}

// An entry of the catalogue. Name and alias are cut to their fields.
inline std::string cabinetEntry(std::string_view name, std::string_view alias, std::string_view content) {
    std::string header(CabinetFormat::kHeaderSize, '\0');
    const auto size = static_cast<std::uint32_t>(content.size());
    LittleEndian::writeUnsigned(bytesOf(header) + CabinetFormat::kMagicOffset, CabinetFormat::kEntryMagic);
    LittleEndian::writeUnsigned(bytesOf(header) + CabinetFormat::kFileSizeOffset, size);
    LittleEndian::writeUnsigned(bytesOf(header) + CabinetFormat::kStoredSizeOffset, size);
    const Md5Digest digest = md5Of(content.data(), content.size());
    std::copy(digest.begin(), digest.end(), bytesOf(header) + CabinetFormat::kDigestOffset);
    name.copy(header.data() + CabinetFormat::kNameOffset, CabinetFormat::kNameSize);
    alias.copy(header.data() + CabinetFormat::kAliasOffset, CabinetFormat::kAliasSize);
    return header + std::string(content);
}

// What ends the catalogue.
inline std::string endRecord() {
    std::string record(CabinetFormat::kHeaderSize, '\0');
    LittleEndian::writeUnsigned(bytesOf(record) + CabinetFormat::kMagicOffset, CabinetFormat::kEndMagic);
    return record;
}
