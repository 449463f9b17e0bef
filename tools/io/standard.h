// The three standard streams, which may be closed, full, broken or not ready.
#pragma once

#include <string_view>

namespace io {

// To be called first of all. In place of a standard stream that is closed it opens one that refuses to be read or
// written, so that no file which is opened later gets its number and then what was meant for the stream. A reader that
// goes away and a file that may not grow become errors of the write, not signals.
void prepare_standard_streams();

// Writes all of it, waiting where the descriptor is not ready. Returns 0, or the system's number of the error.
int write_all(int descriptor, std::string_view text) noexcept;

// To standard error. What cannot be written there cannot be told to anybody either, and is dropped.
void to_standard_error(std::string_view text) noexcept;

}  // namespace io
