#include "data/DtcDescriptions.h"

#include <cctype>
#include <filesystem>
#include <sstream>
#include <stdexcept>

namespace kvx::data {
namespace {

// A failure of the load, worded for the person who reads the "DTC ERROR" box.
struct LoadError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

bool isBlank(char c) { return c == ' ' || c == '\t'; }
bool isLineEnd(char c) { return c == '\n' || c == '\r'; }

// Delimited fields read one at a time: a field ends at a comma or at the end of a line, leading
// blanks are skipped, and a field in double quotes may hold commas and loses its quotes.
class FieldReader {
public:
    explicit FieldReader(std::string text) : text_(std::move(text)) {}

    bool atEnd() const { return pos_ >= text_.size(); }

    std::string next()
    {
        if (atEnd())
            throw LoadError("Read past the end of the file: it ends where another entry was expected.");
        while (pos_ < text_.size() && isBlank(text_[pos_]))
            ++pos_;
        std::string field;
        if (pos_ < text_.size() && text_[pos_] == '"') {
            const auto close = text_.find('"', pos_ + 1);
            const auto end = close == std::string::npos ? text_.size() : close;
            field = text_.substr(pos_ + 1, end - pos_ - 1);
            pos_ = close == std::string::npos ? end : close + 1;
            // Anything between the closing quote and the delimiter is not part of the field.
            while (pos_ < text_.size() && text_[pos_] != ',' && !isLineEnd(text_[pos_]))
                ++pos_;
        } else {
            const auto start = pos_;
            while (pos_ < text_.size() && text_[pos_] != ',' && !isLineEnd(text_[pos_]))
                ++pos_;
            field = text_.substr(start, pos_ - start);
        }
        skipDelimiter();
        return field;
    }

private:
    void skipDelimiter()
    {
        if (pos_ >= text_.size())
            return;
        if (text_[pos_] == ',') {
            ++pos_;
            return;
        }
        if (text_[pos_] == '\r')
            ++pos_;
        if (pos_ < text_.size() && text_[pos_] == '\n')
            ++pos_;
    }

    std::string text_;
    std::size_t pos_ = 0;
};

// Characters 2 to 5 of a code or field as a table index, blanks around the digits allowed.
int codeNumber(const std::string& field)
{
    const std::string digits = field.size() > 1 ? field.substr(1, 4) : std::string();
    std::size_t i = 0;
    while (i < digits.size() && isBlank(digits[i]))
        ++i;
    bool negative = false;
    if (i < digits.size() && (digits[i] == '-' || digits[i] == '+'))
        negative = digits[i++] == '-';
    long value = 0;
    const auto first = i;
    while (i < digits.size() && std::isdigit(static_cast<unsigned char>(digits[i])))
        value = value * 10 + (digits[i++] - '0');
    const auto last = i;
    while (i < digits.size() && isBlank(digits[i]))
        ++i;
    if (first == last || i != digits.size())
        throw LoadError("Type mismatch: \"" + field.substr(0, 5) + "\" does not carry a decimal code number.");
    if (negative)
        value = -value;
    if (value < 0 || value >= kDtcTableSize)
        throw LoadError("Index out of range: code number " + std::to_string(value) + " in \"" + field.substr(0, 5)
                        + "\" is outside 0 to " + std::to_string(kDtcTableSize - 1) + ".");
    return static_cast<int>(value);
}

// Only a plain file is opened: a pipe in its place would block the start for ever, and a path
// the system cannot follow (a loop of links) is an error like any other.
void checkReadable(const std::filesystem::path& path)
{
    std::error_code error;
    const auto status = std::filesystem::status(path, error);
    if (status.type() == std::filesystem::file_type::not_found)
        throw LoadError("File not found: " + path.string());
    if (error)
        throw LoadError("Path/File access error: " + path.string() + ": " + error.message() + ".");
    if (std::filesystem::is_directory(status))
        throw LoadError("Path/File access error: " + path.string() + " is a folder, not a file.");
    if (!std::filesystem::is_regular_file(status))
        throw LoadError("Bad file mode: " + path.string() +
                        " is not a plain file (a pipe or a device), so it is not read.");
}

std::string readAll(std::ifstream& file)
{
    std::ostringstream text;
    text << file.rdbuf();
    if (file.bad())
        throw LoadError("The file could not be read.");
    return std::move(text).str();
}

} // namespace

int LoadDtcDescriptions(const std::string& folder, std::vector<std::string>& table, Shell& shell)
{
    // The program keeps its description file in use for the whole run, so the stream outlives
    // every caller that does not hold one itself.
    static std::ifstream heldFile;
    return LoadDtcDescriptions(folder, table, shell, heldFile);
}

int LoadDtcDescriptions(const std::string& folder, std::vector<std::string>& table, Shell& shell,
                        std::ifstream& file)
{
    table.resize(kDtcTableSize);
    int count = 0;
    try {
        const auto path = std::filesystem::path(folder) / kDtcFileName;
        if (file.is_open())
            file.close();
        file.clear();
        checkReadable(path);
        file.open(path, std::ios::binary);
        if (!file.is_open())
            throw LoadError("The file " + path.string() + " could not be opened.");
        std::string text = readAll(file);
        // Editors on Windows often start a saved file with a UTF-8 mark; it is no part of the first field.
        if (text.starts_with("\xEF\xBB\xBF"))
            text.erase(0, 3);
        FieldReader fields(std::move(text));
        while (!fields.atEnd()) {
            std::string field = fields.next();
            int number = 0;
            // Skipped fields go straight to the next read without looking for the end of the file,
            // so a file whose last field is skipped ends with a read past its end.
            for (;;) {
                if (field.empty()) {
                    field = fields.next();
                    continue;
                }
                number = codeNumber(field);
                if (!table[number].empty() || std::toupper(static_cast<unsigned char>(field[0])) != 'P') {
                    field = fields.next();
                    continue;
                }
                break;
            }
            ++count;
            table[number] = field.size() > 11 ? field.substr(11) : std::string();
            shell.processEvents();
        }
    } catch (const LoadError& error) {
        file.close();
        shell.messageBox("DTC ERROR", error.what(), MessageIcon::Critical);
    }
    return count;
}

std::string DtcDescription(const std::vector<std::string>& table, const std::string& code)
{
    int number = 0;
    try {
        number = codeNumber(code);
    } catch (const LoadError&) {
        throw std::invalid_argument("The trouble code " + code +
                                    " has no description number: its last four characters are not a decimal "
                                    "number from 0 to 4000.");
    }
    return static_cast<std::size_t>(number) < table.size() ? table[number] : std::string();
}

std::string DtcLoadedText(int count)
{
    return std::to_string(count) + " DTC LOADED";
}

} // namespace kvx::data
