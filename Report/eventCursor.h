// A file that remembers which events were told, through whatever ends the program.
#pragma once

#include "Report/eventLog.h"

// The file cannot be used; the message names it and says why.
struct CursorFailure {
    std::string message;
};

struct EventCursor {
    std::string path; // "" : nothing is remembered
    Told told;
};

// Reads the file; one that is not there yet is an empty cursor. Where the program ended while it wrote to the regular
// file that standard output is again, what was missing there is written now. Throws CursorFailure.
EventCursor openCursor(const std::string& path);

// Writes the lines to standard output and remembers them as told. Into a regular file they come exactly once, however
// often the program is killed; elsewhere nobody can know what of the last ones arrived, and they come again. False when
// they could not be written; they are not remembered then. Throws CursorFailure.
bool tellEvents(EventCursor& cursor, const NewEvents& events);
