// The public headers as a C++17 program sees them.
#include <npxlate/npxlate.h>
#include <npxlate/sizes.h>

#include <cstdint>
#include <type_traits>

static_assert(std::is_same_v<decltype(l2p_ucode_func_table[0].result), npxlate_result_fn*>);
static_assert(std::is_same_v<decltype(&rx_adjacency_type_logical_xlate_result), npxlate_reverse_fn*>);
static_assert(std::is_same_v<decltype(&ipmc_encap_logical_res_xlate), npxlate_reverse_by_type_fn*>);
static_assert(std::is_same_v<decltype(&esi_info_logical_res_xlate), npxlate_reverse_by_key_fn*>);
static_assert(std::is_same_v<decltype(npxlate_reverse_of_table_52()), npxlate_reverse_by_type_fn*>);
static_assert(std::is_same_v<decltype(npxlate_reverse_of_table_92()), npxlate_reverse_by_key_fn*>);

int main() {
    const unsigned char result[30] = {};
    unsigned char physical[NPXLATE_MAX_PHYSICAL_LENGTH];
    std::uint32_t length = 0;
    const bool done = l2p_ucode_func_table[4].result(result, sizeof result, physical, &length) == NPXLATE_OK;
    return done && length == npxlate_sizes_of_table(4)->result.physical_most && physical[0] == 0x91 ? 0 : 1;
}
