#pragma once

// What the build knows of itself. Both are defined in a source that the build writes, which only the programs
// link.

// The version of the project, such as 1.0.0.
extern const char kProgramVersion[];
// The build's revision: twelve hexadecimal digits, zeros when the sources aren't under version control.
extern const char kBuildRevision[];
