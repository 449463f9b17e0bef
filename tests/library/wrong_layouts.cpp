// Layouts, and positions in code, that must not compile. WRONG_LAYOUT chooses one; 0 is right in all, which shows that
// it is the mistake that the compiler refuses.

#include "frame/helpers.h"

using namespace npxlate;

constexpr Layout layout {
    "every record",
#if WRONG_LAYOUT == 0
        copied(P(0), L(0), 4),
#elif WRONG_LAYOUT == 1  // P4.3 twice
        copied(P(4), L(0), 2), bit(P(4, 3), L(7, 1)),
#elif WRONG_LAYOUT == 2  // a label field reaches into the next byte
        label(P(0), L(0), 1), copied(P(2), L(4)),
#elif WRONG_LAYOUT == 3  // the second turn of the first row meets the second row
        copied(P(0), L(0), 2).repeated(2, P(3), L(2)), bit(P(4, 0), L(7, 1)),
#elif WRONG_LAYOUT == 4
        bits(P(0, 7, 4), L(0, 2, 0)),
#elif WRONG_LAYOUT == 5
        bit(P(0, 7, 4), L(0, 7, 4)),
#elif WRONG_LAYOUT == 6
        copied(P(0, 3), L(0), 2),
#elif WRONG_LAYOUT == 7
        bit(P(0, 8), L(0, 0)),
#elif WRONG_LAYOUT == 8
        bits(P(0, 2, 5), L(0, 2, 5)),
#elif WRONG_LAYOUT == 9
        constant(P(0, 3, 0), 0x11),
#elif WRONG_LAYOUT == 10
        copied(P(0), L(0), 0),
#elif WRONG_LAYOUT == 11
        any(P(0, 0), L(1)).repeated(2, P(1), L(1)),
#elif WRONG_LAYOUT == 12
        also(any(P(0, 0), L(1))),
#elif WRONG_LAYOUT == 13  // the sides exchanged
        copied(P(0), L(0), 4), copied(L(4), P(4), 4),
#elif WRONG_LAYOUT == 14  // both sides physical
        copied(P(0), P(4), 4),
#elif WRONG_LAYOUT == 15  // written outside the record
        copied(P(4), L(0), 5),
#elif WRONG_LAYOUT == 16  // read outside the record
        copied(P(0), L(4), 5),
#elif WRONG_LAYOUT == 17
        copied(L(0), P(0), 4),
#elif WRONG_LAYOUT == 18
        run(P(0, 0), L(0, 0), 0),
#elif WRONG_LAYOUT == 19
        cleared(P(0), 0),
#elif WRONG_LAYOUT == 20
        copied(P(0), L(0)).repeated(0, P(1), L(1)),
#elif WRONG_LAYOUT == 21  // a field of 40 bits
        mapped(P(0), bytes(L(0), 5), hop_byte),
#elif WRONG_LAYOUT == 22
        any(P(0, 0), bytes(L(1), 0)),
#elif WRONG_LAYOUT == 23
        cleared(P(0), 8192),
#elif WRONG_LAYOUT == 24  // looks at the record that it writes
        any(P(0, 0), bytes(P(1), 2)),
#elif WRONG_LAYOUT == 25
        cleared(P(168), 1),
#else
        constant(P(0), 0),
#endif
};

void use(const void* logical, void* physical, unsigned number) {
    const LogicalSource<8> in{logical};
    PhysicalRecord<8> out;
    place<layout>(out, in);
    put_little<4>(out, P(4), in.little32(L(4)));
    put(out, P(0, 7), in.bit(L(0, 7)));
    change_input<2>(in, LogicalBytes<8, 2>::one_of<4>(L(0), number), 1);
#if WRONG_LAYOUT == 26
    put(out, P(0, 7), in.bit(L(200, 3)));
#elif WRONG_LAYOUT == 27
    put(out, P(0, 7), in.bit(L(8, 3)));
#elif WRONG_LAYOUT == 28
    put(out, P(0, 7), in.bit(L(1, 3, 2)));
#elif WRONG_LAYOUT == 29  // of the other record
    put(out, P(0, 7), in.bit(P(0, 3)));
#elif WRONG_LAYOUT == 30
    put(out, P(0), in.bits(L(8, 3, 0)));
#elif WRONG_LAYOUT == 31
    put(out, P(0), in.byte(L(1, 3)));
#elif WRONG_LAYOUT == 32
    put(out, P(0), in.little16(L(7)));
#elif WRONG_LAYOUT == 33
    put(out, P(0), in.big32(L(5)));
#elif WRONG_LAYOUT == 34
    put(out, P(0, 7), out.bit(P(8, 0)));
#elif WRONG_LAYOUT == 35
    put(out, P(9), 1);
#elif WRONG_LAYOUT == 36
    put_little<4>(out, P(6), 1);
#elif WRONG_LAYOUT == 37
    put_big<2>(out, P(7), 1);
#elif WRONG_LAYOUT == 38
    put_little<2>(out, P(1, 7), 1);
#elif WRONG_LAYOUT == 39
    change_input<4>(in, L(5), 1);
#elif WRONG_LAYOUT == 40  // the last of the five ends outside
    change_input<2>(in, LogicalBytes<8, 2>::one_of<5>(L(0), number), 1);
#endif
    out.store(physical);
}
