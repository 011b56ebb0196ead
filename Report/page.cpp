#include "Report/page.h"

#include <cmath>

#include "Report/activities.h"
#include "Report/pageText.h"
#include "Report/problems.h"

namespace {
enum class Kind { Text, Number, Id, Truth, Ids, Object, Objects };

// A word of the document that the page has use for. Those of objects end with a row without a name.
struct Word {
    const char* name;
    Kind kind;
    const Word* of = nullptr; // the words of the object, or of the list's objects
};
} // namespace

static constexpr Word elementWords[] = {{"type", Kind::Text},   {"text", Kind::Text},          {"status", Kind::Text},
                                        {"slot", Kind::Number}, {"temperature", Kind::Number}, {nullptr, Kind::Text}};
static constexpr Word enclosureWords[] = {{"id", Kind::Id},
                                          {"status", Kind::Text},
                                          {"vendor", Kind::Text},
                                          {"product", Kind::Text},
                                          {"elements", Kind::Objects, elementWords},
                                          {nullptr, Kind::Text}};
static constexpr Word multiplierWords[] = {{"id", Kind::Id}, {"ports", Kind::Number}, {nullptr, Kind::Text}};
static constexpr Word goingWords[] = {{"disk", Kind::Number}, {nullptr, Kind::Text}};
static constexpr Word diskWords[] = {{"id", Kind::Id},
                                     {"type", Kind::Text},
                                     {"model", Kind::Text},
                                     {"serial", Kind::Text},
                                     {"firmware", Kind::Text},
                                     {"size", Kind::Number},
                                     {"on", Kind::Text},
                                     {"parent", Kind::Number},
                                     {"port", Kind::Number},
                                     {"enclosure", Kind::Number},
                                     {"slot", Kind::Number},
                                     {"state", Kind::Text},
                                     {"member", Kind::Truth},
                                     {"array", Kind::Number},
                                     {"spare", Kind::Text},
                                     {"spareInUse", Kind::Truth},
                                     {"os", Kind::Truth},
                                     {"temperature", Kind::Number},
                                     {"poweredOn", Kind::Number},
                                     {"wear", Kind::Number},
                                     {"reallocated", Kind::Number},
                                     {"pending", Kind::Number},
                                     {"uncorrectable", Kind::Number},
                                     {"rotation", Kind::Number},
                                     {"linkSpeed", Kind::Number},
                                     {"locateLed", Kind::Truth},
                                     {"smartTripped", Kind::Truth},
                                     {nullptr, Kind::Text}};
static constexpr Word targetWords[] = {{"level", Kind::Text}, {"disks", Kind::Ids}, {nullptr, Kind::Text}};
static constexpr Word vdWords[] = {{"id", Kind::Id},
                                   {"name", Kind::Text},
                                   {"level", Kind::Text},
                                   {"status", Kind::Text},
                                   {"size", Kind::Number},
                                   {"disks", Kind::Ids},
                                   {"cacheInForce", Kind::Text},
                                   {"os", Kind::Truth},
                                   {"activity", Kind::Object, goingWords},
                                   {"target", Kind::Object, targetWords},
                                   {nullptr, Kind::Text}};
static constexpr Word arrayWords[] = {{"id", Kind::Id},
                                      {"name", Kind::Text},
                                      {"level", Kind::Text},
                                      {"status", Kind::Text},
                                      {"Status", Kind::Number},
                                      {"size", Kind::Number},
                                      {"freeSize", Kind::Number},
                                      {"disks", Kind::Ids},
                                      {"spares", Kind::Ids},
                                      {"activity", Kind::Object, goingWords},
                                      {"virtualDisks", Kind::Objects, vdWords},
                                      {nullptr, Kind::Text}};
static constexpr Word versionWords[] = {{"firmware", Kind::Text}, {nullptr, Kind::Text}};
static constexpr Word batteryWords[] = {{"status", Kind::Number}, {"percentage", Kind::Number}, {nullptr, Kind::Text}};
static constexpr Word adapterWords[] = {{"id", Kind::Id},
                                        {"type", Kind::Text},
                                        {"model", Kind::Text},
                                        {"serial", Kind::Text},
                                        {"versions", Kind::Object, versionWords},
                                        {"battery", Kind::Object, batteryWords},
                                        {"enclosures", Kind::Objects, enclosureWords},
                                        {"portMultipliers", Kind::Objects, multiplierWords},
                                        {"disks", Kind::Objects, diskWords},
                                        {"arrays", Kind::Objects, arrayWords},
                                        {"virtualDisks", Kind::Objects, vdWords},
                                        {nullptr, Kind::Text}};
static constexpr Word problemWords[] = {{"name", Kind::Text},   {"severity", Kind::Text}, {"adapter", Kind::Number},
                                        {"object", Kind::Text}, {"id", Kind::Number},     {"text", Kind::Text},
                                        {"action", Kind::Text}, {nullptr, Kind::Text}};

static Json pick(const Json& object, const Word* words);

// An id that is none stays a gap, as a missing disk is one.
static Json pickIds(const Json& list) {
    Json ids = Json::array();
    for (const Json& id : list) {
        ids.push_back(id.is_number_unsigned() ? id : Json());
    }
    return ids;
}

// Null for what is not of the kind, and for what says nothing: empty texts, and false. Lists and ids are always there.
static Json pickValue(const Json& value, const Word& word) {
    switch (word.kind) {
    case Kind::Text: {
        const std::string text = value.is_string() ? shown(value.get<std::string>()) : "";
        return text.empty() ? Json() : Json(text);
    }
    case Kind::Number:
        return value.is_number() && std::isfinite(value.get<double>()) ? value : Json();
    case Kind::Id:
        return value.is_number_unsigned() ? value : Json("?");
    case Kind::Truth:
        return value.is_boolean() && value.get<bool>() ? value : Json();
    case Kind::Ids:
        return pickIds(value.is_array() ? value : Json::array());
    case Kind::Object:
        return value.is_object() ? pick(value, word.of) : Json();
    case Kind::Objects:
        break;
    }
    Json list = Json::array();
    for (const Json& item : value) {
        list.push_back(pick(item, word.of));
    }
    return list;
}

static Json pick(const Json& object, const Word* words) {
    Json picked = Json::object();
    for (; words->name != nullptr; ++words) {
        Json of = pickValue(in(object, words->name), *words);
        if (!of.is_null()) picked[words->name] = std::move(of);
    }
    return picked;
}

static const char* kindOf(ActivityOf of) {
    return of == ActivityOf::VirtualDisk ? "virtual disk" : of == ActivityOf::Array ? "array" : "disk";
}

static Json goingOn(const Json& adapter) {
    Json list = Json::array();
    for (const Going& going : activitiesOf(adapter)) {
        Json one = {{"object", kindOf(going.of)},
                    {"id", going.id},
                    {"name", going.name},
                    {"kind", going.kind},
                    {"state", going.state}};
        if (going.percent) one["percent"] = *going.percent;
        if (going.secondsLeft) one["left"] = spanText(*going.secondsLeft);
        list.push_back(std::move(one));
    }
    return list;
}

static Json adapterOfPage(const Json& adapter) {
    Json picked = pick(adapter, adapterWords);
    // What is of the adapter's own word for "none" differs from not knowing.
    if (isFalse(adapter, "battery")) picked["battery"] = false;
    picked["going"] = goingOn(adapter);
    return picked;
}

std::string machineOfPage(const Report& report) {
    const Json& document = report.document;
    Json machine = {{"host", shown(textIn(document, "host"))},
                    {"made", shown(textIn(document, "made"))},
                    {"source", report.source == "-" ? "standard input" : shown(report.source)},
                    {"problems", Json::array()},
                    {"adapters", Json::array()}};
    for (const Json& problem : listIn(document, "problems")) {
        machine["problems"].push_back(pick(problem, problemWords));
    }
    for (const Json& adapter : listIn(document, "adapters")) {
        machine["adapters"].push_back(adapterOfPage(adapter));
    }
    return machine.dump();
}

// The end of the element that holds the data cannot stand in a text: there "<" is written as an escape.
static std::string withoutMarkup(const std::string& json) {
    std::string text;
    for (const char c : json) {
        c == '<' ? text += "\\u003c" : text += c;
    }
    return text;
}

std::string pageOf(const std::vector<std::string>& machines, const std::vector<std::string>& leftOut) {
    Json meanings = Json::object();
    for (const ProblemRule& rule : problemRules()) {
        meanings[rule.name] = rule.meaning;
    }
    Json sentences = Json::array();
    for (const std::string& sentence : leftOut) {
        sentences.push_back(shown(sentence));
    }
    std::string page = PAGE_BEFORE_DATA;
    page += withoutMarkup("{\"meanings\":" + meanings.dump() + ",\"leftOut\":" + sentences.dump() + ",\"machines\":[");
    const char* separator = "\n";
    for (const std::string& machine : machines) {
        page += separator + withoutMarkup(machine);
        separator = ",\n";
    }
    return page + "]}" + PAGE_AFTER_DATA;
}
