// npxlate key, result and reverse: one record.

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <string>

#include <fmt/core.h>
#include <nlohmann/json.hpp>

#include "catalogue/catalogue.h"
#include "npxlate/commands.h"
#include "npxlate/error.h"
#include "npxlate/input.h"
#include "npxlate/lookup.h"
#include "npxlate/options.h"
#include "npxlate/output.h"
#include "npxlate/taken.h"
#include "npxlate/translation.h"

namespace tool {
namespace {

using catalogue::Role;
using catalogue::Translator;

struct Options {
    std::string table_or_name;
    RecordSource source;
    ArgumentOptions argument;
    TxAdjKeyMaxOption tx_adj_key_max;
    bool json = false;
};

// The translation of one record, and what there is to say about it.
struct Translated {
    Reply reply;
    Bytes out;   // over zeros
    Bytes kept;  // the bits of it that the translator does not write
    Bytes in;    // afterwards
    bool in_changed = false;
};

Translated translate_record(const Translator& translator, const Bytes& record, const FourthArgument& argument) {
    const auto over = [&](std::uint8_t before, Bytes& in, Reply& reply) {
        in = record;
        in.reserve(1);  // an address also for an empty record
        Bytes out(most_record_bytes, before);
        reply = translate(translator, in.data(), in.size(), out.data(), argument);
        out.resize(reply.size);
        return out;
    };
    Translated result;
    Reply reply_over_ones;
    result.kept = over(0xff, result.in, reply_over_ones);
    result.out = over(0x00, result.in, result.reply);
    std::ranges::transform(result.kept, result.out, result.kept.begin(),
                           [](std::uint8_t a, std::uint8_t b) { return static_cast<std::uint8_t>(a ^ b); });
    result.in_changed = result.in != record;
    return result;
}

bool any(const Bytes& bytes) {
    return std::ranges::any_of(bytes, [](std::uint8_t byte) { return byte != 0; });
}

Json to_json(const Translator& translator, const Translated& translated) {
    const Reply& reply = translated.reply;
    Json json{{"translator", translator.name}, {"status", reply.status}, {"status_name", status_name(reply.status)}};
    json["length"] = reply.length ? Json(*reply.length) : Json(nullptr);
    json["bytes"] = reply.translated ? Json(to_hex(translated.out)) : Json(nullptr);
    if (reply.translated && any(translated.kept)) {
        json["not_written"] = to_hex(translated.kept);
    }
    if (translated.in_changed) {
        json["input"] = to_hex(translated.in);
    }
    return json;
}

// What the hex alone does not say.
void note_surprises(const Translator& translator, const Translated& translated) {
    const Reply& reply = translated.reply;
    if (reply.translated && translator.role != Role::reverse) {
        if (!reply.length) {
            note(fmt::format("{} does not store the length of its record, which has {}", translator.name,
                             describe(translated.out.size())));
        } else if (*reply.length != translated.out.size()) {
            note(fmt::format("{} stores the length {}, but its record has {}", translator.name, *reply.length,
                             describe(translated.out.size())));
        }
    }
    if (any(translated.kept)) {
        note(fmt::format("{} leaves the bits {} of its record as they were; they are shown as 0", translator.name,
                         to_hex(translated.kept)));
    }
    if (translated.in_changed) {
        note(fmt::format("{} changed the record that went in, to {}", translator.name, to_hex(translated.in)));
    }
}

void run(Role role, const Options& options) {
    const Translator& translator = find_translator(options.table_or_name, role);
    const FourthArgument argument = options.argument.read();
    check_argument(translator, argument, "--type", "--key");
    options.tx_adj_key_max.apply({&translator});
    Bytes record = read_record(options.source);
    check_record(translator, record);

    const Translated translated = translate_record(translator, record, argument);
    if (options.json) {
        print_json(to_json(translator, translated));
    } else {
        if (translated.reply.translated) {
            print(to_hex(translated.out) + "\n");
        }
        note_surprises(translator, translated);
    }
    if (!translated.reply.translated) {
        throw NotDone{rejection(translator, translated.reply)};
    }
}

void add_role(Command app, Role role, const char* description, const char* example) {
    const std::string name{catalogue::to_string(role)};
    const Command command = app.add_subcommand(name, description);
    command.footer(example);
    const auto options = std::make_shared<Options>();
    command.add_option("TABLE_OR_NAME", options->table_or_name, table_or_name_help).required();
    add_record_source(command, options->source);
    options->argument.add_to(command);
    options->tx_adj_key_max.add_to(command);
    command.add_flag("--json", options->json, "Status, length and bytes as JSON");
    command.callback([role, options] { run(role, *options); });
}

}  // namespace

void add_translate(Command app) {
    add_role(app, Role::key, "Translate a logical key into the physical one", "Example: npxlate key 5 01 02 03");
    add_role(app, Role::result, "Translate a logical result into the physical one",
             "Example: npxlate result vrrp_vmac_entry_st_xlate_result 00:00:00:00:01:02:03:04");
    add_role(app, Role::reverse, "Translate a physical result back into the logical one",
             "Example: npxlate reverse 17 --file entry.hex");
}

}  // namespace tool
