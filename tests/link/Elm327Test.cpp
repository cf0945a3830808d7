#include "SimBench.h"

#include "link/Elm327Engine.h"
#include "link/LinkError.h"
#include "link/ReplyText.h"
#include "support/ScriptedAdapter.h"

#include <gtest/gtest.h>

using namespace kvx;
using link::LinkError;

namespace {

// A LinkSession driving the scripted adapter through the ELM327 engine, on virtual time.
struct ElmBench {
    explicit ElmBench(int adapterBaud = 38400) { link.SetInterface(link::InterfaceType::Elm327, adapterBaud); }

    bool wake(int protocol, const std::string& startFrame = "")
    {
        return link.InitializeEcu(startFrame.empty() ? "33" : "", 10400, 1, protocol, startFrame, false, result);
    }
    std::string ask(const std::string& request) { return link.DecodeReply(link.Transact(link.EncodeRequest(request))); }
    std::vector<std::string> sent() { return adapter.since(seen_); }
    void mark() { seen_ = adapter.received.size(); }

    link::VirtualClock clock{1'000'000};
    test::ScriptedAdapter adapter{clock};
    link::LinkSession link{[this](int, link::InterfaceType) { return adapter.plug(); }, clock};
    std::string result;

private:
    std::size_t seen_ = 0;
};

std::string withChecksum(const std::string& hex)
{
    return hex + link::toHex(link::checksum(*link::fromHex(hex)));
}

std::string linkErrorOf(const std::function<void()>& call)
{
    try {
        call();
    } catch (const LinkError& e) {
        return e.what();
    }
    return "no error";
}

const std::vector<std::string> kSetUp{"ATZ", "ATI", "ATE0", "ATL0", "ATS0", "ATH1"};

std::vector<std::string> concat(std::vector<std::string> a, const std::vector<std::string>& b)
{
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

} // namespace

TEST(Elm327Dialogue, SetsTheAdapterUpThenWakesTheCarAndSetsEachHeaderOnce)
{
    ElmBench iso;
    ASSERT_TRUE(iso.wake(link::Iso9141Slow));
    EXPECT_EQ(iso.sent(), concat(kSetUp, {"ATSP3", "ATSH686AF1", "ATSI"}));
    const std::string frame = withChecksum("486B104100BE3FA812");
    iso.adapter.answers["0100"] = frame;
    iso.mark();
    EXPECT_EQ(iso.ask("686AF10100"), frame);
    EXPECT_EQ(iso.ask("686AF10100"), frame);
    EXPECT_EQ(iso.sent(), (std::vector<std::string>{"0100", "0100"})) << "the header is set only when it changes";
    iso.mark();
    iso.ask("C033F10100");
    EXPECT_EQ(iso.sent(), (std::vector<std::string>{"ATSHC033F1", "0100"}));

    // The Nissan start frame goes out under its own header with the adapter's fast init; bodies
    // then go physically addressed, and their replies read from the length byte as on the cable.
    ElmBench nissan;
    const std::string start = withChecksum("8110FC81");
    ASSERT_TRUE(nissan.wake(link::Kwp2000Fast, start));
    EXPECT_EQ(nissan.sent(), concat(kSetUp, {"ATSP5", "ATSH8110FC", "ATFI"}));
    nissan.adapter.answers["2101"] = withChecksum("83FC10610105");
    nissan.mark();
    EXPECT_EQ(nissan.ask("022101"), "03610105");
    EXPECT_EQ(nissan.sent(), (std::vector<std::string>{"ATSH8010FC", "2101"}));

    ElmBench can;
    can.adapter.answers["0100"] = "7E8064100BE3FA812";
    ASSERT_TRUE(can.wake(link::Can11Bit500k));
    EXPECT_EQ(can.sent(), concat(kSetUp, {"ATSP6", "ATSH7DF", "0100"}));
    ElmBench extended;
    extended.adapter.answers["0100"] = "18DAF110064100BE3FA812";
    ASSERT_TRUE(extended.wake(link::Can29Bit250k));
    EXPECT_EQ(extended.sent(), concat(kSetUp, {"ATSP9", "ATSH18DB33F1", "0100"}));
    EXPECT_EQ(extended.ask("686AF10100"), withChecksum("486B104100BE3FA812"));

    // Try All is the adapter's own search, reported by the protocol it found.
    ElmBench search;
    search.adapter.answers["0100"] = "SEARCHING...\r7E8064100BE3FA812";
    search.adapter.answers["ATDPN"] = "A7";
    ASSERT_TRUE(search.link.SearchesProtocols());
    ASSERT_TRUE(search.wake(link::TryAll));
    EXPECT_EQ(search.sent(), concat(kSetUp, {"ATSP0", "0100", "ATDPN"}));
    EXPECT_EQ(search.link.ProtocolInUse(), link::Can29Bit500k);
}

TEST(Elm327Dialogue, AdapterTextsReachTheCallerAsTheContractSays)
{
    ElmBench bench;
    bench.adapter.answers["0100"] = "7E8064100BE3FA812";
    ASSERT_TRUE(bench.wake(link::Can11Bit500k));
    // The car's silence and a failed re-wake are empty replies; the keep-alive counts them.
    for (const char* silent : {"NO DATA", "UNABLE TO CONNECT", "BUS INIT: ...ERROR", "SEARCHING...\rNO DATA"}) {
        bench.adapter.answers["010D"] = silent;
        EXPECT_EQ(bench.ask("686AF1010D"), "") << silent;
        EXPECT_TRUE(bench.link.IsPortOpen());
    }
    // The adapter's own faults end the command with a plain message that names them.
    for (const char* fault : {"?", "STOPPED", "CAN ERROR", "BUFFER FULL", "7E803410D00<DATA ERROR", "LV RESET"}) {
        bench.adapter.answers["010D"] = fault;
        const std::string message = linkErrorOf([&] { bench.ask("686AF1010D"); });
        EXPECT_NE(message.find(std::string("\"") + fault + "\" to 010D"), std::string::npos) << message;
    }

    // A wake-up the car does not answer is a false, not an error, and frees the port.
    ElmBench kline;
    kline.adapter.answers["ATSI"] = "BUS INIT: ...ERROR";
    EXPECT_FALSE(kline.wake(link::Kwp2000Slow));
    EXPECT_FALSE(kline.link.IsPortOpen());
    ElmBench quiet;
    quiet.adapter.answers["0100"] = "UNABLE TO CONNECT";
    EXPECT_FALSE(quiet.wake(link::Can11Bit250k));
    quiet.adapter.answers["0100"] = "CAN ERROR";
    EXPECT_NE(linkErrorOf([&] { quiet.wake(link::Can11Bit250k); }).find("CAN error"), std::string::npos);

    // The K-line cable cannot reach CAN and says so.
    link::VirtualClock clock;
    link::LinkSession cable([](int, link::InterfaceType) -> std::unique_ptr<link::Wire> { return nullptr; }, clock);
    std::string result;
    EXPECT_NE(linkErrorOf([&] { cable.InitializeEcu("33", 10400, 1, link::Can11Bit500k, "", false, result); })
                  .find("a K-line cable cannot reach"),
              std::string::npos);
}

TEST(Elm327Dialogue, ADeviceThatIsNoElm327IsRefusedAndTheAdapterRateIsFound)
{
    ElmBench modem;
    modem.adapter.answers["ATZ"] = "\x01OK\rHAYES 2400";
    const std::string refused = linkErrorOf([&] { modem.wake(link::Iso9141Slow); });
    EXPECT_NE(refused.find("answered the reset (ATZ) with \"OK / HAYES 2400\", not as an ELM327"), std::string::npos)
        << refused;
    EXPECT_FALSE(modem.link.IsPortOpen());

    ElmBench wrongRate;
    wrongRate.adapter.rate = 115200;
    EXPECT_NE(linkErrorOf([&] { wrongRate.wake(link::Iso9141Slow); }).find("did not answer the reset (ATZ) at 38400"),
              std::string::npos);

    ElmBench found(link::kElmAutoBaud);
    found.adapter.rate = 115200;
    EXPECT_TRUE(found.wake(link::Iso9141Slow));
    EXPECT_EQ(found.adapter.ratesTried, (std::vector<int>{38400, 9600, 115200}));

    ElmBench none(link::kElmAutoBaud);
    none.adapter.rate = 19200;
    EXPECT_NE(linkErrorOf([&] { none.wake(link::Iso9141Slow); }).find("No ELM327 answered"), std::string::npos);
    EXPECT_EQ(none.adapter.ratesTried, (std::vector<int>{38400, 9600, 115200, 500000}));
}

TEST(CanAnswers, MultiFrameAnswersBecomeKLineMessagesAndBrokenOnesPassAsTheyCame)
{
    ElmBench bench;
    bench.adapter.answers["0100"] = "7E8064100BE3FA812";
    ASSERT_TRUE(bench.wake(link::Can11Bit500k));
    const auto vinAnswer = [](const std::string& vin) {
        std::vector<std::uint8_t> payload{0x49, 0x02, 0x01};
        payload.insert(payload.end(), vin.begin(), vin.end());
        return payload;
    };
    // Two units answer, their frames taking turns on the bus.
    const auto lines = [](const std::string& text) {
        std::vector<std::string> out;
        for (std::size_t from = 0, to = 0; to != std::string::npos; from = to + 1)
            out.push_back(text.substr(from, (to = text.find('\r', from)) - from));
        return out;
    };
    const auto engine = lines(test::isoTpLines("7E8", vinAnswer("1D4GP00R55B123456")));
    const auto gearbox = lines(test::isoTpLines("7E9", vinAnswer("2G1WF52E459000001")));
    ASSERT_EQ(engine.size(), 3u);
    std::string answer;
    for (std::size_t i = 0; i < engine.size(); ++i)
        answer += (i ? "\r" : "") + engine[i] + "\r" + gearbox[i];
    bench.adapter.answers["0902"] = answer;
    const std::string reply = bench.ask("686AF10902");
    EXPECT_EQ(bench.link.FormatVin(reply), "1D4GP00R55B123456");
    const auto messages = link::splitReply(reply);
    ASSERT_EQ(messages.size(), 10u);
    EXPECT_EQ(messages[0], withChecksum("486B1049020100000031")) << "the filler goes in front, as on the K-line";
    for (std::size_t n = 0; n < messages.size(); ++n) {
        EXPECT_EQ(messages[n].substr(0, 12), (n < 5 ? "486B10490" : "486B18490") + std::string("2") +
                                                 link::toHex(static_cast<std::uint8_t>(n % 5 + 1)));
        EXPECT_TRUE(link::checksumHolds(messages[n])) << messages[n];
    }

    // A continuation without its first frame and a unit outside the OBD range go on unchanged.
    bench.adapter.answers["0902"] = "7E82147503030523535\r7DF0249020000000000";
    EXPECT_EQ(bench.ask("686AF10902"), "07E82147503030523535:07DF0249020000000000");
}

TEST(KLineThroughAdapter, MessagesAreTheKLineEnginesOwn)
{
    test::SimBench cable;
    ASSERT_TRUE(cable.wake(link::Iso9141Slow));
    ElmBench adapter;
    ASSERT_TRUE(adapter.wake(link::Iso9141Slow));
    for (const char* request : {"686AF10100", "686AF10902", "686AF103", "686AF1010C"}) {
        const std::string direct = cable.ask(request);
        ASSERT_FALSE(direct.empty()) << request;
        std::string lines;
        for (const std::string& m : link::splitReply(direct))
            lines += (lines.empty() ? "" : "\r") + m;
        // A pending reply and a damaged frame are left out, as the cable's engine leaves them out.
        lines = withChecksum("486B107F0178") + "\r" + lines + "\r486B10410C0000";
        adapter.adapter.answers[std::string(request).substr(6)] = lines;
        EXPECT_EQ(adapter.ask(request), direct) << request;
    }
}
