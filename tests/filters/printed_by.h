// What a call prints to standard output.
#pragma once

#include <gtest/gtest.h>

#include <string>

namespace pv::test {

template <class Call>
std::string printed_by(const Call& call) {
  testing::internal::CaptureStdout();
  call();
  return testing::internal::GetCapturedStdout();
}

}  // namespace pv::test
