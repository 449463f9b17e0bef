// npxlate atlas: every record on one page of HTML.

#include "atlas/atlas.h"

#include <memory>
#include <string>

#include "npxlate/commands.h"
#include "npxlate/output.h"

namespace tool {

void add_atlas(Command app) {
    const Command command = app.add_subcommand("atlas", "Write a page that shows every record bit by bit");
    command.footer(
        "The page needs nothing but a browser, and no network.\n"
        "Example: npxlate atlas records.html");
    const auto file = std::make_shared<std::string>("npxlate-atlas.html");
    command.add_option("FILE", *file, "Where to write it; - for standard output").show_default();
    command.callback([file] {
        const std::string page = atlas::page();
        Output output{*file};
        output.write(page);
        output.close();
    });
}

}  // namespace tool
