// npxlate atlas: every record on one page of HTML.

#include "atlas/atlas.h"

#include <memory>
#include <optional>
#include <string>

#include "npxlate/commands.h"
#include "npxlate/names_option.h"
#include "npxlate/output.h"

namespace tool {
namespace {

struct Options {
    std::string file = "npxlate-atlas.html";
    NamesOption names;
};

}  // namespace

void add_atlas(Command app) {
    const Command command = app.add_subcommand("atlas", "Write a page that shows every record bit by bit");
    command.footer(
        "The page needs nothing but a browser, and no network.\n"
        "Example: npxlate atlas records.html");
    const auto options = std::make_shared<Options>();
    command.add_option("FILE", options->file, "Where to write it; - for standard output").show_default();
    options->names.add_to(command);
    command.callback([options] {
        const std::optional<names::Names> names = options->names.read();
        Output output{options->file};  // first: who mistyped the path should not wait for the page
        output.write(atlas::page(names ? &*names : nullptr));
        output.close();
    });
}

}  // namespace tool
