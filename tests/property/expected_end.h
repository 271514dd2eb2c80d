#pragma once

#include <set>
#include <string>

#include "machine_state.h"
#include "product_case.h"

// What an uninstallation makes of a machine, given what was there at first. The manual's pages about records
// and uninstalling say all of this.

// What is there after the last uninstallation.
MachineState expectedEnd(const MachineState& start, const ProductCase& product);

// The files that keep a directory which the product made, so that the walk fails: all of them are in the
// expected end, and not in the start.
std::set<std::string> filesThatStay(const MachineState& start, const ProductCase& product);
// Those among them that the archive brings back each time, as kBrokenContent.
std::set<std::string> filesThatComeBack(const MachineState& start, const ProductCase& product);
// Takes out what an uninstallation deletes once its archive is gone: files that may have been the user's, but
// still are what was installed.
void expectNoArchive(const ProductCase& product, MachineState& state);
// Whether a link is in the place of a file whose lines or keys have to be taken out.
bool hasTrappedEdit(const ProductCase& product);

// Leaves out variables in which the user had the very entry that the product adds: an uninstallation that is
// repeated takes that one as well, because the records don't say how often it is to be there.
void forgetEqualEntries(const ProductCase& product, MachineState& state);
