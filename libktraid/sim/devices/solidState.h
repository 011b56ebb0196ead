// Solid state disks: what they tell of themselves, their self-tests and their microcode. Statuses as the calls answer
// them.
#pragma once

#include "state/store.h"

#include <string>

namespace sim {

// The SMART data page, with its checksum.
KT_U8 readSmartPage(const Context& context, KT_U16 pd, _SSD_Smart_Data& page);

// Does what diagnostic.Action says and answers how the self-test stands.
KT_U8 runDiagnostic(const Context& context, KT_U16 pd, _SSD_Diagnostic& diagnostic);

// A microcode file: this header, then the data.
struct MicrocodeHeader {
    KT_U8 signature[4]; // "KTMC"
    KT_U16 headerSize;  // 72
    KT_U16 reserved;
    KT_U32 dataSize;
    KT_U32 dataChecksum;
    KT_U8 model[40]; // the drives it is for
    KT_U8 version[8];
    KT_U32 reserved1;
    KT_U32 headerChecksum; // of the 68 bytes before it
};
static_assert(sizeof(MicrocodeHeader) == 72);
std::string makeMicrocode(const std::string& model, const std::string& version, const std::string& data);

// The next page of a download; page 0 begins a new one. The microcode takes effect with its last page (or, with
// KT_MICROCODE_LATER, waits for the next start) when it is sound; whatever is refused ends the download.
KT_U8 downloadMicrocode(Context& context, KT_U16 pd, KT_U8 mode, const _Flash_Data& page);

} // namespace sim
