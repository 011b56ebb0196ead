#include "Public/common.h"
#include "Public/start.h"
#include "ktsetup/commandTables.h"
#include "ktsetup/shell.h"

int main(int argc, char** argv) {
    setCommandSets(ldBasedCommands, arrayBasedCommands);
    CommandLine line = takeCommandLine(argc, argv);
    if (line.toOutput || line.argc >= 2) return runOneShot(line);
    if (!startLibrary()) {
        closeOutput();
        return 1;
    }
    runShell();
    stopLibrary(0);
    return -1;
}
