// SPDX-License-Identifier: Apache-2.0
#include "links/SolverConLink.h"

namespace Tavro {

SolverConLink::SolverConLink(Result& result) { result = create(""); }

SolverConLink::SolverConLink(unsigned int id, Result& result) { result = attach(id); }

SolverConLink::Result SolverConLink::SetStop(bool value)
{
    return write_field(&SolverRecord::bStop, value);
}

SolverConLink::Result SolverConLink::GetStop(bool& value) const
{
    return read_field(&SolverRecord::bStop, value);
}

SolverConLink::Result SolverConLink::SetSuccessfulCompletion(bool value)
{
    return write_field(&SolverRecord::bSuccessfulCompletion, value);
}

SolverConLink::Result SolverConLink::GetSuccessfulCompletion(bool& value) const
{
    return read_field(&SolverRecord::bSuccessfulCompletion, value);
}

SolverConLink::Result SolverConLink::SetTotalMassResidual(double value)
{
    return write_field(&SolverRecord::dTotalMassResidual, value);
}

SolverConLink::Result SolverConLink::GetTotalMassResidual(double& value) const
{
    return read_field(&SolverRecord::dTotalMassResidual, value);
}

SolverConLink::Result SolverConLink::SetMaxMassResidual(double value)
{
    return write_field(&SolverRecord::dMaxMassResidual, value);
}

SolverConLink::Result SolverConLink::GetMaxMassResidual(double& value) const
{
    return read_field(&SolverRecord::dMaxMassResidual, value);
}

SolverConLink::Result SolverConLink::SetStepNumber(int value)
{
    return write_field(&SolverRecord::nStepNumber, value);
}

SolverConLink::Result SolverConLink::GetStepNumber(int& value) const
{
    return read_field(&SolverRecord::nStepNumber, value);
}

SolverConLink::Result SolverConLink::SetSubStep(double value)
{
    return write_field(&SolverRecord::dSubStep, value);
}

SolverConLink::Result SolverConLink::GetSubStep(double& value) const
{
    return read_field(&SolverRecord::dSubStep, value);
}

SolverConLink::Result SolverConLink::SetCompletionState(int value)
{
    return write_field(&SolverRecord::nCompletionState, value);
}

SolverConLink::Result SolverConLink::GetCompletionState(int& value) const
{
    return read_field(&SolverRecord::nCompletionState, value);
}

} // namespace Tavro
