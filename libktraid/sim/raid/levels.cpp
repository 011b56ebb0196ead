#include "raid/levels.h"

#include "raid/activityRecords.h"

namespace sim {

enum class Count : KT_U8 { Any, Even, Odd };

struct LevelRule {
    KT_U8 level;
    KT_U16 mode;
    KT_U8 least;
    KT_U8 leastInArray;
    KT_U8 most;
    Count count;
    bool redundant;
    KT_U8 rank;
};

static const KT_U8 MOST = 128;
static const LevelRule LEVELS[] = {
    {KT_RAID0, KT_MODE_RAID0, 2, 2, MOST, Count::Any, false, 0},
    {KT_RAID1, KT_MODE_RAID1, 2, 2, 2, Count::Any, true, 1},
    {KT_RAID10, KT_MODE_RAID10, 4, 4, MOST, Count::Even, true, 1},
    {KT_RAID1E, KT_MODE_RAID1E, 3, 3, MOST, Count::Odd, true, 1},
    {KT_RAID5, KT_MODE_RAID5, 3, 3, MOST, Count::Any, true, 5},
    {KT_RAID50, KT_MODE_RAID50, 6, 6, MOST, Count::Even, true, 5},
    {KT_RAID6, KT_MODE_RAID6, 3, 4, MOST, Count::Any, true, 6},
    {KT_RAID60, KT_MODE_RAID60, 6, 8, MOST, Count::Even, true, 6},
    {KT_JBOD, KT_MODE_JBOD, 1, 1, MOST, Count::Any, false, 0},
    {KT_TANDEM_CAPACITY, KT_MODE_TANDEM_CAPACITY, 2, MOST, MOST, Count::Any, false, 0},
    {KT_TANDEM_SAFE, KT_MODE_TANDEM_SAFE, 2, MOST, MOST, Count::Any, false, 0},
    {KT_HYBRID, KT_MODE_HYBRID, 2, MOST, MOST, Count::Any, false, 0},
};

static const LevelRule* levelRule(KT_U8 level) {
    for (const LevelRule& rule : LEVELS)
        if (rule.level == level) return &rule;
    return nullptr;
}

bool isKnownLevel(KT_U8 level) {
    return levelRule(level) != nullptr;
}

bool isLevelEnabled(const _Adapter_Info& adapter, KT_U8 level) {
    const LevelRule* rule = levelRule(level);
    return rule && (adapter.LogicalDriverMode & rule->mode) != 0;
}

bool isHybridLevel(KT_U8 level) {
    return level == KT_TANDEM_CAPACITY || level == KT_TANDEM_SAFE || level == KT_HYBRID;
}

bool isRedundant(KT_U8 level) {
    const LevelRule* rule = levelRule(level);
    return rule && rule->redundant;
}

int redundancyRank(KT_U8 level) {
    const LevelRule* rule = levelRule(level);
    return rule ? rule->rank : 0;
}

static KT_U8 checkParity(const _Adapter_Info& adapter, const Geometry& geometry, bool array) {
    const bool halves = geometry.level == KT_RAID60;
    if (geometry.level != KT_RAID6 && !halves) return KT_OK;
    const int sets = halves ? 2 : 1;
    const int most = adapter.MaxParityDisks ? adapter.MaxParityDisks : 2;
    const int limit = array ? geometry.disks / 2 : geometry.disks - 1;
    const bool good = geometry.parity % sets == 0 && geometry.parity >= 2 * sets && geometry.parity <= most * sets &&
                      geometry.parity <= limit;
    return good ? KT_U8{KT_OK} : KT_U8{KT_ERR_PARITY_COUNT};
}

KT_U8 checkGeometry(const _Adapter_Info& adapter, const Geometry& geometry, bool array) {
    const LevelRule* rule = levelRule(geometry.level);
    if (!rule || !isLevelEnabled(adapter, geometry.level)) return KT_ERR_INVALID_RAID_MODE;
    if (geometry.disks < (array ? rule->leastInArray : rule->least) || geometry.disks > rule->most)
        return KT_ERR_PD_COUNT_FOR_LEVEL;
    const bool odd = geometry.disks % 2 != 0;
    if ((rule->count == Count::Even && odd) || (rule->count == Count::Odd && !odd)) return KT_ERR_PD_COUNT_FOR_LEVEL;
    return checkParity(adapter, geometry, array);
}

KT_U8 subCount(const Geometry& geometry) {
    if (geometry.disks < 2) return 1;
    if (geometry.level == KT_RAID10) return geometry.disks / 2;
    return geometry.level == KT_RAID50 || geometry.level == KT_RAID60 ? KT_U8{2} : KT_U8{1};
}

KT_U32 dataHalves(const Geometry& geometry) {
    const KT_U32 disks = geometry.disks;
    switch (geometry.level) {
    case KT_RAID1:
        return 2;
    case KT_RAID10:
    case KT_RAID1E:
        return disks;
    case KT_RAID5:
        return 2 * (disks - 1);
    case KT_RAID50:
        return 2 * (disks - 2);
    case KT_RAID6:
    case KT_RAID60:
        return 2 * (disks - geometry.parity);
    default:
        return 2 * disks;
    }
}

bool inSameSet(const Geometry& geometry, int one, int other) {
    const int disks = geometry.disks;
    if (geometry.level == KT_RAID1E) return (one + 1) % disks == other || (other + 1) % disks == one;
    const int perSet = disks / subCount(geometry);
    return one / perSet == other / perSet;
}

KT_U64 placeInVd(const Geometry& geometry, int slot, KT_U64 offset, KT_U64 stripe) {
    const KT_U64 row = offset / stripe;
    const KT_U64 within = offset % stripe;
    const auto disks = static_cast<KT_U64>(geometry.disks);
    if (geometry.level == KT_RAID1E) {
        // Every other row repeats the one before it, one disk further on.
        const KT_U64 piece = (static_cast<KT_U64>(slot) + disks - row % 2) % disks;
        return (row / 2 * disks + piece) * stripe + within;
    }
    const KT_U64 sets = subCount(geometry);
    const KT_U64 perRow = dataHalves(geometry) / 2;
    const KT_U64 set = static_cast<KT_U64>(slot) / (disks / sets);
    return (row * perRow + set * (perRow / sets)) * stripe + within;
}

KT_U64 shareFor(const Geometry& geometry, KT_U64 size, KT_U16 stripe) {
    const KT_U64 halves = dataHalves(geometry);
    const KT_U64 share = size / halves * 2 + (size % halves * 2 + halves - 1) / halves;
    const KT_U64 unit = stripe ? stripe : 1;
    return (share + unit - 1) / unit * unit;
}

// RAID1E keeps each piece on two neighbours, the last disk being the first one's.
static KT_U8 mirroredNeighbours(const Geometry& geometry, const bool* lost) {
    KT_U8 status = KT_VD_ONLINE;
    for (int i = 0; i < geometry.disks; ++i) {
        if (!lost[i]) continue;
        if (lost[(i + 1) % geometry.disks]) return KT_VD_OFFLINE;
        status = KT_VD_DEGRADED;
    }
    return status;
}

static KT_U8 hybridStatus(const Geometry& geometry, const bool* lost, const bool* isHdd) {
    KT_U8 status = KT_VD_ONLINE;
    for (int i = 0; i < geometry.disks; ++i) {
        if (!lost[i]) continue;
        if (geometry.level == KT_TANDEM_CAPACITY || isHdd[i]) return KT_VD_OFFLINE;
        status = KT_VD_DEGRADED;
    }
    return status;
}

KT_U8 statusWithLost(const Geometry& geometry, const bool* lost, const bool* isHdd) {
    if (isHybridLevel(geometry.level)) return hybridStatus(geometry, lost, isHdd);
    if (geometry.level == KT_RAID1E) return mirroredNeighbours(geometry, lost);
    const int sets = subCount(geometry);
    const int perSet = geometry.disks / sets;
    const int spare = geometry.parity ? geometry.parity / sets : (isRedundant(geometry.level) ? 1 : 0);
    KT_U8 status = KT_VD_ONLINE;
    for (int set = 0; set < sets; ++set) {
        int gone = 0;
        for (int i = set * perSet; i < (set + 1) * perSet; ++i)
            gone += lost[i] ? 1 : 0;
        if (gone > spare) return KT_VD_OFFLINE;
        if (gone == 0) continue;
        if (gone == spare) {
            status = KT_VD_DEGRADED;
        } else if (status == KT_VD_ONLINE) {
            status = KT_VD_PARTIALLY_OPTIMAL;
        }
    }
    return status;
}

} // namespace sim
