// Prints a document as a console shows it, for bench/run:
//
//   text_bench markdown|richtext FILE COLUMNS

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "text/document_text.h"

namespace {

struct Document {
    std::unique_ptr<char[]> data;
    std::size_t size;

    std::string_view view() const { return {data.get(), size}; }
};

Document readWhole(const char* path) {
    std::ifstream file(path, std::ios::binary | std::ios::ate);
    if (!file) {
        std::fprintf(stderr, "can't read %s\n", path);
        std::exit(1);
    }
    const auto size = static_cast<std::size_t>(file.tellg());
    Document document{std::make_unique_for_overwrite<char[]>(size), size};
    file.seekg(0);
    file.read(document.data.get(), static_cast<std::streamsize>(size));
    return document;
}

}  // namespace

int main(int argc, char** argv) {
    const std::string_view format = argc == 4 ? argv[1] : "";
    if (format != "markdown" && format != "richtext") {
        std::fprintf(stderr, "usage: text_bench markdown|richtext FILE COLUMNS\n");
        return 2;
    }
    const Document document = readWhole(argv[2]);
    const int columns = std::atoi(argv[3]);
    const std::optional<std::string> text = format == "markdown" ? markdownAsText(document.view(), columns)
                                                                 : richTextAsText(document.view(), columns);
    if (!text.has_value()) {
        std::fprintf(stderr, "%s is broken\n", argv[2]);
        return 1;
    }
    const bool written = std::fwrite(text->data(), 1, text->size(), stdout) == text->size();
    return written && std::fflush(stdout) == 0 ? 0 : 1;
}
