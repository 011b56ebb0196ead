#include "adapter/blocks.h"
#include "adapter/health.h"
#include "adapter/smart.h"
#include "commands.h"

#include <memory>

using namespace sim;

struct DiskOptions {
    unsigned id = 0;
    std::string size;
    std::string aspect;
    unsigned amount = 1;
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

/* Asks first when virtual disks lie on the disk. `missing` completes "there is no disk 5 ...". */
static CLI::App* addChange(CLI::App& disk, Options& options, const std::shared_ptr<DiskOptions>& wanted,
                           const char* word, const char* help, const char* missing, bool asks,
                           const DiskChange& change) {
    CLI::App* command = disk.add_subcommand(word, help);
    command->add_option("ID", wanted->id, "The disk")->required()->check(CLI::Range(0U, 65534U));
    addAdapterOption(*command, options);
    if (asks) addForceOption(*command, options);
    command->callback([&options, wanted, missing, asks, change] {
        changeAdapter(options, [&](Context& context) {
            const auto pd = static_cast<KT_U16>(wanted->id);
            const std::string name = "Disk " + std::to_string(pd);
            if (asks && holdsData(context, pd) && !confirm(options, name + " holds parts of virtual disks. Go on?"))
                throw CommandFailure{"nothing was changed"};
            checkDone(change(context, pd), pd, missing);
            settleAll(context.store);
        });
    });
    return command;
}

/* Gigabytes as vendors count them. */
static KT_U64 readSectors(const Context& context, KT_U16 pd, const std::string& size) {
    if (size.empty()) return 0;
    char* end = nullptr;
    const double amount = strtod(size.c_str(), &end);
    const std::string unit = end;
    const double bytes = amount * (unit == "TB" ? 1e12 : 1e9);
    if (end == size.c_str() || (unit != "GB" && unit != "TB") || bytes < 1e9 || bytes > 1e17)
        throw CommandFailure{"\"" + size + "\" is not a size such as 500GB or 4TB"};
    const auto there = find<_HD_Info>(context, pd);
    const auto pulled = find<PulledDisk>(context, pd);
    const KT_U32 sector = there ? there->BlockSize : pulled ? pulled->info.BlockSize : 512;
    return static_cast<KT_U64>(bytes) / std::max<KT_U32>(sector, 512);
}

static void addAge(CLI::App& disk, Options& options, const std::shared_ptr<DiskOptions>& wanted) {
    CLI::App* age = addChange(disk, options, wanted, "age", "Wear it: its SMART attributes move", " with SMART", false,
                              [wanted](Context& context, KT_U16 pd) {
                                  return ageDisk(context, pd, wanted->aspect, wanted->amount)
                                             ? KT_U8{KT_OK}
                                             : KT_U8{KT_ERR_INVALID_PD};
                              });
    age->add_option("WHAT", wanted->aspect, "What wears")->required()->check(CLI::IsMember(agingWords()));
    age->add_option("AMOUNT", wanted->amount, "By how much")->capture_default_str();
}

void addDisk(CLI::App& app, Options& options) {
    CLI::App* disk = app.add_subcommand("disk", "Let something happen to a disk");
    disk->require_subcommand(1);
    const auto wanted = std::make_shared<DiskOptions>();
    addChange(*disk, options, wanted, "fail", "It stops answering for good", " that works", true, failDisk);
    addChange(*disk, options, wanted, "pull", "Take it out of its bay", "", true, pullDisk);
    addChange(*disk, options, wanted, "insert", "Put a pulled disk back", " that was pulled", false, insertDisk);
    CLI::App* replace = addChange(*disk, options, wanted, "replace", "Put a new, empty disk into its bay", "", true,
                                  [wanted](Context& context, KT_U16 pd) {
                                      return replaceDisk(context, pd, readSectors(context, pd, wanted->size));
                                  });
    replace->add_option("--size", wanted->size, "Of the new one, for instance 500GB or 4TB; else as large");
    addAge(*disk, options, wanted);
    CLI::App* trip =
        addChange(*disk, options, wanted, "trip", "Its SMART status goes over the threshold", "", false,
                  [wanted](Context& context, KT_U16 pd) { return tripSmart(context, pd, !wanted->clear); });
    trip->add_flag("--clear", wanted->clear, "Back under it, its wear undone");
}
