#pragma once

#include <string>
#include <vector>

// A file of the repository, as it was when the test was built: the sample product's description, and the page
// of the manual about failures.
struct EmbeddedText {
    std::string name;
    std::string text;
};

const std::vector<EmbeddedText>& embeddedTexts();
// Ends the program when there is no such file.
const std::string& embeddedText(const std::string& name);
