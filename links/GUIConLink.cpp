// SPDX-License-Identifier: Apache-2.0
#include "links/GUIConLink.h"

#include "links/Heartbeat.h"

namespace VRK {

GUIConLink::GUIConLink(const Tavro::FilePath& model, Result& result)
{
    result = create(model.Get());
}

GUIConLink::GUIConLink(const Tavro::FilePath& model, bool& attached, Result& result)
{
    result = attach(model.Get());
    attached = result == Tavro::LinkManager::Success;
}

GUIConLink::GUIConLink(unsigned int id, Result& result) { result = attach(id); }

GUIConLink::Result GUIConLink::SetStop(bool value) { return write_field(&GUIRecord::bStop, value); }

GUIConLink::Result GUIConLink::GetStop(bool& value) const
{
    return read_field(&GUIRecord::bStop, value);
}

GUIConLink::Result GUIConLink::SetStep(ControllerStep value)
{
    return write_field(&GUIRecord::step, value);
}

GUIConLink::Result GUIConLink::GetStep(ControllerStep& value) const
{
    return read_field(&GUIRecord::step, value);
}

GUIConLink::Result GUIConLink::Touch()
{
    return update_field(&GUIRecord::tLastTouch, Tavro::heartbeat_now);
}

GUIConLink::Result GUIConLink::GetLastTouch(long long& seconds) const
{
    return read_field(&GUIRecord::tLastTouch, seconds);
}

GUIConLink::Result GUIConLink::SetTotalMassResidual(double value)
{
    return write_field(&GUIRecord::dTotalMassResidual, value);
}

GUIConLink::Result GUIConLink::GetTotalMassResidual(double& value) const
{
    return read_field(&GUIRecord::dTotalMassResidual, value);
}

GUIConLink::Result GUIConLink::SetMaxMassResidual(double value)
{
    return write_field(&GUIRecord::dMaxMassResidual, value);
}

GUIConLink::Result GUIConLink::GetMaxMassResidual(double& value) const
{
    return read_field(&GUIRecord::dMaxMassResidual, value);
}

GUIConLink::Result GUIConLink::SetStepNumber(int value)
{
    return write_field(&GUIRecord::nStepNumber, value);
}

GUIConLink::Result GUIConLink::GetStepNumber(int& value) const
{
    return read_field(&GUIRecord::nStepNumber, value);
}

GUIConLink::Result GUIConLink::SetTotalSteps(int value)
{
    return write_field(&GUIRecord::nTotalSteps, value);
}

GUIConLink::Result GUIConLink::GetTotalSteps(int& value) const
{
    return read_field(&GUIRecord::nTotalSteps, value);
}

GUIConLink::Result GUIConLink::SetSubStep(double value)
{
    return write_field(&GUIRecord::dSubStep, value);
}

GUIConLink::Result GUIConLink::GetSubStep(double& value) const
{
    return read_field(&GUIRecord::dSubStep, value);
}

GUIConLink::Result GUIConLink::SetTimeRemaining(int value)
{
    return write_field(&GUIRecord::nTimeRemaining, value);
}

GUIConLink::Result GUIConLink::GetTimeRemaining(int& value) const
{
    return read_field(&GUIRecord::nTimeRemaining, value);
}

} // namespace VRK
