#pragma once

class CheckContext;
class PackedFiles;

// The icon of a setup for Windows: whether it can be read and has the sizes that Windows shows. Says nothing
// without the file, or where no setup for Windows is made.
void checkIcon(const CheckContext& context, const PackedFiles& files);
