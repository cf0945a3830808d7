#pragma once

#include <string>
#include <string_view>

namespace kvx::link::decode {

// The vehicle identification number from the messages of a service 09 INFOTYPE 02 reply joined by
// ":". Each K-line message carries its number (1-5) and four bytes; the first message starts with
// three filler bytes. "" when the reply holds no complete, numbered run of messages.
std::string formatVin(std::string_view reply);

} // namespace kvx::link::decode
