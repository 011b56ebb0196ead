// The objects of set: how each one's record is read, written and shown.
#pragma once

#include "Functions/set/changes.h"

// Reads the object's settings. KT_OK, or the library's status after a message that names it.
KT_U8 readObject(const SetRequest& request, SetRecord& record);

// Writes the record. KT_OK, or the library's status after a message that names it.
KT_U8 writeObject(const SetRequest& request, const SetRecord& record);

// Makes the changes that are calls of their own. KT_OK, or the library's status after a message that names it.
KT_U8 setDiskStatus(KT_U16 pd, bool online);
KT_U8 muteAlarm();
KT_U8 changePower(KT_U8 action);

// Prints the settings as get does, then those that get does not show.
void printObject(const SetRequest& request, const SetRecord& record);
