// Programs entries and reads them back from C++: one whose translator changes its input, and one whose reverse takes a
// fourth argument.
//
//     c++ -std=c++17 program.cpp $(pkg-config --cflags --libs npxlate) -o program && ./program
#include <npxlate/npxlate.h>

#include <cstdint>
#include <cstdio>
#include <iostream>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using Bytes = std::vector<std::uint8_t>;

void print(const char* what, const Bytes& record) {
    std::printf("%-16s", what);
    for (const std::uint8_t byte : record) {
        std::printf(" %02x", static_cast<unsigned>(byte));
    }
    std::printf("\n");
}

void check(std::int32_t status, const char* what) {
    if (status != NPXLATE_OK) {
        throw std::runtime_error(std::string(what) + ": status " + std::to_string(status));
    }
}

// The record by value: a few translators write into it, and so into a copy here.
Bytes physical_result(unsigned table, Bytes logical) {
    Bytes physical(NPXLATE_MAX_PHYSICAL_LENGTH);
    std::uint32_t length = 0;
    check(l2p_ucode_func_table[table].result(logical.data(), static_cast<std::int32_t>(logical.size()), physical.data(),
                                             &length),
          "result");
    physical.resize(length);
    return physical;
}

// Mirrored packets to 00:1b:21:3c:4d:5e. L18-19 is limited to 128 in the logical record, too.
void mirror_destination() {
    constexpr unsigned span_forwarding = 22;
    Bytes logical(28);
    logical[4] = 0x04;  // carry the address
    const Bytes address{0x00, 0x1b, 0x21, 0x3c, 0x4d, 0x5e};
    for (std::size_t i = 0; i < address.size(); ++i) {
        logical[8 + i] = address[i];
    }
    logical[18] = 200;

    const Bytes physical = physical_result(span_forwarding, logical);
    Bytes read_back(logical.size());
    check(p2l_ucode_func_table[span_forwarding](physical.data(), static_cast<std::int32_t>(physical.size()),
                                                read_back.data()),
          "reverse");

    std::printf("Mirror destination, table %u\n", span_forwarding);
    print("logical", logical);
    print("physical", physical);
    print("read back", read_back);
    std::printf("L18-19 was %u and is %u.\n\n", static_cast<unsigned>(logical[18]),
                static_cast<unsigned>(read_back[18]));
}

// Multicast encapsulation, type 3. The physical record does not tell the types apart: the caller keeps the type.
void multicast_encapsulation() {
    constexpr unsigned encapsulation = 52;
    constexpr std::uint32_t type = 3;
    Bytes logical(42);
    logical[0] = type;
    logical[8] = 0x56;  // one of its 24-bit values, least significant byte first
    logical[9] = 0x34;
    logical[10] = 0x12;

    const Bytes physical = physical_result(encapsulation, logical);
    Bytes read_back(NPXLATE_MAX_LOGICAL_LENGTH);
    check(npxlate_reverse_of_table_52()(physical.data(), static_cast<std::int32_t>(physical.size()), read_back.data(),
                                        &type),
          "reverse");
    read_back.resize(logical.size());

    std::printf("Multicast encapsulation, table %u\n", encapsulation);
    print("logical", logical);
    print("physical", physical);
    print("read back", read_back);
    std::printf("%s\n",
                read_back == logical ? "The entry came back as it was programmed." : "The entry came back different.");
}

}  // namespace

int main() {
    try {
        mirror_destination();
        multicast_encapsulation();
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
    return 0;
}
