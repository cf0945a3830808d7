#pragma once

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSettings>
#include <QStringList>
#include <QTemporaryDir>
#include <gtest/gtest.h>

#include <chrono>
#include <unistd.h>

namespace kvx::cli::test {

struct Result {
    int code = -1;
    QString out, err;

    QStringList lines() const { return out.split('\n', Qt::SkipEmptyParts); }
};

// Runs the kvx beside the tests with a settings store and a data folder of its own (not the
// user's), so what they hold is what a test put there.
class Kvx {
public:
    Kvx() { EXPECT_TRUE(QDir().mkpath(storeDir())); }

    void setting(const char* key, const QString& value)
    {
        QSettings store(storeDir() + "/Korvenatronix OBD-II.conf", QSettings::IniFormat);
        store.setValue(QStringLiteral("Settings/") + key, value);
    }

    // A copy of kvx in a folder of its own, with the description file and a Log folder, so
    // recordings land where the test can read them.
    QString ownProgram()
    {
        const QString program = dir_.filePath("bin/kvx");
        EXPECT_TRUE(QDir().mkpath(dir_.filePath("bin/Log")));
        EXPECT_TRUE(QFile::copy(KVX_BIN_DIR "/kvx", program));
        EXPECT_TRUE(QFile::copy(KVX_BIN_DIR "/SAE OBD II CODES.dat", dir_.filePath("bin/SAE OBD II CODES.dat")));
        program_ = program;
        return dir_.filePath("bin/Log");
    }

    // A copy of kvx laid out as the package installs it: bin/ beside share/korvenatronix/ with the
    // description file and one car of the garage. Returns where its recordings go.
    QString installedProgram()
    {
        const QString shared = dir_.filePath("usr/share/korvenatronix");
        EXPECT_TRUE(QDir().mkpath(dir_.filePath("usr/bin")));
        EXPECT_TRUE(QDir().mkpath(shared + "/vehicles"));
        program_ = dir_.filePath("usr/bin/kvx");
        EXPECT_TRUE(QFile::copy(KVX_BIN_DIR "/kvx", program_));
        EXPECT_TRUE(QFile::copy(KVX_BIN_DIR "/SAE OBD II CODES.dat", shared + "/SAE OBD II CODES.dat"));
        EXPECT_TRUE(QFile::copy(KVX_BIN_DIR "/vehicles/hybrid.json", shared + "/vehicles/hybrid.json"));
        return dir_.filePath("data/Korvenatronix OBD-II/Korvenatronix OBD-II/Log");
    }

    // Runs kvx without root's right to open any file, as a user runs it, when the tests run as root.
    void withoutRootsRights()
    {
        if (::geteuid() == 0)
            launcher_ = {"setpriv", "--bounding-set=-dac_override,-dac_read_search", "--"};
    }

    void start(QProcess& process, const QStringList& args) const
    {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert("XDG_CONFIG_HOME", dir_.filePath("config"));
        env.insert("XDG_DATA_HOME", dir_.filePath("data"));
        process.setProcessEnvironment(env);
        if (launcher_.isEmpty())
            process.start(program_, args);
        else
            process.start(launcher_.first(), launcher_.mid(1) + QStringList{program_} + args);
        EXPECT_TRUE(process.waitForStarted(10000));
    }

    Result run(const QStringList& args, int timeoutMs = 90000) const
    {
        QProcess process;
        start(process, args);
        EXPECT_TRUE(process.waitForFinished(timeoutMs)) << args.join(' ').toStdString();
        return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
                QString::fromUtf8(process.readAllStandardError())};
    }

private:
    QString storeDir() const { return dir_.filePath("config/Korvenatronix OBD-II"); }

    QTemporaryDir dir_;
    QString program_ = KVX_BIN_DIR "/kvx";
    QStringList launcher_;
};

// Reads what a running kvx writes until the text appears or the time is up; true when it did.
inline bool waitForText(QProcess& process, QString& seen, QProcess::ProcessChannel channel, const QString& text,
                        std::chrono::milliseconds limit)
{
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!seen.contains(text) && std::chrono::steady_clock::now() < end) {
        process.waitForReadyRead(50);
        seen += QString::fromUtf8(channel == QProcess::StandardError ? process.readAllStandardError()
                                                                     : process.readAllStandardOutput());
        if (process.state() == QProcess::NotRunning)
            break;
    }
    return seen.contains(text);
}

} // namespace kvx::cli::test
