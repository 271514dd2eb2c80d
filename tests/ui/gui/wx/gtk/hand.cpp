#include "ui/gui/wx/hand.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <vector>

namespace {

// The one of scripts/run-with-display: it carries out the files that are put into a directory.
class DisplayHand : public Hand {
public:
    explicit DisplayHand(std::filesystem::path directory) : directory_(std::move(directory)) {}

    void pressKey(const std::string& name) override { start({"key", name}); }
    void type(const std::string& text) override { start({"type", "--delay", "1", text}); }
    void movePointer(const std::string& title, int x, int y) override {
        start({"search", "--sync", "--onlyvisible", "--name", title, "mousemove", "--window", "%1", "1", "1",
               "mousemove", "--window", "%1", std::to_string(x), std::to_string(y)});
    }
    void click() override { start({"click", "1"}); }
    bool isDone() override { return std::filesystem::exists(file(".done")); }
    std::string problem() override {
        std::ostringstream words;
        words << std::ifstream(file(".out")).rdbuf();
        return words.str();
    }

private:
    std::filesystem::path file(const char* ending) const { return directory_ / (name_ + ending); }

    void start(const std::vector<std::string>& arguments) {
        static int actions = 0;
        name_ = std::to_string(++actions);
        {
            std::ofstream content(file(".new"), std::ios::binary);
            for (const std::string& argument : arguments) {
                content << argument << "\n";
            }
        }
        std::filesystem::rename(file(".new"), file(".do"));
    }

    std::filesystem::path directory_;
    std::string name_;
};

}  // namespace

std::unique_ptr<Hand> Hand::find() {
    const char* const directory = std::getenv("TANDREL_HAND");
    return directory == nullptr ? nullptr : std::make_unique<DisplayHand>(directory);
}
