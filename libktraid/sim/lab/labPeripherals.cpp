#include "lab/labPeripherals.h"

#include "devices/enclosureElements.h"
#include "devices/encryption.h"
#include "lab/labValues.h"

namespace sim {

static const KT_U64 SHELF_SLOTS = 24;

static void addLabElement(Context& context, KT_U16 enclosure, LabReader& reader) {
    const std::string word = takeText(reader, "type", "");
    const ElementKind* kind = elementKindNamed(word);
    if (!kind) failLab(reader, "type", "should be one of the types that `enc -t` takes");
    const std::string text = takeText(reader, "text", "");
    const std::string condition = takeText(reader, "condition", "");
    const KT_U64 copies = takeNumber(reader, "count", 1, 255);
    if (text.size() > sizeof(_Enc_Element_Config::Text)) failLab(reader, "text", "is longer than 64 characters");
    takeNothingElse(reader);
    for (KT_U64 i = 0; i < copies; ++i) {
        const KT_U16 element = addElement(context, enclosure, kind->type, textToBytes(text, reader.path + ".text"));
        if (element == KT_NO_ID) failLab(reader, "count", "there can be 255 elements of a type at most");
        if (!condition.empty() &&
            !setElementCondition(context, enclosure, kind->type, static_cast<KT_U8>(element), condition))
            failLab(reader, "condition", "is none of this type's");
    }
}

// "slots": 24 makes a shelf of the usual elements; "elements" lists them one by one instead.
void addLabElements(Context& context, KT_U16 enclosure, LabReader& reader) {
    const KT_U64 slots = takeNumber(reader, "slots", SHELF_SLOTS, 255);
    if (!hasWord(reader, "elements")) {
        addShelf(context, enclosure, static_cast<unsigned>(slots));
        return;
    }
    for (LabReader& element : takeObjects(reader, "elements"))
        addLabElement(context, enclosure, element);
    countElementTypes(context, enclosure);
}

static void takeSecret(LabReader& reader, const char* word, KT_U8 (&secret)[32]) {
    putText(reader, word, takeText(reader, word, ""), secret, sizeof secret);
}

static void refuseUnless(const LabReader& reader, KT_U8 status) {
    if (status != KT_OK) failLab(reader, "id", "the adapter refuses it with error " + std::to_string(status));
}

static void addLabKey(Context& context, LabReader& reader) {
    _AES_Entry_Config config = {};
    config.entry_id = static_cast<KT_U8>(takeNumber(reader, "id", 0, 254));
    takeSecret(reader, "key", config.key_content);
    takeSecret(reader, "password", config.user_auth);
    config.key_length =
        static_cast<KT_U8>(strnlen(reinterpret_cast<const char*>(config.key_content), sizeof config.key_content));
    refuseUnless(reader, setAesEntryConfig(context, config, config.user_auth));
    for (LabReader& port : takeObjects(reader, "ports")) {
        _AES_Port_Config on = {};
        on.port_id = static_cast<KT_U8>(takeNumber(port, "id", 0, 254));
        on.aes_enable = takeFlag(port, "enabled", false) ? 1 : 0;
        takeNothingElse(port);
        refuseUnless(port, setAesLink(context, on.port_id, config));
        refuseUnless(port, setAesPortConfig(context, on));
    }
    takeNothingElse(reader);
}

// "keys": [{"id": 0, "key": "...", "password": "...", "ports": [{"id": 1, "enabled": true}]}]
void addLabPeripherals(Context& context, LabReader& adapter) {
    for (LabReader& reader : takeObjects(adapter, "keys"))
        addLabKey(context, reader);
}

} // namespace sim
