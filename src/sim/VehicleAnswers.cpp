#include "sim/VirtualVehicle.h"

#include "sim/KLineFrames.h"
#include "sim/Mix.h"

#include <algorithm>

namespace kvx::sim {

using link::LineKind;
using link::TraceOrigin;
using namespace link::kline;

namespace {

constexpr int kStrayBytes = 2; // of a noise fault that names none

bool busy(const link::Bytes& payload)
{
    return payload.size() == 3 && payload[0] == kNegativeReply && payload[2] == kResponsePending;
}

} // namespace

std::vector<EcuModel*> VirtualVehicle::unitsByRank() const
{
    std::vector<EcuModel*> out;
    for (const auto& u : units_)
        out.push_back(u.get());
    std::stable_sort(out.begin(), out.end(), [](auto* a, auto* b) { return a->replyRank() < b->replyRank(); });
    return out;
}

std::uint8_t VirtualVehicle::kb1Of(const EcuModel& unit, bool functional) const
{
    return config_.kwpKb1.value_or(functional ? unit.kwpKb1() : unit.kwpKb1Physical());
}

void VirtualVehicle::setSilent(std::uint8_t unit, bool silent)
{
    settle(clock_.now());
    if (silent)
        silent_.insert(unit);
    else
        silent_.erase(unit);
}

bool VirtualVehicle::silent(const EcuModel& unit) const { return silent_.count(unit.address()) > 0; }

void VirtualVehicle::handleRequest(const Request& request, link::Micros end)
{
    const Fault fault = requestFault_;
    const EcuTiming& tm = config_.timing;
    if (fault == Fault::Silence)
        return;
    if (fault == Fault::DropSession) {
        record_.sessionDrops.push_back(end);
        session_.reset();
        return;
    }
    const std::uint8_t service = request.payload.front();
    if (request.protocol == LineKind::Kwp && service == kStartCommunication) {
        // A StartCommunication inside a session is answered as a new start.
        startCommunication(request, end);
        return;
    }

    struct Answer {
        EcuModel* unit;
        std::vector<link::Bytes> payloads;
    };
    std::vector<Answer> answers;
    for (EcuModel* unit : unitsByRank()) {
        if ((!request.functional && request.target != unit->address()) || silent(*unit))
            continue;
        auto payloads = unit->answer(request);
        if (!payloads.empty())
            answers.push_back({unit, std::move(payloads)});
    }
    const link::Micros gap = fault == Fault::LateReply ? tm.p2Late : tm.p2;
    const KwpHeader form{request.addressed, session_->lengthByte};
    link::Micros at = end + gap;
    if (fault == Fault::Noise) {
        // Stray bytes on the line shortly before the first reply.
        link::Bytes stray = config_.faults.noise;
        for (int i = 0; i < kStrayBytes && config_.faults.noise.empty(); ++i)
            stray.push_back(static_cast<std::uint8_t>(mix(mix(config_.seed) + noiseBytes_++) >> 56));
        link::Micros t = end + tm.p1;
        for (std::uint8_t b : stray)
            t = sendByte(b, t) + tm.p1;
    }
    for (std::size_t i = 0; i < answers.size(); ++i) {
        Answer& a = answers[i];
        // Faults of the reply strike the unit that answers last (the engine unit).
        const bool struck = i + 1 == answers.size();
        if (struck && fault == Fault::NegativeReply)
            a.payloads = {negative(service, kConditionsNotCorrect)};
        if (struck && fault == Fault::ResponsePending)
            a.payloads.insert(a.payloads.begin(), negative(service, kResponsePending));
        for (std::size_t k = 0; k < a.payloads.size(); ++k) {
            const link::Bytes& payload = a.payloads[k];
            link::Bytes frame = replyFrame(request.protocol, a.unit->address(), request.source, payload, form);
            if (struck && fault == Fault::BadChecksum && k + 1 == a.payloads.size())
                frame.back() = static_cast<std::uint8_t>(frame.back() + 1);
            // A unit that said it is busy takes its time before the real answer.
            at = sendFrame(frame, at) + (busy(payload) ? tm.pending : gap);
        }
    }
}

link::Micros VirtualVehicle::sendByte(std::uint8_t byte, link::Micros start, TraceOrigin origin)
{
    const link::Micros end = line_.unit(byte, start, origin);
    if (session_)
        session_->lastActivity = std::max(session_->lastActivity, end);
    return end;
}

link::Micros VirtualVehicle::sendFrame(const link::Bytes& frame, link::Micros start)
{
    record_.framesSent.push_back(frame);
    const link::Micros end = line_.frame(frame, start, config_.timing.p1);
    if (session_)
        session_->lastActivity = std::max(session_->lastActivity, end);
    return end;
}

} // namespace kvx::sim
