#include "settings/SettingsEditor.h"

#include "garage/Garage.h"
#include "link/Elm327Engine.h"
#include "link/LinkSession.h"
#include "session/MainScreen.h"
#include "session/Session.h"
#include "session/Shell.h"
#include "settings/SettingsStore.h"

#include <QString>
#include <algorithm>
#include <cstdint>
#include <limits>
#include <optional>

namespace kvx::settings {

namespace {

constexpr int kSerialPorts = 16;
constexpr int kTryAllEntry = 3;

constexpr long kMin16 = std::numeric_limits<std::int16_t>::min();
constexpr long kMax16 = std::numeric_limits<std::int16_t>::max();
constexpr long kMin32 = std::numeric_limits<std::int32_t>::min();
constexpr long kMax32 = std::numeric_limits<std::int32_t>::max();

std::optional<long> wholeNumber(const std::string& text)
{
    bool ok = false;
    const qlonglong value = QString::fromStdString(text).trimmed().toLongLong(&ok);
    return ok ? std::optional<long>(static_cast<long>(value)) : std::nullopt;
}

// The value of the text's leading number: "750ms" is 750, "" and "abc" are 0.
long leadingNumber(const std::string& text)
{
    std::size_t i = 0;
    while (i < text.size() && text[i] == ' ')
        ++i;
    bool negative = false;
    if (i < text.size() && (text[i] == '-' || text[i] == '+'))
        negative = text[i++] == '-';
    long value = 0;
    for (; i < text.size() && text[i] >= '0' && text[i] <= '9' && value <= kP3Cap; ++i)
        value = value * 10 + (text[i] - '0');
    return negative ? -value : value;
}

std::string portEntry(int port, bool elm327)
{
    if (port != kVirtualVehiclePort)
        return std::to_string(port);
    return elm327 ? kVirtualAdapterEntry : kVirtualVehicleEntry;
}

std::string adapterBaudEntry(int baud)
{
    return baud == link::kElmAutoBaud ? kAutoBaudEntry : std::to_string(baud);
}

std::optional<long> adapterBaud(const std::string& entry)
{
    if (entry == kAutoBaudEntry)
        return link::kElmAutoBaud;
    return wholeNumber(entry);
}

std::optional<long> portNumber(const std::string& entry)
{
    if (entry == kVirtualVehicleEntry || entry == kVirtualAdapterEntry)
        return kVirtualVehiclePort;
    return wholeNumber(entry);
}

} // namespace

const std::vector<std::string>& ProtocolNames()
{
    static const std::vector<std::string> names = [] {
        std::vector<std::string> all;
        for (int p = 1; p <= link::kLastProtocol; ++p)
            all.push_back(link::ProtocolName(p));
        return all;
    }();
    return names;
}

SettingsEditor::SettingsEditor(Session& session) : session_(session)
{
    for (TextModel* field : {&txtBaud, &txtKeepAlive, &txtP4, &txtKwp2000InitDelay, &txtInterbyte, &txtP3})
        field->setText("N/A");
}

void SettingsEditor::Form_Load()
{
    const CommSettings& s = session_.settings;
    cmbPort.clear();
    for (int port = 1; port <= kSerialPorts; ++port)
        cmbPort.addItem(std::to_string(port));
    cmbPort.addItem(kVirtualVehicleEntry);
    cmbPort.addItem(kVirtualAdapterEntry);
    cmbInterface.clear();
    cmbInterface.addItem(kInterfaceName);
    cmbInterface.addItem(kElm327InterfaceName);
    cmbInterface.setCurrentIndex(s.Interface == kElm327Interface ? 1 : 0);
    cmbAdapterBaud.clear();
    for (int baud : link::kElmBauds)
        cmbAdapterBaud.addItem(std::to_string(baud));
    cmbAdapterBaud.addItem(kAutoBaudEntry);
    cmbAdapterBaud.setText(adapterBaudEntry(s.AdapterBaud));
    cmbTypeProtocol.clear();
    for (const std::string& name : ProtocolNames())
        cmbTypeProtocol.addItem(name);

    // A stored protocol outside 1..4 shows no entry until the user picks one.
    cmbTypeProtocol.setCurrentIndex(s.TryAllProtocols ? kTryAllEntry : s.ProtocolNumber - 1);
    cmbPort.setText(portEntry(s.PortNumber, s.Interface == kElm327Interface));
    txtBaud.setText(std::to_string(s.BaudRate));
    txtKeepAlive.setText(std::to_string(s.KeepAlive));
    txtP4.setText(std::to_string(s.P4Delay));
    txtInterbyte.setText(std::to_string(s.InterByteDelay));
    txtKwp2000InitDelay.setText(s.Kwp2000InitDelay);
    txtP3.setText(std::to_string(s.P3Delay));
    txtP3_Change();
    fillVehicleList();
    cmdApply.setEnabled(false);
}

void SettingsEditor::fillVehicleList()
{
    cmbVehicle.clear();
    for (const garage::GarageCar& car : garage::listGarage(garage::garageFolder()).cars)
        cmbVehicle.addItem(car.name.toStdString());
    // A car from outside the garage (a profile file the command line named) is shown as it stands.
    const std::string& car = session_.settings.VirtualVehicle;
    const std::string inForce = car.empty() ? garage::kDefaultCar : car;
    if (cmbVehicle.indexOf(inForce) < 0)
        cmbVehicle.addItem(inForce);
    cmbVehicle.setText(inForce);
    cmbVehicleState.setEnabled(session_.settings.PortNumber == kVirtualVehiclePort);
    vehicleChosen_ = false;
}

bool SettingsEditor::virtualPortChosen() const
{
    return cmbPort.text() == kVirtualVehicleEntry || cmbPort.text() == kVirtualAdapterEntry;
}

void SettingsEditor::edit(TextModel& field, const std::string& text)
{
    field.setText(text);
    cmdApply.setEnabled(true);
    if (&field == &txtP3)
        txtP3_Change();
}

void SettingsEditor::choose(ListModel& list, int index)
{
    list.setCurrentIndex(index);
    cmdApply.setEnabled(true);
    if (&list == &cmbPort || &list == &cmbInterface)
        session_.StoreInterface.reset();
    if (&list == &cmbPort) {
        session_.StorePortNumber.reset();
        if (virtualPortChosen())
            cmbInterface.setText(cmbPort.text() == kVirtualAdapterEntry ? kElm327InterfaceName : kInterfaceName);
        cmbVehicleState.setEnabled(virtualPortChosen());
    }
    if (&list == &cmbInterface && virtualPortChosen())
        cmbPort.setText(portEntry(kVirtualVehiclePort, cmbInterface.text() == kElm327InterfaceName));
    if (&list == &cmbVehicle)
        vehicleChosen_ = true;
}

void SettingsEditor::txtP3_Change()
{
    if (leadingNumber(txtP3.text()) > kP3Cap)
        txtP3.setText(std::to_string(kP3Cap));
}

bool SettingsEditor::cmdApply_Click()
{
    // Every number is read before anything changes, so a mistyped field applies nothing. Each
    // must fit its field, and the keep-alive period the timers.
    struct Field {
        const char* label;
        const std::string& text;
        std::optional<long> value;
        long min, max;
    };
    Field fields[] = {
        {"Com Port", cmbPort.text(), portNumber(cmbPort.text()), kMin16, kMax16},
        {"Keep Alive (mS)", txtKeepAlive.text(), wholeNumber(txtKeepAlive.text()), kMinKeepAliveMs, kMax16},
        {"Baud", txtBaud.text(), wholeNumber(txtBaud.text()), kMin32, kMax32},
        {"P4 Delay (mS)", txtP4.text(), wholeNumber(txtP4.text()), kMin16, kMax16},
        {"InterByte Delay (mS)", txtInterbyte.text(), wholeNumber(txtInterbyte.text()), kMin16, kMax16},
        {"P3 Delay (mS)", txtP3.text(), wholeNumber(txtP3.text()), kMin16, kMax16},
        {"Adapter Baud", cmbAdapterBaud.text(), adapterBaud(cmbAdapterBaud.text()), 0, kMax32},
    };
    for (const Field& f : fields) {
        std::string problem;
        if (!f.value)
            problem = " must be a whole number, not \"" + f.text + "\".";
        else if (*f.value < f.min || *f.value > f.max)
            problem = " must lie between " + std::to_string(f.min) + " and " + std::to_string(f.max) + ", not \"" +
                      f.text + "\".";
        if (!problem.empty()) {
            session_.shell.messageBox(kSettingsBoxTitle, f.label + problem, MessageIcon::Exclamation);
            return false;
        }
    }

    const bool elm327 = cmbInterface.text() == kElm327InterfaceName;
    const auto& names = ProtocolNames();
    const auto chosen = std::find(names.begin(), names.end(), cmbTypeProtocol.text());
    const int protocol = chosen == names.end() ? 0 : static_cast<int>(chosen - names.begin()) + 1;
    if (link::IsCan(protocol) && !elm327) {
        session_.shell.messageBox(kSettingsBoxTitle,
                                  "The protocol " + cmbTypeProtocol.text() +
                                      " is CAN, which the K-line cable cannot reach: choose the ELM327 interface for it.",
                                  MessageIcon::Exclamation);
        return false;
    }

    CommSettings& s = session_.settings;
    MainScreen& screen = session_.screen;
    const auto number = [&fields](int i) { return static_cast<int>(*fields[i].value); };
    s.PortNumber = number(0);
    s.KeepAlive = number(1);
    s.BaudRate = number(2);
    screen.tmrKeepAlive.setInterval(s.KeepAlive);
    screen.tmrKeepAliveEnhance.setInterval(s.KeepAlive);
    s.P4Delay = number(3);
    session_.link.SetP4Delay(s.P4Delay);
    s.InterByteDelay = number(4);
    session_.link.SetInterByteDelay(s.InterByteDelay);
    s.Kwp2000InitDelay = txtKwp2000InitDelay.text();
    session_.link.SetKwp2000InitDelay(s.Kwp2000InitDelay);
    s.P3Delay = number(5);
    session_.link.SetP3Delay(s.P3Delay);
    if (screen.sldSpeedP3.setValue(s.P3Delay))
        screen.lblSpeed.setText(std::to_string(s.P3Delay));

    if (protocol != 0) {
        s.ProtocolNumber = protocol;
        s.TryAllProtocols = protocol == link::TryAll;
    }
    s.Interface = elm327 ? kElm327Interface : kKLineCableInterface;
    s.AdapterBaud = number(6);
    PushInterface(session_);

    CommSettings stored = s;
    if (session_.StorePortNumber)
        stored.PortNumber = *session_.StorePortNumber;
    if (session_.StoreInterface)
        stored.Interface = *session_.StoreInterface;
    SaveCommSettings(stored);
    if (vehicleChosen_) {
        s.VirtualVehicle = cmbVehicle.text();
        SaveVirtualVehicle(s);
        vehicleChosen_ = false;
    }
    cmdApply.setEnabled(false);
    return true;
}

bool SettingsEditor::cmdDefault_Click()
{
    txtBaud.setText("10400");
    txtKeepAlive.setText("700");
    txtP4.setText("25");
    txtKwp2000InitDelay.setText("22");
    txtInterbyte.setText("5");
    cmbTypeProtocol.setCurrentIndex(kTryAllEntry);
    cmdApply.setEnabled(true);
    txtP3.setText("275");
    return cmdApply_Click();
}

void SettingsEditor::cmdClose_Click()
{
    Form_Load();
}

} // namespace kvx::settings
