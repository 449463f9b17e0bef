// What ends a command early.
#pragma once

#include "io/error.h"

namespace tool {

using io::Failure;
using io::NotDone;
using io::WrongInput;

// What was asked is answered, and the answer is "they differ": exit status 1 without a message, as diff does.
struct RecordsDiffer : NotDone {
    RecordsDiffer() : NotDone{"the records differ"} {}
};

// A command whose status 1 says that records differ: whatever goes wrong in it ends with 2.
template <typename Command>
void run_as_comparison(const Command& command) {
    constexpr int trouble = 2;
    try {
        command();
    } catch (const RecordsDiffer&) {
        throw;
    } catch (const io::NobodyReads& failure) {
        throw io::NobodyReads{failure.what(), trouble};
    } catch (const Failure& failure) {
        throw Failure{trouble, failure.what()};
    }
}

}  // namespace tool
