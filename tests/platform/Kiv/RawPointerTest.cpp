#include "Kiv/RawPointer.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

#include "Kiv/Exception.h"

namespace {

const void* addressOf(std::uintptr_t number) { return reinterpret_cast<const void*>(number); }

TEST(RawPointer, TextIsReadBack) {
  struct Row {
    std::uintptr_t address;
    const char* text;
  };
  for (const Row& row : {Row{0, "0x0"}, Row{0xc0ffee, "0xc0ffee"}, Row{0x10, "0x10"}}) {
    EXPECT_EQ(row.text, valueToStrep(Kiv::RawPointer{addressOf(row.address)}));
  }
  for (const std::uintptr_t address :
       {std::uintptr_t{0}, std::uintptr_t{0xabc}, std::numeric_limits<std::uintptr_t>::max()}) {
    const Kiv::String text = valueToStrep(Kiv::RawPointer{addressOf(address)}) + ";";
    const char* it = text.data();
    Kiv::RawPointer read{&text};
    sequenceToValue(it, text.data() + text.size(), &read);
    EXPECT_EQ(addressOf(address), read.address);
    EXPECT_EQ(text.data() + text.size() - 1, it);
  }
}

TEST(RawPointer, OtherTextIsRefused) {
  for (const Kiv::String text :
       {"", "0", "0x", "x10", "10", "0xg", "0x-1", "0x 1", " 0x1", "0x10000000000000000"}) {
    const char* it = text.data();
    const int object = 0;
    Kiv::RawPointer read{&object};
    EXPECT_THROW(sequenceToValue(it, text.data() + text.size(), &read), Kiv::RangeException)
        << text;
    EXPECT_EQ(text.data(), it);
    EXPECT_EQ(&object, read.address);
  }
}

}  // namespace
