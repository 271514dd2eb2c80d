#include "description/pxml_writer.h"

#include <gtest/gtest.h>

#include "platform/memory/memory_file_system.h"
#include "support/p_mem_stream.h"
#include "support/text_mode.h"

namespace {

std::string contentOf(PMemStream& stream) {
    std::string content(static_cast<std::size_t>(stream.getSize()), '\0');
    std::uint32_t done = 0;
    stream.seek(0);
    stream.read(content.data(), static_cast<std::uint32_t>(content.size()), done);
    return content;
}

std::string written(const PXML& document) {
    PMemStream stream;
    EXPECT_EQ(document.saveStream(stream), 0);
    return contentOf(stream);
}

std::string withPlatformLineEnds(const std::string& text) {
    std::string out;
    for (const char c : text) {
        out += c == '\n' ? std::string(OUtils::textLineEnd()) : std::string(1, c);
    }
    return out;
}

TEST(PXMLWriter, IndentsByOneBlankForEachLevel) {
    PXML document;
    document.parseText("<r a='1'><x>t</x><y><z/></y></r>");
    EXPECT_EQ(written(document), "<r a=\"1\">\n <x>t</x>\n <y>\n  <z></z>\n </y>\n</r>\n");
}

TEST(PXMLWriter, EscapesValuesAndTexts) {
    PXML document;
    document.parseText("<r a='say \"hi\"'>1 &lt; 2 &amp; it&apos;s</r>");
    EXPECT_EQ(written(document), "<r a=\"say &quot;hi&quot;\">1 &lt; 2 &amp; it&apos;s</r>\n");
}

TEST(PXMLWriter, WritesBothAttributesOfOneName) {
    PXML document;
    document.parseText("<r a='1' a='2'/>");
    EXPECT_EQ(written(document), "<r a=\"1\" a=\"2\"></r>\n");
}

TEST(PXMLWriter, NullValueIsWrittenEmpty) {
    PXML document;
    document.parseText("<r/>");
    document.setAttribute(0, "a", std::nullopt);
    EXPECT_EQ(written(document), "<r a=\"\"></r>\n");
}

TEST(PXMLWriter, TextOfAnElementWithChildrenIsNotWritten) {
    PXML document;
    document.addPath(-1, "a", "lost", false);
    document.addPath(0, "b", std::nullopt, false);
    EXPECT_EQ(written(document), "<a>\n <b></b>\n</a>\n");
}

TEST(PXMLWriter, WritesEveryTopLevelElement) {
    PXML document;
    document.addPath(-1, "a", "1", true);
    document.addPath(-1, "a", "2", true);
    EXPECT_EQ(written(document), "<a>1</a>\n<a>2</a>\n");
}

TEST(PXMLWriter, WhatIsWrittenReadsBackTheSame) {
    PXML document;
    document.parseText("<r a='1 &gt; 2'><x b='&apos;'>t</x><y><z>&amp;amp;</z></y></r>");
    const std::string first = written(document);
    PXML again;
    again.parseText(first);
    EXPECT_EQ(written(again), first);
}

TEST(PXMLWriter, EmptyDocumentGivesAnEmptyFile) {
    MemoryFileSystem files;
    PXML document;
    document.parseText("");
    EXPECT_EQ(document.saveFile("/out/../empty.xml", files), 0);
    EXPECT_TRUE(files.hasFile("/empty.xml"));
    EXPECT_EQ(files.content("/empty.xml"), "");
}

TEST(PXMLWriter, FileHasTheLineEndsOfThePlatform) {
    MemoryFileSystem files;
    PXML document;
    document.parseText("<r><x>1</x></r>");
    EXPECT_EQ(document.saveFile("/a.xml", files), 0);
    EXPECT_EQ(files.content("/a.xml"), withPlatformLineEnds("<r>\n <x>1</x>\n</r>\n"));
}

TEST(PXMLWriter, FileThatCannotBeMadeGivesMinusOne) {
    MemoryFileSystem files;
    PXML document;
    document.parseText("<r/>");
    EXPECT_EQ(document.saveFile("/none/a.xml", files), -1);
}

TEST(PXMLWriter, FullDiskGivesOne) {
    MemoryFileSystem files;
    files.setFreeSpace(100);
    PXML document;
    document.addPath(-1, "r", std::string(300000, 'x').c_str(), false);
    EXPECT_EQ(document.saveFile("/a.xml", files), 1);
}

TEST(PXMLWriter, FailureAtClosingGivesOne) {
    MemoryFileSystem files;
    files.failAt(MemoryFileSystem::Operation::kClose, "", 1);
    PXML document;
    document.parseText("<r/>");
    EXPECT_EQ(document.saveFile("/a.xml", files), 1);
}

TEST(PXMLWriter, DeepDocumentIsWrittenWithoutRecursion) {
    constexpr int kDepth = 3000;
    std::string text;
    for (int i = 0; i < kDepth; ++i) {
        text += "<n>";
    }
    text += "<m/>";
    PXML document;
    document.parseText(text);
    const std::string out = written(document);
    EXPECT_EQ(out.size(), 2U * kDepth * (kDepth - 1) / 2 + kDepth * (4 + 5) + kDepth + 8);
    PXML again;
    again.parseText(out);
    EXPECT_EQ(again.getNodeCount(), kDepth + 1);
}

}  // namespace
