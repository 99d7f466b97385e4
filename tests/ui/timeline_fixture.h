// A history and receipts to make a timeline of.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "base/date.h"
#include "history/history.h"
#include "platform/timeline_view.h"
#include "receipts/bom.h"
#include "ui/timeline.h"

namespace pelmarix::test {

inline constexpr double secondsPerDay = 86400;

/// Since the reference date.
inline double secondsOf(int year, int month, int day, double secondOfDay = 0) {
  return static_cast<double>(daysFromCivil(year, month, day)) * secondsPerDay -
         secondsFromUnixEpochToReferenceDate + secondOfDay;
}

class TimelineLists : public testing::Test {
 protected:
  void addGroup(const std::string& name) { histories.push_back(std::make_shared<History>(name)); }
  /// Into the last group.
  platform::Object* addEntry(double seconds, std::int64_t type, const std::string& name = "Entry",
                             const std::string& version = "1.2") {
    if (histories.empty()) addGroup("macOS Mojave 10.14");
    return histories.back()
        ->children.emplace_back(std::make_shared<HistoryItem>(name, version, Date{seconds}, type))
        .get();
  }
  platform::Object* addReceipt(double seconds, const std::string& name = "com.example.pkg") {
    return boms.children.emplace_back(std::make_shared<BoMItem>(name, Date{seconds}, "/" + name)).get();
  }
  /// A thousand times a thousand seconds.
  void addEnds() {
    addEntry(0, history_type::systemInstall);
    addEntry(1e6, history_type::systemInstall);
  }

  ui::Timeline timeline(bool skipsConfigurationData = false) const {
    return ui::Timeline(histories, boms, skipsConfigurationData);
  }
  /// A thousand units wide, of which marks take ten.
  static platform::TimelineScale scaleOf(platform::TimelineSpan span) { return {span, 1000, 10, 100}; }
  /// All of it.
  platform::TimelinePicture picture(const platform::Object* selected = nullptr) const {
    const ui::Timeline all = timeline();
    return all.picture(scaleOf(all.span()), selected);
  }
  std::vector<platform::TimelineMark> marksOf(platform::TimelineKind kind) const {
    std::vector<platform::TimelineMark> marks = picture().marks;
    std::erase_if(marks, [kind](const platform::TimelineMark& mark) { return mark.kind != kind; });
    return marks;
  }

  std::vector<std::shared_ptr<History>> histories;
  BoM boms;
};

}  // namespace pelmarix::test
