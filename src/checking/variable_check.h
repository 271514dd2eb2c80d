#pragma once

class CheckContext;
class DeclaredVariables;

// Variables that are used and never declared, or declared and never used, or set where they can't be;
// references in the wrong form or where none are replaced; values that depend on each other; fields and what
// they ask for.
void checkVariables(const CheckContext& context, const DeclaredVariables& variables);
