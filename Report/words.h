// The words that labs and reports have for the library's codes.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "ktraid.h"

struct CodeWord {
    unsigned code;
    const char* word;
};

using CodeWords = std::span<const CodeWord>;

// The word of a code; null for a code that has none.
const char* wordOf(CodeWords words, unsigned code);
std::optional<unsigned> codeOf(CodeWords words, const std::string& word);

extern const CodeWords diskTypeWords;      // _HD_Info.HDType
extern const CodeWords parentWords;        // _Link_Endpoint.DevType
extern const CodeWords levelWords;         // RaidMode
extern const CodeWords vdStatusWords;      // _LD_Info.Status
extern const CodeWords activityWords;      // KT_BGA_*
extern const CodeWords patrolWords;        // KT_PD_BGA_*
extern const CodeWords stateWords;         // KT_STATE_*, but none
extern const CodeWords arrayStatusWords;   // _DG_Info.Status
extern const CodeWords elementTypeWords;   // KT_SES_*, as `enc -t` takes them
extern const CodeWords elementStatusWords; // the low four bits of an element's first status byte
extern const CodeWords severityWords;      // _Event.Severity
extern const CodeWords attributeWords;     // _SMART_Attribute.Status

// Bits that have a word each.
extern const CodeWords portTypeBits;
extern const CodeWords raidModeBits; // _Adapter_Info.LogicalDriverMode; the words are those of levels
extern const CodeWords featureBits;  // _Adapter_Info.Features
extern const CodeWords driveBits;    // _HD_Info.FeatureSupport without the speeds

// The words of _Adapter_Info.AdvancedFeatures, some of whose bits take a feature away.
std::vector<const char*> advancedWords(const _Adapter_Info& info);

// Bits per second of a link: of a drive's speed codes 1 to 4 and of the adapter's codes 1 to 3; 0 for any other code.
KT_U64 driveSpeed(unsigned code);
KT_U64 busSpeed(unsigned code);

// Levels that survive the loss of a disk.
bool isRedundant(const std::string& level);
