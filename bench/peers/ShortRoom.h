// Memory for the elements of one list while it is looked up.
#ifndef BENCH_PEERS_SHORTROOM_H
#define BENCH_PEERS_SHORTROOM_H

#include <array>
#include <span>
#include <vector>

namespace Bench {

// Memory for `count` elements: in place for the short lists that routes carry, on the
// heap for longer ones. The elements in place stay uninitialised, so that a lookup pays
// only for the elements that it writes.
template <class T>
class ShortRoom {
 public:
  explicit ShortRoom(std::size_t count) : large_(count > inPlace_.size() ? count : 0) {
    all_ = {large_.empty() ? inPlace_.data() : large_.data(), count};
  }
  ShortRoom(const ShortRoom&) = delete;
  ShortRoom& operator=(const ShortRoom&) = delete;

  std::span<T> all() const { return all_; }

 private:
  std::array<T, 64> inPlace_;
  std::vector<T> large_;
  std::span<T> all_;
};

}  // namespace Bench

#endif
