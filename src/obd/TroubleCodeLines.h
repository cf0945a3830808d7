#pragma once

#include <functional>
#include <string>
#include <vector>

namespace kvx::obd {

// The codes of one frame's decoded list: three at most, and a third only when the list is exactly
// three codes long.
std::vector<std::string> CodesOfFrame(const std::string& codeList);

// Builds what txtMode347 shows for a read, frame by frame.
class TroubleCodeListing {
public:
    // The description of a five-character code, "" when there is none.
    using Describe = std::function<std::string(const std::string& code)>;

    explicit TroubleCodeListing(Describe describe) : describe_(std::move(describe)) {}

    // Takes one frame's decoded code list and returns the text to insert for it. The running
    // list is kept across frames on purpose: each frame's text holds the codes of all frames so
    // far, so a long answer shows earlier codes again, as this box always has.
    std::string addFrame(const std::string& codeList);

    // True when no frame was added or the last one carried no code; the box then says
    // "No Response From ECU", also for a unit that answers with no codes.
    bool lastFrameEmpty() const { return lastList_.empty(); }

private:
    Describe describe_;
    std::string running_;
    std::string lastList_;
};

} // namespace kvx::obd
