// What ends a command early. The message is one line and says what was expected.
#pragma once

#include <stdexcept>
#include <string>

namespace io {

struct Failure : std::runtime_error {
    Failure(int status, const std::string& message) : std::runtime_error{message}, exit_status{status} {}
    int exit_status;
};

// The user's input cannot be used: exit status 2.
struct WrongInput : Failure {
    explicit WrongInput(const std::string& message) : Failure{2, message} {}
};

// The input is in order, but was not (or not wholly) translated, or the output could not be written: exit status 1.
struct NotDone : Failure {
    explicit NotDone(const std::string& message) : Failure{1, message} {}
};

// Nobody reads the output any more, as in `npxlate tables | head`. That is no error to tell anybody.
struct NobodyReads : Failure {
    explicit NobodyReads(const std::string& message, int status = 1) : Failure{status, message} {}
};

}  // namespace io
