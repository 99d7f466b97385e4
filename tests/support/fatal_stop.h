// The end of a program by fatalStop, as a test sees it.
#pragma once

#include <gmock/gmock.h>

#include <csignal>

/// By SIGABRT and without a word, which tells it from an exception that nobody caught.
#define EXPECT_FATAL_STOP(statement) \
  EXPECT_EXIT(statement, testing::KilledBySignal(SIGABRT), testing::IsEmpty())
