#include "Functions/status/status.h"

#include <algorithm>
#include <strings.h>

#include "Public/errorMsg.h"
#include "Public/listing.h"
#include "Public/utility.h"

// Records that the status buffer holds.
static constexpr KT_U16 MOST_RECORDS = 128;

static Take takeOption(int option, const char* value, KT_U16& id) {
    if (option == 'o') {
        if (strcasecmp(value, "pd") == 0 || strcasecmp(value, "hd") == 0) return Take::Yes;
        out("-o : invalid object '%s'\n", value);
        return Take::Failed;
    }
    if (option != 'i') return Take::Help;
    if (!parseDecimal(emptyIsZero(value), id)) {
        out("-i : id is not a number\n");
        return Take::Failed;
    }
    return Take::Yes;
}

void hdStatus_printf(const _HD_SMART_STATUS* status) {
    static constexpr int STATUS_WIDTH = 26;
    printNum(STATUS_WIDTH, "hard disk id:", status->HDID);
    printStr(STATUS_WIDTH, "SMART threshold exceeded:", status->SmartThresholdExceeded ? "true" : "false");
}

static KT_U8 reportStatus(KT_U16 id) {
    KT_U16 perPage = std::min(recordsPerPage(sizeof(_HD_SMART_STATUS), MOST_RECORDS), MOST_RECORDS);
    ListEnd end = walkList<_HD_SMART_STATUS, Cut::Shows>(KT_PD_GetSmartStatus, itemRange(id), perPage,
                                                         [](const _HD_SMART_STATUS& status) {
                                                             hdStatus_printf(&status);
                                                             return true;
                                                         });
    if (end.unallocated != 0) {
        out("\nFailed to allocated space for KT_PD_GetStatus().\n");
    } else if (end.status != KT_OK) {
        out("\nUnable to get status of hard disk %d (error %d: %s).\n", id, end.status, ErrorMessage(end.status));
    } else if (end.total == 0) {
        out("No hard disk is found.\n");
    }
    return end.status;
}

int doStatus(int argc, char** argv, _cmd_struct* row) {
    OptionCounts given;
    int result = 0;
    KT_U16 id = ALL_ITEMS;
    auto take = [&](int option, const char* value) { return takeOption(option, value, id); };
    if (!scanOptions({argc, argv, row}, statusOptions, given, result, take)) return result;
    if (!givenOnce(statusOptions, given) || !givenRequired(statusOptions, given, argv[0])) return 1;
    return reportStatus(id);
}
