#include "npxlate/commands.h"

namespace tool {

void add_commands(CLI::App& app) { add_tables(app); }

}  // namespace tool
