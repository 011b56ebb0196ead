#include "Report/library.h"

#include <algorithm>
#include <dlfcn.h>

void noteRefusal(Machine& machine, const Refusal& refusal) {
    const auto same = [&](const Refusal& known) {
        return known.adapter == refusal.adapter && known.call == refusal.call && known.status == refusal.status &&
               known.text == refusal.text;
    };
    const auto at = std::find_if(machine.refusals.rbegin(), machine.refusals.rend(), same);
    if (at == machine.refusals.rend()) {
        machine.refusals.push_back(refusal);
    } else {
        at->ids.insert(at->ids.end(), refusal.ids.begin(), refusal.ids.end());
    }
}

void refuse(Reader& reader, const char* call, KT_U8 status, std::optional<unsigned> id) {
    Refusal refusal = {reader.adapter.index, call, status, ErrorMessage(status), {}};
    if (id) refusal.ids.push_back(*id);
    noteRefusal(reader.machine, refusal);
}

bool isInLibrary(const char* call) {
    return dlsym(RTLD_NEXT, call) != nullptr;
}

bool libraryHas(Reader& reader, const char* call) {
    if (isInLibrary(call)) return true;
    noteRefusal(reader.machine, {reader.adapter.index, call, std::nullopt, "the library has no such call", {}});
    return false;
}
