// Stands in for the header by which the programs find the library's calls: here each call notes what it is handed, and
// answers from the recordings of the seam. What it notes are its numbers and texts in their order, of another adapter
// than the current one "@3" first, and then what its record says in a few words.
#pragma once

#include <algorithm>
#include <cstring>
#include <type_traits>
#include <utility>

#include "tests/seam/seam.h"

// A call that is being made.
struct Made {
    std::string name;
    std::string words = ""; // what it was handed, and
    std::string of = "";    // of its record
    std::vector<KT_U32> numbers = {};
    KT_U8* count = nullptr; // of the records that it is to bring
    size_t filled = 0;
    KT_U8 status = KT_OK;
};

inline constexpr KT_U16 NEW_ID = 7;
inline constexpr KT_U32 HEADER[] = {KT_IMAGE_FIRMWARE, 4000000000, 1, 2, 65535, 0x1B4B}; // what an image's says

template <class... Values>
std::string wordsOf(Values... values) {
    return ((" " + std::to_string(values)) + ...);
}

// What is noted of a record.
inline std::string describe(const Made&, const auto&) {
    return "";
}
#define NOTES(Record, record, ...)                                                                                     \
    inline std::string describe([[maybe_unused]] const Made& made, const Record& record) {                             \
        return __VA_ARGS__;                                                                                            \
    }
#define MIGRATES(id) has(made.name, "Migrat") ? wordsOf(param.id, param.RaidMode, param.NumParityDisk) : ""
NOTES(_Create_LD_Param, param, MIGRATES(LDID))
NOTES(_CreateOrModify_DG_Param, param, MIGRATES(DGID))
NOTES(_KT_FLASH_PER_DATA, image, " type" + wordsOf(image.image_type) + " size" + wordsOf(image.image_size))
NOTES(_Device_Magic, first, " from" + wordsOf(first.ID) + " to" + wordsOf((&first)[made.numbers[0] - 1].ID))
inline std::string describe(const Made& made, const _Flash_Data& page) {
    const bool update = made.name == "KT_Flash_Bin" && made.numbers[0] != KT_FLASH_BACKUP;
    const auto isZero = [](KT_U8 byte) { return byte == 0; };
    const bool remains = update && !std::all_of(page.Data + page.Size, std::end(page.Data), isZero);
    return " page" + wordsOf(page.PageNum) + " last" + wordsOf(page.isLastPage) + " size" + wordsOf(page.Size) +
           (remains ? " with remains" : "");
}

template <class Record>
concept Lists = requires(Record& record) {
    record.header.numRequested;
};

template <class Argument>
void noteArgument(Made& made, size_t index, Argument argument) {
    using Pointed = std::remove_const_t<std::remove_pointer_t<Argument>>;
    constexpr bool isConst = std::is_const_v<std::remove_pointer_t<Argument>>;
    if constexpr (std::is_integral_v<Argument>) {
        if (index == 0) {
            if (argument != gCurrentAdapter) made.words += " @" + std::to_string(argument);
            return;
        }
        made.numbers.push_back(argument);
        made.words += wordsOf(argument);
    } else if constexpr (std::is_same_v<Pointed, char>) {
        made.words += " " + std::string(argument);
    } else if constexpr (std::is_same_v<Argument, const KT_U8*>) {
        made.words += " " + std::string(reinterpret_cast<const char*>(argument), 32); // a password
    } else if constexpr (std::is_same_v<Argument, const KT_U16*>) {
        for (KT_U32 i = 0; i < made.numbers.back(); ++i)
            made.words += wordsOf(argument[i]);
    } else if constexpr (std::is_integral_v<Pointed>) {
        if (has(made.name, "HeaderInfo")) made.words += wordsOf(*argument);
        if constexpr (sizeof(Pointed) == 1) made.count = argument;
    } else if constexpr (!isConst && Lists<Pointed>) {
        const _RequestHeader& header = argument->header;
        const bool item = header.requestType != KT_REQUEST_LIST;
        if (item || header.startingIndexOrId > 0)
            made.words += (item ? "" : " from") + wordsOf(header.startingIndexOrId);
    } else {
        made.of += describe(made, *argument);
        seam.sent[made.name] += bytesOf(*argument);
    }
}

// Hands out the records from the asked index on, or the one with the asked id.
template <class Request, class Record, class IdOf>
void list(const Made& made, Request& request, const std::vector<Record>& records, IdOf idOf) {
    _RequestHeader& header = request.header;
    const bool all = header.requestType == KT_REQUEST_LIST;
    EXPECT_EQ(0, header.numReturned + header.nextStartingIndex);
    header.nextStartingIndex = KT_LIST_END;
    if (!all && (seam.withoutRecord.contains(made.name) || seam.withoutRecord.contains(seam.calls.back()))) return;
    auto* behind = reinterpret_cast<char*>(&request) + sizeof header;
    EXPECT_EQ(0, *behind) << "records are not zeroed before the call";
    for (size_t i = all ? header.startingIndexOrId : 0; i < records.size(); ++i) {
        if (!all && idOf(records[i]) != header.startingIndexOrId) continue;
        if (header.numReturned == header.numRequested) {
            header.nextStartingIndex = static_cast<KT_U16>(i);
            break;
        }
        memcpy(behind + header.numReturned++ * sizeof(Record), &records[i], sizeof(Record));
    }
    header.numReturned = static_cast<KT_U16>(header.numReturned + seam.overclaims);
    if (seam.stuckAt >= 0 && header.startingIndexOrId > 0) header.nextStartingIndex = static_cast<KT_U16>(seam.stuckAt);
}

// Hands out as many records as fit, and says how many that are.
template <class Record>
void fillAll(const Made& made, Record& first, const std::vector<Record>& records) {
    const size_t fit = std::min<size_t>(records.size(), made.numbers[0]);
    std::copy_n(records.begin(), fit, &first);
    *made.count = seam.claimed != 0 ? seam.claimed : static_cast<KT_U8>(fit);
}

// What a record comes back with.
inline void fill(Made&, auto&) {}
void fill(Made& made, std::integral auto& number) {
    using Number = std::remove_reference_t<decltype(number)>;
    if (made.name == "KT_VDHDD_GetLink") number = static_cast<Number>(made.numbers[0] == 1 ? 6 : KT_NO_ID);
    if (!has(made.name, "HeaderInfo") || made.status != KT_OK) return;
    number = static_cast<Number>(HEADER[made.filled++]);
}
#define FILLS(Record, name, ...)                                                                                       \
    inline void fill([[maybe_unused]] Made& made, Record& name) {                                                      \
        __VA_ARGS__;                                                                                                   \
    }
FILLS(_Adapter_Config_V2, config, config = seam.adapterConfig)
FILLS(_BBU_Info, info, info = seam.battery)
FILLS(_LD_Info, target, target = {})
FILLS(_Create_LD_Param, param, param.Size = seam.size)
FILLS(_CreateOrModify_VD_Param, param, param.VDID = NEW_ID)
FILLS(_CreateOrModify_DG_Param, param, {
    param.Size = seam.size;
    if (!has(made.name, "Migrat")) param.DGID = NEW_ID;
})
FILLS(_HD_FreeSpaceInfo, info, info.ValidSize = info.FreeSize = seam.freeSpace)
FILLS(_HD_MBR_Info, info, {
    for (unsigned i = 0; i < info.HDCount; ++i)
        info.hasMBR[i] = seam.disksWithFileSystem.contains(info.HDIDs[i]);
})
FILLS(_SMART_Info, info, info = seam.smart)
FILLS(_ATA_PassThrough, command, command.Status = seam.driveStatus)
FILLS(_SSD_Smart_Data, page, page.Attributes[0] = {.Id = 9, .Current = 50, .Raw = {77}})
FILLS(_Device_Magic, first, memset(first.Magic, 'm', sizeof first.Magic))
FILLS(_aes_entry_info, info, info = seam.aesOverview)
FILLS(_AES_ENTRY_INFO, info, {
    const KT_U32 entry = made.numbers[0];
    info = {static_cast<KT_U8>(entry), seam.aesOverview.entry[entry % 10], {}};
})
FILLS(_AES_PORT_INFO, info, {
    const KT_U32 port = made.numbers[0];
    info = {static_cast<KT_U8>(port), seam.aesOverview.aes_port[port % 4].entry, {1, 2, 3}};
})
// The answers are not of the entry and the port that were asked for.
FILLS(_AES_Entry_Config, config, {
    config = {.entry_id = 99, .key_length = 32};
    memset(config.key_content, 'K', sizeof config.key_content);
})
FILLS(_AES_Port_Config, config, config = {99, made.numbers[0] == 1, {}})
FILLS(_Enc_Element_Config, config,
      config.NumberOfElements = made.numbers[1] == KT_SES_ALARM ? 0
                                : made.numbers[0] == 7          ? 2
                                                                : 1)
FILLS(_Event, first, fillAll(made, first, seam.events))
FILLS(_Event_Message, first, fillAll(made, first, seam.messages))

#define LISTS(Request, records, id) FILLS(Request, request, list(made, request, records, [](auto& r) { return r.id; }))
LISTS(_LD_Info_Request, seam.lds, ID)
LISTS(_LD_Status_Request, seam.ldStatuses, LDID)
LISTS(_LD_Config_Request, seam.ldConfigs, LDID)
LISTS(_DG_Info_Request, seam.arrays, DGID)
LISTS(_DG_Config_Request, (std::vector<_DG_CONFIG>{{NEW_ID, 0, 0, "old", "untouched"}}), DGID)
LISTS(_HD_RAID_Status_Request, seam.disks, HDID)
LISTS(_HD_Info_Request, seam.hds, Link.Self.DevID)
LISTS(_HD_BGA_Status_Request, seam.hdActivities, HDID)
LISTS(_HD_Config_Request, seam.hdConfigs, HDID)
LISTS(_HD_SMART_Status_Request, std::vector<_HD_SMART_STATUS>(), HDID)
LISTS(_BLK_Info_Request, seam.blocks, ID)
LISTS(_PM_Info_Request, std::vector<_PM_Info>(1), Link.Self.DevID)
LISTS(_Exp_Info_Request, std::vector<_Exp_Info>(1), Link.Self.DevID)
LISTS(_Enclosure_Info_Request, (std::vector<_Enclosure_Info>{{}, {.EnclosureID = 7}}), EnclosureID)

// A page that is read comes from the image, and one that is written goes there.
inline void fill(Made& made, _Flash_Data& page) {
    if (made.status != KT_OK || made.numbers[0] == KT_FLASH_ERASE) return;
    if (made.numbers[0] == KT_FLASH_UPDATE) {
        seam.flash.append(page.Data, page.Data + page.Size);
        if (seam.flashed != nullptr) seam.flashed();
        return;
    }
    const size_t start = std::min(page.PageNum * sizeof page.Data, seam.flash.size());
    const size_t count = seam.flash.copy(reinterpret_cast<char*>(page.Data), sizeof page.Data, start);
    page.Size = seam.flashClaims != 0 ? seam.flashClaims : static_cast<KT_U32>(count);
    page.isLastPage = !seam.flashEndless && start + count >= seam.flash.size();
}

template <class Result, class... Arguments>
Result recordedCall(const char* name, Arguments... arguments) {
    if constexpr (std::is_same_v<Result, const char*>) {
        return seam.version.c_str();
    } else if constexpr (std::is_same_v<Result, KT_U8>) {
        Made made = {name};
        seam.sent[name].clear();
        size_t index = 0;
        (noteArgument(made, index++, arguments), ...);
        made.status = answer(name + made.words + made.of);
        const auto fillRecord = [&](auto argument) {
            using Pointed = std::remove_pointer_t<decltype(argument)>;
            if constexpr (!std::is_integral_v<decltype(argument)> && !std::is_const_v<Pointed>) fill(made, *argument);
        };
        (fillRecord(arguments), ...);
        return made.status;
    } else {
        return Result();
    }
}

template <class Call>
struct RecordedCall;
template <class Result, class... Arguments>
struct RecordedCall<Result (*)(Arguments...)> {
    const char* name;
    Result operator()(Arguments... arguments) const { return recordedCall<Result>(name, arguments...); }
};
template <class Call>
RecordedCall<Call> libraryCall(const char* name) {
    return {name};
}
