#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include <fmt/core.h>

#include "io/parallel.h"
#include "npxlate/batch.h"
#include "npxlate/error.h"
#include "npxlate/lookup.h"
#include "npxlate/taken.h"

namespace tool {
namespace {

// One record; what comes out is appended to a block of zeros with room for it.
class RawTranslator {
public:
    RawTranslator(Rejected rejected, const FourthArgument& argument) : rejected_{rejected}, argument_{argument} {}

    // The bytes that are taken of the room. Says why, if the record was rejected.
    std::size_t translate(const RawRecord& record, char* in, char* out, std::string& reason) {
        const catalogue::Translator& translator = *record.translator;
        auto* from = reinterpret_cast<std::uint8_t*>(in);
        std::size_t length = record.length;
        try {
            if (length < translator.in().least) {
                short_form_.assign(from, from + length);
                check_record(translator, short_form_);
                from = short_form_.data();
                length = short_form_.size();
            }
            const Reply reply =
                tool::translate(translator, from, length, reinterpret_cast<std::uint8_t*>(out), argument_);
            if (reply.translated) {
                return reply.size;
            }
            reason = rejection(translator, reply);
        } catch (const WrongInput& error) {
            reason = error.what();
        }
        const std::size_t place = translator.out().fixed() ? translator.out().most : length;
        std::fill_n(out, most_record_bytes, '\0');
        return rejected_ == Rejected::zeros ? place : 0;
    }

private:
    Rejected rejected_;
    const FourthArgument& argument_;
    Bytes short_form_;
};

// A record that was not translated.
struct Failed {
    std::uint64_t index;
    std::uint64_t offset;
    std::string reason;
};

// What became of a chunk of entries.
struct Translated {
    std::vector<char> bytes{};
    std::vector<Failed> failed{};
    std::uint64_t entries = 0;
    std::uint64_t records_end = 0;  // the number of the record behind its last
    std::size_t read = 0;
};

class EntriesTranslator {
public:
    EntriesTranslator(std::span<const RawRecord> entry, Rejected rejected, const FourthArgument& argument)
        : entry_{entry}, translator_{rejected, argument} {}

    Translated translate(const io::Chunk& chunk) {
        Translated done;
        done.read = chunk.read;
        std::uint64_t index = chunk.first * entry_.size();
        std::uint64_t offset = chunk.first * entry_bytes(entry_);
        in_.assign(chunk.bytes.begin(), chunk.bytes.end());  // which a translator may change
        std::size_t written = 0;
        std::size_t at = 0;
        std::size_t next = 0;  // of the entry's records
        while (at + entry_[next].length <= in_.size()) {
            if (done.bytes.size() < written + most_record_bytes) {
                done.bytes.resize(2 * written + most_record_bytes);
            }
            std::string reason;
            written += translator_.translate(entry_[next], in_.data() + at, done.bytes.data() + written, reason);
            if (!reason.empty()) {
                done.failed.push_back({index, offset, reason});
            }
            at += entry_[next].length;
            offset += entry_[next].length;
            ++index;
            next = (next + 1) % entry_.size();
            done.entries += next == 0 ? 1 : 0;
        }
        if (at != in_.size() || next != 0) {
            done.failed.push_back({index++, offset,
                                   fmt::format("the input ends within {}: expected {} for {}, found {}",
                                               next == 0 ? "a record" : "an entry", describe(entry_[next].length),
                                               entry_[next].translator->name, describe(in_.size() - at))});
        }
        done.bytes.resize(written);
        done.records_end = index;
        return done;
    }

    static std::size_t entry_bytes(std::span<const RawRecord> entry) {
        std::size_t bytes = 0;
        for (const RawRecord& record : entry) {
            bytes += record.length;
        }
        return bytes;
    }

private:
    std::span<const RawRecord> entry_;
    RawTranslator translator_;
    std::vector<char> in_;
};

}  // namespace

void translate_raw(std::span<const RawRecord> entry, Rejected rejected, const FourthArgument& argument,
                   InputStream& input, Output& output, unsigned threads, Progress& progress) {
    io::ChunkReader chunks{[&input](char* to, std::size_t room) { return input.read(to, room); },
                           EntriesTranslator::entry_bytes(entry)};
    io::PerThread<EntriesTranslator> translators{entry, rejected, argument};
    std::uint64_t records = 0;
    std::uint64_t failed = 0;
    const auto translate = [&](const io::Chunk& chunk) { return translators.local().translate(chunk); };
    const auto take = [&](const Translated& done) {
        for (const Failed& one : done.failed) {
            progress.clear();
            report(fmt::format("record {} (offset {}): {}", one.index, one.offset, one.reason));
        }
        failed += done.failed.size();
        records = done.records_end;
        output.write({done.bytes.data(), done.bytes.size()});
        progress.advance(done.read, done.entries);
    };
    io::work_through<Translated>(chunks, threads, translate, take);
    output.close();
    if (failed > 0) {
        throw NotDone{fmt::format("not translated: {} of {} records", failed, records)};
    }
}

}  // namespace tool
