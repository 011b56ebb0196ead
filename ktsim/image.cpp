#include "commands.h"
#include "devices/flashMemory.h"
#include "devices/solidState.h"

#include <algorithm>
#include <cstdio>
#include <memory>
#include <vector>

using namespace sim;

struct ImageOptions {
    std::string file;
    std::string kind = "firmware";
    std::string version = "1.0.0.1";
    unsigned vendor = 0x1FA4;
    unsigned kib = 0;
    std::string damage = "none";
};

struct MicrocodeOptions {
    std::string file;
    std::string model;
    std::string version;
    unsigned kib = 512;
    std::string damage = "none";
};

static ImageVersion readVersion(const std::string& text) {
    unsigned parts[4] = {};
    int end = 0;
    const int read = sscanf(text.c_str(), "%5u.%5u.%5u.%5u%n", &parts[0], &parts[1], &parts[2], &parts[3], &end);
    const bool plain = text.find_first_not_of("0123456789.") == std::string::npos;
    const bool fits = std::all_of(parts, parts + 4, [](unsigned part) { return part <= 0xFFFF; });
    if (read != 4 || static_cast<size_t>(end) != text.size() || !plain || !fits)
        throw CommandFailure{"\"" + text + "\" is not a version such as 4.1.15.2108"};
    return ImageVersion{parts[0], static_cast<KT_U16>(parts[1]), static_cast<KT_U16>(parts[2]),
                        static_cast<KT_U16>(parts[3])};
}

static void spoil(std::string& image, const std::string& damage) {
    if (damage == "header") image[8] = static_cast<char>(image[8] ^ 1);
    if (damage == "data" && !image.empty()) image.back() = static_cast<char>(image.back() ^ 1);
    if (damage == "cut") image.resize(image.size() / 2);
}

static void make(const ImageOptions& wanted) {
    const ImageKind* kind = imageKindNamed(wanted.kind);
    const size_t size = (wanted.kib ? wanted.kib : kind->factoryKib) * size_t{1024};
    const ImageVersion version = readVersion(wanted.version);
    std::string image = makeImage(*kind, version, static_cast<KT_U16>(wanted.vendor),
                                  imageFiller(version.build * 65599U + kind->type, size));
    spoil(image, wanted.damage);
    makeFile(wanted.file, image, 0644);
}

static void makeForDrive(const MicrocodeOptions& wanted) {
    const size_t longest = sizeof _HD_Info{}.FWVersion;
    if (wanted.version.empty() || wanted.version.size() > longest)
        throw CommandFailure{"\"" + wanted.version + "\" is not a version of 1 to 8 characters"};
    std::string image = makeMicrocode(wanted.model, wanted.version, imageFiller(wanted.kib, wanted.kib * size_t{1024}));
    spoil(image, wanted.damage);
    makeFile(wanted.file, image, 0644);
}

static void addMicrocode(const Command& image) {
    const Command command = image.addCommand("microcode", "Make a microcode file that a solid-state disk takes");
    const auto wanted = std::make_shared<MicrocodeOptions>();
    command.addOption("FILE", wanted->file, "The file; it must not exist yet").required();
    command.addOption("-m,--model", wanted->model, "The model of the disks it is for").required();
    command.addOption("-v,--version", wanted->version, "Its version").required();
    command.addOption("--size", wanted->kib, "KiB of data").check(inRange(1U, 65536U)).showDefault();
    command.addOption("--damage", wanted->damage, "Spoil it: none, header, data or cut")
        .check(oneOf({"none", "header", "data", "cut"}))
        .showDefault();
    command.onGiven([wanted] { makeForDrive(*wanted); });
}

static const struct {
    const char* word;
    ImageFault fault;
} PARTS[] = {{"header", ImageFault::Header}, {"data", ImageFault::Data}, {"both", ImageFault::Both}};

static void damage(Context& context, const ImageOptions& wanted) {
    const ImageKind* kind = imageKindNamed(wanted.kind);
    ImageFault fault = ImageFault::Data;
    for (const auto& part : PARTS)
        if (wanted.damage == part.word) fault = part.fault;
    const KT_U8 status = damageImage(context, kind->type, fault);
    const std::string adapter = "adapter " + std::to_string(context.adapter);
    if (status == KT_ERR_FLASH_TYPE) throw CommandFailure{adapter + " has no such images"};
    if (status != KT_OK) throw CommandFailure{adapter + " holds no such image"};
}

static void addDamage(const Command& image, Options& options) {
    const Command command = image.addCommand("damage", "Spoil an image in the adapter's flash, as age does");
    const auto wanted = std::make_shared<ImageOptions>();
    wanted->damage = "data";
    command.addOption("-t,--type", wanted->kind, "What it is")
        .check(oneOf({"bios", "firmware", "autoload", "bin"}))
        .showDefault();
    command.addOption("--part", wanted->damage, "What of it: header, data or both")
        .check(oneOf({"header", "data", "both"}))
        .showDefault();
    addAdapterOption(command, options);
    command.onGiven(
        [&options, wanted] { changeAdapter(options, [&](Context& context) { damage(context, *wanted); }); });
}

void addImage(const Command& app, Options& options) {
    const Command image = app.addCommand("image", "Flash images for adapters, microcode for disks");
    image.requireCommand(1, 1);
    const Command command = image.addCommand("make", "Make an image file that an adapter takes");
    const auto wanted = std::make_shared<ImageOptions>();
    command.addOption("FILE", wanted->file, "The file; it must not exist yet").required();
    command.addOption("-t,--type", wanted->kind, "What it is")
        .check(oneOf({"bios", "firmware", "autoload", "bin", "raw"}))
        .showDefault();
    command.addOption("-v,--version", wanted->version, "Its version").showDefault();
    command.addOption("--vendor", wanted->vendor, "The sub vendor id of the adapters it is for")
        .check(inRange(0U, 65535U))
        .showDefault();
    command.addOption("--size", wanted->kib, "KiB of data; 0 = as large as the factory's").check(inRange(0U, 65536U));
    command.addOption("--damage", wanted->damage, "Spoil it: none, header, data or cut")
        .check(oneOf({"none", "header", "data", "cut"}))
        .showDefault();
    command.onGiven([wanted] { make(*wanted); });
    addMicrocode(image);
    addDamage(image, options);
}
