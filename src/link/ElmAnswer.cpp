#include "link/ElmAnswer.h"

#include "link/LinkError.h"

#include <cctype>
#include <string_view>

namespace kvx::link {

namespace {

constexpr std::string_view kSearching = "SEARCHING...";
constexpr std::string_view kBusInit = "BUS INIT";

struct AdapterFault {
    std::string_view text;
    const char* meaning;
};

// The adapter's own error texts and what a person should do about each.
constexpr AdapterFault kFaults[] = {
    {"?", "did not understand it; is it really an ELM327 compatible?"},
    {"STOPPED", "stopped waiting for the car because a byte reached it meanwhile; try again"},
    {"CAN ERROR", "reports a CAN error: the car does not talk this CAN protocol (11 or 29-bit, 500 or 250 kbaud), "
                  "or the ignition is off"},
    {"BUFFER FULL", "overflowed its buffer: the serial link is too slow for the car's answer; raise the adapter baud"},
    {"<DATA ERROR", "received a damaged answer from the car (a bad checksum or a broken frame)"},
    {"<RX ERROR", "received a damaged answer from the car (a bad checksum or a broken frame)"},
};

bool startsWith(std::string_view text, std::string_view prefix)
{
    return text.substr(0, prefix.size()) == prefix;
}

bool endsWith(std::string_view text, std::string_view suffix)
{
    return text.size() >= suffix.size() && text.substr(text.size() - suffix.size()) == suffix;
}

std::string withoutSpaces(std::string_view text)
{
    std::string out;
    for (char c : text)
        if (c != ' ')
            out += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return out;
}

bool isHex(std::string_view text)
{
    if (text.empty())
        return false;
    for (char c : text)
        if (!std::isxdigit(static_cast<unsigned char>(c)))
            return false;
    return true;
}

[[noreturn]] void fault(const std::string& sent, const std::string& line, const char* meaning)
{
    throw LinkError(LinkError::Kind::Adapter,
                    "The adapter answered \"" + line + "\" to " + sent + ": it " + meaning + ".");
}

} // namespace

ElmAnswer readElmAnswer(const std::vector<std::string>& lines, const std::string& sent)
{
    ElmAnswer answer;
    for (std::string_view line : lines) {
        if (startsWith(line, kSearching))
            line.remove_prefix(kSearching.size());
        while (!line.empty() && line.front() == ' ')
            line.remove_prefix(1);
        if (line.empty())
            continue;
        const std::string text(line);
        for (const AdapterFault& f : kFaults)
            if (line == f.text || (f.text.front() == '<' && endsWith(line, f.text)))
                fault(sent, text, f.meaning);
        if (line == "NO DATA")
            continue;
        if (line == "UNABLE TO CONNECT" || (startsWith(line, kBusInit) && line.find("ERROR") != std::string_view::npos))
            return {ElmAnswer::Kind::NoConnection, {}, false};
        if (startsWith(line, kBusInit) && endsWith(line, "OK")) {
            answer.busInitOk = true;
            continue;
        }
        const std::string hex = withoutSpaces(line);
        if (!isHex(hex))
            fault(sent, text, "gave no data the link can read");
        answer.data.push_back(hex);
    }
    answer.kind = answer.data.empty() ? ElmAnswer::Kind::Silence : ElmAnswer::Kind::Data;
    return answer;
}

} // namespace kvx::link
