// What the whole process shares: the current adapter, line splitting and the dispatcher.
#pragma once

#include "Public/commandSet.h"
#include "Public/output.h"
#include "ktraid.h"

inline constexpr char CLI_VERSION[] = KT_VERSION;

// Adapters that start-up uses at most; an adapter index has 8 bits, so the table has room for each.
inline constexpr int MAX_ADAPTERS = 16;
inline constexpr int ADAPTER_INDEXES = 256;

extern KT_U8 gCurrentAdapter;                       // the adapter that commands address
extern KT_U8 gNumAdaptersFound;                     // what the library counted; at most MAX_ADAPTERS after start-up
extern KT_U8 gAdapterID;                            // second index, only reset by rescan
extern _Adapter_Info gAdapterInfo[ADAPTER_INDEXES]; // filled for every adapter found, zero elsewhere
extern KT_U8 gAdapterStatus[ADAPTER_INDEXES];       // what the library answered when they were read; 0 elsewhere
extern bool arrayBasedRaid;                         // the array-based command set is in force
extern int gUTCStatus;                              // what ScanUTCStatus answered at start-up

// The record of the adapter that commands address.
inline _Adapter_Info& currentAdapter() {
    return gAdapterInfo[gCurrentAdapter];
}

// Registers the two command sets a program offers (program start; they must outlive it).
void setCommandSets(const CommandSet& ldBased, const CommandSet& arrayBased);

// Puts the command set that fits the current adapter in force: the array-based one when it reports disk groups.
void chooseCommandSet();

// Reads every found adapter's record into gAdapterInfo; an adapter that cannot be read keeps what the call left.
void readAdapterRecords();

// Splits line in place into words that point into it. Double quotes keep blanks together and stay part of the word; a
// leading blank and each tab behind a blank yield an empty word. argv must hold strlen(line) + 1 pointers.
// Returns 1, or 0 for an unterminated quote (argc then counts the words before it).
int parse(int* argc, char** argv, char* line);

// Copies a word that may carry quotes. Unquoted: at most n - 1 characters. Quoted: the characters between the first and
// the last one, at most n. dst holds n + 1 bytes and is always terminated.
void noQuoteStrncpy(char* dst, const char* src, int n);

// Runs the command named by argv[0] (lower-cased in place) and returns its result; -1 for "exit" and "quit", 0 for
// "ver", 1 for a word that is unknown or ambiguous.
int cmdDispatcher(int argc, char** argv);

// What the library calls itself, made safe to print like the texts of records: its first 255 bytes, and nothing for a
// library without a name.
struct LibraryVersion {
    char text[256];
    LibraryVersion();
};

// Prints "CLI Version: ...   RaidAPI Version: ..." on one line.
void printVersionLine();

// Prints how many adapters there are and which one commands address.
void printAdapterCount();
