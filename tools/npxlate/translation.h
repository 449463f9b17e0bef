// Calling a translator on a record whose length has been checked.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/catalogue.h"
#include "npxlate/hex.h"

namespace tool {

// Enough for every record, whichever way.
inline constexpr std::size_t most_record_bytes = NPXLATE_MAX_LOGICAL_LENGTH;

// The fourth argument of those reverse translators that take one.
struct FourthArgument {
    std::optional<std::uint32_t> type;
    std::optional<Bytes> key;
};

// Throws WrongInput unless the argument is just what the translator takes. The names are those under which the user
// gives the type and the key.
void check_argument(const catalogue::Translator& translator, const FourthArgument& argument, std::string_view type_name,
                    std::string_view key_name);

// The lengths that a record for the translator may have. Besides those of the catalogue this is the length of the
// record that the reverse of the same table fills, where that is the longer one: what was read back can go in again.
std::vector<catalogue::Lengths> accepted_lengths(const catalogue::Translator& translator);

// Throws WrongInput for any other length.
void check_length(const catalogue::Translator& translator, std::size_t length);

struct Reply {
    std::int32_t status = 0;
    std::optional<std::uint32_t> length;  // the out-length, if the translator stored it
    std::size_t size = 0;                 // the bytes of the record that came out
    bool translated = false;              // otherwise the record that came out is not to be used
};

// The record that went in may be changed. The record that comes out is not cleared before; it has room for
// most_record_bytes.
Reply translate(const catalogue::Translator& translator, std::uint8_t* in, std::size_t length, std::uint8_t* out,
                const FourthArgument& argument);

// Why a record was not translated.
std::string rejection(const catalogue::Translator& translator, const Reply& reply);

using catalogue::status_name;

}  // namespace tool
