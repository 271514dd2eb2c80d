#pragma once

class CheckContext;
class DeclaredVariables;
class PackedFiles;
class PathValues;

// Patterns of UninstallWildcards that delete nothing, or more than the product's own files.
void checkCleanUps(const CheckContext& context, const DeclaredVariables& variables, const PackedFiles& files,
                   const PathValues& paths);
