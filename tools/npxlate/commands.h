// The commands, each in a file of its own. A command adds itself to the application; its callback does the work and
// throws a Failure if it cannot.
#pragma once

#include "npxlate/command_line.h"

namespace tool {

void add_translate(Command app);  // key, result and reverse
void add_build(Command app);
void add_batch(Command app);
void add_explain(Command app);
void add_roundtrip(Command app);
void add_diff(Command app);
void add_decode(Command app);
void add_audit(Command app);
void add_layout(Command app);
void add_find(Command app);
void add_tables(Command app);
void add_registers(Command app);
void add_atlas(Command app);
void add_names(Command app);
void add_vectors(Command app);
void add_verify(Command app);

// All of them, in the order of the help.
void add_commands(Command app);

}  // namespace tool
