// The tool as a function: parses the command line, runs the command, reports what goes wrong.
#pragma once

namespace tool {

// The exit status: 0, 1 if a record was not translated or the output not written, 2 for wrong input.
int run(int argc, const char* const* argv);

}  // namespace tool
