#pragma once

#include <string>
#include <vector>

// A file of the template that packager new writes.
struct TemplateFile {
    std::string path;  // below the new directory, with `/`
    std::string text;
};

// All of them; samples/template is the source.
const std::vector<TemplateFile>& templateFiles();
