#include "trace/traced.h"

#include <algorithm>
#include <utility>

// Their types do not matter here: they are only looked up.
#define TRACED(name) extern "C" void traced_##name();
#include "traced_table.inc"
#undef TRACED

namespace traced {
namespace {

struct Entry {
    std::string_view name;
    Function function;
};

constexpr Entry entries[] = {
#define TRACED(name) {#name, traced_##name},
#include "traced_table.inc"
#undef TRACED
};

}  // namespace

Function find(std::string_view name) {
    const Entry* found = std::ranges::find(entries, name, &Entry::name);
    return found == std::end(entries) ? nullptr : found->function;
}

}  // namespace traced
