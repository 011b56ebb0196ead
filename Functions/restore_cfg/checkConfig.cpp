#include "Functions/restore_cfg/checkConfig.h"

#include "Functions/restore_cfg/configFile.h"
#include "Functions/restore_cfg/obstacles.h"
#include "Functions/restore_cfg/raidRestore.h"
#include "Public/cfg/writer.h"
#include "Public/disks.h"
#include "Public/fileName.h"
#include "Public/saidBy.h"

static constexpr int USAGE = 2;

namespace {
// What a restore would begin with.
struct Reading {
    CfgFile file;
    _HBA_Info_Page current = {}; // the adapter's settings
    _HBA_Info_Page page = {};    // what they would become
    CfgRaidHolder raid = newCfgRaid();
};
} // namespace

// A line for each value of a section that would be written anew.
static std::string changesOf(int section, const std::string& owner, unsigned index, const Reading& reading) {
    std::string lines;
    for (size_t i = 0; i < cfgSections[section].count; ++i) {
        const CfgKey& key = cfgSections[section].keys[i];
        if (key.use == CfgUse::ReadOnly) continue;
        const std::string now = shownCfgValue(cfgValueText(key, &reading.current, index));
        const std::string then = shownCfgValue(cfgValueText(key, &reading.page, index));
        if (now == then) continue;
        lines.append("  ").append(owner).append(": ").append(key.key).append("=").append(now);
        lines.append(" becomes ").append(then).append("\n");
    }
    return lines;
}

static void printSettings(const Reading& reading) {
    std::string lines = changesOf(CFG_ADAPTER_SECTION, "adapter", 0, reading);
    for (unsigned port = 0; port < CFG_PORTS; ++port) {
        lines += changesOf(CFG_PORT_SECTION, "port " + std::to_string(port), port, reading);
    }
    out("%s\n%s", lines.empty() ? "The settings would stay as they are." : "Settings would change:", lines.c_str());
}

static std::string trimmed(std::string text) {
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
}

// One member of a virtual disk that would be deleted.
static void printMember(KT_U16 id) {
    _HD_Info_Request disk;
    KT_U8 status = KT_OK;
    if (id == KT_NO_ID) {
        out("    a disk that is missing\n");
    } else if (!readDisk(id, disk, status)) {
        out("    disk %d, which is not there\n", id);
    } else {
        out("    disk %d, %s, serial number %s\n", id, trimmed(FieldText(disk.hdInfo[0].Model).text).c_str(),
            trimmed(FieldText(disk.hdInfo[0].SerialNo).text).c_str());
    }
}

static void printDeleted(const CfgRaid& present) {
    if (present.ldCount + present.spareCount == 0) {
        out("Nothing would be deleted.\n");
        return;
    }
    out("Would be deleted:\n");
    for (unsigned i = 0; i < present.ldCount; ++i) {
        const _LD_Info& ld = present.lds[i];
        out("  virtual disk %d '%s' (%s, %llu M)\n", ld.ID, FieldText(ld.Name).text, RaidModeStr(ld.RaidMode),
            static_cast<unsigned long long>(ld.Size >> 10));
        for (KT_U16 disk : memberDisks(ld)) {
            printMember(disk);
        }
    }
    for (unsigned i = 0; i < present.spareCount; ++i) {
        out("  spare disk %d, which becomes free\n", present.spares[i].HDID);
    }
}

static void printCreated(const CfgRaid& wanted) {
    if (wanted.ldCount + wanted.spareCount > 0) out("Would be created:\n");
    for (unsigned i = 0; i < wanted.ldCount; ++i) {
        out("  %s\n", wantedText(wanted.lds[i]).c_str());
    }
    for (unsigned i = 0; i < wanted.spareCount; ++i) {
        out("  %s\n", wantedText(wanted.spares[i]).c_str());
    }
}

static bool refuse(const std::string& reason) {
    out("%s; the RAID configuration stays as it is.\n", reason.c_str());
    return false;
}

// What would become of the virtual disks and spares. False when those of the file cannot take the place of the others.
static bool checkRaid(const RestoreOptions& o, const Reading& reading) {
    const CfgRaid& wanted = *reading.raid;
    if (!isRaidOn(reading.current, reading.page)) {
        const bool here = (reading.current.RAID_Feature & RAID_FEATURE_ON) != 0;
        refuse(here ? "The file switches RAID off" : "RAID is switched off on this adapter");
        return wanted.ldCount + wanted.spareCount == 0;
    }
    const std::string lack = raidLack(wanted, o.mode);
    if (!lack.empty()) return refuse(lack);
    CfgRaidHolder present = newCfgRaid();
    if (present == nullptr || readCfgRaid(*present) != KT_OK) {
        return refuse("What the adapter has could not be read");
    }
    printDeleted(*present);
    printCreated(wanted);
    const std::vector<std::string> obstacles = findObstacles(*present, wanted);
    if (!obstacles.empty()) out("In the way:\n");
    for (const std::string& obstacle : obstacles) {
        out("  %s\n", obstacle.c_str());
    }
    return obstacles.empty();
}

// Reads what a restore reads. What is wrong has been said.
static bool read(const RestoreOptions& o, Reading& reading) {
    if (reading.raid == nullptr) {
        out("There is not enough memory.\n");
        return false;
    }
    useFile(reading.file, o.file);
    if (readPage(reading.current) != KT_OK) return false;
    reading.page = reading.current;
    _file_sasaddr_place_info_t places = {};
    bool good = false;
    // Reading prints its messages for a restore; the check shows them only when the file cannot be read.
    const std::string said =
        saidBy([&] { good = readConfiguration(reading.file, o.mode, places, reading.page, *reading.raid); });
    if (!good) out("%s", said.c_str());
    return good;
}

static bool check(const RestoreOptions& o) {
    Reading reading;
    bool good = read(o, reading);
    if (good) {
        printSettings(reading);
        const bool more = reading.raid->ldCount + reading.raid->spareCount > 0;
        if (!o.raid && more) out("Its virtual disks and spares are looked at with --raid only.\n");
        if (o.raid) good = checkRaid(o, reading);
    }
    out("'%s' %s be restored here.\n", reading.file.shown.c_str(), good ? "can" : "cannot");
    return good;
}

int doCheck_CFG(int argc, char** argv, _cmd_struct* row) {
    OptionCounts given;
    int result = 0;
    RestoreOptions o;
    auto take = [&](int option, const char* value) { return takeRestoreOption(option, value, "-t : invalid type", o); };
    if (!scanOptions({argc, argv, row}, checkOptions, given, result, take)) return result == 0 ? 0 : USAGE;
    if (!givenOnce(checkOptions, given) || !givenRequired(checkOptions, given, "check")) return USAGE;
    if (optind < argc) {
        out("check: '%s' is one word too many.\n", shownName(argv[optind]).c_str());
        return USAGE;
    }
    return check(o) ? 0 : 1;
}
