#include "Report/diff.h"

#include <algorithm>
#include <ostream>

#include "Report/changeWords.h"
#include "Report/look.h"
#include "Report/sameThings.h"

namespace {
// Where the walk is: the adapter, the object that is looked at, and how it is called in sentences.
struct Walk {
    std::vector<Change>& changes;
    bool all;
    int adapter = -1;
    std::string object = {};
    Json id = {};
    std::string name = {};
    std::string where = {}; // " on adapter 1", behind every name where there are several
};
} // namespace

// What the walk looks at by itself: lists of objects, each of which has a name of its own in sentences.
static bool isWalkedApart(const std::string& word) {
    static const char* const words[] = {"disks",           "arrays", "virtualDisks", "enclosures", "expanders",
                                        "portMultipliers", "keys",   "elements",     "events",     "id"};
    return std::find(std::begin(words), std::end(words), word) != std::end(words);
}

// Adds a change of the object that is looked at.
static void addChange(const Walk& walk, Change change) {
    change.adapter = walk.adapter;
    change.object = walk.object;
    change.id = walk.id;
    walk.changes.push_back(std::move(change));
}

static void compareValue(const Walk& walk, const std::string& word, const Json& before, const Json& after) {
    if (before == after) return;
    if (before.is_object() && after.is_object() && word != "activity" && word != "patrol") {
        // The adapter's settings stand in their record's own words.
        const bool every = walk.all || word == "config";
        for (const auto& [inner, value] : before.items()) {
            if (every || !changesByItself(walk.object, inner))
                compareValue(walk, word + "." + inner, value, in(after, inner.c_str()));
        }
        for (const auto& [inner, value] : after.items()) {
            if (before.contains(inner) || (!every && changesByItself(walk.object, inner))) continue;
            compareValue(walk, word + "." + inner, {}, value);
        }
        return;
    }
    const std::string text = changeText(walk.name, word, before, after, walk.all);
    if (!text.empty()) addChange(walk, {.word = word, .before = before, .after = after, .text = text});
}

// The words that stand in an object itself.
static void compareWords(const Walk& walk, const Json& before, const Json& after) {
    const auto counts = [&](const std::string& word) {
        return !isWalkedApart(word) && (walk.all || !changesByItself(walk.object, word));
    };
    for (const auto& [word, value] : before.items()) {
        if (counts(word)) compareValue(walk, word, value, in(after, word.c_str()));
    }
    for (const auto& [word, value] : after.items()) {
        if (counts(word) && !before.contains(word)) compareValue(walk, word, {}, value);
    }
}

static std::vector<const Json*> itemsOf(const Json& owner, const char* word) {
    std::vector<const Json*> items;
    for (const Json& item : listIn(owner, word)) {
        if (item.is_object()) items.push_back(&item);
    }
    return items;
}

namespace {
// A list of objects: what one is called, and which words tell them apart.
struct ListKind {
    const char* list;
    const char* object;
    const char* identity;
    std::vector<const char*> words;
    std::string (*name)(const Json& item);
};
} // namespace

static std::string plainName(const char* object, const Json& item) {
    const auto id = numberIn(item, "id");
    return id ? std::string(object) + " " + std::to_string(*id) : object;
}

static const std::vector<ListKind>& kinds() {
    static const std::vector<ListKind> all = {
        {"virtualDisks", "virtual disk", "guid", {"name", "id"}, nameOfVd},
        {"arrays", "array", "guid", {"name", "id"}, nameOfArray},
        {"disks", "disk", "serial", {"id"}, nameOfDisk},
        {"enclosures", "enclosure", "logicalId", {"id"}, [](const Json& item) { return plainName("enclosure", item); }},
        {"expanders", "expander", "address", {"id"}, [](const Json& item) { return plainName("expander", item); }},
        {"portMultipliers",
         "port multiplier",
         "serial",
         {"id"},
         [](const Json& item) { return plainName("port multiplier", item); }},
        {"keys", "key", "serial", {"id"}, [](const Json& item) { return plainName("key", item); }},
    };
    return all;
}

// Virtual disks stand in their arrays or beside them; they are compared together.
static std::vector<const Json*> itemsOfKind(const Json& adapter, const ListKind& kind) {
    if (std::string("virtualDisks") != kind.list) return itemsOf(adapter, kind.list);
    std::vector<const Json*> items;
    for (const VdInArray& one : virtualDisksOf(adapter)) {
        items.push_back(one.vd);
    }
    return items;
}

static void compareElements(Walk walk, const Json& before, const Json& after) {
    const auto key = [](const Json& element) {
        return shown(textIn(element, "type")) + " " + in(element, "element").dump();
    };
    const std::string enclosure = walk.name;
    for (const Json* element : itemsOf(after, "elements")) {
        for (const Json* old : itemsOf(before, "elements")) {
            if (key(*old) != key(*element)) continue;
            walk.name = key(*element) + " of " + enclosure;
            compareWords(walk, *old, *element);
            break;
        }
    }
}

static void compareEvents(const Walk& walk, const Json& before, const Json& after) {
    const auto last = [](const Json& adapter) -> KT_U64 {
        const Json& events = listIn(adapter, "events");
        return events.empty() ? 0 : numberIn(events.back(), "SequenceNo").value_or(0);
    };
    if (!walk.all || last(before) == last(after)) return;
    addChange(walk, {.word = "events",
                     .before = last(before),
                     .after = last(after),
                     .text = walk.name + ": the last event is " + std::to_string(last(after)) + " now (was " +
                             std::to_string(last(before)) + ")"});
}

static void compareKind(const Walk& of, const ListKind& kind, const Json& before, const Json& after) {
    const std::string list = kind.list;
    // Without virtual disks an adapter that tells of its arrays has none; any other list is missing where it is not
    // known.
    const auto known = [&](const Json& adapter) {
        return adapter.contains(list) || (list == "virtualDisks" && adapter.contains("arrays"));
    };
    if (known(before) != known(after)) {
        addChange(of, {.word = list,
                       .text = "the " + wordsOf(list) + " of " + of.name + " are known only " +
                               (known(after) ? "now" : "from before")});
        return;
    }
    for (const Same& same : pairItems(itemsOfKind(before, kind), itemsOfKind(after, kind), kind.identity, kind.words)) {
        const Json& item = same.after ? *same.after : *same.before;
        Walk walk = {of.changes,  of.all,         of.adapter,
                     kind.object, in(item, "id"), kind.name(same.before ? *same.before : item) + of.where,
                     of.where};
        if (same.before == nullptr) {
            addChange(
                walk,
                {.kind = ChangeKind::Appeared, .after = item, .text = walk.name + " " + aboutItem(item) + "appeared"});
        } else if (same.after == nullptr) {
            addChange(
                walk,
                {.kind = ChangeKind::Gone, .before = item, .text = walk.name + " " + aboutItem(item) + "is gone"});
        } else {
            compareValue(walk, "id", in(*same.before, "id"), in(item, "id"));
            compareWords(walk, *same.before, item);
            compareValue(walk, "disks", in(*same.before, "disks"), in(item, "disks"));
            compareElements(walk, *same.before, item);
        }
    }
}

static void compareAdapter(Walk& walk, const Json& before, const Json& after) {
    compareWords(walk, before, after);
    for (const ListKind& kind : kinds()) {
        compareKind(walk, kind, before, after);
    }
    compareEvents(walk, before, after);
}

std::vector<Change> changesBetween(const Json& before, const Json& after, bool all) {
    std::vector<Change> changes;
    const std::vector<Same> adapters =
        pairItems(itemsOf(before, "adapters"), itemsOf(after, "adapters"), "serial", {"id"});
    for (const Same& same : adapters) {
        const Json& adapter = same.after ? *same.after : *same.before;
        const Json& id = in(adapter, "id");
        Walk walk = {changes,   all, static_cast<int>(numberIn(adapter, "id").value_or(0)),
                     "adapter", id,  nameOfAdapter(adapter)};
        if (adapters.size() > 1) walk.where = " on adapter " + id.dump();
        if (same.before == nullptr) {
            addChange(walk, {.kind = ChangeKind::Appeared, .after = id, .text = walk.name + " appeared"});
        } else if (same.after == nullptr) {
            addChange(walk, {.kind = ChangeKind::Gone, .before = id, .text = walk.name + " is gone"});
        } else {
            compareAdapter(walk, *same.before, adapter);
        }
    }
    std::stable_sort(changes.begin(), changes.end(), [](const Change& a, const Change& b) { return a.kind < b.kind; });
    return changes;
}

Json changesAsJson(const std::vector<Change>& changes) {
    static const char* const words[] = {"gone", "changed", "appeared"};
    Json list = Json::array();
    for (const Change& change : changes) {
        Json one = {{"change", words[static_cast<int>(change.kind)]}};
        if (change.adapter >= 0) one["adapter"] = change.adapter;
        one["object"] = change.object;
        if (!change.id.is_null()) one["id"] = change.id;
        if (!change.word.empty()) one["word"] = change.word;
        if (!change.before.is_null()) one["before"] = change.before;
        if (!change.after.is_null()) one["after"] = change.after;
        one["text"] = change.text;
        list.push_back(std::move(one));
    }
    return list;
}

void writeChanges(std::ostream& to, const std::vector<Change>& changes) {
    for (const Change& change : changes) {
        to << change.text << '\n';
    }
}
