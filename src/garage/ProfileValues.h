#pragma once

#include "link/Hex.h"
#include "sim/VehicleProfile.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QString>
#include <cstdint>
#include <initializer_list>

namespace kvx::garage {

// Where in a profile a value sits: the file and the key path down to it. Every refusal is made
// through a place, so each message says which file, which key and what would have been taken.
class JsonPlace {
public:
    explicit JsonPlace(QString file, QString path = {}) : file_(std::move(file)), path_(std::move(path)) {}

    JsonPlace key(const QString& name) const;
    JsonPlace index(qsizetype i) const;

    [[noreturn]] void fail(const QString& problem) const;
    // "expected <what>, not <found>"
    [[noreturn]] void expected(const QString& what, const QJsonValue& found) const;

private:
    QString file_, path_;
};

// Refuses any key of the object that is not among the known ones.
void onlyKeys(const QJsonObject& object, const JsonPlace& at, std::initializer_list<const char*> known);

QJsonObject readObject(const QJsonValue& value, const JsonPlace& at);
QJsonArray readList(const QJsonValue& value, const JsonPlace& at);
QString readText(const QJsonValue& value, const JsonPlace& at);
bool readFlag(const QJsonValue& value, const JsonPlace& at);
double readNumber(const QJsonValue& value, const JsonPlace& at, double min, double max);
int readWholeNumber(const QJsonValue& value, const JsonPlace& at, int min, int max);

// Hex text, pairs with or without spaces between them ("1A F8", "1AF8"); at least one byte.
link::Bytes readBytes(const QJsonValue& value, const JsonPlace& at);
// Hex text of exactly one byte, or of two (a 16-bit number, high byte first).
std::uint8_t readByte(const QJsonValue& value, const JsonPlace& at);
std::uint16_t readWord(const QJsonValue& value, const JsonPlace& at);
// A key of an object that is itself a hex number of that width ("0C", "1101").
std::uint8_t byteKey(const QString& key, const JsonPlace& at);
std::uint16_t wordKey(const QString& key, const JsonPlace& at);

// A trouble code in its J2012 text form (P0301, P0A80, U0100, B1A00).
sim::TroubleCode readTroubleCode(const QJsonValue& value, const JsonPlace& at);
// The two-byte form of J2012 text, or nullopt when the text is not a code.
std::optional<sim::TroubleCode> troubleCodeFromText(const QString& text);

} // namespace kvx::garage
