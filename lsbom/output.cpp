#include "lsbom/output.h"

#include <cerrno>

namespace pelmarix::lsbom {
namespace {

// So many texts may have ended ahead of their turn.
constexpr std::size_t mostAhead = 16;

}  // namespace

Output::Buffer Output::begin(std::size_t number) {
  std::unique_lock lock(mutex_);
  written_.wait(lock, [&] { return number <= turn_ + mostAhead; });
  if (spare_.empty()) return Buffer(new char[bufferSize]);
  Buffer buffer = std::move(spare_.back());
  spare_.pop_back();
  return buffer;
}

void Output::write(std::size_t number, std::string_view piece) {
  {
    std::unique_lock lock(mutex_);
    written_.wait(lock, [&] { return number == turn_; });
  }
  put(piece);  // the turn stays until this text has ended
}

void Output::end(std::size_t number, Buffer buffer, std::size_t length) {
  std::unique_lock lock(mutex_);
  ended_.emplace(number, Ended{std::move(buffer), length});
  if (number != turn_) return;  // whoever ends the text whose turn it is writes this one too
  for (auto next = ended_.begin(); next != ended_.end() && next->first == turn_; next = ended_.begin()) {
    Ended text = std::move(next->second);
    ended_.erase(next);
    lock.unlock();
    put({text.buffer.get(), text.length});
    lock.lock();
    spare_.push_back(std::move(text.buffer));
    ++turn_;
    written_.notify_all();
  }
}

void Output::finish() {
  turn_ = 0;
  if (error_ == 0 && std::fflush(file_) != 0) error_ = errno;
}

void Output::put(std::string_view piece) {
  if (error_ == 0 && std::fwrite(piece.data(), 1, piece.size(), file_) != piece.size()) error_ = errno;
}

}  // namespace pelmarix::lsbom
