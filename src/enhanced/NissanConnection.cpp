#include "enhanced/NissanConnection.h"

#include "data/GridLayouts.h"
#include "data/ItemRows.h"
#include "enhanced/NissanKeepAlive.h"
#include "enhanced/SensorRows.h"
#include "link/Hex.h"
#include "link/LinkSession.h"
#include "obd/CommandGuard.h"
#include "obd/Connection.h"
#include "obd/RequestCycle.h"
#include "session/MainScreen.h"
#include "session/Session.h"
#include "session/Shell.h"

#include <QString>
#include <array>

namespace kvx::enhanced {

namespace {

// Each request asks one block (byte 3) from one start byte (byte 4); the trailer is fixed.
constexpr std::array<const char*, kNissanSupportRequests> kSupportRequests = {
    "052211000401", "052211200401", "052211400401", "052212000401", "052212200401",
    "052212400401", "052213000401", "052213200401", "052213400401"};

// The decimal blocks cleared at connection. The supported items live in blocks 17 to 20 (the
// block byte read as hex), so these leave an earlier unit's entries standing, as units always
// have; the sensor list is then rebuilt from whatever the table holds.
constexpr int kClearedBlocks[] = {11, 12, 13};
constexpr int kClearedRows = 96;

constexpr int kFirstBlock = 0x11;
constexpr int kLastBlock = 0x14;
constexpr int kLastRow = 96;

// Two hex digits at 1-based character `first`, or 0 when the text is too short or not hex.
int hexAt(const std::string& text, std::size_t first)
{
    if (text.size() < first + 1)
        return 0;
    bool ok = false;
    const int value = QString::fromStdString(text.substr(first - 1, 2)).toInt(&ok, 16);
    return ok ? value : 0;
}

// Rows 32 and 64 stand for the next range's own bit, not for an item.
bool isRangeMarker(int row)
{
    return row == 32 || row == 64;
}

// The enhanced units are reached only by a fast init with their own start frame, whatever
// protocol the settings hold for the generic module.
bool wakeUp(Session& session, bool reconnect)
{
    const CommSettings& s = session.settings;
    std::string result;
    return session.link.InitializeEcu("", s.BaudRate, s.PortNumber, link::Kwp2000Fast, NissanStartFrame(session),
                                      reconnect, result);
}

bool connect(Session& session)
{
    MainScreen& screen = session.screen;
    session.LinkDown = false;
    if (!wakeUp(session, false)) {
        obd::ReportInitFailed(session, screen.tmrKeepAliveEnhance);
        return false;
    }
    for (int block : kClearedBlocks)
        for (int row = 0; row <= kClearedRows; ++row)
            session.SupportedPids[static_cast<std::size_t>(row)][static_cast<std::size_t>(block)] = false;

    data::LayoutLiveDataGrid(screen);
    // Both units report under the engine's address in the unit list.
    screen.cmbModule.clear();
    screen.cmbModule.addItem("10");
    screen.cmbModule.setCurrentIndex(0);
    screen.control("cmbModule").setVisible(true);

    std::string dots;
    for (const char* request : kSupportRequests) {
        dots += '.';
        screen.StatusBar1.setText(1, "REQUESTING" + dots);
        RequestNissanSupport(session, request);
    }

    screen.control("chkLog").setEnabled(true);
    obd::SetToolbarConnected(session, true);
    RearmEnhancedKeepAlive(session);
    AddNissanSensors(session);
    screen.StatusBar1.setText(1, "");
    return true;
}

} // namespace

std::string NissanUnitAddress(int moduleIndex)
{
    return moduleIndex == ModuleNissanTcu ? "18" : "10";
}

std::string NissanStartFrame(Session& session)
{
    const std::string header = "81" + NissanUnitAddress(session.ModuleIndex) + "FC81";
    return header + session.link.ComputeChecksum(header);
}

bool ReconnectNissan(Session& session)
{
    return wakeUp(session, true);
}

bool ConnectNissan(Session& session)
{
    return obd::RunConnection(session, [&] { return connect(session); });
}

std::string RequestNissanSupport(Session& session, const std::string& body)
{
    if (session.LinkDown)
        return {};
    const std::string reply = obd::RequestCycle(session, body);
    MarkSupportedNissanSensors(session, reply);
    return reply;
}

void MarkSupportedNissanSensors(Session& session, const std::string& reply)
{
    const int block = hexAt(reply, 5);
    int row = hexAt(reply, 7) + 1;
    for (std::size_t first : {9u, 11u, 13u, 15u}) {
        const int bitmap = hexAt(reply, first);
        for (int mask = 0x80; mask > 0; mask >>= 1, ++row)
            if ((bitmap & mask) && row < Session::kPidRows && block < Session::kPidCols)
                session.SupportedPids[static_cast<std::size_t>(row)][static_cast<std::size_t>(block)] = true;
    }
}

void AddNissanSensors(Session& session)
{
    int count = 0;
    for (int block = kFirstBlock; block <= kLastBlock; ++block) {
        for (int row = 1; row <= kLastRow; ++row) {
            session.shell.processEvents();
            const auto& supported = session.SupportedPids[static_cast<std::size_t>(row)];
            if (isRangeMarker(row) || !supported[static_cast<std::size_t>(block)])
                continue;
            // A switch register lists only the bits this unit type names.
            const std::string identifier =
                link::toHex(static_cast<std::uint8_t>(block)) + link::toHex(static_cast<std::uint8_t>(row));
            for (const data::ItemRow& item : data::NissanRows(session.nissanDecoder, identifier, session.ModuleIndex))
                AddSensorRow(session, count, item.label, item.name);
        }
    }
}

} // namespace kvx::enhanced
