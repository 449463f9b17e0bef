// The commands, each in a file of its own. A command adds itself to the application; its callback does the work and
// throws a Failure if it cannot.
#pragma once

namespace CLI {
class App;
}

namespace tool {

void add_translate(CLI::App& app);  // key, result and reverse
void add_build(CLI::App& app);
void add_batch(CLI::App& app);
void add_explain(CLI::App& app);
void add_roundtrip(CLI::App& app);
void add_diff(CLI::App& app);
void add_decode(CLI::App& app);
void add_audit(CLI::App& app);
void add_layout(CLI::App& app);
void add_find(CLI::App& app);
void add_tables(CLI::App& app);
void add_registers(CLI::App& app);
void add_atlas(CLI::App& app);
void add_names(CLI::App& app);
void add_vectors(CLI::App& app);
void add_verify(CLI::App& app);

// All of them, in the order of the help.
void add_commands(CLI::App& app);

}  // namespace tool
