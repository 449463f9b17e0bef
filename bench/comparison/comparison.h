// Three records translated in the ways in which such translators are usually written, to compare the library with.
// Every function gives the bytes that the library's own translator gives; the cross-connect ones for entries of type 3
// only.
#pragma once

#include <cstdint>

#include <npxlate/npxlate.h>

namespace comparison {

// Words, shifts and masks, written out by hand.
namespace words {
npxlate_result_fn rx_adjacency;
npxlate_result_fn multicast_node;
npxlate_result_fn cross_connect;
}  // namespace words

// Packed structures of bit-fields for both records, assigned field by field.
namespace structures {
npxlate_result_fn rx_adjacency;
npxlate_result_fn multicast_node;
npxlate_result_fn cross_connect;
}  // namespace structures

// A table of fields that a loop goes through at run time.
namespace tables {
npxlate_result_fn rx_adjacency;
npxlate_result_fn multicast_node;
npxlate_result_fn cross_connect;
}  // namespace tables

struct Record {
    const char* translator;  // as the catalogue names it
    const char* samples;     // of these only: what their names begin with
    npxlate_result_fn* by_words;
    npxlate_result_fn* by_structures;
    npxlate_result_fn* by_table;
};

inline constexpr Record records[] = {
    {"rx_adjacency_type_xlate_result", "", words::rx_adjacency, structures::rx_adjacency, tables::rx_adjacency},
    {"ipmc_node_res_xlate", "", words::multicast_node, structures::multicast_node, tables::multicast_node},
    {"xid_type_xlate_result", "type 3", words::cross_connect, structures::cross_connect, tables::cross_connect},
};

}  // namespace comparison
