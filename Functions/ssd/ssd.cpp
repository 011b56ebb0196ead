#include "Functions/ssd/ssd.h"

#include <bitset>
#include <strings.h>

#include "Functions/ssd/health.h"
#include "Public/disks.h"
#include "Public/errorMsg.h"
#include "Public/knownAdapter.h"
#include "Public/listing.h"

static constexpr int SSD_WIDTH = 24;

namespace {
enum class SsdAction : KT_U8 { Health, Start, Stop, Status };

struct SsdWord {
    char word[8];
    SsdAction action;
};
const SsdWord actionWords[] = {{"health", SsdAction::Health},
                               {"start", SsdAction::Start},
                               {"stop", SsdAction::Stop},
                               {"status", SsdAction::Status}};

struct SsdOptions {
    OptionCounts given;
    KT_U16 pd = 0;
    SsdAction action = SsdAction::Health;
    bool extended = false;
};
} // namespace

static Take takeAction(const char* value, SsdOptions& o) {
    for (const SsdWord& row : actionWords) {
        if (strcasecmp(row.word, value) != 0) continue;
        o.action = row.action;
        return Take::Yes;
    }
    out("-a : invalid action '%s'.\n", value);
    return Take::Failed;
}

static Take takeOption(int option, const char* value, SsdOptions& o) {
    switch (option) {
    case 'd':
        if (parseDecimal(value, o.pd)) return Take::Yes;
        out("-d : invalid PD ID '%s'\n", value);
        return Take::Failed;
    case 'a':
        return takeAction(value, o);
    case 't':
        o.extended = strcasecmp(value, "long") == 0;
        if (o.extended || strcasecmp(value, "short") == 0) return Take::Yes;
        out("-t : invalid test '%s'.\n", value);
        return Take::Failed;
    default:
        return Take::Help;
    }
}

static bool checkOptions(const SsdOptions& o, const char* command) {
    if (!givenOnce(ssdOptions, o.given)) return false;
    if (o.action != SsdAction::Health && o.given['d'] == 0) {
        out(OptionRequired, command, 'd');
        return false;
    }
    if (o.given['t'] == 0 || o.action == SsdAction::Start) return true;
    out("%s: option -t belongs to -a start only\n", command);
    return false;
}

static const char* stateWord(KT_U8 state) {
    static const char words[][10] = {"never run", "running", "passed", "failed", "aborted"};
    return state < sizeof words / sizeof words[0] ? words[state] : "unknown";
}

static KT_U8 runDiagnostic(KT_U16 pd, KT_U8 action, _SSD_Diagnostic& diagnostic) {
    diagnostic = {};
    diagnostic.Action = action;
    return KT_SSD_Diagnostic(gCurrentAdapter, pd, &diagnostic);
}

static void printRow(const _HD_Info& disk) {
    const KT_U16 pd = disk.Link.Self.DevID;
    SmartPage page;
    readSmartPage(pd, page);
    if (page.status != KT_OK || !page.sound) page.data = {};
    const HealthColumns columns = healthColumns(page.data);
    _SSD_Diagnostic diagnostic;
    const bool known = runDiagnostic(pd, KT_SSD_ASK, diagnostic) == KT_OK;
    const char* health = page.status == KT_OK && !page.sound ? "damaged" : columns.life.text;
    out("%-5d %-24s %-9s %-9s %-9s %-9s %-5s %s\n", pd, FieldText(disk.Model).text, FieldText(disk.FWVersion).text,
        health, columns.written.text, columns.hours.text, columns.temperature.text,
        known ? stateWord(diagnostic.State) : "N/A");
}

static int showTable() {
    bool any = false;
    // A row takes calls of its own: a list that repeats its disks for ever must not keep us.
    std::bitset<size_t{KT_NO_ID} + 1> shown;
    const ListEnd end =
        walkList<_HD_Info>(KT_PD_GetHDInfo, EVERYTHING, recordsPerPage(sizeof(_HD_Info)), [&](const _HD_Info& disk) {
            if (!isSolidState(disk) || shown.test(disk.Link.Self.DevID)) return true;
            shown.set(disk.Link.Self.DevID);
            if (!any) out("PD    Model                    Microcode Life left Written   Power on  Temp  Self-test\n");
            any = true;
            printRow(disk);
            return true;
        });
    if (end.status != KT_OK) {
        out("\nUnable to get info of PD (error %d: %s)\n", end.status, ErrorMessage(end.status));
    } else if (!any) {
        out("\nNo solid-state disk is found\n");
    }
    return end.status;
}

static int showHealth(KT_U16 pd, const _HD_Info& disk) {
    SmartPage page;
    readSmartPage(pd, page);
    if (page.status != KT_OK) {
        out("\nUnable to get SMART data of PD %d (error %d: %s)\n", pd, page.status, ErrorMessage(page.status));
        return page.status;
    }
    if (!page.sound) {
        out("\nThe SMART data of PD %d is damaged: its checksum is wrong.\n", pd);
        return 1;
    }
    printNum(SSD_WIDTH, "hard disk id:", pd);
    printField(SSD_WIDTH, "model:", disk.Model);
    printField(SSD_WIDTH, "microcode version:", disk.FWVersion);
    printHealth(page.data);
    return 0;
}

static void printTest(KT_U16 pd, const _SSD_Diagnostic& diagnostic) {
    printNum(SSD_WIDTH, "hard disk id:", pd);
    printStr(SSD_WIDTH, "self-test:", stateWord(diagnostic.State));
    if (diagnostic.State == KT_SSD_RUNNING) out("%-*s %d %%\n", SSD_WIDTH, "progress:", diagnostic.Percentage);
    if (diagnostic.State == KT_SSD_NEVER || diagnostic.State == KT_SSD_RUNNING) return;
    out("%-*s %lu h\n", SSD_WIDTH, "power on when it ended:", static_cast<unsigned long>(diagnostic.PowerOnHours));
    printNum(SSD_WIDTH, "result code:", diagnostic.Result);
    if (diagnostic.FirstErrorLBA == KT_SSD_NO_LBA) {
        printStr(SSD_WIDTH, "first error LBA:", "none");
    } else {
        out("%-*s %llu\n", SSD_WIDTH, "first error LBA:", static_cast<unsigned long long>(diagnostic.FirstErrorLBA));
    }
}

static int showTest(KT_U16 pd) {
    _SSD_Diagnostic diagnostic;
    const KT_U8 status = runDiagnostic(pd, KT_SSD_ASK, diagnostic);
    if (status == KT_OK) {
        printTest(pd, diagnostic);
    } else {
        out("\nUnable to get the self-test of PD %d (error %d: %s)\n", pd, status, ErrorMessage(status));
    }
    return status;
}

static int startTest(KT_U16 pd, bool extended) {
    _SSD_Diagnostic diagnostic;
    const KT_U8 status = runDiagnostic(pd, extended ? KT_SSD_START_LONG : KT_SSD_START_SHORT, diagnostic);
    if (status == KT_OK) {
        out("The %s self-test of PD %d is started.\n", extended ? "long" : "short", pd);
    } else {
        out("\nUnable to start the self-test of PD %d (error %d: %s)\n", pd, status, ErrorMessage(status));
    }
    return status;
}

static int stopTest(KT_U16 pd) {
    _SSD_Diagnostic diagnostic;
    const KT_U8 status = runDiagnostic(pd, KT_SSD_ABORT, diagnostic);
    if (status == KT_OK) {
        out("The self-test of PD %d is stopped.\n", pd);
    } else {
        out("\nUnable to stop the self-test of PD %d (error %d: %s)\n", pd, status, ErrorMessage(status));
    }
    return status;
}

int doSsdDiagnostic(int argc, char** argv, _cmd_struct* row) {
    int result = 0;
    SsdOptions o;
    auto take = [&](int option, const char* value) { return takeOption(option, value, o); };
    if (!scanOptions({argc, argv, row}, ssdOptions, o.given, result, take)) return result;
    if (!checkOptions(o, argv[0])) return 1;
    if (o.given['d'] == 0) return showTable();
    const bool changes = o.action == SsdAction::Start || o.action == SsdAction::Stop;
    if (changes && !isKnownAdapter(gCurrentAdapter, result)) return result;
    _HD_Info_Request disk;
    if (!readSolidState(o.pd, disk, result)) return result;
    switch (o.action) {
    case SsdAction::Start:
        return startTest(o.pd, o.extended);
    case SsdAction::Stop:
        return stopTest(o.pd);
    case SsdAction::Status:
        return showTest(o.pd);
    default:
        return showHealth(o.pd, disk.hdInfo[0]);
    }
}
