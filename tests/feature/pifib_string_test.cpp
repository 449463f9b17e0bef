// The platform-FIB record. By name only; written over a buffer that the caller has prepared.
#include <gtest/gtest.h>

#include <npxlate/npxlate.h>

#include <utility>

#include "support/harness.h"
#include "support/models.h"
#include "support/record.h"
#include "support/rows.h"

namespace {

using namespace support;

const Translator result = REVERSE(pifib_ez_xlate_result, 32, 32);

// Not cleared: P0.6 and P22-24 stay. No length is reported.
Reply result_model(const Bytes& in, Bytes& out) {
    static const Rows rows{
        "P0.7 = L0.7",      //
        "P0.5 = L0.5",      //
        "P0.4 = 1",         //
        "P0.3-1 = 0",       //
        "P0.0 = 1",         //
        "P1-21 = L1-21",    //
        "P25-31 = L25-31",  //
    };
    rows.apply(in, out);
    return {};
}

const support::Models models{{result, result_model}};

TEST(PifibString, CarriesWhatItsPositionsSay) {
    walk(result, result_model, {Bytes(32), Bytes(32, 0xff), counting(32), counting(32, 0x91)});
    check_random(result, result_model);
}

TEST(PifibString, CopiesItsBytesInPlace) {
    const Outcome outcome = translate(result, counting(32, 0xc0));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(hex(outcome.out),
              "91 c1 c2 c3 c4 c5 c6 c7 c8 c9 ca cb cc cd ce cf d0 d1 d2 d3 "
              "d4 d5 00 00 00 d9 da db dc dd de df");
    EXPECT_EQ(hex(translate(result, Bytes(32, 0xff)).out),
              "b1 ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff "
              "ff ff 00 00 00 ff ff ff ff ff ff ff");
}

TEST(PifibString, ReportsNoLength) { EXPECT_EQ(translate(result, Bytes(32)).length, std::nullopt); }

TEST(PifibString, CarriesTwoBitsOfItsFirstByteAndNoneOfThreeOthers) {
    for (const Bytes& base : {Bytes(32), Bytes(32, 0xff)}) {
        for (const auto& [from, to] :
             {std::pair{"L0.7", "P0.7"}, std::pair{"L0.6", ""}, std::pair{"L0.5", "P0.5"}, std::pair{"L0.4", ""},
              std::pair{"L0.3", ""}, std::pair{"L0.2", ""}, std::pair{"L0.1", ""}, std::pair{"L0.0", ""},
              std::pair{"L1.0", "P1.0"}, std::pair{"L21.7", "P21.7"}, std::pair{"L22.0", ""}, std::pair{"L22.7", ""},
              std::pair{"L23.4", ""}, std::pair{"L24.0", ""}, std::pair{"L24.7", ""}, std::pair{"L25.0", "P25.0"},
              std::pair{"L31.7", "P31.7"}}) {
            EXPECT_EQ(changes(result, base, from), to) << from;
        }
    }
}

TEST(PifibString, LeavesTheRestOfAPreparedBuffer) {
    EXPECT_EQ(hex(translate(result, Bytes(32), Bytes(32, 0xff)).out),
              "51 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 "
              "00 00 ff ff ff 00 00 00 00 00 00 00");
    EXPECT_EQ(hex(translate(result, Bytes(32, 0xff), Bytes(32, 0xbf)).out),
              "b1 ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff ff "
              "ff ff bf bf bf ff ff ff ff ff ff ff");

    // Each bit alone, and all but each bit alone.
    for (unsigned bit = 0; bit < 8; ++bit) {
        for (const unsigned pattern : {1U << bit, ~(1U << bit)}) {
            const Bytes before(32, static_cast<std::uint8_t>(pattern));
            Bytes expected(32);
            expected.at(0) = static_cast<std::uint8_t>((pattern & 0x40) | 0x11);
            fill(expected, 22, 24, static_cast<std::uint8_t>(pattern));
            EXPECT_EQ(hex(translate(result, Bytes(32), before).out), hex(expected));
        }
    }
}

TEST(PifibString, IgnoresTheLength) { expect_length_ignored(result, counting(32)); }

}  // namespace
