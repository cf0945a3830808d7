#include "settings/SettingsEditor.h"
#include "settings/frmSetting.h"
#include "support/ProgramWindow.h"

#include <QComboBox>
#include <QPushButton>
#include <QTextEdit>
#include <gtest/gtest.h>

using namespace kvx;

namespace {

constexpr const char* kDescriptions = "P0301      Cylinder 1 Misfire Detected\r\n";

void pick(QComboBox* list, const QString& entry)
{
    const int index = list->findText(entry);
    ASSERT_GE(index, 0) << entry.toStdString();
    list->setCurrentIndex(index);
    emit list->activated(index);
}

// The stored codes as the trouble-code tab shows them after READ.
std::string codesShown(test::ProgramWindow& p)
{
    p.showTab(2);
    p.click("cmdMode3");
    return p.find<QTextEdit>("txtMode347")->toPlainText().toStdString();
}

} // namespace

TEST(VehicleChoice, TheSettingsCarListWorksOnTheVirtualPortIsSavedUnderItsOwnKeyAndIsTheCarConnectedTo)
{
    test::ProgramWindow p(kDescriptions, {{"Port", "3"}});
    settings::SettingsEditor editor(p.session);
    auto dialog = std::make_unique<settings::frmSetting>(editor);
    dialog->show();
    auto* port = dialog->findChild<QComboBox*>("cmbPort");
    auto* car = dialog->findChild<QComboBox*>("cmbVehicle");
    EXPECT_EQ(car->currentText(), "default");
    EXPECT_GE(car->findText("diesel"), 0);
    EXPECT_TRUE(car->isEnabled()) << "the command line put this run on the virtual vehicle";

    pick(port, "2");
    EXPECT_FALSE(car->isEnabled());
    auto* interface = dialog->findChild<QComboBox*>("cmbInterface");
    pick(port, settings::kVirtualAdapterEntry);
    EXPECT_EQ(interface->currentText(), "ELM327");
    pick(port, settings::kVirtualVehicleEntry);
    EXPECT_EQ(interface->currentText(), settings::kInterfaceName);
    ASSERT_TRUE(car->isEnabled());
    pick(car, "diesel");
    QTest::mouseClick(dialog->findChild<QPushButton*>("cmdApply"), Qt::LeftButton);
    EXPECT_EQ(p.store.get("VirtualVehicle"), "diesel");
    EXPECT_EQ(p.store.get("Port"), "0");
    dialog.reset();

    ASSERT_TRUE(p.actions.ConnectModule(ModuleGeneric));
    const std::string codes = codesShown(p);
    EXPECT_NE(codes.find("P2002"), std::string::npos) << codes;
    EXPECT_EQ(codes.find("P0301"), std::string::npos) << "the built-in car's codes: " << codes;
}

TEST(VehicleChoice, ACommandLineCarIsForTheRunAndOneThatCannotBeHadLeavesTheBuiltInCarWithABox)
{
    test::ProgramWindow p(kDescriptions, {{"VirtualVehicle", "toyota"}});
    app::StartSession(p.session, true, p.programFolder(), "lorry");
    const auto box = std::find_if(p.shell.boxes.begin(), p.shell.boxes.end(),
                                  [](const auto& b) { return b.title == "Virtual Vehicle"; });
    ASSERT_NE(box, p.shell.boxes.end());
    EXPECT_NE(box->text.find("no car named 'lorry'"), std::string::npos) << box->text;
    ASSERT_TRUE(p.actions.ConnectModule(ModuleGeneric));
    EXPECT_NE(codesShown(p).find("P0301"), std::string::npos);
    p.actions.Disconnect();

    // A car the command line gave is shown, but Apply leaves the stored one unless another is picked.
    app::StartSession(p.session, true, p.programFolder(), "diesel");
    settings::SettingsEditor editor(p.session);
    editor.Form_Load();
    EXPECT_EQ(editor.cmbVehicle.text(), "diesel");
    ASSERT_TRUE(editor.cmdApply_Click());
    EXPECT_EQ(p.store.get("VirtualVehicle"), "toyota");

    // A CAN car brings the emulated ELM327 for the run, and Apply leaves the stored interface.
    app::StartSession(p.session, true, p.programFolder(), "can29-250");
    ASSERT_TRUE(p.actions.ConnectModule(ModuleGeneric)) << p.shell.boxes.back().text;
    EXPECT_NE(codesShown(p).find("P0087"), std::string::npos);
    p.actions.Disconnect();
    editor.Form_Load();
    EXPECT_EQ(editor.cmbPort.text(), settings::kVirtualAdapterEntry);
    ASSERT_TRUE(editor.cmdApply_Click());
    EXPECT_EQ(p.store.get("Interface"), "0");

    // Through the cable the same car says why nothing can answer.
    editor.choose(editor.cmbPort, editor.cmbPort.indexOf(settings::kVirtualVehicleEntry));
    ASSERT_TRUE(editor.cmdApply_Click());
    EXPECT_FALSE(p.actions.ConnectModule(ModuleGeneric));
    EXPECT_NE(p.shell.boxes.back().text.find("on CAN, which a K-line cable cannot reach"), std::string::npos)
        << p.shell.boxes.back().text;
}
