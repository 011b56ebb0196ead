// What an adapter's events mean in words, for the programs and for the messages that the simulated library composes.
#pragma once

#include "ktraid.h"

inline constexpr unsigned EVENT_TEXT_SIZE = 224;

// Writes the description of an event by its class and code, cut at the buffer and always terminated. Text that comes
// from the adapter is bounded by its field; a byte of it that is not printable ASCII is shown as '?'.
void composeEvent(const _Event& event, char (&text)[EVENT_TEXT_SIZE]);

// The description of the events in row `row` of the list, in the order of classes and codes or nearly so; what an event
// fills in stands as <device>, <param 1> and the like. False beyond the last row.
bool describeEvents(unsigned row, KT_U16& eventClass, KT_U16& code, char (&text)[EVENT_TEXT_SIZE]);

// True for the event that says an adapter was found; its sense data is the adapter's serial number, as text.
bool isAdapterDetected(const _Event& event);

// The word of a severity in brackets; "[UNKNOWN]" for one without a word. Never null.
const char* severityText(KT_U8 severity);
