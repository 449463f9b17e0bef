#include "names/import.h"

#include <algorithm>

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace names {
namespace {

using catalogue::Role;
using catalogue::Translator;

std::string described(const Structure& structure) {
    return fmt::format("{} {} of {} bytes{}{}", structure.kind, structure.name, structure.size,
                       structure.declared_at.empty() ? "" : " at " + structure.declared_at,
                       structure.unit.empty() ? "" : " (in " + structure.unit + ")");
}

bool ends_with_path(const std::string& path, const std::string& end) {
    return path.ends_with(end) && (path.size() == end.size() || path[path.size() - end.size() - 1] == '/');
}

Structure choose(const ImportRequest& request, std::size_t bytes) {
    std::vector<Structure> found = read_structures(request.elf, request.structure, bytes);
    if (!request.unit.empty()) {
        std::erase_if(found, [&](const Structure& one) { return !ends_with_path(one.unit, request.unit); });
    }
    if (found.empty()) {
        throw Error{fmt::format("{} has no structure \"{}\"{}: npxlate names list --elf shows those it has",
                                request.elf.path, request.structure,
                                request.unit.empty() ? "" : " in " + request.unit)};
    }
    if (found.size() > 1) {
        std::vector<std::string> all;
        all.reserve(found.size());
        for (const Structure& one : found) {
            all.push_back(described(one));
        }
        throw Error{fmt::format("{} has several structures \"{}\": expected the whole name or --unit for one of {}",
                                request.elf.path, request.structure, fmt::join(all, "; "))};
    }
    return std::move(found.front());
}

Field field_of(const Member& member) {
    return {member.path, member.bits, member.style, member.words, member.in_union, {}};
}

void apply(Record& record, const std::string& name, const std::string& text) {
    const auto field = std::ranges::find(record.fields, name, &Field::name);
    if (field == record.fields.end()) {
        throw Error{fmt::format("there is no name \"{}\" in this structure", name)};
    }
    const std::optional<Style> style = style_of(text);
    if (!style || *style == Style::words) {
        throw Error{fmt::format("{}: expected number, signed, hex, flag, label, ipv4, ipv6, mac or bytes, found \"{}\"",
                                name, text)};
    }
    try {
        check_style(*style, field->bits);
    } catch (const Error& error) {
        throw Error{fmt::format("{}: {}", name, error.what())};
    }
    field->style = *style;
    field->words.clear();
}

}  // namespace

Imported import(const ImportRequest& request) {
    Record record;
    record.translator = request.translator;
    record.table = request.table;
    const std::size_t longest = longest_record(*request.translator, request.table);
    record.size = request.size != 0 ? request.size : longest;
    if (!request.translator->in().allows(record.size) && record.size != longest) {
        throw Error{fmt::format("{} takes no logical record of {} bytes", request.translator->name, record.size)};
    }
    Structure structure = choose(request, record.size);
    if (request.size == 0 && structure.size < longest) {
        // A record of any length has the structure's; one that the reverse fills further has the one that is read.
        record.size = std::max(request.translator->in().least, std::min(structure.size, request.translator->in().most));
        structure = choose(request, record.size);
    }
    if (structure.size < record.size) {
        throw Error{fmt::format("{} is smaller than the {} of {}, which has {} bytes", described(structure),
                                catalogue::to_string(request.translator->role), request.translator->name, record.size)};
    }
    if (structure.members.empty()) {
        throw Error{fmt::format("{} has no members that can be named", described(structure))};
    }
    std::ranges::transform(structure.members, std::back_inserter(record.fields), field_of);
    try {
        static_cast<void>(Names::parse(write(record), "as names"));
    } catch (const Error& error) {
        throw Error{
            fmt::format("the debug information of {} contradicts itself: {}", described(structure), error.what())};
    }
    for (const auto& [name, style] : request.as) {
        apply(record, name, style);
    }
    return {std::move(structure), std::move(record)};
}

std::string write(const Imported& imported) {
    const Structure& structure = imported.structure;
    std::string text = fmt::format("# {} {} of {} bytes{}\n", structure.kind, structure.name, structure.size,
                                   structure.declared_at.empty() ? "" : ", " + structure.declared_at);
    for (const std::string& left_out : structure.left_out) {
        text += fmt::format("# Left out: {}\n", left_out);
    }
    return text + write(imported.record);
}

std::vector<Fit> tables_for(std::size_t structure_size) {
    std::vector<Fit> fits;
    for (unsigned table = 0; table < NPXLATE_TABLE_COUNT; ++table) {
        for (const Role role : {Role::key, Role::result}) {
            const Translator& translator = catalogue::of_table(table, role);
            const std::size_t size = translator.in().most;
            if (!translator.in().fixed()) {
                continue;
            }
            for (const std::size_t alignment : {1U, 2U, 4U, 8U}) {
                if ((size + alignment - 1) / alignment * alignment == structure_size) {
                    fits.push_back({table, role, size, structure_size - size});
                    break;
                }
            }
        }
    }
    return fits;
}

}  // namespace names
