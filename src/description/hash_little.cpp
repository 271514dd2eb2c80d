#include "description/hash_little.h"

#include <bit>

namespace {

constexpr std::size_t kBlock = 12;

// The three words that a block of bytes is stirred into.
struct Words {
    std::uint32_t a;
    std::uint32_t b;
    std::uint32_t c;

    // Adds up to twelve bytes, low ones first.
    void add(std::string_view bytes) {
        std::uint32_t* const words[] = {&a, &b, &c};
        for (std::size_t i = 0; i < bytes.size(); ++i) {
            *words[i / 4] += std::uint32_t{static_cast<unsigned char>(bytes[i])} << (8 * (i % 4));
        }
    }

    void mix() {
        step(a, c, b, 4);
        step(b, a, c, 6);
        step(c, b, a, 8);
        step(a, c, b, 16);
        step(b, a, c, 19);
        step(c, b, a, 4);
    }

    void finish() {
        stir(c, b, 14);
        stir(a, c, 11);
        stir(b, a, 25);
        stir(c, b, 16);
        stir(a, c, 4);
        stir(b, a, 14);
        stir(c, b, 24);
    }

private:
    static void step(std::uint32_t& x, std::uint32_t& y, const std::uint32_t& z, int bits) {
        x -= y;
        x ^= std::rotl(y, bits);
        y += z;
    }
    static void stir(std::uint32_t& x, const std::uint32_t& y, int bits) {
        x ^= y;
        x -= std::rotl(y, bits);
    }
};

}  // namespace

std::uint32_t hashLittle(std::string_view bytes, std::uint32_t initialValue) {
    const std::uint32_t start = 0xDEADBEEF + static_cast<std::uint32_t>(bytes.size()) + initialValue;
    Words words{start, start, start};
    while (bytes.size() > kBlock) {
        words.add(bytes.substr(0, kBlock));
        words.mix();
        bytes.remove_prefix(kBlock);
    }
    if (!bytes.empty()) {
        words.add(bytes);
        words.finish();
    }
    return words.c;
}
