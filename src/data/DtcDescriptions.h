#pragma once

#include "session/Shell.h"

#include <fstream>
#include <string>
#include <vector>

namespace kvx::data {

// One entry per powertrain code number, P0000 to P4000; an empty entry means no description.
inline constexpr int kDtcTableSize = 4001;
inline constexpr const char* kDtcFileName = "SAE OBD II CODES.dat";

// Reads "SAE OBD II CODES.dat" from the folder into table (4001 entries); returns the count stored;
// failures show the "DTC ERROR" box through shell and return the count so far.
int LoadDtcDescriptions(const std::string& folder, std::vector<std::string>& table, Shell& shell);

// The same load with the caller holding the stream: after a normal end it stays open for as long
// as the caller keeps it, so the file remains in use by the running program; on a failure it is
// closed.
int LoadDtcDescriptions(const std::string& folder, std::vector<std::string>& table, Shell& shell,
                        std::ifstream& file);

// The description for a five-character code (letter ignored); "" when none. Throws
// std::invalid_argument for a code whose characters 2-5 are not a number 0..4000.
std::string DtcDescription(const std::vector<std::string>& table, const std::string& code);

// The status-bar text after a load: the count in plain decimal, then " DTC LOADED".
std::string DtcLoadedText(int count);

} // namespace kvx::data
