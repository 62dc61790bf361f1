// The state of a value when there is no memory for a copy of its text.
#include "platform/value.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <new>
#include <utility>

namespace {

bool nextAllocationFails = false;

} // namespace

[[gnu::noinline]] void* operator new(std::size_t size) {
  if (std::exchange(nextAllocationFails, false)) throw std::bad_alloc();
  if (void* const memory = std::malloc(size == 0 ? 1 : size)) return memory;
  throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete(void* memory) noexcept { std::free(memory); }
[[gnu::noinline]] void operator delete(void* memory, std::size_t /*size*/) noexcept { std::free(memory); }

namespace qx {
namespace {

TEST(ValuesWithoutMemory, StayWholeWhenTheyCannotBeCopied) {
  const std::string text = "a text that is too long for the inside of a string";
  const Value original(text);
  const auto copy = [&] {
    nextAllocationFails = true;
    const Value second(original);
    return second.text();
  };
  EXPECT_THROW(copy(), std::bad_alloc);
  Value number(7);
  Value name("kurz");
  for (Value* target : {&number, &name}) {
    nextAllocationFails = true;
    EXPECT_THROW(*target = original, std::bad_alloc);
  }
  EXPECT_EQ(number, Value(7));
  EXPECT_EQ(name, Value("kurz"));
  EXPECT_EQ(original, Value(text));
  name = original;
  EXPECT_EQ(name, original);
}

} // namespace
} // namespace qx
