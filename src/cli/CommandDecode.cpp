// kvx decode: turns reply messages from a capture or a log into the texts the window shows, so a
// person can check a capture by hand without a car or a cable.
#include "cli/Command.h"
#include "cli/CommandLine.h"
#include "cli/ConsoleSession.h"

#include "data/DtcDescriptions.h"
#include "garage/ProgramFolders.h"
#include "link/Hex.h"
#include "link/ReplyText.h"
#include "link/decode/PidValue.h"
#include "link/decode/ServiceReply.h"
#include "link/decode/TestResults.h"
#include "link/decode/TroubleCodes.h"
#include "link/decode/Vin.h"

#include <QCommandLineParser>
#include <cstdio>
#include <stdexcept>
#include <string>
#include <vector>

namespace kvx::cli {

namespace {

namespace dec = link::decode;

void fail(const std::string& message, const std::string& why)
{
    std::fprintf(stderr, "kvx decode: %s: %s\n", message.c_str(), why.c_str());
}

// The descriptions of the program's trouble-code file, read the first time a code needs one, so
// that decoding live values never depends on the file. A failed load is reported once.
class CodeDescriptions {
public:
    std::string describe(const std::string& code)
    {
        if (!loaded_) {
            ConsoleShell shell;
            data::LoadDtcDescriptions(garage::runFolders().shipped.toStdString(), table_, shell);
            loaded_ = true;
        }
        std::string text;
        try {
            text = data::DtcDescription(table_, code);
        } catch (const std::invalid_argument&) {
            // Hex digits or a number beyond the table: the file cannot hold such a code.
        }
        return text.empty() ? "No Desciption Available" : text;
    }

private:
    std::vector<std::string> table_;
    bool loaded_ = false;
};

// Prints the texts of one message; false (with the reason on stderr) when nothing decoded.
bool decodeMessage(const std::string& text, const link::ReplyMessage& m, CodeDescriptions& descriptions)
{
    const auto printed = [&](const std::string& line) {
        if (line.empty())
            return false;
        std::printf("%s\n", line.c_str());
        return true;
    };
    switch (m.service) {
    case 0x41:
    case 0x42: {
        const bool live = m.service == 0x41;
        const auto value = [&](int selector) {
            return live ? dec::formatLiveValue(text, selector) : dec::formatFreezeFrameValue(text, selector);
        };
        const std::string metric = value(dec::Metric);
        if (metric.empty()) {
            fail(text, "unknown parameter or too few data bytes");
            return false;
        }
        return printed(metric + "\t" + value(dec::Customary));
    }
    case 0x43:
    case 0x47: {
        const std::string codes = dec::formatTroubleCodes(text, 1);
        if (codes.empty())
            return printed("No trouble codes");
        for (std::size_t i = 0; i + 5 <= codes.size(); i += 5) {
            const std::string code = codes.substr(i, 5);
            std::printf("%s - %s\n", code.c_str(), descriptions.describe(code).c_str());
        }
        return true;
    }
    case 0x44:
    case 0x7F:
        return printed(dec::formatServiceReply(text));
    case 0x45: {
        const std::string value = dec::formatOxygenTest(text, dec::TestValue);
        if (value.empty()) {
            fail(text, "no test value in the message");
            return false;
        }
        const int tid = m.data[0];
        return printed(link::toHex(m.data[0]) + "\t" + dec::oxygenTestName(tid) + "\t" + value + "\t" +
                       dec::formatOxygenTest(text, dec::TestMinimum) + "\t" +
                       dec::formatOxygenTest(text, dec::TestMaximum));
    }
    case 0x46: {
        const auto t = dec::formatMonitorTest(text);
        if (t.tid.empty()) {
            fail(text, "a monitor test needs TID, component, value and limit");
            return false;
        }
        return printed(t.tid + "\t" + t.component + "\t" + t.limit + "\t" + t.limitType + "\t" + t.result + "\t" +
                       t.passFail);
    }
    default:
        fail(text, "service " + link::toHex(m.service) + " is not one kvx decodes");
        return false;
    }
}

// One argument: a message, or several joined by ":" as the link writes a reply. The messages of a
// VIN belong together, so they are gathered and decoded once.
bool decodeArgument(const std::string& argument, CodeDescriptions& descriptions)
{
    bool ok = true;
    std::string vinMessages;
    // An empty argument is one empty message, which is refused like any other that is not hex.
    std::vector<std::string> messages = link::splitReply(argument);
    if (messages.empty())
        messages.emplace_back();
    for (const auto& text : messages) {
        const auto m = link::readMessage(text);
        if (!m) {
            fail(text.empty() ? "\"\"" : text,
                 "not a message (hex pairs: three header bytes, service, data, checksum)");
            ok = false;
            continue;
        }
        if (!link::checksumHolds(text))
            fail(text, "checksum does not match; decoded anyway");
        if (m->service == 0x49) {
            vinMessages += (vinMessages.empty() ? "" : ":") + text;
            continue;
        }
        ok = decodeMessage(text, *m, descriptions) && ok;
    }
    if (!vinMessages.empty()) {
        const std::string vin = dec::formatVin(vinMessages);
        if (vin.empty()) {
            fail(vinMessages, "not a complete VIN (give all its messages joined by ':')");
            ok = false;
        } else {
            std::printf("VIN %s\n", vin.c_str());
        }
    }
    return ok;
}

} // namespace

int RunDecode(const QStringList& args)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(
        "Decodes reply messages (whole frames in hex: header, service, data, checksum) into display text.\n"
        "41/42: metric and US value separated by a tab; 43/47: one trouble code a line with its\n"
        "description from the program's \"SAE OBD II CODES.dat\";\n"
        "44/7F: the answer in words; 45: TID, test, value, min, max; 46: TID, component, limit, type,\n"
        "result, pass/fail; 49: the VIN from its messages joined by ':'.\n"
        "Exit code 0 when every message decoded, 1 otherwise.");
    parser.addHelpOption();
    parser.addPositionalArgument("HEX", "reply messages; several of one reply may be joined by ':'", "HEX...");
    if (const auto code = ParseCommandLine(parser, args))
        return *code;
    const QStringList messages = parser.positionalArguments();
    if (messages.isEmpty())
        return Fail(args.value(0) + ": give at least one message, e.g. kvx decode 486B10410C1AF8DE");
    bool ok = true;
    CodeDescriptions descriptions;
    for (const auto& message : messages)
        ok = decodeArgument(message.trimmed().toUpper().toStdString(), descriptions) && ok;
    return ok ? 0 : 1;
}

} // namespace kvx::cli
