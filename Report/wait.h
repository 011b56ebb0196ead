// Waiting for activities: what is awaited, how far it is, and how it ended.
#pragma once

#include <iosfwd>
#include <map>
#include <optional>

#include "Report/activities.h"
#include "Report/terminal.h"

// What is waited for: everything, or what goes on with one object of one adapter.
struct Awaited {
    std::optional<ActivityOf> of; // none: everything
    KT_U64 adapter = 0;
    KT_U64 id = 0;
};

enum class Waiting { GoesOn, Done, Failed };

// One that is or was awaited.
struct AwaitedActivity {
    KT_U64 adapter;
    Going going;
    Waiting state;
};

// By adapter, kind of object and id, so that they are shown in the same order each time.
using Awaiting = std::map<std::tuple<KT_U64, ActivityOf, KT_U64>, AwaitedActivity>;

// Whether the object that is awaited is there.
bool isThere(const Json& document, const Awaited& awaited);

// Looks at a new reading: what is new is awaited too, and what is no longer there has ended: well, unless its object is
// gone, offline or, behind a rebuild, still degraded. An activity that was aborted or interrupted has failed.
void lookAgain(Awaiting& activities, const Json& document, const Awaited& awaited);

// The state of all of them together: it goes on as long as one does.
Waiting stateOf(const Awaiting& activities);

// A line an activity, with a bar of its progress where there is a terminal. Answers how many lines that were.
size_t writeProgress(std::ostream& to, const Look& look, const Awaiting& activities);
