// What the forms of a translator say of records, against what the library does with them.

#include "forms/forms.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>

#include "catalogue/call.h"
#include "catalogue/example.h"
#include "forms/conditions.h"
#include "forms/exact.h"

namespace {

namespace trace = npxlate::trace;

using catalogue::Translator;
using forms::BitId;
using forms::Form;
using forms::Forms;
using forms::Given;

using Bytes = std::vector<std::uint8_t>;

bool bit_at(const Bytes& bytes, std::size_t bit) { return (bytes.at(bit / 8) >> bit % 8 & 1) != 0; }

void expect_as_the_library_does(const Translator& translator, const Bytes& record, const Bytes& buffer,
                                std::uint32_t argument) {
    Bytes in = record;
    in.reserve(1);
    Bytes out = buffer;
    constexpr std::uint32_t not_stored = 0xffffffff;
    std::uint32_t length = not_stored;
    const std::int32_t status = catalogue::call(translator, in.data(), static_cast<std::int32_t>(record.size()),
                                                out.data(), &length, catalogue::Argument{argument});

    const Forms& forms = forms::forms_of(translator, static_cast<std::int32_t>(record.size()));
    const Given given{.in = record, .out = buffer, .argument = argument};
    std::size_t holding = 0;
    for (const Form& form : forms.all()) {
        holding += forms.diagrams().holds(form.condition, [&](BitId id) { return given.bit(id); }) ? 1 : 0;
    }
    ASSERT_EQ(holding, 1U);
    const Form& form = forms.of(given);
    SCOPED_TRACE(form.name);
    ASSERT_EQ(form.status, status);
    ASSERT_EQ(form.length.value_or(not_stored), length);
    for (std::size_t bit = 0; bit < 8 * out.size(); ++bit) {
        const bool said = bit < form.out.size() ? forms.value(form.out[bit], given) : bit_at(buffer, bit);
        ASSERT_EQ(said, bit_at(out, bit)) << "output bit " << bit / 8 << "." << bit % 8;
    }
    for (std::size_t bit = 0; bit < 8 * in.size(); ++bit) {
        const auto changed = form.in_after.find(static_cast<std::uint16_t>(bit));
        const bool said = changed == form.in_after.end() ? bit_at(record, bit) : forms.value(changed->second, given);
        ASSERT_EQ(said, bit_at(in, bit)) << "input bit " << bit / 8 << "." << bit % 8 << " after the call";
    }
}

class OfTranslator : public testing::TestWithParam<const Translator*> {};

TEST_P(OfTranslator, SayOfEveryRecordWhatTheLibraryDoes) {
    const Translator& translator = *GetParam();
    std::mt19937_64 random{7};
    const auto byte = [&] { return static_cast<std::uint8_t>(random()); };
    const auto sparse_byte = [&] {
        std::uint8_t set = byte();
        set &= byte();
        set &= byte();
        return set;
    };
    const catalogue::Lengths& lengths = translator.in();
    constexpr unsigned records = 10'000;
    for (unsigned number = 0; number < records; ++number) {
        // Records of every sample, and records of nothing but chance, dense and sparse.
        const catalogue::Sample& sample = translator.samples[number % translator.samples.size()];
        Bytes record = number % 2 == 0 ? example(translator, sample, number) : Bytes(lengths.most);
        if (number % 2 != 0) {
            std::ranges::generate(record, [&] { return number % 4 == 1 ? byte() : sparse_byte(); });
        }
        record.resize(lengths.least + random() % (lengths.most - lengths.least + 1));
        const std::uint32_t arguments[] = {sample.argument, static_cast<std::uint32_t>(random() % 8), 0xff, 0x100};
        Bytes buffer(translator.out().most + 16);
        std::ranges::generate(buffer, byte);
        ASSERT_NO_FATAL_FAILURE(expect_as_the_library_does(translator, record, buffer, arguments[random() % 4]));
    }
}

TEST_P(OfTranslator, AreExclusiveAndLeaveNoRecordOut) {
    const Forms& forms = forms::forms_of(*GetParam());
    trace::Node any = trace::never;
    std::set<std::string> names;
    for (const Form& form : forms.all()) {
        EXPECT_EQ(forms.diagrams().both(any, form.condition), trace::never) << form.name;
        any = forms.diagrams().either(any, form.condition);
        EXPECT_TRUE(names.insert(form.name).second) << form.name;
        EXPECT_EQ(forms::when(forms, form).empty(), forms.all().size() == 1) << form.name;
    }
    EXPECT_EQ(any, trace::always);
}

TEST_P(OfTranslator, HaveNodesThatSayTheSame) {
    const Forms& forms = forms::forms_of(*GetParam());
    forms::ExactNodes exact{forms};
    const Bytes record(GetParam()->in().most, 0x5a);
    const Given given{.in = record, .out = record};
    const auto value = [&](std::size_t node) {
        while (node > 1) {
            const auto& [bit, if_clear, if_set] = exact.all()[node - 2];
            EXPECT_LT(std::max(if_clear, if_set), node);
            node = given.bit(bit) ? if_set : if_clear;
        }
        return node == 1;
    };
    for (const Form& form : forms.all()) {
        EXPECT_EQ(value(exact.number(form.condition)), &form == &forms.of(given));
        for (const forms::Bit& bit : form.out) {
            const std::size_t node = exact.number(bit);
            EXPECT_EQ(value(node), forms.value(bit, given));
        }
    }
}

std::vector<const Translator*> all() {
    std::vector<const Translator*> list;
    for (const Translator& translator : catalogue::translators()) {
        list.push_back(&translator);
    }
    return list;
}

INSTANTIATE_TEST_SUITE_P(Forms, OfTranslator, testing::ValuesIn(all()),
                         [](const auto& tested) { return std::string{tested.param->name}; });

std::vector<std::string> conditions(const char* name) {
    const Forms& forms = forms::forms_of(*catalogue::find(name));
    std::vector<std::string> result;
    for (const Form& form : forms.all()) {
        result.push_back(forms::when(forms, form));
    }
    return result;
}

TEST(Conditions, AreSaidInWords) {
    EXPECT_EQ(conditions("rx_adjacency_type_xlate_key"), (std::vector<std::string>{""}));
    EXPECT_EQ(conditions("encap_ole_res_xlate"),
              (std::vector<std::string>{"L0-3 is 1", "L0-3 is 2", "L0-3 is 3", "L0-3 is 4", "L0-3 is not 1 to 4"}));
    EXPECT_EQ(conditions("li_md_st_xlate_key"), (std::vector<std::string>{"L0.0 set", "L0.0 clear"}));
    EXPECT_EQ(conditions("velox_esi_info_type_xlate_key"), (std::vector<std::string>{"L7 is not 255", "L7 is 255"}));
    EXPECT_EQ(conditions("bfd_hw_offload_xlate_tx_key"),
              (std::vector<std::string>{"L1 is 2 or 4", "L1 is not 2 or 4"}));
    EXPECT_EQ(conditions("esi_info_logical_res_xlate"), (std::vector<std::string>{"K7 is not 255", "K7 is 255"}));
}

// The status says which records it is for: a choice between several forms.
std::string condition_of_status(const char* name, std::int32_t status) {
    const Forms& forms = forms::forms_of(*catalogue::find(name));
    forms::Cover cover;
    forms::Node any = trace::never;
    for (const Form& form : forms.all()) {
        if (form.status == status) {
            any = forms.diagrams().either(any, form.condition);
            forms::Answers& answers = cover.emplace_back();
            for (const forms::Answer& answer : form.answers) {
                answers.emplace_back(answer.question, answer.yes);
            }
        }
    }
    return forms::in_words(forms, forms::simplest(forms, cover, any));
}

TEST(Conditions, AreChoicesThatReadOnlyOneWay) {
    EXPECT_EQ(condition_of_status("encap_ole_res_xlate", NPXLATE_OK), "L0-3 is 1 to 4");
    EXPECT_EQ(condition_of_status("r_ldi_entry_st_result", NPXLATE_OK), "L0.0 or L1.4 clear");
    EXPECT_EQ(condition_of_status("srv6_sida_res_xlate", NPXLATE_OK), "");
    EXPECT_EQ(condition_of_status("xid_type_xlate_result", NPXLATE_INVALID),
              "L8-11 is 11, L60 above 2; or L8-11 is not 1 to 11");
}

TEST(Values, AreRanges) {
    const Forms& forms = forms::forms_of(*catalogue::find("span_fwd_st_xlate_result"));
    std::vector<BitId> field;
    for (unsigned bit = 0; bit < 16; ++bit) {
        field.push_back(trace::bit_id(trace::Space::in, 8 * 18 + bit));
    }
    const auto question = std::ranges::find(forms.questions(), "L18-19 > 128", &forms::Question::words);
    ASSERT_NE(question, forms.questions().end());
    EXPECT_EQ(forms::values(forms, question->node, field), (std::vector<forms::Range>{{129, 65535}}));
    EXPECT_EQ(forms::in_words({{129, 65535}}, 16), "above 128");
    EXPECT_EQ(forms::in_words({{0, 128}}, 16), "is 0 to 128");
    EXPECT_EQ(forms::in_words({{1, 255}}, 8), "is not 0");
    EXPECT_EQ(forms::in_words({{1, 1}, {65, 255}}, 8), "is 1 or above 64");
    EXPECT_EQ(forms::in_words({{3, 4}}, 8), "is 3 or 4");
}

}  // namespace
