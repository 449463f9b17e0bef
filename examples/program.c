/*
 * Programs an IPv4 multicast route and reads it back, through the dispatch tables.
 *
 *     cc program.c $(pkg-config --cflags --libs npxlate) -o program && ./program
 */
#include <npxlate/npxlate.h>
#include <stdio.h>
#include <string.h>

enum { ipv4_multicast_leaf = 24 };

static void print_record(const char* what, const uint8_t* record, uint32_t length) {
    printf("%-16s", what);
    for (uint32_t i = 0; i < length; ++i) {
        printf(" %02x", (unsigned)record[i]);
    }
    printf("\n");
}

int main(void) {
    /* What control software builds: 10.0.0.1 sends to 232.1.1.1, addresses as host values, least significant byte
     * first; packets go where node 0x012345 of the node table says. */
    const uint8_t key[10] = {1, 1, 1, 232, /* group */ 1, 0, 0, 10, /* source */ 0x00, 0x07 /* routing instance */};
    const uint8_t result[4] = {0x45, 0x23, 0x01, 0x00};

    /* Large enough for every table. */
    uint8_t physical_key[NPXLATE_MAX_PHYSICAL_LENGTH];
    uint8_t physical_result[NPXLATE_MAX_PHYSICAL_LENGTH];
    uint8_t read_back[NPXLATE_MAX_LOGICAL_LENGTH];
    uint32_t key_length = 0;
    uint32_t result_length = 0;

    /* The two halves of an entry, as they go to the card. */
    const struct npxlate_l2p_entry* table = &l2p_ucode_func_table[ipv4_multicast_leaf];
    int32_t status = table->key(key, (int32_t)sizeof key, physical_key, &key_length);
    if (status == NPXLATE_OK) {
        status = table->result(result, (int32_t)sizeof result, physical_result, &result_length);
    }
    if (status != NPXLATE_OK) {
        (void)fprintf(stderr, "Table %d does not take the entry: status %d\n", ipv4_multicast_leaf, (int)status);
        return 1;
    }
    print_record("logical key", key, sizeof key);
    print_record("physical key", physical_key, key_length);
    print_record("logical result", result, sizeof result);
    print_record("physical result", physical_result, result_length);

    /* And back. Many reverse translators check the length that they are given: hand in the true one. */
    status = p2l_ucode_func_table[ipv4_multicast_leaf](physical_result, (int32_t)result_length, read_back);
    if (status != NPXLATE_OK) {
        (void)fprintf(stderr, "Table %d does not read the entry back: status %d\n", ipv4_multicast_leaf, (int)status);
        return 1;
    }
    print_record("read back", read_back, sizeof result);
    if (memcmp(read_back, result, sizeof result) != 0) {
        (void)fprintf(stderr, "The entry came back different.\n");
        return 1;
    }
    printf("The entry came back as it was programmed.\n");
    return 0;
}
