#include "data/GridLayouts.h"
#include "link/Hex.h"
#include "log/LogFile.h"
#include "log/frmLogController.h"
#include "garage/ProfileReader.h"
#include "sim/VirtualVehicle.h"
#include "support/ProgramWindow.h"
#include "support/Watchdog.h"

#include <QCheckBox>
#include <QComboBox>
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <gtest/gtest.h>
#include <string>
#include <vector>

// Every service of the window on every car of the garage, through the K-line cable and through an
// ELM327 (a CAN car through the adapter alone): whatever a car holds, each button ends (no crash,
// no hang), loses no reply, and shows what that car has.

using namespace kvx;

namespace {

struct CarThrough {
    std::string file;
    bool elm327 = false;
};

void PrintTo(const CarThrough& c, std::ostream* os)
{
    *os << std::filesystem::path(c.file).stem().string() << (c.elm327 ? " through an ELM327" : " on the K-line cable");
}

std::vector<CarThrough> garageCars()
{
    std::vector<std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(KVX_RESOURCES_DIR "/vehicles"))
        if (entry.path().extension() == ".json")
            files.push_back(entry.path().string());
    std::sort(files.begin(), files.end());
    std::vector<CarThrough> cars;
    for (const auto& file : files) {
        if (garage::loadVehicleProfile(QString::fromStdString(file)).bus == sim::Bus::KLine)
            cars.push_back({file, false});
        cars.push_back({file, true});
    }
    return cars;
}

// The J2012 text of a two-byte code: the letter from the top two bits, then four hex digits.
std::string codeText(sim::TroubleCode code)
{
    static const char* kLetters = "PCBU";
    static const char* kDigits = "0123456789ABCDEF";
    std::string text(1, kLetters[code >> 14]);
    for (int shift = 12; shift >= 0; shift -= 4)
        text += kDigits[shift == 12 ? (code >> 12) & 0x3 : (code >> shift) & 0xF];
    return text;
}

// The code file the program ships with.
const std::string& descriptions()
{
    static const std::string text = [] {
        std::ifstream file(KVX_RESOURCES_DIR "/SAE OBD II CODES.dat", std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(file), {});
    }();
    return text;
}

std::vector<int> protocolsOf(const sim::VehicleProfile& car)
{
    static const std::map<sim::Bus, int> kCanProtocols = {{sim::Bus::Can11At500, link::Can11Bit500k},
                                                          {sim::Bus::Can29At500, link::Can29Bit500k},
                                                          {sim::Bus::Can11At250, link::Can11Bit250k},
                                                          {sim::Bus::Can29At250, link::Can29Bit250k}};
    if (car.bus != sim::Bus::KLine)
        return {kCanProtocols.at(car.bus), link::TryAll};
    std::vector<int> protocols;
    if (car.slowInit == sim::VehicleProfile::SlowInit::Iso9141)
        protocols.push_back(link::Iso9141Slow);
    if (car.slowInit == sim::VehicleProfile::SlowInit::Kwp2000)
        protocols.push_back(link::Kwp2000Slow);
    if (car.fastInit)
        protocols.push_back(link::Kwp2000Fast);
    protocols.push_back(link::TryAll);
    return protocols;
}

const sim::UnitProfile* unitAt(const sim::VehicleProfile& car, std::uint8_t address)
{
    for (const auto& unit : car.units)
        if (unit.address == address)
            return &unit;
    return nullptr;
}

template <typename Pick>
bool anyUnit(const sim::VehicleProfile& car, Pick pick)
{
    return std::any_of(car.units.begin(), car.units.end(), pick);
}

struct GarageCar : ::testing::TestWithParam<CarThrough> {
    sim::VehicleProfile car = garage::loadVehicleProfile(QString::fromStdString(GetParam().file));
    bool elm327 = GetParam().elm327;

    // The program on this car through the interface of the test, the stored protocol the given one.
    std::unique_ptr<test::ProgramWindow> program(int protocol)
    {
        const std::string port = std::to_string(kVirtualVehiclePort), type = std::to_string(protocol);
        const std::string interface = std::to_string(elm327 ? kElm327Interface : kKLineCableInterface);
        return std::make_unique<test::ProgramWindow>(
            descriptions().c_str(),
            test::StoredSettings{{"Port", port.c_str()}, {"TypeProtocol", type.c_str()}, {"Interface", interface.c_str()}},
            sim::configFor(car, 1));
    }
    // On CAN the oxygen-sensor results are monitor results: there is no service 05.
    bool o2TestsReachable() const { return car.bus == sim::Bus::KLine; }
};

std::string boxes(const test::ProgramWindow& p)
{
    std::string all;
    for (const auto& box : p.shell.boxes)
        all += box.title + ": " + box.text + "\n";
    return all;
}

// The unit whose messages the window shows.
const sim::UnitProfile& unitInUse(const sim::VehicleProfile& car, const Session& session)
{
    const sim::UnitProfile* unit = unitAt(car, static_cast<std::uint8_t>(std::stoi(session.EcuAddress, nullptr, 16)));
    return unit ? *unit : car.units.front();
}

// The codes a read lists: the window stops at the first code without a decimal description
// number, with the general fault report naming it.
std::vector<sim::TroubleCode> listedUntilAFault(const std::vector<sim::TroubleCode>& codes, std::string& fault)
{
    std::vector<sim::TroubleCode> listed;
    for (auto code : codes) {
        const std::string digits = codeText(code).substr(1);
        if (digits.find_first_not_of("0123456789") != std::string::npos || std::stoi(digits) > 4000) {
            fault = codeText(code);
            break;
        }
        listed.push_back(code);
    }
    return listed;
}

// Which rows of the live grid hold a value, by parameter text.
std::vector<std::string> filledRows(const GridModel& grid)
{
    std::vector<std::string> filled;
    for (int row = 1; row < grid.rows(); ++row)
        if (!grid.text(row, data::ValueColumn).empty())
            filled.push_back(grid.text(row, 1));
    return filled;
}

} // namespace

TEST_P(GarageCar, ConnectsWithEveryProtocolItAnswers)
{
    for (int protocol : protocolsOf(car)) {
        test::Watchdog watchdog(car.name + " protocol " + std::to_string(protocol));
        auto p = program(protocol);
        EXPECT_TRUE(p->actions.ConnectModule(ModuleGeneric)) << car.name << " protocol " << protocol << "\n" << boxes(*p);
        p->toolbar("Disconnect");
    }
}

TEST_P(GarageCar, EveryGenericServiceShowsWhatTheCarHolds)
{
    test::Watchdog watchdog(car.name);
    auto p = program(protocolsOf(car).front());
    ASSERT_TRUE(p->actions.ConnectModule(ModuleGeneric)) << boxes(*p);
    const sim::UnitProfile& engine = unitInUse(car, p->session);

    // A whole pass of live data: every parameter the unit in use declares gets its value.
    p->showTab(0);
    p->runFor("cmdRequestMode1", "cmdStop", p->screen.GridMode1.rows() + 2);
    const auto filled = filledRows(p->screen.GridMode1);
    for (const auto& [pid, source] : engine.pids) {
        const std::string text = link::toHex(link::Bytes{pid});
        if (std::find(filled.begin(), filled.end(), text) == filled.end() && pid % 0x20 != 0)
            ADD_FAILURE() << car.name << ": PID " << text << " has no value after a pass";
    }

    p->showTab(1);
    p->click("cmdRequestMode2");
    EXPECT_EQ(p->screen.txtMode2.text().find("No Response From ECU") == std::string::npos,
              anyUnit(car, [](const auto& u) { return u.freezeFrame.has_value(); }))
        << car.name << "\n" << p->screen.txtMode2.text();
    // A unit may declare the monitor status in its frame's bitmap (kwp-slow does); a frame never
    // carries it, so it is never asked.
    EXPECT_EQ(p->screen.txtMode2.text().find("Monitor status"), std::string::npos) << car.name;

    p->showTab(2);
    std::vector<std::string> faults;
    for (const auto* codes : {&engine.stored, &engine.pending}) {
        p->click(codes == &engine.stored ? "cmdMode3" : "cmdMode7");
        std::string fault;
        for (auto code : listedUntilAFault(*codes, fault))
            EXPECT_NE(p->screen.txtMode347.text().find(codeText(code)), std::string::npos) << car.name << " " << codeText(code);
        if (!fault.empty())
            faults.push_back(fault);
    }
    p->click("cmdMode4");
    p->click("cmdMode3");
    const bool refusesClear = engine.refusals.count(0x04) > 0;
    std::string fault;
    for (auto code : listedUntilAFault(engine.stored, fault))
        EXPECT_EQ(p->screen.txtMode347.text().find(codeText(code)) != std::string::npos, refusesClear)
            << car.name << " " << codeText(code) << " after clearing";
    if (refusesClear && !fault.empty())
        faults.push_back(fault);

    p->showTab(3);
    auto* sensors = p->find<QComboBox>("cmbMode5");
    const bool hasO2Tests = o2TestsReachable() && !engine.o2Tests.empty();
    if (sensors->count() > 0) {
        sensors->setCurrentIndex(0);
        emit sensors->activated(0);
    }
    p->click("cmdRequestMode5");
    EXPECT_EQ(p->screen.gridMode5.rows() > 1, hasO2Tests) << car.name;

    p->showTab(4);
    p->click("cmdRequestMode6");
    EXPECT_EQ(p->screen.gridMode6.rows() > 1, !engine.monitorTests.empty()) << car.name;

    p->showTab(5);
    for (auto* button : p->window->findChildren<QPushButton*>("cmdModeOnce")) {
        p->click(button);
        EXPECT_FALSE(p->screen.txtInfo.text().empty()) << car.name << " info " << button->text().toStdString();
    }
    p->click("cmdReadVin");
    if (!engine.vin.empty()) {
        EXPECT_NE(p->screen.txtInfo.text().find(engine.vin), std::string::npos) << car.name;
    }

    p->showTab(6);
    const auto lists = p->window->findChildren<QComboBox*>("cmbPid");
    for (int slot = 0; slot < int(lists.size()); ++slot)
        if (lists[slot]->count() > slot + 1) {
            lists[slot]->setCurrentIndex(slot + 1);
            emit lists[slot]->activated(slot + 1);
        }
    p->runFor("cmdRequestLiveCombo", "cmdStopLiveCombo", 12);
    EXPECT_FALSE(p->session.Busy) << car.name;
    p->toolbar("Disconnect");
    // No box but the fault report of each code the descriptions cannot be looked up for.
    ASSERT_EQ(p->shell.boxes.size(), faults.size()) << car.name << "\n" << boxes(*p);
    for (std::size_t i = 0; i < faults.size(); ++i)
        EXPECT_NE(p->shell.boxes[i].text.find(faults[i]), std::string::npos) << car.name << "\n" << boxes(*p);
}

TEST_P(GarageCar, ALiveRunRecordsAndReplays)
{
    test::Watchdog watchdog(car.name);
    auto p = program(protocolsOf(car).front());
    ASSERT_TRUE(p->actions.ConnectModule(ModuleGeneric)) << boxes(*p);
    QTest::mouseClick(p->find<QCheckBox>("chkLog"), Qt::LeftButton);
    ASSERT_TRUE(p->session.Logging);
    p->runFor("cmdRequestMode1", "cmdStop", 2 * p->screen.GridMode1.rows());
    const auto live = filledRows(p->screen.GridMode1);
    p->toolbar("Disconnect");

    const QStringList files = QDir(p->logFolder()).entryList({"*.log"});
    ASSERT_EQ(files.size(), 1) << car.name;
    const std::string path = QDir(p->logFolder()).filePath(files[0]).toStdString();
    EXPECT_NE(log::LogFile(path, log::LogFile::Mode::Read).readRecord(99), "0") << car.name;

    p->toolbar("Log Controller");
    auto* player = p->window->findChild<log::frmLogController*>();
    ASSERT_NE(player, nullptr);
    player->setFileChooser([&] { return QString::fromStdString(path); });
    player->imgOpen_Click();
    player->controller().setSpeed(0);
    player->controller().play();
    EXPECT_EQ(p->screen.StatusBar1.text(1), "LOG...END") << car.name;
    EXPECT_EQ(filledRows(p->screen.GridMode1), live) << car.name;
    player->close();
}

TEST_P(GarageCar, ManufacturerModulesWhereTheCarHasThem)
{
    test::Watchdog watchdog(car.name);
    const sim::UnitProfile* engine = unitAt(car, 0x10);
    const bool nissanItems = engine && engine->nissanItems && !engine->nissanItems->empty();
    const bool toyota = engine && engine->toyotaRanges.count(0xB0) > 0;
    for (const auto& [module, offered] : {std::pair{int(ModuleNissanEcu), nissanItems}, std::pair{int(ModuleToyota), toyota}}) {
        auto p = program(protocolsOf(car).front());
        const bool connected = p->chooseModule(module);
        if (!offered) {
            // A unit with nothing to offer ends the try cleanly, whichever way it ends.
            if (connected)
                p->toolbar("Disconnect");
            EXPECT_FALSE(p->session.Busy) << car.name << " module " << module;
            continue;
        }
        ASSERT_TRUE(connected) << car.name << " module " << module << "\n" << boxes(*p);
        p->runFor("cmdRequestMode1", "cmdStop", 2 * p->screen.GridMode1.rows() + 2);
        EXPECT_FALSE(filledRows(p->screen.GridMode1).empty()) << car.name << " module " << module;
        p->toolbar("Disconnect");
    }
}

INSTANTIATE_TEST_SUITE_P(Garage, GarageCar, ::testing::ValuesIn(garageCars()),
                         [](const auto& info) {
                             std::string name = std::filesystem::path(info.param.file).stem().string() +
                                                (info.param.elm327 ? "_elm327" : "");
                             std::replace_if(name.begin(), name.end(), [](char c) { return !std::isalnum(static_cast<unsigned char>(c)); }, '_');
                             return name;
                         });
