#include "KvxProcess.h"

#include "log/LogSummary.h"

#include <QDateTime>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

#include <csignal>
#include <map>

namespace kvx::cli::test {
namespace {

using namespace std::chrono_literals;

// The character where each column of a kvx live line starts: columns are two or more blanks apart.
std::vector<int> columnStarts(const QString& line)
{
    static const QRegularExpression gap(QStringLiteral("(?<=\\S) {2,}(?=\\S)"));
    std::vector<int> starts;
    for (auto it = gap.globalMatch(line); it.hasNext();)
        starts.push_back(static_cast<int>(it.next().capturedEnd()));
    return starts;
}

TEST(LiveCommand, ColumnsLineUpByCharactersWhateverTheUnitSigns)
{
    const Kvx kvx;
    const Result run = kvx.run({"live", "--port", "sim", "--virtual-time", "--count", "2", "05", "0C", "0D", "0F"});
    ASSERT_EQ(run.code, 0) << run.err.toStdString();
    const QStringList lines = run.lines();
    ASSERT_EQ(lines.size(), 8) << run.out.toStdString();
    // "°C" is two characters and three bytes; the columns after it must not move.
    ASSERT_TRUE(lines[0].contains("°C")) << lines[0].toStdString();
    const std::vector<int> first = columnStarts(lines[0]);
    ASSERT_EQ(first.size(), 4u) << lines[0].toStdString();
    for (const QString& line : lines)
        EXPECT_EQ(columnStarts(line), first) << line.toStdString();
}

TEST(LiveCommand, ScriptsGetCsvOrJsonLinesEachWithTheTimeItsValueCame)
{
    const Kvx kvx;
    const QDateTime before = QDateTime::currentDateTimeUtc();
    const Result csv = kvx.run({"live", "--port", "sim", "--virtual-time", "--count", "2", "--format", "csv", "05", "0C"});
    ASSERT_EQ(csv.code, 0) << csv.err.toStdString();
    const QStringList rows = csv.lines();
    ASSERT_EQ(rows.size(), 5) << csv.out.toStdString();
    EXPECT_EQ(rows[0], "Time,Pass,PID,Description,Metric,US");
    EXPECT_TRUE(rows[1].contains(",1,05,Engine coolant temperature,")) << rows[1].toStdString();
    EXPECT_TRUE(rows[4].contains(",2,0C,Engine speed,")) << rows[4].toStdString();

    const Result json = kvx.run({"live", "--port", "sim", "--virtual-time", "--count", "1", "--format", "json", "05", "0C"});
    ASSERT_EQ(json.code, 0) << json.err.toStdString();
    const QStringList lines = json.lines();
    ASSERT_EQ(lines.size(), 2) << json.out.toStdString();
    QDateTime previous = before;
    for (const QString& line : lines) {
        const QJsonObject o = QJsonDocument::fromJson(line.toUtf8()).object();
        EXPECT_EQ(o["pass"].toInt(), 1) << line.toStdString();
        const QDateTime time = QDateTime::fromString(o["time"].toString(), Qt::ISODateWithMs);
        EXPECT_TRUE(time.isValid() && time >= previous && time <= QDateTime::currentDateTimeUtc()) << line.toStdString();
        previous = time;
        EXPECT_FALSE(o["metric"].toString().isEmpty()) << line.toStdString();
    }
    EXPECT_EQ(QJsonDocument::fromJson(lines[0].toUtf8()).object()["us"].toString().right(2), "°F");
}

// A seeded fault plan that leaves a request of the second pass unanswered (the plan numbers
// requests, so the same one falls silent every run).
TEST(LiveCommand, AnItemLeftSilentIsPrintedAsNoAnswerNotWithItsLastValue)
{
    const Kvx kvx;
    const Result run = kvx.run({"live", "--port", "sim", "--virtual-time", "--faults", "0.2", "--seed", "5",
                                "--count", "3", "05", "0C", "0D", "0F"});
    ASSERT_EQ(run.code, 0) << run.err.toStdString();
    std::map<QString, QString> lastValue;
    int silentAfterAnAnswer = 0;
    for (const QString& line : run.lines()) {
        const QStringList fields = line.split(QRegularExpression(" {2,}"), Qt::SkipEmptyParts);
        ASSERT_GE(fields.size(), 4) << line.toStdString();
        const QString& id = fields[1];
        if (fields[3] == "(no answer)") {
            EXPECT_EQ(fields.size(), 4) << line.toStdString();
            silentAfterAnAnswer += lastValue.count(id);
        } else {
            lastValue[id] = fields[3];
        }
    }
    EXPECT_GT(silentAfterAnAnswer, 0) << "the fault plan no longer silences a later pass:\n" << run.out.toStdString();
}

// kvx live --log on the virtual vehicle at the normal P3, so a pass of every parameter takes
// many seconds; returns once the recording has started and a few requests went out.
QString startRecording(Kvx& kvx, QProcess& live, QString& err)
{
    const QString logFolder = kvx.ownProgram();
    kvx.start(live, {"live", "--port", "sim", "--log"});
    EXPECT_TRUE(waitForText(live, err, QProcess::StandardError, "recording to", 60s)) << err.toStdString();
    live.waitForFinished(1500);
    const QStringList logs = QDir(logFolder).entryList({"*.log"}, QDir::Files);
    EXPECT_EQ(logs.size(), 1);
    return logs.isEmpty() ? QString() : QDir(logFolder).filePath(logs.first());
}

TEST(LiveCommand, CtrlCStopsAtTheNextRequestAndFinishesTheRecordingWithItsCount)
{
    Kvx kvx;
    QProcess live;
    QString err;
    const QString log = startRecording(kvx, live, err);
    ::kill(static_cast<pid_t>(live.processId()), SIGINT);
    const auto pressed = std::chrono::steady_clock::now();
    ASSERT_TRUE(live.waitForFinished(20000));
    // A pass of all 36 parameters takes over ten seconds; one request well under one.
    EXPECT_LT(std::chrono::steady_clock::now() - pressed, 4s);
    EXPECT_EQ(live.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(live.exitCode(), 0);
    err += QString::fromUtf8(live.readAllStandardError());
    EXPECT_TRUE(err.contains("stopping...")) << err.toStdString();

    const log::LogSummary summary = log::SummariseLog(log.toStdString());
    EXPECT_EQ(summary.frameCount, std::to_string(summary.framesInFile));
    EXPECT_GT(summary.framesInFile, 0);
    EXPECT_LT(summary.framesInFile, 36);
    EXPECT_TRUE(err.contains(QString::number(summary.framesInFile) + " frames recorded in " + log)) << err.toStdString();
    // The cut pass prints what it read: a line per recorded frame, none for the rows never asked.
    EXPECT_EQ(QString::fromUtf8(live.readAllStandardOutput()).count('\n'), summary.framesInFile);
}

TEST(LiveCommand, ASecondCtrlCQuitsAtOnceAndTheRecordingIsStillFinished)
{
    Kvx kvx;
    QProcess live;
    QString err;
    const QString log = startRecording(kvx, live, err);
    ::kill(static_cast<pid_t>(live.processId()), SIGINT);
    live.waitForFinished(50);
    ::kill(static_cast<pid_t>(live.processId()), SIGINT);
    ASSERT_TRUE(live.waitForFinished(20000));
    EXPECT_EQ(live.exitCode(), 130);
    err += QString::fromUtf8(live.readAllStandardError());
    const log::LogSummary summary = log::SummariseLog(log.toStdString());
    EXPECT_GT(summary.framesInFile, 0);
    EXPECT_EQ(summary.frameCount, std::to_string(summary.framesInFile));
    EXPECT_TRUE(err.contains("stopped at once; " + QString::number(summary.framesInFile) + " frames recorded in " + log))
        << err.toStdString();
}

// Headless Toyota live data: one parameter chosen, all its sub-values shown.
TEST(LiveCommand, ToyotaModulePollsTheChosenParameterWithBothUnits)
{
    const Kvx kvx;
    const Result run = kvx.run({"live", "--port", "sim", "--virtual-time", "--module", "toyota", "--count", "1", "C1"});
    ASSERT_EQ(run.code, 0) << run.err.toStdString();
    const QStringList lines = run.lines();
    ASSERT_EQ(lines.size(), 3) << run.out.toStdString();
    EXPECT_TRUE(lines[0].contains("C101 0") && lines[0].contains("Coolant temperature")) << lines[0].toStdString();
    EXPECT_TRUE(lines[0].contains("°C") && lines[0].contains("°F")) << lines[0].toStdString();
    for (const QString& line : lines)
        EXPECT_TRUE(line.contains(" C1")) << line.toStdString();

    // A unit with none of the maker's items (a CAN car) is said at once, not polled for ever.
    const Result none = kvx.run({"live", "--port", "sim", "--virtual-time", "--interface", "elm327", "--vehicle",
                                 "can-500", "--module", "toyota"});
    EXPECT_EQ(none.code, 1);
    EXPECT_TRUE(none.err.contains("the unit offers no item to poll")) << none.err.toStdString();
}

} // namespace
} // namespace kvx::cli::test
