#include "KvxProcess.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace kvx::cli::test {
namespace {

constexpr const char* kVirtual = "kvx: on the VIRTUAL VEHICLE, not a car";

// Every line a JSON object; fails the test on the first that is not.
std::vector<QJsonObject> jsonLines(const Result& run)
{
    std::vector<QJsonObject> objects;
    for (const QString& line : run.lines()) {
        QJsonParseError error;
        const QJsonDocument doc = QJsonDocument::fromJson(line.toUtf8(), &error);
        EXPECT_TRUE(doc.isObject()) << line.toStdString() << ": " << error.errorString().toStdString();
        objects.push_back(doc.object());
    }
    return objects;
}

TEST(ServiceCommands, ConnectOnTheSettingsPortAndSayWhenItIsTheVirtualVehicle)
{
    Kvx kvx;
    kvx.setting("Port", "0");
    const Result onVehicle = kvx.run({"info", "vin", "--virtual-time", "--format", "json"});
    EXPECT_EQ(onVehicle.code, 0) << onVehicle.err.toStdString();
    EXPECT_TRUE(onVehicle.err.contains(kVirtual));
    const auto vin = jsonLines(onVehicle);
    ASSERT_EQ(vin.size(), 1u) << onVehicle.out.toStdString();
    EXPECT_EQ(vin[0]["item"].toString(), "vin");
    EXPECT_TRUE(vin[0]["lines"].toArray().at(0).toString().startsWith("VIN: ")) << onVehicle.out.toStdString();

    // A cable port that is not there: nothing invented, the device named, no word of a vehicle.
    kvx.setting("Port", "16");
    const Result onCable = kvx.run({"dtc"});
    EXPECT_EQ(onCable.code, 1);
    EXPECT_TRUE(onCable.out.isEmpty()) << onCable.out.toStdString();
    EXPECT_TRUE(onCable.err.contains("/dev/ttyUSB15")) << onCable.err.toStdString();
    EXPECT_FALSE(onCable.err.contains("VIRTUAL"));
    EXPECT_TRUE(kvx.run({"dtc", "--help"}).out.contains("/dev/ttyUSB15"));

    const Result raw = kvx.run({"raw", "--port", "sim", "--virtual-time", "686AF10100"});
    EXPECT_EQ(raw.code, 0) << raw.err.toStdString();
    EXPECT_TRUE(raw.err.contains(kVirtual));

    // A port the user may not open: that reason, and the command that gives the right.
    QTemporaryDir devices;
    const QString locked = devices.filePath("ttyUSB0");
    QFile(locked).open(QIODevice::WriteOnly);
    QFile::setPermissions(locked, {});
    Kvx user;
    user.withoutRootsRights();
    const Result refused = user.run({"dtc", "--port", locked});
    EXPECT_EQ(refused.code, 1);
    EXPECT_TRUE(refused.err.contains("No permission to open " + locked + ": your user must be in the group dialout"))
        << refused.err.toStdString();
    EXPECT_TRUE(refused.err.contains("sudo usermod -aG dialout $USER, then log out and back in"));
}

TEST(ServiceCommands, TroubleCodesAsTextAndAsJsonLinesTheSameWay)
{
    const Kvx kvx;
    const Result text = kvx.run({"dtc", "--port", "sim", "--virtual-time"});
    const Result json = kvx.run({"dtc", "--port", "sim", "--virtual-time", "--format", "json"});
    ASSERT_EQ(text.code, 0) << text.err.toStdString();
    ASSERT_EQ(json.code, 0) << json.err.toStdString();
    const QStringList lines = text.lines();
    const auto objects = jsonLines(json);
    // Two frames of three codes: the first frame's lines come again with the second's.
    ASSERT_EQ(lines.size(), 9) << text.out.toStdString();
    ASSERT_EQ(objects.size(), 9u) << json.out.toStdString();
    EXPECT_EQ(lines[0], lines[3]);
    for (std::size_t i = 0; i < objects.size(); ++i)
        EXPECT_EQ(objects[i]["code"].toString() + " - " + objects[i]["description"].toString(),
                  lines[static_cast<int>(i)]);
}

TEST(ServiceCommands, FreezeFrameAndMonitorTestsAsJsonLines)
{
    const Kvx kvx;
    const Result freeze = kvx.run({"freeze", "--port", "sim", "--virtual-time", "--format", "json"});
    ASSERT_EQ(freeze.code, 0) << freeze.err.toStdString();
    bool coolant = false;
    for (const QJsonObject& o : jsonLines(freeze)) {
        EXPECT_FALSE(o["metric"].toString().isEmpty()) << o["description"].toString().toStdString();
        // The values sit in fixed columns of characters; a "°" must not pull a byte across.
        if (o["description"].toString() == "Engine coolant temperature") {
            coolant = true;
            EXPECT_TRUE(o["metric"].toString().endsWith(" °C")) << o["metric"].toString().toStdString();
            EXPECT_TRUE(o["us"].toString().endsWith(" °F")) << o["us"].toString().toStdString();
        }
    }
    EXPECT_TRUE(coolant) << freeze.out.toStdString();

    const Result monitor = kvx.run({"monitor", "--port", "sim", "--virtual-time", "--format", "json"});
    const auto tests = jsonLines(monitor);
    ASSERT_EQ(tests.size(), 8u) << monitor.out.toStdString();
    int failing = 0;
    for (const QJsonObject& o : tests) {
        EXPECT_EQ(o.keys(), QStringList({"cid", "description", "limit", "pass_fail", "result", "tid", "type"}));
        failing += o["pass_fail"].toString() == "FAIL";
    }
    EXPECT_EQ(failing, 2);
}

} // namespace
} // namespace kvx::cli::test
