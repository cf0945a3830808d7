#include "obd/TroubleCodeLines.h"

#include "obd/TextColumns.h"

namespace kvx::obd {

std::vector<std::string> CodesOfFrame(const std::string& codeList)
{
    std::vector<std::string> codes;
    if (codeList.size() >= 5)
        codes.push_back(codeList.substr(0, 5));
    if (codeList.size() >= 10)
        codes.push_back(codeList.substr(5, 5));
    if (codeList.size() == 15)
        codes.push_back(codeList.substr(10, 5));
    return codes;
}

std::string TroubleCodeListing::addFrame(const std::string& codeList)
{
    lastList_ = codeList;
    for (const auto& code : CodesOfFrame(codeList)) {
        std::string description = describe_(code);
        if (description.empty())
            description = "No Desciption Available";
        running_ += code + " - " + description + kLineBreak;
    }
    return running_;
}

} // namespace kvx::obd
