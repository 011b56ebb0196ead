// Prints every command's help, from which the manual's command section is made: for each row a line
// "command <table> <word>", the short help, the long help, and a line with a form feed.
#include <cstdio>

#include "ktsetup/commandTables.h"

static void printRows(const char* table, const _cmd_struct* rows, int size) {
    for (int i = 0; i < size; ++i) {
        printf("command %s %s\n%s\n%s\n\f\n", table, rows[i].cmd, rows[i].cmdShortHelp, rows[i].cmdHelp);
    }
}

int main() {
    printRows("ld-general", ldBasedCommands.general, ldBasedCommands.generalSize);
    printRows("ld-internal", ldBasedCommands.internal, ldBasedCommands.internalSize);
    printRows("array-general", arrayBasedCommands.general, arrayBasedCommands.generalSize);
    printRows("array-internal", arrayBasedCommands.internal, arrayBasedCommands.internalSize);
    return 0;
}
