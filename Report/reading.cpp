#include "Report/reading.h"

#include <algorithm>
#include <climits>
#include <ctime>
#include <dlfcn.h>
#include <fcntl.h>
#include <scsi/sg.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include "Report/json.h"
#include "Report/library.h"

// The version of the SCSI generic driver, or of the one that the library brings.
static std::optional<int> readSgVersion() {
    int version = -1;
    if (auto own = reinterpret_cast<int (*)()>(dlsym(RTLD_DEFAULT, "KT_SIM_SgVersion"))) {
        version = own();
    } else if (int fd = open("/dev/sg0", O_RDONLY | O_CLOEXEC | O_NONBLOCK); fd >= 0) {
        if (ioctl(fd, SG_GET_VERSION_NUM, &version) < 0) version = -1;
        close(fd);
    }
    return version < 0 ? std::nullopt : std::optional<int>(version);
}

static std::string hostName() {
    char name[HOST_NAME_MAX + 1] = "";
    if (gethostname(name, sizeof name - 1) != 0) return "";
    return textOfBytes(name, strnlen(name, sizeof name));
}

// The page of settings, as the adapter keeps it: only a twin needs it.
static void readSettings(Reader& reader) {
    auto page = std::make_unique<_Flash_Data>();
    if (!ask(reader, LIBRARY_CALL(KT_Flash_Bin), std::nullopt, KT_U8{KT_FLASH_BACKUP}, KT_U8{KT_IMAGE_CONFIG},
             page.get())) {
        return;
    }
    if (page->Size < sizeof(_HBA_Info_Page)) {
        noteRefusal(reader.machine,
                    {reader.adapter.index, "KT_Flash_Bin", std::nullopt, "the settings are too short", {}});
        return;
    }
    _HBA_Info_Page settings;
    memcpy(&settings, page->Data, sizeof settings);
    reader.adapter.settings = settings;
}

static void readAdapter(Machine& machine, KT_U8 index) {
    machine.adapters.push_back({});
    Reader reader = {machine, machine.adapters.back()};
    reader.adapter.index = index;
    _Adapter_Info info = {};
    KT_U8 version = 0;
    if (!ask(reader, LIBRARY_CALL(KT_Adapter_GetInfo), std::nullopt, &version, &info)) return;
    reader.adapter.info = info;
    gCurrentAdapter = index;
    gAdapterInfo[index] = info;
    if (machine.options.onlyEvents) {
        readEvents(reader);
        return;
    }
    _Adapter_Config_V2 config = {};
    if (ask(reader, LIBRARY_CALL(KT_Adapter_GetConfig), std::nullopt, &config)) reader.adapter.config = config;
    readParts(reader);
    readDisks(reader);
    readVolumes(reader);
    readEvents(reader);
    if (machine.options.records) readSettings(reader);
}

static void readAdapters(Machine& machine) {
    const int only = machine.options.adapter;
    machine.adapterCount = KT_Adapter_GetCount();
    if (only >= 0 && static_cast<unsigned>(only) >= machine.adapterCount) {
        throw ReadFailure{"there is no adapter " + std::to_string(only) + "; the library counts " +
                          std::to_string(machine.adapterCount)};
    }
    const unsigned last = std::min(machine.adapterCount, only >= 0 ? UINT_MAX : ADAPTERS_READ);
    for (unsigned index = 0; index < last; ++index) {
        if (only < 0 || static_cast<unsigned>(only) == index) readAdapter(machine, static_cast<KT_U8>(index));
    }
    if (only < 0 && machine.adapterCount > last) {
        noteRefusal(machine, {-1,
                              "KT_Adapter_GetCount",
                              std::nullopt,
                              "there are " + std::to_string(machine.adapterCount) + " adapters; the first " +
                                  std::to_string(last) + " were read",
                              {}});
    }
}

Machine readMachine(const ReadOptions& options) {
    Machine machine;
    machine.options = options;
    machine.made = static_cast<KT_U64>(time(nullptr));
    machine.host = hostName();
    for (const char* call : {"KT_API_Initialize", "KT_API_Finalize", "KT_Adapter_GetCount"}) {
        if (!isInLibrary(call)) throw ReadFailure{std::string("the library libktraid.so.4 has no call ") + call};
    }
    const KT_U8 status = KT_API_Initialize();
    machine.opened = status == KT_OK;
    if (!machine.opened) {
        noteRefusal(machine, {-1, "KT_API_Initialize", status, ErrorMessage(status), {}});
        return machine;
    }
    const char* version = isInLibrary("KT_API_Version") ? KT_API_Version() : nullptr;
    if (version != nullptr) machine.libraryVersion = textOfBytes(version, strnlen(version, 256));
    machine.sgVersion = readSgVersion();
    try {
        readAdapters(machine);
    } catch (...) {
        KT_API_Finalize();
        throw;
    }
    KT_API_Finalize();
    return machine;
}
