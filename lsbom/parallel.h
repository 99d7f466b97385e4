// Work on several processors.
#pragma once

#include <cstddef>
#include <functional>

namespace pelmarix::lsbom {

// Calls work(begin, end) for the ranges that [0, count) is cut into, each of `atOnce` but the last, and
// returns when all calls have returned. They begin in this order but run side by side, on this thread and a
// few more; a single one needs no other thread. They must not throw.
void inParallel(std::size_t count, std::size_t atOnce,
                const std::function<void(std::size_t begin, std::size_t end)>& work);

}  // namespace pelmarix::lsbom
