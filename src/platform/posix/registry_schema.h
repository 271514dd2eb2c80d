#pragma once

#include <cstdint>

#include "platform/registry.h"

// The layout of the registry's database; registry_schema.md describes it.
namespace platform::registry_schema {

// Written into the database's header ("TDRL"), so that nothing else is taken for a registry.
inline constexpr std::int64_t kApplicationId = 0x5444524C;
inline constexpr std::int64_t kVersion = 1;

inline constexpr int kRootCount = 4;
inline constexpr int kViewCount = 2;
static_assert(static_cast<int>(RegistryRoot::kUsers) + 1 == kRootCount);
static_assert(static_cast<int>(RegistryView::k32Bit) + 1 == kViewCount);

// A root has no row of its own; its id is negative and fixed by its place in the two enumerations.
constexpr std::int64_t rootId(RegistryRoot root, RegistryView view) {
    return -1 - (static_cast<std::int64_t>(root) * kViewCount + static_cast<std::int64_t>(view));
}
static_assert(rootId(RegistryRoot::kClassesRoot, RegistryView::kNative) == -1);
static_assert(rootId(RegistryRoot::kUsers, RegistryView::k32Bit) == -8);

// The limits of the registry on Windows, so that what is written on one system can be written on the other.
inline constexpr std::size_t kMaxKeyNameBytes = 255;
inline constexpr std::size_t kMaxValueNameBytes = 16383;
inline constexpr std::size_t kMaxLevels = 512;

inline constexpr const char* kCreateTables =
    "CREATE TABLE keys(id INTEGER PRIMARY KEY AUTOINCREMENT, parent INTEGER NOT NULL, folded BLOB NOT NULL,"
    " name BLOB NOT NULL, UNIQUE(parent, folded));"
    "CREATE TABLE entries(id INTEGER PRIMARY KEY, key INTEGER NOT NULL, folded BLOB NOT NULL,"
    " name BLOB NOT NULL, type INTEGER NOT NULL, data BLOB NOT NULL, UNIQUE(key, folded));"
    "PRAGMA application_id = 0x5444524C;"
    "PRAGMA user_version = 1;";
static_assert(kApplicationId == 0x5444524C && kVersion == 1, "kCreateTables writes these numbers");

}  // namespace platform::registry_schema
