#include "ktsetup/lineEditor.h"

#include <dlfcn.h>

LineEditor editor;

#define QUOTED(word) #word
#define LIBRARY_OF_VERSION(major) "libreadline.so." QUOTED(major)

template <class Name>
static bool find(void* library, const char* name, Name& found) {
    found = reinterpret_cast<Name>(dlsym(library, name));
    return found != nullptr;
}

bool loadLineEditor() {
    void* library = dlopen(LIBRARY_OF_VERSION(RL_VERSION_MAJOR), RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) return false;
    LineEditor loaded;
    const bool whole =
        find(library, "readline", loaded.readLine) && find(library, "add_history", loaded.addHistory) &&
        find(library, "clear_history", loaded.clearHistory) && find(library, "stifle_history", loaded.stifleHistory) &&
        find(library, "rl_bind_key", loaded.bindKey) && find(library, "rl_insert", loaded.insert) &&
        find(library, "rl_replace_line", loaded.replaceLine) &&
        find(library, "rl_check_signals", loaded.checkSignals) &&
        find(library, "rl_completion_matches", loaded.completionMatches) &&
        find(library, "rl_filename_completion_function", loaded.nextFileName) &&
        find(library, "rl_display_match_list", loaded.displayMatches) &&
        find(library, "rl_forced_update_display", loaded.redisplay) &&
        find(library, "rl_getc_function", loaded.readKey) &&
        find(library, "rl_attempted_completion_function", loaded.attemptedCompletion) &&
        find(library, "rl_attempted_completion_over", loaded.completionOver) &&
        find(library, "rl_completion_append_character", loaded.appended) &&
        find(library, "rl_completion_display_matches_hook", loaded.displayHook) &&
        find(library, "rl_sort_completion_matches", loaded.sortMatches) &&
        find(library, "rl_completer_word_break_characters", loaded.wordBreaks) &&
        find(library, "rl_completer_quote_characters", loaded.quotes) &&
        find(library, "rl_filename_quote_characters", loaded.quotedInFileNames) &&
        find(library, "rl_readline_name", loaded.name) && find(library, "rl_line_buffer", loaded.lineBuffer);
    if (whole) {
        editor = loaded;
    } else {
        dlclose(library);
    }
    return whole;
}
