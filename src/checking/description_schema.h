#pragma once

#include <string>
#include <vector>

// An XML Schema (XSD 1.0) of descriptions, for editors, made from the grammar: one line for each entry,
// without line ends. It wants the spelling of the manual also where a setup doesn't mind the case of letters.
// Where authors choose the names of elements (pages, tasks, excluded variables, patterns, containers in
// Installation) any name is right.
std::vector<std::string> descriptionSchema();
