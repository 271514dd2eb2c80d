#pragma once

class CheckContext;
class PackedFiles;

// Files below the root that lie among those of the product, and that no FN names. Nothing without a root.
void checkPayload(const CheckContext& context, const PackedFiles& files);
