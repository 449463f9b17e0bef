// Structures whose debug information is damaged for the test.
#include <cstdint>

namespace {

enum class Kind : std::uint8_t { none, one, two };

struct Base {
    std::uint16_t tag;
};

template <typename T>
struct Pair {
    T first;
    T second[2];
};

struct members : Base {
    std::uint32_t low : 3;
    std::uint32_t high : 20;
    Kind kind;
    union {
        std::uint8_t bytes[16];
        struct {
            std::uint32_t address;
            Pair<std::uint16_t> ports[2];
        } host;
    };
    double rate;
    const volatile std::int64_t count = 0;
    struct {
        bool set : 1;
    } __attribute__((packed)) flags[2][3];
};

}  // namespace

const void* sample() {
    static const members the_members{};
    return &the_members;
}
