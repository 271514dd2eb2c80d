#include "packager/image_kind.h"

#include <gtest/gtest.h>

#include "package/image_bytes.h"
#include "platform/memory/memory_file_system.h"

namespace {

TEST(KindOfImage, IsThatOfTheProgram) {
    MemoryFileSystem files;
    files.addFile("/elf", ImageBytes::elfImage(ImageBytes::installerData()));
    EXPECT_EQ(kindOfImage("/elf", files), ImageKind::kElf);
}

TEST(KindOfImage, IsNoneWithoutAProgram) {
    MemoryFileSystem files;
    files.addFile("/text", "no program");
    for (const char* path : {"", "/text", "/missing"}) {
        EXPECT_EQ(kindOfImage(path, files), ImageKind::kNone) << path;
    }
}

}  // namespace
