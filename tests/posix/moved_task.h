// The task of a listing, with a lister of the test's own, since the machine may have one.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "posix/posix_task.h"

namespace pelmarix::test {

inline constexpr const char* nowhere = "/dev/null/nowhere";  // no machine has such a folder

/// Starts the program of the lister's file name in `folder`, or else in `companionFolder`.
class MovedTask final : public platform::Task {
 public:
  explicit MovedTask(std::string folder, std::string companionFolder = nowhere)
      : folder_(std::move(folder)), task_(std::move(companionFolder)) {}
  void setLaunchPath(const std::string& path) override {
    EXPECT_EQ(path, "/usr/bin/lsbom");
    task_.setLaunchPath(folder_ + "/lsbom");
  }
  void setArguments(const std::vector<std::string>& arguments) override { task_.setArguments(arguments); }
  void setStandardOutput(platform::Pipe& pipe) override { task_.setStandardOutput(pipe); }
  void launch() override { task_.launch(); }
  void waitUntilExit() override { task_.waitUntilExit(); }
  int terminationStatus() const override { return task_.terminationStatus(); }

 private:
  std::string folder_;
  posix::PosixTask task_;
};

}  // namespace pelmarix::test
