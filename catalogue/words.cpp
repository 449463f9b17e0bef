// The one wording of each trait and of each status.
#include "catalogue/catalogue.h"

namespace catalogue {

std::string_view to_string(Trait trait) {
    switch (trait) {
        case Trait::changes_input:
            return "changes_input";
        case Trait::keeps_length:
            return "keeps_length";
        case Trait::keeps_buffer:
            return "keeps_buffer";
        case Trait::takes_type:
            return "takes_type";
        case Trait::takes_key:
            return "takes_key";
        case Trait::checks_length:
            return "checks_length";
        case Trait::rejects_records:
            return "rejects_records";
        case Trait::hides_failures:
            return "hides_failures";
    }
    return "";
}

std::string_view words(Trait trait) {
    switch (trait) {
        case Trait::changes_input:
            return "changes its input";
        case Trait::keeps_length:
            return "does not store the out-length";
        case Trait::keeps_buffer:
            return "does not clear the whole record";
        case Trait::takes_type:
            return "takes a fourth argument, a pointer to the entry type";
        case Trait::takes_key:
            return "takes a fourth argument, the logical key of the entry";
        case Trait::checks_length:
            return "returns NPXLATE_INVALID for a length that it does not take";
        case Trait::rejects_records:
            return "returns another status than NPXLATE_OK for some records";
        case Trait::hides_failures:
            return "returns NPXLATE_OK even for a record that it rejects: only the out-length is not stored";
    }
    return "";
}

std::string_view status_name(std::int32_t status) {
    switch (status) {
        case NPXLATE_OK:
            return "NPXLATE_OK";
        case NPXLATE_INVALID:
            return "NPXLATE_INVALID";
        case NPXLATE_OUT_OF_RANGE:
            return "NPXLATE_OUT_OF_RANGE";
        case NPXLATE_NOT_SUPPORTED:
            return "NPXLATE_NOT_SUPPORTED";
        default:
            return "unknown";
    }
}

std::string_view status_words(std::int32_t status) {
    switch (status) {
        case NPXLATE_OK:
            return "translated";
        case NPXLATE_INVALID:
            return "a length or a type that the table does not take";
        case NPXLATE_OUT_OF_RANGE:
            return "more than 4 segment identifiers";
        case NPXLATE_NOT_SUPPORTED:
            return "a combination of flags that the table does not take";
        default:
            return "not a status of this library";
    }
}

}  // namespace catalogue
