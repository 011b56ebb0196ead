// Tables of texts.
#pragma once

#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

// A row of a table of texts is a line and, behind " => ", its message without the end of the line. Of the words in
// braces, {a|b}, each makes a row, and {} in the message is its last word. A result stands within the arrow: =19>.
// The second of two tabs in a row, \t behind a blank, makes an empty word.
struct TableRow {
    std::string line, message;
    int result; // -1: none stands there
};

inline void replaceAll(std::string& text, const std::string& from, const std::string& to) {
    for (size_t at = 0; (at = text.find(from, at)) != text.npos; at += to.size())
        text.replace(at, from.size(), to);
}
inline std::string unescaped(std::string text) {
    replaceAll(text, "\\n", "\n");
    replaceAll(text, "\\t", "\t");
    return text;
}

inline std::vector<TableRow> rowsOf(const std::string& table) {
    std::vector<TableRow> rows;
    std::istringstream lines(table);
    for (std::string row; std::getline(lines, row);) {
        if (row.empty()) continue;
        const size_t equals = row.find(" =");
        const size_t arrow = row.find("> ", equals);
        if (arrow == row.npos) throw std::invalid_argument("no arrow in: " + row);
        const std::string line = row.substr(0, equals);
        const size_t open = line.find('{');
        const size_t end = line.find('}') + 1;
        std::istringstream choices(open == line.npos ? "-" : line.substr(open + 1, end - open - 2));
        for (std::string word; std::getline(choices, word, '|');) {
            TableRow found = {line, row.substr(arrow + 2), -1};
            if (arrow > equals + 2) found.result = std::stoi(row.substr(equals + 2));
            if (open != line.npos) found.line.replace(open, end - open, word);
            word.erase(0, word.rfind(' ') + 1);
            replaceAll(found.message, "{}", word == "\\t" ? "" : word);
            if (!found.message.empty()) found.message += "\n";
            rows.push_back({unescaped(found.line), unescaped(found.message), found.result});
        }
    }
    return rows;
}

// Stands for many texts: when it differs, they do.
inline unsigned sumOf(const std::string& texts) {
    unsigned sum = 2166136261U;
    for (char c : texts)
        sum = (sum ^ static_cast<unsigned char>(c)) * 16777619U;
    return sum;
}
