// Position tables as tests state them, one row a line, applied at run time one after another: a reading of the tables
// that shares nothing with the library's.
//
//     const Rows common{
//         "P0 = 0x91",
//         "P0.5 = L0.4",                      // one bit
//         "P1.5 = not L0.4",                  // inverted
//         "P8.5-4 = L7.1-0",                  // bits of one byte
//         "P4-5 = L4-5",                      // bytes, order kept
//         "P8-11 = swap L24-27",              // bytes, order reversed
//         "P13-15 = 0",                       // a byte, bits or bytes set to a constant (bytes: every byte)
//         "P20-22 = label L32-35 flag L36.0", // 20-bit label field and its flag (also: flag 0, flag 1)
//         "L8-11 = label P16-18",             // and back: the label as a little-endian value
//         "P2.1 = any L3.6-3",                // 1 if any of the bits is 1 (bits of one byte, or bytes)
//         "P11.1 = none L41",                 // 1 if none of them is
//     };
//     common.apply(in, out);
//
// The left side names the record written, the right side the record read; a row that mixes them up, or whose widths do
// not agree, throws. Later rows overwrite earlier ones.
#pragma once

#include <initializer_list>
#include <string>
#include <vector>

#include "support/record.h"

namespace support {

// One position: bits high to low of a single byte, or whole bytes first to last.
struct Position {
    char record;  // 'P' or 'L'
    std::size_t first;
    std::size_t last;
    unsigned high = 7;
    unsigned low = 0;

    bool whole_bytes() const { return high == 7 && low == 0; }
    std::size_t byte_count() const { return last - first + 1; }
    unsigned bit_count() const { return static_cast<unsigned>(byte_count()) * (high - low + 1); }
};

Position position(const std::string& text);

class Rows {
public:
    Rows(std::initializer_list<const char*> rows);
    explicit Rows(const std::vector<std::string>& rows);
    void apply(const Bytes& in, Bytes& out) const;

private:
    enum class Kind { constant, copied, inverted, swapped, label, any, none };
    struct Row {
        Kind kind;
        Position to;
        Position from{'L', 0, 0};  // not for constants
        unsigned constant = 0;     // constants; label rows without a flag position
        bool has_flag = false;     // label rows with a flag position
        Position flag{'L', 0, 0};
    };
    static Row parse(const std::string& text);
    static void apply(const Row& row, const Bytes& in, Bytes& out);

    std::vector<Row> rows_;
};

}  // namespace support
