#pragma once

#include <string>

namespace kvx::obd {

// Rich-text boxes end their lines with a carriage return and a line feed, as saved reports do.
inline constexpr const char* kLineBreak = "\r\n";

// The text padded with blanks on the right, or cut, to exactly `width` characters, so that
// paragraphs line up in a fixed-pitch font. Characters, not bytes: value texts carry "°".
std::string PadOrCut(const std::string& text, std::size_t width);

} // namespace kvx::obd
