/*
 * A structure as control software may have one for the results of table 4. The tool takes the names of its members from
 * the debug information of the program:
 *
 *     cc -g adjacency.c -o adjacency
 *     npxlate names import --elf adjacency --struct adjacency --table 4 --as nexthop=ipv4 > adjacency.toml
 *
 * The program prints a record to look at.
 */
#include <stdint.h>
#include <stdio.h>

enum queue_range { RANGE_NONE = 0, RANGE_FOUR = 4, RANGE_EIGHT = 8 };

struct adjacency {
    uint32_t service_class : 3;
    uint32_t sampled : 1;
    uint32_t counted : 1;
    uint32_t labelled : 1;
    uint32_t tunnelled : 1;
    uint32_t : 1;
    uint32_t punted : 1;
    uint32_t : 0;
    uint16_t queue;
    uint16_t : 16;
    enum queue_range range : 8;
    union {
        struct {
            uint16_t mtu;
        } plain;
        struct {
            uint32_t context;
            uint16_t length;
        } label;
    } next;
    uint32_t : 32;
    uint32_t nexthop;
    uint8_t hops;
};

/* Static, and so zero to the last unnamed bit, of which an initializer says nothing. */
static struct adjacency adjacency;

int main(void) {
    adjacency.queue = 0x123;
    adjacency.range = RANGE_EIGHT;
    adjacency.next.plain.mtu = 66;
    adjacency.nexthop = 10U << 24 | 1;
    const unsigned char* const bytes = (const unsigned char*)&adjacency;
    for (size_t i = 0; i < 30; ++i) {
        printf("%02x", bytes[i]);
    }
    printf("\n");
    return 0;
}
