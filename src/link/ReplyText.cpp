#include "link/ReplyText.h"

#include "link/ProtocolBytes.h"

namespace kvx::link {

namespace {

using namespace kline;

constexpr std::size_t kSourceAt = 2;

} // namespace

std::string_view firstMessage(std::string_view reply) { return reply.substr(0, reply.find(':')); }

std::vector<std::string> splitReply(std::string_view reply)
{
    std::vector<std::string> messages;
    if (reply.empty())
        return messages;
    for (;;) {
        const std::size_t colon = reply.find(':');
        messages.emplace_back(reply.substr(0, colon));
        if (colon == std::string_view::npos)
            return messages;
        reply.remove_prefix(colon + 1);
    }
}

std::optional<ReplyMessage> readMessage(std::string_view message)
{
    const auto bytes = fromHex(firstMessage(message));
    if (!bytes || bytes->empty())
        return std::nullopt;
    const Bytes& b = *bytes;
    const bool addressed = kwpHeaderSize(b[0]) == kKwpAddressedHeader;
    const std::size_t serviceAt = kwpServiceAt(b[0]);
    // The service and the checksum after it must both be there.
    if (serviceAt + 2 > b.size())
        return std::nullopt;
    ReplyMessage m;
    if (addressed)
        m.source = b[kSourceAt];
    m.service = b[serviceAt];
    m.data.assign(b.begin() + static_cast<long>(serviceAt) + 1, b.end() - 1);
    return m;
}

std::string sourceText(std::string_view message)
{
    const auto m = readMessage(message);
    return m && m->source ? toHex(*m->source) : std::string();
}

std::string serviceText(std::string_view message)
{
    const auto m = readMessage(message);
    return m ? toHex(m->service) : std::string();
}

std::string dataText(std::string_view message, std::size_t n)
{
    const auto m = readMessage(message);
    return m && n < m->data.size() ? toHex(m->data[n]) : std::string();
}

bool checksumHolds(std::string_view message)
{
    const auto bytes = fromHex(firstMessage(message));
    if (!bytes || bytes->empty())
        return false;
    const Bytes body(bytes->begin(), bytes->end() - 1);
    return checksum(body) == bytes->back();
}

std::string genericRequest(std::string_view header1, std::string_view header2, std::string_view service,
                           std::string_view parameters)
{
    const std::string tester = toHex(kTester);
    std::string request;
    request.reserve(header1.size() + header2.size() + tester.size() + service.size() + parameters.size());
    request.append(header1).append(header2).append(tester).append(service).append(parameters);
    return request;
}

} // namespace kvx::link
