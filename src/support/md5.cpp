#include "support/md5.h"

Md5Digest md5Of(const void* data, std::size_t size) {
    Md5 digest;
    digest.update(data, size);
    return digest.finish();
}
