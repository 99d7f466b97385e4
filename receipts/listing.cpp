#include <memory>

#include "base/fatal.h"
#include "base/utf8.h"
#include "platform/task.h"
#include "receipts/bom.h"

namespace pelmarix {

std::string BoMItem::listBoM() const {
  std::vector<std::string> arguments = theBomParams;
  arguments.push_back(path + theBomExtension);

  const std::unique_ptr<platform::Pipe> pipe = platform::Pipe::make();
  const std::unique_ptr<platform::Task> task = platform::Task::make();
  task->setLaunchPath(theBomCmd);
  task->setArguments(arguments);
  task->setStandardOutput(*pipe);
  task->launch();
  // Reading comes first: a lister with much to say would wait for room in a full pipe while it was waited
  // for.
  std::string output = pipe->readDataToEndOfFile();
  task->waitUntilExit();

  if (task->terminationStatus() != 0) return noBomInformation;
  if (!isValidUtf8(output)) fatalStop("the lister printed what is not UTF-8");
  if (output.empty()) return noBomInformation;
  return output;
}

}  // namespace pelmarix
