// SPDX-License-Identifier: Apache-2.0
#include "links/GeneralConLink.h"

namespace Tavro {

GeneralConLink::GeneralConLink(Result& result) { result = create(""); }

GeneralConLink::GeneralConLink(unsigned int id, Result& result) { result = attach(id); }

GeneralConLink::Result GeneralConLink::SetStop(bool value)
{
    return write_field(&GeneralRecord::bStop, value);
}

GeneralConLink::Result GeneralConLink::GetStop(bool& value) const
{
    return read_field(&GeneralRecord::bStop, value);
}

GeneralConLink::Result GeneralConLink::SetSuccessfulCompletion(bool value)
{
    return write_field(&GeneralRecord::bSuccessfulCompletion, value);
}

GeneralConLink::Result GeneralConLink::GetSuccessfulCompletion(bool& value) const
{
    return read_field(&GeneralRecord::bSuccessfulCompletion, value);
}

GeneralConLink::Result GeneralConLink::SetCompletionState(int value)
{
    return write_field(&GeneralRecord::nCompletionState, value);
}

GeneralConLink::Result GeneralConLink::GetCompletionState(int& value) const
{
    return read_field(&GeneralRecord::nCompletionState, value);
}

GeneralConLink::Result GeneralConLink::SetProgress(double value)
{
    return write_field(&GeneralRecord::dProgress, value);
}

GeneralConLink::Result GeneralConLink::GetProgress(double& value) const
{
    return read_field(&GeneralRecord::dProgress, value);
}

} // namespace Tavro
