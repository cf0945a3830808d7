#include "garage/ProfileReader.h"

#include "garage/ProfileValues.h"
#include "sim/VirtualVehicle.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QRegularExpression>
#include <algorithm>

namespace kvx::garage {

namespace {

using sim::ValueSource;

// A ramp longer than a day is a constant in all but name, and a day of virtual time is the
// longest run the suite makes.
constexpr double kLongestRampSeconds = 24.0 * 3600.0;
constexpr double kLatestFreezeSeconds = 24.0 * 3600.0;
constexpr int kP2MinMs = 25;
constexpr int kP2MaxMs = 50;
constexpr int kVinLength = 17;

ValueSource readSource(const QJsonValue& value, const JsonPlace& at)
{
    const QJsonObject o = readObject(value, at);
    onlyKeys(o, at, {"drive", "constant", "ramp"});
    if (o.size() != 1)
        at.fail(QStringLiteral("expected one of {\"drive\": true}, {\"constant\": \"..\"} or {\"ramp\": {...}}"));
    ValueSource source;
    if (o.contains("drive")) {
        if (!readFlag(o["drive"], at.key("drive")))
            at.key("drive").fail(QStringLiteral("expected true (leave the item out if the unit lacks it)"));
        source.kind = ValueSource::Kind::Drive;
    } else if (o.contains("constant")) {
        source.kind = ValueSource::Kind::Constant;
        source.bytes = readBytes(o["constant"], at.key("constant"));
    } else {
        const JsonPlace ramp = at.key("ramp");
        const QJsonObject r = readObject(o["ramp"], ramp);
        onlyKeys(r, ramp, {"from", "to", "seconds"});
        source.kind = ValueSource::Kind::Ramp;
        source.bytes = readBytes(r["from"], ramp.key("from"));
        source.to = readBytes(r["to"], ramp.key("to"));
        if (source.to.size() != source.bytes.size())
            ramp.key("to").fail("expected as many bytes as \"from\" (" + QString::number(source.bytes.size()) + ")");
        source.periodSeconds = readNumber(r["seconds"], ramp.key("seconds"), 0.001, kLongestRampSeconds);
    }
    return source;
}

template <typename Key, typename KeyReader>
std::map<Key, ValueSource> readSources(const QJsonValue& value, const JsonPlace& at, KeyReader keyOf)
{
    std::map<Key, ValueSource> items;
    const QJsonObject o = readObject(value, at);
    for (auto it = o.begin(); it != o.end(); ++it) {
        const JsonPlace item = at.key(it.key());
        items[keyOf(it.key(), item)] = readSource(it.value(), item);
    }
    return items;
}

template <typename T, typename ItemReader>
std::vector<T> readItems(const QJsonValue& value, const JsonPlace& at, ItemReader read)
{
    std::vector<T> items;
    const QJsonArray list = readList(value, at);
    for (qsizetype i = 0; i < list.size(); ++i)
        items.push_back(read(list[i], at.index(i)));
    return items;
}

std::uint8_t readPidKey(const QString& key, const JsonPlace& at)
{
    const std::uint8_t pid = byteKey(key, at);
    if (pid % 0x20 == 0)
        at.fail(QStringLiteral("the support bitmaps (00, 20, 40, ...) are worked out from the other items; leave them out"));
    return pid;
}

sim::FreezeFrameProfile readFreezeFrame(const QJsonValue& value, const JsonPlace& at,
                                        const std::map<std::uint8_t, ValueSource>& pids)
{
    const QJsonObject o = readObject(value, at);
    onlyKeys(o, at, {"code", "pids", "atSeconds"});
    sim::FreezeFrameProfile frame;
    frame.code = readTroubleCode(o["code"], at.key("code"));
    frame.pids = readItems<std::uint8_t>(o["pids"], at.key("pids"), [&pids](const QJsonValue& v, const JsonPlace& p) {
        const std::uint8_t pid = readByte(v, p);
        if (pids.count(pid) == 0)
            p.fail("expected one of the unit's own \"pids\"; " + QString::fromStdString(link::toHex(pid)) +
                   " is not among them");
        return pid;
    });
    if (o.contains("atSeconds"))
        frame.atSeconds = readNumber(o["atSeconds"], at.key("atSeconds"), 0, kLatestFreezeSeconds);
    return frame;
}

sim::O2TestResult readO2Test(const QJsonValue& value, const JsonPlace& at)
{
    const QJsonObject o = readObject(value, at);
    onlyKeys(o, at, {"tid", "sensor", "value", "min", "max"});
    return {readByte(o["tid"], at.key("tid")), readByte(o["sensor"], at.key("sensor")),
            readByte(o["value"], at.key("value")), readByte(o["min"], at.key("min")), readByte(o["max"], at.key("max"))};
}

sim::MonitorResult readMonitorTest(const QJsonValue& value, const JsonPlace& at)
{
    const QJsonObject o = readObject(value, at);
    onlyKeys(o, at, {"tid", "cid", "value", "limit", "scaling"});
    sim::MonitorResult m{readByte(o["tid"], at.key("tid")), readByte(o["cid"], at.key("cid")),
                         readWord(o["value"], at.key("value")), readWord(o["limit"], at.key("limit"))};
    if (o.contains("scaling"))
        m.scaling = readByte(o["scaling"], at.key("scaling"));
    return m;
}

std::string readVin(const QJsonValue& value, const JsonPlace& at)
{
    static const QRegularExpression vin(QStringLiteral("^[A-Z0-9]{%1}$").arg(kVinLength));
    const QString text = readText(value, at);
    if (!vin.match(text).hasMatch())
        at.expected(QStringLiteral("the 17 capital letters and digits of a VIN"), value);
    return text.toStdString();
}

std::uint8_t readToyotaRange(const QJsonValue& value, const JsonPlace& at)
{
    const std::uint8_t range = value.isString() ? readByte(value, at) : 0;
    if (range != 0xB0 && range != 0xC0 && range != 0xE0)
        at.expected(QStringLiteral("\"B0\", \"C0\" or \"E0\""), value);
    return range;
}

sim::UnitProfile readUnit(const QJsonValue& value, const JsonPlace& at)
{
    const QJsonObject o = readObject(value, at);
    onlyKeys(o, at,
             {"address", "replyRank", "pids", "freezeFrame", "stored", "pending", "o2Tests", "monitorTests", "vin",
              "refusals", "pendingFirst", "kwpKeyBytes", "kwpPhysicalKb1", "nissanItems", "toyotaRanges"});
    sim::UnitProfile unit;
    if (!o.contains("address"))
        at.key("address").fail(QStringLiteral("expected the unit's address, such as \"10\""));
    unit.address = readByte(o["address"], at.key("address"));
    if (o.contains("replyRank"))
        unit.replyRank = readWholeNumber(o["replyRank"], at.key("replyRank"), 0, 255);
    if (o.contains("pids"))
        unit.pids = readSources<std::uint8_t>(o["pids"], at.key("pids"), readPidKey);
    if (o.contains("freezeFrame"))
        unit.freezeFrame = readFreezeFrame(o["freezeFrame"], at.key("freezeFrame"), unit.pids);
    if (o.contains("stored"))
        unit.stored = readItems<sim::TroubleCode>(o["stored"], at.key("stored"), readTroubleCode);
    if (o.contains("pending"))
        unit.pending = readItems<sim::TroubleCode>(o["pending"], at.key("pending"), readTroubleCode);
    if (o.contains("o2Tests"))
        unit.o2Tests = readItems<sim::O2TestResult>(o["o2Tests"], at.key("o2Tests"), readO2Test);
    if (o.contains("monitorTests"))
        unit.monitorTests = readItems<sim::MonitorResult>(o["monitorTests"], at.key("monitorTests"), readMonitorTest);
    if (o.contains("vin"))
        unit.vin = readVin(o["vin"], at.key("vin"));
    if (o.contains("refusals")) {
        const JsonPlace place = at.key("refusals");
        const QJsonObject refusals = readObject(o["refusals"], place);
        for (auto it = refusals.begin(); it != refusals.end(); ++it) {
            const JsonPlace service = place.key(it.key());
            unit.refusals[byteKey(it.key(), service)] = readByte(it.value(), service);
        }
    }
    if (o.contains("pendingFirst")) {
        const auto services = readItems<std::uint8_t>(o["pendingFirst"], at.key("pendingFirst"), readByte);
        unit.pendingFirst.insert(services.begin(), services.end());
    }
    if (o.contains("kwpKeyBytes")) {
        const JsonPlace place = at.key("kwpKeyBytes");
        const link::Bytes kb = readBytes(o["kwpKeyBytes"], place);
        if (kb.size() != 2)
            place.expected(QStringLiteral("the two key bytes KB1 KB2 such as \"EF 8F\""), o["kwpKeyBytes"]);
        unit.kwpKb1 = kb[0];
        unit.kwpKb2 = kb[1];
    }
    if (o.contains("kwpPhysicalKb1"))
        unit.kwpKb1Physical = readByte(o["kwpPhysicalKb1"], at.key("kwpPhysicalKb1"));
    if (o.contains("nissanItems"))
        unit.nissanItems = readSources<std::uint16_t>(o["nissanItems"], at.key("nissanItems"), wordKey);
    if (o.contains("toyotaRanges")) {
        const auto ranges = readItems<std::uint8_t>(o["toyotaRanges"], at.key("toyotaRanges"), readToyotaRange);
        unit.toyotaRanges.insert(ranges.begin(), ranges.end());
    }
    return unit;
}

// QJsonObject forgets the order of its keys, so the rule that a file opens with its comment is
// checked on the text itself.
bool opensWithComment(const QByteArray& json)
{
    static const QRegularExpression opening(QStringLiteral("^\\s*\\{\\s*\"comment\"\\s*:"));
    return opening.match(QString::fromUtf8(json)).hasMatch();
}

sim::VehicleProfile::SlowInit readSlowInit(const QJsonValue& value, const JsonPlace& at)
{
    using SlowInit = sim::VehicleProfile::SlowInit;
    const QString text = value.toString();
    if (text == "iso9141")
        return SlowInit::Iso9141;
    if (text == "kwp2000")
        return SlowInit::Kwp2000;
    if (text != "none" || !value.isString())
        at.expected(QStringLiteral("\"iso9141\", \"kwp2000\" or \"none\""), value);
    return SlowInit::None;
}

sim::Bus readBus(const QJsonValue& value, const JsonPlace& at)
{
    static const std::pair<const char*, sim::Bus> kBuses[] = {
        {"kline", sim::Bus::KLine},           {"can11/500", sim::Bus::Can11At500}, {"can29/500", sim::Bus::Can29At500},
        {"can11/250", sim::Bus::Can11At250}, {"can29/250", sim::Bus::Can29At250},
    };
    for (const auto& [text, bus] : kBuses)
        if (value.isString() && value.toString() == text)
            return bus;
    at.expected(QStringLiteral("\"kline\", \"can11/500\", \"can29/500\", \"can11/250\" or \"can29/250\""), value);
    return sim::Bus::KLine;
}

std::uint8_t readIsoKeyBytes(const QJsonValue& value, const JsonPlace& at)
{
    const auto kb = value.isString() ? link::fromHex(value.toString().remove(' ').toStdString()) : std::nullopt;
    const link::Bytes nine{0x08, 0x08}, ninetyFour{0x94, 0x94};
    if (!kb || (*kb != nine && *kb != ninetyFour))
        at.expected(QStringLiteral("\"08 08\" or \"94 94\""), value);
    return kb->front();
}

QString lineAndColumn(const QByteArray& json, qsizetype offset)
{
    const QByteArray before = json.left(offset);
    const qsizetype line = before.count('\n') + 1;
    const qsizetype column = offset - (before.lastIndexOf('\n') + 1) + 1;
    return "line " + QString::number(line) + ", column " + QString::number(column);
}

} // namespace

sim::VehicleProfile readVehicleProfile(const QByteArray& json, const QString& fileName, const std::string& name)
{
    const JsonPlace top(fileName);
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    if (error.error != QJsonParseError::NoError)
        top.fail("not JSON: " + error.errorString() + " at " + lineAndColumn(json, error.offset));
    if (!document.isObject())
        top.fail(QStringLiteral("expected an object {...} holding the car"));
    if (!opensWithComment(json))
        top.key("comment").fail(
            QStringLiteral("expected first in the file, saying what real situation the car stands for"));
    const QJsonObject o = document.object();
    onlyKeys(o, top, {"comment", "bus", "slowInit", "isoKeyBytes", "fastInit", "p2Ms", "units"});

    sim::VehicleProfile car;
    car.name = name;
    car.comment = readText(o["comment"], top.key("comment")).simplified().toStdString();
    if (car.comment.empty())
        top.key("comment").fail(QStringLiteral("expected what real situation the car stands for, not an empty text"));
    if (o.contains("bus"))
        car.bus = readBus(o["bus"], top.key("bus"));
    if (o.contains("slowInit"))
        car.slowInit = readSlowInit(o["slowInit"], top.key("slowInit"));
    if (o.contains("isoKeyBytes"))
        car.isoKeyByte = readIsoKeyBytes(o["isoKeyBytes"], top.key("isoKeyBytes"));
    if (o.contains("fastInit"))
        car.fastInit = readFlag(o["fastInit"], top.key("fastInit"));
    if (o.contains("p2Ms"))
        car.p2 = link::ms(readWholeNumber(o["p2Ms"], top.key("p2Ms"), kP2MinMs, kP2MaxMs));

    const JsonPlace units = top.key("units");
    if (!o.contains("units"))
        units.fail(QStringLiteral("expected the list of the car's units"));
    car.units = readItems<sim::UnitProfile>(o["units"], units, readUnit);
    if (car.units.empty())
        units.fail(QStringLiteral("expected at least one unit"));
    for (std::size_t i = 1; i < car.units.size(); ++i) {
        const auto same = [&](const sim::UnitProfile& u) { return u.address == car.units[i].address; };
        if (std::any_of(car.units.begin(), car.units.begin() + static_cast<std::ptrdiff_t>(i), same))
            units.index(static_cast<qsizetype>(i)).key("address").fail(QStringLiteral("expected an address no other unit has"));
    }
    if (car.bus == sim::Bus::KLine && car.slowInit == sim::VehicleProfile::SlowInit::None && !car.fastInit)
        top.fail(QStringLiteral("expected a car that wakes up somehow: \"slowInit\" is \"none\" and \"fastInit\" false"));
    // What the simulator cannot give (an item the drive has no value for) is refused here too, so
    // a car that loads is a car that runs.
    try {
        sim::configFor(car, 1);
    } catch (const std::invalid_argument& e) {
        top.fail(QString::fromStdString(e.what()));
    }
    return car;
}

sim::VehicleProfile loadVehicleProfile(const QString& path)
{
    const QFileInfo info(path);
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw ProfileError((path + ": cannot be read: " + file.errorString()).toStdString());
    return readVehicleProfile(file.readAll(), path, info.completeBaseName().toStdString());
}

} // namespace kvx::garage
