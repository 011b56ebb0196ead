// The texts of the library's statuses.
#pragma once

// The constant text of a status; "Unknown error" for one without a text. Never null.
const char* ErrorMessage(unsigned char code);
