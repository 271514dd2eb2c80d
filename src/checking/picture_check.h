#pragma once

class CheckContext;
class PackedFiles;

// Pictures that a window couldn't show. Only their headers are looked at, and nothing without a root.
void checkPictures(const CheckContext& context, const PackedFiles& files);
