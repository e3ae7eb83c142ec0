// Reads the framing of MRT files (RFC 6396, section 2): a header and a body for each record.
#ifndef TOOLS_BGP_COMMUNITIES_MRT_MRT_READER_H
#define TOOLS_BGP_COMMUNITIES_MRT_MRT_READER_H

#include "tools/bgp-communities/input/Input.h"

namespace CommTool {

// Record types of RFC 6396, section 4.
enum class MrtType : U16 {
  // OSPFv2; not decoded.
  ospf2 = 11,
  // A table entry in the old format, with an AS number of two octets.
  tableDump = 12,
  // A peer index, or the entries of one prefix for all peers.
  tableDumpV2 = 13,
  // A BGP message or a change of a session's state.
  bgp4mp = 16,
  // The same content as bgp4mp behind a time in microseconds.
  bgp4mpEt = 17,
  // IS-IS and OSPFv3; not decoded.
  isis = 32,
  isisEt = 33,
  ospf3 = 48,
  ospf3Et = 49,
};

// One record and its position. `body` is borrowed from the input.
struct MrtRecord {
  // The position within the file; the first record is number 1.
  U64 number = 0;
  // The offset of the header in the decompressed stream, in octets.
  U64 offset = 0;
  // The time of the record, in seconds since 1970 UTC.
  U32 seconds = 0;
  // May be a value that has no enumerator.
  MrtType type{};
  // The meaning depends on the type.
  U16 subtype = 0;
  // The octets behind the header.
  Octets body;
};

// Splits a stream into records. A record does not end with a mark: only the length in its header
// says where the next one starts. So after a wrong header nothing more can be read from the stream.
// Owner thread only.
class MrtReader {
 public:
  // The longest body that is accepted. A larger length means that the framing is lost. The limit is
  // generous: a BGP message has at most 65,535 octets, and a table record with entries of 65,535
  // peers still fits if each has attributes of the usual 200 octets.
  static constexpr U32 maxLength = 16 * 1024 * 1024;
  // The size of the header: time, type, subtype and length.
  static constexpr std::size_t headerLength = 12;

  // Reads from `input`, which must outlive this object.
  explicit MrtReader(Input& input) : input_(input) {}

  // Returns the next record, which is valid until the next call; null at the end of the stream.
  // Throws Malformed if the header is wrong or the record is truncated; position() then tells which
  // record failed, and no further call is allowed.
  const MrtRecord* next();

  // The record that was read last or failed. Only number and offset are set for a failed one.
  const MrtRecord& position() const { return record_; }

 private:
  [[noreturn]] void tooLong(U32 length) const;
  [[noreturn]] void cutShort(const char* what, std::size_t wanted, std::size_t got) const;

  Input& input_;
  MrtRecord record_;
  U64 nextOffset_ = 0;  // where the next record starts
};

}  // namespace CommTool

#endif
