#pragma once

#include <string>

#include "platform/memory/memory_platform.h"
#include "product_case.h"

// What the user puts into the product's directory after the installation.
inline constexpr const char* kForeignFile = "/product/mine";
inline constexpr const char* kForeignContent = "the user's";
inline constexpr const char* kUsersContent = "changed by the user";
inline constexpr const char* kKeptContent = "kept";
inline constexpr const char* kBrokenContent = "broken";

// Puts the earlier things of the items onto the machine, and the traps that are there at first.
void prepareMachine(MemoryPlatform& machine, const ProductCase& product);
// What the user, the running product and others do between installation and uninstallation.
void useMachine(MemoryPlatform& machine, const ProductCase& product);
// Moves what keeps an uninstallation from its end out of the way: traps in edited files, where the user puts
// back what had been there, and files in directories that the product made.
void clearTheWay(MemoryPlatform& machine, const ProductCase& product);

// Deletes and overwrites files of the product, as a repair finds them.
void damageProduct(MemoryPlatform& machine, const ProductCase& product);
// Whether damageProduct overwrites the file. Others are deleted.
bool isBrokenInRepair(const Item& file);
// Whether it leaves the file alone: an installation can't tell the user's own file of the same content.
bool isSafeFromDamage(const Item& file);

// Whether the variable holds the very entry that the product adds, among others.
bool holdsEqualEntry(const Item& variable);
// What the user adds to a variable at its two ends: entries that contain the product's.
std::string entryInFrontOf(const Item& variable);
std::string entryAfter(const Item& variable);
// What the traps of an item lead to.
std::string victimOf(const Item& item, const std::string& moment);
inline constexpr const char* kAtFirst = "first";
inline constexpr const char* kLater = "later";
