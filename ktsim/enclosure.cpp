#include "adapter/enclosure.h"
#include "commands.h"

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

static void setCondition(const Context& context, const EnclosureOptions& wanted) {
    const ElementKind& kind = kindOf(wanted.element);
    if (setElementCondition(context, static_cast<KT_U16>(wanted.enclosure), kind.type,
                            static_cast<KT_U8>(wanted.number), wanted.condition))
        return;
    std::string words;
    for (const std::string& word : conditionWords(kind.type))
        words += " " + word;
    failElement(wanted, "there is none, or it is never \"" + wanted.condition + "\" but only:" + words);
}

static void setReading(const Context& context, const EnclosureOptions& wanted) {
    if (!setElementReading(context, static_cast<KT_U16>(wanted.enclosure), kindOf(wanted.element).type,
                           static_cast<KT_U8>(wanted.number), wanted.reading))
        failElement(wanted, "there is none, or it measures nothing");
}

static void showEnclosures(const Context& context) {
    forEach<_Enclosure_Info>(context, 0, [](KT_U64 id, const _Enclosure_Info& enclosure) {
        printf("Enclosure %-4llu %s %s, %u kinds of element, status %u\n", static_cast<unsigned long long>(id),
               printable(enclosure.VendorID, sizeof enclosure.VendorID).c_str(),
               printable(enclosure.ProductID, sizeof enclosure.ProductID).c_str(), enclosure.ElementTypeCount,
               enclosure.Status);
        return true;
    });
}

static CLI::App* addChange(CLI::App& enclosure, Options& options, const std::shared_ptr<EnclosureOptions>& wanted,
                           const char* word, const char* help,
                           void (*change)(const Context&, const EnclosureOptions&)) {
    CLI::App* command = enclosure.add_subcommand(word, help);
    command->add_option("ENCLOSURE", wanted->enclosure, "Its id")->required()->check(CLI::Range(0U, 65534U));
    command->add_option("ELEMENT", wanted->element, "The kind of element")
        ->required()
        ->check(CLI::IsMember(elementWords()));
    command->add_option("NUMBER", wanted->number, "Which of that kind")->required()->check(CLI::Range(0U, 254U));
    addAdapterOption(*command, options);
    command->callback([&options, wanted, change] {
        changeAdapter(options, [&](Context& context) {
            change(context, *wanted);
            settleAll(context.store);
        });
    });
    return command;
}

void addEnclosure(CLI::App& app, Options& options) {
    CLI::App* enclosure = app.add_subcommand("enclosure", "Let something happen to a shelf's elements");
    enclosure->require_subcommand(1);
    const auto wanted = std::make_shared<EnclosureOptions>();
    CLI::App* show = enclosure->add_subcommand("show", "Name the enclosures");
    addAdapterOption(*show, options);
    show->callback([&options] { changeAdapter(options, showEnclosures); });
    addChange(*enclosure, options, wanted, "set", "Put an element into a condition", setCondition)
        ->add_option("CONDITION", wanted->condition, "ok, failed ... (a wrong word lists them)")
        ->required();
    addChange(*enclosure, options, wanted, "reading", "What a sensor measures or how fast a fan turns", setReading)
        ->add_option("VALUE", wanted->reading, "Celsius, hundredths of a volt, or turns a minute")
        ->required();
}
