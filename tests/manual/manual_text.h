#pragma once

#include <string>
#include <vector>

// A page of docs/manual, as it was when the test was built.
struct ManualPage {
    std::string name;
    std::string text;
};

const std::vector<ManualPage>& manualPages();
