#pragma once

class CheckContext;
class DeclaredVariables;

// Conditions that can't be read, or that hold or fail whatever happens.
void checkConditions(const CheckContext& context, const DeclaredVariables& variables);
