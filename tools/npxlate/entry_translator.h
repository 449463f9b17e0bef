// One entry of a batch. Each thread needs a translator of its own.
#pragma once

#include <array>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "decode/decode.h"
#include "io/entry.h"
#include "names/names.h"
#include "npxlate/translation.h"

namespace tool {

class EntryTranslator {
public:
    struct Options {
        const names::Names* names = nullptr;  // by which entries may give records; must stay as long as the translator
        bool decode = false;                  // from physical records to what would have to be programmed
    };

    explicit EntryTranslator(const Options& options);

    // Appends the translated entry and a line end to the text. Throws a Failure, with the text as it was, for an entry
    // that cannot be translated; a BadJson for a line that is none.
    void translate(std::string_view line, std::string& text);

private:
    // What the tool knows of an entry; all other members pass through.
    enum Known {
        table,
        type,
        logical_key,
        key,
        result,
        key_fields,
        fields,
        physical_key,
        physical_result,
        logical_result,
        known_count
    };
    static const std::array<std::string_view, known_count> names;

    // A record and what its translation is called.
    struct Step {
        Known from;
        Known to;
        catalogue::Role role;
        bool by_name = false;  // the values of names and positions, which stay in the entry
    };
    static const std::array<Step, 5> steps;
    static const std::array<Step, 2> decoding;
    std::span<const Step> all_steps() const;

    const io::Entry::Member* member(Known known) const { return members_[known]; }
    void find_members();
    void check() const;
    const Step* step_of(const io::Entry::Member& member) const;
    const catalogue::Translator& translator_for(catalogue::Role role);
    FourthArgument argument_for(const catalogue::Translator& translator);
    void write_record(std::string& text, const Step& step);
    void write_decoded(std::string& text, const Step& step);
    void read_fields(const Step& step, const catalogue::Translator& translator);
    void read_hex(Known known, Bytes& bytes);

    Options options_;
    std::map<const catalogue::Translator*, std::unique_ptr<decode::Decoder>> decoders_{};
    std::array<std::array<const catalogue::Translator*, 3>, NPXLATE_TABLE_COUNT> of_table_{};
    io::Entry entry_;
    std::array<const io::Entry::Member*, known_count> members_{};
    std::string storage_;
    Bytes in_;
    std::array<std::uint8_t, most_record_bytes> out_{};
};

}  // namespace tool
