// A random program of appends to text buffers and to writers of attributes, whose
// room is made beforehand and written without another look.  A string, filled by
// streams and one octet at a time, says what must be in them.
#include <algorithm>
#include <ios>
#include <sstream>
#include <string>
#include <vector>

#include "OvFmt/Detail/Decimal.h"
#include "OvFmt/DynamicBuffer.h"
#include "Routing/Bgp/Serialize.h"
#include "fuzz/support/Input.h"
#include "fuzz/support/Require.h"

namespace {

using Fuzz::require;
using Fuzz::requireSame;

// A number of any length.
U64 numberFrom(Fuzz::Input& input) { return input.u64() >> input.below(64); }

// So that programs soon come to the ends of rooms.
std::string textFrom(Fuzz::Input& input) {
  const std::size_t size = std::size_t{input.u8()} * (input.below(8) == 0 ? 16 : 1);
  const auto octets = input.octets(input.below(16));
  std::string text(octets.begin(), octets.end());
  text.resize(size, 'x');
  return text;
}

template <class T>
std::string streamed(T value) {
  std::ostringstream text;
  text << value;
  return text.str();
}

void checkDecimal(U64 value) {
  char room[OvFmt::decimalDigitsMaxU64];
  char* const end = room + sizeof room;
  char* const begin = OvFmt::writeDecimalBackwards(end, value);
  const std::string text = streamed(value);
  requireSame({begin, static_cast<std::size_t>(end - begin)}, text, "digits from the end");
  require(OvFmt::decimalDigits(value) == text.size(), "number of digits");
}

std::string hex(U64 value, unsigned minDigits) {
  std::ostringstream text;
  text << std::hex << value;
  const std::string digits = text.str();
  return std::string(minDigits - std::min<std::size_t>(minDigits, digits.size()), '0') + digits;
}

void appendTo(OvFmt::DynamicBufferInterface& buffer, std::string& expected, Fuzz::Input& input) {
  switch (input.below(8)) {
    case 0: {
      const char c = static_cast<char>(input.u8());
      buffer.append(c);
      expected += c;
      break;
    }
    case 1: {
      const std::string text = textFrom(input);
      buffer.append(text);
      expected += text;
      break;
    }
    case 2: {
      const auto value = static_cast<U16>(numberFrom(input));
      buffer.appendDecimal(value);
      expected += streamed(value);
      break;
    }
    case 3: {
      const auto value = static_cast<U32>(numberFrom(input));
      buffer.appendDecimal(value);
      expected += streamed(value);
      break;
    }
    case 4: {
      const U64 value = numberFrom(input);
      buffer.appendDecimal(value);
      expected += streamed(value);
      checkDecimal(value);
      break;
    }
    case 5: {
      const U64 value = numberFrom(input);
      const unsigned minDigits = input.below(17);
      buffer.appendHex(value, minDigits);
      expected += hex(value, minDigits);
      break;
    }
    case 6: {
      // A program may use only a part of the room that it has reserved.
      const std::string text = textFrom(input);
      char* const at = buffer.reserve(text.size());
      const std::size_t used = text.empty() ? 0 : input.below(256) % (text.size() + 1);
      text.copy(at, used);
      buffer.advance(used);
      expected += text.substr(0, used);
      break;
    }
    default:
      if (input.below(16) != 0) return;
      buffer.clear();
      expected.clear();
  }
}

template <std::size_t InlineSize, std::size_t Step>
void checkBuffer(Fuzz::Input input) {
  OvFmt::StackBackedBuffer<InlineSize, Step> buffer;
  std::string expected;
  while (!input.atEnd()) {
    appendTo(buffer, expected, input);
    require(buffer.size() == expected.size() && buffer.size() <= buffer.capacity(), "size");
    require(buffer.room() == buffer.capacity() - buffer.size(), "room");
  }
  requireSame(buffer.view(), expected, "text");
  requireSame(buffer.str(), expected, "text, copied");
}

// ---- Attributes.

void put(std::string& to, U64 value, std::size_t size) {
  while (size-- > 0) to += static_cast<char>(value >> 8 * size);
}

void addTo(Routing::Bgp::Serialize& writer, std::string& expected, Fuzz::Input& input) {
  switch (input.below(7)) {
    case 0: {
      const U8 value = input.u8();
      writer.addU8(value);
      return put(expected, value, 1);
    }
    case 1: {
      const U16 value = input.u16();
      writer.addU16hton(value);
      return put(expected, value, 2);
    }
    case 2: {
      const U32 value = input.u32();
      writer.addU32hton(value);
      return put(expected, value, 4);
    }
    case 3: {
      const U64 value = input.u64();
      writer.addU64hton(value);
      return put(expected, value, 8);
    }
    case 4: {
      const std::string octets = textFrom(input);
      writer.addOctets({reinterpret_cast<const U8*>(octets.data()), octets.size()});
      expected += octets;
      return;
    }
    case 5: {
      std::vector<U32> words(input.u8());
      for (U32& word : words) word = input.u32();
      writer.addU32shton(words);
      for (const U32 word : words) put(expected, word, 4);
      return;
    }
    default:
      writer.growBuffer(input.u16());
  }
}

void checkWriter(Fuzz::Input input) {
  Routing::Bgp::Serialize writer;
  std::string expected;
  while (!input.atEnd()) {
    addTo(writer, expected, input);
    require(writer.size() == expected.size() && writer.size() <= writer.capacity(), "size");
  }
  const auto start = static_cast<U32>(expected.size() / 3);
  requireSame(writer.serializedString(start), expected.substr(start), "octets");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const U8* data, std::size_t size) {
  const Fuzz::Input input(data, size);
  checkBuffer<1, 1>(input);
  checkBuffer<16, 64>(input);
  checkBuffer<256, 1024>(input);
  checkWriter(input);
  return 0;
}
