#include "garage/ProfileValues.h"

#include "garage/ProfileReader.h"

#include <QStringList>
#include <cmath>
#include <cstring>

namespace kvx::garage {

namespace {

constexpr char kCodeLetters[] = "PCBU";

// How a value looks in a message: texts quoted, numbers as written, lists and objects by kind.
QString shown(const QJsonValue& value)
{
    switch (value.type()) {
    case QJsonValue::String:
        return '"' + value.toString() + '"';
    case QJsonValue::Double:
        return QString::number(value.toDouble());
    case QJsonValue::Bool:
        return value.toBool() ? QStringLiteral("true") : QStringLiteral("false");
    case QJsonValue::Array:
        return QStringLiteral("a list");
    case QJsonValue::Object:
        return QStringLiteral("an object");
    case QJsonValue::Null:
        return QStringLiteral("null");
    case QJsonValue::Undefined:
        break;
    }
    return QStringLiteral("nothing");
}

std::optional<link::Bytes> bytesFromText(QString text)
{
    text.remove(QLatin1Char(' '));
    if (text.isEmpty())
        return std::nullopt;
    return link::fromHex(text.toStdString());
}

// Hex text of exactly `count` bytes, as one number, high byte first.
std::optional<unsigned> hexNumber(const QString& text, std::size_t count)
{
    const auto bytes = bytesFromText(text);
    if (!bytes || bytes->size() != count)
        return std::nullopt;
    unsigned n = 0;
    for (std::uint8_t b : *bytes)
        n = n << 8 | b;
    return n;
}

} // namespace

JsonPlace JsonPlace::key(const QString& name) const
{
    return JsonPlace(file_, path_.isEmpty() ? name : path_ + '.' + name);
}

JsonPlace JsonPlace::index(qsizetype i) const
{
    return JsonPlace(file_, path_ + '[' + QString::number(i) + ']');
}

void JsonPlace::fail(const QString& problem) const
{
    const QString where = path_.isEmpty() ? file_ : file_ + ": " + path_;
    throw ProfileError((where + ": " + problem).toStdString());
}

void JsonPlace::expected(const QString& what, const QJsonValue& found) const
{
    fail("expected " + what + ", not " + shown(found));
}

void onlyKeys(const QJsonObject& object, const JsonPlace& at, std::initializer_list<const char*> known)
{
    QStringList names;
    for (const char* k : known)
        names << QString::fromLatin1(k);
    for (auto it = object.begin(); it != object.end(); ++it)
        if (!names.contains(it.key()))
            at.key(it.key()).fail("unknown key (known here: " + names.join(", ") + ")");
}

QJsonObject readObject(const QJsonValue& value, const JsonPlace& at)
{
    if (!value.isObject())
        at.expected(QStringLiteral("an object {...}"), value);
    return value.toObject();
}

QJsonArray readList(const QJsonValue& value, const JsonPlace& at)
{
    if (!value.isArray())
        at.expected(QStringLiteral("a list [...]"), value);
    return value.toArray();
}

QString readText(const QJsonValue& value, const JsonPlace& at)
{
    if (!value.isString())
        at.expected(QStringLiteral("a text in quotes"), value);
    return value.toString();
}

bool readFlag(const QJsonValue& value, const JsonPlace& at)
{
    if (!value.isBool())
        at.expected(QStringLiteral("true or false"), value);
    return value.toBool();
}

double readNumber(const QJsonValue& value, const JsonPlace& at, double min, double max)
{
    if (!value.isDouble() || value.toDouble() < min || value.toDouble() > max)
        at.expected("a number from " + QString::number(min) + " to " + QString::number(max), value);
    return value.toDouble();
}

int readWholeNumber(const QJsonValue& value, const JsonPlace& at, int min, int max)
{
    const double n = value.toDouble();
    if (!value.isDouble() || n != std::floor(n) || n < min || n > max)
        at.expected("a whole number from " + QString::number(min) + " to " + QString::number(max), value);
    return static_cast<int>(n);
}

link::Bytes readBytes(const QJsonValue& value, const JsonPlace& at)
{
    const auto bytes = value.isString() ? bytesFromText(value.toString()) : std::nullopt;
    if (!bytes)
        at.expected(QStringLiteral("hex bytes such as \"1A F8\""), value);
    return *bytes;
}

std::uint8_t readByte(const QJsonValue& value, const JsonPlace& at)
{
    const auto n = value.isString() ? hexNumber(value.toString(), 1) : std::nullopt;
    if (!n)
        at.expected(QStringLiteral("one hex byte such as \"7F\""), value);
    return static_cast<std::uint8_t>(*n);
}

std::uint16_t readWord(const QJsonValue& value, const JsonPlace& at)
{
    const auto n = value.isString() ? hexNumber(value.toString(), 2) : std::nullopt;
    if (!n)
        at.expected(QStringLiteral("two hex bytes such as \"01 52\""), value);
    return static_cast<std::uint16_t>(*n);
}

std::uint8_t byteKey(const QString& key, const JsonPlace& at)
{
    const auto n = key.size() == 2 ? hexNumber(key, 1) : std::nullopt;
    if (!n)
        at.fail(QStringLiteral("expected a key of two hex digits such as \"0C\""));
    return static_cast<std::uint8_t>(*n);
}

std::uint16_t wordKey(const QString& key, const JsonPlace& at)
{
    const auto n = key.size() == 4 ? hexNumber(key, 2) : std::nullopt;
    if (!n)
        at.fail(QStringLiteral("expected a key of four hex digits such as \"1101\""));
    return static_cast<std::uint16_t>(*n);
}

std::optional<sim::TroubleCode> troubleCodeFromText(const QString& text)
{
    // The letter is the top two bits; the rest is the same as the hex digits "0A80" with its
    // first digit kept to 0-3.
    if (text.size() != 5)
        return std::nullopt;
    const char* letter = std::strchr(kCodeLetters, text.at(0).toUpper().toLatin1());
    const auto rest = hexNumber(text.mid(1), 2);
    if (!letter || *letter == '\0' || !rest || *rest > 0x3FFF)
        return std::nullopt;
    return static_cast<sim::TroubleCode>((letter - kCodeLetters) << 14 | *rest);
}

sim::TroubleCode readTroubleCode(const QJsonValue& value, const JsonPlace& at)
{
    const auto code = value.isString() ? troubleCodeFromText(value.toString()) : std::nullopt;
    if (!code)
        at.expected(QStringLiteral("a trouble code such as \"P0301\", \"P0A80\" or \"U0100\""), value);
    return *code;
}

} // namespace kvx::garage
