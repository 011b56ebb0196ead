#include "Functions/restore_cfg/raidRestore.h"

#include <cstring>
#include <iterator>
#include <string>

#include "Public/errorMsg.h"
#include "Public/listing.h"
#include "Public/utility.h"

void KT_Restore_LdCreateParam(const _LD_Info* vd, _Create_LD_Param* param) {
    memset(param, 0, sizeof *param);
    param->InitializationOption = KT_INIT_NONE;
    param->StripeBlockSize = 64;
    param->SectorCoefficient = 1;
    param->RaidMode = vd->RaidMode;
    param->NumParityDisk = vd->NumParityDisk;
    param->HDCount = vd->HDCount;
    for (unsigned i = 0; i < vd->HDCount && i < std::size(param->HDIDs); ++i) {
        param->HDIDs[i] = vd->BlockIDs[i];
    }
    memcpy(param->Name, vd->Name, sizeof param->Name);
    switch (vd->StripeBlockSize) {
    case 16:
    case 32:
    case 64:
    case 128:
        param->StripeBlockSize = vd->StripeBlockSize;
        break;
    default:
        break;
    }
    param->Size = vd->Size << 10; // megabytes in the text
    param->CachePolicy = vd->CacheMode;
    param->InitializationOption = vd->BGAStatus;
    if (vd->Size % 10000 == 0) {
        param->RoundingScheme = KT_ROUND_10GB;
    } else if (vd->Size % 1000 == 0) {
        param->RoundingScheme = KT_ROUND_1GB;
    }
}

bool isRaidOn(const _HBA_Info_Page& current, const _HBA_Info_Page& page) {
    return (current.RAID_Feature & page.RAID_Feature & RAID_FEATURE_ON) != 0;
}

std::string raidLack(const CfgRaid& wanted, KT_U8 mode) {
    if (mode == CFG_PHY_FORM) return "The file was read for its PHY tuning only";
    for (unsigned i = 0; i < wanted.ldCount; ++i) {
        const _LD_Info& ld = wanted.lds[i];
        if (ld.RaidMode != CFG_NO_LEVEL && ld.HDCount > 0 && ld.Size != CFG_NO_SIZE) continue;
        return "Virtual disk " + std::to_string(ld.ID) + " lacks its mode, capacity or members";
    }
    for (unsigned i = 0; i < wanted.spareCount; ++i) {
        if (wanted.spares[i].HDID == KT_NO_ID) return "Spare " + std::to_string(i) + " lacks its physical disk";
    }
    return "";
}

std::string wantedText(const _LD_Info& ld) {
    std::string text =
        std::string("virtual disk '") + FieldText(ld.Name).text + "' (" + RaidModeStr(ld.RaidMode) + ", ";
    text += ld.Size == 0 ? "all available space" : std::to_string(ld.Size) + " M";
    text += ") on disks";
    for (unsigned member = 0; member < ld.HDCount; ++member) {
        text += (member == 0 ? " " : ", ") + std::to_string(ld.BlockIDs[member]);
    }
    return text;
}

std::string wantedText(const _HD_RAID_STATUS& spare) {
    std::string text = "disk " + std::to_string(spare.HDID) + " as ";
    if (spare.DGID == CFG_GLOBAL_SPARE) return text + "global spare disk";
    return text + "spare disk of array " + std::to_string(spare.DGID);
}

static void announce(const CfgRaid& present, const CfgRaid& wanted) {
    for (unsigned i = 0; i < present.ldCount; ++i) {
        fprintf(stderr, "Deleting virtual disk %d '%s' (%s).\n", present.lds[i].ID, FieldText(present.lds[i].Name).text,
                RaidModeStr(present.lds[i].RaidMode));
    }
    for (unsigned i = 0; i < present.spareCount; ++i) {
        fprintf(stderr, "Releasing spare disk %d.\n", present.spares[i].HDID);
    }
    for (unsigned i = 0; i < wanted.ldCount; ++i) {
        fprintf(stderr, "Creating %s.\n", wantedText(wanted.lds[i]).c_str());
    }
    for (unsigned i = 0; i < wanted.spareCount; ++i) {
        fprintf(stderr, "Assigning %s.\n", wantedText(wanted.spares[i]).c_str());
    }
}

static KT_U8 deleteVirtualDisks(const CfgRaid& present) {
    for (unsigned i = 0; i < present.ldCount; ++i) {
        KT_U16 id = present.lds[i].ID;
        _LD_Status_Request request;
        KT_U8 status = getItem(KT_LD_GetStatus, id, request);
        if (status != KT_OK) {
            out("Failed to get VD %d  status(error %d: %s).\n", id, status, ErrorMessage(status));
            return status;
        }
        status = KT_LD_Delete(gCurrentAdapter, id, request.ldStatus[0].Status == KT_VD_OFFLINE ? 0 : 1);
        if (status != KT_OK) {
            out("Failed to delete VD %d (error %d: %s).\n", id, status, ErrorMessage(status));
            return status;
        }
    }
    return KT_OK;
}

static KT_U8 createVirtualDisks(const CfgRaid& wanted) {
    for (unsigned i = 0; i < wanted.ldCount; ++i) {
        _Create_LD_Param param;
        KT_Restore_LdCreateParam(&wanted.lds[i], &param);
        KT_U8 status = KT_LD_Create(gCurrentAdapter, &param);
        if (status != KT_OK) {
            out("\nFailed to create virtual disk (error %d: %s).\n", status, ErrorMessage(status));
            return status;
        }
    }
    return KT_OK;
}

static KT_U8 releaseSpares(const CfgRaid& present) {
    for (unsigned i = 0; i < present.spareCount; ++i) {
        KT_U16 id = present.spares[i].HDID;
        KT_U8 status = KT_PD_Spare2FreeHD(gCurrentAdapter, id);
        if (status != KT_OK) {
            out("Failed to delete spare disk %d (error %d: %s).\n", id, status, ErrorMessage(status));
            return status;
        }
    }
    return KT_OK;
}

static KT_U8 assignSpares(const CfgRaid& wanted) {
    for (unsigned i = 0; i < wanted.spareCount; ++i) {
        const _HD_RAID_STATUS& spare = wanted.spares[i];
        KT_U8 status = KT_OK;
        if (spare.DGID == CFG_GLOBAL_SPARE) {
            status = KT_PD_FreeHD2GlobalSpare(gCurrentAdapter, spare.HDID);
            if (status == KT_OK) continue;
            out("\nFailed to assign disk %d as global spare disk (error %d: %s).\n", spare.HDID, status,
                ErrorMessage(status));
        } else {
            status = KT_PD_FreeHD2DGSpare(gCurrentAdapter, spare.HDID, spare.DGID);
            if (status == KT_OK) continue;
            out("\nFailed to assign disk %d as a spare disk to array %d (error %d: %s).\n", spare.HDID, spare.DGID,
                status, ErrorMessage(status));
        }
        return status;
    }
    return KT_OK;
}

int restoreRaid(const CfgRaid& wanted) {
    CfgRaidHolder present = newCfgRaid();
    if (present == nullptr) return KT_ERR_NO_RESOURCE;
    KT_U8 status = readCfgRaid(*present);
    if (status != KT_OK) return status;
    if (present->ldCount + present->spareCount + wanted.ldCount + wanted.spareCount == 0) return 1;
    announce(*present, wanted);
    if (status == KT_OK) status = deleteVirtualDisks(*present);
    if (status == KT_OK) status = createVirtualDisks(wanted);
    if (status == KT_OK) status = releaseSpares(*present);
    if (status == KT_OK) status = assignSpares(wanted);
    if (status != KT_OK) return status;
    out("Restore raid config is returned successfully!\n");
    return 1;
}
