#include "settings/SettingsStore.h"

#include <QSettings>

namespace kvx::settings {

namespace {

QSettings openStore()
{
    return QSettings(QString::fromUtf8(kStoreName), QString::fromUtf8(kStoreName));
}

QString keyOf(const char* key)
{
    return QString::fromUtf8(kSection) + QLatin1Char('/') + QString::fromUtf8(key);
}

// A stored text that is not a whole number leaves the field as it was.
void readInt(QSettings& store, const char* key, int startupDefault, int& field)
{
    const QString text = store.value(keyOf(key), QString::number(startupDefault)).toString();
    bool ok = false;
    const int value = text.trimmed().toInt(&ok);
    if (ok)
        field = value;
}

void write(QSettings& store, const char* key, const QString& text)
{
    store.setValue(keyOf(key), text);
}

} // namespace

void ReadCommSettings(CommSettings& s)
{
    QSettings store = openStore();
    readInt(store, "BaudRate", 10400, s.BaudRate);
    readInt(store, "Port", 1, s.PortNumber);
    readInt(store, "KeepAlive", 500, s.KeepAlive);
    readInt(store, "P3Delay", 300, s.P3Delay);
    readInt(store, "P4Delay", 25, s.P4Delay);
    readInt(store, "InterByteDelay", 10, s.InterByteDelay);
    readInt(store, "TypeProtocol", 4, s.ProtocolNumber);
    s.Kwp2000InitDelay = store.value(keyOf("Kwp2000InitDelay"), QStringLiteral("22")).toString().toStdString();
    // Only "Try All" switches the flag on here; a stored single protocol keeps whatever it held.
    if (s.ProtocolNumber == 4)
        s.TryAllProtocols = true;
}

void SaveCommSettings(const CommSettings& s)
{
    QSettings store = openStore();
    write(store, "BaudRate", QString::number(s.BaudRate));
    write(store, "Port", QString::number(s.PortNumber));
    write(store, "KeepAlive", QString::number(s.KeepAlive));
    write(store, "P4Delay", QString::number(s.P4Delay));
    write(store, "InterByteDelay", QString::number(s.InterByteDelay));
    write(store, "TypeProtocol", QString::number(s.ProtocolNumber));
    write(store, "Kwp2000InitDelay", QString::fromStdString(s.Kwp2000InitDelay));
    write(store, "P3Delay", QString::number(s.P3Delay));
}

void SaveP3Delay(const CommSettings& s)
{
    QSettings store = openStore();
    write(store, "P3Delay", QString::number(s.P3Delay));
}

} // namespace kvx::settings
