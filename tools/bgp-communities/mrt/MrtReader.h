// The frame around routing data in files: MRT records (RFC 6396, section 2).
#ifndef TOOLS_BGP_COMMUNITIES_MRT_READER_H
#define TOOLS_BGP_COMMUNITIES_MRT_READER_H

#include "tools/bgp-communities/Input.h"

namespace CommTool {

// Record types of RFC 6396, section 4.
enum class MrtType : U16 {
  ospf2 = 11,
  tableDump = 12,
  tableDumpV2 = 13,
  bgp4mp = 16,
  bgp4mpEt = 17,
  isis = 32,
  isisEt = 33,
  ospf3 = 48,
  ospf3Et = 49,
};

// One record as it stands in the stream.  `body` is borrowed from the input.
struct MrtRecord {
  U64 number = 0;   // from 1, within its file
  U64 offset = 0;   // of its first octet in the decompressed stream
  U32 seconds = 0;  // since 1970, UTC
  MrtType type{};
  U16 subtype = 0;
  Octets body;
};

// Cuts a stream into records.  Throws Malformed where the frame itself is
// broken; nothing can be read from the stream after that, and `position()`
// still tells which record it was.
class MrtReader {
 public:
  // The longest record that is believed.  A BGP message has at most 65,535
  // octets; a table's record has one entry a peer, and 65,535 peers with
  // attributes of the usual 200 octets still fit.  Longer means lost framing.
  static constexpr U32 maxLength = 16 * 1024 * 1024;
  static constexpr std::size_t headerLength = 12;

  explicit MrtReader(Input& input) : input_(input) {}

  // The next record, valid until the next call; null at the end of the stream.
  const MrtRecord* next();

  // The record read last, or whose reading failed.
  const MrtRecord& position() const { return record_; }

 private:
  [[noreturn]] void cutShort(const char* what, std::size_t wanted, std::size_t got) const;

  Input& input_;
  MrtRecord record_;
  U64 nextOffset_ = 0;
};

}  // namespace CommTool

#endif
