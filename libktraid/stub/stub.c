// The smallest library a program can start on: every call succeeds, does nothing and is counted. Plain C,
// so that what a benchmark measures is the program. The names stand without the header's prototypes on purpose.
unsigned KT_STUB_Calls = 0;
int KT_STUB_Adapters = 0; // what KT_Adapter_GetCount answers

int KT_API_Initialize(void) {
    return 0;
}
void KT_API_Finalize(void) {}
const char* KT_API_Version(void) {
    return "stub";
}
int KT_API_RescanAdapter(void) {
    return 0;
}
unsigned KT_API_GetRescanCount(void) {
    return 0;
}
int KT_Adapter_GetCount(void) {
    return KT_STUB_Adapters;
}
int KT_SIM_SgVersion(void) {
    return 30536;
}

#define CALL(name)                                                                                                     \
    int name(void) {                                                                                                   \
        ++KT_STUB_Calls;                                                                                               \
        return 0;                                                                                                      \
    }
CALL(KT_Adapter_GetInfo)
CALL(KT_Adapter_GetConfig)
CALL(KT_Adapter_SetConfig)
CALL(KT_Adapter_Read_Register)
CALL(KT_Adapter_Write_Register)
CALL(KT_AdapterMute)
CALL(KT_LD_GetInfo)
CALL(KT_LD_GetStatus)
CALL(KT_LD_GetConfig)
CALL(KT_LD_SetConfig)
CALL(KT_LD_Create)
CALL(KT_LD_DG_QuickCreate)
CALL(KT_LD_Delete)
CALL(KT_LD_BGAControl)
CALL(KT_LD_StartINIT)
CALL(KT_LD_StartConsistencyCheck)
CALL(KT_LD_StartRebuild)
CALL(KT_LD_DG_StartRebuild)
CALL(KT_LD_StartMigration)
CALL(KT_LD_GetMaxSize)
CALL(KT_LD_GetMigratedLdSize)
CALL(KT_LD_GetTargetLDInfo)
CALL(KT_LD_Import)
CALL(KT_LD_Report)
CALL(KT_LD_PauseAll)
CALL(KT_CreateOrModify_VD)
CALL(KT_DG_GetInfo)
CALL(KT_DG_GetConfig)
CALL(KT_DG_SetConfig)
CALL(KT_DG_Delete)
CALL(KT_DG_BGAControl)
CALL(KT_DG_StartMigration)
CALL(KT_CreateOrModify_DG)
CALL(KT_PD_GetHDInfo)
CALL(KT_PD_GetHDInfo_Ext)
CALL(KT_PD_GetHDRaidStatus)
CALL(KT_PD_GetConfig)
CALL(KT_PD_SetConfig)
CALL(KT_PD_SetHDStatus)
CALL(KT_PD_GetFreeSpaceInfo)
CALL(KT_PD_GetBGAStatus)
CALL(KT_PD_BGAControl)
CALL(KT_PD_StartMediaPatrol)
CALL(KT_PD_GetMBRInfo)
CALL(KT_PD_GetSmartStatus)
CALL(KT_PD_GET_SMART_INFO)
CALL(KT_PD_GetPMInfo)
CALL(KT_PD_GetExpanderInfo)
CALL(KT_PD_FreeHD2DGSpare)
CALL(KT_PD_FreeHD2GlobalSpare)
CALL(KT_PD_Spare2FreeHD)
CALL(KT_PD_WipeHDMDD)
CALL(KT_DiskHasOS)
CALL(KT_LocateArrayDevice)
CALL(KT_PassThrough_ATA)
CALL(KT_SSD_SmartReadData)
CALL(KT_SSD_Diagnostic)
CALL(KT_Download_SSD_Microcode)
CALL(KT_BLK_GetInfo)
CALL(KT_BLK_GetHDBlock)
CALL(KT_ENC_GetEnclosureInfo)
CALL(KT_ENC_GetElementInfo)
CALL(KT_ENC_GetElementConfig)
CALL(KT_EVT_GetEvent)
CALL(KT_EVT_GetEventMessage)
CALL(KT_Flash_Bin)
CALL(KT_Flash_Erase)
CALL(KT_Flash_PreData)
CALL(KT_Flash_NVSRAM)
CALL(KT_Flash_GetHeaderInfo)
CALL(KT_BBU_GetInfo)
CALL(KT_BBU_ChangePower)
CALL(KT_AES_GetEntryInfo)
CALL(KT_AES_OnlyGetEntryInfo)
CALL(KT_AES_OnlyGetPortInfo)
CALL(KT_AES_GetEntryConfig)
CALL(KT_AES_SetEntryConfig)
CALL(KT_AES_GetPortConfig)
CALL(KT_AES_SetPortConfig)
CALL(KT_AES_SetLink)
CALL(KT_AES_ClearLink)
CALL(KT_AES_VerifyKey)
CALL(KT_AES_ChangePwd)
CALL(KT_AES_ForcePDOnline)
CALL(KT_Tandemix_AddFSEntries)
CALL(KT_Tandemix_GetEntriesTableInfo)
CALL(KT_Tandemix_RemoveEntriesTable)
CALL(KT_Tandem_GetHDMagic)
CALL(KT_Tandem_GetVDMagic)
CALL(KT_VDHDD_AddLink)
CALL(KT_VDHDD_GetLink)
