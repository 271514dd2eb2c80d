#include <cstdio>
#include <string>

#include "description/vocabulary.h"

// Prints the words of the description as a dictionary for the fuzzers of XML and of answers, one line each.
namespace {

void print(std::string_view word) {
    std::printf("\"%s\"\n", std::string(word).c_str());
}

}  // namespace

int main() {
    for (const vocabulary::Element& element : vocabulary::kElements) {
        print(element.name);
    }
    for (const vocabulary::Attribute& attribute : vocabulary::kAttributes) {
        print(attribute.name);
    }
    for (const vocabulary::WordList& list : vocabulary::kWordLists) {
        for (const std::string_view word : list.words) {
            print(word);
        }
    }
}
