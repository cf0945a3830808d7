#include "obd/SupportedPids.h"

#include "link/ReplyText.h"
#include "obd/Connection.h"
#include "obd/RequestCycle.h"
#include "session/MainScreen.h"
#include "session/Session.h"

#include <QString>

namespace kvx::obd {

namespace {

void noteUnit(Session& session, const std::string& address)
{
    ListModel& units = session.screen.cmbModule;
    if (units.indexOf(address) >= 0)
        return;
    units.addItem(address);
    units.setCurrentIndex(units.indexOf(address));
    session.EcuAddress = address;
}

} // namespace

std::string DecodeSupportedPids(Session& session, const std::string& message, const std::string& service)
{
    const std::string source = link::sourceText(message);
    if (source.empty())
        return source;
    // The bitmap's own parameter, then bytes A to D, follow the service wherever the header puts
    // it (a unit may send a length byte before it); a byte the message lacks counts as 0.
    const auto m = link::readMessage(message);
    const auto dataByte = [&m](std::size_t n) { return m && n < m->data.size() ? int{m->data[n]} : 0; };
    const int bytes[] = {dataByte(1), dataByte(2), dataByte(3), dataByte(4)};
    int parameter = dataByte(0) + 1;
    noteUnit(session, source);

    bool ok = false;
    const int column = QString::fromStdString(service).toInt(&ok, 16) - 1;
    if (!ok || column < 0 || column >= Session::kPidCols)
        return source;
    for (int byte : bytes) {
        for (int mask = 256; (mask /= 2) >= 1; ++parameter)
            if ((byte & mask) && parameter < Session::kPidRows)
                session.SupportedPids[static_cast<std::size_t>(parameter)][static_cast<std::size_t>(column)] = true;
    }
    return source;
}

void ClearSupportedPids(Session& session, int service, int lastPid)
{
    for (int pid = 0; pid <= lastPid && pid < Session::kPidRows; ++pid)
        session.SupportedPids[static_cast<std::size_t>(pid)][static_cast<std::size_t>(service - 1)] = false;
}

std::string RequestSupportBitmaps(Session& session, bool showProgress)
{
    const auto request = [&](const std::string& pid) {
        if (showProgress)
            session.screen.StatusBar1.setText(1, "REQUESTING..." + pid);
        return SendRequest(session, session.HeaderByte1, session.HeaderByte2, "01", pid, "01");
    };
    const std::string first = request("00");
    // Each further range is asked only when the range before marked it supported.
    if (session.SupportedPids[0x20][0]) {
        request("20");
        if (session.SupportedPids[0x40][0])
            request("40");
    }
    return first;
}

std::string O2Layout(const Session& session)
{
    if (session.SupportedPids[0x1D][0])
        return "1D";
    return session.SupportedPids[0x13][0] ? "13" : "";
}

} // namespace kvx::obd
