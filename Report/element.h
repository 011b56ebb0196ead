// An enclosure element's status: what SES says in four bytes, in words.
#pragma once

#include "Report/json.h"

// Adds what the element says: "status", "flags", what it measures, and "condition" in the words that labs have for it.
void addElementStatus(Json& object, const _Enc_Element_Info& element, bool records);
