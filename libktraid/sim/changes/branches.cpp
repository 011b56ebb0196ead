#include "changes/branches.h"

#include "changes/health.h"
#include "media/disks.h"
#include "state/events.h"

#include <algorithm>
#include <functional>

namespace sim {

static const int DEEPEST = 64; // expanders behind one another

using LinkTest = std::function<bool(const _Link_Entity&)>;

template <class Record>
static std::vector<KT_U16> idsWhere(const Context& context, const std::function<bool(const Record&)>& holds) {
    std::vector<KT_U16> ids;
    forEach<Record>(context, 0, [&](KT_U64 id, const Record& record) {
        if (holds(record)) ids.push_back(static_cast<KT_U16>(id));
        return true;
    });
    return ids;
}

template <class Record>
static std::vector<KT_U16> idsLinked(const Context& context, const LinkTest& hangs) {
    return idsWhere<Record>(context, [&](const Record& record) { return hangs(record.Link); });
}

static bool hasPort(const _Link_Endpoint& end, KT_U8 port) {
    const size_t phys = std::min<size_t>(end.PhyCnt, std::size(end.PhyID));
    return end.DevType == KT_LINK_HBA && std::find(end.PhyID, end.PhyID + phys, port) != end.PhyID + phys;
}

// The link that this one hangs on; the same one again where that is the adapter, or unknown.
static _Link_Endpoint above(const Context& context, const _Link_Endpoint& end) {
    if (end.DevType == KT_LINK_PM) {
        if (const auto multiplier = find<_PM_Info>(context, end.DevID)) return multiplier->Link.Parent;
    } else if (end.DevType == KT_LINK_EXPANDER) {
        if (const auto expander = find<_Exp_Info>(context, end.DevID)) return expander->Link.Parent;
    }
    return end;
}

static bool isShelf(const Context& context, const std::vector<KT_U16>& expanders, KT_U16 enclosure) {
    return std::any_of(expanders.begin(), expanders.end(), [&](KT_U16 id) {
        const auto expander = find<_Exp_Info>(context, id);
        return expander && expander->Link.Self.EnclosureID == enclosure;
    });
}

static Branch branchWhere(const Context& context, const LinkTest& hangs) {
    Branch branch;
    branch.expanders = idsLinked<_Exp_Info>(context, hangs);
    branch.multipliers = idsLinked<_PM_Info>(context, hangs);
    branch.disks = idsLinked<_HD_Info>(context, hangs);
    branch.enclosures = idsWhere<_Enclosure_Info>(context, [&](const _Enclosure_Info& enclosure) {
        return isShelf(context, branch.expanders, enclosure.EnclosureID);
    });
    return branch;
}

Branch branchOfPort(const Context& context, KT_U8 port) {
    return branchWhere(context, [&](const _Link_Entity& link) {
        _Link_Endpoint end = link.Parent;
        for (int i = 0; i < DEEPEST && end.DevType != KT_LINK_HBA; ++i)
            end = above(context, end);
        return hasPort(end, port);
    });
}

Branch branchOfEnclosure(const Context& context, KT_U16 enclosure) {
    // What hangs on the shelf's own expander is behind it, too.
    const std::vector<KT_U16> own = idsWhere<_Exp_Info>(
        context, [&](const _Exp_Info& expander) { return expander.Link.Self.EnclosureID == enclosure; });
    Branch branch = branchWhere(context, [&](const _Link_Entity& link) {
        if (link.Self.EnclosureID == enclosure) return true;
        _Link_Endpoint end = link.Parent;
        for (int i = 0; i < DEEPEST && end.DevType == KT_LINK_EXPANDER; ++i) {
            if (std::find(own.begin(), own.end(), end.DevID) != own.end()) return true;
            end = above(context, end);
        }
        return false;
    });
    auto& shelves = branch.enclosures;
    if (std::find(shelves.begin(), shelves.end(), enclosure) == shelves.end()) shelves.push_back(enclosure);
    return branch;
}

template <class Record, class Away>
static void leave(const Context& context, const std::vector<KT_U16>& ids, KT_U64 loss) {
    for (const KT_U16 id : ids) {
        const auto record = find<Record>(context, id);
        if (!record) continue;
        save(context, id, Away{*record, loss});
        erase<Record>(context, id);
    }
}

template <class Record, class Away>
static std::vector<KT_U16> comeBack(const Context& context, KT_U64 loss) {
    std::vector<KT_U16> ids = idsWhere<Away>(context, [&](const Away& away) { return away.loss == loss; });
    for (const KT_U16 id : ids) {
        save(context, id, find<Away>(context, id)->info);
        erase<Away>(context, id);
    }
    return ids;
}

static void pullBranch(const Context& context, const Branch& branch, KT_U64 id) {
    // A shelf without disks, too, has a loss of its own, by whose number its parts are found when it comes back.
    pullDisks(context, branch.disks);
    const KT_U64 loss = lastLoss(context);
    leave<_Exp_Info, AwayExpander>(context, branch.expanders, loss);
    leave<_PM_Info, AwayMultiplier>(context, branch.multipliers, loss);
    leave<_Enclosure_Info, AwayEnclosure>(context, branch.enclosures, loss);
    for (const KT_U16 expander : branch.expanders)
        logEvent(context, EVT_EXPANDER_PLUGGED_OUT, expander);
    save(context, id, AwayBranch{loss});
}

static KT_U8 insertBranch(const Context& context, KT_U64 id, KT_U64 loss) {
    erase<AwayBranch>(context, id);
    for (const KT_U16 expander : comeBack<_Exp_Info, AwayExpander>(context, loss))
        logEvent(context, EVT_EXPANDER_PLUGGED_IN, expander);
    comeBack<_PM_Info, AwayMultiplier>(context, loss);
    comeBack<_Enclosure_Info, AwayEnclosure>(context, loss);
    return insertDisks(context,
                       idsWhere<PulledDisk>(context, [&](const PulledDisk& disk) { return disk.loss == loss; }));
}

KT_U8 pullCable(const Context& context, KT_U8 port) {
    const Branch branch = branchOfPort(context, port);
    if (branch.disks.empty() && branch.expanders.empty() && branch.multipliers.empty()) return KT_ERR_PORT_NOT_FOUND;
    pullBranch(context, branch, port);
    return KT_OK;
}

KT_U8 insertCable(const Context& context, KT_U8 port) {
    const auto away = find<AwayBranch>(context, port);
    return away ? insertBranch(context, port, away->loss) : KT_U8{KT_ERR_PORT_NOT_FOUND};
}

KT_U8 pullEnclosure(const Context& context, KT_U16 enclosure) {
    if (!find<_Enclosure_Info>(context, enclosure)) return KT_ERR_INVALID_ENCLOSURE;
    pullBranch(context, branchOfEnclosure(context, enclosure), CABLES + enclosure);
    return KT_OK;
}

KT_U8 insertEnclosure(const Context& context, KT_U16 enclosure) {
    const auto away = find<AwayBranch>(context, CABLES + enclosure);
    return away ? insertBranch(context, CABLES + enclosure, away->loss) : KT_U8{KT_ERR_INVALID_ENCLOSURE};
}

} // namespace sim
