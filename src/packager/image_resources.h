#pragma once

#include <string>
#include <string_view>

#include "packager/setup_identity.h"

// The bare image with the resources of a product. An image that isn't for Windows stays as it is. `icon` is
// the content of the file that the identity names, empty without one; `fileName` that of the setup. Throws
// InstallerError with one line when image or icon can't be used.
std::string withResources(std::string image, const SetupIdentity& identity, std::string_view icon,
                          std::string_view fileName);
