// Whole files in memory.
#pragma once

#include <cstddef>
#include <string>

namespace pelmarix::posix {

/// No file of more than 1 GiB is read: a property list of the system has less than a thousandth of it, and a
/// file with a hole of a terabyte must not take the memory.
inline constexpr std::size_t maximumFileSize = std::size_t{1} << 30U;

/// The flags to open a file with that is to be read; none of them waits for whoever is at the other end of a
/// FIFO or a device.
extern const int openForReading;

/// Puts what is left of the open file behind the first `size` bytes of `contents`, all that has been read of
/// it so far, and drops what else was there. False, and `contents` empty, when it is no regular file, has
/// more than maximumFileSize bytes or can't be read.
bool readRemainder(int descriptor, std::string& contents, std::size_t size = 0);

}  // namespace pelmarix::posix
