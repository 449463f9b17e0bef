// Layouts that must not compile. WRONG_LAYOUT chooses one; 0 is a right one, which shows that it is the layout that the
// compiler refuses.

#include "frame/place.h"

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
#endif
};

void use(const void* logical, void* physical) {
    PhysicalRecord<8> out;
    place<layout>(out, LogicalSource<8>{logical});
    out.store(physical);
}
