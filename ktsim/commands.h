// The subcommands of ktsim. Each add...() declares its words and what runs when they are given; running ends in 0 or
// throws CommandFailure.
#pragma once

#include "devices/enclosureElements.h"
#include "state/store.h"

#include "commandLine/commandLine.h"
#include <functional>
#include <string>
#include <sys/types.h>

// Said on standard error, with the command's result.
struct CommandFailure {
    std::string message;
    int result = 1;
};

// What all subcommands share.
struct Options {
    std::string state; // where the state is; empty = as the library finds it
    unsigned adapter = 0;
    bool force = false;
};

void addCreate(const Command& app, Options& options);
void addShow(const Command& app, Options& options);
void addStatus(const Command& app, Options& options);
void addCheck(const Command& app, Options& options);
void addClock(const Command& app, Options& options);
void addFault(const Command& app, Options& options);
void addEvent(const Command& app, Options& options);
void addDisk(const Command& app, Options& options);
void addPower(const Command& app, Options& options); // `reboot` and `power`
void addBattery(const Command& app, Options& options);
void addEnclosure(const Command& app, Options& options);
void addImage(const Command& app, Options& options);
void addRun(const Command& app, Options& options);
void addRehearse(const Command& app);

// diskMoves.cpp: `disk fail`, `pull`, `insert` and `replace`, and what the rest of `disk` shares with them: the failure
// that a status means (`what` completes "there is no disk 5 ..."), and the question before disks that hold parts of
// virtual disks are lost.
void addDiskMoves(const Command& disk, Options& options);
void checkDisk(KT_U8 status, unsigned pd, const char* what);
bool holdsData(const sim::Context& context, KT_U16 pd);
void askAboutDisks(const Options& options, const std::vector<KT_U16>& pds);
void addCable(const Command& app, Options& options);
// enclosure.cpp's `pull` and `insert`
void addShelfMoves(const Command& enclosure, Options& options);

std::string statePathOf(const Options& options);
// Opens the state, making the default one when there is none.
sim::Store* openState(const Options& options);
// labText.cpp: the lab's text: "-" is standard input, then a file of that name, then a built-in lab.
std::string labText(const std::string& name);
// A new file with these bytes, never over one that is there and never left behind unless it is whole.
void makeFile(const std::string& name, const std::string& bytes, mode_t mode);
// --adapter, -a
void addAdapterOption(const Command& command, Options& options);
// --force, -f
void addForceOption(const Command& command, Options& options);
// Asks on the terminal or standard input; anything but y declines, and so does the end of input.
bool confirm(const Options& options, const std::string& question);

// One transaction over the whole state: everything due on every adapter has happened when `work` runs.
void changeState(const Options& options, const std::function<void(sim::Store&)>& work);
// The same for options.adapter; throws when there is no such adapter.
void changeAdapter(const Options& options, const std::function<void(sim::Context&)>& work);
// Lets everything happen that is due on every adapter by now; inside a transaction that writes.
void settleAll(sim::Store& store);
unsigned adapterCount(sim::Store& store);
// clock.cpp: lets time pass, such as "90m", and what is due in it happen; or until every activity has ended, which
// answers the milliseconds that took, with a look after each moment at which something happened.
void passTime(sim::Store& store, const std::string& text);
KT_U64 passUntilIdle(sim::Store& store, const std::function<void()>& look);

// "0 critical, 1-3 ok": how an enclosure's elements of a kind do; only those that are not well when `onlyFaults`.
std::string describeElements(const sim::Context& context, KT_U16 enclosure, const sim::ElementKind& kind,
                             bool onlyFaults);

// Text of a record for a terminal: up to its NUL or end, control bytes as '?'.
std::string printable(const void* text, size_t size);
// "90m", "2h30m", "45s", "3d" in seconds.
bool parseDuration(const std::string& text, KT_U64& seconds);
// "2026-01-05 08:00:00" in UTC as milliseconds since 1970; throws for what the adapters' clock cannot show.
KT_U64 readTime(const std::string& text);
std::string momentText(KT_U64 milliseconds);
std::string durationText(KT_U64 seconds);
// Rounded up: what has just begun does not take no time at all.
KT_U64 wholeSeconds(KT_U64 milliseconds);
// A check of options: a number from `least` to `most`, which nan is not.
WordCheck between(double least, double most);
