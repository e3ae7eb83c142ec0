// Tables of short texts for tests.
#ifndef TESTS_TEXTS_H
#define TESTS_TEXTS_H

#include <string>
#include <string_view>
#include <vector>

namespace Texts {

// The texts between bars: "a||b" are "a", "" and "b".
inline std::vector<std::string> split(std::string_view joined) {
  std::vector<std::string> texts{""};
  for (const char c : joined) {
    if (c == '|') {
      texts.emplace_back();
    } else {
      texts.back() += c;
    }
  }
  return texts;
}

}  // namespace Texts

#endif
