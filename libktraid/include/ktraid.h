// The interface to the storage library libktraid, version 4: its records, codes and calls.
// This header is the only seam between the program and a library build. The layouts are the wire format:
// little-endian, natural alignment, every offset asserted. Text fields are not NUL-terminated when full.
#pragma once

#include <stddef.h>
#include <stdint.h>

typedef uint8_t KT_U8;
typedef uint16_t KT_U16;
typedef uint32_t KT_U32;
typedef uint64_t KT_U64;
typedef int16_t KT_S16;
typedef uint8_t KT_BOOLEAN; // 0 or 1

#ifdef __cplusplus
#define KT_STATIC_ASSERT static_assert
#else
#define KT_STATIC_ASSERT _Static_assert
#endif
#define KT_ASSERT_SIZE(record, size) KT_STATIC_ASSERT(sizeof(record) == (size), #record)
#define KT_ASSERT_AT(record, field, offset) KT_STATIC_ASSERT(offsetof(record, field) == (offset), #record "." #field)

// Identifiers that stand for none, all or the end of a list.
enum { KT_NO_ID = 0xFFFF, KT_LIST_END = 0xFFFF, KT_BLOCK_FREE = 255 };

// _RequestHeader.requestType
enum { KT_REQUEST_LIST = 1, KT_REQUEST_ITEM = 2 };

// Statuses; every call returns one of them unless its prototype says otherwise.
enum KT_STATUS {
    KT_OK = 0,
    KT_ERR_FAILED = 1,
    KT_ERR_NO_RESOURCE = 4,
    KT_ERR_OUT_OF_RANGE = 5,
    KT_ERR_INVALID_REQUEST = 6,
    KT_ERR_INVALID_PARAMETER = 7,
    KT_ERR_INVALID_VD = 8,
    KT_ERR_INVALID_PD = 9,
    KT_ERR_INVALID_EXPANDER = 10,
    KT_ERR_INVALID_PM = 11,
    KT_ERR_INVALID_BLOCK = 12,
    KT_ERR_INVALID_ADAPTER = 13,
    KT_ERR_INVALID_RAID_MODE = 14,
    KT_ERR_INVALID_ENCLOSURE = 15,
    KT_ERR_INVALID_BBU = 16,
    KT_ERR_INVALID_ARRAY = 17,
    KT_ERR_INVALID_ELEMENT = 18,
    KT_ERR_NOT_SUPPORTED = 19,
    KT_ERR_LINK_TIMEOUT = 20,
    KT_ERR_KEY_PRESENT = 21,
    KT_ERR_KEY_ABSENT = 22,
    KT_ERR_SSD_COMMAND_PHASE = 23,
    KT_ERR_SSD_DATA_PHASE = 24,
    KT_ERR_SSD_STATUS_PHASE = 25,
    KT_ERR_SSD_PHASE_ERROR = 26,
    KT_ERR_SSD_COMMAND_ERROR = 27,
    KT_ERR_TANDEM_SSD_COUNT = 28,
    KT_ERR_TANDEM_HDD_DATA = 29,
    KT_ERR_REGISTER_WRITING = 30,
    KT_ERR_TARGET_IS_MEMBER = 51,
    KT_ERR_TARGET_TOO_SMALL = 52,
    KT_ERR_NOT_SPARE = 53,
    KT_ERR_IS_SPARE = 54,
    KT_ERR_PD_MISSING = 55,
    KT_ERR_PD_ASSIGNED = 56,
    KT_ERR_PD_COUNT_FOR_LEVEL = 57,
    KT_ERR_VD_NOT_READY = 58,
    KT_ERR_VD_MISSING = 59,
    KT_ERR_VD_FUNCTIONAL = 60,
    KT_ERR_VD_BUSY = 61,
    KT_ERR_BGA_RUNNING = 63,
    KT_ERR_NO_VD_ID = 64,
    KT_ERR_ATAPI = 65,
    KT_ERR_PARITY_COUNT = 66,
    KT_ERR_BLOCK_SIZE = 67,
    KT_ERR_MIGRATION_UNNECESSARY = 68,
    KT_ERR_STRIPE_MISMATCH = 69,
    KT_ERR_MIGRATION_UNSUPPORTED = 70,
    KT_ERR_VD_NOT_INITIALIZED = 71,
    KT_ERR_VD_NAME = 72,
    KT_ERR_PD_TYPES_DIFFER = 73,
    KT_ERR_PD_SECTORS_DIFFER = 74,
    KT_ERR_ARRAY_EMPTY = 75,
    KT_ERR_ARRAY_HAS_VD = 76,
    KT_ERR_SPARE_TOO_SMALL = 77,
    KT_ERR_ALREADY_ARRAY_SPARE = 78,
    KT_ERR_ARRAY_DISK_MISSING = 79,
    KT_ERR_VD_NOT_IMPORTABLE = 80,
    KT_ERR_ONE_ARRAY_MIGRATION = 81,
    KT_ERR_ARRAY_BUSY = 82,
    KT_ERR_PD_CANNOT_SET_DOWN = 83,
    KT_ERR_PD_NOT_OFFLINE = 84,
    KT_ERR_VD_STATUS = 85,
    KT_ERR_VD_NOT_REPORTABLE = 86,
    KT_ERR_NOT_REDUNDANT = 87,
    KT_ERR_ONE_MEDIA_PATROL = 88,
    KT_ERR_SPARE_IN_USE = 89,
    KT_ERR_ADAPTER_DEVICE_MISMATCH = 151,
    KT_ERR_PD_COUNT = 152,
    KT_ERR_BGA_ACTION = 153,
    KT_ERR_OTHER_ADAPTER = 154,
    KT_ERR_FLASH_TYPE = 155,
    KT_ERR_FLASH_ACTION = 156,
    KT_ERR_VD_HAS_OS = 158,
    KT_ERR_PD_HAS_OS = 159,
    KT_ERR_NOT_ON_THIS_ADAPTER = 160,
    KT_ERR_ONE_VD_MIGRATION = 161,
    KT_ERR_SGPIO = 162,
    KT_ERR_WRONG_DATA = 163,
    KT_ERR_BUFFER_TOO_BIG = 164,
    KT_ERR_INVALID_FILE = 165,
    KT_ERR_INVALID_MICROCODE = 166,
    KT_ERR_FLASH_DATA = 184,
    KT_ERR_FLASH_DESCRIPTOR = 185,
    KT_ERR_ENTRY_RANGE = 241,
    KT_ERR_PORT_RANGE = 242,
    KT_ERR_NUM_REQUESTED = 243,
    KT_ERR_REQUEST_TYPE = 244,
    KT_ERR_KEY_LENGTH = 245,
    KT_ERR_DISK_NOT_OFFLINE = 246,
    KT_ERR_KEY_MISMATCH = 247,
    KT_ERR_PASSWORD_MISMATCH = 248,
    KT_ERR_PORT_NOT_FOUND = 249,
    KT_ERR_ENTRY_NO_KEY = 250
};

// RaidMode
enum {
    KT_RAID0 = 0x00,
    KT_RAID1 = 0x01,
    KT_RAID5 = 0x05,
    KT_RAID6 = 0x06,
    KT_TANDEM_CAPACITY = 0x0A,
    KT_TANDEM_SAFE = 0x0B,
    KT_HYBRID = 0x0C,
    KT_JBOD = 0x0F,
    KT_RAID10 = 0x10,
    KT_RAID1E = 0x11,
    KT_RAID50 = 0x50,
    KT_RAID60 = 0x60
};

// _Adapter_Info.LogicalDriverMode: the bit of each level
enum {
    KT_MODE_RAID0 = 1 << 0,
    KT_MODE_RAID1 = 1 << 1,
    KT_MODE_RAID10 = 1 << 2,
    KT_MODE_RAID1E = 1 << 3,
    KT_MODE_RAID5 = 1 << 4,
    KT_MODE_RAID6 = 1 << 5,
    KT_MODE_RAID50 = 1 << 6,
    KT_MODE_JBOD = 1 << 7,
    KT_MODE_RAID60 = 1 << 8,
    KT_MODE_TANDEM_CAPACITY = 1 << 9,
    KT_MODE_TANDEM_SAFE = 1 << 10,
    KT_MODE_HYBRID = 1 << 11
};

// _Adapter_Info.Features
enum {
    KT_FEATURE_REBUILD = 1 << 0,
    KT_FEATURE_BACKGROUND_INIT = 1 << 1,
    KT_FEATURE_SYNC = 1 << 2,
    KT_FEATURE_MIGRATION = 1 << 3,
    KT_FEATURE_MEDIA_PATROL = 1 << 4,
    KT_FEATURE_FOREGROUND_INIT = 1 << 5,
    KT_FEATURE_COPY_BACK = 1 << 6,
    KT_FEATURE_SAME_TYPE_ONLY = 1 << 7
};

// _Adapter_Info.AdvancedFeatures; the NO_ bits switch a feature off
enum {
    KT_ADV_SENSE_CODE = 1 << 0,
    KT_ADV_BIG_STRIPE = 1 << 1,
    KT_ADV_FLASH_BIOS = 1 << 2,
    KT_ADV_BBU = 1 << 3,
    KT_ADV_CPU_EFFICIENCY = 1 << 5,
    KT_ADV_MODULE_CONSOLIDATE = 1 << 9,
    KT_ADV_IMAGE_HEALTH = 1 << 10,
    KT_ADV_CRYPTO = 1 << 12,
    KT_ADV_NO_WRITE_CACHE = 1 << 14,
    KT_ADV_NO_READ_CACHE = 1 << 15,
    KT_ADV_NO_SMART = 1 << 16,
    KT_ADV_NO_ROUNDING = 1 << 17,
    KT_ADV_NO_SET_SPARE = 1 << 24,
    KT_ADV_HYBRID_SWITCH = 1 << 25,
    KT_ADV_ATA_PASS_THROUGH = 1 << 27,
    KT_ADV_REMAP = 1 << 28,
    KT_ADV_REGISTER = 1 << 29
};
#define KT_ADV_RAW_UPDATE 0x80000000U

// _LD_Info.Status and _LD_STATUS.Status
enum {
    KT_VD_ONLINE = 0,
    KT_VD_DEGRADED = 1,
    KT_VD_DELETED = 2,
    KT_VD_OFFLINE = 4,
    KT_VD_PARTIALLY_OPTIMAL = 5,
    KT_VD_FOREIGN = 6,
    KT_VD_IMPORTABLE = 7,
    KT_VD_NOT_IMPORTABLE = 8,
    KT_VD_CONFLICTED = 11,
    KT_VD_PLUGIN_CONFLICTED = 12,
    KT_VD_USING_TABLE = 14
};

// _LD_STATUS.Bga and _DG_Info.BgaType
enum {
    KT_BGA_REBUILD = 1,
    KT_BGA_CHECK_FIX = 2,
    KT_BGA_CHECK = 4,
    KT_BGA_INIT_QUICK = 8,
    KT_BGA_INIT_FOREGROUND = 16,
    KT_BGA_MIGRATION = 32,
    KT_BGA_INIT_BACKGROUND = 64,
    KT_BGA_COPY_BACK = 128
};
enum { KT_BGAEXT_MEDIA_PATROL = 0x02 }; // _LD_STATUS.BgaExt

// BgaState of virtual disks, arrays and disks
enum {
    KT_STATE_NONE = 0,
    KT_STATE_RUNNING = 1,
    KT_STATE_ABORTED = 2,
    KT_STATE_PAUSED = 3,
    KT_STATE_AUTO_PAUSED = 4,
    KT_STATE_INTERRUPTED = 5
};

// Codes of the KT_*_BGAControl calls
enum {
    KT_CONTROL_RESTART = 1,
    KT_CONTROL_PAUSE = 2,
    KT_CONTROL_RESUME = 3,
    KT_CONTROL_STOP = 4,
    KT_CONTROL_STOP_FOR_DELETE = 7
};

// _HD_BGA_STATUS.Bga
enum { KT_PD_BGA_MEDIA_PATROL = 1, KT_PD_BGA_DATA_SCRUB = 2 };

// _HD_RAID_STATUS.Status
enum {
    KT_PD_MEMBER = 0x01,
    KT_PD_SPARE_IN_USE = 0x02,
    KT_PD_GLOBAL_SPARE = 0x04,
    KT_PD_OFFLINE = 0x08,
    KT_PD_MEDIA_PATROL = 0x20,
    KT_PD_DEDICATED_SPARE = 0x40,
    KT_PD_FOREIGN = 0x80,
    KT_PD_SPARE = KT_PD_GLOBAL_SPARE | KT_PD_DEDICATED_SPARE,
    KT_PD_NOT_FREE = KT_PD_MEMBER | KT_PD_SPARE | KT_PD_OFFLINE | KT_PD_FOREIGN
};

// _HD_Info.HDType
enum { KT_HD_SATA = 1, KT_HD_PATA = 2, KT_HD_SAS = 4, KT_HD_ATAPI = 8, KT_HD_SSD = 16 };

// _HD_Info.FeatureSupport
enum {
    KT_HD_NCQ = 1 << 0,
    KT_HD_WRITE_CACHE = 1 << 4,
    KT_HD_48BIT_LBA = 1 << 5,
    KT_HD_SMART = 1 << 6,
    KT_HD_SPEED_1_5 = 1 << 8,
    KT_HD_SPEED_3 = 1 << 9,
    KT_HD_SPEED_6 = 1 << 10,
    KT_HD_SPEED_12 = 1 << 11
};

// _Link_Endpoint.DevType of a parent
enum { KT_LINK_HBA = 0, KT_LINK_PM = 1, KT_LINK_EXPANDER = 2, KT_LINK_ENCLOSURE = 3 };

// CachePolicy of the creation records and _LD_Config; _LD_Info.CacheMode uses the same bits
enum { KT_CACHE_OFF = 0x01, KT_CACHE_READ_AHEAD = 0x04, KT_CACHE_AUTO = 0x08, KT_CACHE_RESTORE = 0x10 };

// InitializationOption of the creation records
enum { KT_INIT_QUICK = 0, KT_INIT_FOREGROUND = 1, KT_INIT_BACKGROUND = 2, KT_INIT_NONE = 3, KT_INIT_INTELLIGENT = 5 };

// RoundingScheme
enum { KT_ROUND_NONE = 0, KT_ROUND_1GB = 1, KT_ROUND_10GB = 2 };

// _BBU_Info
enum { KT_BBU_PRESENT = 1, KT_BBU_CHARGING = 2, KT_BBU_DISCHARGING = 4 };
enum { KT_POWER_STOP = 0, KT_POWER_CHARGE = 1, KT_POWER_DISCHARGE = 2 }; // KT_BBU_ChangePower
enum { KT_SENSOR_TEMPERATURE = 1, KT_SENSOR_VOLTAGE = 2, KT_SENSOR_CAPACITY = 4 };

// KT_Flash_Bin: actions and image types; KT_Flash_Erase: page codes; KT_Flash_NVSRAM: actions
enum { KT_FLASH_ERASE = 0x01, KT_FLASH_UPDATE = 0x0F, KT_FLASH_BACKUP = 0xF0 };
enum {
    KT_IMAGE_CONFIG = 0,
    KT_IMAGE_BIN = 1,
    KT_IMAGE_BIOS = 2,
    KT_IMAGE_FIRMWARE = 3,
    KT_IMAGE_AUTOLOAD = 4,
    KT_IMAGE_RAW = 6
};
enum { KT_PAGE_PD = 1, KT_PAGE_PD_FORCE = 0xFE };
enum { KT_NVSRAM_WRITE = 0, KT_NVSRAM_READ = 1 };

// Kinds of the calls that name either a virtual or a physical disk
enum { KT_DEVICE_VD = 0, KT_DEVICE_PD = 1 };

// KT_PassThrough_ATA: the SMART RETURN STATUS command, and the Status of a disk that considers itself healthy
enum {
    KT_ATA_SMART = 0xB0,
    KT_SMART_RETURN_STATUS = 0xDA,
    KT_SMART_LBA_MID = 0x4F,
    KT_SMART_LBA_HIGH = 0xC2,
    KT_ATA_HEALTHY = 'O'
};

// _SMART_Attribute.Status: good, below its threshold now, below it in the past
enum { KT_SMART_GOOD = 0, KT_SMART_FAILING = 1, KT_SMART_FAILED_BEFORE = 2 };

// _SSD_Diagnostic.Action and State; FirstErrorLBA without an error; KT_Download_SSD_Microcode: when it takes effect
enum { KT_SSD_ASK = 0, KT_SSD_START_SHORT = 1, KT_SSD_START_LONG = 2, KT_SSD_ABORT = 3 };
enum { KT_SSD_NEVER = 0, KT_SSD_RUNNING = 1, KT_SSD_PASSED = 2, KT_SSD_FAILED = 3, KT_SSD_ABORTED = 4 };
#define KT_SSD_NO_LBA UINT64_MAX
enum { KT_MICROCODE_NOW = 0, KT_MICROCODE_LATER = 1 };

// SES element types
enum {
    KT_SES_DEVICE = 0x01,
    KT_SES_POWER_SUPPLY = 0x02,
    KT_SES_COOLING = 0x03,
    KT_SES_TEMPERATURE = 0x04,
    KT_SES_DOOR_LOCK = 0x05,
    KT_SES_ALARM = 0x06,
    KT_SES_DISPLAY = 0x0C,
    KT_SES_VOLTAGE = 0x12,
    KT_SES_ARRAY_DEVICE = 0x17
};

// Head of every list request: requestType KT_REQUEST_LIST starts at an index, KT_REQUEST_ITEM names one id.
// numRequested: records the buffer holds; numReturned and nextStartingIndex come from the library
// (nextStartingIndex 0xFFFF = no more).
typedef struct _RequestHeader {
    KT_U8 version;
    KT_U8 requestType;
    KT_U16 startingIndexOrId;
    KT_U16 numRequested;
    KT_U16 numReturned;
    KT_U16 nextStartingIndex;
    KT_U8 reserved1[6];
} _RequestHeader;
// clang-format off
KT_ASSERT_SIZE(_RequestHeader, 16); KT_ASSERT_AT(_RequestHeader, version, 0);
KT_ASSERT_AT(_RequestHeader, requestType, 1); KT_ASSERT_AT(_RequestHeader, startingIndexOrId, 2);
KT_ASSERT_AT(_RequestHeader, numRequested, 4); KT_ASSERT_AT(_RequestHeader, numReturned, 6);
KT_ASSERT_AT(_RequestHeader, nextStartingIndex, 8); KT_ASSERT_AT(_RequestHeader, reserved1, 10);
// clang-format on

typedef struct _Version_Info {
    KT_U32 VerMajor;
    KT_U32 VerMinor;
    KT_U32 VerOEM;
    KT_U32 VerBuild;
} _Version_Info;
// clang-format off
KT_ASSERT_SIZE(_Version_Info, 16); KT_ASSERT_AT(_Version_Info, VerMajor, 0); KT_ASSERT_AT(_Version_Info, VerMinor, 4);
KT_ASSERT_AT(_Version_Info, VerOEM, 8); KT_ASSERT_AT(_Version_Info, VerBuild, 12);
// clang-format on

typedef struct _Version_Info_CIM {
    KT_U16 MajorVersion;
    KT_U16 MinorVersion;
    KT_U16 RevisionNumber;
    KT_U16 BuildNumber;
} _Version_Info_CIM;
// clang-format off
KT_ASSERT_SIZE(_Version_Info_CIM, 8); KT_ASSERT_AT(_Version_Info_CIM, MajorVersion, 0);
KT_ASSERT_AT(_Version_Info_CIM, MinorVersion, 2); KT_ASSERT_AT(_Version_Info_CIM, RevisionNumber, 4);
KT_ASSERT_AT(_Version_Info_CIM, BuildNumber, 6);
// clang-format on

// One adapter: versions, identity, limits and capability bits. MaxBufferSize is in KiB.
typedef struct _Adapter_Info {
    _Version_Info DriverVersion;
    _Version_Info_CIM BIOSVersion;
    _Version_Info_CIM FirmwareVersion;
    _Version_Info_CIM BootLoaderVersion;
    KT_U8 Reserved1[8];
    KT_U32 SystemIOBusNumber;
    KT_U32 SlotNumber;
    KT_U32 InterruptLevel;
    KT_U32 InterruptVector;
    KT_U16 VenID;
    KT_U16 SubVenID;
    KT_U16 DevID;
    KT_U16 SubDevID;
    KT_U8 PortCount;
    KT_U8 PortSupportType;
    KT_U8 Features;
    KT_BOOLEAN AlarmSupport;
    KT_U8 RevisionID;
    KT_U8 MaxPDPerVD;
    KT_U16 StripeSizeSupported;
    KT_U32 AdvancedFeatures;
    KT_U8 MaxPDPerDG;
    KT_U8 MaxVDPerDG;
    KT_U8 MaxParityDisks;
    KT_U8 MaxDiskGroup;
    KT_U8 MaxTotalBlocks;
    KT_U8 MaxBlockPerPD;
    KT_U8 MaxHD;
    KT_U8 MaxExpander;
    KT_U8 MaxPM;
    KT_U8 MaxLogicalDrive;
    KT_U16 LogicalDriverMode;
    KT_U8 WWN[8];
    KT_U16 MaxHD_Ext;
    KT_U16 MaxBufferSize;
    KT_U16 MaxTotalBlocks_V2;
    KT_U8 MaxAESPort;
    KT_U8 MaxTandemHdd;
    KT_U8 MaxSSDPerTandemix;
    KT_U8 MaxAESEntry;
    KT_U8 MaxSSDSegment;
    KT_U8 Reserved3[9];
    KT_U8 SerialNo[20];
    KT_U8 PortSasAddress[16][8];
    KT_U8 MaxSpeed;
    KT_U8 CurrentSpeed;
    KT_U8 MaxLinkWidth;
    KT_U8 CurrentLinkWidth;
    KT_BOOLEAN img_health;
    KT_BOOLEAN autoload_img_health;
    KT_BOOLEAN boot_loader_img_health;
    KT_BOOLEAN firmware_img_health;
    KT_BOOLEAN boot_rom_img_health;
    KT_BOOLEAN hba_info_img_health;
    KT_U8 Reserved4[2];
    KT_U8 ModelNumber[20];
} _Adapter_Info;
// clang-format off
KT_ASSERT_SIZE(_Adapter_Info, 304); KT_ASSERT_AT(_Adapter_Info, DriverVersion, 0);
KT_ASSERT_AT(_Adapter_Info, BIOSVersion, 16); KT_ASSERT_AT(_Adapter_Info, FirmwareVersion, 24);
KT_ASSERT_AT(_Adapter_Info, BootLoaderVersion, 32); KT_ASSERT_AT(_Adapter_Info, Reserved1, 40);
KT_ASSERT_AT(_Adapter_Info, SystemIOBusNumber, 48); KT_ASSERT_AT(_Adapter_Info, SlotNumber, 52);
KT_ASSERT_AT(_Adapter_Info, InterruptLevel, 56); KT_ASSERT_AT(_Adapter_Info, InterruptVector, 60);
KT_ASSERT_AT(_Adapter_Info, VenID, 64); KT_ASSERT_AT(_Adapter_Info, SubVenID, 66);
KT_ASSERT_AT(_Adapter_Info, DevID, 68); KT_ASSERT_AT(_Adapter_Info, SubDevID, 70);
KT_ASSERT_AT(_Adapter_Info, PortCount, 72); KT_ASSERT_AT(_Adapter_Info, PortSupportType, 73);
KT_ASSERT_AT(_Adapter_Info, Features, 74); KT_ASSERT_AT(_Adapter_Info, AlarmSupport, 75);
KT_ASSERT_AT(_Adapter_Info, RevisionID, 76); KT_ASSERT_AT(_Adapter_Info, MaxPDPerVD, 77);
KT_ASSERT_AT(_Adapter_Info, StripeSizeSupported, 78); KT_ASSERT_AT(_Adapter_Info, AdvancedFeatures, 80);
KT_ASSERT_AT(_Adapter_Info, MaxPDPerDG, 84); KT_ASSERT_AT(_Adapter_Info, MaxVDPerDG, 85);
KT_ASSERT_AT(_Adapter_Info, MaxParityDisks, 86); KT_ASSERT_AT(_Adapter_Info, MaxDiskGroup, 87);
KT_ASSERT_AT(_Adapter_Info, MaxTotalBlocks, 88); KT_ASSERT_AT(_Adapter_Info, MaxBlockPerPD, 89);
KT_ASSERT_AT(_Adapter_Info, MaxHD, 90); KT_ASSERT_AT(_Adapter_Info, MaxExpander, 91);
KT_ASSERT_AT(_Adapter_Info, MaxPM, 92); KT_ASSERT_AT(_Adapter_Info, MaxLogicalDrive, 93);
KT_ASSERT_AT(_Adapter_Info, LogicalDriverMode, 94); KT_ASSERT_AT(_Adapter_Info, WWN, 96);
KT_ASSERT_AT(_Adapter_Info, MaxHD_Ext, 104); KT_ASSERT_AT(_Adapter_Info, MaxBufferSize, 106);
KT_ASSERT_AT(_Adapter_Info, MaxTotalBlocks_V2, 108); KT_ASSERT_AT(_Adapter_Info, MaxAESPort, 110);
KT_ASSERT_AT(_Adapter_Info, MaxTandemHdd, 111); KT_ASSERT_AT(_Adapter_Info, MaxSSDPerTandemix, 112);
KT_ASSERT_AT(_Adapter_Info, MaxAESEntry, 113); KT_ASSERT_AT(_Adapter_Info, MaxSSDSegment, 114);
KT_ASSERT_AT(_Adapter_Info, Reserved3, 115); KT_ASSERT_AT(_Adapter_Info, SerialNo, 124);
KT_ASSERT_AT(_Adapter_Info, PortSasAddress, 144); KT_ASSERT_AT(_Adapter_Info, MaxSpeed, 272);
KT_ASSERT_AT(_Adapter_Info, CurrentSpeed, 273); KT_ASSERT_AT(_Adapter_Info, MaxLinkWidth, 274);
KT_ASSERT_AT(_Adapter_Info, CurrentLinkWidth, 275); KT_ASSERT_AT(_Adapter_Info, img_health, 276);
KT_ASSERT_AT(_Adapter_Info, autoload_img_health, 277); KT_ASSERT_AT(_Adapter_Info, boot_loader_img_health, 278);
KT_ASSERT_AT(_Adapter_Info, firmware_img_health, 279); KT_ASSERT_AT(_Adapter_Info, boot_rom_img_health, 280);
KT_ASSERT_AT(_Adapter_Info, hba_info_img_health, 281); KT_ASSERT_AT(_Adapter_Info, Reserved4, 282);
KT_ASSERT_AT(_Adapter_Info, ModelNumber, 284);
// clang-format on

// One end of a link; PhyID[0] of a parent is the port.
typedef struct _Link_Endpoint {
    KT_U16 DevID;
    KT_U8 DevType;
    KT_U8 PhyCnt;
    KT_U8 PhyID[8];
    KT_U8 SAS_Address[8];
    KT_U16 EnclosureID;
    KT_U8 Reserved[6];
} _Link_Endpoint;
// clang-format off
KT_ASSERT_SIZE(_Link_Endpoint, 28); KT_ASSERT_AT(_Link_Endpoint, DevID, 0); KT_ASSERT_AT(_Link_Endpoint, DevType, 2);
KT_ASSERT_AT(_Link_Endpoint, PhyCnt, 3); KT_ASSERT_AT(_Link_Endpoint, PhyID, 4);
KT_ASSERT_AT(_Link_Endpoint, SAS_Address, 12); KT_ASSERT_AT(_Link_Endpoint, EnclosureID, 20);
KT_ASSERT_AT(_Link_Endpoint, Reserved, 22);
// clang-format on

typedef struct _Link_Entity {
    _Link_Endpoint Parent;
    KT_U8 Reserved[8];
    _Link_Endpoint Self;
} _Link_Entity;
// clang-format off
KT_ASSERT_SIZE(_Link_Entity, 64); KT_ASSERT_AT(_Link_Entity, Parent, 0); KT_ASSERT_AT(_Link_Entity, Reserved, 28);
KT_ASSERT_AT(_Link_Entity, Self, 36);
// clang-format on

// A physical disk. Size is in sectors.
typedef struct _HD_Info {
    _Link_Entity Link;
    KT_U8 AdapterID;
    KT_U8 InitStatus;
    KT_U8 HDType;
    KT_U8 PIOMode;
    KT_U8 MDMAMode;
    KT_U8 UDMAMode;
    KT_U8 ConnectionType;
    KT_U8 DeviceType;
    KT_U32 FeatureSupport;
    KT_U8 Model[40];
    KT_U8 SerialNo[20];
    KT_U8 FWVersion[8];
    KT_U64 Size;
    KT_U8 WWN[8];
    KT_U8 CurrentPIOMode;
    KT_U8 CurrentMDMAMode;
    KT_U8 CurrentUDMAMode;
    KT_U8 ElementIdx;
    KT_U32 BlockSize;
    KT_U8 ActivityLEDStatus;
    KT_U8 LocateLEDStatus;
    KT_U8 ErrorLEDStatus;
    KT_U8 SesDeviceType;
    KT_U32 sata_signature;
    KT_U8 Reserved4[8];
    KT_U8 HD_SSD_Type;
    KT_U8 Reserved5;
    KT_U16 Media_Rotation_Rate;
    KT_U8 Reserved1[60];
} _HD_Info;
// clang-format off
KT_ASSERT_SIZE(_HD_Info, 248); KT_ASSERT_AT(_HD_Info, Link, 0); KT_ASSERT_AT(_HD_Info, AdapterID, 64);
KT_ASSERT_AT(_HD_Info, InitStatus, 65); KT_ASSERT_AT(_HD_Info, HDType, 66); KT_ASSERT_AT(_HD_Info, PIOMode, 67);
KT_ASSERT_AT(_HD_Info, MDMAMode, 68); KT_ASSERT_AT(_HD_Info, UDMAMode, 69);
KT_ASSERT_AT(_HD_Info, ConnectionType, 70); KT_ASSERT_AT(_HD_Info, DeviceType, 71);
KT_ASSERT_AT(_HD_Info, FeatureSupport, 72); KT_ASSERT_AT(_HD_Info, Model, 76); KT_ASSERT_AT(_HD_Info, SerialNo, 116);
KT_ASSERT_AT(_HD_Info, FWVersion, 136); KT_ASSERT_AT(_HD_Info, Size, 144); KT_ASSERT_AT(_HD_Info, WWN, 152);
KT_ASSERT_AT(_HD_Info, CurrentPIOMode, 160); KT_ASSERT_AT(_HD_Info, CurrentMDMAMode, 161);
KT_ASSERT_AT(_HD_Info, CurrentUDMAMode, 162); KT_ASSERT_AT(_HD_Info, ElementIdx, 163);
KT_ASSERT_AT(_HD_Info, BlockSize, 164); KT_ASSERT_AT(_HD_Info, ActivityLEDStatus, 168);
KT_ASSERT_AT(_HD_Info, LocateLEDStatus, 169); KT_ASSERT_AT(_HD_Info, ErrorLEDStatus, 170);
KT_ASSERT_AT(_HD_Info, SesDeviceType, 171); KT_ASSERT_AT(_HD_Info, sata_signature, 172);
KT_ASSERT_AT(_HD_Info, Reserved4, 176); KT_ASSERT_AT(_HD_Info, HD_SSD_Type, 184);
KT_ASSERT_AT(_HD_Info, Reserved5, 185); KT_ASSERT_AT(_HD_Info, Media_Rotation_Rate, 186);
KT_ASSERT_AT(_HD_Info, Reserved1, 188);
// clang-format on

// A virtual disk. Size is in KiB, StripeBlockSize in KiB; an empty BlockIDs slot is 0xFFFF.
typedef struct _LD_Info {
    KT_U16 ID;
    KT_U8 Status;
    KT_U8 BGAStatus;
    KT_U16 StripeBlockSize;
    KT_U8 RaidMode;
    KT_U8 HDCount;
    KT_U8 CacheMode;
    KT_U8 LD_GUID[8];
    KT_U8 SectorCoefficient;
    KT_U8 AdapterID;
    KT_U8 BlkCount;
    KT_U16 time_hi;
    KT_U16 DGID;
    KT_U64 Size;
    KT_U8 Name[16];
    KT_U16 BlockIDs[128];
    KT_U8 SubLDCount;
    KT_U8 NumParityDisk;
    KT_U16 time_low;
    KT_U32 BlockSize;
} _LD_Info;
// clang-format off
KT_ASSERT_SIZE(_LD_Info, 312); KT_ASSERT_AT(_LD_Info, ID, 0); KT_ASSERT_AT(_LD_Info, Status, 2);
KT_ASSERT_AT(_LD_Info, BGAStatus, 3); KT_ASSERT_AT(_LD_Info, StripeBlockSize, 4); KT_ASSERT_AT(_LD_Info, RaidMode, 6);
KT_ASSERT_AT(_LD_Info, HDCount, 7); KT_ASSERT_AT(_LD_Info, CacheMode, 8); KT_ASSERT_AT(_LD_Info, LD_GUID, 9);
KT_ASSERT_AT(_LD_Info, SectorCoefficient, 17); KT_ASSERT_AT(_LD_Info, AdapterID, 18);
KT_ASSERT_AT(_LD_Info, BlkCount, 19); KT_ASSERT_AT(_LD_Info, time_hi, 20); KT_ASSERT_AT(_LD_Info, DGID, 22);
KT_ASSERT_AT(_LD_Info, Size, 24); KT_ASSERT_AT(_LD_Info, Name, 32); KT_ASSERT_AT(_LD_Info, BlockIDs, 48);
KT_ASSERT_AT(_LD_Info, SubLDCount, 304); KT_ASSERT_AT(_LD_Info, NumParityDisk, 305);
KT_ASSERT_AT(_LD_Info, time_low, 306); KT_ASSERT_AT(_LD_Info, BlockSize, 308);
// clang-format on

// State of a virtual disk's background activity; Bga is an activity bit, BgaExt bit 1 media patrol on a member.
typedef struct _LD_STATUS {
    KT_U8 Status;
    KT_U8 Bga;
    KT_U16 BgaPercentage;
    KT_U8 BgaState;
    KT_U8 BgaExt;
    KT_U16 LDID;
} _LD_STATUS;
// clang-format off
KT_ASSERT_SIZE(_LD_STATUS, 8); KT_ASSERT_AT(_LD_STATUS, Status, 0); KT_ASSERT_AT(_LD_STATUS, Bga, 1);
KT_ASSERT_AT(_LD_STATUS, BgaPercentage, 2); KT_ASSERT_AT(_LD_STATUS, BgaState, 4);
KT_ASSERT_AT(_LD_STATUS, BgaExt, 5); KT_ASSERT_AT(_LD_STATUS, LDID, 6);
// clang-format on

typedef struct _LD_Config {
    KT_U16 LDID;
    KT_U8 CachePolicy;
    KT_U8 Reserved;
    KT_U8 Name[16];
    KT_U8 Reserved1[12];
} _LD_Config;
// clang-format off
KT_ASSERT_SIZE(_LD_Config, 32); KT_ASSERT_AT(_LD_Config, LDID, 0); KT_ASSERT_AT(_LD_Config, CachePolicy, 2);
KT_ASSERT_AT(_LD_Config, Reserved, 3); KT_ASSERT_AT(_LD_Config, Name, 4); KT_ASSERT_AT(_LD_Config, Reserved1, 20);
// clang-format on

// Request to create, size or migrate a virtual disk. The unit of Size depends on the call.
typedef struct _Create_LD_Param {
    KT_U8 RaidMode;
    KT_U8 HDCount;
    KT_U8 RoundingScheme;
    KT_U8 SubLDCount;
    KT_U16 StripeBlockSize;
    KT_U8 NumParityDisk;
    KT_U8 CachePolicy;
    KT_U8 InitializationOption;
    KT_U8 SectorCoefficient;
    KT_U16 LDID;
    KT_U8 SpecifiedBlkSeq;
    KT_U8 TandemWaterMark;
    KT_U8 Reserved2[1];
    KT_U8 ReservedForApp;
    KT_U16 HDIDs[128];
    KT_U8 Name[16];
    KT_U64 Size;
} _Create_LD_Param;
// clang-format off
KT_ASSERT_SIZE(_Create_LD_Param, 296); KT_ASSERT_AT(_Create_LD_Param, RaidMode, 0);
KT_ASSERT_AT(_Create_LD_Param, HDCount, 1); KT_ASSERT_AT(_Create_LD_Param, RoundingScheme, 2);
KT_ASSERT_AT(_Create_LD_Param, SubLDCount, 3); KT_ASSERT_AT(_Create_LD_Param, StripeBlockSize, 4);
KT_ASSERT_AT(_Create_LD_Param, NumParityDisk, 6); KT_ASSERT_AT(_Create_LD_Param, CachePolicy, 7);
KT_ASSERT_AT(_Create_LD_Param, InitializationOption, 8); KT_ASSERT_AT(_Create_LD_Param, SectorCoefficient, 9);
KT_ASSERT_AT(_Create_LD_Param, LDID, 10); KT_ASSERT_AT(_Create_LD_Param, SpecifiedBlkSeq, 12);
KT_ASSERT_AT(_Create_LD_Param, TandemWaterMark, 13); KT_ASSERT_AT(_Create_LD_Param, Reserved2, 14);
KT_ASSERT_AT(_Create_LD_Param, ReservedForApp, 15); KT_ASSERT_AT(_Create_LD_Param, HDIDs, 16);
KT_ASSERT_AT(_Create_LD_Param, Name, 272); KT_ASSERT_AT(_Create_LD_Param, Size, 288);
// clang-format on

// Request to create a virtual disk in an array's slot. Size in MB; VDID 0xFFFF on input, the new id on return.
typedef struct _CreateOrModify_VD_Param {
    KT_U16 VDID;
    KT_U16 DGID;
    KT_U8 Name[16];
    KT_U8 RaidMode;
    KT_U8 SubVDCount;
    KT_U8 NumParityDisk;
    KT_U8 DGSlotNum;
    KT_U8 Reserved1[6];
    KT_U16 StripeBlockSize;
    KT_U64 Size;
    KT_U8 RoundingScheme;
    KT_U8 CachePolicy;
    KT_U8 InitializationOption;
    KT_U8 SectorCoefficient;
    KT_U32 BlockSize;
    KT_U8 Reserved[256];
} _CreateOrModify_VD_Param;
// clang-format off
KT_ASSERT_SIZE(_CreateOrModify_VD_Param, 304); KT_ASSERT_AT(_CreateOrModify_VD_Param, VDID, 0);
KT_ASSERT_AT(_CreateOrModify_VD_Param, DGID, 2); KT_ASSERT_AT(_CreateOrModify_VD_Param, Name, 4);
KT_ASSERT_AT(_CreateOrModify_VD_Param, RaidMode, 20); KT_ASSERT_AT(_CreateOrModify_VD_Param, SubVDCount, 21);
KT_ASSERT_AT(_CreateOrModify_VD_Param, NumParityDisk, 22); KT_ASSERT_AT(_CreateOrModify_VD_Param, DGSlotNum, 23);
KT_ASSERT_AT(_CreateOrModify_VD_Param, Reserved1, 24); KT_ASSERT_AT(_CreateOrModify_VD_Param, StripeBlockSize, 30);
KT_ASSERT_AT(_CreateOrModify_VD_Param, Size, 32); KT_ASSERT_AT(_CreateOrModify_VD_Param, RoundingScheme, 40);
KT_ASSERT_AT(_CreateOrModify_VD_Param, CachePolicy, 41);
KT_ASSERT_AT(_CreateOrModify_VD_Param, InitializationOption, 42);
KT_ASSERT_AT(_CreateOrModify_VD_Param, SectorCoefficient, 43); KT_ASSERT_AT(_CreateOrModify_VD_Param, BlockSize, 44);
KT_ASSERT_AT(_CreateOrModify_VD_Param, Reserved, 48);
// clang-format on

// An array (disk group). Sizes in KiB; an empty slot's VDIDs entry is 0xFFFF.
typedef struct _DG_Info {
    KT_U16 DGID;
    KT_U8 Reserved1[2];
    KT_U8 Name[16];
    KT_U8 RaidMode;
    KT_U8 SubVDCount;
    KT_U8 NumParityDisk;
    KT_U8 AdapterID;
    KT_U8 Reserved2[2];
    KT_U16 StripeBlockSize;
    KT_U32 BlockSize;
    KT_U64 TotalManagedSpace;
    KT_U64 RemainingManagedSpace;
    KT_U64 SmallestAvailablePDSize;
    KT_U8 Status;
    KT_BOOLEAN PDBgaRunning;
    KT_U8 Reserved3;
    KT_U8 PDCount;
    KT_U16 PDIDs[128];
    KT_U8 Reserved4[3];
    KT_U8 VDSlotCount;
    KT_U64 VDSlotSize[32];
    KT_U16 VDIDs[32];
    KT_U8 Reserved5[3];
    KT_U8 SparePDCount;
    KT_U16 SparePDIDs[8];
    KT_U16 BgaType;
    KT_U8 BgaState;
    KT_U8 Reserved6[25];
} _DG_Info;
// clang-format off
KT_ASSERT_SIZE(_DG_Info, 688); KT_ASSERT_AT(_DG_Info, DGID, 0); KT_ASSERT_AT(_DG_Info, Reserved1, 2);
KT_ASSERT_AT(_DG_Info, Name, 4); KT_ASSERT_AT(_DG_Info, RaidMode, 20); KT_ASSERT_AT(_DG_Info, SubVDCount, 21);
KT_ASSERT_AT(_DG_Info, NumParityDisk, 22); KT_ASSERT_AT(_DG_Info, AdapterID, 23);
KT_ASSERT_AT(_DG_Info, Reserved2, 24); KT_ASSERT_AT(_DG_Info, StripeBlockSize, 26);
KT_ASSERT_AT(_DG_Info, BlockSize, 28); KT_ASSERT_AT(_DG_Info, TotalManagedSpace, 32);
KT_ASSERT_AT(_DG_Info, RemainingManagedSpace, 40); KT_ASSERT_AT(_DG_Info, SmallestAvailablePDSize, 48);
KT_ASSERT_AT(_DG_Info, Status, 56); KT_ASSERT_AT(_DG_Info, PDBgaRunning, 57); KT_ASSERT_AT(_DG_Info, Reserved3, 58);
KT_ASSERT_AT(_DG_Info, PDCount, 59); KT_ASSERT_AT(_DG_Info, PDIDs, 60); KT_ASSERT_AT(_DG_Info, Reserved4, 316);
KT_ASSERT_AT(_DG_Info, VDSlotCount, 319); KT_ASSERT_AT(_DG_Info, VDSlotSize, 320); KT_ASSERT_AT(_DG_Info, VDIDs, 576);
KT_ASSERT_AT(_DG_Info, Reserved5, 640); KT_ASSERT_AT(_DG_Info, SparePDCount, 643);
KT_ASSERT_AT(_DG_Info, SparePDIDs, 644); KT_ASSERT_AT(_DG_Info, BgaType, 660); KT_ASSERT_AT(_DG_Info, BgaState, 662);
KT_ASSERT_AT(_DG_Info, Reserved6, 663);
// clang-format on

typedef struct _DG_CONFIG {
    KT_U16 DGID;
    KT_BOOLEAN WriteCacheOn;
    KT_U8 Reserved;
    KT_U8 Name[16];
    KT_U8 Reserved1[12];
} _DG_CONFIG;
// clang-format off
KT_ASSERT_SIZE(_DG_CONFIG, 32); KT_ASSERT_AT(_DG_CONFIG, DGID, 0); KT_ASSERT_AT(_DG_CONFIG, WriteCacheOn, 2);
KT_ASSERT_AT(_DG_CONFIG, Reserved, 3); KT_ASSERT_AT(_DG_CONFIG, Name, 4); KT_ASSERT_AT(_DG_CONFIG, Reserved1, 20);
// clang-format on

// Request to create or migrate an array. DGID 0xFFFF on input, the new id on return; Size in MB on input, KiB on
// return.
typedef struct _CreateOrModify_DG_Param {
    KT_U16 DGID;
    KT_U8 Reserved1[2];
    KT_U8 Name[16];
    KT_U8 RaidMode;
    KT_U8 SubVDCount;
    KT_U8 NumParityDisk;
    KT_U8 Reserved2[7];
    KT_U16 StripeBlockSize;
    KT_U64 Size;
    KT_U32 BlockSize;
    KT_U8 InitializationOption;
    KT_U8 Reserved3[2];
    KT_U8 PDCount;
    KT_U16 PDIDs[128];
    KT_U8 Reserved4[128];
} _CreateOrModify_DG_Param;
// clang-format off
KT_ASSERT_SIZE(_CreateOrModify_DG_Param, 432); KT_ASSERT_AT(_CreateOrModify_DG_Param, DGID, 0);
KT_ASSERT_AT(_CreateOrModify_DG_Param, Reserved1, 2); KT_ASSERT_AT(_CreateOrModify_DG_Param, Name, 4);
KT_ASSERT_AT(_CreateOrModify_DG_Param, RaidMode, 20); KT_ASSERT_AT(_CreateOrModify_DG_Param, SubVDCount, 21);
KT_ASSERT_AT(_CreateOrModify_DG_Param, NumParityDisk, 22); KT_ASSERT_AT(_CreateOrModify_DG_Param, Reserved2, 23);
KT_ASSERT_AT(_CreateOrModify_DG_Param, StripeBlockSize, 30); KT_ASSERT_AT(_CreateOrModify_DG_Param, Size, 32);
KT_ASSERT_AT(_CreateOrModify_DG_Param, BlockSize, 40);
KT_ASSERT_AT(_CreateOrModify_DG_Param, InitializationOption, 44);
KT_ASSERT_AT(_CreateOrModify_DG_Param, Reserved3, 45); KT_ASSERT_AT(_CreateOrModify_DG_Param, PDCount, 47);
KT_ASSERT_AT(_CreateOrModify_DG_Param, PDIDs, 48); KT_ASSERT_AT(_CreateOrModify_DG_Param, Reserved4, 304);
// clang-format on

// A disk's RAID role; DGID 0xFFFF without an array.
typedef struct _HD_RAID_STATUS {
    KT_U16 HDID;
    KT_U16 DGID;
    KT_U8 Status;
    KT_U8 Reserved[3];
} _HD_RAID_STATUS;
// clang-format off
KT_ASSERT_SIZE(_HD_RAID_STATUS, 8); KT_ASSERT_AT(_HD_RAID_STATUS, HDID, 0); KT_ASSERT_AT(_HD_RAID_STATUS, DGID, 2);
KT_ASSERT_AT(_HD_RAID_STATUS, Status, 4); KT_ASSERT_AT(_HD_RAID_STATUS, Reserved, 5);
// clang-format on

typedef struct _HD_CONFIG {
    KT_BOOLEAN WriteCacheOn;
    KT_BOOLEAN SMARTOn;
    KT_BOOLEAN Online;
    KT_U8 DriveSpeed;
    KT_U8 crypto;
    KT_U8 AESPercentage;
    KT_U16 HDID;
} _HD_CONFIG;
// clang-format off
KT_ASSERT_SIZE(_HD_CONFIG, 8); KT_ASSERT_AT(_HD_CONFIG, WriteCacheOn, 0); KT_ASSERT_AT(_HD_CONFIG, SMARTOn, 1);
KT_ASSERT_AT(_HD_CONFIG, Online, 2); KT_ASSERT_AT(_HD_CONFIG, DriveSpeed, 3); KT_ASSERT_AT(_HD_CONFIG, crypto, 4);
KT_ASSERT_AT(_HD_CONFIG, AESPercentage, 5); KT_ASSERT_AT(_HD_CONFIG, HDID, 6);
// clang-format on

typedef struct _HD_BGA_STATUS {
    KT_U16 HDID;
    KT_U8 Bga;
    KT_U8 BgaState;
    KT_U8 Percentage;
    KT_U8 Reserved[3];
} _HD_BGA_STATUS;
// clang-format off
KT_ASSERT_SIZE(_HD_BGA_STATUS, 8); KT_ASSERT_AT(_HD_BGA_STATUS, HDID, 0); KT_ASSERT_AT(_HD_BGA_STATUS, Bga, 2);
KT_ASSERT_AT(_HD_BGA_STATUS, BgaState, 3); KT_ASSERT_AT(_HD_BGA_STATUS, Percentage, 4);
KT_ASSERT_AT(_HD_BGA_STATUS, Reserved, 5);
// clang-format on

// Sizes in KiB.
typedef struct _HD_FreeSpaceInfo {
    KT_U16 HDID;
    KT_U8 AdapterID;
    KT_U8 Reserved1[5];
    KT_U64 ValidSize;
    KT_U64 FreeSize;
    KT_U8 Reserved2[8];
} _HD_FreeSpaceInfo;
// clang-format off
KT_ASSERT_SIZE(_HD_FreeSpaceInfo, 32); KT_ASSERT_AT(_HD_FreeSpaceInfo, HDID, 0);
KT_ASSERT_AT(_HD_FreeSpaceInfo, AdapterID, 2); KT_ASSERT_AT(_HD_FreeSpaceInfo, Reserved1, 3);
KT_ASSERT_AT(_HD_FreeSpaceInfo, ValidSize, 8); KT_ASSERT_AT(_HD_FreeSpaceInfo, FreeSize, 16);
KT_ASSERT_AT(_HD_FreeSpaceInfo, Reserved2, 24);
// clang-format on

// HDCount and HDIDs name the disks; the library fills hasMBR, one flag a disk.
typedef struct _HD_MBR_Info {
    KT_U8 HDCount;
    KT_U8 Reserved[7];
    KT_U16 HDIDs[128];
    KT_BOOLEAN hasMBR[128];
} _HD_MBR_Info;
// clang-format off
KT_ASSERT_SIZE(_HD_MBR_Info, 392); KT_ASSERT_AT(_HD_MBR_Info, HDCount, 0); KT_ASSERT_AT(_HD_MBR_Info, Reserved, 1);
KT_ASSERT_AT(_HD_MBR_Info, HDIDs, 8); KT_ASSERT_AT(_HD_MBR_Info, hasMBR, 264);
// clang-format on

typedef struct _HD_SMART_STATUS {
    KT_U16 HDID;
    KT_BOOLEAN SmartThresholdExceeded;
    KT_U8 Reserved[5];
} _HD_SMART_STATUS;
// clang-format off
KT_ASSERT_SIZE(_HD_SMART_STATUS, 8); KT_ASSERT_AT(_HD_SMART_STATUS, HDID, 0);
KT_ASSERT_AT(_HD_SMART_STATUS, SmartThresholdExceeded, 2); KT_ASSERT_AT(_HD_SMART_STATUS, Reserved, 3);
// clang-format on

// 48 bits of RawValue are used.
typedef struct _SMART_Attribute {
    KT_U8 Id;
    KT_U8 Current;
    KT_U8 Worst;
    KT_U8 Threshold;
    KT_U8 Status;
    KT_U8 Reserved[3];
    KT_U64 RawValue;
    KT_U8 Name[32];
} _SMART_Attribute;
// clang-format off
KT_ASSERT_SIZE(_SMART_Attribute, 48); KT_ASSERT_AT(_SMART_Attribute, Id, 0);
KT_ASSERT_AT(_SMART_Attribute, Current, 1); KT_ASSERT_AT(_SMART_Attribute, Worst, 2);
KT_ASSERT_AT(_SMART_Attribute, Threshold, 3); KT_ASSERT_AT(_SMART_Attribute, Status, 4);
KT_ASSERT_AT(_SMART_Attribute, Reserved, 5); KT_ASSERT_AT(_SMART_Attribute, RawValue, 8);
KT_ASSERT_AT(_SMART_Attribute, Name, 16);
// clang-format on

typedef struct _SMART_Info {
    KT_U8 AttributeCount;
    KT_U8 Reserved[7];
    _SMART_Attribute Attributes[30];
} _SMART_Info;
// clang-format off
KT_ASSERT_SIZE(_SMART_Info, 1448); KT_ASSERT_AT(_SMART_Info, AttributeCount, 0);
KT_ASSERT_AT(_SMART_Info, Reserved, 1); KT_ASSERT_AT(_SMART_Info, Attributes, 8);
// clang-format on

// The first eight bytes are the command's registers, the rest comes from the library.
typedef struct _ATA_PassThrough {
    KT_U8 Features;
    KT_U8 SectorCount;
    KT_U8 LBALow;
    KT_U8 LBAMid;
    KT_U8 LBAHigh;
    KT_U8 Device;
    KT_U8 Command;
    KT_U8 Protocol;
    KT_U8 Status;
    KT_U8 Error;
    KT_U8 LBAMidReturned;
    KT_U8 LBAHighReturned;
    KT_U8 Reserved[4];
} _ATA_PassThrough;
// clang-format off
KT_ASSERT_SIZE(_ATA_PassThrough, 16); KT_ASSERT_AT(_ATA_PassThrough, Features, 0);
KT_ASSERT_AT(_ATA_PassThrough, SectorCount, 1); KT_ASSERT_AT(_ATA_PassThrough, LBALow, 2);
KT_ASSERT_AT(_ATA_PassThrough, LBAMid, 3); KT_ASSERT_AT(_ATA_PassThrough, LBAHigh, 4);
KT_ASSERT_AT(_ATA_PassThrough, Device, 5); KT_ASSERT_AT(_ATA_PassThrough, Command, 6);
KT_ASSERT_AT(_ATA_PassThrough, Protocol, 7); KT_ASSERT_AT(_ATA_PassThrough, Status, 8);
KT_ASSERT_AT(_ATA_PassThrough, Error, 9); KT_ASSERT_AT(_ATA_PassThrough, LBAMidReturned, 10);
KT_ASSERT_AT(_ATA_PassThrough, LBAHighReturned, 11); KT_ASSERT_AT(_ATA_PassThrough, Reserved, 12);
// clang-format on

typedef struct _PM_Info {
    _Link_Entity Link;
    KT_U8 AdapterID;
    KT_U8 ProductRevision;
    KT_U8 SpecRevision;
    KT_U8 NumberOfPorts;
    KT_U16 VendorID;
    KT_U16 DeviceID;
    KT_U8 Reserved[8];
} _PM_Info;
// clang-format off
KT_ASSERT_SIZE(_PM_Info, 80); KT_ASSERT_AT(_PM_Info, Link, 0); KT_ASSERT_AT(_PM_Info, AdapterID, 64);
KT_ASSERT_AT(_PM_Info, ProductRevision, 65); KT_ASSERT_AT(_PM_Info, SpecRevision, 66);
KT_ASSERT_AT(_PM_Info, NumberOfPorts, 67); KT_ASSERT_AT(_PM_Info, VendorID, 68); KT_ASSERT_AT(_PM_Info, DeviceID, 70);
KT_ASSERT_AT(_PM_Info, Reserved, 72);
// clang-format on

typedef struct _Exp_Info {
    _Link_Entity Link;
    KT_U8 AdapterID;
    KT_BOOLEAN Configuring;
    KT_BOOLEAN RouteTableConfigurable;
    KT_U8 PhyCount;
    KT_U16 ChangeCount;
    KT_U16 RouteIndexes;
    KT_U8 VendorID[8];
    KT_U8 ProductID[16];
    KT_U8 ProductRevision[4];
    KT_U8 ComponentVendorID[8];
    KT_U16 ComponentID;
    KT_U8 ComponentRevision;
    KT_U8 Reserved;
} _Exp_Info;
// clang-format off
KT_ASSERT_SIZE(_Exp_Info, 112); KT_ASSERT_AT(_Exp_Info, Link, 0); KT_ASSERT_AT(_Exp_Info, AdapterID, 64);
KT_ASSERT_AT(_Exp_Info, Configuring, 65); KT_ASSERT_AT(_Exp_Info, RouteTableConfigurable, 66);
KT_ASSERT_AT(_Exp_Info, PhyCount, 67); KT_ASSERT_AT(_Exp_Info, ChangeCount, 68);
KT_ASSERT_AT(_Exp_Info, RouteIndexes, 70); KT_ASSERT_AT(_Exp_Info, VendorID, 72);
KT_ASSERT_AT(_Exp_Info, ProductID, 80); KT_ASSERT_AT(_Exp_Info, ProductRevision, 96);
KT_ASSERT_AT(_Exp_Info, ComponentVendorID, 100); KT_ASSERT_AT(_Exp_Info, ComponentID, 108);
KT_ASSERT_AT(_Exp_Info, ComponentRevision, 110); KT_ASSERT_AT(_Exp_Info, Reserved, 111);
// clang-format on

// A slice of a disk. LDID 255 = free. BlockSize, StartLBA and Size in the disk's sectors.
typedef struct _Block_Info {
    KT_U16 ID;
    KT_U16 HDID;
    KT_U16 Flags;
    KT_U16 LDID;
    KT_U8 Status;
    KT_U8 Reserved;
    KT_U16 BlockSize;
    KT_U32 ReservedSpaceForMigration;
    KT_U64 StartLBA;
    KT_U64 Size;
} _Block_Info;
// clang-format off
KT_ASSERT_SIZE(_Block_Info, 32); KT_ASSERT_AT(_Block_Info, ID, 0); KT_ASSERT_AT(_Block_Info, HDID, 2);
KT_ASSERT_AT(_Block_Info, Flags, 4); KT_ASSERT_AT(_Block_Info, LDID, 6); KT_ASSERT_AT(_Block_Info, Status, 8);
KT_ASSERT_AT(_Block_Info, Reserved, 9); KT_ASSERT_AT(_Block_Info, BlockSize, 10);
KT_ASSERT_AT(_Block_Info, ReservedSpaceForMigration, 12); KT_ASSERT_AT(_Block_Info, StartLBA, 16);
KT_ASSERT_AT(_Block_Info, Size, 24);
// clang-format on

// The blocks on one disk.
typedef struct _HD_Block_Info {
    KT_U16 HDID;
    KT_U8 BlkCount;
    KT_U8 Reserved[5];
    KT_U16 BlkIDs[128];
} _HD_Block_Info;
// clang-format off
KT_ASSERT_SIZE(_HD_Block_Info, 264); KT_ASSERT_AT(_HD_Block_Info, HDID, 0); KT_ASSERT_AT(_HD_Block_Info, BlkCount, 2);
KT_ASSERT_AT(_HD_Block_Info, Reserved, 3); KT_ASSERT_AT(_HD_Block_Info, BlkIDs, 8);
// clang-format on

typedef struct _Enclosure_Info {
    KT_U16 EnclosureID;
    KT_U8 AdapterID;
    KT_U8 Status;
    KT_U8 ElementTypeCount;
    KT_U8 Reserved[3];
    KT_U8 LogicalID[8];
    KT_U8 VendorID[8];
    KT_U8 ProductID[16];
    KT_U8 RevisionLevel[4];
    KT_U8 Reserved1[4];
} _Enclosure_Info;
// clang-format off
KT_ASSERT_SIZE(_Enclosure_Info, 48); KT_ASSERT_AT(_Enclosure_Info, EnclosureID, 0);
KT_ASSERT_AT(_Enclosure_Info, AdapterID, 2); KT_ASSERT_AT(_Enclosure_Info, Status, 3);
KT_ASSERT_AT(_Enclosure_Info, ElementTypeCount, 4); KT_ASSERT_AT(_Enclosure_Info, Reserved, 5);
KT_ASSERT_AT(_Enclosure_Info, LogicalID, 8); KT_ASSERT_AT(_Enclosure_Info, VendorID, 16);
KT_ASSERT_AT(_Enclosure_Info, ProductID, 24); KT_ASSERT_AT(_Enclosure_Info, RevisionLevel, 40);
KT_ASSERT_AT(_Enclosure_Info, Reserved1, 44);
// clang-format on

// Status is the SES status element: the common status byte, then three bytes by type.
typedef struct _Enc_Element_Info {
    KT_U16 EnclosureID;
    KT_U8 ElementID;
    KT_U8 ElementType;
    KT_U8 Status[4];
    KT_U8 Reserved[8];
} _Enc_Element_Info;
// clang-format off
KT_ASSERT_SIZE(_Enc_Element_Info, 16); KT_ASSERT_AT(_Enc_Element_Info, EnclosureID, 0);
KT_ASSERT_AT(_Enc_Element_Info, ElementID, 2); KT_ASSERT_AT(_Enc_Element_Info, ElementType, 3);
KT_ASSERT_AT(_Enc_Element_Info, Status, 4); KT_ASSERT_AT(_Enc_Element_Info, Reserved, 8);
// clang-format on

typedef struct _Enc_Element_Config {
    KT_U16 EnclosureID;
    KT_U8 ElementID;
    KT_U8 ElementType;
    KT_U8 NumberOfElements;
    KT_U8 SubEnclosureID;
    KT_U8 TextLength;
    KT_U8 Reserved;
    KT_U8 Text[64];
    KT_U8 Reserved1[8];
} _Enc_Element_Config;
// clang-format off
KT_ASSERT_SIZE(_Enc_Element_Config, 80); KT_ASSERT_AT(_Enc_Element_Config, EnclosureID, 0);
KT_ASSERT_AT(_Enc_Element_Config, ElementID, 2); KT_ASSERT_AT(_Enc_Element_Config, ElementType, 3);
KT_ASSERT_AT(_Enc_Element_Config, NumberOfElements, 4); KT_ASSERT_AT(_Enc_Element_Config, SubEnclosureID, 5);
KT_ASSERT_AT(_Enc_Element_Config, TextLength, 6); KT_ASSERT_AT(_Enc_Element_Config, Reserved, 7);
KT_ASSERT_AT(_Enc_Element_Config, Text, 8); KT_ASSERT_AT(_Enc_Element_Config, Reserved1, 72);
// clang-format on

// A raw event. TimeStamp in seconds since 1970-01-01.
typedef struct _Event {
    KT_U16 Class;
    KT_U16 Code;
    KT_U32 TimeStamp;
    KT_U16 DeviceID;
    KT_U8 Severity;
    KT_U8 AdapterID;
    KT_U32 SequenceNo;
    KT_U32 Params[4];
    KT_U8 SenseDataLength;
    KT_U8 Reserved2;
    KT_U8 SenseData[30];
} _Event;
// clang-format off
KT_ASSERT_SIZE(_Event, 64); KT_ASSERT_AT(_Event, Class, 0); KT_ASSERT_AT(_Event, Code, 2);
KT_ASSERT_AT(_Event, TimeStamp, 4); KT_ASSERT_AT(_Event, DeviceID, 8); KT_ASSERT_AT(_Event, Severity, 10);
KT_ASSERT_AT(_Event, AdapterID, 11); KT_ASSERT_AT(_Event, SequenceNo, 12); KT_ASSERT_AT(_Event, Params, 16);
KT_ASSERT_AT(_Event, SenseDataLength, 32); KT_ASSERT_AT(_Event, Reserved2, 33); KT_ASSERT_AT(_Event, SenseData, 34);
// clang-format on

// An event whose text the library composed.
typedef struct _Event_Message {
    KT_U16 Class;
    KT_U16 Code;
    KT_U32 SequenceNo;
    KT_U8 Severity;
    KT_U8 AdapterID;
    KT_U8 reserved[6];
    char time[64];
    char msg[128];
} _Event_Message;
// clang-format off
KT_ASSERT_SIZE(_Event_Message, 208); KT_ASSERT_AT(_Event_Message, Class, 0); KT_ASSERT_AT(_Event_Message, Code, 2);
KT_ASSERT_AT(_Event_Message, SequenceNo, 4); KT_ASSERT_AT(_Event_Message, Severity, 8);
KT_ASSERT_AT(_Event_Message, AdapterID, 9); KT_ASSERT_AT(_Event_Message, reserved, 10);
KT_ASSERT_AT(_Event_Message, time, 16); KT_ASSERT_AT(_Event_Message, msg, 80);
// clang-format on

// One page of a flash image: Size valid bytes of Data.
typedef struct _Flash_Data {
    KT_U32 Size;
    KT_U16 PageNum;
    KT_BOOLEAN isLastPage;
    KT_U16 Reserved[2];
    KT_U8 Data[196608];
} _Flash_Data;
// clang-format off
KT_ASSERT_SIZE(_Flash_Data, 196620); KT_ASSERT_AT(_Flash_Data, Size, 0); KT_ASSERT_AT(_Flash_Data, PageNum, 4);
KT_ASSERT_AT(_Flash_Data, isLastPage, 6); KT_ASSERT_AT(_Flash_Data, Reserved, 8); KT_ASSERT_AT(_Flash_Data, Data, 12);
// clang-format on

// Announces an image: image_size is the whole file's length in bytes.
typedef struct _KT_FLASH_PER_DATA {
    KT_U8 image_type;
    KT_U8 reserved[3];
    KT_U32 image_size;
} _KT_FLASH_PER_DATA;
// clang-format off
KT_ASSERT_SIZE(_KT_FLASH_PER_DATA, 8); KT_ASSERT_AT(_KT_FLASH_PER_DATA, image_type, 0);
KT_ASSERT_AT(_KT_FLASH_PER_DATA, reserved, 1); KT_ASSERT_AT(_KT_FLASH_PER_DATA, image_size, 4);
// clang-format on

typedef struct _NVSRAM_Data {
    KT_U32 Offset;
    KT_U32 Length;
    KT_U8 Reserved[8];
    KT_U8 Data[256];
} _NVSRAM_Data;
// clang-format off
KT_ASSERT_SIZE(_NVSRAM_Data, 272); KT_ASSERT_AT(_NVSRAM_Data, Offset, 0); KT_ASSERT_AT(_NVSRAM_Data, Length, 4);
KT_ASSERT_AT(_NVSRAM_Data, Reserved, 8); KT_ASSERT_AT(_NVSRAM_Data, Data, 16);
// clang-format on

// HeaderSize is 8, TotalSize 16.
typedef struct _Register_Request {
    KT_U8 HeaderSize;
    KT_U8 TotalSize;
    KT_U8 Reserved[6];
    KT_U64 Value;
} _Register_Request;
// clang-format off
KT_ASSERT_SIZE(_Register_Request, 16); KT_ASSERT_AT(_Register_Request, HeaderSize, 0);
KT_ASSERT_AT(_Register_Request, TotalSize, 1); KT_ASSERT_AT(_Register_Request, Reserved, 2);
KT_ASSERT_AT(_Register_Request, Value, 8);
// clang-format on

// Bits of one port's PHY tuning word.
typedef struct _PHY_Tuning {
    KT_U32 AMP : 4;
    KT_U32 Pre_Emphasis : 3;
    KT_U32 Drive_En : 6;
    KT_U32 Pre_Half_En : 1;
    KT_U32 Reserved : 18;
} _PHY_Tuning;
// clang-format off
KT_ASSERT_SIZE(_PHY_Tuning, 4);
// clang-format on

// The adapter's stored settings page; its 256 bytes sum to zero.
typedef struct _HBA_Info_Page {
    KT_U8 Signature[4];
    KT_U8 MinorRev;
    KT_U8 MajorRev;
    KT_U16 Next_Page;
    KT_U8 Major;
    KT_U8 Minor;
    KT_U8 OEM_Num;
    KT_U8 Build_Num;
    KT_U8 Page_Code;
    KT_U8 Max_PHY_Num;
    KT_U8 RAID_Feature;
    KT_U8 Reserved2;
    KT_U32 HBA_Flag;
    KT_U32 Boot_Device;
    KT_U8 DSpinUpGroup;
    KT_U8 DSpinUpTimer;
    KT_U8 Delay_Time;
    KT_U8 bbu_charge_threshold;
    KT_U8 bbu_temp_lowerbound;
    KT_U8 bbu_temp_upperbound;
    KT_U16 bbu_volt_lowerbound;
    KT_U16 bbu_volt_upperbound;
    KT_U8 Reserved3[2];
    KT_U8 Serial_Num[20];
    KT_U8 SAS_Address[8][8];
    KT_U8 FFE_Control[8];
    KT_U8 Reserved4[28];
    KT_U8 model_number[20];
    KT_U8 PHY_Rate[8];
    _PHY_Tuning PHY_Tuning[8];
    KT_U32 Reserved5[7];
    KT_U8 BGA_Rate;
    KT_U8 Sync_Rate;
    KT_U8 Init_Rate;
    KT_U8 Rebuild_Rate;
    KT_U8 Migration_Rate;
    KT_U8 Copyback_Rate;
    KT_U8 MP_Rate;
    KT_U8 Reserved7;
    KT_U8 Reserved6[3];
    KT_U8 Check_Sum;
} _HBA_Info_Page;
// clang-format off
KT_ASSERT_SIZE(_HBA_Info_Page, 256); KT_ASSERT_AT(_HBA_Info_Page, Signature, 0);
KT_ASSERT_AT(_HBA_Info_Page, MinorRev, 4); KT_ASSERT_AT(_HBA_Info_Page, MajorRev, 5);
KT_ASSERT_AT(_HBA_Info_Page, Next_Page, 6); KT_ASSERT_AT(_HBA_Info_Page, Major, 8);
KT_ASSERT_AT(_HBA_Info_Page, Minor, 9); KT_ASSERT_AT(_HBA_Info_Page, OEM_Num, 10);
KT_ASSERT_AT(_HBA_Info_Page, Build_Num, 11); KT_ASSERT_AT(_HBA_Info_Page, Page_Code, 12);
KT_ASSERT_AT(_HBA_Info_Page, Max_PHY_Num, 13); KT_ASSERT_AT(_HBA_Info_Page, RAID_Feature, 14);
KT_ASSERT_AT(_HBA_Info_Page, Reserved2, 15); KT_ASSERT_AT(_HBA_Info_Page, HBA_Flag, 16);
KT_ASSERT_AT(_HBA_Info_Page, Boot_Device, 20); KT_ASSERT_AT(_HBA_Info_Page, DSpinUpGroup, 24);
KT_ASSERT_AT(_HBA_Info_Page, DSpinUpTimer, 25); KT_ASSERT_AT(_HBA_Info_Page, Delay_Time, 26);
KT_ASSERT_AT(_HBA_Info_Page, bbu_charge_threshold, 27); KT_ASSERT_AT(_HBA_Info_Page, bbu_temp_lowerbound, 28);
KT_ASSERT_AT(_HBA_Info_Page, bbu_temp_upperbound, 29); KT_ASSERT_AT(_HBA_Info_Page, bbu_volt_lowerbound, 30);
KT_ASSERT_AT(_HBA_Info_Page, bbu_volt_upperbound, 32); KT_ASSERT_AT(_HBA_Info_Page, Reserved3, 34);
KT_ASSERT_AT(_HBA_Info_Page, Serial_Num, 36); KT_ASSERT_AT(_HBA_Info_Page, SAS_Address, 56);
KT_ASSERT_AT(_HBA_Info_Page, FFE_Control, 120); KT_ASSERT_AT(_HBA_Info_Page, Reserved4, 128);
KT_ASSERT_AT(_HBA_Info_Page, model_number, 156); KT_ASSERT_AT(_HBA_Info_Page, PHY_Rate, 176);
KT_ASSERT_AT(_HBA_Info_Page, PHY_Tuning, 184); KT_ASSERT_AT(_HBA_Info_Page, Reserved5, 216);
KT_ASSERT_AT(_HBA_Info_Page, BGA_Rate, 244); KT_ASSERT_AT(_HBA_Info_Page, Sync_Rate, 245);
KT_ASSERT_AT(_HBA_Info_Page, Init_Rate, 246); KT_ASSERT_AT(_HBA_Info_Page, Rebuild_Rate, 247);
KT_ASSERT_AT(_HBA_Info_Page, Migration_Rate, 248); KT_ASSERT_AT(_HBA_Info_Page, Copyback_Rate, 249);
KT_ASSERT_AT(_HBA_Info_Page, MP_Rate, 250); KT_ASSERT_AT(_HBA_Info_Page, Reserved7, 251);
KT_ASSERT_AT(_HBA_Info_Page, Reserved6, 252); KT_ASSERT_AT(_HBA_Info_Page, Check_Sum, 255);
// clang-format on

// Adapter settings; rates in percent, AutoRebuildOn 255 = not supported.
typedef struct _Adapter_Config_V2 {
    KT_U8 AutoRebuildOn;
    KT_U8 CpuEfficiencyOn;
    KT_U8 BGARate;
    KT_U8 SyncRate;
    KT_U8 InitRate;
    KT_U8 RebuildRate;
    KT_U8 MigrationRate;
    KT_U8 CopybackRate;
    KT_U8 MPRate;
    KT_U8 PollSMARTStatus;
    KT_U8 CopyBackOn;
    KT_U8 ModuleConsolidation;
    KT_U8 rawimg_update_disabled;
    KT_U8 AlarmOn;
    KT_U8 Reserved1[2];
    KT_U8 SerialNo[20];
    KT_U8 ModelNumber[20];
    KT_U8 Reserved2[8];
} _Adapter_Config_V2;
// clang-format off
KT_ASSERT_SIZE(_Adapter_Config_V2, 64); KT_ASSERT_AT(_Adapter_Config_V2, AutoRebuildOn, 0);
KT_ASSERT_AT(_Adapter_Config_V2, CpuEfficiencyOn, 1); KT_ASSERT_AT(_Adapter_Config_V2, BGARate, 2);
KT_ASSERT_AT(_Adapter_Config_V2, SyncRate, 3); KT_ASSERT_AT(_Adapter_Config_V2, InitRate, 4);
KT_ASSERT_AT(_Adapter_Config_V2, RebuildRate, 5); KT_ASSERT_AT(_Adapter_Config_V2, MigrationRate, 6);
KT_ASSERT_AT(_Adapter_Config_V2, CopybackRate, 7); KT_ASSERT_AT(_Adapter_Config_V2, MPRate, 8);
KT_ASSERT_AT(_Adapter_Config_V2, PollSMARTStatus, 9); KT_ASSERT_AT(_Adapter_Config_V2, CopyBackOn, 10);
KT_ASSERT_AT(_Adapter_Config_V2, ModuleConsolidation, 11);
KT_ASSERT_AT(_Adapter_Config_V2, rawimg_update_disabled, 12); KT_ASSERT_AT(_Adapter_Config_V2, AlarmOn, 13);
KT_ASSERT_AT(_Adapter_Config_V2, Reserved1, 14); KT_ASSERT_AT(_Adapter_Config_V2, SerialNo, 16);
KT_ASSERT_AT(_Adapter_Config_V2, ModelNumber, 36); KT_ASSERT_AT(_Adapter_Config_V2, Reserved2, 56);
// clang-format on

// Battery: times in minutes, temperature 0.01 C with limits in C, voltages in mV, capacities 0.01 Wh.
typedef struct _BBU_Info {
    KT_U8 status;
    KT_U8 sensorSupport;
    KT_U16 rechargeCycle;
    KT_U16 minutesToFull;
    KT_U16 minutesToEmpty;
    KT_S16 temperature;
    KT_S16 tempLow;
    KT_S16 tempHigh;
    KT_U16 voltage;
    KT_U16 voltLow;
    KT_U16 voltHigh;
    KT_U16 capacity;
    KT_U16 maxCapacity;
    KT_U8 percentage;
    KT_U8 Reserved[7];
} _BBU_Info;
// clang-format off
KT_ASSERT_SIZE(_BBU_Info, 32); KT_ASSERT_AT(_BBU_Info, status, 0); KT_ASSERT_AT(_BBU_Info, sensorSupport, 1);
KT_ASSERT_AT(_BBU_Info, rechargeCycle, 2); KT_ASSERT_AT(_BBU_Info, minutesToFull, 4);
KT_ASSERT_AT(_BBU_Info, minutesToEmpty, 6); KT_ASSERT_AT(_BBU_Info, temperature, 8);
KT_ASSERT_AT(_BBU_Info, tempLow, 10); KT_ASSERT_AT(_BBU_Info, tempHigh, 12); KT_ASSERT_AT(_BBU_Info, voltage, 14);
KT_ASSERT_AT(_BBU_Info, voltLow, 16); KT_ASSERT_AT(_BBU_Info, voltHigh, 18); KT_ASSERT_AT(_BBU_Info, capacity, 20);
KT_ASSERT_AT(_BBU_Info, maxCapacity, 22); KT_ASSERT_AT(_BBU_Info, percentage, 24);
KT_ASSERT_AT(_BBU_Info, Reserved, 25);
// clang-format on

// Key and password, NUL-padded, not terminated when 32 long.
typedef struct _AES_Entry_Config {
    KT_U8 entry_id;
    KT_U8 key_length;
    KT_U8 reserved[6];
    KT_U8 key_content[32];
    KT_U8 user_auth[32];
} _AES_Entry_Config;
// clang-format off
KT_ASSERT_SIZE(_AES_Entry_Config, 72); KT_ASSERT_AT(_AES_Entry_Config, entry_id, 0);
KT_ASSERT_AT(_AES_Entry_Config, key_length, 1); KT_ASSERT_AT(_AES_Entry_Config, reserved, 2);
KT_ASSERT_AT(_AES_Entry_Config, key_content, 8); KT_ASSERT_AT(_AES_Entry_Config, user_auth, 40);
// clang-format on

// One port of the overview and the entry it is linked to; 255 = unused, no link.
typedef struct _aes_port_entry {
    KT_U8 id;
    KT_U8 entry;
} _aes_port_entry;
// clang-format off
KT_ASSERT_SIZE(_aes_port_entry, 2); KT_ASSERT_AT(_aes_port_entry, id, 0); KT_ASSERT_AT(_aes_port_entry, entry, 1);
// clang-format on

typedef struct _aes_entry_info {
    _aes_port_entry aes_port[4];
    KT_U8 entry[10];
    KT_U8 reserved[2];
} _aes_entry_info;
// clang-format off
KT_ASSERT_SIZE(_aes_entry_info, 20); KT_ASSERT_AT(_aes_entry_info, aes_port, 0);
KT_ASSERT_AT(_aes_entry_info, entry, 8); KT_ASSERT_AT(_aes_entry_info, reserved, 18);
// clang-format on

typedef struct _AES_ENTRY_INFO {
    KT_U8 id;
    KT_BOOLEAN hasKey;
    KT_U8 Reserved[6];
} _AES_ENTRY_INFO;
// clang-format off
KT_ASSERT_SIZE(_AES_ENTRY_INFO, 8); KT_ASSERT_AT(_AES_ENTRY_INFO, id, 0); KT_ASSERT_AT(_AES_ENTRY_INFO, hasKey, 1);
KT_ASSERT_AT(_AES_ENTRY_INFO, Reserved, 2);
// clang-format on

typedef struct _AES_PORT_INFO {
    KT_U8 id;
    KT_U8 entry;
    KT_U8 Reserved[6];
} _AES_PORT_INFO;
// clang-format off
KT_ASSERT_SIZE(_AES_PORT_INFO, 8); KT_ASSERT_AT(_AES_PORT_INFO, id, 0); KT_ASSERT_AT(_AES_PORT_INFO, entry, 1);
KT_ASSERT_AT(_AES_PORT_INFO, Reserved, 2);
// clang-format on

typedef struct _AES_Port_Config {
    KT_U8 port_id;
    KT_BOOLEAN aes_enable;
    KT_U8 reserved[6];
} _AES_Port_Config;
// clang-format off
KT_ASSERT_SIZE(_AES_Port_Config, 8); KT_ASSERT_AT(_AES_Port_Config, port_id, 0);
KT_ASSERT_AT(_AES_Port_Config, aes_enable, 1); KT_ASSERT_AT(_AES_Port_Config, reserved, 2);
// clang-format on

typedef struct _Tandemix_Entry_Request {
    _RequestHeader header;
    KT_U64 start;
    KT_U64 length;
} _Tandemix_Entry_Request;
// clang-format off
KT_ASSERT_SIZE(_Tandemix_Entry_Request, 32); KT_ASSERT_AT(_Tandemix_Entry_Request, header, 0);
KT_ASSERT_AT(_Tandemix_Entry_Request, start, 16); KT_ASSERT_AT(_Tandemix_Entry_Request, length, 24);
// clang-format on

typedef struct _Tandemix_Table_Info {
    KT_U16 total;
    KT_U16 remaining;
} _Tandemix_Table_Info;
// clang-format off
KT_ASSERT_SIZE(_Tandemix_Table_Info, 4); KT_ASSERT_AT(_Tandemix_Table_Info, total, 0);
KT_ASSERT_AT(_Tandemix_Table_Info, remaining, 2);
// clang-format on

// The caller fills ID, the library Magic.
typedef struct _Device_Magic {
    KT_U16 ID;
    KT_U8 Reserved[6];
    KT_U8 Magic[24];
} _Device_Magic;
// clang-format off
KT_ASSERT_SIZE(_Device_Magic, 32); KT_ASSERT_AT(_Device_Magic, ID, 0); KT_ASSERT_AT(_Device_Magic, Reserved, 2);
KT_ASSERT_AT(_Device_Magic, Magic, 8);
// clang-format on

// One attribute of a drive's SMART data page. Raw is little-endian; Id 0 = an unused place.
typedef struct _SSD_Smart_Attribute {
    KT_U8 Id;
    KT_U8 Flags[2];
    KT_U8 Current;
    KT_U8 Worst;
    KT_U8 Raw[6];
    KT_U8 Reserved;
} _SSD_Smart_Attribute;
// clang-format off
KT_ASSERT_SIZE(_SSD_Smart_Attribute, 12); KT_ASSERT_AT(_SSD_Smart_Attribute, Id, 0);
KT_ASSERT_AT(_SSD_Smart_Attribute, Flags, 1); KT_ASSERT_AT(_SSD_Smart_Attribute, Current, 3);
KT_ASSERT_AT(_SSD_Smart_Attribute, Worst, 4); KT_ASSERT_AT(_SSD_Smart_Attribute, Raw, 5);
KT_ASSERT_AT(_SSD_Smart_Attribute, Reserved, 11);
// clang-format on

// A drive's SMART data page as the drive gives it. All 512 bytes of a sound one sum to zero. Of SelfTestStatus the high
// four bits are the result (15 = running), the low ones what remains, in tenths.
typedef struct _SSD_Smart_Data {
    KT_U16 Revision;
    _SSD_Smart_Attribute Attributes[30];
    KT_U8 OfflineStatus;
    KT_U8 SelfTestStatus;
    KT_U8 OfflineSeconds[2];
    KT_U8 Vendor1;
    KT_U8 OfflineCapability;
    KT_U8 SmartCapability[2];
    KT_U8 ErrorLogCapability;
    KT_U8 Vendor2;
    KT_U8 ShortTestMinutes;
    KT_U8 LongTestMinutes;
    KT_U8 Reserved[137];
    KT_U8 CheckSum;
} _SSD_Smart_Data;
// clang-format off
KT_ASSERT_SIZE(_SSD_Smart_Data, 512); KT_ASSERT_AT(_SSD_Smart_Data, Revision, 0);
KT_ASSERT_AT(_SSD_Smart_Data, Attributes, 2); KT_ASSERT_AT(_SSD_Smart_Data, OfflineStatus, 362);
KT_ASSERT_AT(_SSD_Smart_Data, SelfTestStatus, 363); KT_ASSERT_AT(_SSD_Smart_Data, OfflineSeconds, 364);
KT_ASSERT_AT(_SSD_Smart_Data, Vendor1, 366); KT_ASSERT_AT(_SSD_Smart_Data, OfflineCapability, 367);
KT_ASSERT_AT(_SSD_Smart_Data, SmartCapability, 368); KT_ASSERT_AT(_SSD_Smart_Data, ErrorLogCapability, 370);
KT_ASSERT_AT(_SSD_Smart_Data, Vendor2, 371); KT_ASSERT_AT(_SSD_Smart_Data, ShortTestMinutes, 372);
KT_ASSERT_AT(_SSD_Smart_Data, LongTestMinutes, 373); KT_ASSERT_AT(_SSD_Smart_Data, Reserved, 374);
KT_ASSERT_AT(_SSD_Smart_Data, CheckSum, 511);
// clang-format on

// A drive's self-test: the caller fills Action, the library the rest. PowerOnHours: when it ended; Result: the drive's
// own code; FirstErrorLBA: KT_SSD_NO_LBA without one.
typedef struct _SSD_Diagnostic {
    KT_U8 Action;
    KT_U8 State;
    KT_U8 Percentage;
    KT_U8 Result;
    KT_U32 PowerOnHours;
    KT_U64 FirstErrorLBA;
    KT_U8 Reserved[16];
} _SSD_Diagnostic;
// clang-format off
KT_ASSERT_SIZE(_SSD_Diagnostic, 32); KT_ASSERT_AT(_SSD_Diagnostic, Action, 0); KT_ASSERT_AT(_SSD_Diagnostic, State, 1);
KT_ASSERT_AT(_SSD_Diagnostic, Percentage, 2); KT_ASSERT_AT(_SSD_Diagnostic, Result, 3);
KT_ASSERT_AT(_SSD_Diagnostic, PowerOnHours, 4); KT_ASSERT_AT(_SSD_Diagnostic, FirstErrorLBA, 8);
KT_ASSERT_AT(_SSD_Diagnostic, Reserved, 16);
// clang-format on

typedef struct _Info_Request {
    _RequestHeader header;
    KT_U8 data[1];
} _Info_Request;
// clang-format off
KT_ASSERT_SIZE(_Info_Request, 18); KT_ASSERT_AT(_Info_Request, header, 0); KT_ASSERT_AT(_Info_Request, data, 16);
// clang-format on

typedef struct _LD_Info_Request {
    _RequestHeader header;
    _LD_Info ldInfo[1];
} _LD_Info_Request;
// clang-format off
KT_ASSERT_SIZE(_LD_Info_Request, 328); KT_ASSERT_AT(_LD_Info_Request, header, 0);
KT_ASSERT_AT(_LD_Info_Request, ldInfo, 16);
// clang-format on

typedef struct _LD_Status_Request {
    _RequestHeader header;
    _LD_STATUS ldStatus[1];
} _LD_Status_Request;
// clang-format off
KT_ASSERT_SIZE(_LD_Status_Request, 24); KT_ASSERT_AT(_LD_Status_Request, header, 0);
KT_ASSERT_AT(_LD_Status_Request, ldStatus, 16);
// clang-format on

typedef struct _LD_Config_Request {
    _RequestHeader header;
    _LD_Config ldConfig[1];
} _LD_Config_Request;
// clang-format off
KT_ASSERT_SIZE(_LD_Config_Request, 48); KT_ASSERT_AT(_LD_Config_Request, header, 0);
KT_ASSERT_AT(_LD_Config_Request, ldConfig, 16);
// clang-format on

typedef struct _DG_Info_Request {
    _RequestHeader header;
    _DG_Info dgInfo[1];
} _DG_Info_Request;
// clang-format off
KT_ASSERT_SIZE(_DG_Info_Request, 704); KT_ASSERT_AT(_DG_Info_Request, header, 0);
KT_ASSERT_AT(_DG_Info_Request, dgInfo, 16);
// clang-format on

typedef struct _DG_Config_Request {
    _RequestHeader header;
    _DG_CONFIG dgConfig[1];
} _DG_Config_Request;
// clang-format off
KT_ASSERT_SIZE(_DG_Config_Request, 48); KT_ASSERT_AT(_DG_Config_Request, header, 0);
KT_ASSERT_AT(_DG_Config_Request, dgConfig, 16);
// clang-format on

typedef struct _HD_Info_Request {
    _RequestHeader header;
    _HD_Info hdInfo[1];
} _HD_Info_Request;
// clang-format off
KT_ASSERT_SIZE(_HD_Info_Request, 264); KT_ASSERT_AT(_HD_Info_Request, header, 0);
KT_ASSERT_AT(_HD_Info_Request, hdInfo, 16);
// clang-format on

typedef struct _HD_RAID_Status_Request {
    _RequestHeader header;
    _HD_RAID_STATUS hdRaidStatus[1];
} _HD_RAID_Status_Request;
// clang-format off
KT_ASSERT_SIZE(_HD_RAID_Status_Request, 24); KT_ASSERT_AT(_HD_RAID_Status_Request, header, 0);
KT_ASSERT_AT(_HD_RAID_Status_Request, hdRaidStatus, 16);
// clang-format on

typedef struct _HD_Config_Request {
    _RequestHeader header;
    _HD_CONFIG hdConfig[1];
} _HD_Config_Request;
// clang-format off
KT_ASSERT_SIZE(_HD_Config_Request, 24); KT_ASSERT_AT(_HD_Config_Request, header, 0);
KT_ASSERT_AT(_HD_Config_Request, hdConfig, 16);
// clang-format on

typedef struct _HD_BGA_Status_Request {
    _RequestHeader header;
    _HD_BGA_STATUS hdBgaStatus[1];
} _HD_BGA_Status_Request;
// clang-format off
KT_ASSERT_SIZE(_HD_BGA_Status_Request, 24); KT_ASSERT_AT(_HD_BGA_Status_Request, header, 0);
KT_ASSERT_AT(_HD_BGA_Status_Request, hdBgaStatus, 16);
// clang-format on

typedef struct _HD_SMART_Status_Request {
    _RequestHeader header;
    _HD_SMART_STATUS hdSmartStatus[1];
} _HD_SMART_Status_Request;
// clang-format off
KT_ASSERT_SIZE(_HD_SMART_Status_Request, 24); KT_ASSERT_AT(_HD_SMART_Status_Request, header, 0);
KT_ASSERT_AT(_HD_SMART_Status_Request, hdSmartStatus, 16);
// clang-format on

typedef struct _PM_Info_Request {
    _RequestHeader header;
    _PM_Info pmInfo[1];
} _PM_Info_Request;
// clang-format off
KT_ASSERT_SIZE(_PM_Info_Request, 96); KT_ASSERT_AT(_PM_Info_Request, header, 0);
KT_ASSERT_AT(_PM_Info_Request, pmInfo, 16);
// clang-format on

typedef struct _Exp_Info_Request {
    _RequestHeader header;
    _Exp_Info expInfo[1];
} _Exp_Info_Request;
// clang-format off
KT_ASSERT_SIZE(_Exp_Info_Request, 128); KT_ASSERT_AT(_Exp_Info_Request, header, 0);
KT_ASSERT_AT(_Exp_Info_Request, expInfo, 16);
// clang-format on

typedef struct _BLK_Info_Request {
    _RequestHeader header;
    _Block_Info blkInfo[1];
} _BLK_Info_Request;
// clang-format off
KT_ASSERT_SIZE(_BLK_Info_Request, 48); KT_ASSERT_AT(_BLK_Info_Request, header, 0);
KT_ASSERT_AT(_BLK_Info_Request, blkInfo, 16);
// clang-format on

typedef struct _Enclosure_Info_Request {
    _RequestHeader header;
    _Enclosure_Info enclosureInfo[1];
} _Enclosure_Info_Request;
// clang-format off
KT_ASSERT_SIZE(_Enclosure_Info_Request, 64); KT_ASSERT_AT(_Enclosure_Info_Request, header, 0);
KT_ASSERT_AT(_Enclosure_Info_Request, enclosureInfo, 16);
// clang-format on

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

// Every call answers a status (KT_STATUS) unless another result is shown. `a` is the adapter's index. The caller owns
// every buffer; a typed request is declared with one record and allocated for header.numRequested.

// Library
KT_U8 KT_API_Initialize(void);
void KT_API_Finalize(void);
const char* KT_API_Version(void);
KT_U8 KT_API_RescanAdapter(void);
KT_U32 KT_API_GetRescanCount(KT_U8 force);
// Optional: a library that brings its own driver answers that driver's version here.
int KT_SIM_SgVersion(void);

// Adapter
KT_U8 KT_Adapter_GetCount(void); // the count, not a status
KT_U8 KT_Adapter_GetInfo(KT_U8 a, KT_U8* infoVersion, _Adapter_Info* info);
KT_U8 KT_Adapter_GetConfig(KT_U8 a, _Adapter_Config_V2* config);
KT_U8 KT_Adapter_SetConfig(KT_U8 a, const _Adapter_Config_V2* config);
KT_U8 KT_Adapter_Read_Register(KT_U8 a, KT_U8 type, KT_U32 address, _Register_Request* request);
KT_U8 KT_Adapter_Write_Register(KT_U8 a, KT_U8 type, KT_U32 address, _Register_Request* request);
KT_U8 KT_AdapterMute(KT_U8 a);

// Virtual disk
KT_U8 KT_LD_GetInfo(KT_U8 a, _LD_Info_Request* request);
KT_U8 KT_LD_GetStatus(KT_U8 a, _LD_Status_Request* request);
KT_U8 KT_LD_GetConfig(KT_U8 a, _LD_Config_Request* request);
KT_U8 KT_LD_SetConfig(KT_U8 a, KT_U16 vd, const _LD_Config* config);
KT_U8 KT_LD_Create(KT_U8 a, _Create_LD_Param* param);
KT_U8 KT_LD_DG_QuickCreate(KT_U8 a, KT_U8 type);
KT_U8 KT_LD_Delete(KT_U8 a, KT_U16 vd, KT_U8 stopBga);
KT_U8 KT_LD_BGAControl(KT_U8 a, KT_U16 vd, KT_U8 control);
KT_U8 KT_LD_StartINIT(KT_U8 a, KT_U16 vd, KT_U8 initType);
KT_U8 KT_LD_StartConsistencyCheck(KT_U8 a, KT_U16 vd, KT_U8 fix);
KT_U8 KT_LD_StartRebuild(KT_U8 a, KT_U16 vd, KT_U16 pd);
KT_U8 KT_LD_DG_StartRebuild(KT_U8 a, KT_U16 dg, KT_U8 pdCount, const KT_U16* pds);
KT_U8 KT_LD_StartMigration(KT_U8 a, _Create_LD_Param* param);
KT_U8 KT_LD_GetMaxSize(KT_U8 a, _Create_LD_Param* param);
KT_U8 KT_LD_GetMigratedLdSize(KT_U8 a, _Create_LD_Param* param);
KT_U8 KT_LD_GetTargetLDInfo(KT_U8 a, KT_U16 vd, _LD_Info* target);
KT_U8 KT_LD_Import(KT_U8 a, KT_U16 vd);
KT_U8 KT_LD_Report(KT_U8 a, KT_U16 vd);
KT_U8 KT_LD_PauseAll(KT_U8 a);
KT_U8 KT_CreateOrModify_VD(KT_U8 a, _CreateOrModify_VD_Param* param);

// Array
KT_U8 KT_DG_GetInfo(KT_U8 a, _DG_Info_Request* request);
KT_U8 KT_DG_GetConfig(KT_U8 a, _DG_Config_Request* request);
KT_U8 KT_DG_SetConfig(KT_U8 a, KT_U16 dg, const _DG_CONFIG* config);
KT_U8 KT_DG_Delete(KT_U8 a, KT_U16 dg);
KT_U8 KT_DG_BGAControl(KT_U8 a, KT_U16 dg, KT_U8 control);
KT_U8 KT_DG_StartMigration(KT_U8 a, _CreateOrModify_DG_Param* param, KT_U8 sizeOnly);
KT_U8 KT_CreateOrModify_DG(KT_U8 a, _CreateOrModify_DG_Param* param, KT_U8 sizeOnly);

// Physical disk
KT_U8 KT_PD_GetHDInfo(KT_U8 a, _HD_Info_Request* request);
KT_U8 KT_PD_GetHDInfo_Ext(KT_U8 a, _HD_Info_Request* request);
KT_U8 KT_PD_GetHDRaidStatus(KT_U8 a, _HD_RAID_Status_Request* request);
KT_U8 KT_PD_GetConfig(KT_U8 a, _HD_Config_Request* request);
KT_U8 KT_PD_SetConfig(KT_U8 a, KT_U16 pd, const _HD_CONFIG* config);
KT_U8 KT_PD_SetHDStatus(KT_U8 a, KT_U16 pd, KT_U8 status);
KT_U8 KT_PD_GetFreeSpaceInfo(KT_U8 a, KT_U16 pd, _HD_FreeSpaceInfo* info);
KT_U8 KT_PD_GetBGAStatus(KT_U8 a, _HD_BGA_Status_Request* request);
KT_U8 KT_PD_BGAControl(KT_U8 a, KT_U16 pd, KT_U8 control);
KT_U8 KT_PD_StartMediaPatrol(KT_U8 a, KT_U16 pd);
KT_U8 KT_PD_GetMBRInfo(KT_U8 a, _HD_MBR_Info* info);
KT_U8 KT_PD_GetSmartStatus(KT_U8 a, _HD_SMART_Status_Request* request);
KT_U8 KT_PD_GET_SMART_INFO(KT_U8 a, KT_U16 pd, _SMART_Info* info);
KT_U8 KT_PD_GetPMInfo(KT_U8 a, _PM_Info_Request* request);
KT_U8 KT_PD_GetExpanderInfo(KT_U8 a, _Exp_Info_Request* request);
KT_U8 KT_PD_FreeHD2DGSpare(KT_U8 a, KT_U16 pd, KT_U16 dg);
KT_U8 KT_PD_FreeHD2GlobalSpare(KT_U8 a, KT_U16 pd);
KT_U8 KT_PD_Spare2FreeHD(KT_U8 a, KT_U16 pd);
KT_U8 KT_PD_WipeHDMDD(KT_U8 a, KT_U16 pd, KT_U8 force);
// kind KT_DEVICE_VD or KT_DEVICE_PD; KT_ERR_VD_HAS_OS or KT_ERR_PD_HAS_OS = has an OS, KT_OK = has none
KT_U8 KT_DiskHasOS(KT_U8 a, KT_U8 kind, KT_U8 count, const KT_U16* ids);
KT_U8 KT_LocateArrayDevice(KT_U8 a, KT_U8 kind, KT_U16 id, KT_U8 on);
KT_U8 KT_PassThrough_ATA(KT_U8 a, KT_U16 pd, _ATA_PassThrough* command);

// Solid-state disk. Microcode comes in pages, as KT_Flash_Bin takes them.
KT_U8 KT_SSD_SmartReadData(KT_U8 a, KT_U16 pd, _SSD_Smart_Data* data);
KT_U8 KT_SSD_Diagnostic(KT_U8 a, KT_U16 pd, _SSD_Diagnostic* diagnostic);
KT_U8 KT_Download_SSD_Microcode(KT_U8 a, KT_U16 pd, KT_U8 mode, _Flash_Data* page);

// Block
KT_U8 KT_BLK_GetInfo(KT_U8 a, _BLK_Info_Request* request);
KT_U8 KT_BLK_GetHDBlock(KT_U8 a, KT_U16 pd, _HD_Block_Info* info);

// Enclosure
KT_U8 KT_ENC_GetEnclosureInfo(KT_U8 a, _Enclosure_Info_Request* request);
KT_U8 KT_ENC_GetElementInfo(KT_U8 a, KT_U16 enc, KT_U8 type, KT_U8 element, _Enc_Element_Info* info);
KT_U8 KT_ENC_GetElementConfig(KT_U8 a, KT_U16 enc, KT_U8 type, KT_U8 element, _Enc_Element_Config* config);

// Events
KT_U8 KT_EVT_GetEvent(KT_U8 a, KT_U8 maxCount, KT_U8* count, _Event* events);
KT_U8 KT_EVT_GetEventMessage(KT_U8 a, KT_U8 maxCount, KT_U8* count, _Event_Message* messages);

// Flash
KT_U8 KT_Flash_Bin(KT_U8 a, KT_U8 action, KT_U8 imageType, _Flash_Data* page);
KT_U8 KT_Flash_Erase(KT_U8 a, KT_U8 pageCode);
KT_U8 KT_Flash_PreData(KT_U8 a, const _KT_FLASH_PER_DATA* announcement);
KT_U8 KT_Flash_NVSRAM(KT_U8 a, KT_U8 action, _NVSRAM_Data* data);
KT_U8 KT_Flash_GetHeaderInfo(const char* path, KT_U8* imageType, KT_U32* major, KT_U16* minor, KT_U16* revision,
                             KT_U16* build, KT_U16* subVendorId);

// Battery
KT_U8 KT_BBU_GetInfo(KT_U8 a, _BBU_Info* info);
KT_U8 KT_BBU_ChangePower(KT_U8 a, KT_U8 action);

// Encryption; passwords are 32 bytes, NUL-padded
KT_U8 KT_AES_GetEntryInfo(KT_U8 a, _aes_entry_info* info);
KT_U8 KT_AES_OnlyGetEntryInfo(KT_U8 a, KT_U8 entry, _AES_ENTRY_INFO* info);
KT_U8 KT_AES_OnlyGetPortInfo(KT_U8 a, KT_U8 port, _AES_PORT_INFO* info);
KT_U8 KT_AES_GetEntryConfig(KT_U8 a, _AES_Entry_Config* config, const KT_U8* password);
KT_U8 KT_AES_SetEntryConfig(KT_U8 a, _AES_Entry_Config* config, const KT_U8* password);
KT_U8 KT_AES_GetPortConfig(KT_U8 a, KT_U8 port, _AES_Port_Config* config);
KT_U8 KT_AES_SetPortConfig(KT_U8 a, const _AES_Port_Config* config);
KT_U8 KT_AES_SetLink(KT_U8 a, const _AES_PORT_INFO* port, const _AES_Entry_Config* entry);
KT_U8 KT_AES_ClearLink(KT_U8 a, KT_U8 port);
KT_U8 KT_AES_VerifyKey(KT_U8 a, _AES_Entry_Config* config, const KT_U8* password);
KT_U8 KT_AES_ChangePwd(KT_U8 a, _AES_Entry_Config* config, const KT_U8* newPassword);
KT_U8 KT_AES_ForcePDOnline(KT_U8 a, const _AES_Entry_Config* config, KT_U16 pd, KT_U8 percentage);

// Hybrid tier
KT_U8 KT_Tandemix_AddFSEntries(KT_U8 a, KT_U16 vd, const _Tandemix_Entry_Request* request, KT_U8 last);
KT_U8 KT_Tandemix_GetEntriesTableInfo(KT_U8 a, KT_U16 vd, _Tandemix_Table_Info* info);
KT_U8 KT_Tandemix_RemoveEntriesTable(KT_U8 a, KT_U16 vd);
KT_U8 KT_Tandem_GetHDMagic(KT_U8 a, KT_U16 count, _Device_Magic* magics);
KT_U8 KT_Tandem_GetVDMagic(KT_U8 a, KT_U16 count, _Device_Magic* magics);
KT_U8 KT_VDHDD_AddLink(KT_U8 a, KT_U16 vd, KT_U16 pd);
// Linked when the status is KT_OK and *pd is below KT_NO_ID.
KT_U8 KT_VDHDD_GetLink(KT_U8 a, KT_U16 vd, KT_U16* pd);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
