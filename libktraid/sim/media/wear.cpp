#include "media/wear.h"

#include "media/disks.h"
#include "media/smartAttributes.h"
#include "media/surface.h"
#include "state/adapterInfo.h"
#include "state/events.h"

#include <algorithm>

namespace sim {

struct Aspect {
    const char* word;
    KT_U32 DiskAge::*count;
    Ageing refusal = Ageing::Done; // what the other kind of disk answers
};
static const Aspect ASPECTS[] = {
    {"reallocated", &DiskAge::reallocated},
    {"pending", &DiskAge::pending},
    {"uncorrectable", &DiskAge::uncorrectable},
    {"read-errors", &DiskAge::readErrors, Ageing::OnlySpinning},
    {"spin-retries", &DiskAge::spinRetries, Ageing::OnlySpinning},
    {"link-errors", &DiskAge::linkErrors},
    {"hours", &DiskAge::hours},
    {"wear", &DiskAge::wear, Ageing::OnlySolidState},
    {"warmth", &DiskAge::warmth},
};

std::vector<std::string> agingWords() {
    std::vector<std::string> words;
    for (const Aspect& aspect : ASPECTS)
        words.emplace_back(aspect.word);
    return words;
}

KT_U8 tripSmart(const Context& context, KT_U16 pd, bool tripped) {
    Disk disk = {};
    const KT_U8 status = findDisk(context, pd, disk);
    if (status != KT_OK) return status;
    if (!(disk.info.FeatureSupport & KT_HD_SMART)) return KT_ERR_NOT_SUPPORTED;
    const bool news = tripped && !disk.state.smartTripped;
    disk.state.smartTripped = tripped ? 1 : 0;
    saveDisk(context, disk);
    // Its attributes would go on saying that it fails.
    if (!tripped) {
        undoWear(context, pd);
        erase<ToldHealth>(context, pd);
        forgetSurface(context, pd, FLAW_UNREADABLE);
    }
    if (news) pollSmart(context, pd);
    return KT_OK;
}

void pollSmart(const Context& context, KT_U16 pd) {
    const PdState disk = find<PdState>(context, pd).value_or(PdState{});
    if (disk.smartTripped && disk.config.SMARTOn && disk.health != PD_FAILED &&
        adapterConfig(context).PollSMARTStatus == 1)
        logEvent(context, EVT_PD_SMART_TRIPPED, pd);
}

void pollSmart(const Context& context) {
    forEach<PdState>(context, 0, [&](KT_U64 id, const PdState&) {
        pollSmart(context, static_cast<KT_U16>(id));
        return true;
    });
}

static void logTable(const Context& context, KT_U16 pd, KT_U32 before, KT_U32 now) {
    const KT_U32 most = BAD_BLOCK_TABLE * 8 / 10;
    if (before < most && now >= most) logEvent(context, EVT_PD_BAD_BLOCKS_80, pd);
    if (before < BAD_BLOCK_TABLE && now >= BAD_BLOCK_TABLE) logEvent(context, EVT_PD_BAD_BLOCKS_FULL, pd);
}

static void addTo(KT_U32& count, KT_U32 amount) {
    count = static_cast<KT_U32>(std::min<KT_U64>(KT_U64{count} + amount, 0xFFFFFFU));
}

// Keeps what has become of the disk, with the events of thresholds that it crosses.
static void keepAge(const Context& context, KT_U16 pd, DiskAge age) {
    const KT_U32 reallocated = ageOf(context, pd).reallocated;
    age.mostPending = std::max(age.mostPending, age.pending);
    age.mostWarmth = std::max(age.mostWarmth, age.warmth);
    save(context, pd, age);
    erase<ToldHealth>(context, pd);
    logTable(context, pd, reallocated, age.reallocated);
    const auto disk = find<_HD_Info>(context, pd);
    const auto state = find<PdState>(context, pd);
    const bool trips =
        disk && state && !state->smartTripped && isFailing(describeAttributes(lifeOf(context, pd, *disk), *disk));
    if (trips && (disk->FeatureSupport & KT_HD_SMART)) tripSmart(context, pd, true);
}

Ageing ageDisk(const Context& context, KT_U16 pd, const std::string& aspect, KT_U32 amount) {
    const auto* found =
        std::find_if(std::begin(ASPECTS), std::end(ASPECTS), [&](const Aspect& known) { return aspect == known.word; });
    const auto disk = find<_HD_Info>(context, pd);
    if (found == std::end(ASPECTS) || !disk) return Ageing::NoDisk;
    if (!knowsSmart(*disk)) return Ageing::NoAttributes;
    if (found->refusal == (isSolidState(*disk) ? Ageing::OnlySpinning : Ageing::OnlySolidState)) return found->refusal;
    DiskAge age = ageOf(context, pd);
    const KT_U32 reallocated = age.reallocated;
    addTo(age.*found->count, amount);
    if (age.reallocated > reallocated) logEvent(context, EVT_PD_REASSIGNED, pd);
    if (found->count == &DiskAge::pending)
        scratchSurface(context, pd, Scratch{wholeDisk(context, pd), BadSector{FLAW_UNREADABLE, 1, {}}, amount});
    keepAge(context, pd, age);
    return Ageing::Done;
}

void countUnreadable(const Context& context, KT_U16 pd, KT_U32 sectors) {
    if (sectors == 0) return;
    DiskAge age = ageOf(context, pd);
    addTo(age.pending, sectors);
    addTo(age.uncorrectable, sectors);
    addTo(age.readErrors, sectors);
    keepAge(context, pd, age);
}

void countReassigned(const Context& context, KT_U16 pd, KT_U32 sectors, KT_U32 known) {
    DiskAge age = ageOf(context, pd);
    age.pending -= std::min(age.pending, known);
    addTo(age.reallocated, sectors);
    keepAge(context, pd, age);
}

void countWritten(const Context& context, KT_U16 pd, KT_U64 kib) {
    const auto disk = find<_HD_Info>(context, pd);
    if (!disk || !isSolidState(*disk) || kib == 0) return;
    DiskAge age = ageOf(context, pd);
    age.writtenKib += kib;
    keepAge(context, pd, age);
}

KT_U32 sectorsToSpare(const Context& context, KT_U16 pd) {
    return BAD_BLOCK_TABLE - std::min(ageOf(context, pd).reallocated, BAD_BLOCK_TABLE);
}

} // namespace sim
