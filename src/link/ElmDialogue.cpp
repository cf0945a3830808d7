#include "link/ElmDialogue.h"

#include "link/LinkError.h"

#include <algorithm>
#include <array>
#include <cctype>

namespace kvx::link {

namespace {

constexpr char kPrompt = '>';
// Reads wait in slices this long, so a window stays responsive through an adapter's search.
constexpr Micros kReadSlice = ms(10);

std::string squeezed(const std::string& text)
{
    std::string out;
    for (unsigned char c : text)
        if (!std::isspace(c))
            out += static_cast<char>(std::toupper(c));
    return out;
}

std::string trimmed(const std::string& text)
{
    const auto first = text.find_first_not_of(' ');
    if (first == std::string::npos)
        return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

} // namespace

ElmDialogue::ElmDialogue(Wire& wire, Clock& clock, TraceSink* trace, std::function<void()> idle)
    : wire_(wire), clock_(clock), trace_(trace), idle_(std::move(idle))
{
}

std::optional<std::vector<std::string>> ElmDialogue::tryCommand(const std::string& text, Micros timeout)
{
    // What is left of an earlier answer must not be read as this one's.
    wire_.flushInput();
    if (trace_)
        trace_->adapter(clock_.now(), AdapterEvent::Command, text);
    const std::string line = text + '\r';
    wire_.write({reinterpret_cast<const std::uint8_t*>(line.data()), line.size()});

    const Micros deadline = clock_.now() + timeout;
    std::vector<std::string> lines;
    std::string current;
    const auto endLine = [&] {
        std::string l = trimmed(current);
        current.clear();
        if (l.empty() || squeezed(l) == squeezed(text))
            return;
        if (trace_)
            trace_->adapter(clock_.now(), AdapterEvent::Line, l);
        lines.push_back(std::move(l));
    };
    std::array<std::uint8_t, 256> buf{};
    while (clock_.now() < deadline) {
        const std::size_t n = wire_.read(buf, std::min(deadline, clock_.now() + kReadSlice));
        if (n == 0 && idle_)
            idle_();
        for (std::size_t i = 0; i < n; ++i) {
            const char c = static_cast<char>(buf[i]);
            if (c == kPrompt) {
                endLine();
                if (trace_)
                    trace_->adapter(clock_.now(), AdapterEvent::Prompt, ">");
                return lines;
            }
            if (c == '\r' || c == '\n')
                endLine();
            else if (std::isprint(static_cast<unsigned char>(c)))
                current += c; // some adapters send NUL bytes after a reset
        }
    }
    endLine();
    return std::nullopt;
}

std::vector<std::string> ElmDialogue::command(const std::string& text, Micros timeout)
{
    auto lines = tryCommand(text, timeout);
    if (!lines)
        throw LinkError(LinkError::Kind::Adapter,
                        "The adapter gave no prompt within " + std::to_string(timeout / 1000) + " ms after " + text +
                            ": it stopped answering (was it unplugged, or is the adapter baud wrong?).");
    return std::move(*lines);
}

} // namespace kvx::link
