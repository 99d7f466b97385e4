// Takes whatever bytes there are for an update server's answer, from its status line to what the user is
// offered.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "app/app_delegate.h"
#include "platform/application.h"
#include "platform/url_session.h"
#include "platform/workspace.h"
#include "plist/document.h"
#include "qt/services/http_answer.h"
#include "tests/support/test_services.h"

using namespace pelmarix;

namespace {

void require(bool holds) {
  if (!holds) std::abort();
}

// An answer that comes in pieces of one size.
qt::HttpAnswer answerOf(std::string_view bytes, std::size_t pieceSize) {
  qt::HttpAnswer answer;
  for (; !bytes.empty(); bytes.remove_prefix(std::min(pieceSize, bytes.size())))
    answer.add(bytes.substr(0, pieceSize));
  answer.end();
  require(answer.isComplete() != answer.isBroken());
  return answer;
}

// The program stops where the maker's own list breaks its form.
bool keepsTheForm(std::string_view body) {
  const auto list = plist::Document::decode(body);
  if (!list) return true;
  if (list->root().type() != plist::Type::array) return false;
  for (const plist::Value entry : list->root().elements()) {
    if (entry.type() != plist::Type::dictionary) return false;
    for (const char* key : {"AppName", "Version", "URL"}) {
      const auto value = entry.find(key);
      if (!value || !value->string()) return false;
    }
  }
  return true;
}

class NoHelpMenu final : public platform::Application {
 public:
  void terminate(platform::Object* /*sender*/) override {}
  platform::Menu* helpMenu() override { return nullptr; }
};

class CountingWorkspace final : public platform::Workspace {
 public:
  void openURL(const platform::URL& /*url*/) override { ++opened; }
  std::size_t opened = 0;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  qt::HttpAnswer answer = answerOf(bytes, size);
  qt::HttpAnswer inPieces = answerOf(bytes, 3);
  require(answer.isComplete() == inPieces.isComplete());
  if (!answer.isComplete()) return 0;
  require(answer.status() >= 200 && answer.status() == inPieces.status());
  for (const char* name : {"content-type", "location"}) require(answer.header(name) == inPieces.header(name));
  const auto body = answer.takeBody();
  require(body == inPieces.takeBody());
  if (!body || !keepsTheForm(*body)) return 0;
  require(body->size() <= size);

  test::TestServices services;
  NoHelpMenu application;
  CountingWorkspace workspace;
  services.services.application = &application;
  services.services.workspace = &workspace;
  services.services.composedForm = [](std::string_view text) { return std::string(text); };
  services.services.isValidAddress = [](const std::string&) { return true; };
  services.services.dispatchAsyncToMainQueue = [](const std::function<void()>& block) { block(); };
  services.answer = [](const test::ShownAlert&) { return platform::alertSecondButtonReturn; };

  const std::string type = answer.header("content-type");
  const auto response =
      std::make_shared<platform::HTTPURLResponse>(answer.status(), type.substr(0, type.find(';')));
  AppDelegate().handleUpdateResponse("1.0", body, response, std::nullopt);
  const auto offers = std::count_if(services.alerts.begin(), services.alerts.end(),
                                    [](const test::ShownAlert& alert) { return alert.buttons.size() == 2; });
  require(static_cast<std::size_t>(offers) == workspace.opened);
  return 0;
}
