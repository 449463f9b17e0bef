// npxlate registers: what the bring-up of an engine writes.

#include <iterator>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include <fmt/core.h>
#include <npxlate/npxlate.h>
#include <nlohmann/json.hpp>

#include "npxlate/commands.h"
#include "npxlate/drawing.h"
#include "npxlate/error.h"
#include "npxlate/output.h"
#include "npxlate/suggest.h"

namespace tool {
namespace {

struct Engine {
    std::string_view name;
    std::span<const npxlate_register> registers;
};

const Engine engines[] = {
    {"parse", quill_to_topparse_mregs},
    {"resolve", quill_to_topresolve_mregs},
    {"learn", quill_to_toplearn_mregs},
};

const Engine& find_engine(std::string_view name) {
    for (const Engine& engine : engines) {
        if (engine.name == name) {
            return engine;
        }
    }
    throw WrongInput{fmt::format("there is no engine \"{}\": expected parse, resolve or learn{}", printable(name),
                                 did_you_mean(name, {"parse", "resolve", "learn"}))};
}

Json as_json(const Engine& engine) {
    Json registers = Json::array();
    for (const npxlate_register& one : engine.registers) {
        registers.push_back({{"index", registers.size()}, {"number", one.number}, {"value", one.value}});
    }
    return {{"engine", engine.name}, {"registers", std::move(registers)}};
}

std::string as_text(const Engine& engine) {
    std::string text = heading(fmt::format("{:>5}  {:>6}  {:>10}", "index", "number", "value"), style_of_stdout());
    for (std::size_t i = 0; i < engine.registers.size(); ++i) {
        text += fmt::format("{:>5}  {:>6}  0x{:08x}\n", i, engine.registers[i].number, engine.registers[i].value);
    }
    return text;
}

}  // namespace

void add_registers(Command app) {
    struct Options {
        std::string engine;
        bool json = false;
    };
    const Command command = app.add_subcommand("registers", "List the register writes of an engine's bring-up");
    command.footer("Example: npxlate registers parse");
    const auto options = std::make_shared<Options>();
    command.add_option("ENGINE", options->engine, "parse, resolve or learn").required();
    command.add_flag("--json", options->json, "As JSON");
    command.callback([options] {
        const Engine& engine = find_engine(options->engine);
        if (options->json) {
            print_json(as_json(engine));
        } else {
            print(as_text(engine));
        }
    });
}

}  // namespace tool
