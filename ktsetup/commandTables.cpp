#include "ktsetup/commandTables.h"

#include "Functions/adapter/adapter.h"
#include "Functions/aes/aesEntry.h"
#include "Functions/aes/aesOp.h"
#include "Functions/aes/aesPort.h"
#include "Functions/aes/forceOnline.h"
#include "Functions/consistencyCheck/consistencyCheck.h"
#include "Functions/copyBack/copyBack.h"
#include "Functions/create/create.h"
#include "Functions/create/createV2.h"
#include "Functions/delete/delete.h"
#include "Functions/devMap/devMap.h"
#include "Functions/enclosure/enclosure.h"
#include "Functions/error/error.h"
#include "Functions/event/event.h"
#include "Functions/event/message.h"
#include "Functions/flash/flash.h"
#include "Functions/get/get.h"
#include "Functions/getMaxSize/getMaxSize.h"
#include "Functions/help/help.h"
#include "Functions/import/import.h"
#include "Functions/info/info.h"
#include "Functions/init/init.h"
#include "Functions/locate/locate.h"
#include "Functions/mediaPatrol/mediaPatrol.h"
#include "Functions/migrate/migrate.h"
#include "Functions/migrate/migrateV2.h"
#include "Functions/nvsram/nvsram.h"
#include "Functions/pause/pause.h"
#include "Functions/rebuild/rebuild.h"
#include "Functions/rebuild/rebuildV2.h"
#include "Functions/register/register.h"
#include "Functions/report/report.h"
#include "Functions/rescan/rescan.h"
#include "Functions/set/set.h"
#include "Functions/smart/smart.h"
#include "Functions/spare/spare.h"
#include "Functions/ssd/ssd.h"
#include "Functions/ssdop/ssdop.h"
#include "Functions/status/status.h"
#include "Functions/tandem/tandem.h"
#include "Functions/version/version.h"
#include "Functions/wipe/wipe.h"

#include <iterator>

// clang-format off
#define ROW(word, handler, help, shortHelp) {word, static_cast<int>(sizeof(word)), handler, help, shortHelp}

_cmd_struct generalCmdTableV1[] = {
    ROW("?", doHelp, help_help, question_sh),
    ROW("help", doHelp, help_help, help_sh),
    ROW("devmap", doDevMap, devmap_help, devmap_sh),
    ROW("adapter", doAdapter, adapter_help, adapter_sh),
    ROW("assign", doAssign, spare_help, spare_sh),
    ROW("flash", doFlash, flash_help, flash_sh),
    ROW("rescan", doRescan, rescan_help, rescan_sh),
    ROW("cc", doCC, cc_help, cc_sh),
    ROW("create", doCreate, create_help, create_sh),
    ROW("delete", doDelete, delete_help, delete_sh),
    ROW("event", doEvent, event_help, event_sh),
    ROW("get", doGet, get_help, get_sh),
    ROW("info", doInfo, info_help, info_sh),
    ROW("init", doInit, init_help, init_sh),
    ROW("migrate", doMigrate, migrate_help, migrate_sh),
    ROW("rebuild", doRebuild, rebuild_help, rebuild_sh),
    ROW("set", doSet, set_help, set_sh),
    ROW("enc", doEnclosure, enc_help, enc_sh),
    ROW("import", doImport, import_help, import_sh),
    ROW("locate", doLocate, locate_help, locate_sh),
    ROW("mp", doMP, mp_help, mp_sh),
    ROW("report", doReport, report_help, report_sh),
    ROW("aesop", doAESOp, aesop_help, aesop_sh),
    ROW("aesentry", doAESEntry, aesentry_help, aesentry_sh),
    ROW("aesport", doAESPort, aesport_help, aesport_sh),
    ROW("forceonline", doForceOnline, forceonline_help, forceonline_sh),
    ROW("smart", doSmart, smart_help, smart_sh),
};

_cmd_struct internalCmdTableV1[] = {
    ROW("ssd", doSsdDiagnostic, ssd_help, ssd_sh),
    ROW("ssdop", doSsdOp, ssdop_help, ssdop_sh),
    ROW("devmap", doDevMap, devmap_help, devmap_sh),
    ROW("register", doRegister, register_help, register_sh),
    ROW("nvsram", doNvsramRW, nvsram_help, nvsram_sh),
    ROW("maxcreatesize", doGetMaxsize, getmaxsize_help, getmaxsize_sh),
    ROW("wipe", doWipe, wipe_help, wipe_sh),
    ROW("status", doStatus, status_help, status_sh),
    ROW("error", doError, error_help, error_sh),
    ROW("version", doVersion, version_help, version_sh),
    ROW("flash", doFlash, flash_help, flash_sh),
    ROW("tandem", doTandem, tandem_help, tandem_sh),
    ROW("pause", doPause, pause_help, pause_sh),
};

// "set" and "rescan" stand twice, as in the list that `help` prints, which is settled.
_cmd_struct generalCmdTableV2[] = {
    ROW("?", doHelp, help_help, question_sh),
    ROW("help", doHelp, help_help, help_sh),
    ROW("devmap", doDevMap, devmap_help, devmap_sh),
    ROW("adapter", doAdapter, adapter_help, adapter_sh),
    ROW("assign", doAssign, spare_help, spare_sh),
    ROW("flash", doFlash, flash_help, flash_sh),
    ROW("locate", doLocate, locate_help, locate_sh),
    ROW("rescan", doRescan, rescan_help, rescan_sh),
    ROW("cc", doCC, cc_help, cc_sh),
    ROW("create", doCreateV2, createV2_help, createV2_sh),
    ROW("delete", doDelete, delete_help, delete_sh),
    ROW("event", doEvent, event_help, event_sh),
    ROW("get", doGet, get_help, get_sh),
    ROW("info", doInfo, info_help, info_sh),
    ROW("init", doInit, init_help, init_sh),
    ROW("migrate", doMigrateV2, migrateV2_help, migrateV2_sh),
    ROW("set", doSetV2, setV2_help, setV2_sh),
    ROW("rebuild", doRebuildV2, rebuildV2_help, rebuildV2_sh),
    ROW("smart", doSmart, smart_help, smart_sh),
    ROW("set", doSetV2, setV2_help, setV2_sh),
    ROW("enc", doEnclosure, enc_help, enc_sh),
    ROW("import", doImport, import_help, import_sh),
    ROW("copyback", doCopyBack, copyback_help, copyback_sh),
    ROW("mp", doMP, mp_help, mp_sh),
    ROW("rescan", doRescan, rescan_help, rescan_sh),
    ROW("message", doMessage, message_help, message_sh),
};

_cmd_struct internalCmdTableV2[] = {
    ROW("register", doRegister, register_help, register_sh),
    ROW("nvsram", doNvsramRW, nvsram_help, nvsram_sh),
    ROW("ssd", doSsdDiagnostic, ssd_help, ssd_sh),
    ROW("ssdop", doSsdOp, ssdop_help, ssdop_sh),
    ROW("devmap", doDevMap, devmap_help, devmap_sh),
    ROW("maxcreatesize", doGetMaxsize, getmaxsize_help, getmaxsize_sh),
    ROW("wipe", doWipe, wipe_help, wipe_sh),
    ROW("status", doStatus, status_help, status_sh),
    ROW("error", doError, error_help, error_sh),
    ROW("version", doVersion, version_help, version_sh),
    ROW("flash", doFlash, flash_help, flash_sh),
    ROW("pause", doPause, pause_help, pause_sh),
    ROW("tandem", doTandem, tandem_help, tandem_sh),
};

// Each handler with its options: for completion, and for whoever compares options with help.
static const CommandOptions commandOptions[] = {
    {doHelp, &helpOptions},
    {doDevMap, &devmapOptions},
    {doAdapter, &adapterOptions},
    {doAssign, &spareOptions},
    {doFlash, &flashOptions},
    {doRescan, &rescanOptions},
    {doCC, &ccOptions},
    {doCreate, &createOptions},
    {doDelete, &deleteOptions},
    {doEvent, &eventOptions},
    {doGet, &getOptions},
    {doInfo, &infoOptions},
    {doInit, &initOptions},
    {doMigrate, &migrateOptions},
    {doRebuild, &rebuildOptions},
    {doSet, &setOptions},
    {doEnclosure, &encOptions},
    {doImport, &importOptions},
    {doLocate, &locateOptions},
    {doMP, &mpOptions},
    {doReport, &reportOptions},
    {doAESOp, &aesopOptions},
    {doAESEntry, &aesentryOptions},
    {doAESPort, &aesportOptions},
    {doForceOnline, &forceonlineOptions},
    {doSmart, &smartOptions},
    {doSsdDiagnostic, &ssdOptions},
    {doSsdOp, &ssdopOptions},
    {doRegister, &registerOptions},
    {doNvsramRW, &nvsramOptions},
    {doGetMaxsize, &getmaxsizeOptions},
    {doWipe, &wipeOptions},
    {doStatus, &statusOptions},
    {doError, &errorOptions},
    {doVersion, &versionOptions},
    {doTandem, &tandemOptions},
    {doPause, &pauseOptions},
    {doCreateV2, &createV2Options},
    {doMigrateV2, &migrateV2Options},
    {doSetV2, &setV2Options},
    {doRebuildV2, &rebuildV2Options},
    {doCopyBack, &copybackOptions},
    {doMessage, &messageOptions},
};
// clang-format on

const CommandSet ldBasedCommands = {generalCmdTableV1, std::size(generalCmdTableV1), internalCmdTableV1,
                                    std::size(internalCmdTableV1)};
const CommandSet arrayBasedCommands = {generalCmdTableV2, std::size(generalCmdTableV2), internalCmdTableV2,
                                       std::size(internalCmdTableV2)};

const OptionSet* optionsOf(CommandHandler handler) {
    for (const CommandOptions& row : commandOptions) {
        if (row.handler == handler) return row.options;
    }
    return nullptr;
}
