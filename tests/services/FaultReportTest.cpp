#include "log/LogFile.h"
#include "support/ProgramWindow.h"
#include "support/UnitAnswers.h"

#include <QCheckBox>
#include <gtest/gtest.h>

using namespace kvx;

namespace {

constexpr const char* kDescriptions = "P0301      Cylinder 1 Misfire Detected\r\n";

// A newer car's stored codes: P0301 in the first frame, then a code with a hex digit, which has
// no place in the description table.
struct HybridCar : test::ProgramWindow {
    explicit HybridCar(const char* code)
        : ProgramWindow(kDescriptions, {},
                        test::EngineAnswering({{"03", {"43030100000000", std::string("43") + code + "00000000"}}}))
    {
        EXPECT_TRUE(actions.ConnectModule(ModuleGeneric));
    }
};

} // namespace

TEST(GeneralFaultReport, CodeWithAHexDigitEndsReadCodesWithABoxAndTheSessionGoesOn)
{
    HybridCar p("0A80");
    auto* chkLog = p.find<QCheckBox>("chkLog");
    QTest::mouseClick(chkLog, Qt::LeftButton);
    ASSERT_TRUE(p.session.Logging);
    const int p3 = p.link.GetP3Delay();

    p.showTab(2);
    p.click("cmdMode3");
    ASSERT_EQ(p.shell.boxes.size(), 1u);
    EXPECT_EQ(p.shell.boxes[0].title, "Error");
    EXPECT_EQ(p.shell.boxes[0].icon, MessageIcon::Critical);
    EXPECT_NE(p.shell.boxes[0].text.find("P0A80"), std::string::npos) << p.shell.boxes[0].text;
    // What was listed before the fault stays; the read stopped there.
    EXPECT_EQ(p.screen.txtMode347.text(), "P0301 - Cylinder 1 Misfire Detected\r\n");

    // The session is left as a finished command leaves it, and the recording has its count.
    EXPECT_FALSE(p.session.Busy);
    EXPECT_EQ(p.link.GetP3Delay(), p3);
    EXPECT_TRUE(p.screen.tmrKeepAlive.enabled());
    EXPECT_FALSE(p.session.LinkDown);
    EXPECT_FALSE(p.session.Logging);
    EXPECT_FALSE(chkLog->isChecked());
    EXPECT_EQ(log::LogFile(p.session.LogPath, log::LogFile::Mode::Read).readRecord(99), "0");

    p.click("cmdMode7");
    EXPECT_EQ(p.shell.boxes.size(), 1u);
    EXPECT_EQ(p.screen.txtMode347.text().substr(0, 5), "P0128");
}
