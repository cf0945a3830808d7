#pragma once

#include <string>

namespace kvx::link {

// Names of the non-continuous monitor tests (service 06), which each manufacturer numbers its own
// way: the same TID and component mean different tests on different makes and model years.
class ModeSixDecoder {
public:
    // The test's name for a vehicle, "" when the make, year or test is not known.
    //   make, year   as the user picked them ("Acura", "1997"); case and blanks are ignored
    //   tid          two hex digits
    //   component    component number, two hex digits, limit-type bit removed
    //   typeCode     4 for a minimum limit, 3 for a maximum; tests with a lower and an upper
    //                check share TID and component and differ only here
    //   unit         the control unit asked, 1 for the engine unit (the only one with tables)
    //   separator    placed between the test's and the component's names ("-")
    //   fallback     returned instead of "" when nothing is known
    std::string Describe(const std::string& make, const std::string& year, const std::string& tid,
                         const std::string& component, int typeCode, int unit = 1,
                         const std::string& separator = "-", const std::string& fallback = {}) const;
};

} // namespace kvx::link
