#include "state/bounds.h"

#include <iterator>

namespace sim {

// Later than any moment that matters, and early enough for sums of moments.
static const KT_U64 LATEST = 0xFFFFFFFFULL * 1000;

void bound(GlobalState& record, Bounding& by) {
    by.atMost(record.adapterCount, ADAPTER_GLOBAL, "adapterCount");
    by.ended(record.lab, "lab");
}

void bound(Clock& record, Bounding& by) {
    by.atMost(record.base, LATEST, "base");
    by.atMost(record.realBase, LATEST, "realBase");
    by.atMost(record.speed, 1000000000, "speed");
}

void bound(Fault& record, Bounding& by) {
    by.ended(record.call, "call");
}

void bound(_LD_Info& record, Bounding& by) {
    by.atMost(record.HDCount, std::size(record.BlockIDs), "HDCount");
    by.atMost(record.BlkCount, std::size(record.BlockIDs), "BlkCount");
}

void bound(VdTarget& record, Bounding& by) {
    bound(record.info, by);
}

void bound(AwayVd& record, Bounding& by) {
    bound(record.info, by);
}

void bound(_DG_Info& record, Bounding& by) {
    by.atMost(record.PDCount, std::size(record.PDIDs), "PDCount");
    by.atMost(record.VDSlotCount, std::size(record.VDIDs), "VDSlotCount");
    by.atMost(record.SparePDCount, std::size(record.SparePDIDs), "SparePDCount");
}

void bound(DgState& record, Bounding& by) {
    by.atMost(record.memberCount, std::size(record.members), "memberCount");
}

void bound(PulledBlocks& record, Bounding& by) {
    by.atMost(record.count, std::size(record.entries), "count");
    constexpr KT_U16 SLOTS = std::size(_LD_Info{}.BlockIDs);
    by.place(record.slot, SLOTS, KT_NO_ID, "slot");
    for (PulledBlock& entry : record.entries) {
        by.place(entry.slot, SLOTS, KT_NO_ID, "slot");
        by.place(entry.target, SLOTS + 1, 0, "target");
    }
}

void bound(_HD_Block_Info& record, Bounding& by) {
    by.atMost(record.BlkCount, std::size(record.BlkIDs), "BlkCount");
}

} // namespace sim
