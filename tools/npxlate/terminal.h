// What can be shown on a terminal.
#pragma once

#include <cstddef>

namespace tool {

// Whether the descriptor is that of a terminal.
bool is_terminal(int descriptor);

// Whether it is a terminal that understands more than text: one that TERM names, and not "dumb".
bool moves_and_colours(int descriptor);

// Whether it is one that, besides, is said to take UTF-8.
bool draws_boxes(int descriptor);

// The columns of a line: those of the terminal, if it is one and says so, but no more than the 80 of a printed page.
std::size_t line_width(int descriptor);

}  // namespace tool
