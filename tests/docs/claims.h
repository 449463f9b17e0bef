// What pages say of records, a second time in a language that can be compared with what the translators do for every
// record. A file of claims holds sentences as they stand on the page, each with its claims:
//
//     ## Table 4
//     > In variant D P0.5 is 1, whatever L0.4 is.
//     "variant D": P0.5=1
//     > Clear it first.
//     -
//
// A claim is a condition and, after a colon, what holds for every record that fulfils it. Both are made of
//
//     L0.5=1  L8-11=3  L2>64  L8-11=3..4  L36-39!=4     fields of records and their values, little-endian
//     P8-11=rev(L24-27)  P4=L28+7  P1.5=L0.1|~L0.4      what a field holds: rev turns bytes round, any(L1) is 1 if any
//     of
//                                                       the bits is; & | ^ + - << >> need brackets to be mixed
//     "variant D"  back"variant A"                      the record gets the layout of this title; on the way back
//     status=22  length=16  length=none                 what is returned and stored
//
// in conditions with "or" between choices; parts of a condition are parted by spaces, facts by commas. L is the logical
// record, P the physical one, B the logical record read back, A the record handed in as it is after the call, T the
// entry type, K the logical key, M TX_ADJ_KEY_MAX. More facts:
//
//     dropped L3 L5.7       nothing that comes out depends on them
//     carried L3            the record that comes out depends on each bit of them
//     gone L3               nothing that is read back depends on them
//     kept P3 P0.5          they stay as the buffer had them
//     same L8-11            they come back as they were
//     reads L0 L4-7         nothing that comes out depends on other bits; "reads nothing": on none
//     can B2.7=1            holds for some of the records
//
// A word in front says of which translator: "key", "reverse" (of any physical record, whoever made it) or a name; else
// it is the result translator, and the reverse behind it. "@5" behind it is the length argument. A sentence that says
// nothing of records has "-" for a claim.
#pragma once

#include <string>
#include <vector>

#include "catalogue/catalogue.h"

namespace docs {

struct Statement {
    std::string subject;  // of the section: "Table 4"
    std::string sentence;
    std::vector<std::string> claims;
};

std::vector<Statement> statements_in(const std::string& text);

// The translators that the words of a claim mean.
struct Subject {
    const catalogue::Translator* key = nullptr;
    const catalogue::Translator* result = nullptr;
    const catalogue::Translator* reverse = nullptr;
    const catalogue::Translator* unnamed = nullptr;  // without a word in front
};
Subject subject_of_table(unsigned table);
// Of translators that are declared together: those of their table that are not among them are meant, too.
Subject subject_of(const std::vector<const catalogue::Translator*>& translators);

// Empty if the claim holds; else what is wrong, with a record that shows it. std::runtime_error if it is no claim.
std::string refuted(const Subject& subject, const std::string& claim);

}  // namespace docs
