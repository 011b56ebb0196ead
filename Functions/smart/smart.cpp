#include "Functions/smart/smart.h"

#include "Public/disks.h"
#include "Public/errorMsg.h"
#include "Public/listing.h"
#include "Public/utility.h"

static Take takeDisk(int option, const char* value, KT_U16& id) {
    if (option != 'p') return Take::Help;
    if (!parseDecimal(emptyIsZero(value), id)) {
        out("-p : invalid phyiscal disk id '%s'\n", value);
        return Take::Failed;
    }
    return Take::Yes;
}

static KT_U8 findDisk(KT_U16 id, _HD_Info_Request& request) {
    KT_U8 status = KT_OK;
    if (readDisk(id, request, status)) return KT_OK;
    return status == KT_OK ? KT_U8{KT_ERR_INVALID_PD} : status;
}

// Asks the disk itself whether it considers itself healthy.
static KT_U8 reportReturnStatus(KT_U16 id) {
    _ATA_PassThrough command = {};
    command.Command = KT_ATA_SMART;
    command.Features = KT_SMART_RETURN_STATUS;
    command.LBAMid = KT_SMART_LBA_MID;
    command.LBAHigh = KT_SMART_LBA_HIGH;
    KT_U8 status = KT_PassThrough_ATA(gCurrentAdapter, id, &command);
    if (status != KT_OK) {
        out("\nUnable to get smart return status for PHY %d (error %d: %s)\n", id, status, ErrorMessage(status));
    } else if (command.Status == KT_ATA_HEALTHY) {
        out("SMART STATUS RETURN: OK.\n");
    } else {
        out("SMART STATUS RETURN: NotOK.\n");
    }
    return status;
}

static const char* attributeStatusWord(KT_U8 status) {
    switch (status) {
    case KT_SMART_GOOD:
        return "OK";
    case KT_SMART_FAILING:
        return "Failing now";
    case KT_SMART_FAILED_BEFORE:
        return "In the past";
    default:
        return "Unknown";
    }
}

static void printAttribute(const _SMART_Attribute& attribute) {
    static constexpr int NAME_WIDTH = 20;
    static constexpr KT_U64 RAW_BITS = 0xFFFFFFFFFFFF;
    FieldText name(attribute.Name);
    out("%02X\t", attribute.Id);
    out("%-*s\t", NAME_WIDTH, name.text[0] == '\0' ? "Unknown_Attribute" : name.text);
    out("%d\t%d\t%-8d\t", attribute.Current, attribute.Worst, attribute.Threshold);
    out("%012llX\t", static_cast<unsigned long long>(attribute.RawValue & RAW_BITS));
    out("%s\n", attributeStatusWord(attribute.Status));
}

static KT_U8 reportAttributes(KT_U16 id) {
    _SMART_Info info = {};
    constexpr unsigned room = sizeof info.Attributes / sizeof info.Attributes[0];
    KT_U8 status = KT_PD_GET_SMART_INFO(gCurrentAdapter, id, &info);
    if (status != KT_OK) {
        out("\nUnable to get smart information for PHY %d (error %d: %s)\n", id, status, ErrorMessage(status));
        return status;
    }
    if (info.AttributeCount == 0) return KT_OK;
    out("\nSmart Info\n");
    out("ID\tAttribute Name\t\tCurrent\tWorst\tThreshhold\tRawValue\tStatus\n");
    for (unsigned i = 0; i < info.AttributeCount && i < room; ++i) {
        printAttribute(info.Attributes[i]);
    }
    return KT_OK;
}

static KT_U8 reportSmart(KT_U16 id) {
    _HD_Info_Request disk;
    KT_U8 status = findDisk(id, disk);
    if (status != KT_OK) {
        out("Unable to get info of PD %d (error %d : %s)\n", id, status, ErrorMessage(status));
        return status;
    }
    if (disk.hdInfo[0].HDType & KT_HD_SAS) {
        out("SAS PD %d has not SMART information\n", id);
        return KT_OK;
    }
    status = reportReturnStatus(id);
    return status == KT_OK ? reportAttributes(id) : status;
}

int doSmart(int argc, char** argv, _cmd_struct* row) {
    OptionCounts given;
    int result = 0;
    KT_U16 id = 0;
    auto take = [&](int option, const char* value) { return takeDisk(option, value, id); };
    if (!scanOptions({argc, argv, row}, smartOptions, given, result, take)) return result;
    if (!givenOnce(smartOptions, given) || !givenRequired(smartOptions, given, argv[0])) return 1;
    return reportSmart(id);
}
