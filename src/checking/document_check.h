#pragma once

class CheckContext;
class PackedFiles;

// Documents that a setup wouldn't show, or not as they are written. Nothing without a root.
void checkDocuments(const CheckContext& context, const PackedFiles& files);
