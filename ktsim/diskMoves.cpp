// ktsim disk: those that fail, go, come and are replaced.
#include "changes/arrival.h"
#include "changes/diskIds.h"
#include "changes/health.h"
#include "commands.h"
#include "lab/lab.h"
#include "media/blocks.h"
#include "media/diskMakes.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>
#include <sys/stat.h>

using namespace sim;

static const char NO_ROOM[] = "the adapter has no free bay or port, or no number, for all that";

void checkDisk(KT_U8 status, unsigned pd, const char* what) {
    if (status == KT_OK) return;
    const std::string disk = "disk " + std::to_string(pd);
    if (status == KT_ERR_PD_MISSING || status == KT_ERR_INVALID_PD) throw CommandFailure{"there is no " + disk + what};
    if (status == KT_ERR_NOT_SUPPORTED) throw CommandFailure{"the adapter has no ports for such disks"};
    if (status == KT_ERR_NO_RESOURCE) throw CommandFailure{NO_ROOM};
    throw CommandFailure{disk + ": the adapter answers with error " + std::to_string(status)};
}

bool holdsData(const Context& context, KT_U16 pd) {
    return blocksOf(context, pd).BlkCount != 0;
}

void askAboutDisks(const Options& options, const std::vector<KT_U16>& pds) {
    std::string holding;
    int holds = 0;
    changeAdapter(options, [&](Context& context) {
        for (const KT_U16 pd : pds) {
            if (!holdsData(context, pd)) continue;
            holding += (holding.empty() ? "" : ", ") + std::to_string(pd);
            ++holds;
        }
    });
    if (holds == 0) return;
    // Asked with the state let go of: nobody else waits for the answer.
    const std::string disks = (holds == 1 ? "Disk " : "Disks ") + holding + (holds == 1 ? " holds" : " hold");
    if (!confirm(options, disks + " parts of virtual disks. Go on?")) throw CommandFailure{"nothing was changed"};
}

// What befalls several disks; `missing` completes "there is no disk 5 ...".
struct Blow {
    const char* word;
    const char* help;
    const char* missing;
    std::function<KT_U8(Context&, const std::vector<KT_U16>&, KT_U16& wrong)>
        change; // `wrong`: whom the status is about
};

static void strike(const Options& options, const std::vector<unsigned>& ids, const Blow& blow) {
    std::vector<KT_U16> pds;
    for (const unsigned id : ids)
        if (std::find(pds.begin(), pds.end(), id) == pds.end()) pds.push_back(static_cast<KT_U16>(id));
    askAboutDisks(options, pds);
    changeAdapter(options, [&](Context& context) {
        KT_U16 wrong = pds.front();
        const KT_U8 status = blow.change(context, pds, wrong);
        checkDisk(status, wrong, blow.missing);
        settleAll(context.store);
    });
}

static void addBlow(const Command& disk, Options& options, const Blow& blow) {
    const Command command = disk.addCommand(blow.word, blow.help);
    const auto ids = std::make_shared<std::vector<unsigned>>();
    command.addOption("ID", *ids, "The disks").required().check(inRange(0U, 65534U));
    addAdapterOption(command, options);
    addForceOption(command, options);
    command.onGiven([&options, ids, blow] { strike(options, *ids, blow); });
}

static KT_U8 failThem(Context& context, const std::vector<KT_U16>& pds, KT_U16& wrong) {
    for (const KT_U16 pd : pds) {
        wrong = pd;
        const KT_U8 status = failDisk(context, pd);
        if (status != KT_OK) return status;
    }
    return KT_OK;
}

static KT_U8 pullThem(Context& context, const std::vector<KT_U16>& pds, KT_U16& wrong) {
    for (const KT_U16 pd : pds) {
        wrong = pd;
        if (!find<_HD_Info>(context, pd)) return KT_ERR_PD_MISSING;
    }
    return pullDisks(context, pds);
}

struct ReplaceOptions {
    unsigned id = 0;
    std::string size;
    std::string type;
    std::string model;
    KT_U32 sector = 0; // 0 = as before
};

// Gigabytes as vendors count them; 0 = not said.
static KT_U64 readBytes(const std::string& size) {
    if (size.empty()) return 0;
    char* end = nullptr;
    const double amount = strtod(size.c_str(), &end);
    const std::string unit = end;
    const double bytes = amount * (unit == "TB" ? 1e12 : 1e9);
    if (end == size.c_str() || (unit != "GB" && unit != "TB") || !(bytes >= 1e9 && bytes <= 1e17))
        throw CommandFailure{"\"" + size + "\" is not a size such as 500GB or 4TB"};
    return static_cast<KT_U64>(bytes);
}

// What the words make of the record of the disk that goes: one of the same make and size unless they say otherwise, and
// called after what it is.
static void manufactureOther(_HD_Info& disk, const ReplaceOptions& wanted) {
    const bool other = !wanted.size.empty() || !wanted.type.empty() || wanted.sector != 0;
    if (other) {
        const DiskMake* named = diskMakeNamed(wanted.type);
        const DiskMake& make = named ? *named : diskMakeOfType(disk.HDType);
        const KT_U64 bytes = wanted.size.empty() ? bytesSoldAs(disk.Size, disk.BlockSize) : readBytes(wanted.size);
        manufacture(disk, make, make.type & KT_HD_ATAPI ? 0 : bytes, wanted.sector ? wanted.sector : disk.BlockSize);
    }
    if (wanted.model.empty()) return;
    memset(disk.Model, 0, sizeof disk.Model);
    memcpy(disk.Model, wanted.model.data(), wanted.model.size());
}

static void addReplace(const Command& disk, Options& options) {
    const Command command = disk.addCommand("replace", "Put a new, empty disk into its bay");
    const auto wanted = std::make_shared<ReplaceOptions>();
    command.addOption("ID", wanted->id, "The disk").required().check(inRange(0U, 65534U));
    command.addOption("--size", wanted->size, "Of the new one, for instance 500GB or 4TB; else as large")
        .each([](const std::string& size) { readBytes(size); });
    command.addOption("--type", wanted->type, "SATA, SAS SSD and so on; else of the same type")
        .check(oneOf(diskMakeWords()));
    command.addOption("--sector", wanted->sector, "Bytes of a sector").check(oneNumberOf({512, 1024, 2048, 4096}));
    command.addOption("--model", wanted->model, "What it calls itself, 40 characters at most")
        .check(checkedBy([](const std::string& model) {
            return model.size() <= sizeof(_HD_Info::Model) ? std::string()
                                                           : std::string("is longer than 40 characters");
        }));
    addAdapterOption(command, options);
    addForceOption(command, options);
    command.onGiven([&options, wanted] {
        const auto pd = static_cast<KT_U16>(wanted->id);
        askAboutDisks(options, {pd});
        changeAdapter(options, [&](Context& context) {
            checkDisk(replaceDisk(context, pd, [&](_HD_Info& info) { manufactureOther(info, *wanted); }), pd, "");
            settleAll(context.store);
        });
    });
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
    if (status != KT_OK) throw CommandFailure{NO_ROOM};
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
            const auto pd = static_cast<KT_U16>(id);
            const bool out = find<PulledDisk>(context, pd) && std::find(here.begin(), here.end(), pd) == here.end();
            if (!out) checkDisk(KT_ERR_PD_MISSING, id, " that was pulled");
            here.push_back(idOnReturn(context, pd));
        }
        const KT_U8 status = insertDisks(context, here);
        if (status == KT_ERR_NO_RESOURCE) throw CommandFailure{NO_ROOM};
        checkDisk(status, here.front(), " that was pulled");
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

static void addInsert(const Command& disk, Options& options) {
    const Command command = disk.addCommand("insert", "Put pulled disks back, or disks of other adapters in");
    const auto wanted = std::make_shared<InsertOptions>();
    command.addOption("ID", wanted->ids, "The disks").required().check(inRange(0U, 65534U));
    const Option from =
        command.addOption("--from", wanted->from, "The state or lab they are taken from; it stays as it is");
    command.addOption("--of", wanted->of, "The adapter there").needs(from).showDefault();
    addAdapterOption(command, options);
    command.onGiven([&options, wanted] { insert(options, *wanted); });
}

void addDiskMoves(const Command& disk, Options& options) {
    addBlow(disk, options, Blow{"fail", "They stop answering for good, one after the other", " that works", failThem});
    addBlow(disk, options, Blow{"pull", "Take them out of their bays, all at once", "", pullThem});
    addInsert(disk, options);
    addReplace(disk, options);
}
