#include "Public/start.h"

#include <cstdio>
#include <dlfcn.h>
#include <fcntl.h>
#include <scsi/sg.h>
#include <strings.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include "Public/common.h"
#include "Public/hold.h"
#include "Public/lostOutput.h"
#include "Public/utility.h"
#include "utcTime/utcTime.h"

// Opens the file that "-output" names, for appending; null when it cannot be opened. A pipe that nobody reads is no
// place for output: the program would wait for a reader before it has said anything.
static FILE* openOutput(const char* path) {
    int fd = open(path, O_WRONLY | O_APPEND | O_CREAT | O_NONBLOCK | O_NOCTTY | O_CLOEXEC, 0666);
    if (fd < 0) return nullptr;
    // From here on a slow reader is waited for.
    fcntl(fd, F_SETFL, fcntl(fd, F_GETFL) & ~O_NONBLOCK);
    FILE* file = fdopen(fd, "a");
    if (file == nullptr) close(fd);
    return file;
}

CommandLine takeCommandLine(int argc, char** argv) {
    fillStandardStreams();
    CommandLine line = {argc, argv, false};
    stream = stdout;
    if (line.argc >= 2 && isNumber(line.argv[1])) {
        // Any number selects an adapter; an index has eight bits, and one without an adapter finds an empty record.
        gCurrentAdapter = narrowed<KT_U8>(line.argv[1]);
        ++line.argv;
        --line.argc;
    }
    for (int i = 1; i < line.argc - 1; ++i) {
        if (strcasecmp(line.argv[i], "-output") != 0) continue;
        stream = openOutput(line.argv[i + 1]);
        // The option scanners read the altered word as an option with an argument that everybody ignores.
        line.argv[i][1] = '\1';
        line.toOutput = true;
        break;
    }
    return line;
}

int sg_version() {
    using SimulatedVersion = int (*)();
    if (auto simulated = reinterpret_cast<SimulatedVersion>(dlsym(RTLD_DEFAULT, "KT_SIM_SgVersion"))) {
        int version = simulated();
        return version < 0 ? -1 : version;
    }
    static const char device[] = "/dev/sg0";
    int fd = open(device, O_RDONLY | O_CLOEXEC);
    if (fd < 0) {
        char message[256];
        snprintf(message, sizeof message, "cli :error opening SG device %s", device);
        perror(message);
        return -1;
    }
    int version = 0;
    bool usable = ioctl(fd, SG_GET_VERSION_NUM, &version) >= 0 && version >= 30000;
    if (!usable) printf("cli: %s doesn't seem to be an new sg device\n", device);
    close(fd);
    return usable ? version : -1;
}

static bool checkDriver() {
    int version = sg_version();
    if (version == -1) {
        out("Fail to find SG driver! Require SG driver installed.\n");
        return false;
    }
    out("SG driver version %d.%d.%d.\n", version / 10000, version % 10000 / 100, version % 100);
    return true;
}

bool startLibrary() {
    if (KT_API_Initialize() != KT_OK) {
        out("KT_API_Initialize() failed!\n");
        return false;
    }
    gNumAdaptersFound = KT_Adapter_GetCount();
    gUTCStatus = UTCStatus_Init();
    if (gNumAdaptersFound == 0) out("No adapter is found.\n");
    if (!checkDriver()) return false;
    if (gNumAdaptersFound > MAX_ADAPTERS) {
        out("CLI supports %d adapters!\n", MAX_ADAPTERS);
        gNumAdaptersFound = MAX_ADAPTERS;
    }
    readAdapterRecords();
    chooseCommandSet();
    return true;
}

int stopLibrary(int result) {
    KT_API_Finalize();
    bool written = closeOutput();
    endBySignal();
    return result == 0 && !written ? 1 : result;
}

int runOneShot(const CommandLine& line) {
    if (!startLibrary()) {
        closeOutput();
        return 1;
    }
    return stopLibrary(cmdDispatcher(line.argc - 1, line.argv + 1));
}
