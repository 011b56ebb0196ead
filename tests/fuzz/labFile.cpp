// A lab: whatever its bytes are, it is refused in words or makes adapters that can be shown and read back.
#include <string>

#include "lab/lab.h"
#include "tests/fuzz/fuzz.h"

int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    const sim::BuiltInLab lab = {"fuzz", text.c_str()};
    sim::Store* store = nullptr;
    sim::mostDisks = 2000;
    try {
        store = sim::openMemoryStore(sim::fillFromLab, &lab);
    } catch (const sim::LabError& refused) {
        require(!refused.message.empty());
        return 0;
    } catch (const sim::StoreFailure&) {
        return 0;
    }
    const std::string shown = sim::stateToLab(*store);
    sim::closeStore(store);
    const sim::BuiltInLab again = {"shown", shown.c_str()};
    store = sim::openMemoryStore(sim::fillFromLab, &again);
    require(sim::stateToLab(*store) == shown);
    sim::closeStore(store);
    return 0;
}
