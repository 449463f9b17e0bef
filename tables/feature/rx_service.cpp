// Receive services: configuration, table 88, external service, table 89, and service node, by name. Tables 88 and 89
// read back through the generic reverse.

#include "frame/helpers.h"

using namespace npxlate;

namespace {

constexpr Layout result{
    bits(P(0, 7, 5), L(0, 7, 5)),
    header_byte(P(0, 4, 0)),
    copied(P(1), L(1), 31),
};

// One operation under three names.
NPXLATE_INLINE std::int32_t service_result(const void* logical, void* physical, std::uint32_t* physical_length) {
    return place_only<result, 32, 32>(logical, physical, physical_length);
}

}  // namespace

std::int32_t rx_service_config_xlate_key(const void* logical, std::int32_t, void* physical,
                                         std::uint32_t* physical_length) {
    return copy_key<8>(logical, physical, physical_length);
}

std::int32_t rx_service_config_xlate_result(const void* logical, std::int32_t, void* physical,
                                            std::uint32_t* physical_length) {
    return service_result(logical, physical, physical_length);
}

std::int32_t rx_service_external_xlate_key(const void* logical, std::int32_t, void* physical,
                                           std::uint32_t* physical_length) {
    return copy_key<32>(logical, physical, physical_length);
}

std::int32_t rx_service_external_xlate_result(const void* logical, std::int32_t, void* physical,
                                              std::uint32_t* physical_length) {
    return service_result(logical, physical, physical_length);
}

std::int32_t rx_service_node_xlate_key(const void* logical, std::int32_t, void* physical,
                                       std::uint32_t* physical_length) {
    return copy_key<8>(logical, physical, physical_length);
}

std::int32_t rx_service_node_xlate_hash_key(const void* logical, std::int32_t, void* physical,
                                            std::uint32_t* physical_length) {
    return copy_key<8>(logical, physical, physical_length);
}

std::int32_t rx_service_node_xlate_result(const void* logical, std::int32_t, void* physical,
                                          std::uint32_t* physical_length) {
    return service_result(logical, physical, physical_length);
}
