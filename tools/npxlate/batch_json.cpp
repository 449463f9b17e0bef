#include <string>
#include <string_view>

#include <fmt/format.h>

#include "io/entry.h"
#include "npxlate/batch.h"
#include "npxlate/entry_translator.h"
#include "npxlate/error.h"
#include "npxlate/output.h"

namespace tool {

void translate_json_lines(const names::Names* names, InputStream& input, Output& output, Progress& progress) {
    LineReader reader{input};
    EntryTranslator translator{names};
    const auto tell = [&progress](const std::string& message) {
        progress.clear();
        report(message);
    };
    io::BadLines bad_lines{tell};
    std::uint64_t line_number = 0;
    std::uint64_t translated = 0;
    std::uint64_t refused = 0;
    const auto refuse = [&](std::string_view reason) {
        bad_lines.done();
        ++refused;
        tell(fmt::format("line {}: {}", line_number, reason));
    };
    std::string_view line;
    std::string text;
    while (true) {
        const LineReader::Got got = reader.next(line);
        if (got == LineReader::Got::end) {
            break;
        }
        ++line_number;
        if (got == LineReader::Got::too_long) {
            refuse(fmt::format("expected a line of less than {} bytes", LineReader::longest_line));
        } else if (line.find_first_not_of(" \t\r") != std::string_view::npos) {
            text.clear();
            try {
                translator.translate(line, text);
            } catch (const io::BadJson& error) {
                bad_lines.bad(line_number, line, error);
            } catch (const Failure& failure) {
                refuse(failure.what());
            }
            if (!text.empty()) {
                bad_lines.done();
                ++translated;
                output.write(text);
            }
        }
        progress.advance(line.size() + 1, 1);
    }
    bad_lines.done();
    output.close();
    refused += bad_lines.count();
    if (refused > 0) {
        progress.clear();
        throw NotDone{fmt::format("not translated: {} of {} entries", refused, translated + refused)};
    }
}

}  // namespace tool
