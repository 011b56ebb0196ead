// What a row says is not trusted further than its record reaches: a state may be damaged, and a lab may say anything.
#pragma once

#include "state/records.h"

namespace sim {

// Brings the counts and the places in a record back to what its arrays hold, once, when it is read; names those that
// were beyond. Everything that reads rows goes by what is left. Records without a count have nothing to bound.
struct Bounding {
    const char* beyond = nullptr; // the first field that was; null = none

    // At most `most`.
    template <class Number>
    void atMost(Number& value, KT_U64 most, const char* name) {
        if (value <= most) return;
        value = static_cast<Number>(most);
        if (beyond == nullptr) beyond = name;
    }
    // Below `end`, or `none`.
    void place(KT_U16& slot, KT_U16 end, KT_U16 none, const char* name) {
        if (slot < end || slot == none) return;
        slot = none;
        if (beyond == nullptr) beyond = name;
    }
    // A text that has its end within the field.
    template <size_t N>
    void ended(char (&text)[N], const char* name) {
        if (text[N - 1] == '\0') return;
        text[N - 1] = '\0';
        if (beyond == nullptr) beyond = name;
    }
};

template <class Record>
void bound(Record&, Bounding&) {}
void bound(GlobalState& record, Bounding& by);
void bound(Clock& record, Bounding& by);
void bound(Fault& record, Bounding& by);
void bound(_LD_Info& record, Bounding& by);
void bound(VdTarget& record, Bounding& by);
void bound(AwayVd& record, Bounding& by);
void bound(_DG_Info& record, Bounding& by);
void bound(DgState& record, Bounding& by);
void bound(PulledBlocks& record, Bounding& by);
void bound(_HD_Block_Info& record, Bounding& by);

} // namespace sim
