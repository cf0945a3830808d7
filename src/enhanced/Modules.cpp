#include "enhanced/Modules.h"

#include "enhanced/NissanConnection.h"
#include "enhanced/NissanLiveData.h"
#include "enhanced/ToyotaConnection.h"
#include "enhanced/ToyotaLiveData.h"
#include "obd/Connection.h"
#include "obd/LiveCombo.h"
#include "obd/LiveData.h"
#include "session/Session.h"

namespace kvx::enhanced {

bool ConnectModule(Session& session, int moduleIndex)
{
    session.ModuleIndex = moduleIndex;
    switch (moduleIndex) {
    case ModuleGeneric:
        return obd::ConnectEcu(session);
    case ModuleNissanEcu:
    case ModuleNissanTcu:
        return ConnectNissan(session);
    case ModuleToyota:
        return ConnectToyota(session);
    default:
        return false;
    }
}

void StartModuleLiveData(Session& session)
{
    switch (session.ModuleIndex) {
    case ModuleNissanEcu:
    case ModuleNissanTcu:
        RunNissanLiveData(session);
        break;
    case ModuleToyota:
        RunToyotaLiveData(session);
        break;
    default:
        obd::StartLiveData(session);
    }
}

bool PollModuleLiveData(Session& session)
{
    switch (session.ModuleIndex) {
    case ModuleNissanEcu:
    case ModuleNissanTcu:
        return PollNissanLiveData(session);
    case ModuleToyota:
        return PollToyotaLiveData(session, session.HeaderByte1, session.HeaderByte2);
    default:
        return obd::PollLiveData(session, session.HeaderByte1, session.HeaderByte2);
    }
}

void StartModuleLiveCombo(Session& session)
{
    // The Nissan units have no combined view; their tab strip does not offer it.
    switch (session.ModuleIndex) {
    case ModuleToyota:
        RunToyotaLiveCombo(session);
        break;
    case ModuleGeneric:
        obd::StartLiveCombo(session);
        break;
    default:
        break;
    }
}

} // namespace kvx::enhanced
