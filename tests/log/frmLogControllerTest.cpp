#include "LogTestRig.h"

#include "log/LogFormat.h"
#include "log/Recorder.h"
#include "log/frmLogController.h"
#include "support/WidgetApp.h"

#include <QApplication>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QSlider>
#include <QTimer>
#include <QToolButton>
#include <gtest/gtest.h>

namespace kvx::log {
namespace {

struct Window {
    QApplication& application = test::widgetApp();
    test::LogRig rig;
    frmLogController form;
    std::string csvPath = rig.file("out.csv");

    Window()
        : form(rig.session, std::make_unique<test::VirtualStopwatch>(),
               {{kGenericHeader, GenericFrameHandler(rig.screen.GridMode1, decoding())}}, decoding(), nullptr)
    {
        test::writeLog(rig.file("Log/a.log"), kGenericHeader, "3",
                       {test::liveFrame("0C", "1AF8"), test::liveFrame("0D", "32"), test::liveFrame("0C", "1B00")});
        form.setFileChooser([this] { return QString::fromStdString(rig.file("Log/a.log")); });
        form.setExportChooser([this] { return QString::fromStdString(csvPath); });
    }
    static LiveDecoding decoding()
    {
        return {[](const std::string& m, int s) { return std::to_string(s) + m.substr(10, 4); },
                [](const std::string& pid) { return "PID " + pid; }};
    }
    template <typename T> T* find(const char* name) { return form.findChild<T*>(name); }
};

TEST(LogControllerWindow, ShowsItsControlsAndTheOpenedLog)
{
    Window w;
    EXPECT_EQ(w.form.windowTitle(), "LOG CONTROLLER");
    auto* speed = w.find<QSlider>("sldSpeed");
    EXPECT_EQ(speed->maximum(), 1000);
    EXPECT_EQ(w.find<QLabel>("lblSpeed")->text(), "100");
    EXPECT_FALSE(w.rig.screen.control("Connect").enabled());
    EXPECT_FALSE(w.find<QPushButton>("cmdExportCsv")->isEnabled());

    w.find<QToolButton>("imgOpen")->click();
    EXPECT_EQ(w.find<QLabel>("lblFile")->text(), "File: a.log");
    EXPECT_EQ(w.find<QLabel>("lblFile")->toolTip().toStdString(), w.rig.file("Log/a.log"));
    EXPECT_EQ(w.find<QLabel>("lblTframes")->text(), "Total Frames: 3");
    EXPECT_EQ(w.find<QSlider>("sldLogFrame")->maximum(), 3);

    speed->setValue(0);
    EXPECT_EQ(w.find<QLabel>("lblSpeed")->text(), "0");
    w.find<QToolButton>("imgPlay")->click();
    EXPECT_EQ(w.find<QSlider>("sldLogFrame")->value(), 3);
    EXPECT_EQ(w.find<QLabel>("lblFrame")->text(), "3");
    EXPECT_EQ(w.rig.screen.GridMode1.text(1, 3), "11B00");
    w.find<QToolButton>("imgRewind")->click();
    EXPECT_EQ(w.find<QLabel>("lblFrame")->text(), "0");

    w.form.setFileChooser([] { return QString(); });
    w.find<QToolButton>("imgOpen")->click();
    EXPECT_EQ(w.find<QLabel>("lblFile")->text(), "File:");
}

TEST(LogControllerWindow, OpensOnlyWhileDisconnectedAndStaysOpenWhilePlaying)
{
    Window w;
    w.rig.session.LinkDown = false;
    w.find<QToolButton>("imgOpen")->click();
    EXPECT_FALSE(w.form.controller().isOpen());

    w.form.show();
    w.rig.session.Replaying = true;
    EXPECT_FALSE(w.form.close());
    w.rig.session.Replaying = false;
    EXPECT_TRUE(w.form.close());
    EXPECT_FALSE(w.rig.screen.control("Connect").enabled()) << "the session still stands";

    w.rig.session.LinkDown = true;
    w.form.show();
    EXPECT_TRUE(w.form.close());
    EXPECT_TRUE(w.rig.screen.control("Connect").enabled());
}

TEST(LogControllerWindow, OpeningThePlayerStopsARunningRecording)
{
    test::widgetApp();
    test::LogRig rig;
    ASSERT_TRUE(StartLogging(rig.session, rig.folder(), QDateTime(QDate(2009, 1, 17), QTime(8, 0))));
    rig.screen.control("chkLog").setChecked(true);
    frmLogController form(rig.session, std::make_unique<test::VirtualStopwatch>(), {}, {}, nullptr);
    EXPECT_FALSE(rig.session.Logging);
    EXPECT_FALSE(rig.screen.control("chkLog").checked());
    EXPECT_EQ(LogFile(rig.session.LogPath, LogFile::Mode::Read).readRecord(99), "0");
}

TEST(LogControllerWindow, ExportsTheOpenLogAsCsvButNeverOntoTheLogItself)
{
    Window w;
    w.find<QToolButton>("imgOpen")->click();
    w.find<QPushButton>("cmdExportCsv")->click();
    EXPECT_EQ(test::readAll(w.csvPath), QByteArray("Time (s),Frame,PID,Description,Metric,Metric unit,US,US unit\r\n"
                                                   ",1,0C,PID 0C,11AF8,,21AF8,\r\n"
                                                   ",2,0D,PID 0D,13200,,23200,\r\n"
                                                   ",3,0C,PID 0C,11B00,,21B00,\r\n"));

    const std::string log = w.rig.file("Log/a.log");
    const QByteArray bytes = test::readAll(log);
    w.csvPath = w.rig.file("Log/../Log/a.log");
    QString shown;
    QTimer::singleShot(0, [&] {
        if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
            shown = box->text();
            box->close();
        }
    });
    w.find<QPushButton>("cmdExportCsv")->click();
    EXPECT_TRUE(shown.contains("is the log itself")) << shown.toStdString();
    EXPECT_EQ(test::readAll(log), bytes);
}

} // namespace
} // namespace kvx::log
