// Showing text: colours and width of a terminal, tables.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

// How a view may look. width: columns of the terminal; 0 where none is known: lines are as long as they are.
struct Look {
    bool colours = false;
    unsigned width = 0;
};

// Of standard output: plain where that is no terminal, or where TERM or NO_COLOR say so.
Look lookOfOutput();

enum class Colour { None, Red, Yellow, Green, Bold, Faint };
// The text in a colour; as it is in a plain look.
std::string coloured(const Look& look, Colour colour, const std::string& text);

// The text in lines of at most look.width columns, all but the first behind `indent` blanks.
std::string wrapped(const Look& look, const std::string& text, size_t indent);

// A table: columns are as wide as their widest cell, two blanks apart; columns of numbers stand right. An empty
// headline leaves that out.
struct Column {
    std::string head;
    bool right = false;
};
struct Table {
    std::vector<Column> columns;
    std::vector<std::vector<std::string>> rows;
};
void writeTable(std::ostream& to, const Look& look, const Table& table, const std::string& indent);
