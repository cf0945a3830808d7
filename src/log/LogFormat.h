#pragma once

#include <array>
#include <string>

namespace kvx::log {

// Where the fixed records of a log sit; records 1-97, 101 and 103-149 are never written.
constexpr long kGridRowsRecord = 98;
constexpr long kFrameCountRecord = 99;
constexpr long kHeaderRecord = 100;
constexpr long kDateRecord = 102;
constexpr long kFirstFrameRecord = 150;

// The player's position slider cannot go past this, so longer logs are refused.
constexpr long kMaxPlayableFrames = 32767;

inline const std::string kGenericHeader = "KORVENATRONIX OBDII LOG";
inline const std::string kNissanEcuHeader = "KORVENATRONIX OBDII NISSAN POWERTRAIN 10 LOG";
inline const std::string kNissanTcuHeader = "KORVENATRONIX OBDII NISSAN AUTO TRANSMISSION LOG";
inline const std::string kToyotaHeader = "KORVENATRONIX OBDII TOYOTA POWERTRAIN LOG";

// What a recording is called and headed by, per module selection.
struct ModuleLogNames {
    std::string fileWord; // starts the file name, trailing blank included
    std::string header;   // record 100
};

// Empty names for a module selection the recorder does not know.
inline ModuleLogNames LogNamesFor(int moduleIndex)
{
    static const std::array<ModuleLogNames, 4> names{{
        {"SAEJ1979 ", kGenericHeader},
        {"NISSAN-ECU ", kNissanEcuHeader},
        {"NISSAN-TCU ", kNissanTcuHeader},
        {"TOYOTA-ECU ", kToyotaHeader},
    }};
    if (moduleIndex < 0 || moduleIndex >= static_cast<int>(names.size()))
        return {};
    return names[static_cast<std::size_t>(moduleIndex)];
}

} // namespace kvx::log
