// The frame of every info listing and the lines that several reports share.
#pragma once

#include "Public/errorMsg.h"
#include "Public/listing.h"
#include "Public/output.h"

inline constexpr int REPORT_WIDTH = 20;

// What a listing says around its records.
struct ListingWords {
    const char* none;    // nothing to show
    const char* heading; // before the first record
    const char* total;   // label of the closing count when everything is listed
};

void printUnallocated(size_t bytes);

// What is printed around a walk: begin() before anything is printed of a record, end() once behind the walk.
struct ListingFrame {
    const ListingWords& words;
    unsigned shown = 0;
    void begin() {
        if (shown++ == 0) out("%s", words.heading);
    }
    void end(const ListEnd& walked, bool all) const {
        if (walked.unallocated != 0) printUnallocated(walked.unallocated);
        if (walked.stopped || interrupted()) return;
        if (walked.status == KT_OK && shown == 0) out("%s", words.none);
        if (all && shown > 0) {
            printNum(REPORT_WIDTH, words.total, static_cast<long>(shown));
            out("\n");
        }
    }
};

// True when the library itself refused the list, so that the listing has to say so. Whoever pressed Ctrl-C knows.
inline bool refused(const ListEnd& walked) {
    return walked.status != KT_OK && walked.unallocated == 0 && !interrupted();
}

// Lists the item `id` (ALL_ITEMS = every one) within its frame: print(record) prints one, an empty line follows it.
template <class Record, class Request, class Print>
ListEnd printListing(KT_U8 (*call)(KT_U8, Request*), KT_U16 id, const ListingWords& words, Print print) {
    ListingFrame frame = {words};
    ListEnd end =
        walkList<Record, Cut::Shows>(call, itemRange(id), recordsPerPage(sizeof(Record)), [&](const Record& record) {
            frame.begin();
            print(&record);
            out("\n");
            return true;
        });
    frame.end(end, id == ALL_ITEMS);
    return end;
}

// Adds where the parent end of a link is: "Expander 2, port 5". False, and nothing added, for a kind of parent that is
// not known.
bool addParent(LineText& line, const _Link_Endpoint& parent);

// A background activity's words, by its bit and by its state.
const char* bgaWord(unsigned bga);
const char* bgaStateWord(unsigned state);

// "yes", "no" or "unknown" for what KT_DiskHasOS answered about a virtual or a physical disk.
const char* runningOsWord(KT_U8 kind, KT_U8 status);

// The lines "Block ids:", "# of PDs:", "PD RAID setup:" and "Running OS:" of a virtual disk.
void printLayoutLines(const _LD_Info* ld);

// The word of a virtual disk's status.
const char* ldStatusWord(KT_U8 status);

inline bool isHybridMode(KT_U8 mode) {
    return mode >= KT_TANDEM_CAPACITY && mode <= KT_HYBRID;
}
