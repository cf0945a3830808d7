#include "log/LogFile.h"
#include "log/frmLogController.h"
#include "support/ProgramWindow.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QProcess>
#include <QStatusBar>
#include <QTableView>
#include <QTextEdit>
#include <gtest/gtest.h>
#include <utility>

using namespace kvx;

namespace {

constexpr const char* kDescriptions = "P0301      Cylinder 1 Misfire Detected\r\n"
                                      "P0420      Catalyst System Efficiency Below Threshold Bank 1\r\n";

std::string withoutReturns(std::string text)
{
    std::erase(text, '\r');
    return text;
}

// What a rich-text box on the window shows, against what its model holds.
void expectBoxShowsModel(const test::ProgramWindow& p, const char* name, const RichTextModel& model)
{
    EXPECT_EQ(withoutReturns(p.find<QTextEdit>(name)->toPlainText().toStdString()), withoutReturns(model.text()))
        << name;
}

// The heading row is the view's column header; the rows below it are the table's rows.
void expectGridShowsModel(const test::ProgramWindow& p, const char* name, const GridModel& model)
{
    const QAbstractItemModel* view = p.find<QTableView>(name)->model();
    ASSERT_EQ(view->rowCount(), model.rows() - 1) << name;
    for (int col = 0; col < model.cols(); ++col)
        EXPECT_EQ(view->headerData(col, Qt::Horizontal).toString().toStdString(), model.text(0, col)) << name;
    for (int row = 1; row < model.rows(); ++row)
        for (int col = 0; col < model.cols(); ++col)
            EXPECT_EQ(view->index(row - 1, col).data().toString().toStdString(), model.text(row, col))
                << name << " " << row << "," << col;
}

// Chooses an entry of a combo box as the user does.
void choose(QComboBox* combo, int index)
{
    combo->setCurrentIndex(index);
    emit combo->activated(index);
}

// Connected with the descriptions above loaded.
struct Connected : test::ProgramWindow {
    Connected() : ProgramWindow(kDescriptions) { EXPECT_TRUE(actions.ConnectModule(ModuleGeneric)); }
};

} // namespace

TEST(ProgramStart, CountsTheDescriptionsAndKeepsServiceButtonsOffUntilAGenericSessionStands)
{
    test::ProgramWindow missing;
    EXPECT_EQ(missing.screen.StatusBar1.text(4), "0 DTC LOADED");
    ASSERT_EQ(missing.shell.boxes.size(), 1u);
    EXPECT_EQ(missing.shell.boxes[0].title, "DTC ERROR");

    test::ProgramWindow p(kDescriptions);
    EXPECT_EQ(p.find<QStatusBar>("StatusBar1")->findChild<QLabel*>("StatusBar1Panel4")->text(), "2 DTC LOADED");

    const char* services[] = {"cmdMode3", "cmdMode7", "cmdMode4", "cmdRequestMode2", "cmdRequestMode5",
                              "cmdRequestMode6", "cmdModeOnce", "cmdReadVin", "cmdRequestLiveCombo"};
    for (const char* name : services)
        EXPECT_FALSE(p.find<QPushButton>(name)->isEnabled()) << name;
    ASSERT_TRUE(p.actions.ConnectModule(ModuleGeneric));
    for (const char* name : services)
        EXPECT_TRUE(p.find<QPushButton>(name)->isEnabled()) << name;
    p.toolbar("Disconnect");
    EXPECT_FALSE(p.find<QPushButton>("cmdMode3")->isEnabled());
}

TEST(ServiceTabs, TroubleCodesReadPendingAndClearWithoutAQuestion)
{
    Connected p;
    p.showTab(2);
    p.click("cmdMode3");
    const std::string stored = p.screen.txtMode347.text();
    EXPECT_NE(stored.find("P0301 - Cylinder 1 Misfire Detected\r\n"), std::string::npos);
    EXPECT_NE(stored.find(" - No Desciption Available"), std::string::npos);
    expectBoxShowsModel(p, "txtMode347", p.screen.txtMode347);

    // A second click while the read runs is dropped, not run inside the first.
    bool clicked = false;
    p.shell.onProcessEvents = [&] {
        if (!std::exchange(clicked, true))
            p.click("cmdMode3");
    };
    p.click("cmdMode3");
    p.shell.onProcessEvents = nullptr;
    EXPECT_EQ(p.screen.txtMode347.text(), stored);

    p.click("cmdMode7");
    EXPECT_EQ(p.screen.txtMode347.text().find("P0301"), std::string::npos);

    // Cleared at once, and the unit has no code left to report, nor a freeze frame.
    p.click("cmdMode4");
    EXPECT_TRUE(p.shell.boxes.empty());
    for (const char* read : {"cmdMode3", "cmdMode7"}) {
        p.click(read);
        EXPECT_EQ(p.screen.txtMode347.text(), "No Response From ECU") << read;
    }
    p.showTab(1);
    p.click("cmdRequestMode2");
    EXPECT_EQ(p.screen.txtMode2.text(), "") << "the frame went with the codes";
}

TEST(ServiceTabs, FreezeFrameReadsTheFrameTypedInTheBoxInFixedColumns)
{
    Connected p;
    p.showTab(1);
    p.click("cmdRequestMode2");
    const std::string text = p.screen.txtMode2.text();
    EXPECT_EQ(text.find("No Response From ECU"), std::string::npos);
    EXPECT_NE(text.find("Engine speed" + std::string(40 - 12, ' ') + "\r\n"), std::string::npos);
    expectBoxShowsModel(p, "txtMode2", p.screen.txtMode2);
    EXPECT_TRUE(QFontInfo(p.find<QTextEdit>("txtMode2")->font()).fixedPitch());

    // The unit keeps one frame only; a typed number it does not have gets no answer.
    p.find<QComboBox>("cmbFrame")->setEditText("01");
    p.click("cmdRequestMode2");
    EXPECT_EQ(p.screen.txtMode2.text(), "No Response From ECU\r\n");
}

// Some font set-ups give the name "monospace" to a proportional face (here through a font
// configuration of the test's own); the freeze-frame columns must line up there too. The test
// above runs again in a process of its own under that configuration.
TEST(ServiceTabs, FreezeFrameStaysFixedPitchWhereMonospaceIsProportional)
{
    if (qEnvironmentVariableIsSet("FONTCONFIG_FILE"))
        GTEST_SKIP() << "already under a font configuration of its own";
    test::widgetApp();
    QTemporaryDir dir;
    const QString config = QDir(dir.path()).filePath("fonts.conf");
    QFile file(config);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(R"(<?xml version="1.0"?>
<!DOCTYPE fontconfig SYSTEM "fonts.dtd">
<fontconfig>
  <include ignore_missing="yes">/etc/fonts/fonts.conf</include>
  <match target="pattern">
    <test name="family"><string>monospace</string></test>
    <edit name="family" mode="prepend" binding="strong"><string>DejaVu Sans</string></edit>
  </match>
</fontconfig>
)");
    file.close();

    QProcess child;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert("FONTCONFIG_FILE", config);
    child.setProcessEnvironment(env);
    child.setProcessChannelMode(QProcess::MergedChannels);
    child.start(QCoreApplication::applicationFilePath(),
                {"--gtest_filter=ServiceTabs.FreezeFrameReadsTheFrameTypedInTheBoxInFixedColumns"});
    ASSERT_TRUE(child.waitForFinished(120000));
    const QString output = QString::fromLocal8Bit(child.readAll());
    EXPECT_EQ(child.exitCode(), 0) << output.toStdString();
    EXPECT_TRUE(output.contains("[  PASSED  ] 1 test")) << output.toStdString();
}

TEST(ServiceTabs, TestGridsForTheChosenSensorAndMake)
{
    Connected p;
    p.showTab(3);
    // The unit has the first two sensors of bank 1 only.
    auto* sensors = p.find<QComboBox>("cmbMode5");
    ASSERT_EQ(sensors->count(), 2);
    choose(sensors, 1);
    p.click("cmdRequestMode5");
    ASSERT_GT(p.screen.gridMode5.rows(), 1);
    EXPECT_EQ(p.screen.gridMode5.text(1, 1), "Rich to lean sensor threshold voltage");
    expectGridShowsModel(p, "gridMode5", p.screen.gridMode5);

    p.showTab(4);
    p.click("cmdRequestMode6");
    ASSERT_GT(p.screen.gridMode6.rows(), 1);
    EXPECT_EQ(p.screen.gridMode6.text(1, 2), "");
    choose(p.find<QComboBox>("cmbYear"), 1);
    choose(p.find<QComboBox>("cmbMake"), 0);
    p.click("cmdRequestMode6");
    EXPECT_FALSE(p.screen.gridMode6.text(1, 2).empty());
    expectGridShowsModel(p, "gridMode6", p.screen.gridMode6);
}

TEST(ServiceTabs, InformationButtonsAndTheVin)
{
    Connected p;
    p.showTab(5);
    // Buttons 0, 1, 3 and 4 of the group, in that order.
    const auto buttons = p.window->findChildren<QPushButton*>("cmdModeOnce");
    ASSERT_EQ(buttons[3]->property("Index"), 4);
    p.click(buttons[1]);
    EXPECT_NE(p.screen.txtInfo.text().find("Misfire"), std::string::npos);
    EXPECT_NE(p.screen.txtInfo.text().find("Confirmed trouble codes: 6"), std::string::npos) << p.screen.txtInfo.text();
    expectBoxShowsModel(p, "txtInfo", p.screen.txtInfo);

    // The unit describes its sensors the two-bank way only: nothing is asked for the other.
    const std::string before = p.session.LastFrame;
    p.click(buttons[3]);
    EXPECT_EQ(p.screen.txtInfo.text(), "Not Supported");
    EXPECT_EQ(p.session.LastFrame, before);

    p.click("cmdReadVin");
    EXPECT_EQ(withoutReturns(p.find<QTextEdit>("txtInfo")->toPlainText().toStdString()), "VIN: KVX1E6TS4R0000913\n");
}

TEST(ServiceTabs, ComboPollsTheChosenSlotsAndRecordsTheirFrames)
{
    Connected p;
    p.showTab(6);
    const auto lists = p.window->findChildren<QComboBox*>("cmbPid");
    ASSERT_EQ(lists.size(), 5);
    EXPECT_EQ(lists[0]->itemText(0), "OFF");
    choose(lists[0], 1);
    choose(lists[3], 2);

    auto* log = p.find<QCheckBox>("chkLog");
    QTest::mouseClick(log, Qt::LeftButton);
    ASSERT_TRUE(p.session.Logging);

    // Five pumps a pass (one per slot): stop after two passes.
    int pumps = 0;
    p.shell.onProcessEvents = [&] {
        if (++pumps == 10)
            p.click("cmdStopLiveCombo");
    };
    p.click("cmdRequestLiveCombo");
    p.shell.onProcessEvents = nullptr;
    EXPECT_FALSE(p.session.Busy);

    const auto values = p.window->findChildren<QLabel*>("lblPid");
    for (int slot = 0; slot < 5; ++slot) {
        EXPECT_EQ(values[slot]->text().isEmpty(), slot != 0 && slot != 3) << slot;
        EXPECT_EQ(values[slot]->text().toStdString(), p.screen.lblPid[std::size_t(slot)].text());
    }

    QTest::mouseClick(log, Qt::LeftButton);
    EXPECT_FALSE(p.session.Logging);
    const QStringList files = QDir(p.logFolder()).entryList({"SAEJ1979 *.log"});
    ASSERT_EQ(files.size(), 1);
    log::LogFile file(QDir(p.logFolder()).filePath(files[0]).toStdString(), log::LogFile::Mode::Read);
    EXPECT_EQ(file.readRecord(100), "KORVENATRONIX OBDII LOG");
    EXPECT_EQ(file.readRecord(99), "4");
    EXPECT_EQ(file.readRecord(150)->substr(6, 4), "41" + lists[0]->itemText(1).left(2).toStdString());
}

TEST(Recording, DisconnectFinishesItAndTheWindowWillNotCloseWhileItPlays)
{
    Connected p;
    QTest::mouseClick(p.find<QCheckBox>("chkLog"), Qt::LeftButton);
    int pumps = 0;
    p.shell.onProcessEvents = [&] {
        if (++pumps == 20)
            p.click("cmdStop");
    };
    p.click("cmdRequestMode1");
    p.toolbar("Disconnect");
    EXPECT_FALSE(p.session.Logging);
    EXPECT_FALSE(p.find<QCheckBox>("chkLog")->isChecked());
    const QStringList files = QDir(p.logFolder()).entryList({"*.log"});
    ASSERT_EQ(files.size(), 1);
    const std::string path = QDir(p.logFolder()).filePath(files[0]).toStdString();
    EXPECT_NE(log::LogFile(path, log::LogFile::Mode::Read).readRecord(99), "0");

    // One player, however often its button is pressed.
    p.toolbar("Log Controller");
    p.toolbar("Log Controller");
    ASSERT_EQ(p.window->findChildren<log::frmLogController*>().size(), 1);
    auto* player = p.window->findChild<log::frmLogController*>();
    player->setFileChooser([&] { return QString::fromStdString(path); });
    player->imgOpen_Click();
    ASSERT_TRUE(player->controller().isOpen());

    bool refused = false;
    p.shell.onProcessEvents = [&] {
        if (refused)
            return;
        p.exit();
        refused = p.window->isVisible() && p.screen.StatusBar1.text(1) == "STOP PLAYING LOG";
        player->imgStop_Click();
    };
    player->imgPlay_Click();
    p.shell.onProcessEvents = nullptr;
    EXPECT_TRUE(refused);

    p.exit();
    EXPECT_FALSE(p.window->isVisible());
    EXPECT_TRUE(p.window->findChildren<log::frmLogController*>().isEmpty() || !player->isVisible());
}
