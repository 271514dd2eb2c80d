#pragma once

#include <string>

#include "installer/package_description.h"

class PXML;

// What the option `help` prints: the product, the options, the product's variables with their defaults and
// what is asked about them, and the exit codes. `description` is that of a readable package. Nothing of it
// can give commands to a terminal, and no default of a password is shown.
std::string helpText(PackageKind package, const PXML& description);

// What a program says that was started to install and has no package.
std::string noPackageText();
