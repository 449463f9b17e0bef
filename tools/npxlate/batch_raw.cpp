#include <algorithm>
#include <vector>

#include <fmt/format.h>

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

}  // namespace

void translate_raw(std::span<const RawRecord> entry, Rejected rejected, const FourthArgument& argument,
                   InputStream& input, Output& output, Progress& progress) {
    constexpr std::size_t block_bytes = std::size_t{1} << 18;
    std::size_t entry_bytes = 0;
    for (const RawRecord& record : entry) {
        entry_bytes += record.length;
    }
    const std::size_t entries_a_block = std::max<std::size_t>(block_bytes / entry_bytes, 1);
    std::vector<char> in(entries_a_block * entry_bytes);
    std::vector<char> out(entries_a_block * entry.size() * most_record_bytes);
    RawTranslator translator{rejected, argument};
    std::uint64_t index = 0;
    std::uint64_t offset = 0;
    std::uint64_t failed = 0;
    const auto tell = [&](const std::string& reason) {
        ++failed;
        progress.clear();
        report(fmt::format("record {} (offset {}): {}", index, offset, reason));
    };
    std::string reason;
    for (std::size_t filled = in.size(); filled == in.size();) {
        filled = input.fill(in.data(), in.size());
        std::ranges::fill(out, '\0');
        std::size_t written = 0;
        std::size_t at = 0;
        std::size_t next = 0;  // of the entry's records
        while (at + entry[next].length <= filled) {
            reason.clear();
            written += translator.translate(entry[next], in.data() + at, out.data() + written, reason);
            if (!reason.empty()) {
                tell(reason);
            }
            at += entry[next].length;
            offset += entry[next].length;
            ++index;
            next = (next + 1) % entry.size();
        }
        output.write({out.data(), written});
        progress.advance(filled, filled / entry_bytes);
        if (at != filled || next != 0) {
            tell(fmt::format("the input ends within {}: expected {} for {}, found {}",
                             next == 0 ? "a record" : "an entry", describe(entry[next].length),
                             entry[next].translator->name, describe(filled - at)));
            ++index;
        }
    }
    output.close();
    if (failed > 0) {
        throw NotDone{fmt::format("not translated: {} of {} records", failed, index)};
    }
}

}  // namespace tool
