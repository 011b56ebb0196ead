#include "Plan/levels.h"

#include "Public/raidRules.h"
#include "Public/saidBy.h"
#include "Report/words.h"

static KT_U8 codeOfLevel(const std::string& level) {
    return static_cast<KT_U8>(codeOf(levelWords, level).value_or(255));
}

const char* typedLevel(const std::string& level) {
    static const struct {
        const char* level;
        const char* typed;
    } words[] = {{"RAID0", "0"},        {"RAID1", "1"},      {"RAID10", "10"},
                 {"RAID1E", "1E"},      {"RAID5", "5"},      {"RAID50", "50"},
                 {"RAID6", "6"},        {"RAID60", "60"},    {"TANDEM CAPACITY", "hc"},
                 {"TANDEM SAFE", "hs"}, {"HYBRID", "hybrid"}};
    for (const auto& row : words) {
        if (level == row.level) return row.typed;
    }
    return nullptr;
}

std::optional<std::string> refusedCount(const std::string& level, size_t disks, bool array, bool migration) {
    const RaidUse use =
        array ? (migration ? USE_MIGRATE_ARRAY : USE_CREATE_ARRAY) : (migration ? USE_MIGRATE_VD : USE_CREATE_VD);
    bool good = false;
    std::string said = saidBy([&] { good = checkDiskCount(use, codeOfLevel(level), static_cast<unsigned>(disks)); });
    if (good) return std::nullopt;
    while (!said.empty() && (said.back() == '\n' || said.back() == '.'))
        said.pop_back();
    return said;
}

bool takesParity(const std::string& level) {
    return takesParityDisks(codeOfLevel(level));
}

KT_U64 usualParity(const std::string& level) {
    if (level == "RAID60") return 4;
    return level == "RAID6" ? 2 : 0;
}

bool isHybrid(const std::string& level) {
    return isHybridLevel(codeOfLevel(level));
}

bool mayMigrate(const std::string& from, const std::string& to) {
    return RedundencyLevel(codeOfLevel(from)) <= RedundencyLevel(codeOfLevel(to));
}

// Disks' worth of data, in halves of a disk: RAID1E on three disks holds three halves.
static KT_U64 dataHalves(const PresentLayout& layout) {
    const KT_U64 disks = layout.disks.size();
    const auto without = [&](KT_U64 parity) { return disks > parity ? 2 * (disks - parity) : 0; };
    if (layout.level == "RAID1") return 2;
    if (layout.level == "RAID10" || layout.level == "RAID1E") return disks;
    if (layout.level == "RAID5") return without(1);
    if (layout.level == "RAID50") return without(2);
    if (takesParity(layout.level)) return without(layout.parity ? layout.parity : usualParity(layout.level));
    return 2 * disks;
}

KT_U64 capacityWith(const PresentLayout& layout, KT_U64 share) {
    static constexpr KT_U64 KIB = 1024;
    const KT_U64 stripe = (layout.stripe ? layout.stripe : 64) * KIB;
    return share / stripe * stripe / 2 * dataHalves(layout);
}

KT_U64 shareOf(const PresentLayout& layout, KT_U64 size) {
    const KT_U64 halves = dataHalves(layout);
    return halves == 0 ? size : size / halves * 2;
}

KT_U64 rowOf(const PresentLayout& layout) {
    static constexpr KT_U64 MEBIBYTE = KT_U64{1} << 20;
    return (layout.stripe ? layout.stripe : 64) * 1024 * dataHalves(layout) / 2 + MEBIBYTE;
}

KT_U64 grown(KT_U64 size, const PresentLayout& from, const PresentLayout& to) {
    const KT_U64 old = dataHalves(from);
    return old == 0 || old == dataHalves(to) ? size : size / old * dataHalves(to);
}
