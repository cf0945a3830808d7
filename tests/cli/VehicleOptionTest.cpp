#include "KvxProcess.h"

#include <QDir>

namespace kvx::cli::test {
namespace {

TEST(VehicleOption, SimListNamesEveryCarOfTheGarageALineWithWhatItStandsFor)
{
    const Kvx kvx;
    const Result run = kvx.run({"sim", "--list"});
    EXPECT_EQ(run.code, 0) << run.err.toStdString();
    const QStringList files = QDir(KVX_RESOURCES_DIR "/vehicles").entryList({"*.json"}, QDir::Files, QDir::Name);
    ASSERT_EQ(run.lines().size(), files.size()) << run.out.toStdString();
    for (qsizetype i = 0; i < files.size(); ++i) {
        const QStringList words = run.lines()[i].split(' ', Qt::SkipEmptyParts);
        EXPECT_EQ(words.value(0) + ".json", files[i]);
        EXPECT_GT(words.size(), 8) << "no comment after the name: " << run.lines()[i].toStdString();
    }
}

TEST(VehicleOption, ACarThatCannotBeHadIsAUsageErrorSayingWhy)
{
    QTemporaryDir dir;
    const QString broken = dir.filePath("broken.json");
    QFile file(broken);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(R"({"comment": "a car with bad hex", "units": [{"address": "10", "pids": {"0C": {"constant": "1AG8"}}}]})");
    file.close();

    const Kvx kvx;
    const struct {
        QStringList args;
        QString said;
    } cases[] = {
        {{"dtc", "--port", "sim", "--vehicle", "lorry"}, "--vehicle: no car named 'lorry' in the garage"},
        {{"dtc", "--port", "sim", "--vehicle", broken},
         broken + ": units[0].pids.0C.constant: expected hex bytes such as \"1A F8\", not \"1AG8\""},
        {{"raw", "--port", "sim", "--vehicle", broken, "686AF10100"}, "units[0].pids.0C.constant"},
        {{"dtc", "--port", "3", "--vehicle", "hybrid"}, "--vehicle is for the virtual vehicle"},
        {{"sim", "--pty", "--vehicle", broken}, "units[0].pids.0C.constant"},
        {{"sim", "--list", "--vehicle", "hybrid"}, "--list goes alone"},
        {{"sim", "--pty", "--vehicle", "can-500"}, "can-500 is a CAN car, which no K-line cable reaches; serve it with --elm327"},
        {{"dtc", "--port", "sim", "--interface", "elm327", "--faults", "0.1"}, "the emulated ELM327 answers without faults"},
    };
    for (const auto& c : cases) {
        const Result run = kvx.run(c.args);
        const std::string args = c.args.join(' ').toStdString();
        EXPECT_EQ(run.code, 2) << args;
        EXPECT_TRUE(run.err.contains(c.said)) << args << ": " << run.err.toStdString();
        EXPECT_TRUE(run.out.isEmpty()) << args << ": " << run.out.toStdString();
    }
}

TEST(VehicleOption, TheChosenCarIsTheOneThatAnswers)
{
    const Kvx kvx;
    // The built-in car answers a 5-baud wake-up as ISO 9141-2 only; the slow-init KWP car as ISO 14230.
    const QStringList slowKwp{"raw", "--port", "sim", "--virtual-time", "--protocol", "2", "C033F10100"};
    EXPECT_EQ(kvx.run(slowKwp).code, 1);
    const Result kwp = kvx.run(slowKwp + QStringList{"--vehicle", "kwp-slow"});
    EXPECT_EQ(kwp.code, 0) << kwp.err.toStdString();
    EXPECT_TRUE(kwp.out.contains("awake on protocol 2")) << kwp.out.toStdString();
    // Its key bytes E9 8F put the length in the format byte and the addresses in every header.
    EXPECT_TRUE(kwp.out.contains("reply   86F11041")) << kwp.out.toStdString();

    // Its codes carry hex digits: listed, each without a description, where the window's read stops.
    const Result hybrid = kvx.run({"dtc", "--port", "sim", "--virtual-time", "--vehicle", "hybrid"});
    EXPECT_EQ(hybrid.code, 0) << hybrid.err.toStdString();
    EXPECT_TRUE(hybrid.out.startsWith("P0A80 - No Desciption Available")) << hybrid.out.toStdString();
    EXPECT_TRUE(hybrid.out.contains("B1A00")) << hybrid.out.toStdString();
    EXPECT_FALSE(hybrid.out.contains("P0301")) << "the built-in car's codes:\n" << hybrid.out.toStdString();
}

// A car served on a pseudo-terminal by another kvx, as other software would find it.
class ServedCar {
public:
    ServedCar(const Kvx& kvx, const QStringList& args)
    {
        kvx.start(server_, QStringList{"sim", "--pty"} + args);
        QString out;
        EXPECT_TRUE(waitForText(server_, out, QProcess::StandardOutput, "\n", std::chrono::seconds(20)));
        path_ = out.trimmed();
    }
    ~ServedCar()
    {
        server_.kill();
        server_.waitForFinished();
    }
    const QString& path() const { return path_; }

private:
    QProcess server_;
    QString path_;
};

TEST(VehicleOption, CanCarsAnswerThroughAnElm327AndAWrongInterfaceIsSaidPlainly)
{
    const Kvx kvx;
    const Result live = kvx.run({"live", "--port", "sim", "--interface", "elm327", "--vehicle", "can-500", "--virtual-time",
                                 "--count", "2", "0C", "0D"});
    EXPECT_EQ(live.code, 0) << live.err.toStdString();
    EXPECT_EQ(live.out.count("Engine speed"), 2) << live.out.toStdString();
    EXPECT_EQ(live.out.count("Vehicle speed"), 2) << live.out.toStdString();
    const Result raw = kvx.run({"raw", "--port", "sim", "--interface", "elm327", "--vehicle", "can-500", "--virtual-time",
                                "686AF1010C"});
    EXPECT_TRUE(raw.out.contains("awake on protocol 5 (CAN 11bit 500k)\nrequest 686AF1010C\n")) << raw.out.toStdString();

    const Result cable = kvx.run({"dtc", "--port", "sim", "--vehicle", "can-500", "--virtual-time"});
    EXPECT_EQ(cable.code, 1);
    EXPECT_TRUE(cable.err.contains("on CAN, which a K-line cable cannot reach")) << cable.err.toStdString();

    // On a pseudo-terminal: the adapter in front of a CAN car, then a plain K-line bus that only
    // echoes what the ELM327 engine says to it. The K-line engine tried on the adapter first leaves
    // its bytes on the adapter's input, which must not cost the next connection.
    {
        const ServedCar adapter(kvx, {"--elm327", "--vehicle", "can29-250"});
        const Result kline = kvx.run({"raw", "--port", adapter.path(), "--interface", "kline", "--protocol", "3", "C033F10100"});
        EXPECT_EQ(kline.code, 1);
        const Result codes = kvx.run({"dtc", "--port", adapter.path(), "--interface", "elm327"});
        EXPECT_EQ(codes.code, 0) << codes.err.toStdString();
        EXPECT_TRUE(codes.out.startsWith("P0087 - Fuel Rail/System Pressure - Too Low")) << codes.out.toStdString();
    }
    const ServedCar bus(kvx, {});
    const Result refused = kvx.run({"dtc", "--port", bus.path(), "--interface", "elm327"});
    EXPECT_EQ(refused.code, 1);
    EXPECT_TRUE(refused.err.contains("The device on " + bus.path() + " did not answer the reset (ATZ)"))
        << refused.err.toStdString();
}

} // namespace
} // namespace kvx::cli::test
