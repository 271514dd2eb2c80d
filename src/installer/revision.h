#pragma once

// The build's revision: twelve hexadecimal digits, zeros when the sources aren't under version control.
extern const char kBuildRevision[];
