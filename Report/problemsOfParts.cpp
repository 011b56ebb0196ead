// What can be wrong with an adapter itself and what is attached to it beside disks.
#include <algorithm>
#include <cstring>

#include "Report/problemRules.h"

static std::string ofAdapter(const Scene& scene) {
    return " of adapter " + std::to_string(scene.adapterId);
}

static void findImages(Scene& scene) {
    const Json& images = in(scene.adapter, "images");
    if (!images.is_object()) return;
    const auto isBad = [](const auto& image) { return image.value() == Json(false); };
    const auto all = images.items();
    const bool several = std::count_if(all.begin(), all.end(), isBad) > 1;
    for (const auto& [name, sound] : images.items()) {
        // What is wrong with the whole is wrong with a part that is told by itself.
        if (!sound.is_boolean() || sound.get<bool>() || (name == "image" && several)) continue;
        found(scene, {"adapter-image-damaged", "adapter", scene.adapterId,
                      "The " + shown(name) + " in the flash" + ofAdapter(scene) + " is damaged.",
                      "Write it anew (ktsetup's flash) before the machine is started again."});
    }
}

static void addBattery(Scene& scene, const char* rule, const std::string& text, const std::string& action) {
    found(scene, {rule, "battery", std::nullopt, "The battery" + ofAdapter(scene) + text, action});
}

static void findNoBattery(Scene& scene, const Json& battery) {
    const auto last = newestEvent(scene, {EVT_BATTERY_PRESENT, EVT_BATTERY_NOT_PRESENT, EVT_BATTERY_NEW,
                                          EVT_BATTERY_REPLACED, EVT_BATTERY_REMOVED});
    const bool before =
        last == EVT_BATTERY_REMOVED || (last && *last != EVT_BATTERY_NOT_PRESENT) || battery.is_object();
    if (!before) return;
    addBattery(scene, "battery-missing", " is missing; there was one.",
               "Put a battery in; until then virtual disks with an automatic cache write through.");
}

static void findCharge(Scene& scene, const Json& battery, unsigned status) {
    const auto percent = numberIn(battery, "percentage");
    const bool charging = (status & KT_BBU_CHARGING) != 0;
    const bool knowsCharge = (numberIn(battery, "sensorSupport").value_or(0) & KT_SENSOR_CAPACITY) != 0;
    const bool low =
        knowsCharge && percent && !charging && static_cast<double>(*percent) < threshold(scene, "battery-weak");
    const auto said = newestEvent(scene, {EVT_BATTERY_NEW, EVT_BATTERY_TO_BE_REPLACED, EVT_BATTERY_REPLACED,
                                          EVT_BATTERY_CHARGE_LOW, EVT_BATTERY_CHARGE_NORMAL});
    const bool weak = isOneOf(said, {EVT_BATTERY_TO_BE_REPLACED, EVT_BATTERY_CHARGE_LOW});
    if (low || weak) {
        addBattery(scene, "battery-weak",
                   low ? " is at " + std::to_string(*percent) + " % and is not charged."
                       : " does not hold enough any more.",
                   low ? "Charge it; when it does not hold the charge, replace it." : "Replace it.");
    }
    const auto minutes = numberIn(battery, "minutesToFull").value_or(0);
    if (charging && static_cast<double>(minutes) * 60 > threshold(scene, "battery-charging-long")) {
        addBattery(scene, "battery-charging-long", " needs " + spanText(minutes * 60) + " until it is charged.",
                   "Watch it; a battery that charges slowly is nearly used up.");
    }
}

static void findHeat(Scene& scene, const Json& battery) {
    const auto hundredths = amountIn(battery, "temperature");
    if ((numberIn(battery, "sensorSupport").value_or(0) & KT_SENSOR_TEMPERATURE) == 0 || !hundredths) return;
    const double celsius = *hundredths / 100;
    const auto most = amountIn(battery, "tempHigh");
    if (celsius < threshold(scene, "battery-hot") && (!most || celsius <= *most)) return;
    char degrees[32];
    snprintf(degrees, sizeof degrees, "%.1f", celsius);
    addBattery(scene, "battery-hot", std::string(" is at ") + degrees + " degrees Celsius.",
               "See that air reaches the adapter; heat ages the battery quickly.");
}

static void findBattery(Scene& scene) {
    const Json& battery = in(scene.adapter, "battery");
    if (battery.is_null()) return;
    const auto status = static_cast<unsigned>(numberIn(battery, "status").value_or(0));
    if ((status & KT_BBU_PRESENT) == 0) {
        findNoBattery(scene, battery);
        return;
    }
    findCharge(scene, battery, status);
    findHeat(scene, battery);
}

static const char* elementWord(const std::string& type) {
    static const struct {
        const char* type;
        const char* word;
    } words[] = {{"pow", "power supply"}, {"fan", "fan"},     {"tpr", "temperature sensor"}, {"dor", "door"},
                 {"alm", "alarm"},        {"dpl", "display"}, {"vlt", "voltage sensor"}};
    for (const auto& row : words) {
        if (type == row.type) return row.word;
    }
    return nullptr; // a slot: what it says follows from its disk
}

// What helps a part; one that measures something amiss is sound itself.
static const char* remedyFor(const std::string& type, const std::string& condition) {
    static const struct {
        const char* condition;
        const char* remedy;
    } remedies[] = {{"open", "close it"},
                    {"missing", "put one in"},
                    {"off", "switch it on"},
                    {"ac-fail", "see that mains power reaches it, or replace the part"},
                    {"overheated", "see that fans run and air reaches it"}};
    for (const auto& row : remedies) {
        if (condition == row.condition) return row.remedy;
    }
    if (condition.empty() && type == "tpr") return "see that fans run and air reaches it";
    if (condition.empty() && type == "vlt") return "see to its power supplies";
    return "replace the part";
}

static void findElement(Scene& scene, const Json& enclosure, const Json& element) {
    const char* word = elementWord(textIn(element, "type"));
    const std::string status = textIn(element, "status");
    if (word == nullptr || status.empty()) return;
    const Json& flags = listIn(element, "flags");
    const bool predicted = std::find(flags.begin(), flags.end(), "predicted failure") != flags.end();
    const bool critical = status == "critical" || status == "unrecoverable";
    const bool warning = status == "non-critical" || status == "not installed" || status == "unknown" || predicted;
    if (!critical && !warning) return;
    const std::string condition = textIn(element, "condition");
    const auto id = numberIn(enclosure, "id");
    std::string text = "The " + std::string(word) + " " + std::to_string(numberIn(element, "element").value_or(0));
    const std::string name = shown(textIn(element, "text"));
    if (!name.empty()) text += " (" + name + ")";
    text += " of enclosure " + std::to_string(id.value_or(0)) + " on adapter " + std::to_string(scene.adapterId) +
            " is " + (predicted && !critical ? std::string("about to fail") : status);
    if (!condition.empty() && condition != "ok" && condition != status) text += " (" + condition + ")";
    found(scene,
          {critical ? "element-critical" : "element-warning", "enclosure", id, text + ".",
           "Look at the enclosure: " +
               command(scene, "enc -o ele -i " + std::to_string(id.value_or(0)) + " -t " + textIn(element, "type")) +
               "; " + (predicted ? "replace the part" : remedyFor(textIn(element, "type"), condition)) + "."});
}

static bool hasBadElement(const Json& enclosure) {
    const Json& elements = listIn(enclosure, "elements");
    return std::any_of(elements.begin(), elements.end(), [](const Json& element) {
        const std::string status = textIn(element, "status");
        return status == "critical" || status == "non-critical" || status == "unrecoverable";
    });
}

static void findEnclosures(Scene& scene) {
    for (const Json& enclosure : listIn(scene.adapter, "enclosures")) {
        // What is wrong with its parts, and the disks in its slots, is told by itself.
        if (textIn(enclosure, "status") == "unstable" && !hasBadElement(enclosure)) {
            found(scene, {"element-warning", "enclosure", numberIn(enclosure, "id"),
                          "Enclosure " + std::to_string(numberIn(enclosure, "id").value_or(0)) + " on adapter " +
                              std::to_string(scene.adapterId) + " is unstable.",
                          "See its cables and its power."});
        }
        for (const Json& element : listIn(enclosure, "elements"))
            findElement(scene, enclosure, element);
    }
}

static void findPort(Scene& scene, const Json& port, const char* why) {
    if (!isTrue(port, "enabled")) return;
    const auto id = numberIn(port, "id");
    found(scene, {"port-locked", "port", id,
                  "Port " + std::to_string(id.value_or(0)) + ofAdapter(scene) + " encrypts, but " + why +
                      ": its disks cannot be used.",
                  "Give it a key (ktsetup's aesentry and aesport), or switch its encryption off."});
}

static void findPorts(Scene& scene) {
    for (const Json& key : listIn(scene.adapter, "keys")) {
        if (!isFalse(key, "hasKey")) continue;
        for (const Json& port : listIn(key, "ports"))
            findPort(scene, port, "its entry holds no key");
    }
    for (const Json& port : listIn(scene.adapter, "unlinkedPorts"))
        findPort(scene, port, "it is linked to no entry");
}

static void findLostEvents(Scene& scene) {
    KT_U64 lost = 0;
    for (const Json& event : listIn(scene.adapter, "events")) {
        lost += nameOfEvent(event) == EVT_ADAPTER_EVENTS_LOST ? 1 : 0;
    }
    if (lost == 0) return;
    found(scene, {"events-lost", "adapter", scene.adapterId,
                  "The log" + ofAdapter(scene) + " says that events were lost, " +
                      (lost == 1 ? std::string("once") : std::to_string(lost) + " times") + ".",
                  "Read the log more often (ktreport events --cursor), and look at everything once."});
}

void findPartProblems(Scene& scene) {
    findImages(scene);
    findBattery(scene);
    findEnclosures(scene);
    findPorts(scene);
    findLostEvents(scene);
}
