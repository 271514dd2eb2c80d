#pragma once

#include <string>

class PXML;

// A file of answers for unattended runs of the product: each variable that a page asks for, in the order of
// the questions, with comments that say where it is asked and what may be answered. With this file a run has
// the values of the description: a variable whose default isn't plain text, or that an earlier installation
// may give, stands in a comment. What the description says can end no comment and begin no element.
std::string answersTemplate(const PXML& description);
