#pragma once

#include "settings/SettingsStore.h"

#include <QSettings>
#include <QTemporaryDir>
#include <string>

namespace kvx::test {

// Points the per-user settings store at an empty temporary folder for one test.
class TempSettings {
public:
    TempSettings()
    {
        QSettings::setDefaultFormat(QSettings::IniFormat);
        QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, dir_.path());
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, dir_.path());
    }

    void put(const char* key, const char* text)
    {
        QSettings s(name(), name());
        s.setValue(path(key), QString::fromUtf8(text));
    }
    std::string get(const char* key)
    {
        QSettings s(name(), name());
        return s.value(path(key)).toString().toStdString();
    }

private:
    static QString name() { return QString::fromUtf8(settings::kStoreName); }
    static QString path(const char* key)
    {
        return QString::fromUtf8(settings::kSection) + QLatin1Char('/') + QString::fromUtf8(key);
    }

    QTemporaryDir dir_;
};

} // namespace kvx::test
