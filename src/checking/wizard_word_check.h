#pragma once

class CheckContext;

// The words of the wizard that a description replaces: whether they have the places of values that the word
// itself has. Names and lengths are checked with those of all elements.
void checkWizardWords(const CheckContext& context);
