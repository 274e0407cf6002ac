// Answers about what is listed and need not be open.
#pragma once

#include <cstdint>

#include "producers/server/base/answer.h"
#include "producers/server/base/object.h"
#include "producers/transport.h"

namespace ZelCti {

// Interface info commands.
void AnswerInfo(const HostInterface& interface, Answer answer);

// Device info commands of this producer.
constexpr int32_t kInfoUsbHost = 1100;       // what the host of a USB3 camera is
constexpr int32_t kInfoAccessReason = 1101;  // why the camera cannot be opened for everything

// Device info commands, as a client (a system module) sees the camera.
void AnswerInfo(const Camera& camera, Handle client, Answer answer);

}  // namespace ZelCti
