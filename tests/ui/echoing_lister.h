// A lister that prints the file it was given, so that a test sees which bill of materials was listed.
#pragma once

#include <string>
#include <vector>

#include "platform/task.h"

namespace pelmarix::test {

class EchoingPipe final : public platform::Pipe {
 public:
  explicit EchoingPipe(std::vector<std::string>& listed) : listed_(listed) {}
  Result<std::string, std::error_code> readDataToEndOfFile() override { return listed_.back() + "\n"; }

 private:
  std::vector<std::string>& listed_;
};

class EchoingTask final : public platform::Task {
 public:
  EchoingTask(std::vector<std::string>& listed, bool canStart) : listed_(listed), canStart_(canStart) {}
  void setLaunchPath(const std::string& /*path*/) override {}
  void setArguments(const std::vector<std::string>& arguments) override {
    listed_.push_back(arguments.back());
  }
  void setStandardOutput(platform::Pipe& /*pipe*/) override {}
  void launch() override {
    if (!canStart_) throw platform::TaskLaunchError("no such program");
  }
  void waitUntilExit() override {}
  int terminationStatus() const override { return 0; }

 private:
  std::vector<std::string>& listed_;
  bool canStart_;
};

}  // namespace pelmarix::test
