// How the rules look at a document. Each finder looks at one adapter and reports what it finds.
#pragma once

#include <algorithm>
#include <initializer_list>
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

inline bool isOneOf(std::optional<EventName> name, std::initializer_list<EventName> names) {
    return name && std::find(names.begin(), names.end(), *name) != names.end();
}

// The name of the newest event that has one of the names and that `wanted` takes.
template <class Wanted>
std::optional<EventName> newestEvent(const Scene& scene, std::initializer_list<EventName> names, Wanted wanted) {
    const Json& events = listIn(scene.adapter, "events");
    for (auto event = events.rbegin(); event != events.rend(); ++event) {
        const auto name = nameOfEvent(*event);
        if (isOneOf(name, names) && wanted(*event)) return name;
    }
    return std::nullopt;
}
inline std::optional<EventName> newestEvent(const Scene& scene, std::initializer_list<EventName> names) {
    return newestEvent(scene, names, [](const Json&) { return true; });
}

// " on adapter 1"
inline std::string onAdapter(const Scene& scene) {
    return " on adapter " + std::to_string(scene.adapterId);
}

// Why encryption took a disk that is offline from its port, as the log says, and what helps; null when it did not.
struct CipherComplaint {
    EventName event;
    const char* why;
    const char* remedy;
};
const CipherComplaint* cipherComplaint(const Scene& scene, KT_U64 disk);

void findDiskProblems(Scene& scene);
void findVolumeProblems(Scene& scene);
void findPartProblems(Scene& scene);
