// Work on several processors.
#pragma once

#include <cstddef>
#include <functional>

namespace pelmarix::lsbom {

// Calls work(0), work(1) ... work(count - 1), each once, and returns when all have returned. The calls begin
// in this order but run side by side, on this thread and a few more; a single one needs no other thread. They
// must not throw.
void inParallel(std::size_t count, const std::function<void(std::size_t)>& work);

}  // namespace pelmarix::lsbom
