// The common rules of the tab-separated text sources in data/, from which the data files are
// built: one record a line, the cells divided by tabs.
//
// A line that begins with "#" is a comment, a line of blanks alone is passed over. The file
// is UTF-8; a byte order mark at its start is passed over, and so is a CR before a line end.
// Inside a text cell, "\n" stands for a line break, "\t" for a tab and "\\" for a backslash;
// every other character, blanks at either end included, is taken as it is.
#pragma once

#include "engine/errors.h"

#include <string>
#include <string_view>
#include <vector>

namespace folio::tsv {

// A bad line of a source, or a source that can't be read (line 0). what() reads
// "file:line: what is wrong", or "file: what is wrong" without a line.
class SourceError : public Error {
public:
    SourceError(const std::string& file, int line, const std::string& problem)
        : Error(0, file + (line > 0 ? ":" + std::to_string(line) : std::string()) + ": " + problem),
          file_(file), line_(line) {}
    const std::string& file() const noexcept { return file_; }
    int line() const noexcept { return line_; }

private:
    std::string file_;
    int line_;
};

// One line that carries a record: its number in the file and its cells, which point into the
// text given to dataLines.
struct Line {
    int number = 0;
    std::vector<std::string_view> cells;
};

// The record lines of a source text, comments and blank lines left out. Raises SourceError
// for a line that isn't UTF-8.
std::vector<Line> dataLines(std::string_view text, const std::string& fileName);

// The same for a source whose lines have no cells (a drawing, a font): each line is one cell.
std::vector<Line> wholeLines(std::string_view text, const std::string& fileName);

// A text cell with its escapes resolved; `column` names the cell in a message.
std::string unescape(std::string_view cell, std::string_view column, const std::string& fileName,
                     int line);

// A whole number written with digits alone, a minus in front allowed; false for anything
// else, blanks included, and for a number beyond the range of int.
bool parseInteger(std::string_view cell, int& number);

// The number of characters of a UTF-8 text.
std::size_t characterCount(std::string_view utf8);

// The content of a source file. Raises SourceError for a file that can't be read.
std::string readFile(const std::string& path);

} // namespace folio::tsv
