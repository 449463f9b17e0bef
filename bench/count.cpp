// Translates every subject's records once for an instruction counter: run under Callgrind, which writes one part for
// each subject. scripts/instructions makes a table of them.

#include <valgrind/callgrind.h>

#include <cstdio>

#include "subject.h"

int main() {
    for (const bench::Subject& subject : bench::subjects()) {
        bench::Records records{subject};
        std::int32_t status = 0;
        records.with_call([&](auto call) {
            CALLGRIND_ZERO_STATS;
            for (std::size_t i = 0; i < bench::Records::count; ++i) {
                status |= call(i);
            }
            CALLGRIND_DUMP_STATS_AT(subject.name.c_str());
        });
        std::printf("%s\t%d\n", subject.name.c_str(), status);
    }
    return 0;
}
