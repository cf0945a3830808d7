#include "link/decode/InfoValue.h"

#include "link/ReplyText.h"
#include "link/decode/PidTable.h"
#include "link/decode/PidValue.h"
#include "link/decode/PidWords.h"

namespace kvx::link::decode {

std::string formatInfoValue(std::string_view message)
{
    const auto m = readMessage(message);
    if (!m || m->service != 0x41 || m->data.empty())
        return {};
    const int pid = m->data[0];
    const std::uint8_t* d = m->data.data() + 1;
    const std::size_t size = m->data.size() - 1;
    const PidRow* row = findPid(pid);
    if (!row || size < row->bytes)
        return {};
    switch (pid) {
    case 0x01: return monitorLines(d, false);
    case 0x41: return monitorLines(d, true);
    case 0x13: return sensorsPresentLines(d[0], false);
    case 0x1D: return sensorsPresentLines(d[0], true);
    case 0x1C: return "OBD standard: " + obdStandardName(d[0]) + "\n";
    default: return std::string(row->description) + ": " + pidValueText(pid, d, size, Metric) + "\n";
    }
}

} // namespace kvx::link::decode
