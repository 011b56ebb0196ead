#include "commands.h"
#include "devices/enclosureElements.h"

#include <cstdio>
#include <memory>

using namespace sim;

struct EnclosureOptions {
    unsigned enclosure = 0;
    std::string element;
    unsigned number = 0;
    std::string condition;
    int reading = 0;
};

static const ElementKind& kindOf(const std::string& word) {
    const ElementKind* kind = elementKindNamed(word);
    if (!kind) throw CommandFailure{word + " is not a kind of element"};
    return *kind;
}

[[noreturn]] static void failElement(const EnclosureOptions& wanted, const std::string& what) {
    throw CommandFailure{"enclosure " + std::to_string(wanted.enclosure) + ", " + wanted.element + " " +
                         std::to_string(wanted.number) + ": " + what};
}

static void checkThere(const Context& context, const EnclosureOptions& wanted) {
    _Enc_Element_Info info = {};
    const KT_U8 status = getElementInfo(context, static_cast<KT_U16>(wanted.enclosure), kindOf(wanted.element).type,
                                        static_cast<KT_U8>(wanted.number), info);
    if (status == KT_ERR_INVALID_ENCLOSURE)
        throw CommandFailure{"there is no enclosure " + std::to_string(wanted.enclosure)};
    if (status != KT_OK) failElement(wanted, "there is none");
}

static void setCondition(const Context& context, const EnclosureOptions& wanted) {
    checkThere(context, wanted);
    const ElementKind& kind = kindOf(wanted.element);
    if (setElementCondition(context, static_cast<KT_U16>(wanted.enclosure), kind.type,
                            static_cast<KT_U8>(wanted.number), wanted.condition))
        return;
    std::string words;
    for (const std::string& word : conditionWords(kind.type))
        words += " " + word;
    if (isSlot(kind.type)) failElement(wanted, "slots follow their disks");
    failElement(wanted, "it is never \"" + wanted.condition + "\" but only:" + words);
}

static void setReading(const Context& context, const EnclosureOptions& wanted) {
    checkThere(context, wanted);
    if (!setElementReading(context, static_cast<KT_U16>(wanted.enclosure), kindOf(wanted.element).type,
                           static_cast<KT_U8>(wanted.number), wanted.reading))
        failElement(wanted, "it measures nothing");
}

// By the code in the low four bits of an element's first status byte.
static const char* statusWord(KT_U8 status) {
    static const char* const WORDS[] = {"unsupported",   "ok",      "critical",     "non-critical", "unrecoverable",
                                        "not installed", "unknown", "not available"};
    const unsigned code = status & 0x0F;
    return code < std::size(WORDS) ? WORDS[code] : "reserved";
}

std::string describeElements(const Context& context, KT_U16 enclosure, const ElementKind& kind, bool onlyFaults) {
    enum : KT_U8 { OK = 1, NOT_INSTALLED = 5 };
    std::string text;
    std::string last;
    unsigned first = 0;
    for (unsigned number = 0;; ++number) {
        _Enc_Element_Info info = {};
        const bool there = number < OVERALL_ELEMENT &&
                           getElementInfo(context, enclosure, kind.type, static_cast<KT_U8>(number), info) == KT_OK;
        const std::string word = there ? statusWord(info.Status[0]) : "";
        if (number != 0 && word != last) {
            const bool fault = last != statusWord(OK) && !(isSlot(kind.type) && last == statusWord(NOT_INSTALLED));
            if (!onlyFaults || fault) {
                text += (text.empty() ? "" : ", ") + std::to_string(first);
                if (number - first > 1) text += "-" + std::to_string(number - 1);
                text += " " + last;
            }
            first = number;
        }
        last = word;
        if (!there) return text;
    }
}

static void showEnclosures(const Context& context) {
    forEach<_Enclosure_Info>(context, 0, [&](KT_U64 id, const _Enclosure_Info& enclosure) {
        printf("Enclosure %llu  %s %s: %s\n", static_cast<unsigned long long>(id),
               printable(enclosure.VendorID, sizeof enclosure.VendorID).c_str(),
               printable(enclosure.ProductID, sizeof enclosure.ProductID).c_str(),
               enclosure.Status == 0 ? "OK" : "unstable");
        for (const std::string& word : elementWords()) {
            const std::string elements = describeElements(context, static_cast<KT_U16>(id), kindOf(word), false);
            if (!elements.empty()) printf("  %-8s%s\n", word.c_str(), elements.c_str());
        }
        return true;
    });
}

// One thing that may happen to an element.
struct ElementChange {
    const char* word;
    const char* help;
    void (*happen)(const Context&, const EnclosureOptions&);
};

static Command addEnclosureChange(const Command& enclosure, Options& options,
                                  const std::shared_ptr<EnclosureOptions>& wanted, const ElementChange& change) {
    const Command command = enclosure.addCommand(change.word, change.help);
    command.addOption("ENCLOSURE", wanted->enclosure, "Its id").required().check(inRange(0U, 65534U));
    command.addOption("ELEMENT", wanted->element, "The kind of element").required().check(oneOf(elementWords()));
    command.addOption("NUMBER", wanted->number, "Which of that kind").required().check(inRange(0U, 254U));
    addAdapterOption(command, options);
    command.onGiven([&options, wanted, change] {
        changeAdapter(options, [&](Context& context) {
            change.happen(context, *wanted);
            settleAll(context.store);
        });
    });
    return command;
}

void addEnclosure(const Command& app, Options& options) {
    const Command enclosure = app.addCommand("enclosure", "Let something happen to a shelf's elements");
    enclosure.requireCommand(1, 1);
    const auto wanted = std::make_shared<EnclosureOptions>();
    const Command show = enclosure.addCommand("show", "Print how the enclosures and their elements do");
    addAdapterOption(show, options);
    show.onGiven([&options] { changeAdapter(options, showEnclosures); });
    addEnclosureChange(enclosure, options, wanted, {"set", "Put an element into a condition", setCondition})
        .addOption("CONDITION", wanted->condition, "ok, failed ... (a wrong word lists them)")
        .required();
    addEnclosureChange(enclosure, options, wanted,
                       {"reading", "What a sensor measures or how fast a fan turns", setReading})
        .addOption("VALUE", wanted->reading, "Celsius, hundredths of a volt, or turns a minute")
        .required();
    addShelfMoves(enclosure, options);
}
