#include "settings/SettingsStore.h"

#include <QSettings>
#include <cstdint>
#include <limits>

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

// A stored text that is not a whole number of the field's width leaves the field as it was.
template <typename Width>
void readNumber(QSettings& store, const char* key, int startupDefault, int& field)
{
    const QString text = store.value(keyOf(key), QString::number(startupDefault)).toString().trimmed();
    bool ok = false;
    const qlonglong value = text.toLongLong(&ok);
    if (ok && value >= std::numeric_limits<Width>::min() && value <= std::numeric_limits<Width>::max())
        field = static_cast<int>(value);
}

void write(QSettings& store, const char* key, const QString& text)
{
    store.setValue(keyOf(key), text);
}

} // namespace

void ReadCommSettings(CommSettings& s)
{
    QSettings store = openStore();
    // The baud rate is a 32-bit field, the others 16-bit.
    readNumber<std::int32_t>(store, "BaudRate", 10400, s.BaudRate);
    readNumber<std::int16_t>(store, "Port", 1, s.PortNumber);
    readNumber<std::int16_t>(store, "KeepAlive", 500, s.KeepAlive);
    readNumber<std::int16_t>(store, "P3Delay", 300, s.P3Delay);
    readNumber<std::int16_t>(store, "P4Delay", 25, s.P4Delay);
    readNumber<std::int16_t>(store, "InterByteDelay", 10, s.InterByteDelay);
    readNumber<std::int16_t>(store, "TypeProtocol", 4, s.ProtocolNumber);
    s.Kwp2000InitDelay = store.value(keyOf("Kwp2000InitDelay"), QStringLiteral("22")).toString().toStdString();
    s.VirtualVehicle = store.value(keyOf("VirtualVehicle")).toString().toStdString();
    readNumber<std::int16_t>(store, "Interface", kKLineCableInterface, s.Interface);
    readNumber<std::int32_t>(store, "AdapterBaud", 38400, s.AdapterBaud);
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
    write(store, "Interface", QString::number(s.Interface));
    write(store, "AdapterBaud", QString::number(s.AdapterBaud));
}

void SaveP3Delay(const CommSettings& s)
{
    QSettings store = openStore();
    write(store, "P3Delay", QString::number(s.P3Delay));
}

void SaveVirtualVehicle(const CommSettings& s)
{
    QSettings store = openStore();
    write(store, "VirtualVehicle", QString::fromStdString(s.VirtualVehicle));
}

} // namespace kvx::settings
