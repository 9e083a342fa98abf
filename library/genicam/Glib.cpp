// SPDX-License-Identifier: MIT
// Translates Aravis' errors.
#include "library/genicam/Glib.h"

namespace orvalis {
namespace {

OResult deviceResult(int code)
{
    switch (code) {
    case ARV_DEVICE_ERROR_NOT_CONNECTED:
    case ARV_DEVICE_ERROR_NOT_CONTROLLER:
        return ORVALIS_ERROR_CONNECTION_LOST;
    case ARV_DEVICE_ERROR_TIMEOUT:
        return ORVALIS_ERROR_TIMEOUT;
    case ARV_DEVICE_ERROR_WRONG_FEATURE:
        return ORVALIS_ERROR_WRONG_TYPE;
    case ARV_DEVICE_ERROR_FEATURE_NOT_FOUND:
    case ARV_DEVICE_ERROR_NOT_FOUND:
    case ARV_DEVICE_ERROR_PROTOCOL_ERROR_INVALID_ADDRESS:
        return ORVALIS_ERROR_NOT_FOUND;
    case ARV_DEVICE_ERROR_INVALID_PARAMETER:
    case ARV_DEVICE_ERROR_PROTOCOL_ERROR_INVALID_PARAMETER:
        return ORVALIS_ERROR_OUT_OF_RANGE;
    case ARV_DEVICE_ERROR_PROTOCOL_ERROR_NOT_IMPLEMENTED:
        return ORVALIS_ERROR_NOT_SUPPORTED;
    case ARV_DEVICE_ERROR_PROTOCOL_ERROR_BAD_ALIGNMENT:
        return ORVALIS_ERROR_BAD_ARGUMENT;
    case ARV_DEVICE_ERROR_PROTOCOL_ERROR_WRITE_PROTECT:
    case ARV_DEVICE_ERROR_PROTOCOL_ERROR_ACCESS_DENIED:
        return ORVALIS_ERROR_ACCESS_DENIED;
    case ARV_DEVICE_ERROR_PROTOCOL_ERROR_BUSY:
        return ORVALIS_ERROR_BUSY;
    default:
        return ORVALIS_ERROR_DEVICE;
    }
}

OResult nodeResult(int code)
{
    switch (code) {
    case ARV_GC_ERROR_OUT_OF_RANGE:
    case ARV_GC_ERROR_INVALID_LENGTH:
        return ORVALIS_ERROR_OUT_OF_RANGE;
    case ARV_GC_ERROR_READ_ONLY:
        return ORVALIS_ERROR_ACCESS_DENIED;
    case ARV_GC_ERROR_NODE_NOT_FOUND:
    case ARV_GC_ERROR_ENUM_ENTRY_NOT_FOUND:
        return ORVALIS_ERROR_NOT_FOUND;
    default:
        return ORVALIS_ERROR_DEVICE;
    }
}

} // namespace

OResult Failure::result() const
{
    if (error_ == nullptr)
        return ORVALIS_OK;
    if (error_->domain == ARV_DEVICE_ERROR)
        return deviceResult(error_->code);
    return error_->domain == ARV_GC_ERROR ? nodeResult(error_->code) : ORVALIS_ERROR_DEVICE;
}

} // namespace orvalis
