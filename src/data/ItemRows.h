#pragma once

#include <string>
#include <vector>

namespace kvx::link {
class NissanDecoder;
class ToyotaDecoder;
}

namespace kvx::data {

// One row of the live grid for a manufacturer item: its column 1 label and its name.
struct ItemRow {
    std::string label;
    std::string name;
};

// The rows a Nissan identifier fills: one, or one per named switch of a block 13 register
// ("1301 5").
std::vector<ItemRow> NissanRows(const link::NissanDecoder& decoder, const std::string& identifier, int moduleIndex);

// The text of a Nissan row in a reply (kind 1 metric, 2 US); a switch row has its one text, for
// the bit its label names.
std::string NissanRowValue(const link::NissanDecoder& decoder, const std::string& label, const std::string& reply,
                           int kind, int moduleIndex);

// The rows of a Toyota parameter: one per named sub-value "PPaa b", in byte and bit order.
std::vector<ItemRow> ToyotaRows(const link::ToyotaDecoder& decoder, const std::string& parameter);

// The text of a Toyota row ("PPaa b") in a reply message; "" for a label of no such form (a
// typed combo entry).
std::string ToyotaRowValue(const link::ToyotaDecoder& decoder, const std::string& label, const std::string& message,
                           int kind);

} // namespace kvx::data
