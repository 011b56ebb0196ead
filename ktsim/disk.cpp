#include "activities/activities.h"
#include "commands.h"
#include "media/surface.h"
#include "media/wear.h"
#include "raid/damage.h"

#include <cstdio>
#include <memory>

using namespace sim;

struct DiskOptions {
    unsigned id = 0;
    std::string aspect;
    unsigned amount = 1;
    KT_U64 lba = NEVER; // NEVER: wherever it happens
    bool clear = false;
};

// One thing that may happen to a disk.
struct DiskChange {
    const char* word;
    const char* help;
    bool asks; // first, when virtual disks lie on the disk
    std::function<KT_U8(Context&, KT_U16 pd)> happen;
};

static Command addDiskChange(const Command& disk, Options& options, const std::shared_ptr<DiskOptions>& wanted,
                             const DiskChange& change) {
    const Command command = disk.addCommand(change.word, change.help);
    command.addOption("ID", wanted->id, "The disk").required().check(inRange(0U, 65534U));
    addAdapterOption(command, options);
    if (change.asks) addForceOption(command, options);
    command.onGiven([&options, wanted, change] {
        const auto pd = static_cast<KT_U16>(wanted->id);
        if (change.asks) askAboutDisks(options, {pd});
        changeAdapter(options, [&](Context& context) {
            checkDisk(change.happen(context, pd), pd, "");
            settleAll(context.store);
        });
    });
    return command;
}

static KT_U8 age(const Context& context, KT_U16 pd, const DiskOptions& wanted) {
    const std::string name = "disk " + std::to_string(pd);
    switch (ageDisk(context, pd, wanted.aspect, wanted.amount)) {
    case Ageing::NoDisk:
        return KT_ERR_INVALID_PD;
    case Ageing::NoAttributes:
        throw CommandFailure{name + " keeps no SMART attributes"};
    case Ageing::OnlySpinning:
        throw CommandFailure{name + " is an SSD: it has no " + wanted.aspect};
    case Ageing::OnlySolidState:
        throw CommandFailure{name + " is no SSD: it has no " + wanted.aspect};
    default:
        return KT_OK;
    }
}

static void addAge(const Command& disk, Options& options, const std::shared_ptr<DiskOptions>& wanted) {
    const Command command =
        addDiskChange(disk, options, wanted,
                      {"age", "Wear it: its SMART attributes move", false,
                       [wanted](Context& context, KT_U16 pd) { return age(context, pd, *wanted); }});
    command.addOption("WHAT", wanted->aspect, "What wears").required().check(oneOf(agingWords()));
    command.addOption("AMOUNT", wanted->amount, "By how much").showDefault();
}

static void printSpoiled(KT_U16 pd, KT_U8 flaw, KT_U32 count, KT_U64 first) {
    const char* what = flaw != FLAW_WRONG ? "cannot be read" : count == 1 ? "holds wrong data" : "hold wrong data";
    printf("Disk %u: %u sector%s %s (%sLBA 0x%llx).\n", unsigned{pd}, unsigned{count}, count == 1 ? "" : "s", what,
           count == 1 ? "" : "the first: ", static_cast<unsigned long long>(first));
}

static KT_U32 spoilAt(const Context& context, KT_U16 pd, KT_U8 flaw, const DiskOptions& wanted) {
    const auto disk = find<_HD_Info>(context, pd);
    const std::string name = "disk " + std::to_string(pd);
    if (disk && (wanted.lba >= disk->Size || disk->Size - wanted.lba < wanted.amount))
        throw CommandFailure{name + " has only " + std::to_string(disk->Size) + " sectors"};
    KT_U32 spoiled = 0;
    for (KT_U64 lba = wanted.lba; lba < wanted.lba + wanted.amount; ++lba) {
        if (flaw == FLAW_WRONG && !isGuarded(context, pd, lba))
            throw CommandFailure{"no redundant virtual disk has LBA " + std::to_string(lba) + " of " + name};
        spoiled += addBadSector(context, pd, lba, BadSector{flaw, 0, {}}) ? 1U : 0U;
    }
    return spoiled;
}

[[noreturn]] static void failToSpoil(const Context& context, KT_U16 pd, KT_U8 flaw, const DiskOptions& wanted) {
    const std::string name = "disk " + std::to_string(pd);
    if (badSectorCount(context, pd) >= BAD_SECTORS_KEPT)
        throw CommandFailure{name + " has " + std::to_string(BAD_SECTORS_KEPT) + " bad sectors, the most it can have"};
    if (wanted.lba == NEVER && flaw == FLAW_WRONG) throw CommandFailure{"no redundant virtual disk lies on " + name};
    throw CommandFailure{name + " has these bad sectors already"};
}

static KT_U8 spoil(const Context& context, KT_U16 pd, KT_U8 flaw, const DiskOptions& wanted) {
    if (!find<_HD_Info>(context, pd)) return KT_ERR_INVALID_PD;
    KT_U64 first = wanted.lba;
    const KT_U32 spoiled = wanted.lba == NEVER
                               ? addBadSectors(context, pd, BadSector{flaw, 0, {}}, wanted.amount, &first)
                               : spoilAt(context, pd, flaw, wanted);
    if (spoiled == 0) failToSpoil(context, pd, flaw, wanted);
    printSpoiled(pd, flaw, spoiled, first);
    // What runs has been there or will get there.
    applyRates(context);
    return KT_OK;
}

// A way to make sectors bad.
struct Spoiling {
    const char* word;
    const char* help;
    KT_U8 flaw;
};

static void addSpoil(const Command& disk, Options& options, const std::shared_ptr<DiskOptions>& wanted,
                     const Spoiling& way) {
    const KT_U8 flaw = way.flaw;
    const Command command =
        addDiskChange(disk, options, wanted, {way.word, way.help, true, [wanted, flaw](Context& context, KT_U16 pd) {
                                                  return spoil(context, pd, flaw, *wanted);
                                              }});
    command.addOption("--lba", wanted->lba, "The first sector; else wherever it happens")
        .check(inRange(KT_U64{0}, (KT_U64{1} << 48) - 1));
    command.addOption("--count", wanted->amount, "So many sectors")
        .check(inRange(KT_U64{1}, BAD_SECTORS_KEPT))
        .showDefault();
}

void addDisk(const Command& app, Options& options) {
    const Command disk = app.addCommand("disk", "Let something happen to a disk");
    disk.requireCommand(1, 1);
    const auto wanted = std::make_shared<DiskOptions>();
    addDiskMoves(disk, options);
    addAge(disk, options, wanted);
    addSpoil(disk, options, wanted, {"damage", "Some of its sectors cannot be read any more", FLAW_UNREADABLE});
    addSpoil(disk, options, wanted,
             {"corrupt", "Some of its sectors hold wrong data, which only a check tells", FLAW_WRONG});
    const Command trip =
        addDiskChange(disk, options, wanted,
                      {"trip", "Its SMART status goes over the threshold", false,
                       [wanted](Context& context, KT_U16 pd) { return tripSmart(context, pd, !wanted->clear); }});
    trip.addFlag("--clear", wanted->clear, "Back under it, its wear undone");
}
