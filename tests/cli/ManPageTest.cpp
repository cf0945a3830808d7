#include "KvxProcess.h"

#include <QRegularExpression>
#include <map>

namespace kvx::cli::test {
namespace {

// kvx's manual page, written by hand, split into the part of each command (".SS kvx <command>")
// and each other section (".SH <title>"), with troff's hyphen and font escapes taken out.
struct ManPage {
    std::map<QString, QString> commands;
    std::map<QString, QString> sections;

    ManPage()
    {
        QFile file(KVX_RESOURCES_DIR "/../docs/man/kvx.1");
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << file.fileName().toStdString();
        QString text = QString::fromUtf8(file.readAll()).replace("\\-", "-");
        text.remove(QRegularExpression(R"(\\f[BIRP])"));
        static const QRegularExpression commandHeading(R"(^\.SS "?kvx ([\w-]+))");
        QString* part = &sections[QString()];
        for (const QString& line : text.split('\n')) {
            const QRegularExpressionMatch command = commandHeading.match(line);
            if (command.hasMatch())
                part = &commands[command.captured(1)];
            else if (line.startsWith(".SH "))
                part = &sections[line.mid(4)];
            *part += line + '\n';
        }
    }
};

QStringList listedCommands(const QString& help)
{
    static const QRegularExpression line(R"(^  ([a-z][\w-]*) {2,}\S)", QRegularExpression::MultilineOption);
    QStringList names;
    for (auto it = line.globalMatch(help.section("Commands:", 1)); it.hasNext();)
        names << it.next().captured(1);
    return names;
}

QStringList longOptions(const QString& help)
{
    static const QRegularExpression option(R"(^  (?:-\w, )?--([\w-]+))", QRegularExpression::MultilineOption);
    QStringList names;
    for (auto it = option.globalMatch(help); it.hasNext();) {
        const QString name = it.next().captured(1);
        if (name != "help" && name != "help-all")
            names << name;
    }
    return names;
}

TEST(ManPage, DescribesEveryCommandOfKvxHelpWithEachOfItsOptionsAndNoOther)
{
    const Kvx kvx;
    const ManPage page;
    const QStringList commands = listedCommands(kvx.run({"--help"}).out);
    ASSERT_GT(commands.size(), 5);
    for (const QString& command : commands) {
        const auto part = page.commands.find(command);
        if (part == page.commands.end()) {
            ADD_FAILURE() << "kvx.1 has no part for kvx " << command.toStdString();
            continue;
        }
        // The options every connecting command takes are described once.
        QString described = part->second;
        if (described.contains("connection options"))
            described += page.sections.at("CONNECTION OPTIONS");
        for (const QString& option : longOptions(kvx.run({command, "--help"}).out))
            EXPECT_TRUE(described.contains("--" + option))
                << "kvx.1 does not describe kvx " << command.toStdString() << " --" << option.toStdString();
    }
    for (const auto& [command, text] : page.commands)
        EXPECT_TRUE(commands.contains(command)) << "kvx.1 describes kvx " << command.toStdString() << ", which is no command";
}

} // namespace
} // namespace kvx::cli::test
