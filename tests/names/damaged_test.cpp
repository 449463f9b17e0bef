// Programs whose debug information is damaged are refused or read, but harm nobody.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "names/import.h"

namespace {

std::vector<char> content(const std::string& path) {
    std::ifstream file{path, std::ios::binary};
    return {std::istreambuf_iterator<char>{file}, {}};
}

// Bytes changed, ranges overwritten, the end cut off.
std::vector<char> damaged(std::vector<char> bytes, std::mt19937& random) {
    const auto below = [&random](std::size_t end) {
        return std::uniform_int_distribution<std::size_t>{0, end - 1}(random);
    };
    if (below(8) == 0) {
        bytes.resize(below(bytes.size()));
    }
    for (std::size_t count = 1 + below(1U << below(8)); count > 0 && !bytes.empty(); --count) {
        bytes[below(bytes.size())] = static_cast<char>(below(4) == 0 ? 0xff : below(256));
    }
    if (below(4) == 0 && !bytes.empty()) {
        const std::size_t start = below(bytes.size());
        const std::size_t length = std::min(below(64), bytes.size() - start);
        std::fill_n(bytes.begin() + static_cast<std::ptrdiff_t>(start), length, static_cast<char>(below(256)));
    }
    return bytes;
}

TEST(Damaged, IsNeverFatal) {
    const char* const count = std::getenv("NPXLATE_DAMAGED_FILES");
    const unsigned runs = count == nullptr ? 400 : static_cast<unsigned>(std::stoul(count));
    std::mt19937 random{20};
    unsigned refused = 0;
    for (const std::string path : {NPXLATE_DAMAGED}) {
        const std::vector<char> whole = content(path);
        for (unsigned run = 0; run < runs; ++run) {
            const std::vector<char> bytes = damaged(whole, random);
            const std::string damaged_path = testing::TempDir() + "npxlate_damaged";
            std::ofstream{damaged_path, std::ios::binary}.write(bytes.data(),
                                                                static_cast<std::streamsize>(bytes.size()));
            try {
                names::list_structures({damaged_path});
                names::read_structures({damaged_path}, "members", 168);
            } catch (const names::Error&) {
                ++refused;
            }
        }
    }
    EXPECT_GT(refused, 0U);
}

}  // namespace
