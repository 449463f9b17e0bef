#include "npxlate/commands.h"

namespace tool {

void add_commands(Command app) {
    add_translate(app);
    add_build(app);
    add_batch(app);
    add_explain(app);
    add_roundtrip(app);
    add_diff(app);
    add_decode(app);
    add_audit(app);
    add_layout(app);
    add_find(app);
    add_tables(app);
    add_registers(app);
    add_atlas(app);
    add_names(app);
    add_vectors(app);
    add_verify(app);
}

}  // namespace tool
