#pragma once
// Tests host the control in the same real container the demo uses.
#include "frontend/container_window.h"

namespace tovtest {
using AtlHost = tovfe::ContainerWindow;
using tovfe::PumpMessages;
} // namespace tovtest
