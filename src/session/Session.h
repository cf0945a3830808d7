#pragma once

#include "link/Clock.h"
#include "link/decode/NissanDecoder.h"
#include "link/decode/ToyotaDecoder.h"
#include "session/CommSettings.h"

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace kvx {

namespace link {
class LinkSession;
}
class MainScreen;
class Shell;
namespace log {
class LogFile;
}

// Module chosen in the selection window.
enum ModuleIndexValue : int { ModuleGeneric = 0, ModuleNissanEcu = 1, ModuleNissanTcu = 2, ModuleToyota = 3 };

// The state every service shares, one object per running program (tests make many).
struct Session {
    Session(link::LinkSession& link, MainScreen& screen, Shell& shell) : link(link), screen(screen), shell(shell) {}

    link::LinkSession& link;
    MainScreen& screen;
    Shell& shell;

    CommSettings settings;
    // A run on the virtual vehicle by the command line keeps the store's own port here: Apply
    // saves it rather than the simulator, unless the user picks another port in the dialog.
    std::optional<int> StorePortNumber;
    // Likewise the store's interface, when that run's car is on CAN and so runs behind the
    // emulated ELM327.
    std::optional<int> StoreInterface;

    int ModuleIndex = ModuleGeneric;
    bool LinkDown = true;
    bool Busy = false;
    int SilenceCount = 0;
    std::string EcuAddress;
    std::string HeaderByte1, HeaderByte2;

    // The three results of the last request cycle.
    std::string LastFrame, LastRaw, LastResponse;
    // The Toyota module keeps its own three.
    std::string ToyotaLastFrame, ToyotaLastRaw, ToyotaLastResponse;

    // SupportedPids[parameter][service - 1] (Nissan blocks use the block number as column).
    static constexpr int kPidRows = 258;
    static constexpr int kPidCols = 24;
    std::array<std::array<bool, kPidCols>, kPidRows> SupportedPids{};

    // Trouble-code descriptions by the code's four digits read as a decimal number.
    std::vector<std::string> DtcDescriptions = std::vector<std::string>(4001);
    // kvx lists a code whose digits are no decimal number (P0A80) as one without a description; the
    // window's read stops at such a code with the general fault report.
    bool CodesWithoutNumberListed = false;

    // Recorder and player.
    bool Logging = false;
    long LogRecordNumber = 150;
    link::Micros LogStartMicros = 0; // the link clock's reading when recording started
    std::string LogGridRows;
    std::string LogHeader;
    long LogLastRecord = 0;
    bool Replaying = false;
    std::string LogPath; // the file name the common dialog holds for recorder and player
    std::shared_ptr<log::LogFile> LogFileHandle;

    int NissanHighlightRow = 0;

    // The manufacturer decoders, made with the session as the link library's companions.
    link::NissanDecoder nissanDecoder;
    link::ToyotaDecoder toyotaDecoder;
};

} // namespace kvx
