#include "devices/solidState.h"

#include "devices/smart.h"
#include "media/disks.h"
#include "media/selfTest.h"

#include <algorithm>
#include <zlib.h>

namespace sim {

static const KT_U64 MS_A_MINUTE = 60000;

// KT_OK when there is such a disk, it is a solid state one and answers; `dead` when it does not answer.
static KT_U8 findDrive(const Context& context, KT_U16 pd, KT_U8 dead, _HD_Info& disk) {
    const auto found = find<_HD_Info>(context, pd);
    if (!found) return KT_ERR_INVALID_PD;
    disk = *found;
    if (!isSolidState(disk)) return KT_ERR_NOT_SUPPORTED;
    return find<PdState>(context, pd).value_or(PdState{}).health == PD_FAILED ? dead : KT_U8{KT_OK};
}

KT_U8 runDiagnostic(const Context& context, KT_U16 pd, _SSD_Diagnostic& diagnostic) {
    _HD_Info disk = {};
    const KT_U8 status = findDrive(context, pd, KT_ERR_SSD_COMMAND_PHASE, disk);
    if (status != KT_OK) return status;
    SolidState state = driveState(context, pd);
    settleTest(context, pd, disk, state);
    const KT_U8 action = diagnostic.Action;
    const bool running = state.state == KT_SSD_RUNNING;
    if (action > KT_SSD_ABORT) return KT_ERR_SSD_COMMAND_ERROR;
    if (action != KT_SSD_ASK && running != (action == KT_SSD_ABORT)) return KT_ERR_SSD_COMMAND_ERROR;
    if (action == KT_SSD_ABORT) abortTest(context, pd, disk, state, context.now);
    if (action == KT_SSD_START_SHORT || action == KT_SSD_START_LONG) {
        state.state = KT_SSD_RUNNING;
        state.extended = action == KT_SSD_START_LONG ? 1 : 0;
        state.result = RESULT_RUNNING;
        state.hours = 0;
        state.started = context.now;
        state.errorLba = KT_SSD_NO_LBA;
    }
    if (state.state != KT_SSD_NEVER) save(context, pd, state);
    diagnostic = {action, state.state, 0, state.result, state.hours, state.errorLba, {}};
    if (state.state == KT_SSD_RUNNING) diagnostic.Percentage = percentDone(context, disk, state);
    return KT_OK;
}

static KT_U8 minutes(KT_U64 milliseconds) {
    return static_cast<KT_U8>(std::min<KT_U64>((milliseconds + MS_A_MINUTE - 1) / MS_A_MINUTE, 255));
}

KT_U8 readSmartPage(const Context& context, KT_U16 pd, _SSD_Smart_Data& page) {
    static const KT_U16 REVISION = 0x0010;
    static const KT_U8 UPDATED_ONLINE = 0x32; // event count, kept by the drive itself
    _HD_Info disk = {};
    KT_U8 status = findDrive(context, pd, KT_ERR_SSD_COMMAND_PHASE, disk);
    if (status != KT_OK) return status;
    _SMART_Info info = {};
    status = getSmartInfo(context, pd, info);
    // The drive refuses the command while its SMART is off.
    if (status != KT_OK) return status == KT_ERR_INVALID_REQUEST ? KT_U8{KT_ERR_SSD_COMMAND_ERROR} : status;
    page = {};
    page.Revision = REVISION;
    for (int i = 0; i < info.AttributeCount; ++i) {
        const _SMART_Attribute& from = info.Attributes[i];
        _SSD_Smart_Attribute& to = page.Attributes[i];
        to = {from.Id, {UPDATED_ONLINE, 0}, from.Current, from.Worst, {}, 0};
        for (int byte = 0; byte < 6; ++byte)
            to.Raw[byte] = static_cast<KT_U8>(from.RawValue >> (8 * byte));
    }
    SolidState state = driveState(context, pd);
    settleTest(context, pd, disk, state);
    const bool running = state.state == KT_SSD_RUNNING;
    const int remaining = running ? 10 - percentDone(context, disk, state) / 10 : 0;
    page.SelfTestStatus = static_cast<KT_U8>(state.result << 4 | std::min(remaining, 9));
    page.ShortTestMinutes = minutes(testTime(disk, false));
    page.LongTestMinutes = minutes(testTime(disk, true));
    KT_U8 sum = 0;
    for (size_t i = 0; i < sizeof page; ++i)
        sum = static_cast<KT_U8>(sum + reinterpret_cast<const KT_U8*>(&page)[i]);
    page.CheckSum = static_cast<KT_U8>(-sum);
    return KT_OK;
}

// Microcode.

static KT_U32 checksumOf(KT_U32 before, const void* bytes, size_t size) {
    return static_cast<KT_U32>(crc32_z(before, static_cast<const Bytef*>(bytes), size));
}

std::string makeMicrocode(const std::string& model, const std::string& version, const std::string& data) {
    MicrocodeHeader header = {};
    memcpy(header.signature, "KTMC", sizeof header.signature);
    header.headerSize = sizeof header;
    header.dataSize = static_cast<KT_U32>(data.size());
    header.dataChecksum = checksumOf(0, data.data(), data.size());
    memcpy(header.model, model.data(), std::min(model.size(), sizeof header.model));
    memcpy(header.version, version.data(), std::min(version.size(), sizeof header.version));
    header.headerChecksum = checksumOf(0, &header, offsetof(MicrocodeHeader, headerChecksum));
    return std::string(reinterpret_cast<const char*>(&header), sizeof header) + data;
}

// Model names end with the first NUL, and blanks before it do not count.
static std::string modelName(const KT_U8 (&field)[40]) {
    std::string name(reinterpret_cast<const char*>(field), sizeof field);
    name.resize(std::min(name.find('\0'), name.size()));
    name.erase(name.find_last_not_of(' ') + 1);
    return name;
}

static KT_U8 checkHeader(const _Flash_Data& page, const _HD_Info& disk, MicrocodeHeader& header) {
    if (page.Size < sizeof header) return KT_ERR_INVALID_MICROCODE;
    memcpy(&header, page.Data, sizeof header);
    const bool sound = memcmp(header.signature, "KTMC", sizeof header.signature) == 0 &&
                       header.headerSize == sizeof header &&
                       header.headerChecksum == checksumOf(0, &header, offsetof(MicrocodeHeader, headerChecksum));
    return sound && modelName(header.model) == modelName(disk.Model) ? KT_U8{KT_OK} : KT_U8{KT_ERR_INVALID_MICROCODE};
}

// Takes the page into the update. KT_OK when it fits.
static KT_U8 takePage(const _HD_Info& disk, const _Flash_Data& page, MicrocodeUpdate& update) {
    KT_U32 data = 0;
    if (page.PageNum == 0) {
        MicrocodeHeader header = {};
        const KT_U8 status = checkHeader(page, disk, header);
        if (status != KT_OK) return status;
        update = {};
        update.expected = header.dataSize;
        update.expectedChecksum = header.dataChecksum;
        std::copy(std::begin(header.version), std::end(header.version), update.version);
        data = sizeof header;
    }
    update.checksum = checksumOf(update.checksum, page.Data + data, page.Size - data);
    update.received += page.Size - data;
    ++update.nextPage;
    if (update.received > update.expected) return KT_ERR_FLASH_DATA;
    if (!page.isLastPage) return KT_OK;
    const bool whole = update.received == update.expected && update.checksum == update.expectedChecksum;
    return whole ? KT_U8{KT_OK} : KT_U8{KT_ERR_FLASH_DATA};
}

KT_U8 downloadMicrocode(Context& context, KT_U16 pd, KT_U8 mode, const _Flash_Data& page) {
    _HD_Info disk = {};
    KT_U8 status = findDrive(context, pd, KT_ERR_LINK_TIMEOUT, disk);
    if (status != KT_OK) return status;
    if (mode > KT_MICROCODE_LATER) return KT_ERR_INVALID_PARAMETER;
    MicrocodeUpdate update = find<MicrocodeUpdate>(context, pd).value_or(MicrocodeUpdate{});
    if (page.Size == 0 || page.Size > sizeof page.Data) status = KT_ERR_FLASH_DATA;
    if (status == KT_OK && page.PageNum != 0 && page.PageNum != update.nextPage) status = KT_ERR_INVALID_REQUEST;
    if (status == KT_OK) status = takePage(disk, page, update);
    if (status != KT_OK || page.isLastPage) {
        context.keepOnFailure = status != KT_OK;
        erase<MicrocodeUpdate>(context, pd);
    } else {
        save(context, pd, update);
    }
    if (status != KT_OK || !page.isLastPage) return status;
    SolidState state = driveState(context, pd);
    state.waiting = mode == KT_MICROCODE_LATER ? 1 : 0;
    std::copy(std::begin(update.version), std::end(update.version), state.microcode);
    if (mode == KT_MICROCODE_NOW) {
        settleTest(context, pd, disk, state);
        abortTest(context, pd, disk, state, context.now);
        runMicrocode(context, pd, update.version);
    }
    save(context, pd, state);
    return KT_OK;
}

} // namespace sim
