#pragma once

#include <string>

#include "kdl/KDLBusLink.h"

/// Who the device on the KDL bus is; not the protocol itself, which KDLBusLink speaks, and no messages to the
/// user.
namespace vek {

/// Name and variant of the device at KdlAddressPrefix; contains "#TIMEOUT_ERROR#" when it did not answer.
/// Opens and closes the port.
Bytes KdlIdentify(Program& program);

/// The device data text, or "#TIMEOUT_ERROR#". The port must be open.
Bytes KdlReadDeviceData(Program& program);

/// The software version: a number with two decimals behind a point; 0.00 when there is none in the reply,
/// "---" without a reply. The port must be open.
std::string KdlReadSoftwareVersion(Program& program);

/// The version in the reply to the version request: hundredths behind "Sw".
std::string kdlSoftwareVersion(const Bytes& reply);

}  // namespace vek
