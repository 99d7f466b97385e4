// The dates that are written along a timeline.
#pragma once

#include <vector>

#include "platform/timeline_view.h"

namespace pelmarix::ui {

/// At round steps from minutes to many years, so large that labels don't overlap: "2019-03-26", with the time
/// of day below a day.
std::vector<platform::TimelineTick> timelineTicks(const platform::TimelineScale& scale);

}  // namespace pelmarix::ui
