#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <fmt/core.h>

#include "io/entry.h"
#include "io/parallel.h"
#include "npxlate/batch.h"
#include "npxlate/entry_translator.h"
#include "npxlate/error.h"
#include "npxlate/output.h"

namespace tool {
namespace {

// A line that was not translated.
struct Refused {
    std::uint64_t number;
    std::string reason;
    std::string line{};                     // of one that is no JSON
    std::optional<io::BadJson> bad_json{};  // why it is none
    bool after_entry = false;               // an entry stands between it and the refused line before
};

// What became of a chunk of lines.
struct Translated {
    std::string text{};
    std::vector<Refused> refused{};
    std::uint64_t entries = 0;     // in the text
    bool ends_with_entry = false;  // behind the last refused line
    std::uint64_t lines = 0;
    std::size_t read = 0;
};

class ChunkTranslator {
public:
    explicit ChunkTranslator(const EntryTranslator::Options& options) : translator_{options} {}

    Translated translate(const io::Chunk& chunk) {
        done_ = {};
        done_.read = chunk.read;
        if (chunk.too_long) {
            ++done_.lines;
            refuse({chunk.first, fmt::format("expected a line of less than {} bytes", io::ChunkReader::longest_line)});
        }
        io::for_each_line(chunk, [this](std::uint64_t number, std::string_view line) { translate(number, line); });
        return std::move(done_);
    }

private:
    void translate(std::uint64_t number, std::string_view line) {
        ++done_.lines;
        if (line.find_first_not_of(" \t\r") == std::string_view::npos) {
            return;
        }
        try {
            translator_.translate(line, done_.text);
            ++done_.entries;
            done_.ends_with_entry = true;
        } catch (const io::BadJson& error) {
            refuse({number, error.what(), std::string{line}, error});
        } catch (const Failure& failure) {
            refuse({number, failure.what()});
        }
    }

    void refuse(Refused one) {
        one.after_entry = done_.ends_with_entry;
        done_.ends_with_entry = false;
        done_.refused.push_back(std::move(one));
    }

    EntryTranslator translator_;
    Translated done_;
};

}  // namespace

void translate_json_lines(const EntryTranslator::Options& options, InputStream& input, Output& output, unsigned threads,
                          Progress& progress) {
    const auto tell = [&progress](const std::string& message) {
        progress.clear();
        report(message);
    };
    io::BadLines bad_lines{tell};
    std::uint64_t translated = 0;
    std::uint64_t refused = 0;
    io::ChunkReader chunks{[&input](char* to, std::size_t room) { return input.read(to, room); }};
    io::PerThread<ChunkTranslator> translators{options};
    const auto translate = [&](const io::Chunk& chunk) { return translators.local().translate(chunk); };
    const auto take = [&](const Translated& done) {
        for (const Refused& one : done.refused) {
            if (one.after_entry || !one.bad_json) {
                bad_lines.done();
            }
            if (one.bad_json) {
                bad_lines.bad(one.number, one.line, *one.bad_json);
            } else {
                ++refused;
                tell(fmt::format("line {}: {}", one.number, one.reason));
            }
        }
        if (done.ends_with_entry) {
            bad_lines.done();
        }
        translated += done.entries;
        output.write(done.text);
        progress.advance(done.read, done.lines);
    };
    io::work_through<Translated>(chunks, threads, translate, take);
    bad_lines.done();
    output.close();
    refused += bad_lines.count();
    if (refused > 0) {
        progress.clear();
        throw NotDone{fmt::format("not translated: {} of {} entries", refused, translated + refused)};
    }
}

}  // namespace tool
