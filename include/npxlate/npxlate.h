/*
 * npxlate: translators between the logical and the physical records of a line card's forwarding tables.
 *
 * A logical record is what control software builds: a host structure, values little-endian, bit-fields from the least
 * significant bit. A physical record is what the network processor reads: packed, values big-endian unless noted,
 * bit-fields from the most significant bit, and, in a result, the result header byte first.
 *
 * Positions below: P5.7 is bit 7 (the most significant) of physical byte 5, P8-11 are physical bytes 8 to 11 as one
 * value; L5.7 and L8-11 likewise in the logical record.
 *
 * What holds for every translator, unless its own comment says otherwise:
 *
 *  - It reads exactly the bytes of the record that went in and writes exactly the bytes of the record that comes out;
 *    both sizes are given with each declaration. Either record may lie at any address; the two must not overlap.
 *  - Key and result translators clear the physical record, fill it, store its size in *physical_length and return
 *    NPXLATE_OK. They ignore logical_length.
 *  - Reverse translators clear the logical record, fill it and return NPXLATE_OK. They ignore physical_length.
 *  - The record that went in is not changed.
 *  - After any other status than NPXLATE_OK, treat the output record and the length as undefined.
 *  - Nothing is checked but what is stated: null pointers, short buffers and negative lengths are the caller's care.
 *  - Any number of threads may translate at once on separate buffers.
 */
#ifndef NPXLATE_NPXLATE_H
#define NPXLATE_NPXLATE_H

#include <stdint.h>

#define NPXLATE_VERSION_MAJOR 1
#define NPXLATE_VERSION_MINOR 0
#define NPXLATE_VERSION_PATCH 0

#if defined(__GNUC__)
#define NPXLATE_API __attribute__((visibility("default")))
#else
#define NPXLATE_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* ======================================================================
 * Statuses, roles and dispatch tables
 * ====================================================================== */

/* The values a translator returns; there are no others. */
enum npxlate_status {
    NPXLATE_OK = 0,             /* translated */
    NPXLATE_INVALID = 22,       /* a length or a type that the table does not take */
    NPXLATE_OUT_OF_RANGE = 34,  /* srv6_info_res_xlate only: more than 4 segment identifiers */
    NPXLATE_NOT_SUPPORTED = 95, /* r_ldi_entry_st_result only: a combination of flags that the table does not take */
};

/* Sizes that are enough for every table. */
enum npxlate_limits {
    NPXLATE_TABLE_COUNT = 128,        /* table ids are 0 to 127, and are not checked */
    NPXLATE_MAX_PHYSICAL_LENGTH = 96, /* bytes of the longest physical record */
    NPXLATE_MAX_LOGICAL_LENGTH = 168, /* bytes of the longest logical record that a reverse translator fills */
};

typedef int32_t npxlate_key_fn(const void *logical, int32_t logical_length, void *physical, uint32_t *physical_length);
typedef int32_t npxlate_result_fn(const void *logical, int32_t logical_length, void *physical,
                                  uint32_t *physical_length);
typedef int32_t npxlate_reverse_fn(const void *physical, int32_t physical_length, void *logical);

/* The reverse translators of tables 52 and 92 take a fourth argument. Their dispatch entries have the common type, and
 * are called through npxlate_reverse_of_table_52() and npxlate_reverse_of_table_92(), which give them their own. See
 * ipmc_encap_logical_res_xlate and esi_info_logical_res_xlate. */
typedef int32_t npxlate_reverse_by_type_fn(const void *physical, int32_t physical_length, void *logical,
                                           const uint32_t *entry_type);
typedef int32_t npxlate_reverse_by_key_fn(const void *physical, int32_t physical_length, void *logical,
                                          const void *logical_key);

/* One table's way to the card: its key translator and its result translator. */
struct npxlate_l2p_entry {
    npxlate_key_fn *key;
    npxlate_result_fn *result;
};

/* One table's way back: its reverse translator. */
typedef npxlate_reverse_fn *npxlate_p2l_entry;

/* Indexed by table id. Every entry is filled; tables without translators of their own have the generic ones. The
 * library never writes to these tables. */
extern NPXLATE_API struct npxlate_l2p_entry l2p_ucode_func_table[NPXLATE_TABLE_COUNT];
extern NPXLATE_API npxlate_p2l_entry p2l_ucode_func_table[NPXLATE_TABLE_COUNT];

/* What stands in p2l_ucode_func_table[52] and [92], to be called with four arguments:
 *
 *     npxlate_reverse_of_table_52()(physical, 32, logical, &entry_type);
 *
 * The detour over void (*)(void) tells compilers that the cast is meant. */
/* NOLINTBEGIN(bugprone-macro-parentheses,modernize-redundant-void-arg): types, and functions in C as well */
#ifdef __cplusplus
#define NPXLATE_FUNCTION_AS(type, function) reinterpret_cast<type *>(reinterpret_cast<void (*)()>(function))
#else
#define NPXLATE_FUNCTION_AS(type, function) ((type *)(void (*)(void))(function))
#endif

static inline npxlate_reverse_by_type_fn *npxlate_reverse_of_table_52(void) {
    return NPXLATE_FUNCTION_AS(npxlate_reverse_by_type_fn, p2l_ucode_func_table[52]);
}

static inline npxlate_reverse_by_key_fn *npxlate_reverse_of_table_92(void) {
    return NPXLATE_FUNCTION_AS(npxlate_reverse_by_key_fn, p2l_ucode_func_table[92]);
}

#undef NPXLATE_FUNCTION_AS
/* NOLINTEND(bugprone-macro-parentheses,modernize-redundant-void-arg) */

/* The highest transmit-adjacency index that a TE next-hop result with L0.5 clear marks with P0.7; initially 0x0fff. The
 * only value the caller may set: te_nh_adjacency_type_xlate_result reads it at every call, no other function does. A
 * caller that sets it while another thread translates a TE next hop orders the two itself. */
extern NPXLATE_API uint16_t TX_ADJ_KEY_MAX;

/* ======================================================================
 * Engine registers
 * ====================================================================== */

/* One write of an engine's bring-up: the value goes into the register of that number. */
struct npxlate_register {
    uint32_t number;
    uint32_t value;
};

/* The writes of each engine, in the order in which they are to be made. */
extern NPXLATE_API const struct npxlate_register quill_to_topparse_mregs[60];
extern NPXLATE_API const struct npxlate_register quill_to_topresolve_mregs[192];
extern NPXLATE_API const struct npxlate_register quill_to_toplearn_mregs[15];

/* The table of an engine: 0 parse, 1 resolve, 2 learn; null for any other number. The sizes of the declarations above
 * give the numbers of entries. */
NPXLATE_API const struct npxlate_register *quill_to_get_mreg_init(uint8_t engine);

/* ======================================================================
 * Generic translators and helpers
 * ====================================================================== */

/* ---- Generic record: every table without translators of its own ---- */

/* The generic translators serve every table whose logical and physical records hold the same bytes. They copy as many
 * bytes as the length says, and check only an upper bound: above it they return NPXLATE_INVALID and write nothing. The
 * bounds differ on purpose: a 64-byte result can be programmed but not read back. A negative length is not caught. */

/* Key of 0 to 47 bytes, copied; *physical_length = logical_length. */
NPXLATE_API int32_t generic_xlate_key(const void *logical, int32_t logical_length, void *physical,
                                      uint32_t *physical_length);

/* Result of 0 to 64 bytes, copied, then 0x11 ORed into P0 (even when the length is 0); *physical_length =
 * logical_length. */
NPXLATE_API int32_t generic_xlate_result(const void *logical, int32_t logical_length, void *physical,
                                         uint32_t *physical_length);

/* Result of 0 to 63 bytes, copied as it is: the header bits stay in L0. */
NPXLATE_API int32_t generic_xlate_logical_result(const void *physical, int32_t physical_length, void *logical);

/* ---- Generic fast-path IP: by name ---- */

/* The same as generic_xlate_key, under the name that the fast-path IP tables use: key of 0 to 47 bytes, copied;
 * NPXLATE_INVALID, with nothing written, for more. */
NPXLATE_API int32_t generic_fast_ip_xlate_key(const void *logical, int32_t logical_length, void *physical,
                                              uint32_t *physical_length);

/* Fast-path IP result, 3 bytes to 4: 0x11, then L0-2. Always writes 4 bytes, but *physical_length = logical_length + 1.
 * A length above 64 returns NPXLATE_INVALID and writes nothing. */
NPXLATE_API int32_t generic_fast_ip_xlate_result(const void *logical, int32_t logical_length, void *physical,
                                                 uint32_t *physical_length);

/* ---- Modulo: by name ---- */

/* Modulo key, 4 bytes to 2. Does not store *physical_length. L0.7-4, L1 and L3.7-4 are not carried. */
NPXLATE_API int32_t modulo_xlate_key(const void *logical, int32_t logical_length, void *physical,
                                     uint32_t *physical_length);

/* Modulo result, 8 bytes to 16: eight 6-bit values. Does not store *physical_length. */
NPXLATE_API int32_t modulo_xlate_result(const void *logical, int32_t logical_length, void *physical,
                                        uint32_t *physical_length);

/* ---- Virtual queue index: a helper, no translator ---- */

/* A virtual queue index adjusted by its range: bit 11 set for range 4, bits 11 and 10 for range 8, unchanged for any
 * other. Only the low 8 bits of the range count. */
NPXLATE_API uint32_t new_vqi_based_on_vqi_range(uint32_t vqi, uint32_t range);

/* ======================================================================
 * Adjacency and next hops
 * ====================================================================== */

/* ---- Receive adjacency: table 4 ---- */

/* Key, 3 bytes to 3: the same bytes. */
NPXLATE_API int32_t rx_adjacency_type_xlate_key(const void *logical, int32_t logical_length, void *physical,
                                                uint32_t *physical_length);

/* Result, 30 bytes to 16, in five variants: A with L0.5 set, else B with L0.6, else C with L1.0, else D with L1.3, else
 * E. In C, P4 is L29 when L1.1 is set, else L28 + 7 when L1.2 is, else 0. In D, P5-7 hold the 32-bit value L12-15
 * shifted right by one, its lowest bit ORed into bit 20, least significant byte first (bits 31 to 25 of the value are
 * not carried), and P0.5 is set whatever L0.4 is. In E, L8 is the range of the virtual queue index L4-5. */
NPXLATE_API int32_t rx_adjacency_type_xlate_result(const void *logical, int32_t logical_length, void *physical,
                                                   uint32_t *physical_length);

/* The way back, 16 bytes to 30. Clears L0-15 only: of L16-29 it writes L24-27, in variant A also L16-17 and L20-23, in
 * variant C also L28 when P1.2 is set and L29 when P1.1 is; all else there stays as the caller had it. P3.7 makes
 * variant A, P1.0 or P2.5 variant C, anything else E. So D reads back as E, and so does B, but as C where its L1.0 was
 * set. No value is swapped back, L4-5 keeps the range bits, and L8 is not restored. */
NPXLATE_API int32_t rx_adjacency_type_logical_xlate_result(const void *physical, int32_t physical_length,
                                                           void *logical);

/* ---- Transmit adjacency: table 5 ---- */

/* Key, 3 bytes to 3: the same bytes. */
NPXLATE_API int32_t tx_adjacency_type_xlate_key(const void *logical, int32_t logical_length, void *physical,
                                                uint32_t *physical_length);

/* Result, 90 bytes to 32, in seven variants: X with L72.2 set, else T1 with L2.0, else T2 with L0.7 or L1.4, else T3
 * with L1.1, else T4 with L1.2, else T5 with L1.6, else T6. X is an address pair, byte-reversed, of which L35 is not
 * carried. In T1, P4-5 is L16-17 instead of L4-5 when L12.1 is set, and the virtual queue index L16-17 with the range
 * L20 stands in P12-13 when it is clear. */
NPXLATE_API int32_t tx_adjacency_type_xlate_result(const void *logical, int32_t logical_length, void *physical,
                                                   uint32_t *physical_length);

/* The way back, 32 bytes to 90: as T2 with P3.7 (L0.7) set, else as T4 with P1.3 (L1.2), else as T6. X, T1, T3 and T5
 * have no way back, nor has T2 with L0.7 clear. Values are not swapped back, each of T4's labels returns as
 * (b0 + 256 x b1) x 16 + (b2 >> 4) of its three bytes, L0.1 is P1.5 and L0.4 its inverse. */
NPXLATE_API int32_t tx_adjacency_type_logical_xlate_result(const void *physical, int32_t physical_length,
                                                           void *logical);

/* ---- TE next hop: table 7; strict RPF list: table 16; egress port: table 19; next-hop index: table 98 ---- */

/* All four are read back by the generic reverse, as the bytes that the network processor holds. */

/* TE next-hop key, 2 bytes to 2: the same bytes. */
NPXLATE_API int32_t te_nh_adjacency_type_xlate_key(const void *logical, int32_t logical_length, void *physical,
                                                   uint32_t *physical_length);

/* TE next-hop result, 61 bytes to 32. Header 0x31, with L0.6 in P0.6. With L0.5 set, P0.6 is set, L60 stands in place
 * of L58, and P1.0 tells whether L56 is greater than 31. With L0.5 clear, P0.7 tells whether the 24-bit value L8-10 is
 * at most TX_ADJ_KEY_MAX. The labels L20-22 and L25-27 share the flag L29.0. */
NPXLATE_API int32_t te_nh_adjacency_type_xlate_result(const void *logical, int32_t logical_length, void *physical,
                                                      uint32_t *physical_length);

/* Strict RPF list key, 3 bytes to 3: the same bytes. */
NPXLATE_API int32_t strict_rpf_uidb_list_type_xlate_key(const void *logical, int32_t logical_length, void *physical,
                                                        uint32_t *physical_length);

/* Strict RPF list result, 33 bytes to 32: of each of the eight 32-bit entries in L1-32 the first two bytes, in their
 * order. Of L0 only bit 0 is carried. */
NPXLATE_API int32_t strict_rpf_uidb_list_type_xlate_result(const void *logical, int32_t logical_length, void *physical,
                                                           uint32_t *physical_length);

/* Egress port key, 2 bytes to 2: the same bytes. The table's result is generic. */
NPXLATE_API int32_t egr_port_xlate_key(const void *logical, int32_t logical_length, void *physical,
                                       uint32_t *physical_length);

/* Next-hop index key, 3 bytes to 3: the same bytes. */
NPXLATE_API int32_t nhindex_type_xlate_key(const void *logical, int32_t logical_length, void *physical,
                                           uint32_t *physical_length);

/* Next-hop index result, 21 bytes to 32. P1.7 is set when L0.3 is clear or any of L0.2-0 is set, P1.4 when L0.3 is
 * clear or L0.1 is set, P1.3 always. Only L17-20 is byte-reversed. */
NPXLATE_API int32_t nhindex_type_xlate_result(const void *logical, int32_t logical_length, void *physical,
                                              uint32_t *physical_length);

/* ======================================================================
 * OAM offload
 * ====================================================================== */

/* ---- CFM transmit: by name; second CFM transmit: by name; CFM receive: by name ---- */

/* CFM entries stand in the BFD tables, 108 to 110, whose translators hand them on to these. */

/* Keys of transmit entries, 4 bytes to 4, and of receive entries, 5 bytes to 5: the same bytes. */
NPXLATE_API int32_t cfm_hwo_xlate_tx_key(const void *logical, int32_t logical_length, void *physical,
                                         uint32_t *physical_length);
NPXLATE_API int32_t cfm_hwo_xlate_rx_key(const void *logical, int32_t logical_length, void *physical,
                                         uint32_t *physical_length);

/* Transmit result, 96 bytes to 96. P50 is 0x46 whatever L50 holds; P32.3-0 and P64.3-0 are 1. L0 is carried in bit 5
 * only, L47 in bits 2-0, L49 in bits 7-5 and 0. */
NPXLATE_API int32_t cfm_hwo_xlate_tx_result(const void *logical, int32_t logical_length, void *physical,
                                            uint32_t *physical_length);

/* The way back, 96 bytes to 96. Sets L0 to 0x11, the header byte, and so does not restore L0.5; returns 0x46 in L50 as
 * P50 holds it, and 1 in L32.3-0 and L64.3-0. The values of L2-5, L6-9, L33-34, L35-46 (four of 24 bits) and
 * L51-52 keep the physical byte order. */
NPXLATE_API int32_t cfm_logical_hwo_xlate_tx_result(const void *physical, int32_t physical_length, void *logical);

/* Second transmit result, 64 bytes to 64. P32 is 1; L0, L2.7-4 and L32 are not carried. */
NPXLATE_API int32_t cfm_hwo_xlate_tx2_result(const void *logical, int32_t logical_length, void *physical,
                                             uint32_t *physical_length);

/* The way back, 64 bytes to 64. Sets L0 to 0x11, the header byte, and L32 to 1. */
NPXLATE_API int32_t cfm_logical_hwo_xlate_tx2_result(const void *physical, int32_t physical_length, void *logical);

/* Receive result, 24 bytes to 24; the values L4-6, L8-10 and L12-14 become big-endian. Of L0 the bits 7, 6 and 3-1 are
 * carried; L3, L11, L15 and L20-23 are not. */
NPXLATE_API int32_t cfm_hwo_xlate_rx_result(const void *logical, int32_t logical_length, void *physical,
                                            uint32_t *physical_length);

/* The way back, 24 bytes to 24. Sets the header bits 0x11 in L0; the values of L4-6, L8-10 and L12-14 keep the physical
 * byte order. */
NPXLATE_API int32_t cfm_logical_hwo_xlate_rx_result(const void *physical, int32_t physical_length, void *logical);

/* ---- BFD transmit encapsulation: table 108; BFD transmit payload: table 109; BFD receive: table 110; BFD
 * discriminator: by name ---- */

/* Key of tables 108 and 109, 4 bytes to 4: P3 = L0, P2 = L1, and P0-1 = L2-3, swapped when L1 is 2 or 4 and as they are
 * otherwise. */
NPXLATE_API int32_t bfd_hw_offload_xlate_tx_key(const void *logical, int32_t logical_length, void *physical,
                                                uint32_t *physical_length);

/* Encapsulation result, table 108, 96 bytes to 96. A record with L32.7-4 = 1 is a CFM record and is translated as by
 * cfm_hwo_xlate_tx_result. In any other the values L2-5 and L16-19 become big-endian, and P32 and P64 are 0: L32 and
 * L64 are not carried. */
NPXLATE_API int32_t bfd_hw_offload_xlate_encap_result(const void *logical, int32_t logical_length, void *physical,
                                                      uint32_t *physical_length);

/* The way back, 96 bytes to 96. A record with P32.7-4 = 1 is translated as by cfm_logical_hwo_xlate_tx_result. In any
 * other L0 = P0 AND 0xf1: L0.3-1 are lost and the header bits L0.4 and L0.0 are set; L32 and L64 are 0, and the values
 * of L2-5 and L16-19 keep the physical byte order. */
NPXLATE_API int32_t bfd_logical_hw_offload_xlate_encp_result(const void *physical, int32_t physical_length,
                                                             void *logical);

/* Payload result, table 109, 64 bytes to 64. A record with L2.3-0 = 1 is a CFM record and is translated as by
 * cfm_hwo_xlate_tx2_result. In any other L4-27 are carried when L0.5 is clear, of these only L12-15 when it is set;
 * L2-3 and L28-63 are never carried. */
NPXLATE_API int32_t bfd_hw_offload_xlate_payload_result(const void *logical, int32_t logical_length, void *physical,
                                                        uint32_t *physical_length);

/* The way back, 64 bytes to 64. A record with P2.3-0 = 1 is translated as by cfm_logical_hwo_xlate_tx2_result; but as a
 * CFM record carries its type in P2.7-4, those that cfm_hwo_xlate_tx2_result makes are taken for BFD records. In a BFD
 * record L0 = P0 AND 0xf1: L0.3-1 are lost and the header bits L0.4 and L0.0 are set; L32.0 returns the 1 of P32. */
NPXLATE_API int32_t bfd_logical_hw_offload_xlate_payload_result(const void *physical, int32_t physical_length,
                                                                void *logical);

/* Receive key, table 110, 5 bytes to 5: the same bytes, whatever the type in L4. */
NPXLATE_API int32_t bfd_hw_offload_xlate_rx_key(const void *logical, int32_t logical_length, void *physical,
                                                uint32_t *physical_length);

/* The receive key of a discriminator entry, 5 bytes to 5: the same bytes. */
NPXLATE_API int32_t bfd_disc_xlate_rx_key(const void *logical, int32_t logical_length, void *physical,
                                          uint32_t *physical_length);

/* Receive result, table 110, 24 bytes to 24. L7 is the type: 1 is a CFM record, translated as by
 * cfm_hwo_xlate_rx_result; 2 is a discriminator record, translated as by bfd_disc_xlate_rx_result; any other a BFD
 * record, of which L11, L15, L19 and L23 are not carried. */
NPXLATE_API int32_t bfd_hw_offload_xlate_rx_result(const void *logical, int32_t logical_length, void *physical,
                                                   uint32_t *physical_length);

/* Receive result of a discriminator entry, 24 bytes to 24, whatever the type in L7. L4, L5.7-6, L6, L11, L15 and L17-23
 * are not carried. Table 110 hands entries of that type on to it. */
NPXLATE_API int32_t bfd_disc_xlate_rx_result(const void *logical, int32_t logical_length, void *physical,
                                             uint32_t *physical_length);

/* The way back, 24 bytes to 24. A record with P7 = 1 is translated as by cfm_logical_hwo_xlate_rx_result; any other as
 * a BFD record, a discriminator record too. In these L0 = P0 AND 0xf1: L0.3-1 are lost and the header bits L0.4 and
 * L0.0 are set; L11, L15, L19, L23 and the type L7 are 0. */
NPXLATE_API int32_t bfd_logical_hw_offload_xlate_rx_result(const void *physical, int32_t physical_length,
                                                           void *logical);

/* ---- VRRP virtual MAC address: table 17 ---- */

/* Key, 8 bytes to 8: the 48-bit address L0-5 made big-endian, then L6-7. */
NPXLATE_API int32_t vrrp_vmac_entry_st_xlate_key(const void *logical, int32_t logical_length, void *physical,
                                                 uint32_t *physical_length);

/* Result, 8 bytes to 8. P2 is 1; L0-3 are not read. */
NPXLATE_API int32_t vrrp_vmac_entry_st_xlate_result(const void *logical, int32_t logical_length, void *physical,
                                                    uint32_t *physical_length);

/* The way back, 8 bytes to 8: L4-7; L0-3 are 0. */
NPXLATE_API int32_t vrrp_logical_xlate_result(const void *physical, int32_t physical_length, void *logical);

/* ======================================================================
 * Unicast routes and labels
 * ====================================================================== */

/* ---- IP leaf: table 11 ---- */

/* IP leaf key: 3 bytes to 3, copied. */
NPXLATE_API int32_t ip_leaf_st_xlate_key(const void *logical, int32_t logical_length, void *physical,
                                         uint32_t *physical_length);

/* IP leaf result: 64 bytes to 32, of which only L0-58 are read. L0.4 and L0.0 choose one of three variants: A, a label
 * stack (L0.4 set), else B (L0.0 set), else C, a next hop. L1.3 lays the queue overlay over it, L2.3 the SRv6 overlay
 * over both. P3 is the hop byte: 2 x b + 1, where b is the low byte of the count L4-5, or 1 if that byte is
 * above 64. */
NPXLATE_API int32_t ip_leaf_st_xlate_result(const void *logical, int32_t logical_length, void *physical,
                                            uint32_t *physical_length);

/* IP leaf read back: 32 bytes to 64. In every variant it fills L0.4-0, L0.6, L2.1-0, L4 (the hop byte, not the count),
 * L40-42 and L51; in variant A (P0.6 set) also L6, the four labels with their flags at L8-27, L28-30, L32-34 (the
 * triple of P19-21, wherever it came from), the label L44-47, L49.7 and L50.2-0; in the others also L8-10 and L16-17.
 * All else is 0. What an overlay wrote comes back as the variant's own bytes. */
NPXLATE_API int32_t ip_leaf_st_logical_xlate_result(const void *physical, int32_t physical_length, void *logical);

/* ---- Fast-path IPv4 leaf: table 121; fast-path IPv6 leaf: table 42 ---- */

/* Fast-path IPv4 key, 4 bytes to 4: an address, which is made big-endian. *physical_length = logical_length, and
 * exactly that many bytes are written, none if it is negative: the first ones of the address, or zeros after its
 * four; L0-3 are read whatever the length. Does nothing and returns NPXLATE_OK when a pointer is null. */
NPXLATE_API int32_t ipv4_leaf_fastip_xlate_key(const void *logical, int32_t logical_length, void *physical,
                                               uint32_t *physical_length);

/* Fast-path IPv6 key, 16 bytes to 16: an address, which is turned round. Takes any length: the bytes are written in
 * reverse order, none if it is negative, *physical_length = logical_length. Does nothing and returns NPXLATE_OK when
 * a pointer is null. */
NPXLATE_API int32_t ipv6_leaf_fastip_xlate_key(const void *logical, int32_t logical_length, void *physical,
                                               uint32_t *physical_length);

/* Fast-path IP result, for both tables: 3 bytes to 4, 0x11 and then L0-2. Read back by the generic reverse. */
NPXLATE_API int32_t ip_leaf_fastip_xlate_result(const void *logical, int32_t logical_length, void *physical,
                                                uint32_t *physical_length);

/* ---- SRv6 function codes: helpers, no translators ---- */

/* The behaviour code of a SID function code: 2 for 1 to 4, 4 for 5 to 8, 8 for 9 to 12, 16 for 16, 64 for 17, 32 for
 * 18 and 36, 0x80 for 19 and 37, 0 for any other. */
NPXLATE_API uint8_t srv6_sid_func_gdp_xlate(uint32_t code);

/* The action code of a SID function code: 1 for 2, 6 and 10, 2 for 3, 7 and 11, 3 for 4, 8 and 12, 0 for any other. */
NPXLATE_API uint8_t srv6_sid_action_from_func_type_gdp_xlate(uint32_t code);

/* The code of an SRv6 function in an information record: 4 for 30, 3 for 31, 2 for 32, 1 for 33, 0 for any other. */
NPXLATE_API uint8_t srv6i_func_gdp_xlate(uint32_t code);

/* ---- Recursive load distribution: table 12 ---- */

/* Recursive load-distribution key: 3 bytes to 3, copied. */
NPXLATE_API int32_t r_ldi_key_st_xlate_key(const void *logical, int32_t logical_length, void *physical,
                                           uint32_t *physical_length);

/* Recursive load-distribution entry: 36 bytes to 16. Changes its input: a path count L2 above 3 is set to 0 in the
 * logical record, which therefore must be writable. Returns NPXLATE_NOT_SUPPORTED when L1.4 and L0.0 are both set,
 * after writing the 16 bytes with P0-3 and P12 filled, and without storing *physical_length. Read back by the generic
 * reverse. */
NPXLATE_API int32_t r_ldi_entry_st_result(const void *logical, int32_t logical_length, void *physical,
                                          uint32_t *physical_length);

/* ---- Non-recursive load distribution: table 13 ---- */

/* Non-recursive load-distribution key: 3 bytes to 3, copied. */
NPXLATE_API int32_t nr_ldi_entry_st_xlate_key(const void *logical, int32_t logical_length, void *physical,
                                              uint32_t *physical_length);

/* Non-recursive load-distribution entry: 168 bytes to 32. The first of these bits that is set chooses the form: L2.7
 * (ten labels), L2.3, L2.4, L1.7 (recursive form, with the header 0x91), L1.1 (protected path), L1.3; the plain form
 * if none is. In the last three L0.4 (and with it L0.3), L2.5, L156.0 and L156.1 change what P10-15 and P25-30 carry;
 * in the protected path with L0.0, L0.1, L0.7 and L1.0 clear so does L1.5. */
NPXLATE_API int32_t nr_ldi_entry_st_result(const void *logical, int32_t logical_length, void *physical,
                                           uint32_t *physical_length);

/* Non-recursive load-distribution entry read back: 32 bytes to 168, as a protected path if P1.3 is set and as the plain
 * form otherwise. The label array, the recursive form, L2, L3, L56-64 and L148-166 are not restored. L0.2 is P1.5,
 * which L2.4 and L2.7 set. L0.0, L0.1 and L0.7 are set by the flag of a label, too. L132-135 returns in another order:
 * P31, P19, P20, P21. */
NPXLATE_API int32_t nr_ldi_entry_st_logical_xlate_result(const void *physical, int32_t physical_length, void *logical);

/* ---- MPLS leaf: table 28 ---- */

/* MPLS leaf key: 5 bytes to 3: the low 24 bits of L0-3, bit 20 ORed with L4.0, least significant byte first. */
NPXLATE_API int32_t mpls_leaf_st_xlate_key(const void *logical, int32_t logical_length, void *physical,
                                           uint32_t *physical_length);

/* MPLS leaf result: 90 bytes to 32, in one of twelve variants: the first of L0.4, L0.6, L0.7, L2.4, L4.5, L0.2, L4.6,
 * L4.4, L1.6, L0.3, L0.5 and L1.7 that is set. With none of them set, the fields that all variants share stand alone.
 * P3 is the hop byte of L6, as in the IP leaf; in the variant of L0.2 it is L21.3-0 and L17.3-0 instead. Read back by
 * the generic reverse. */
NPXLATE_API int32_t mpls_leaf_st_result(const void *logical, int32_t logical_length, void *physical,
                                        uint32_t *physical_length);

/* ---- Link-aggregation bundle: table 8 ---- */

/* Bundle key: 7 bytes to 3: the low 12 bits of the id L4-5, least significant byte first, then 64 x the kind L0-3 (1
 * or 2; any other counts as 0) plus L6, modulo 256. */
NPXLATE_API int32_t lag_type_xlate_key(const void *logical, int32_t logical_length, void *physical,
                                       uint32_t *physical_length);

/* Bundle result: 14 bytes to 16. The member L4 is carried only with L0.3 set. */
NPXLATE_API int32_t lag_type_xlate_result(const void *logical, int32_t logical_length, void *physical,
                                          uint32_t *physical_length);

/* Bundle read back: 16 bytes to 14. Of the queue index L5-6 the low 10 bits return, and L7 is its range as bits 11
 * and 10 show it: 4, 8 or 0. L0.3 is set if the member is not 0. L0.2 and L12 are not restored. */
NPXLATE_API int32_t lag_type_logical_xlate_result(const void *physical, int32_t physical_length, void *logical);

/* ---- Link-aggregation member information: table 60 ---- */

/* Member information key: 8 bytes to 2: the low 12 bits of the id L4-7, least significant byte first, and the kind
 * L0-3 (1 or 2; any other counts as 0) in P1.5-4. */
NPXLATE_API int32_t lag_info_type_xlate_key(const void *logical, int32_t logical_length, void *physical,
                                            uint32_t *physical_length);

/* Member information result: 12 bytes to 8. Of the logical record L0.1-0 and the member count L4 are carried. */
NPXLATE_API int32_t lag_info_type_xlate_result(const void *logical, int32_t logical_length, void *physical,
                                               uint32_t *physical_length);

/* Member information read back: 8 bytes to 12. Restores the member count L4 and nothing else. */
NPXLATE_API int32_t lag_info_type_logical_xlate_result(const void *physical, int32_t physical_length, void *logical);

/* ---- Protected link-aggregation bundle: table 102 ---- */

/* Protected bundle key: 3 bytes to 3, copied. */
NPXLATE_API int32_t prot_lag_st_xlate_key(const void *logical, int32_t logical_length, void *physical,
                                          uint32_t *physical_length);

/* Protected bundle result: 16 bytes to 16. L0, L1, L5, L6.7, L8.7-3, L9 and L14-15 are not carried. */
NPXLATE_API int32_t prot_lag_st_xlate_result(const void *logical, int32_t logical_length, void *physical,
                                             uint32_t *physical_length);

/* Protected bundle read back: 16 bytes to 16. Returns NPXLATE_INVALID and writes nothing unless physical_length is 16.
 * Does not return what was programmed: the 16-bit fields P4-5, P6-7 and P13-14 are read with their bytes exchanged,
 * and L0 and L1 are P5.7-5 and P5.4. */
NPXLATE_API int32_t prot_lag_logical_res_xlate(const void *physical, int32_t physical_length, void *logical);

/* ---- SRv6 SID array: table 115; SRv6 SID list: by name; SRv6 information record: by name; SRH encapsulation: by
 * name ---- */

/* SID array key: 3 bytes to 3, copied. */
NPXLATE_API int32_t srv6_sida_key_xlate(const void *logical, int32_t logical_length, void *physical,
                                        uint32_t *physical_length);

/* SID array result: 80 bytes to 32. Hands the record to srv6_array_res_xlate if L0.0 is set and to
 * srv6_info_res_xlate otherwise, and returns NPXLATE_OK whatever they return: *physical_length left unwritten is the
 * only sign of a failure, which is an information record with more than 4 SIDs. Read back by the generic reverse. */
NPXLATE_API int32_t srv6_sida_res_xlate(const void *logical, int32_t logical_length, void *physical,
                                        uint32_t *physical_length);

/* SID list: 80 bytes to 32, header 0x91. Always all four SIDs; of each 16-byte SID its bytes 1 to 6 are carried.
 * Returns NPXLATE_INVALID, with nothing written, when L0.0 is clear. */
NPXLATE_API int32_t srv6_array_res_xlate(const void *logical, int32_t logical_length, void *physical,
                                         uint32_t *physical_length);

/* SRv6 information record: 80 bytes to 32. L2 SIDs (0 to 4), of each 16-byte SID bytes 1 to 6. Returns
 * NPXLATE_INVALID, with nothing written, when L0.0 is set, and NPXLATE_OUT_OF_RANGE when L2 is above 4, after
 * writing the 32 bytes with P0-1 filled and without storing *physical_length. */
NPXLATE_API int32_t srv6_info_res_xlate(const void *logical, int32_t logical_length, void *physical,
                                        uint32_t *physical_length);

/* SRH encapsulation read back: does nothing, neither reads nor writes, and returns NPXLATE_OK. */
NPXLATE_API int32_t ipv6_srh_encap_logical_res_xlate(const void *physical, int32_t physical_length, void *logical);

/* ---- SRv6 local SID: table 116 ---- */

/* Local SID key: 2 bytes to 2, copied. */
NPXLATE_API int32_t srv6_local_sid_key_xlate(const void *logical, int32_t logical_length, void *physical,
                                             uint32_t *physical_length);

/* Local SID result: 3 bytes to 8. Read back by the generic reverse. */
NPXLATE_API int32_t srv6_local_sid_entry_xlate(const void *logical, int32_t logical_length, void *physical,
                                               uint32_t *physical_length);

/* ---- MPLS RPF list: table 97 ---- */

/* MPLS reverse-path-forwarding list key: 4 bytes to 4. L2.4-0 are not carried. */
NPXLATE_API int32_t mpls_rpf_list_xlate_key(const void *logical, int32_t logical_length, void *physical,
                                            uint32_t *physical_length);

/* MPLS RPF list result: 4 bytes to 8. L0-3 keep their byte order. Read back by the generic reverse. */
NPXLATE_API int32_t mpls_rpf_list_xlate_result(const void *logical, int32_t logical_length, void *physical,
                                               uint32_t *physical_length);

/* ---- IPv6 link-local address: table 90 ---- */

/* IPv6 link-local key: 20 bytes to 20: the address L4-19 turned round, then L0-3 big-endian. Takes keys of other
 * lengths: 20 bytes are cleared, written and reported whatever the length, and P0 onwards receives the bytes of the
 * key from its last down to L4. Fewer than 4 bytes give 20 zeros; of more than 20, as many as there is room for are
 * taken, and from P16 on they stand in place of L0-3. Does nothing and returns NPXLATE_OK when a pointer is null. */
NPXLATE_API int32_t ipv6_ll_xlate_hash_key(const void *logical, int32_t logical_length, void *physical,
                                           uint32_t *physical_length);

/* IPv6 link-local result: 3 bytes to 8. Read back by the generic reverse. */
NPXLATE_API int32_t ipv6_ll_xlate_hash_result(const void *logical, int32_t logical_length, void *physical,
                                              uint32_t *physical_length);

/* ---- Extended LSP attribute: table 37 ---- */

/* Extended LSP attribute key: 3 bytes to 3, copied. */
NPXLATE_API int32_t ext_lspa_st_xlate_key(const void *logical, int32_t logical_length, void *physical,
                                          uint32_t *physical_length);

/* Extended LSP attribute: 20 bytes to 16: four labels, each with its flag. Read back by the generic reverse. */
NPXLATE_API int32_t ext_lspa_st_result(const void *logical, int32_t logical_length, void *physical,
                                       uint32_t *physical_length);

/* ---- Segment-routing LSP attribute: by name ---- */

/* Segment-routing LSP attribute key: 3 bytes to 3, copied. */
NPXLATE_API int32_t sr_te_lspa_key(const void *logical, int32_t logical_length, void *physical,
                                   uint32_t *physical_length);

/* Segment-routing LSP attribute: 52 bytes to 32: the label L12 and up to nine more from L16 on, as long as the bytes L2
 * to L10 are not 0; the flag of a label is set when its byte of L2 to L11 is not 0. L8 sets P1.7 as well. No result
 * header: P0 is 0. Nothing reads it back. */
NPXLATE_API int32_t sr_te_lspa_result(const void *logical, int32_t logical_length, void *physical,
                                      uint32_t *physical_length);

/* ======================================================================
 * Multicast
 * ====================================================================== */

/* ---- IPv4 multicast leaf: table 24; IPv6 (S,G) multicast leaf: table 61; IPv6 (*,G) multicast leaf: table 62 ---- */

/* A leaf turns a group, or a source and a group, into a node reference: three bytes, the key of the node table. The
 * result carries the reference behind the header byte, in its own byte order. In the keys the addresses are turned
 * round, and the last two bytes keep their order. */

/* IPv4 leaf key, table 24, 10 bytes to 10. The source, L4-7, stands first in the physical key; the group is L0-3. */
NPXLATE_API int32_t ipv4mc_leaf_key_xlate(const void *logical, int32_t logical_length, void *physical,
                                          uint32_t *physical_length);

/* IPv6 (S,G) leaf key, table 61, 34 bytes to 34. The source, L16-31, stands first in the physical key; the group is
 * L0-15. */
NPXLATE_API int32_t ipv6mc_sg_leaf_key_xlate(const void *logical, int32_t logical_length, void *physical,
                                             uint32_t *physical_length);

/* IPv6 (*,G) leaf key, table 62, 34 bytes to 18. The logical key of table 61, whose source is not used. */
NPXLATE_API int32_t ipv6mc_g_leaf_key_xlate(const void *logical, int32_t logical_length, void *physical,
                                            uint32_t *physical_length);

/* Leaf result, tables 24 and 62, 4 bytes to 4. L3 is not carried and comes back as 0. The reverse, 4 bytes to 4,
 * returns NPXLATE_INVALID and writes nothing unless physical_length is 4. */
NPXLATE_API int32_t ipmc_leaf_res_xlate(const void *logical, int32_t logical_length, void *physical,
                                        uint32_t *physical_length);
NPXLATE_API int32_t ipmc_leaf_logical_res_xlate(const void *physical, int32_t physical_length, void *logical);

/* IPv6 (S,G) leaf result, table 61, 4 bytes to 16: the same in a longer record; P4-15 are 0. The reverse, 16 bytes to
 * 4, returns NPXLATE_INVALID and writes nothing unless physical_length is 16. */
NPXLATE_API int32_t ipv6mc_sg_leaf_res_xlate(const void *logical, int32_t logical_length, void *physical,
                                             uint32_t *physical_length);
NPXLATE_API int32_t ipv6mc_sg_leaf_logical_res_xlate(const void *physical, int32_t physical_length, void *logical);

/* ---- IP multicast node: table 26 ---- */

/* IP multicast node key, table 26, 3 bytes to 3: the node reference of a leaf result, copied. */
NPXLATE_API int32_t ipmc_node_key_xlate(const void *logical, int32_t logical_length, void *physical,
                                        uint32_t *physical_length);

/* IP multicast node result, table 26, 48 bytes to 32. P6-8, least significant byte first, have the form of table 52's
 * physical key: a type code in bits 23-20, an index in bits 19-0. The index is bits 27-8 of L40-43. The code is 3 for
 * types 3 and 4 (L36-39), else the low four bits of the type; L43.7-4 are ORed into it. L1.2 suppresses P1.6. Reading
 * back restores neither L28.0 nor the type nor L43.7-4, and L29.0 as 0 where L1.2 was set. The reverse, 32 bytes to 48,
 * returns NPXLATE_INVALID and writes nothing unless physical_length is 32. */
NPXLATE_API int32_t ipmc_node_res_xlate(const void *logical, int32_t logical_length, void *physical,
                                        uint32_t *physical_length);
NPXLATE_API int32_t ipmc_node_logical_res_xlate(const void *physical, int32_t physical_length, void *logical);

/* ---- IP multicast outgoing list: table 40; layer-2 multicast outgoing list: table 45 ---- */

/* IP outgoing-list key, table 40, 8 bytes to 6. L0.7-1, L1 and L3.7-4 are not used. */
NPXLATE_API int32_t ipmc_ole_key_xlate(const void *logical, int32_t logical_length, void *physical,
                                       uint32_t *physical_length);

/* IP outgoing-list result, table 40, 60 bytes to 24. The type, L0-3, is 1, 2, 3 or 4; any other is written as type 1
 * without its type bit and comes back as 0. Reading back also puts the type-4 bit P1.1 into L4.2, which is not carried,
 * and P8 into L38 in types 0 and 1; it does not restore L32-34 of type 2 and the label flags L46.0 and L51.0 of type 4.
 * The reverse, 24 bytes to 60, returns NPXLATE_INVALID and writes nothing unless physical_length is 24. */
NPXLATE_API int32_t ipmc_ole_res_xlate(const void *logical, int32_t logical_length, void *physical,
                                       uint32_t *physical_length);
NPXLATE_API int32_t ipmc_ole_logical_res_xlate(const void *physical, int32_t physical_length, void *logical);

/* Layer-2 outgoing-list key, table 45, 8 bytes to 6. As that of table 40, but P2 is 0 and P3-5 are L4-6 in their own
 * order; L7 is dropped. */
NPXLATE_API int32_t l2mc_ole_key_xlate(const void *logical, int32_t logical_length, void *physical,
                                       uint32_t *physical_length);

/* Layer-2 outgoing-list result, table 45, 40 bytes to 16. The first that is set of L0.2, L0.1 and L0.0 selects the
 * variant. L4 comes back as 1 when it was anything but 0. The reverse, 16 bytes to 40, returns NPXLATE_INVALID and
 * writes nothing unless physical_length is 16. */
NPXLATE_API int32_t l2mc_ole_res_xlate(const void *logical, int32_t logical_length, void *physical,
                                       uint32_t *physical_length);
NPXLATE_API int32_t l2mc_ipv4_ole_logical_res_xlate(const void *physical, int32_t physical_length, void *logical);

/* ---- Multicast encapsulation and MLC: table 52; multicast encapsulation: by name; MLC: by name ---- */

/* Table 52 holds multicast encapsulation entries, types 2, 3 and 4, and MLC entries, types 1 and 5. The type is L0-3 of
 * the key and of the result. The table's own key and result translators hand a record on by its type. */

/* Key of any type, table 52, 8 bytes to 3: by ipmc_encap_info_key_xlate or ipmc_mlc_key_xlate. Returns NPXLATE_INVALID
 * and writes nothing for a type other than 1 to 5. */
NPXLATE_API int32_t ipmc_mofrr_mvpn_key_xlate(const void *logical, int32_t logical_length, void *physical,
                                              uint32_t *physical_length);

/* Result of any type, table 52, 42 bytes to 32: by mvpn_encap_info_res_xlate or ipmc_mlc_res_xlate. Returns
 * NPXLATE_INVALID and writes nothing for a type other than 1 to 5. */
NPXLATE_API int32_t ipmc_mofrr_mvpn_res_xlate(const void *logical, int32_t logical_length, void *physical,
                                              uint32_t *physical_length);

/* Reverse of any type, table 52, 32 bytes to 48. The physical record does not tell all types apart, so the
 * caller keeps the type and hands it in as *entry_type; it alone decides, and is stored in L0-3. Types 1 and 5 restore
 * nothing else, type 4 all but the label flag L36.0. Returns NPXLATE_INVALID and writes nothing unless *entry_type is 1
 * to 5 and physical_length is 32. Called through the dispatch table, the entry is cast to npxlate_reverse_by_type_fn
 * *. */
NPXLATE_API int32_t ipmc_encap_logical_res_xlate(const void *physical, int32_t physical_length, void *logical,
                                                 const uint32_t *entry_type);

/* Key of types 2, 3 and 4, 8 bytes to 3: L4-6 in their own order, with the type code ORed into P2.7-4: 2 for type 2, 3
 * for types 3 and 4. An index of more than 20 bits runs into the code. With any other type the buffer stays as it was,
 * yet *physical_length is 3 and the status NPXLATE_OK. */
NPXLATE_API int32_t ipmc_encap_info_key_xlate(const void *logical, int32_t logical_length, void *physical,
                                              uint32_t *physical_length);

/* Result of types 2, 3 and 4, 42 bytes to 32. Any other type gives the header byte and zeros, with NPXLATE_OK. */
NPXLATE_API int32_t mvpn_encap_info_res_xlate(const void *logical, int32_t logical_length, void *physical,
                                              uint32_t *physical_length);

/* Key of types 1 and 5, 8 bytes to 3: L4-5 in their own order, then L0.3-0 in P2.7-4; L6-7 are not carried. The type is
 * not checked. */
NPXLATE_API int32_t ipmc_mlc_key_xlate(const void *logical, int32_t logical_length, void *physical,
                                       uint32_t *physical_length);

/* Result of types 1 and 5, 42 bytes to 32: the header byte and zeros. No byte of the logical record is read. */
NPXLATE_API int32_t ipmc_mlc_res_xlate(const void *logical, int32_t logical_length, void *physical,
                                       uint32_t *physical_length);

/* ---- MoFRR information: table 50; MoFRR watchdog counter: table 51 ---- */

/* MoFRR (multicast-only fast reroute) information key, table 50, 8 bytes to 4. L0-3 are not used. */
NPXLATE_API int32_t ipmc_mofrr_info_key_xlate(const void *logical, int32_t logical_length, void *physical,
                                              uint32_t *physical_length);

/* MoFRR information result, table 50, 40 bytes to 32. L36-39 are carried only when L4.1 is set. Read back by
 * generic_xlate_logical_result. */
NPXLATE_API int32_t ipmc_mofrr_info_res_xlate(const void *logical, int32_t logical_length, void *physical,
                                              uint32_t *physical_length);

/* MoFRR watchdog counter key, table 51, 3 bytes to 3: copied. */
NPXLATE_API int32_t ipmc_mofrr_wdcnt_key_xlate(const void *logical, int32_t logical_length, void *physical,
                                               uint32_t *physical_length);

/* MoFRR watchdog counter result, table 51, 16 bytes to 16. L4-13 are carried only when L0.2 is set; L0.2 itself is not
 * carried. Read back by generic_xlate_logical_result. */
NPXLATE_API int32_t ipmc_mofrr_wdcnt_res_xlate(const void *logical, int32_t logical_length, void *physical,
                                               uint32_t *physical_length);

/* ---- Bidirectional PIM: table 113; multicast interface punt: table 21 ---- */

/* Bidirectional PIM key, table 113, 6 bytes to 5. L3 and L4.6-0 are not used. */
NPXLATE_API int32_t ipmc_bidir_key_xlate(const void *logical, int32_t logical_length, void *physical,
                                         uint32_t *physical_length);

/* Bidirectional PIM result, table 113, 16 bytes to 20: copied into P4-19. */
NPXLATE_API int32_t ipmc_bidir_res_xlate(const void *logical, int32_t logical_length, void *physical,
                                         uint32_t *physical_length);

/* Reverse of it, 20 bytes to 48: P4-19, then zeros. Returns NPXLATE_INVALID and writes nothing unless
 * physical_length is 20. */
NPXLATE_API int32_t ipmc_bidir_logical_res_xlate(const void *physical, int32_t physical_length, void *logical);

/* Multicast interface punt key, table 21, 8 bytes to 8: two 32-bit values, each swapped. */
NPXLATE_API int32_t ipmc_intf_punt_key_xlate(const void *logical, int32_t logical_length, void *physical,
                                             uint32_t *physical_length);

/* Multicast interface punt result, table 21, 0 bytes to 16: the header byte and zeros; the logical record is not read.
 * Read back by generic_xlate_logical_result. */
NPXLATE_API int32_t ipmc_intf_punt_res_xlate(const void *logical, int32_t logical_length, void *physical,
                                             uint32_t *physical_length);

/* ---- Layer-2 IPv4 multicast leaf: table 54; layer-2 IPv6 (S,G) multicast leaf: table 85; layer-2 IPv6 (*,G)
 * multicast leaf: table 86; MMRP leaf: table 112 ---- */

/* The first three are as the IP multicast leaves; their keys are made from one logical key of 37 bytes: two bytes at
 * L0, which stand behind the addresses in the physical key and are followed by a zero byte there; the source at L5; the
 * group at L21. */

/* IPv4 leaf key, table 54, 37 bytes to 11. When L4 is 0 the physical key is all zeros. */
NPXLATE_API int32_t l2mc_ipv4_leaf_key_xlate(const void *logical, int32_t logical_length, void *physical,
                                             uint32_t *physical_length);

/* IPv6 (S,G) leaf key, table 85, 37 bytes to 35. The source stands first; L4 is not looked at. */
NPXLATE_API int32_t l2v6mc_sg_leaf_key_xlate(const void *logical, int32_t logical_length, void *physical,
                                             uint32_t *physical_length);

/* IPv6 (*,G) leaf key, table 86, 37 bytes to 19. Neither the source nor L4 is used. */
NPXLATE_API int32_t l2v6mc_g_leaf_key_xlate(const void *logical, int32_t logical_length, void *physical,
                                            uint32_t *physical_length);

/* Leaf result, tables 54 and 86, 4 bytes to 4. L3 is not carried and comes back as 0. The reverse, 4 bytes to 4,
 * returns NPXLATE_INVALID and writes nothing unless physical_length is 4. */
NPXLATE_API int32_t l2mc_ipv4_leaf_res_xlate(const void *logical, int32_t logical_length, void *physical,
                                             uint32_t *physical_length);
NPXLATE_API int32_t l2mc_ipv4_leaf_logical_res_xlate(const void *physical, int32_t physical_length, void *logical);

/* IPv6 (S,G) leaf result, table 85, 4 bytes to 16: the same in a longer record; P4-15 are 0. The reverse, 16 bytes to
 * 4, returns NPXLATE_INVALID and writes nothing unless physical_length is 16. */
NPXLATE_API int32_t l2v6mc_sg_leaf_res_xlate(const void *logical, int32_t logical_length, void *physical,
                                             uint32_t *physical_length);
NPXLATE_API int32_t l2v6mc_sg_leaf_logical_res_xlate(const void *physical, int32_t physical_length, void *logical);

/* MMRP leaf key, table 112, 10 bytes to 9: the MAC address L4-9, then L0-1, then a zero byte. L2-3 are not used. */
NPXLATE_API int32_t l2mc_mmrp_leaf_key_xlate(const void *logical, int32_t logical_length, void *physical,
                                             uint32_t *physical_length);

/* MMRP leaf result, table 112, 4 bytes to 8; P4-7 are 0. The reference is L0-2 but comes back one byte higher, in L1-3,
 * with L0 = 0. The reverse, 8 bytes to 4, returns NPXLATE_INVALID and writes nothing unless physical_length is 8. */
NPXLATE_API int32_t l2mc_mmrp_leaf_res_xlate(const void *logical, int32_t logical_length, void *physical,
                                             uint32_t *physical_length);
NPXLATE_API int32_t l2mc_mmrp_leaf_logical_res_xlate(const void *physical, int32_t physical_length, void *logical);

/* ---- Layer-2 multicast node: table 56 ---- */

/* Layer-2 multicast node key, table 56, 3 bytes to 3: the node reference of a leaf result, copied. */
NPXLATE_API int32_t l2mc_ipv4_node_key_xlate(const void *logical, int32_t logical_length, void *physical,
                                             uint32_t *physical_length);

/* Layer-2 multicast node result, table 56, 56 bytes to 32. P1.5 is 1 when L28-29 is not 0. Reading back restores every
 * field that is carried. The reverse, 32 bytes to 56, returns NPXLATE_INVALID and writes nothing unless physical_length
 * is 32. */
NPXLATE_API int32_t l2mc_ipv4_node_res_xlate(const void *logical, int32_t logical_length, void *physical,
                                             uint32_t *physical_length);
NPXLATE_API int32_t l2mc_ipv4_node_logical_res_xlate(const void *physical, int32_t physical_length, void *logical);

/* ---- Encapsulation outgoing list: table 53; point-to-multipoint MPLS outgoing list: table 64 ---- */

/* Encapsulation outgoing-list key, table 53, 7 bytes to 6. Nothing is swapped; L3 is not used. */
NPXLATE_API int32_t encap_ole_key_xlate(const void *logical, int32_t logical_length, void *physical,
                                        uint32_t *physical_length);

/* Encapsulation outgoing-list result, table 53, 32 bytes to 20. The type, L0-3, is 1, 2, 3 or 4; any other returns
 * NPXLATE_INVALID, with the first two physical bytes filled, the others cleared and *physical_length not stored. */
NPXLATE_API int32_t encap_ole_res_xlate(const void *logical, int32_t logical_length, void *physical,
                                        uint32_t *physical_length);

/* Reverse of it, 20 bytes to 32. L8-11 and L12-15 of types 1 and 4 and L16-17 of type 1 come back with
 * their bytes reversed; of type 2, the label in L8-11 comes back without what stood above it, and L12 not at all.
 * Returns NPXLATE_INVALID and writes nothing unless physical_length is 20; returns NPXLATE_INVALID and leaves the
 * logical record cleared but for L4.0 when no type bit (P0.7-5, P1.6) is set. */
NPXLATE_API int32_t encap_ole_logical_res_xlate(const void *physical, int32_t physical_length, void *logical);

/* Point-to-multipoint MPLS outgoing-list key, table 64, 9 bytes to 6. Nothing is swapped; L2-3 and L7 are not used. */
NPXLATE_API int32_t p2mp_mpls_ole_key_xlate(const void *logical, int32_t logical_length, void *physical,
                                            uint32_t *physical_length);

/* Point-to-multipoint MPLS outgoing-list result, table 64, 32 bytes to 16. L0.0, before L0.1, selects the variant; P0.5
 * marks the one with neither. Read back by generic_xlate_logical_result. */
NPXLATE_API int32_t p2mp_mpls_ole_res_xlate(const void *logical, int32_t logical_length, void *physical,
                                            uint32_t *physical_length);

/* ======================================================================
 * Layer 2 and VPN
 * ====================================================================== */

/* ---- Cross-connect: table 23; cross-connect extension: table 74 ---- */

/* Cross-connect key, table 23, 4 bytes to 3: the low 19 bits, least significant byte first. Clears a fourth byte of the
 * physical key, which the buffer must have; *physical_length = 3. */
NPXLATE_API int32_t xid_type_xlate_key(const void *logical, int32_t logical_length, void *physical,
                                       uint32_t *physical_length);

/* Cross-connect, table 23, 92 bytes to 32, of a type, 1 to 11, at L8-11. NPXLATE_INVALID for any other type, and for
 * type 11 with a selector L60 above 2: the physical record has then been cleared and holds what was written by then,
 * and *physical_length is not stored. */
NPXLATE_API int32_t xid_type_xlate_result(const void *logical, int32_t logical_length, void *physical,
                                          uint32_t *physical_length);

/* And back, 32 bytes to 92. The type is found from the marks that the types leave in the physical record; a record
 * without any is of type 5, and only one whose single mark is P2.5 (with P2.4 or without) of type 0, which no result
 * is. What comes back differently:
 *  - a type 8 comes back as type 5;
 *  - L1.1 comes back as 1 in types 5 to 8 and 11, L3.2 as 1 in types 9 and 10 and as 0 in all others;
 *  - in types 9 and 10, L66 is 1, L71 is 0, and L3.4 and L3.5 are both 1 if either was and L1.5 was set, else 0.
 * What does not come back: L2.7; L12-15; L3.4 to L3.6 in types 5 to 8, and L3.6 in types 9 to 11; L52 in all types but
 * 1 and 2; whatever the type does not carry. */
NPXLATE_API int32_t xid_type_logical_xlate_result(const void *physical, int32_t physical_length, void *logical);

/* Cross-connect extension key, table 74, 4 bytes to 3: the same as xid_type_xlate_key, the cleared fourth byte
 * included. */
NPXLATE_API int32_t xid_ext_type_xlate_key(const void *logical, int32_t logical_length, void *physical,
                                           uint32_t *physical_length);

/* Cross-connect extension, table 74, 92 bytes to 8: L80-89 of the cross-connect's logical record, two values of 20 bits
 * and one of 16, each in a byte order of its own. */
NPXLATE_API int32_t xid_ext_type_xlate_result(const void *logical, int32_t logical_length, void *physical,
                                              uint32_t *physical_length);

/* And back, 8 bytes to 92: clears the whole cross-connect record, fills L80-89. Changes its input: leaves P4 and P5 of
 * the physical record exchanged, so the record must be writable, and read back a second time it gives another value in
 * L84-87. */
NPXLATE_API int32_t xid_ext_type_logical_xlate_result(const void *physical, int32_t physical_length, void *logical);

/* ---- Bridge domain: table 75; bridge-domain extension: table 105; bridge-domain member: table 35 ---- */

/* Bridge-domain key, table 75, 2 bytes to 3: the number of the bridge domain, least significant byte first, and 0. */
NPXLATE_API int32_t bridge_domain_type_xlate_key(const void *logical, int32_t logical_length, void *physical,
                                                 uint32_t *physical_length);

/* Bridge domain, table 75, 101 bytes to 32. P11-13 hold L68-70 if L0.3 is set, else L56-58 if L2.1 is set, else L83-85
 * with the low 4 bits of L87 ORed in from bit 20 up if L4.0 is set, else 0. */
NPXLATE_API int32_t bridge_domain_type_xlate_result(const void *logical, int32_t logical_length, void *physical,
                                                    uint32_t *physical_length);

/* And back, 32 bytes to 120. It is not the mirror of the result:
 *  - P0.6 and P0.5, which carry L2.0 and L0.2, are read as a code of two bits: L0.1 is P0.6, L2.0 is 1 only if both are
 *    set, L2.1 only if P0.5 alone is; L0.2 is P0.5;
 *  - P0.5 decides whether P11-13 come back into L68-71 or L56-59 at all, P0.6 which of the two; L52-55 come back with
 *    L56-59 only;
 *  - where L4.0 is set, the low 20 bits of P11-13 also come back as L87 (bit 0) and L83-86 (the rest, shifted down);
 *  - L0.3 and L3.2 come back as 0. */
NPXLATE_API int32_t bridge_domain_type_logical_xlate_result(const void *physical, int32_t physical_length,
                                                            void *logical);

/* Bridge-domain extension key, table 105, 2 bytes to 3: the same as bridge_domain_type_xlate_key. */
NPXLATE_API int32_t bridge_domain_ext_type_xlate_key(const void *logical, int32_t logical_length, void *physical,
                                                     uint32_t *physical_length);

/* Bridge-domain extension, table 105, 101 bytes to 16: the bridge domain's logical record. P4-7 hold L44-47 if L1.3 is
 * set, L12-13 and L40-41 if it is clear. Of L60-63 the bits 24 to 1 are carried. */
NPXLATE_API int32_t bridge_domain_ext_type_xlate_result(const void *logical, int32_t logical_length, void *physical,
                                                        uint32_t *physical_length);

/* And back, 16 bytes to 120. L0.5, L8, L100 and of L60-63 all but the bits 24 to 1 come back as 0. */
NPXLATE_API int32_t bridge_domain_ext_type_logical_xlate_result(const void *physical, int32_t physical_length,
                                                                void *logical);

/* Bridge-domain member key, table 35, 12 bytes to 5: 16 bits of L4-7, 12 bits of L8-11, and three flags. */
NPXLATE_API int32_t bridge_domain_member_type_xlate_key(const void *logical, int32_t logical_length, void *physical,
                                                        uint32_t *physical_length);

/* Bridge-domain member, table 35, 64 bytes to 24, in one of three variants: A if L0.1 is set, else B (two labels) if
 * L0.3 is set, else C if L1.1 is set; with none of them set, only what the variants have in common. In variant C, P4-7
 * are FF FF FF 9F whatever L4-7 hold. */
NPXLATE_API int32_t bridge_domain_member_type_xlate_result(const void *logical, int32_t logical_length, void *physical,
                                                           uint32_t *physical_length);

/* And back, 24 bytes to 64. L1.1 comes back as 0; L0.2 holds it instead. A variant C comes back with
 * 0x9fffffff in L4-7. */
NPXLATE_API int32_t bridge_domain_member_type_logical_xlate_result(const void *physical, int32_t physical_length,
                                                                   void *logical);

/* ---- Layer-2 unicast forwarding: table 31 ---- */

/* MAC key, 14 bytes to 9: the MAC address L8-13, and of L4-7 the bits 0xC0FFFF, least significant byte first. */
NPXLATE_API int32_t l2_ufib_type_xlate_key(const void *logical, int32_t logical_length, void *physical,
                                           uint32_t *physical_length);

/* MAC entry, 72 bytes to 32. The destination at P12-15 is L4-7, or half of L8-11 if L0.7 is set. The rest depends on
 * the variant: 1 if L1.0 is set, else 2 if L0.0 is, else 3 if L0.1 and L0.2 are (the destination is then 0), else 4 if
 * L0.2 is, else none. */
NPXLATE_API int32_t l2_ufib_type_xlate_result(const void *logical, int32_t logical_length, void *physical,
                                              uint32_t *physical_length);

/* And back, 32 bytes to 72. The variants do not exclude each other here: an entry that has the flag of another variant
 * set too (L0.0, or L0.2) gets that one's fields as well, out of the same bytes. What does not come back: bit 0 of
 * L8-11; L1.5 to L1.7, L2.0, L2.1, L2.3, L3.5 to L3.7 and L71; L2.2 unless L0.2 is set; L2.4 unless L0.2 is set and
 * L0.1 or L0.6 is clear; L2.6 unless L0.2 is set and L1.0, L0.0 and L0.1 are clear; L1.2 and L3.1 unless L1.0 is set.
 * L2.7 comes back set also where an entry of variant 1 or 2 has L0.2 set, L0.1 or L0.6 clear, and a 1 in P21.0. */
NPXLATE_API int32_t l2_ufib_type_logical_xlate_result(const void *physical, int32_t physical_length, void *logical);

/* ---- I-SID: table 58; EVPN MAC address: table 70 ---- */

/* I-SID key, table 58, 6 bytes to 6: L0-2, L4-5 and 0, byte order kept. */
NPXLATE_API int32_t isid_type_xlate_key(const void *logical, int32_t logical_length, void *physical,
                                        uint32_t *physical_length);

/* I-SID, table 58, 43 bytes to 32. */
NPXLATE_API int32_t isid_type_xlate_result(const void *logical, int32_t logical_length, void *physical,
                                           uint32_t *physical_length);

/* And back, 32 bytes to 44. The 16-bit value at L24 comes back with its bytes exchanged; L7 and L26-27 are 0, and L6 is
 * P6, which is 0 in every record that isid_type_xlate_result writes. */
NPXLATE_API int32_t isid_type_logical_xlate_result(const void *physical, int32_t physical_length, void *logical);

/* EVPN MAC key, table 70, 10 bytes to 9: the MAC address L4-9, then L0-1 and 0, byte order kept. */
NPXLATE_API int32_t evpn_mac_mb_type_xlate_key(const void *logical, int32_t logical_length, void *physical,
                                               uint32_t *physical_length);

/* EVPN MAC, table 70, 22 bytes to 32. */
NPXLATE_API int32_t evpn_mac_mb_type_xlate_result(const void *logical, int32_t logical_length, void *physical,
                                                  uint32_t *physical_length);

/* And back, 32 bytes to 32. L7 is 0, and L6 is P5, which is 0 in every record that evpn_mac_mb_type_xlate_result
 * writes. */
NPXLATE_API int32_t evpn_mac_mb_type_logical_xlate_result(const void *physical, int32_t physical_length, void *logical);

/* ---- EVPN multi-homing peer: table 30; PBB-EVPN backbone MAC address: by name ---- */

/* Key, 12 bytes to 7, in one of two forms: L0.0 set, the PBB-EVPN form, handed to pbbevpn_esi_bmac_type_xlate_key; L0.0
 * clear, a peer: L4-7, then bits 27..8 of L8-11, byte order kept. */
NPXLATE_API int32_t evpn_mh_peer_type_xlate_key(const void *logical, int32_t logical_length, void *physical,
                                                uint32_t *physical_length);

/* Result, 10 bytes to 8, in one of two forms: L0.0 set, the PBB-EVPN form, handed to
 * pbbevpn_esi_bmac_type_xlate_result; L0.0 clear, a peer, of which 4 bytes are read: header 0x91, L1-3. */
NPXLATE_API int32_t evpn_mh_peer_type_xlate_result(const void *logical, int32_t logical_length, void *physical,
                                                   uint32_t *physical_length);

/* And back, 8 bytes to 12: P0.7 clear, handed to pbbevpn_esi_bmac_type_logical_xlate_result; P0.7 set, a peer. L0 comes
 * back as 0 in both forms, the selector L0.0 with it. */
NPXLATE_API int32_t evpn_mh_peer_type_logical_xlate_result(const void *physical, int32_t physical_length,
                                                           void *logical);

/* The PBB-EVPN form of the above, under a name of its own: the backbone MAC address of an Ethernet segment. L0.0 is not
 * looked at. Key, 12 bytes to 7: P4-6 hold bits 27..8 of L8-11 from P4.4 up; P4.0 is 1 if L8 is not zero. */
NPXLATE_API int32_t pbbevpn_esi_bmac_type_xlate_key(const void *logical, int32_t logical_length, void *physical,
                                                    uint32_t *physical_length);

/* Result, 10 bytes to 8: header 0x11, 0, the backbone MAC address L4-9. */
NPXLATE_API int32_t pbbevpn_esi_bmac_type_xlate_result(const void *logical, int32_t logical_length, void *physical,
                                                       uint32_t *physical_length);

/* And back, 8 bytes to 12: L4-9. */
NPXLATE_API int32_t pbbevpn_esi_bmac_type_logical_xlate_result(const void *physical, int32_t physical_length,
                                                               void *logical);

/* ---- Ethernet segment and spanning-tree instance: table 92; spanning-tree instance: by name ---- */

/* Key, 8 bytes to 7, in one of two forms: an Ethernet segment if L7 is 0xff (L0-2 and 20 bits of L4-7, byte order
 * kept), else a spanning-tree instance, handed to velox_msti_info_type_xlate_key. */
NPXLATE_API int32_t velox_esi_info_type_xlate_key(const void *logical, int32_t logical_length, void *physical,
                                                  uint32_t *physical_length);

/* Result, 9 bytes to 8, in one of two forms: an Ethernet segment, of which 8 bytes are read, if L0 is not zero, else a
 * spanning-tree instance, handed to velox_msti_info_type_xlate_result. */
NPXLATE_API int32_t velox_esi_info_type_xlate_result(const void *logical, int32_t logical_length, void *physical,
                                                     uint32_t *physical_length);

/* And back, 8 bytes to 8 or 12, with a fourth argument: the logical key (8 bytes) of the entry, as the physical record
 * does not tell the two forms apart. With 0xff in its byte 7: clears 8 bytes, fills L4-7 and sets L1.0 to P0.0 (1 in
 * every entry written by the result translator); L0, by which the result translator knows the form, comes back as 0.
 * With any other value: handed to msti_info_logical_res_xlate, which fills 12 bytes. Of the key only byte 7 is read. */
NPXLATE_API int32_t esi_info_logical_res_xlate(const void *physical, int32_t physical_length, void *logical,
                                               const void *logical_key);

/* The spanning-tree instance, under a name of its own; what tells the forms apart above is not looked at. Key, 5 bytes
 * to 7: L0-3, 0, 0, L4 + 1 (255 gives 0). */
NPXLATE_API int32_t velox_msti_info_type_xlate_key(const void *logical, int32_t logical_length, void *physical,
                                                   uint32_t *physical_length);

/* Result, 9 bytes to 8: three flags of L4 in the header, and L8. */
NPXLATE_API int32_t velox_msti_info_type_xlate_result(const void *logical, int32_t logical_length, void *physical,
                                                      uint32_t *physical_length);

/* And back, 8 bytes to 12. */
NPXLATE_API int32_t msti_info_logical_res_xlate(const void *physical, int32_t physical_length, void *logical);

/* ---- L2VPN load distribution: table 27; VNI information: table 111; DHCP binding: table 65 ---- */

/* L2VPN load-distribution key, table 27, 4 bytes to 2: L0-1, byte order kept. */
NPXLATE_API int32_t l2_vpn_ldi_type_xlate_key(const void *logical, int32_t logical_length, void *physical,
                                              uint32_t *physical_length);

/* L2VPN load distribution, table 27, 36 bytes to 32: four labelled paths if L0.4 is set, else one plain path. The path
 * count L4 is stored as twice the count and one, a count above 64 as if it were 1; it does not decide how many paths
 * are carried. Read back by generic_xlate_logical_result. */
NPXLATE_API int32_t l2_vpn_ldi_type_xlate_result(const void *logical, int32_t logical_length, void *physical,
                                                 uint32_t *physical_length);

/* VNI key, table 111, 8 bytes to 4: the kind L0, then L4-6. Changes its input: if the kind is 0, L4-7 are first shifted
 * left by 8 bits in the logical key itself, so that P1 is 0 and P2-3 are what L4-5 held. The key must be writable, and
 * translated a second time it gives another physical key. */
NPXLATE_API int32_t vni_info_st_xlate_key(const void *logical, int32_t logical_length, void *physical,
                                          uint32_t *physical_length);

/* VNI information, table 111, 36 bytes to 32. */
NPXLATE_API int32_t vni_info_st_xlate_result(const void *logical, int32_t logical_length, void *physical,
                                             uint32_t *physical_length);

/* And back, 32 bytes to 36. L0.0 is 1 if P11 is 4 exactly. L7, L15 and L35 are 0; L14 is P10 and L34.7-4 are P30.7-4,
 * which are 0 in every record that vni_info_st_xlate_result writes. */
NPXLATE_API int32_t vni_info_logical_res_xlate(const void *physical, int32_t physical_length, void *logical);

/* DHCP binding key, table 65, 18 bytes to 16: the two halves of the MAC address L0-5 exchanged, then L8-11, 19 bits of
 * L12-15 and L16-17, byte order kept. */
NPXLATE_API int32_t dhcp_binding_type_xlate_key(const void *logical, int32_t logical_length, void *physical,
                                                uint32_t *physical_length);

/* DHCP binding, table 65, 0 bytes to 8: always the header 0x11 and zeros. The logical record is not read. Read back by
 * generic_xlate_logical_result. */
NPXLATE_API int32_t dhcp_binding_type_xlate_result(const void *logical, int32_t logical_length, void *physical,
                                                   uint32_t *physical_length);

/* ======================================================================
 * Subscribers and tunnels
 * ====================================================================== */

/* ---- IP subscriber session: table 107; PPPoE subscriber session: table 67; L2TP subscriber session: table 68 ---- */

/* IP subscriber key, table 107, 21 bytes to 19. Changes its input when L2 = 2: in the logical key the 32-bit word of
 * the address L3-18 that L20.7-6 selects (0 to 3) is shifted right, as a big-endian value, by L20.4-0 bits, and the key
 * is translated with the word shifted. Never pass a read-only key; translating the same key again shifts it again. */
NPXLATE_API int32_t ipsub_sid_leaf_st_xlate_key(const void *logical, int32_t logical_length, void *physical,
                                                uint32_t *physical_length);

/* IP subscriber result, table 107, 9 bytes to 8. Of L0 the bits 2-1 and of the 32-bit value L5-8 the bits 24-1 are
 * carried. Read back by generic_xlate_logical_result: the bytes as they are in the physical record. */
NPXLATE_API int32_t ipsub_sid_leaf_st_xlate_result(const void *logical, int32_t logical_length, void *physical,
                                                   uint32_t *physical_length);

/* PPPoE key, table 67, 4 bytes to 4: the same bytes. */
NPXLATE_API int32_t pppoe_sid_leaf_st_xlate_key(const void *logical, int32_t logical_length, void *physical,
                                                uint32_t *physical_length);

/* PPPoE result, table 67, 18 bytes to 32. P2 has the nibbles of L2 exchanged; of L0 the bits 3-0 and of the 32-bit
 * value L10-13 the bits 24-1 are carried. Nothing restores this record: the reverse of table 67 is
 * sample_nf_info_logical_res_xlate, which reads another one. */
NPXLATE_API int32_t pppoe_sid_leaf_st_xlate_result(const void *logical, int32_t logical_length, void *physical,
                                                   uint32_t *physical_length);

/* The reverse of table 67, 16 bytes to 9: reads the physical record of the sampling table, not that of PPPoE sessions.
 * Returns NPXLATE_INVALID and writes nothing unless physical_length is 16. */
NPXLATE_API int32_t sample_nf_info_logical_res_xlate(const void *physical, int32_t physical_length, void *logical);

/* L2TP key, table 68, 6 bytes to 4: L0-1 and L4-5. */
NPXLATE_API int32_t l2tp_sid_leaf_st_xlate_key(const void *logical, int32_t logical_length, void *physical,
                                               uint32_t *physical_length);

/* L2TP result, table 68, 58 bytes to 64. The values of L20-21, L22-23, L38-39 and L40-41 are made big-endian; that of
 * L8-9 too, unless L0.1 is set and L37.2 clear. */
NPXLATE_API int32_t l2tp_sid_leaf_st_xlate_result(const void *logical, int32_t logical_length, void *physical,
                                                  uint32_t *physical_length);

/* The way back, 64 bytes to 76: L58-75 and whatever else has no place in the physical record are 0. The values of L8-9,
 * L20-21, L22-23, L38-39 and L40-41 keep the physical byte order. */
NPXLATE_API int32_t l2tp_xlate_logical_result(const void *physical, int32_t physical_length, void *logical);

/* ---- GRE qualifier: table 59; LISP instance to VRF: table 79; GRE encapsulation: by name; GRE interface to protocol:
 * by name ---- */

/* GRE qualifier key, table 59, 40 bytes to 39. L0.0 set: IPv6, the addresses L1-16 and L17-32, each reversed; clear:
 * IPv4, the addresses L1-4 and L17-20, each made big-endian. */
NPXLATE_API int32_t gre_qual_st_xlate_key(const void *logical, int32_t logical_length, void *physical,
                                          uint32_t *physical_length);

/* GRE qualifier result, table 59, 17 bytes to 16. The 24-bit value L13-15 is shifted right by one and stays least
 * significant byte first. */
NPXLATE_API int32_t gre_qual_st_xlate_result(const void *logical, int32_t logical_length, void *physical,
                                             uint32_t *physical_length);

/* The way back, 16 bytes to 17. Returns NPXLATE_INVALID and writes nothing unless physical_length is 16. L13-15 is not
 * shifted back, and so returns halved; L16.0 is set when either of L16.1-0 was; of L1-4 only L1 is restored, and L0.2
 * is not. */
NPXLATE_API int32_t gre_qual_logical_res_xlate(const void *physical, int32_t physical_length, void *logical);

/* LISP key, table 79, 20 bytes to 6. L10 not 0: the 32-bit value L12-15 behind a code, 12 when the value of L16-19 is
 * 12, 13 when it is 19, 0 for any other. L10 = 0: the flags L0.0 and L2.1-0, the 24-bit value L4-6 big-endian, and L8-9
 * in their own order. L10 itself is not carried. */
NPXLATE_API int32_t lisp_instance_to_vrf_xlate_key(const void *logical, int32_t logical_length, void *physical,
                                                   uint32_t *physical_length);

/* LISP result, table 79, 7 bytes to 8: P1-3 = L4-6 when L0 is not 0, otherwise P4-5 = L2-3. Read back by
 * generic_xlate_logical_result: the bytes as they are in the physical record. */
NPXLATE_API int32_t lisp_instance_to_vrf_xlate_result(const void *logical, int32_t logical_length, void *physical,
                                                      uint32_t *physical_length);

/* GRE encapsulation. Key, 3 bytes to 3: a 24-bit value made big-endian. Result, 32 bytes to 32: L1-31 as they are; L0
 * is not carried. */
NPXLATE_API int32_t gre_encap_type_xlate_key(const void *logical, int32_t logical_length, void *physical,
                                             uint32_t *physical_length);
NPXLATE_API int32_t gre_encap_type_xlate_result(const void *logical, int32_t logical_length, void *physical,
                                                uint32_t *physical_length);

/* GRE interface to protocol. Key, 6 bytes to 6: the same bytes. Result, 4 bytes to 8: the 24-bit value L1-3 made
 * big-endian; L0 is not carried. */
NPXLATE_API int32_t gre_ifh_2_proto_index_xlate(const void *logical, int32_t logical_length, void *physical,
                                                uint32_t *physical_length);
NPXLATE_API int32_t gre_ifh_2_proto_result_xlate(const void *logical, int32_t logical_length, void *physical,
                                                 uint32_t *physical_length);

/* ---- L2TPv3-over-IPv6 tunnel: table 93 ---- */

/* Key, 5 bytes to 5: the 32-bit value L0-3, made big-endian when L4 is not 0, then L4. */
NPXLATE_API int32_t ent_h_l2tpv3ov6_tun_str_xlate_key(const void *logical, int32_t logical_length, void *physical,
                                                      uint32_t *physical_length);

/* Result, 56 bytes to 64. The 32-bit value L0-3 is the kind of entry, 0 to 4; it chooses the layout. Any other kind
 * leaves all 64 bytes 0, without the header, and is no failure. The whole record cannot be read back: the reverse of
 * table 93, generic_xlate_logical_result, returns NPXLATE_INVALID for 64 bytes. */
NPXLATE_API int32_t ent_h_l2tpv3ov6_tun_str_xlate_result(const void *logical, int32_t logical_length, void *physical,
                                                         uint32_t *physical_length);

/* ======================================================================
 * Features
 * ====================================================================== */

/* ---- QoS string: by name; hierarchical-QoS hash: table 3; flow-QoS hash: by name ---- */

/* QoS string, 36 bytes to 32: twelve marking values in two groups (L8-16 and L18-26), each tagged with a code for the
 * kind of marking it sets. The kinds of a group's first pair make its 16-bit kind mask (P12-13, P24-25) and order the
 * pair: when the bit that the second code adds is above the first code's, the mask read least significant byte first,
 * the two values change places; so they do when only the second code has a bit in the mask. They change places before a
 * code of 15 blanks its place: with 15 as the first code and a second code that has a bit in the mask, the second place
 * holds the first value and the second is lost; with a second code without one (10, 12 or 13) the first is lost. The
 * shifts of the first pair's kinds serve all three pairs; six bits of a shifted value are carried. L0.7-6, L1.2-0,
 * L2.7-5, L3, L7.6, L17.6, L31.7-3 and L31.1 are not carried. */
NPXLATE_API int32_t qos_str_xlate_result(const void *logical, int32_t logical_length, void *physical,
                                         uint32_t *physical_length);

/* Hierarchical-QoS hash, table 3. Key: 8 bytes to 8, copied but for L7, whose bit-fields are turned round. Result: 34
 * bytes to 32, of which L0.7-6, L0.3-0, L3.7-4, L4-8, L20.4, L24, L26.0, L28, L30 and L32 are not carried; P1 and P2
 * hold the IP protocol numbers of TCP and UDP when L20.0 is set. Read back by generic_xlate_logical_result. */
NPXLATE_API int32_t h_qos_ez_xlate_hash_key(const void *logical, int32_t logical_length, void *physical,
                                            uint32_t *physical_length);
NPXLATE_API int32_t h_qos_ez_xlate_hash_result(const void *logical, int32_t logical_length, void *physical,
                                               uint32_t *physical_length);

/* Flow-QoS hash. Key: 24 bytes to 24, copied but for L22 and L23.4-0, which stand as 0. Result: 16 bytes to 16, into a
 * buffer that the caller has prepared: it is not cleared and gets no header; P0.5, P0.3-0, P3 and P7 stay as they
 * are. */
NPXLATE_API int32_t flow_qos_hash_st_xlate_key(const void *logical, int32_t logical_length, void *physical,
                                               uint32_t *physical_length);
NPXLATE_API int32_t flow_qos_hash_st_xlate_result(const void *logical, int32_t logical_length, void *physical,
                                                  uint32_t *physical_length);

/* ---- ACL statistics hash: table 41; scaled-ACL key: table 94; scaled-ACL leaf: table 96 ---- */

/* ACL statistics hash, table 41. Key: 8 bytes to 8, copied. Result: 4 bytes to 16. Read back, 16 bytes to 5: L0 is not
 * restored, L0 and L4 are 0. */
NPXLATE_API int32_t acl_ez_stats_hash_key_xlate(const void *logical, int32_t logical_length, void *physical,
                                                uint32_t *physical_length);
NPXLATE_API int32_t acl_ez_stats_hash_result_st_xlate(const void *logical, int32_t logical_length, void *physical,
                                                      uint32_t *physical_length);
NPXLATE_API int32_t acl_ez_stats_hash_logical_res_xlate(const void *physical, int32_t physical_length, void *logical);

/* Scaled-ACL key, table 94. Key: 18 bytes to 18: L2-17 reversed, then the low 14 bits of L0-1 big-endian. Result: 3
 * bytes to 4. Read back by generic_xlate_logical_result. */
NPXLATE_API int32_t scale_acl_key_xlate_key(const void *logical, int32_t logical_length, void *physical,
                                            uint32_t *physical_length);
NPXLATE_API int32_t scale_acl_key_xlate_result(const void *logical, int32_t logical_length, void *physical,
                                               uint32_t *physical_length);

/* Scaled-ACL leaf, table 96. Key: 4 bytes to 3; L3 is not carried. Result: 32 bytes to 32, copied but for the header in
 * P0.4-0 and L1.3 and L1.2, which change places. Read back by generic_xlate_logical_result. */
NPXLATE_API int32_t scale_acl_leaf_xlate_key(const void *logical, int32_t logical_length, void *physical,
                                             uint32_t *physical_length);
NPXLATE_API int32_t scale_acl_leaf_xlate_result(const void *logical, int32_t logical_length, void *physical,
                                                uint32_t *physical_length);

/* ---- EDPL string: by name; ICU source port: table 44; remote slot index: table 71; rack table: table 76; remote
 * punt: table 77 ---- */

/* EDPL string, 0 bytes to 32. Does not read the logical record (it may be null) and does not clear the physical one:
 * sets the header bits P0.4 and P0.0, leaves the other bits of the 32 bytes as they are; *physical_length = 32. */
NPXLATE_API int32_t edpl_str_xlate_result(const void *logical, int32_t logical_length, void *physical,
                                          uint32_t *physical_length);

/* ICU source port, table 44. Key: 1 byte to 1, copied. Result: 2 bytes to 8, byte order kept. Read back in full, 8
 * bytes to 2; the reverse translator returns NPXLATE_INVALID and writes nothing unless physical_length is 8. */
NPXLATE_API int32_t icu_src_port_st_xlate_key(const void *logical, int32_t logical_length, void *physical,
                                              uint32_t *physical_length);
NPXLATE_API int32_t icu_src_port_st_xlate_result(const void *logical, int32_t logical_length, void *physical,
                                                 uint32_t *physical_length);
NPXLATE_API int32_t icu_src_port_logical_res_xlate(const void *physical, int32_t physical_length, void *logical);

/* Remote slot index, table 71, whose key and result translators are the generic ones. The reverse, 8 bytes to 5, reads
 * the record that remote_punt_xlate_result writes; P4-5 is not restored, L2-3 is 0. Returns NPXLATE_INVALID and writes
 * nothing unless physical_length is 8. */
NPXLATE_API int32_t remote_slot_idx_logical_res_xlate(const void *physical, int32_t physical_length, void *logical);

/* Rack table, table 76. Key: 2 bytes to 2, copied. Result: 20 bytes to 32, byte order kept throughout, that of the
 * adjusted virtual queue index in P16-17 included; L3-5 and L9 are not carried. Read back by
 * generic_xlate_logical_result. */
NPXLATE_API int32_t quill_rack_table_xlate_key(const void *logical, int32_t logical_length, void *physical,
                                               uint32_t *physical_length);
NPXLATE_API int32_t quill_rack_table_xlate_result(const void *logical, int32_t logical_length, void *physical,
                                                  uint32_t *physical_length);

/* Remote punt, table 77. Key: 1 byte to 1, copied. Result: 5 bytes to 8, byte order kept; of L4 only bit 7 is carried.
 * Read back by generic_xlate_logical_result. */
NPXLATE_API int32_t remote_punt_xlate_key(const void *logical, int32_t logical_length, void *physical,
                                          uint32_t *physical_length);
NPXLATE_API int32_t remote_punt_xlate_result(const void *logical, int32_t logical_length, void *physical,
                                             uint32_t *physical_length);

/* ---- SPAN forwarding (mirroring): table 22; sampling information: table 69 ---- */

/* SPAN forwarding, table 22: where a mirrored packet goes. Key: 4 bytes to 3; L1 is not carried. Result: 28 bytes to
 * 32; L4.7-3, L5-7, L16-17, L21-23 and L27 are not carried, the address in L8-13 and the value in L14-15 only when L4.2
 * is set. The result translator changes its input: a value above 128 in L18-19 becomes 128 there too, so the logical
 * record must be writable. What is carried reads back as it was, 32 bytes to 28. */
NPXLATE_API int32_t span_fwd_st_xlate_key(const void *logical, int32_t logical_length, void *physical,
                                          uint32_t *physical_length);
NPXLATE_API int32_t span_fwd_st_xlate_result(const void *logical, int32_t logical_length, void *physical,
                                             uint32_t *physical_length);
NPXLATE_API int32_t span_fwd_logical_xlate_result(const void *physical, int32_t physical_length, void *logical);

/* Sampling information, table 69. Key: 4 bytes to 3. Result: 9 bytes to 16. The rates (L0-1) 2048, 4096, 8192, 16384,
 * 32768 and 65535, the last standing for 65536, go out as rate / 1024 - 1 with P0.6 set, and then neither L2-3 nor L5-7
 * is carried; every other rate goes out as it is, with P0.5 set when it is above 255. L4 and L8.3-0 are never
 * carried. Table 69 reads back by generic_xlate_logical_result; the record's own reverse translator,
 * sample_nf_info_logical_res_xlate, stands in the slot of table 67 and is declared there. */
NPXLATE_API int32_t sample_nf_info_st_xlate_key(const void *logical, int32_t logical_length, void *physical,
                                                uint32_t *physical_length);
NPXLATE_API int32_t sample_nf_info_st_xlate_result(const void *logical, int32_t logical_length, void *physical,
                                                   uint32_t *physical_length);

/* ---- Policy-based-routing string: by name; platform-FIB record: by name ---- */

/* Policy-based-routing string, 34 bytes to 32, without clearing: sets the header bits P0.4 and P0.0, leaves the other
 * bits of P0, P1.7 and P6 as they are. P3-5 is 0 and L2-3 when L1.0 is set, otherwise L4-6. L0, L1.4 and L7 are not
 * carried. */
NPXLATE_API int32_t pbr_str_xlate_result(const void *logical, int32_t logical_length, void *physical,
                                         uint32_t *physical_length);

/* Platform-FIB record, without out-length, 32 bytes to 32, copied in place without clearing: P0.6 and P22-24 stay as
 * they are, P0.4-0 becomes the header 0x11. */
NPXLATE_API int32_t pifib_ez_xlate_result(const void *logical, int32_t logical_length, void *physical);

/* ---- Service configuration: table 88; external service: table 89; service node: by name; common flow: by name ---- */

/* Service configuration, table 88; external service, table 89; service node. Keys: 8 bytes to 8, for the external
 * service 32 bytes to 32, copied; the node's two key translators do the same. Results: 32 bytes to 32, copied but
 * for the header in P0.4-0. Tables 88 and 89 read back by generic_xlate_logical_result. */
NPXLATE_API int32_t rx_service_config_xlate_key(const void *logical, int32_t logical_length, void *physical,
                                                uint32_t *physical_length);
NPXLATE_API int32_t rx_service_config_xlate_result(const void *logical, int32_t logical_length, void *physical,
                                                   uint32_t *physical_length);
NPXLATE_API int32_t rx_service_external_xlate_key(const void *logical, int32_t logical_length, void *physical,
                                                  uint32_t *physical_length);
NPXLATE_API int32_t rx_service_external_xlate_result(const void *logical, int32_t logical_length, void *physical,
                                                     uint32_t *physical_length);
NPXLATE_API int32_t rx_service_node_xlate_key(const void *logical, int32_t logical_length, void *physical,
                                              uint32_t *physical_length);
NPXLATE_API int32_t rx_service_node_xlate_hash_key(const void *logical, int32_t logical_length, void *physical,
                                                   uint32_t *physical_length);
NPXLATE_API int32_t rx_service_node_xlate_result(const void *logical, int32_t logical_length, void *physical,
                                                 uint32_t *physical_length);

/* Common flow. Key: 32 bytes to 32: L0-3 and L4-7 big-endian, L21-31 copied, L8-20 not carried. Result: 32 bytes to 32,
 * copied but for the header in P0.4-0; L0.6, L1 except bits 6 and 4, and L6 are not carried, and L1.4 is ORed into P7.7
 * as well. */
NPXLATE_API int32_t rx_common_flow_key(const void *logical, int32_t logical_length, void *physical,
                                       uint32_t *physical_length);
NPXLATE_API int32_t rx_common_flow_xlate_result(const void *logical, int32_t logical_length, void *physical,
                                                uint32_t *physical_length);

/* ---- Video-monitoring flow: table 48; video-monitoring interface: table 49; video-monitoring RTP payload type:
 * table 84 ---- */

/* Video-monitoring flow, table 48, whose key and reverse translators are the generic ones. 24 bytes to 32, header 0x91,
 * byte order kept. L11-14 is carried when L0.7 is set, L18-23 when L0.6 is; when both are, L19-22 take the place of
 * L11-14. */
NPXLATE_API int32_t vidmon_str_xlate_result(const void *logical, int32_t logical_length, void *physical,
                                            uint32_t *physical_length);

/* Interface, table 49. Key: 6 bytes to 7, copied, then a 4. Result: 16 bytes to 16, header 0x31, byte order kept; L1-4,
 * L10 and L14 are not carried. Read back by generic_xlate_logical_result. */
NPXLATE_API int32_t vidmon_intf_hash_key_xlate_key(const void *logical, int32_t logical_length, void *physical,
                                                   uint32_t *physical_length);
NPXLATE_API int32_t vidmon_intf_str_xlate_result(const void *logical, int32_t logical_length, void *physical,
                                                 uint32_t *physical_length);

/* RTP payload type, table 84. Key: 2 bytes to 2, big-endian. Result: 4 bytes to 8, byte order kept. Read back by
 * generic_xlate_logical_result. */
NPXLATE_API int32_t vidmon_rtp_pt_xlate_key(const void *logical, int32_t logical_length, void *physical,
                                            uint32_t *physical_length);
NPXLATE_API int32_t vidmon_rtp_pt_xlate_result(const void *logical, int32_t logical_length, void *physical,
                                               uint32_t *physical_length);

/* ---- LI-MD: table 66 ---- */

/* LI-MD entries, table 66. Key: 2 bytes to 2: the 15-bit index from L0.1 up, least significant byte first. When L0.0 is
 * set the key translator changes its input: it adds 512 to the index there (modulo 32768) before it takes it, so the
 * logical key must be writable, and translating it again moves the index again. Result: 30 bytes to 32; P2-3 is the
 * complement of L2-3; L1.7-1 and L25 are not carried. Read back, 32 bytes to 30, each value of L2-3 to L20-21 is
 * byte-reversed and L22-29 is 0. */
NPXLATE_API int32_t li_md_st_xlate_key(const void *logical, int32_t logical_length, void *physical,
                                       uint32_t *physical_length);
NPXLATE_API int32_t li_md_st_xlate_result(const void *logical, int32_t logical_length, void *physical,
                                          uint32_t *physical_length);
NPXLATE_API int32_t li_md_logical_xlate_result(const void *physical, int32_t physical_length, void *logical);

/* ---- Platform table: table 46 ---- */

/* Platform table, table 46. Key: 5 bytes to 5: L0-3 big-endian, then L4. Result: 83 bytes to 32, in one of three
 * layouts: 1 when L0.0 or L3.1 is set; otherwise 3 when of L0.3, L0.4 and L0.5 only L0.5 is set; otherwise 2. Read back
 * by generic_xlate_logical_result. */
NPXLATE_API int32_t platform_xlate_pit_key(const void *logical, int32_t logical_length, void *physical,
                                           uint32_t *physical_length);
NPXLATE_API int32_t platform_xlate_pit_result(const void *logical, int32_t logical_length, void *physical,
                                              uint32_t *physical_length);

#ifdef __cplusplus
}
#endif

#endif
