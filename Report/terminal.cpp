#include "Report/terminal.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <ostream>
#include <sys/ioctl.h>
#include <unistd.h>

Look lookOfOutput() {
    Look look;
    if (isatty(STDOUT_FILENO) == 0) return look;
    const char* terminal = getenv("TERM");
    const char* plain = getenv("NO_COLOR");
    look.colours = terminal != nullptr && strcmp(terminal, "dumb") != 0 && (plain == nullptr || *plain == '\0');
    winsize size = {};
    look.width = ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : 80;
    return look;
}

std::string coloured(const Look& look, Colour colour, const std::string& text) {
    static const char* const codes[] = {"", "31;1", "33", "32", "1", "2"};
    if (!look.colours || colour == Colour::None) return text;
    return std::string("\033[") + codes[static_cast<size_t>(colour)] + "m" + text + "\033[0m";
}

std::string wrapped(const Look& look, const std::string& text, size_t indent) {
    static constexpr unsigned NARROWEST = 40;
    if (look.width == 0) return text;
    const size_t width = std::max(look.width, NARROWEST) - indent;
    std::string lines;
    size_t at = 0;
    while (text.size() - at > width) {
        size_t end = text.rfind(' ', at + width);
        if (end == std::string::npos || end <= at) end = at + width;
        lines += text.substr(at, end - at) + "\n" + std::string(indent, ' ');
        at = text[end] == ' ' ? end + 1 : end;
    }
    return lines + text.substr(at);
}

static std::string padded(const std::string& cell, size_t width, bool right) {
    const std::string blanks(width > cell.size() ? width - cell.size() : 0, ' ');
    return right ? blanks + cell : cell + blanks;
}

void writeTable(std::ostream& to, const Look& look, const Table& table, const std::string& indent) {
    std::vector<size_t> widths;
    for (size_t i = 0; i < table.columns.size(); ++i) {
        widths.push_back(table.columns[i].head.size());
        for (const auto& row : table.rows)
            widths[i] = std::max(widths[i], row[i].size());
    }
    const auto line = [&](const auto& cellAt) {
        std::string text = indent;
        for (size_t i = 0; i < widths.size(); ++i) {
            text += (i == 0 ? "" : "  ") + padded(cellAt(i), widths[i], table.columns[i].right);
        }
        while (!text.empty() && text.back() == ' ')
            text.pop_back();
        return look.width != 0 && text.size() > look.width ? text.substr(0, look.width) : text;
    };
    const bool headed =
        std::any_of(table.columns.begin(), table.columns.end(), [](const Column& c) { return !c.head.empty(); });
    if (headed) to << coloured(look, Colour::Faint, line([&](size_t i) { return table.columns[i].head; })) << '\n';
    for (const auto& row : table.rows) {
        to << line([&](size_t i) { return row[i]; }) << '\n';
    }
}
