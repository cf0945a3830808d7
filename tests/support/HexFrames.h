#pragma once

#include "link/Hex.h"

#include <string>

namespace kvx::test {

// A whole reply frame as the link hands it on: header + body + the checksum the unit would add.
inline std::string frame(const std::string& header, const std::string& body)
{
    const std::string text = header + body;
    return text + link::toHex(link::checksum(*link::fromHex(text)));
}

// A frame from the engine unit (address 10) under the ISO 9141 reply header.
inline std::string ecu(const std::string& body)
{
    return frame("486B10", body);
}

} // namespace kvx::test
