#include "activities/activities.h"
#include "changes/arrival.h"
#include "changes/diskIds.h"
#include "changes/health.h"
#include "commands.h"
#include "lab/lab.h"
#include "media/blocks.h"
#include "media/surface.h"
#include "media/wear.h"
#include "raid/damage.h"

#include <cstdio>
#include <cstring>
#include <memory>
#include <sys/stat.h>

using namespace sim;

struct DiskOptions {
    unsigned id = 0;
    std::string size;
    std::string aspect;
    unsigned amount = 1;
    KT_U64 lba = NEVER; // NEVER: wherever it happens
    bool clear = false;
};

using DiskChange = std::function<KT_U8(Context&, KT_U16 pd)>;

static void checkDone(KT_U8 status, unsigned pd, const char* what) {
    if (status == KT_OK) return;
    const std::string disk = "disk " + std::to_string(pd);
    if (status == KT_ERR_PD_MISSING || status == KT_ERR_INVALID_PD) throw CommandFailure{"there is no " + disk + what};
    throw CommandFailure{disk + ": the adapter answers with error " + std::to_string(status)};
}

static bool holdsData(const Context& context, KT_U16 pd) {
    return blocksOf(context, pd).BlkCount != 0;
}

// Asks first when virtual disks lie on the disk. `missing` completes "there is no disk 5 ...".
static CLI::App* addChange(CLI::App& disk, Options& options, const std::shared_ptr<DiskOptions>& wanted,
                           const char* word, const char* help, const char* missing, bool asks,
                           const DiskChange& change) {
    CLI::App* command = disk.add_subcommand(word, help);
    command->add_option("ID", wanted->id, "The disk")->required()->check(CLI::Range(0U, 65534U));
    addAdapterOption(*command, options);
    if (asks) addForceOption(*command, options);
    command->callback([&options, wanted, missing, asks, change] {
        const auto pd = static_cast<KT_U16>(wanted->id);
        bool holds = false;
        if (asks) changeAdapter(options, [&](Context& context) { holds = holdsData(context, pd); });
        // Asked with the state let go of: nobody else waits for the answer.
        if (holds && !confirm(options, "Disk " + std::to_string(pd) + " holds parts of virtual disks. Go on?"))
            throw CommandFailure{"nothing was changed"};
        changeAdapter(options, [&](Context& context) {
            checkDone(change(context, pd), pd, missing);
            settleAll(context.store);
        });
    });
    return command;
}

// Gigabytes as vendors count them; 0 = not said.
static double readBytes(const std::string& size) {
    if (size.empty()) return 0;
    char* end = nullptr;
    const double amount = strtod(size.c_str(), &end);
    const std::string unit = end;
    const double bytes = amount * (unit == "TB" ? 1e12 : 1e9);
    if (end == size.c_str() || (unit != "GB" && unit != "TB") || !(bytes >= 1e9 && bytes <= 1e17))
        throw CommandFailure{"\"" + size + "\" is not a size such as 500GB or 4TB"};
    return bytes;
}

static KT_U64 sectorsOf(const Context& context, KT_U16 pd, const std::string& size) {
    const auto there = find<_HD_Info>(context, pd);
    const auto pulled = find<PulledDisk>(context, pd);
    const KT_U32 sector = there ? there->BlockSize : pulled ? pulled->info.BlockSize : 512;
    return static_cast<KT_U64>(readBytes(size)) / std::max<KT_U32>(sector, 512);
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

static void addAge(CLI::App& disk, Options& options, const std::shared_ptr<DiskOptions>& wanted) {
    CLI::App* command = addChange(disk, options, wanted, "age", "Wear it: its SMART attributes move", "", false,
                                  [wanted](Context& context, KT_U16 pd) { return age(context, pd, *wanted); });
    command->add_option("WHAT", wanted->aspect, "What wears")->required()->check(CLI::IsMember(agingWords()));
    command->add_option("AMOUNT", wanted->amount, "By how much")->capture_default_str();
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

static void addSpoil(CLI::App& disk, Options& options, const std::shared_ptr<DiskOptions>& wanted, const char* word,
                     const char* help, KT_U8 flaw) {
    CLI::App* command =
        addChange(disk, options, wanted, word, help, "", true,
                  [wanted, flaw](Context& context, KT_U16 pd) { return spoil(context, pd, flaw, *wanted); });
    command->add_option("--lba", wanted->lba, "The first sector; else wherever it happens")
        ->check(CLI::Range(KT_U64{0}, (KT_U64{1} << 48) - 1));
    command->add_option("--count", wanted->amount, "So many sectors")
        ->check(CLI::Range(KT_U64{1}, BAD_SECTORS_KEPT))
        ->capture_default_str();
}

struct InsertOptions {
    std::vector<unsigned> ids;
    std::string from;
    unsigned of = 0;
};

static bool isStateFile(const std::string& name) {
    static const char MAGIC[] = "SQLite format 3";
    char head[sizeof MAGIC] = "";
    struct stat info = {};
    // What can be read only once is left to be read as a lab.
    if (stat(name.c_str(), &info) != 0 || !S_ISREG(info.st_mode)) return false;
    FILE* file = fopen(name.c_str(), "re");
    const bool whole = file && fread(head, sizeof head, 1, file) == 1;
    if (file) fclose(file);
    return whole && memcmp(head, MAGIC, sizeof MAGIC) == 0;
}

static Store* openSource(const std::string& name) {
    if (isStateFile(name)) return openExistingStore(name);
    const std::string text = labText(name);
    const BuiltInLab lab{name.c_str(), text.c_str()};
    return openMemoryStore(fillFromLab, &lab);
}

static void checkArrived(KT_U8 status, const InsertOptions& wanted) {
    const std::string source = "adapter " + std::to_string(wanted.of) + " of " + wanted.from;
    if (status == KT_ERR_PD_MISSING) throw CommandFailure{source + " does not have all of these disks"};
    if (status == KT_ERR_INVALID_PARAMETER) throw CommandFailure{"a disk is named twice"};
    if (status == KT_ERR_NOT_SUPPORTED) throw CommandFailure{"the adapter has no ports for such disks"};
    if (status != KT_OK) throw CommandFailure{"the adapter has no room for all that"};
}

static void insertFrom(const Options& options, const InsertOptions& wanted, Store& source) {
    const std::vector<KT_U16> there(wanted.ids.begin(), wanted.ids.end());
    std::vector<KT_U16> here;
    beginTransaction(source, Access::Read);
    if (wanted.of >= adapterCount(source))
        throw CommandFailure{wanted.from + " has no adapter " + std::to_string(wanted.of)};
    changeAdapter(options, [&](Context& context) {
        checkArrived(insertForeignDisks(context, source, static_cast<KT_U8>(wanted.of), there, here), wanted);
    });
    for (size_t i = 0; i < here.size(); ++i)
        printf("Disk %u of %s is disk %u here.\n", unsigned{there[i]}, wanted.from.c_str(), unsigned{here[i]});
}

static void putBack(const Options& options, const std::vector<unsigned>& ids) {
    std::vector<KT_U16> here;
    changeAdapter(options, [&](Context& context) {
        for (const unsigned id : ids) {
            here.push_back(idOnReturn(context, static_cast<KT_U16>(id)));
            checkDone(insertDisk(context, here.back()), id, " that was pulled");
        }
        settleAll(context.store);
    });
    for (size_t i = 0; i < ids.size(); ++i)
        if (here[i] != ids[i]) printf("Pulled disk %u is disk %u now.\n", ids[i], unsigned{here[i]});
}

static void insert(const Options& options, const InsertOptions& wanted) {
    if (wanted.from.empty()) return putBack(options, wanted.ids);
    const std::unique_ptr<Store, void (*)(Store*)> source(openSource(wanted.from), closeStore);
    insertFrom(options, wanted, *source);
}

static void addInsert(CLI::App& disk, Options& options) {
    CLI::App* command = disk.add_subcommand("insert", "Put pulled disks back, or disks of other adapters in");
    const auto wanted = std::make_shared<InsertOptions>();
    command->add_option("ID", wanted->ids, "The disks")->required()->check(CLI::Range(0U, 65534U));
    CLI::Option* from =
        command->add_option("--from", wanted->from, "The state or lab they are taken from; it stays as it is");
    command->add_option("--of", wanted->of, "The adapter there")->needs(from)->capture_default_str();
    addAdapterOption(*command, options);
    command->callback([&options, wanted] { insert(options, *wanted); });
}

void addDisk(CLI::App& app, Options& options) {
    CLI::App* disk = app.add_subcommand("disk", "Let something happen to a disk");
    disk->require_subcommand(1);
    const auto wanted = std::make_shared<DiskOptions>();
    addChange(*disk, options, wanted, "fail", "It stops answering for good", " that works", true, failDisk);
    addChange(*disk, options, wanted, "pull", "Take it out of its bay", "", true, pullDisk);
    addInsert(*disk, options);
    CLI::App* replace = addChange(*disk, options, wanted, "replace", "Put a new, empty disk into its bay", "", true,
                                  [wanted](Context& context, KT_U16 pd) {
                                      return replaceDisk(context, pd, sectorsOf(context, pd, wanted->size));
                                  });
    replace->add_option("--size", wanted->size, "Of the new one, for instance 500GB or 4TB; else as large")
        ->each([](const std::string& size) { readBytes(size); });
    addAge(*disk, options, wanted);
    addSpoil(*disk, options, wanted, "damage", "Some of its sectors cannot be read any more", FLAW_UNREADABLE);
    addSpoil(*disk, options, wanted, "corrupt", "Some of its sectors hold wrong data, which only a check tells",
             FLAW_WRONG);
    CLI::App* trip =
        addChange(*disk, options, wanted, "trip", "Its SMART status goes over the threshold", "", false,
                  [wanted](Context& context, KT_U16 pd) { return tripSmart(context, pd, !wanted->clear); });
    trip->add_flag("--clear", wanted->clear, "Back under it, its wear undone");
}
