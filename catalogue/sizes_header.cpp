#include "catalogue/sizes_header.h"

#include "catalogue/catalogue.h"

namespace catalogue {
namespace {

constexpr const char* head =
    R"(/* The sizes of every table's records, and the statuses in words; beside npxlate.h, which says what they are.
 * Made by `scripts/sizes`: change what it makes them of, not this file. */
#ifndef NPXLATE_SIZES_H
#define NPXLATE_SIZES_H

#include <npxlate/npxlate.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Bytes of a logical record and of the physical record that belongs to it: two sizes each, equal but for a few records
 * whose length the caller gives. */
struct npxlate_record_sizes {
    uint8_t logical_least;
    uint8_t logical_most;
    uint8_t physical_least;
    uint8_t physical_most;
};

/* What a table's key, result and reverse translators take and make. */
struct npxlate_table_sizes {
    struct npxlate_record_sizes key;
    struct npxlate_record_sizes result;
    struct npxlate_record_sizes reverse;
};

/* clang-format off */
/* The sizes of a table's records; null for a number that is no table id. */
static inline const struct npxlate_table_sizes *npxlate_sizes_of_table(unsigned table) {
    static const struct npxlate_table_sizes sizes[NPXLATE_TABLE_COUNT] = {
)";

constexpr const char* middle = R"(    };
#ifdef __cplusplus
    return table < NPXLATE_TABLE_COUNT ? &sizes[table] : nullptr;
#else
    return table < NPXLATE_TABLE_COUNT ? &sizes[table] : 0;
#endif
}
/* clang-format on */

/* A status in words. */
static inline const char *npxlate_status_text(int32_t status) {
    switch (status) {
)";

constexpr const char* foot = R"(    }
}

#ifdef __cplusplus
}
#endif

#endif
)";

constexpr std::int32_t statuses[] = {NPXLATE_OK, NPXLATE_INVALID, NPXLATE_OUT_OF_RANGE, NPXLATE_NOT_SUPPORTED};

std::string of_record(const Translator& translator) {
    std::string text;
    for (const Lengths& lengths : {translator.logical, translator.physical}) {
        for (const std::size_t length : {lengths.least, lengths.most}) {
            text += (text.empty() ? "{" : ", ") + std::to_string(length);
        }
    }
    return text + "}";
}

}  // namespace

std::string sizes_header() {
    std::string text = head;
    for (unsigned table = 0; table < NPXLATE_TABLE_COUNT; ++table) {
        text += "        {" + of_record(of_table(table, Role::key)) + ", " + of_record(of_table(table, Role::result)) +
                ", " + of_record(of_table(table, Role::reverse)) + "}, /* " + std::to_string(table) + " */\n";
    }
    text += middle;
    for (const std::int32_t status : statuses) {
        text += "        case " + std::string{status_name(status)} + ":\n            return \"" +
                std::string{status_words(status)} + "\";\n";
    }
    // Any number that is none of them.
    text += "        default:\n            return \"" + std::string{status_words(-1)} + "\";\n";
    return text + foot;
}

}  // namespace catalogue
