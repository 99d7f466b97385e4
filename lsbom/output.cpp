#include "lsbom/output.h"

#include <cerrno>

namespace pelmarix::lsbom {

void Output::waitForTurn(std::size_t number) const {
  for (std::size_t turn = turn_; turn != number; turn = turn_) turn_.wait(turn);
}

void Output::write(std::size_t number, std::string_view piece) {
  waitForTurn(number);
  if (error_ == 0 && std::fwrite(piece.data(), 1, piece.size(), file_) != piece.size()) error_ = errno;
}

void Output::end(std::size_t number) {
  waitForTurn(number);
  turn_ = number + 1;
  turn_.notify_all();
}

void Output::finish() {
  turn_ = 0;
  if (error_ == 0 && std::fflush(file_) != 0) error_ = errno;
}

Text::~Text() {
  write();
  output_.end(number_);
}

void Text::write() {
  output_.write(number_, {buffer_.get(), used_});
  used_ = 0;
}

}  // namespace pelmarix::lsbom
