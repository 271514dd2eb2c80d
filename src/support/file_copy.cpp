#include "support/file_copy.h"

#include "support/p_file_stream.h"
#include "support/replacing_file.h"

int copyWithRights(platform::FileSystem& files, const std::string& from, const std::string& rightsOf,
                   const std::string& to) {
    PFileStream source(files);
    ReplacingFile target(files);
    int status =
        source.openFile(from, PFileStream::kGenericRead, PFileStream::kShareRead,
                        PFileStream::kOpenExisting | PFileStream::kSequential | PFileStream::kRefuseLinks);
    status = status != 0 ? status : target.openWithRightsOf(to, rightsOf);
    status = status != 0 ? status : copyContent(source, target.stream());
    // Windows puts nothing in the place of an open file.
    source.close();
    return status != 0 ? status : target.putInPlace();
}
