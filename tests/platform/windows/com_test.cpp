#include "platform/com.h"

#include <gtest/gtest.h>
#include <objbase.h>
#include <windows.h>

#include <thread>

namespace pv {
namespace {

using platform::initialise_com;
using platform::uninitialise_com;

// What entering an apartment gives on the calling thread; it is left again at once.
HRESULT tried(COINIT apartment) {
  const HRESULT result = ::CoInitializeEx(nullptr, apartment);
  if (SUCCEEDED(result)) ::CoUninitialize();
  return result;
}

TEST(Com, JoinsTheMultithreadedApartmentUntilTheLastPairEnds) {
  std::thread([] {
    initialise_com();
    initialise_com();
    uninitialise_com();
    EXPECT_EQ(platform::com_initialisations_of_thread(), 1);
    EXPECT_EQ(tried(COINIT_MULTITHREADED), S_FALSE) << "there already";
    EXPECT_EQ(tried(COINIT_APARTMENTTHREADED), RPC_E_CHANGED_MODE);
    uninitialise_com();
    EXPECT_EQ(tried(COINIT_APARTMENTTHREADED), S_OK);
  }).join();
}

TEST(Com, LeavesTheApartmentOfTheMtasThreadAlone) {
  std::thread([] {
    ASSERT_EQ(::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_OK);
    initialise_com();
    uninitialise_com();
    EXPECT_EQ(tried(COINIT_MULTITHREADED), RPC_E_CHANGED_MODE);
    ::CoUninitialize();
  }).join();
}

}  // namespace
}  // namespace pv
