#pragma once

class CheckContext;
class PackedFiles;

// Aliases that no packed file has, or several; packed files that nothing uses.
void checkAliases(const CheckContext& context, const PackedFiles& files);
