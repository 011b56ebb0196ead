// How the rules look at a document. Each finder looks at one adapter and reports what it finds.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "Report/look.h"

// What one finding says.
struct Finding {
    const char* name;   // of the rule
    const char* object; // the kind of what it is about
    std::optional<KT_U64> id;
    std::string text;
    std::string action;
};

// One adapter of a document, and where findings go.
struct Scene {
    const Json& document;
    const Json& adapter;
    const Json& thresholds;
    KT_U64 adapterId;
    std::map<KT_U64, const Json*> disks;
    std::vector<VdInArray> virtualDisks;
    std::vector<Finding> findings;
};

inline double threshold(const Scene& scene, const char* name) {
    return amountIn(scene.thresholds, name).value_or(0);
}

inline void found(Scene& scene, Finding finding) {
    scene.findings.push_back(std::move(finding));
}

// "ktsetup 0 " and the words: a command to type for the adapter.
std::string command(const Scene& scene, const std::string& words);

// The events of a class, newest first, as (code, device): the first that `wanted` takes is answered with its code.
template <class Wanted>
std::optional<unsigned> newestEvent(const Scene& scene, unsigned eventClass, Wanted wanted) {
    const Json& events = listIn(scene.adapter, "events");
    for (auto event = events.rbegin(); event != events.rend(); ++event) {
        const auto code = numberIn(*event, "Code");
        if (numberIn(*event, "Class") != eventClass || !code) continue;
        if (wanted(static_cast<unsigned>(*code), *event)) return static_cast<unsigned>(*code);
    }
    return std::nullopt;
}

// Why encryption took a disk that is offline from its port, as the log says, and what helps; null when it did not.
struct CipherComplaint {
    unsigned code; // of the event
    const char* why;
    const char* remedy;
};
const CipherComplaint* cipherComplaint(const Scene& scene, KT_U64 disk);

void findDiskProblems(Scene& scene);
void findVolumeProblems(Scene& scene);
void findPartProblems(Scene& scene);
