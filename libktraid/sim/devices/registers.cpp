#include "devices/registers.h"

#include "state/adapterInfo.h"
#include "state/simClock.h"

#include <algorithm>

namespace sim {

static const KT_U32 NVSRAM_SIZE = 128 * 1024;
static const KT_U64 REGISTER_WRITE_MS = 1;

KT_U8 accessNvsram(const Context& context, KT_U8 action, _NVSRAM_Data& data) {
    if (action != KT_NVSRAM_READ && action != KT_NVSRAM_WRITE) return KT_ERR_FLASH_ACTION;
    if (data.Length == 0) return KT_ERR_INVALID_PARAMETER;
    if (data.Length > sizeof data.Data) return KT_ERR_BUFFER_TOO_BIG;
    if (data.Offset >= NVSRAM_SIZE || data.Length > NVSRAM_SIZE - data.Offset) return KT_ERR_OUT_OF_RANGE;
    const size_t pageSize = sizeof(NvsramPage::bytes);
    for (size_t done = 0; done < data.Length;) {
        const size_t at = data.Offset + done;
        const size_t part = std::min(data.Length - done, pageSize - at % pageSize);
        NvsramPage page = find<NvsramPage>(context, at / pageSize).value_or(NvsramPage{});
        if (action == KT_NVSRAM_READ) {
            memcpy(data.Data + done, page.bytes + at % pageSize, part);
        } else {
            memcpy(page.bytes + at % pageSize, data.Data + done, part);
            save(context, at / pageSize, page);
        }
        done += part;
    }
    return KT_OK;
}

static KT_U8 checkRegister(const Context& context, KT_U8 type, KT_U32 address, const _Register_Request& request,
                           Mailbox& mailbox) {
    if (!(adapterInfo(context).AdvancedFeatures & KT_ADV_REGISTER)) return KT_ERR_NOT_ON_THIS_ADAPTER;
    if (type != 0) return KT_ERR_INVALID_PARAMETER;
    if (address >= std::size(mailbox.value)) return KT_ERR_OUT_OF_RANGE;
    if (request.HeaderSize != offsetof(_Register_Request, Value) || request.TotalSize != sizeof request)
        return KT_ERR_WRONG_DATA;
    mailbox = find<Mailbox>(context, 0).value_or(Mailbox{});
    return mailbox.writingUntil[address] > context.now ? KT_ERR_REGISTER_WRITING : KT_OK;
}

KT_U8 readRegister(const Context& context, KT_U8 type, KT_U32 address, _Register_Request& request) {
    Mailbox mailbox = {};
    const KT_U8 status = checkRegister(context, type, address, request, mailbox);
    if (status == KT_OK) request.Value = mailbox.value[address];
    return status;
}

KT_U8 writeRegister(const Context& context, KT_U8 type, KT_U32 address, const _Register_Request& request) {
    Mailbox mailbox = {};
    const KT_U8 status = checkRegister(context, type, address, request, mailbox);
    if (status != KT_OK) return status;
    mailbox.value[address] = request.Value;
    // With a stopped clock the write would never end: it is over at once.
    if (!loadClock(context.store).stopped) mailbox.writingUntil[address] = context.now + REGISTER_WRITE_MS;
    save(context, 0, mailbox);
    return KT_OK;
}

} // namespace sim
