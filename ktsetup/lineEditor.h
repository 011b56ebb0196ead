// The line editor: the system's readline, loaded when the shell starts. A one-shot run neither loads it nor pays for
// it.
#pragma once

#include <cstdio>
#include <readline/history.h>
#include <readline/readline.h>

// Readline's own names, in the library that was loaded; all null when there is none.
struct LineEditor {
    decltype(&::readline) readLine = nullptr;
    decltype(&::add_history) addHistory = nullptr;
    decltype(&::clear_history) clearHistory = nullptr;
    decltype(&::stifle_history) stifleHistory = nullptr;
    decltype(&::rl_bind_key) bindKey = nullptr;
    decltype(&::rl_insert) insert = nullptr;
    decltype(&::rl_replace_line) replaceLine = nullptr;
    decltype(&::rl_check_signals) checkSignals = nullptr;
    decltype(&::rl_completion_matches) completionMatches = nullptr;
    decltype(&::rl_filename_completion_function) nextFileName = nullptr;
    decltype(&::rl_display_match_list) displayMatches = nullptr;
    decltype(&::rl_forced_update_display) redisplay = nullptr;
    decltype(&::rl_getc_function) readKey = nullptr;
    decltype(&::rl_attempted_completion_function) attemptedCompletion = nullptr;
    decltype(&::rl_attempted_completion_over) completionOver = nullptr;
    decltype(&::rl_completion_append_character) appended = nullptr;
    decltype(&::rl_completion_display_matches_hook) displayHook = nullptr;
    decltype(&::rl_sort_completion_matches) sortMatches = nullptr;
    decltype(&::rl_completer_word_break_characters) wordBreaks = nullptr;
    decltype(&::rl_completer_quote_characters) quotes = nullptr;
    decltype(&::rl_filename_quote_characters) quotedInFileNames = nullptr;
    decltype(&::rl_readline_name) name = nullptr;
    decltype(&::rl_line_buffer) lineBuffer = nullptr;
};

extern LineEditor editor;

// Loads the library that the headers of this build belong to. False, with `editor` all null, when it is not installed
// or lacks one of the names.
bool loadLineEditor();
