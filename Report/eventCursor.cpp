#include "Report/eventCursor.h"

#include <cerrno>
#include <sys/stat.h>
#include <unistd.h>

#include "Public/wholeFile.h"
#include "Public/writeFully.h"
#include "Report/look.h"

// Lines that are told in one step, so that a cursor's file stays small.
static constexpr size_t STEP = 200;

static bool writeAll(const std::string& text) {
    return writeFully(STDOUT_FILENO, text.data(), text.size()) == text.size();
}

static void save(const EventCursor& cursor, const Told& told, const Json& pending) {
    Json document = {{"cursor", 1}, {"told", told}};
    if (!pending.is_null()) document["pending"] = pending;
    const std::string text = document.dump(1, ' ', true, Json::error_handler_t::replace) + "\n";
    if (writeWholeFile(cursor.path, text, Existing::Replace) != WroteFile::Yes) {
        throw CursorFailure{shown(cursor.path) + ": cannot be written: " + strerror(errno)};
    }
}

static Told toldIn(const Json& object) {
    Told told;
    for (const auto& [key, value] : in(object, "told").items()) {
        if (value.is_number_unsigned()) told[key] = value.get<KT_U64>();
    }
    return told;
}

// Writes what was under way when the program ended, as far as it is not there.
static bool finish(EventCursor& cursor, const Json& pending) {
    struct stat output = {};
    const std::string text = textIn(pending, "text");
    KT_U64 there = 0;
    if (fstat(STDOUT_FILENO, &output) == 0 && S_ISREG(output.st_mode) && numberIn(pending, "device") == output.st_dev &&
        numberIn(pending, "inode") == output.st_ino) {
        const auto size = static_cast<KT_U64>(output.st_size);
        const KT_U64 start = numberIn(pending, "size").value_or(0);
        there = size < start ? 0 : std::min<KT_U64>(size - start, text.size());
    }
    if (!writeAll(text.substr(there))) return false;
    cursor.told = toldIn(pending);
    save(cursor, cursor.told, {});
    return true;
}

EventCursor openCursor(const std::string& path) {
    EventCursor cursor = {path, {}};
    if (path.empty()) return cursor;
    std::string text;
    if (readWholeFile(path, text) != ReadFile::Yes) {
        if (errno == ENOENT) return cursor;
        throw CursorFailure{shown(path) + ": cannot be read: " + strerror(errno)};
    }
    const Json document = Json::parse(text, nullptr, false);
    if (numberIn(document, "cursor") != 1) throw CursorFailure{shown(path) + ": is no cursor"};
    cursor.told = toldIn(document);
    const Json& pending = in(document, "pending");
    if (pending.is_object() && !finish(cursor, pending)) {
        throw CursorFailure{std::string("the output could not be written: ") + strerror(errno)};
    }
    return cursor;
}

// Before the text is written to a regular file: what will be there, and what is told when it is.
static void saveUnderWay(const EventCursor& cursor, const std::string& text) {
    struct stat output = {};
    if (fstat(STDOUT_FILENO, &output) != 0 || !S_ISREG(output.st_mode)) return;
    save(cursor, cursor.told,
         {{"device", output.st_dev},
          {"inode", output.st_ino},
          {"size", output.st_size},
          {"text", text},
          {"told", cursor.told}});
}

bool tellEvents(EventCursor& cursor, const NewEvents& events) {
    for (size_t at = 0; at < events.lines.size(); at += STEP) {
        std::string text;
        for (size_t i = at; i < events.lines.size() && i < at + STEP; ++i) {
            text += events.lines[i].text + "\n";
            cursor.told[events.lines[i].adapter] = events.lines[i].sequence;
        }
        if (!cursor.path.empty()) saveUnderWay(cursor, text);
        if (!writeAll(text)) return false;
        if (!cursor.path.empty()) save(cursor, cursor.told, {});
    }
    if (cursor.told != events.told && !cursor.path.empty()) save(cursor, events.told, {});
    cursor.told = events.told;
    return true;
}
