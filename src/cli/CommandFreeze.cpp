#include "cli/Command.h"
#include "cli/CommandLine.h"
#include "cli/OutputFormat.h"
#include "cli/ScreenText.h"
#include "cli/ServiceCommand.h"
#include "obd/FreezeFrame.h"
#include "session/MainScreen.h"
#include "session/Session.h"

#include <QString>
#include <cstdio>

namespace kvx::cli {

namespace {

// txtMode2 writes each parameter as a black description line and a red run of its two values in
// fixed columns; anything else black ("No Response From ECU") is a message.
void printFreezeJson(const RichTextModel& box)
{
    QStringList pending;
    for (const RichTextModel::Run& run : box.runs()) {
        const QString text = Utf8(run.text);
        if (run.color != kRed) {
            for (const QString& line : text.split(QStringLiteral("\r\n"), Qt::SkipEmptyParts))
                if (!line.trimmed().isEmpty())
                    pending << line;
            continue;
        }
        // Each red run follows its description: the last black line before it.
        const QString description = pending.isEmpty() ? QString() : pending.takeLast();
        for (const QString& message : pending)
            PrintJsonLine({{"message", message.trimmed()}});
        pending.clear();
        const QString values = QString(text).remove(QStringLiteral("\r\n"));
        const auto width = static_cast<qsizetype>(obd::kFreezeValueWidth);
        PrintJsonLine({{"description", description.trimmed()},
                       {"metric", values.left(width).trimmed()},
                       {"us", values.mid(width).trimmed()}});
    }
    for (const QString& message : pending)
        PrintJsonLine({{"message", message.trimmed()}});
}

} // namespace

int RunFreeze(const QStringList& args)
{
    return RunServiceCommand(args, {
        "Reads every parameter the engine unit keeps in a freeze frame (service 02).",
        [](QCommandLineParser& p) { p.addOption({"frame", WithDefault("The frame number, as sent.", "00"), "NN", "00"}); },
        nullptr,
        [](Session& session, const QCommandLineParser& p, OutputFormat format) {
            auto& frames = session.screen.cmbFrame;
            frames.addItem("00");
            frames.setText(p.value("frame").toStdString());
            obd::RequestFreezeFrame(session);
            if (format == OutputFormat::Json)
                printFreezeJson(session.screen.txtMode2);
            else
                std::printf("%s", BoxText(session.screen.txtMode2).c_str());
            return 0;
        }});
}

} // namespace kvx::cli
